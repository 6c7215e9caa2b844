// SPDX-License-Identifier: MIT
#include "ygconfig/files/NothingStored.h"

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

void NothingStored::report(const Finding& finding) {
    if (finding.rule.name == "unreadable-file")
        fault_ = withFile(finding);
    else if (reason_.empty())
        reason_ = reasonOf(finding);
}

/// The reason that the finding is; "" if it is none.
std::string NothingStored::reasonOf(const Finding& finding) const {
    const std::string_view rule = finding.rule.name;
    if (rule == "unsaved-file")
        return finding.value;
    if (rule == "failed-download")
        return withFile(finding);
    if (rule == "unreadable-web-pages" || rule == "unreadable-delivery")
        return delivered_ + ": " + (finding.value.empty() ? "it is empty" : finding.value);
    if (rule == "lost-setting")
        return fault_.empty() ? lastFile() + ": the root element is not named config" : fault_;
    if (rule == "no-element-name")
        return lastFile() + ": \"" + finding.value + "\" cannot be the name of an element";
    if (rule == "unreadable-setting")
        return lastFile() + ": with the new text it could not be read again";
    if (rule == "list-without-digest")
        return lastFile() + ": the list has no digest";
    if (rule == "same-digest-other-entries")
        return lastFile() + ": other entries than the stored list, but the same digest";
    return "";
}

std::string NothingStored::complaint() const {
    return reason_.empty() ? "" : "ygconfig: nothing was stored: " + printable(reason_);
}

}  // namespace yg::tool
