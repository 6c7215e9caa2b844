// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/JsonModel.h"

#include "YGConfigManager/text/Numbers.h"

namespace yg::detail {

void readModelField(const JsonValue& value, std::optional<std::string>& field) {
    if (const std::string* text = value.text())
        field = *text;
    else if (const std::string* decimal = value.number())
        field = *decimal;
    else
        field.reset();
}

void readModelField(const JsonValue& value, std::optional<double>& field) {
    const std::string* const decimal = value.number();
    field = decimal ? std::optional(text::readLeadingDouble(*decimal).value) : std::nullopt;
}

bool appendModelField(std::string& out, const std::optional<std::string>& field) {
    if (field)
        require(appendJsonText(out, *field));
    return field.has_value();
}

}  // namespace yg::detail
