// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/Controls.h"

#include <algorithm>

#include "YGConfigManager/text/Utf8.h"

namespace yg::text {

std::size_t copyWithoutControls(std::string_view text, char* out) {
    char* end = out;
    while (!text.empty()) {
        const Character next = firstCharacter(text);
        // A byte alone is judged by its value.
        const char32_t judged =
            next.isValid ? next.value : static_cast<unsigned char>(text.front());
        if (isControl(judged) && judged != '\t')
            *end++ = ' ';
        else
            end = std::copy_n(text.data(), next.size, end);
        text.remove_prefix(next.size);
    }
    return static_cast<std::size_t>(end - out);
}

}  // namespace yg::text
