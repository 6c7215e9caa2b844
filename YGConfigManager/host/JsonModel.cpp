// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/JsonModel.h"

namespace yg::detail {

void readModelField(const JsonValue& value, std::optional<std::string>& field) {
    field.reset();
    if (const std::string* text = value.text())
        field = *text;
    else if (const std::string* decimal = value.number())
        field = *decimal;
}

bool appendModelField(std::string& out, const std::optional<std::string>& field) {
    if (field)
        require(appendJsonText(out, *field));
    return field.has_value();
}

}  // namespace yg::detail
