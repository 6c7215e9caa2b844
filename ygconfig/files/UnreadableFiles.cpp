// SPDX-License-Identifier: MIT
#include "ygconfig/files/UnreadableFiles.h"

#include <set>
#include <string_view>

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr std::string_view reasons[] = {"unreadable-file", "unreadable-url-list", "failed-download",
                                        "unsaved-file"};

}  // namespace

UnreadableFiles::UnreadableFiles() : FileSink(reasons) {}

std::string UnreadableFiles::complaint() const {
    std::set<std::string> reported;
    std::string lines;
    for (const Fault& fault : faults_) {
        const std::string line = fault.rule == "unsaved-file" ? fault.reason : fault.text();
        if (reported.insert(line).second)
            lines += (lines.empty() ? "ygconfig: " : "\nygconfig: ") + printable(line);
    }
    return lines;
}

}  // namespace yg::tool
