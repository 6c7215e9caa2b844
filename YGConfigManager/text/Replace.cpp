// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/Replace.h"

namespace yg::text {

std::string replaceAll(std::string_view text, std::string_view target,
                       std::string_view replacement) {
    if (target.empty()) {
        return std::string(text);
    }
    std::string out;
    for (std::size_t found = text.find(target); found != std::string_view::npos;
         found = text.find(target)) {
        out += text.substr(0, found);
        out += replacement;
        text.remove_prefix(found + target.size());
    }
    out += text;
    return out;
}

}  // namespace yg::text
