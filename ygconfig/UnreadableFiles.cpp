// SPDX-License-Identifier: MIT
#include "ygconfig/UnreadableFiles.h"

#include <algorithm>

#include "ygconfig/Display.h"

namespace yg::tool {

void UnreadableFiles::report(const Finding& finding) {
    if (finding.rule.name != "unreadable-file" && finding.rule.name != "unreadable-url-list")
        return;
    // Some loaders name the file themselves, because they come back to one that they have read.
    const bool namesFile = std::any_of(files_.begin(), files_.end(), [&](const std::string& file) {
        return !file.empty() && finding.value.compare(0, file.size(), file) == 0;
    });
    const std::string line = namesFile ? finding.value : files_.back() + ": " + finding.value;
    if (told_.insert(line).second)
        complaint_ += (complaint_.empty() ? "ygconfig: " : "\nygconfig: ") + printable(line);
}

}  // namespace yg::tool
