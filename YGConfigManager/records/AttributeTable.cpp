// SPDX-License-Identifier: MIT
#include "YGConfigManager/records/AttributeTable.h"

namespace yg {

const Rule* oddity(const AttributeInfo& attribute, std::string_view value) {
    const auto ofNumber = [&](text::NumberOddity odd, float number) -> const Rule* {
        if (odd != text::NumberOddity::none)
            return &"odd-number"_rule;
        const bool isInRange = number >= attribute.least && number <= attribute.most;
        return isInRange ? nullptr : &"number-out-of-range"_rule;
    };
    switch (attribute.kind) {
        case AttributeKind::text:
            return nullptr;
        case AttributeKind::flag:
            return value == "true" || value == "false" ? nullptr : &"odd-flag"_rule;
        case AttributeKind::integer:
        case AttributeKind::wholeNumber: {
            const auto read = text::readLeadingInt32(value);
            return ofNumber(read.oddity, static_cast<float>(read.value));
        }
        case AttributeKind::decimal: {
            const auto read = text::readLeadingFloat(value);
            return ofNumber(read.oddity, read.value);
        }
        case AttributeKind::nameList:
            return value.empty() ? &"empty-list"_rule : nullptr;
    }
    return nullptr;
}

}  // namespace yg
