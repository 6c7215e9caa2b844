// SPDX-License-Identifier: MIT
//
// One entry of the request URL list: an address and the key to ask for it. A plain record, held by
// shared pointers. Not synchronised: a record that one thread changes must not be read by another.
#pragma once

#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "YGConfigManager/export.h"
#include "YGConfigManager/host/JsonModel.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/text/OwnedText.h"

namespace yg {

class YG_EXPORT YGHttpUrlConfigModel {
public:
    /// The key by which callers ask; absent when the list has none.
    const std::optional<std::string>& urlKey() const { return urlKey_; }
    void setUrlKey(OwnedText key) { urlKey_ = std::move(key); }

    /// The address, not checked; absent when the list has none.
    const std::optional<std::string>& urlValue() const { return urlValue_; }
    void setUrlValue(OwnedText value) { urlValue_ = std::move(value); }

    /// The members that JSON fills.
    static constexpr auto modelFields() {
        return std::tuple{ModelField{"urlKey", &YGHttpUrlConfigModel::urlKey_},
                          ModelField{"urlValue", &YGHttpUrlConfigModel::urlValue_}};
    }

private:
    std::optional<std::string> urlKey_;
    std::optional<std::string> urlValue_;
};

template <>
struct Description<YGHttpUrlConfigModel> {
    static constexpr std::tuple fields{
        Field{"urlKey", &YGHttpUrlConfigModel::urlKey},
        Field{"urlValue", &YGHttpUrlConfigModel::urlValue},
    };
};

}  // namespace yg
