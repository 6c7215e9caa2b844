// SPDX-License-Identifier: MIT
#include "ygconfig/files/NothingStored.h"

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

/// Beside the first, of a file that is read, these are reasons.
constexpr std::string_view reasons[] = {"unreadable-file",      "unsaved-file",
                                        "failed-download",      "unreadable-delivery",
                                        "unreadable-web-pages", "lost-setting",
                                        "no-element-name",      "unreadable-setting",
                                        "list-without-digest",  "same-digest-other-entries"};

}  // namespace

NothingStored::NothingStored(std::string_view delivered, DiagnosticsSink* before)
    : FileSink(reasons), delivered_(delivered), before_(before) {}

std::string NothingStored::reasonOf(const Fault& fault) const {
    if (fault.rule == "unsaved-file")
        return fault.reason;
    if (fault.rule == "unreadable-web-pages" || fault.rule == "unreadable-delivery")
        return delivered_ + ": " + (fault.reason.empty() ? "it is empty" : fault.reason);
    if (fault.rule == "lost-setting")
        return fault.file + ": the root element is not named config";
    if (fault.rule == "no-element-name")
        return fault.file + ": \"" + fault.reason + "\" cannot be the name of an element";
    if (fault.rule == "unreadable-setting")
        return fault.file + ": with the new text it could not be read again";
    if (fault.rule == "list-without-digest")
        return fault.file + ": the list has no digest";
    if (fault.rule == "same-digest-other-entries")
        return fault.file + ": other entries than the stored list, but the same digest";
    return fault.text();
}

std::string NothingStored::complaint() const {
    std::string unread;  // the settings file, which then takes no item
    for (const Fault& fault : faults_) {
        if (fault.rule == "unreadable-file")
            unread = fault.text();
        else
            return "ygconfig: nothing was stored: " +
                   printable(fault.rule == "lost-setting" && !unread.empty() ? unread
                                                                             : reasonOf(fault));
    }
    return "";
}

}  // namespace yg::tool
