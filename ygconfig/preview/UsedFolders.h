// SPDX-License-Identifier: MIT
//
// In which folders a change can change what a root holds.
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace yg::tool {

/// What counts in a folder.
struct UsedFolder {
    bool isWhole = false;                           ///< everything but editors' own files
    std::set<std::string, std::less<>> names = {};  ///< when it is not
};

/// By paths that have no symbolic link in them.
using UsedFolders = std::map<std::string, UsedFolder, std::less<>>;

/// The folders of the root that files are read from; those on the way to them, for the next name on
/// the way, so that a folder that comes, goes or is replaced is noticed; and the same of all that
/// their symbolic links lead to. In images/ up to 8 levels and 1,000 folders.
UsedFolders usedFolders(const std::string& root);

/// Whether a change of this name in the folder counts.
bool isUsed(const UsedFolder& folder, std::string_view name);

/// What all that counts looks like: another text after each change, the same without one.
std::string stateOf(const UsedFolders& folders);

}  // namespace yg::tool
