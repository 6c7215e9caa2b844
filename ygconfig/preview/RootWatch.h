// SPDX-License-Identifier: MIT
//
// Waits for changes of the files that a root is read from. One thread uses an object.
#pragma once

#include <map>
#include <string>

#include "ygconfig/preview/Descriptor.h"
#include "ygconfig/preview/UsedFolders.h"

struct inotify_event;

namespace yg::tool {

class RootWatch {
public:
    /// How changes are noticed: by inotify as long as the system allows enough of it, or always by
    /// looking at the files' times and sizes five times a second.
    enum class Means { notices, looks };

    explicit RootWatch(std::string root, Means means = Means::notices);

    /// Finds out which folders count now. From then on no change is missed. To be called before the
    /// root is read: what changes while it is read is a change.
    void renew();

    /// Waits for a change, and until nothing more changes for 40 ms, but no longer than 150 ms.
    /// False when `ending` became readable.
    bool wait(int ending);

    /// Why it looks at the files instead of getting notices of them, one line; "" when it does not.
    const std::string& complaint() const { return complaint_; }

private:
    void renewWatches();
    void look(const char* call, int error);
    bool waitForNotice(int ending);
    bool waitForLook(int ending);

    /// Whether one of the events that have arrived counts.
    bool takeEvents();
    bool counts(const inotify_event& event) const;

    const std::string root_;
    Descriptor inotify_;
    UsedFolders folders_;
    std::map<int, UsedFolder> watches_;  ///< by the number of the watch
    std::string state_;                  ///< when it looks
    std::string complaint_;
    bool isLooking_ = false;
};

}  // namespace yg::tool
