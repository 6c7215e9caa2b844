// SPDX-License-Identifier: MIT
//
// The whole list of request URLs with its digest. A plain record, held by shared pointers. Not
// synchronised: a record that one thread changes must not be read by another.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/host/JsonModel.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/settings/YGHttpUrlConfigModel.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/text/OwnedText.h"

namespace yg {

class Reporter;
struct JsonText;
struct Rule;

class YG_EXPORT YGHttpReqUrlModel {
public:
    /// The entries, as JSON values or converted.
    using List = ModelList<YGHttpUrlConfigModel>;

    /// A list from the JSON text of a stored file or a download, its entries converted; null when
    /// the bytes are not a JSON object and when memory does not suffice.
    static std::shared_ptr<YGHttpReqUrlModel> modelWithJSON(OptionalText bytes);

    /// The digest that names this version of the list: compared, never computed. Absent when the
    /// list has none.
    const std::optional<std::string>& md5Value() const { return md5Value_; }
    void setMd5Value(OwnedText md5) { md5Value_ = std::move(md5); }

    /// The entries in the order of the file; absent when the file has no list.
    const List& urlConfigList() const { return urlConfigList_; }
    void setUrlConfigList(List list) { urlConfigList_ = std::move(list); }

    /// The entries as records; null when they are absent or not converted.
    std::shared_ptr<const List::Items> urlConfigs() const { return urlConfigList_.items(); }

    /// The list as JSON text; "" when memory does not suffice.
    std::string description() const;

    /// The members that JSON fills.
    static constexpr auto modelFields();

private:
    friend class YGHttpReqUrlMgr;
    friend struct Description<YGHttpReqUrlModel>;
    /// As modelWithJSON, but throws std::bad_alloc, and reports what it leaves out.
    static std::shared_ptr<YGHttpReqUrlModel> read(const JsonText& text, const Rule& unreadable,
                                                   const Reporter& reporter);

    std::optional<std::string> md5Value_;
    List urlConfigList_;
};

template <>
struct Description<YGHttpReqUrlModel> {
    using List = YGHttpReqUrlModel;
    static constexpr std::tuple fields{
        Field{"md5Value", &List::md5Value, &List::md5Value_,
              AttributeInfo{.name = "md5Value",
                            .sentence = "A text of your choice that names this version of the "
                                        "list: a download with the same one changes nothing.",
                            .isRequired = true}},
        Field{"urlConfigList", &List::urlConfigs, &List::urlConfigList_,
              AttributeInfo{.name = "urlConfigList", .sentence = "The entries."}},
    };
};

constexpr auto YGHttpReqUrlModel::modelFields() {
    return detail::modelFieldsOf<YGHttpReqUrlModel>();
}

}  // namespace yg
