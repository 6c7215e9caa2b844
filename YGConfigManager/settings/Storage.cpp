// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/Storage.h"

#include <atomic>
#include <cstddef>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/YGFrameComFun.h"

namespace yg {

namespace {

std::atomic<files::FileLayer*> replacement = nullptr;

}  // namespace

std::optional<std::string> storagePath(std::optional<std::string_view> fileName, bool isNeedWrite) {
    return YGFrameComFun::getStorageFilePath(1, std::nullopt, fileName, isNeedWrite);
}

files::FileWriting writeStoredFile(const std::optional<std::string>& path, std::string_view bytes) {
    if (!path || path->empty())
        return {false, "there is no path to write to"};
    if (bytes.size() > files::largestFileRead)
        return {false, files::describeFailure(*path, "too large to be read again")};
    files::FileLayer* const layer = replacement.load();
    return files::writeFileAtomically(*path, bytes, layer ? *layer : files::systemFileLayer());
}

files::FileLayer* setFileLayer(files::FileLayer* layer) {
    return replacement.exchange(layer);
}

}  // namespace yg
