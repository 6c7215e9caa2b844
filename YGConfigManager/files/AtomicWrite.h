// SPDX-License-Identifier: MIT
//
// The one way in which the library writes a file: whoever looks, also after a crash or a power
// failure at any moment, finds the old content or the new one, in full. Any thread may call; of
// several writes to one file the last one to finish stays.
#pragma once

#include <string>
#include <string_view>

#include "YGConfigManager/files/FileLayer.h"

namespace yg::files {

/// What came of writing a file; true if its bytes are safe on the disk.
struct FileWriting {
    bool ok = false;
    /// Why not, in one line that names the file: "user/a.xml: No space left on device". Empty if it
    /// was written.
    std::string error = {};

    explicit operator bool() const { return ok; }
};

/// Writes the bytes to the file at the path, which is created or replaced. True once they are safe
/// on the disk.
///
/// The bytes go into a new hidden file beside the target, which then takes the target's place. It
/// gets the owner, the group, the read, write and execute rights and the access list (POSIX.1e) of
/// the file replaced; where the user of this process may not give it all of that, it gets less, and
/// nobody more than he had (FileRights.h says what exactly). A file that is new gets what the
/// system gives any new file in that folder with the mode 0666: less the umask, or as the folder's
/// default list has it. While it is being written nobody can do more with it than at the end. The
/// right to run as the owner or group, and extended attributes, are not kept.
///
/// A read-only target is replaced. A symbolic link stays: the file that it names in the end is
/// replaced or created. In a folder that everyone may write to, such as /tmp, another user's link
/// is not followed, whether or not the system is set to refuse that everywhere: it must belong to
/// the user of this process or to the owner of the folder. Links of folders on the way are left to
/// the system.
///
/// Hidden files that killed writes left in the folder an hour or more ago are removed, when this
/// process writes there first and then once in an hour. What a writer has open stays.
///
/// False if anything failed, want of memory too; the hidden file is gone then and the target as it
/// was. It is also false, with the new content already in place, if only the very last step failed,
/// bringing the folder to the disk: the write may not outlive a power failure. Writes that fail: an
/// empty path or one with a NUL byte, a missing folder, links in a circle, and a target that is not
/// a regular file (a folder, a device, a pipe), which is never replaced.
FileWriting writeFileAtomically(std::string_view path, std::string_view bytes,
                                FileLayer& layer = systemFileLayer());

}  // namespace yg::files
