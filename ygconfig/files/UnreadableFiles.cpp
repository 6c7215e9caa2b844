// SPDX-License-Identifier: MIT
#include "ygconfig/files/UnreadableFiles.h"

#include <string_view>

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

void UnreadableFiles::report(const Finding& finding) {
    const std::string_view rule = finding.rule.name;
    if (rule != "unreadable-file" && rule != "unreadable-url-list" && rule != "failed-download" &&
        rule != "unsaved-file")
        return;
    const std::string line = rule == "unsaved-file" ? finding.value : withFile(finding);
    if (told_.insert(line).second)
        complaint_ += (complaint_.empty() ? "ygconfig: " : "\nygconfig: ") + printable(line);
}

}  // namespace yg::tool
