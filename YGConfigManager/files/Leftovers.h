// SPDX-License-Identifier: MIT
//
// What writes that were killed left behind: the hidden files into which they wrote. Internal to
// files/.
#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>

#include "YGConfigManager/files/FileLayer.h"

namespace yg::files {

/// A name for a new hidden file, ".yg-NUMBER-NUMBER-NUMBER.tmp", which differs between processes,
/// threads and moments. Throws std::bad_alloc.
std::string nextTempName();

/// Whether the name has that form.
bool isTempName(std::string_view name);

/// Removes the hidden files in the folder that nobody writes any more: those that have such a name,
/// are regular files, belong to the user of this process or the given one, were last written an
/// hour or more before the new file, by the clock of their file system, and that nobody has locked.
/// A write locks its file until it is closed, so what a writer that was stopped has open stays,
/// wherever that writer runs and whatever its number; so does everything on a file system that
/// cannot lock.
///
/// A process looks into a folder when it writes there first, and after that once in an hour; it
/// looks at 10,000 names at most. What cannot be looked at or removed stays. Any thread may call.
void clearLeftovers(int folder, int newFile, uid_t owner, FileLayer& layer);

}  // namespace yg::files
