// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/Storage.h"

#include <cstddef>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/YGFrameComFun.h"

namespace yg {

std::optional<std::string> storagePath(std::optional<std::string_view> fileName, bool isNeedWrite) {
    return YGFrameComFun::getStorageFilePath(1, std::nullopt, fileName, isNeedWrite);
}

files::FileWriting writeStoredFile(const std::optional<std::string>& path, std::string_view bytes) {
    if (!path || path->empty())
        return {false, "there is no path to write to"};
    if (bytes.size() > files::largestFileRead)
        return {false, files::describeFailure(*path, "too large to be read again")};
    return files::writeFileAtomically(*path, bytes);
}

}  // namespace yg
