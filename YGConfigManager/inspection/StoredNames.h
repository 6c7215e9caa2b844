// SPDX-License-Identifier: MIT
//
// What the files of the storage give under names: servers, settings, addresses. Two files are
// compared by them. Internal. Throws std::bad_alloc.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/text/Place.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

/// A name that counts, where the file has it first.
struct StoredName {
    std::string_view kind;  ///< in words: "server"
    std::string group;      ///< the type of a server, the section of a setting; "" for none
    std::string name;
    Place place;
    std::shared_ptr<const std::string> content = {};  ///< what it stands for; null for nothing
    Place contentPlace = {};                          ///< of an address

    auto key() const { return std::tie(kind, group, name); }
};

using StoredNames = std::vector<StoredName>;

inline constexpr std::string_view serverTypeKind = "server type";

/// The types and the servers among the names of a server file, by its path as it was loaded.
StoredNames serverNames(const std::vector<NameUse>& names, std::string_view path);

/// The keys of a web page table.
StoredNames webPageNames(const std::vector<NameUse>& names, std::string_view path);

/// The keys of a request URL list; absent when it is not a JSON object.
std::optional<StoredNames> requestUrlNames(std::string_view bytes, std::string_view path);

/// The items of a settings file.
StoredNames settingsNames(const xml::Document& document, std::string_view path);

/// Those of `names` that `others` does not have. A server of a type that `others` does not have at
/// all is not listed beside the type.
StoredNames missingFrom(const StoredNames& others, const StoredNames& names);

/// "server 'East' of type 1", "setting 'chart/grid'", "key 'help'".
std::string described(const StoredName& name);

}  // namespace yg
