// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/Storage.h"

#include <cstddef>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/YGFrameComFun.h"

namespace yg {

std::optional<std::string> storagePath(std::optional<std::string_view> fileName, bool isNeedWrite) {
    return YGFrameComFun::getStorageFilePath(1, std::nullopt, fileName, isNeedWrite);
}

files::FileWriting writeStoredFile(std::string_view fileName,
                                   const std::optional<std::string>& path, std::string_view bytes) {
    if (!path || path->empty())
        return {false, files::describeFailure(fileName, noPathToWrite)};
    if (bytes.size() > files::largestFileRead)
        return {false, files::describeFailure(*path, "too large to be read again")};
    return files::writeFileAtomically(*path, bytes);
}

bool hasBlanksAround(std::string_view address) {
    constexpr std::string_view blanks = " \t\r\n";
    return !address.empty() && (blanks.find(address.front()) != std::string_view::npos ||
                                blanks.find(address.back()) != std::string_view::npos);
}

}  // namespace yg
