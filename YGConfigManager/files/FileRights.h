// SPDX-License-Identifier: MIT
//
// Who may do what with a file, and how a new file gets the same from the one that it replaces.
// Internal to files/.
#pragma once

#include <string>
#include <sys/stat.h>
#include <sys/types.h>

#include "YGConfigManager/files/FileLayer.h"

namespace yg::files {

struct FileRights {
    uid_t user = 0;
    gid_t group = 0;
    /// Read, write and execute rights.
    mode_t mode = 0;
    /// The list of POSIX.1e beside the mode, in the bytes in which the kernel hands it out; empty
    /// if there is none. The group's rights in the mode are its mask then.
    std::string accessList = {};
};

/// Reads the access list of the file into its rights. False, with `errno`, if it may have one that
/// cannot be read. Throws std::bad_alloc.
bool readAccessList(const std::string& path, FileRights& rights, FileLayer& layer);

/// Gives the open file, which so far is for its owner alone, those rights. Where the user of this
/// process may not give it the same owner, group or list, it gets less and nobody gets more:
///
/// - The group cannot be given: the group, which is another one now, and others have only those
///   rights that both had.
/// - The owner cannot be given: he may count among the group or the others now, so neither gets a
///   right that he did not have. The file belongs to the user of this process, with the owner's
///   rights.
/// - The list, or owner or group of a file with one, cannot be given: there is none, and the rights
///   of the group and of others are those that all who are named in it had.
///
/// A list that the folder has new files inherit is removed. False, with `errno`, if a call fails
/// for any other cause than that it is not permitted or not supported.
bool giveRights(int file, const FileRights& rights, FileLayer& layer);

}  // namespace yg::files
