// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/MakeFolder.h"

#include <cerrno>
#include <fcntl.h>

#include "YGConfigManager/files/Place.h"

namespace yg::files {

namespace {

bool isFolder(const std::string& path, FileLayer& layer) {
    struct stat state;
    // The slash has a link followed.
    return layer.status(AT_FDCWD, (path + "/").c_str(), state) == 0 && S_ISDIR(state.st_mode);
}

}  // namespace

bool makeFolder(const std::string& path, FileLayer& layer) {
    const std::string above = placeOf(path).folder;
    const bool isNew = layer.makeFolder(path.c_str()) == 0;
    if (!isNew && (errno != EEXIST || !isFolder(path, layer)))
        return false;
    const OpenFolder folder(above, layer);
    if (folder.number() >= 0 && folder.sync())
        return true;
    if (isNew)
        layer.removeFolder(path.c_str());
    return !isNew;
}

}  // namespace yg::files
