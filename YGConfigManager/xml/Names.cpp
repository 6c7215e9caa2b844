// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Names.h"

#include "YGConfigManager/text/Utf8.h"

namespace yg::xml {

namespace {

bool inRange(char32_t c, char32_t low, char32_t high) {
    return c >= low && c <= high;
}

bool isNameStart(char32_t c) {
    return inRange(c, 'a', 'z') || inRange(c, 'A', 'Z') || c == '_' || c == ':' ||
           inRange(c, 0xC0, 0xD6) || inRange(c, 0xD8, 0xF6) || inRange(c, 0xF8, 0x2FF) ||
           inRange(c, 0x370, 0x37D) || inRange(c, 0x37F, 0x1FFF) || inRange(c, 0x200C, 0x200D) ||
           inRange(c, 0x2070, 0x218F) || inRange(c, 0x2C00, 0x2FEF) || inRange(c, 0x3001, 0xD7FF) ||
           inRange(c, 0xF900, 0xFDCF) || inRange(c, 0xFDF0, 0xFFFD) || inRange(c, 0x10000, 0xEFFFF);
}

bool isNameCharacter(char32_t c) {
    return isNameStart(c) || inRange(c, '0', '9') || c == '-' || c == '.' || c == 0xB7 ||
           inRange(c, 0x300, 0x36F) || inRange(c, 0x203F, 0x2040);
}

}  // namespace

bool isXmlName(std::string_view name) {
    if (name.empty() || !text::isValidUtf8(name))
        return false;
    for (std::size_t at = 0; at < name.size();) {
        const text::Character c = text::firstCharacter(name.substr(at));
        if (!(at == 0 ? isNameStart(c.value) : isNameCharacter(c.value)))
            return false;
        at += c.size;
    }
    return true;
}

}  // namespace yg::xml
