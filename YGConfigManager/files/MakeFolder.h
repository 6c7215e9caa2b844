// SPDX-License-Identifier: MIT
//
// The one way in which the library makes a folder.
#pragma once

#include <string>

#include "YGConfigManager/files/FileLayer.h"

namespace yg::files {

/// Makes the folder, with the rights that the umask leaves, unless there is one. True if there is
/// one now, whose name is safe on the disk, so that what is written into it is found after a power
/// failure. False if it cannot be made, or if the folder above cannot be brought to the disk; the
/// new folder is removed then, so that the next call tries both.
///
/// For a folder that was there, perhaps made by a process that was killed at once, the one above is
/// brought to the disk too; it may be that this user cannot do so, which is then left out. A link
/// to a folder counts as a folder. Any thread may call. Throws std::bad_alloc.
bool makeFolder(const std::string& path, FileLayer& layer = systemFileLayer());

}  // namespace yg::files
