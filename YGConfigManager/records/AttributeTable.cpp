// SPDX-License-Identifier: MIT
#include "YGConfigManager/records/AttributeTable.h"

namespace yg {

const Rule* oddity(AttributeKind kind, std::string_view value) {
    using text::NumberOddity;
    const auto ofNumber = [](NumberOddity oddity) {
        return oddity == NumberOddity::none ? nullptr : &"odd-number"_rule;
    };
    switch (kind) {
        case AttributeKind::text:
            return nullptr;
        case AttributeKind::flag:
            return value == "true" || value == "false" ? nullptr : &"odd-flag"_rule;
        case AttributeKind::integer:
        case AttributeKind::wholeNumber:
            return ofNumber(text::readLeadingInt32(value).oddity);
        case AttributeKind::decimal:
            return ofNumber(text::readLeadingFloat(value).oddity);
        case AttributeKind::nameList:
            return value.empty() ? &"empty-list"_rule : nullptr;
    }
    return nullptr;
}

}  // namespace yg
