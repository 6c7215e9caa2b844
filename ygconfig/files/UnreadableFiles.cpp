// SPDX-License-Identifier: MIT
#include "ygconfig/files/UnreadableFiles.h"

#include <set>
#include <string_view>

#include "ygconfig/Answer.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr std::string_view reasons[] = {
    "unreadable-file",  "unreadable-url-list", "failed-download",
    "unsaved-file",     "event-root-name",     "palette-root-name",
    "server-root-name", "settings-root-name",  "web-page-root-name"};

std::string textOf(const FileSink::Fault& fault) {
    if (fault.rule == "unsaved-file")
        return fault.reason;
    // A missing list is found without a reason.
    return fault.rule == "unreadable-url-list" && fault.reason.empty()
               ? fault.file + ": No such file or directory"
               : fault.text();
}

}  // namespace

UnreadableFiles::UnreadableFiles() : FileSink(reasons) {}

std::string UnreadableFiles::complaint() const {
    std::set<std::string> reported;
    std::string lines;
    for (const Fault& fault : faults_) {
        const std::string line = textOf(fault);
        if (reported.insert(line).second)
            addLine(lines, "ygconfig: " + printable(line));
    }
    return lines;
}

}  // namespace yg::tool
