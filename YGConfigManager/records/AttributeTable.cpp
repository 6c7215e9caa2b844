// SPDX-License-Identifier: MIT
#include "YGConfigManager/records/AttributeTable.h"

namespace yg {

const Rule* oddity(const AttributeInfo& attribute, std::string_view value) {
    const auto ofNumber = [&](const auto& read) -> const Rule* {
        if (read.oddity != text::NumberOddity::none)
            return &"odd-number"_rule;
        const auto number = static_cast<float>(read.value);
        return number < attribute.least || number > attribute.most ? &"number-out-of-range"_rule
                                                                   : nullptr;
    };
    switch (attribute.kind) {
        case AttributeKind::text:
            return nullptr;
        case AttributeKind::flag:
            return value == "true" || value == "false" ? nullptr : &"odd-flag"_rule;
        case AttributeKind::integer:
        case AttributeKind::wholeNumber:
            return ofNumber(text::readLeadingInt32(value));
        case AttributeKind::decimal:
            return ofNumber(text::readLeadingFloat(value));
        case AttributeKind::nameList:
            return value.empty() ? &"empty-list"_rule : nullptr;
    }
    return nullptr;
}

}  // namespace yg
