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
    static constexpr auto modelFields();

private:
    friend struct Description<YGHttpUrlConfigModel>;

    std::optional<std::string> urlKey_;
    std::optional<std::string> urlValue_;
};

template <>
struct Description<YGHttpUrlConfigModel> {
    using Url = YGHttpUrlConfigModel;
    static constexpr std::tuple fields{
        Field{"urlKey", &Url::urlKey, &Url::urlKey_,
              AttributeInfo{.name = "urlKey",
                            .sentence = "The name by which the terminal asks for the address.",
                            .names = Naming::requestUrl,
                            .defines = true,
                            .isRequired = true}},
        Field{"urlValue", &Url::urlValue, &Url::urlValue_,
              AttributeInfo{.name = "urlValue", .sentence = "The address, as it is to be used."}},
    };
};

namespace detail {

/// The fields of a described record, for JsonModel.h.
template <class Record>
constexpr auto modelFieldsOf() {
    return std::apply(
        [](const auto&... field) {
            return std::tuple{ModelField{field.attribute.name, field.setter}...};
        },
        Description<Record>::fields);
}

}  // namespace detail

constexpr auto YGHttpUrlConfigModel::modelFields() {
    return detail::modelFieldsOf<YGHttpUrlConfigModel>();
}

}  // namespace yg
