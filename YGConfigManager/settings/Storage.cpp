// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/Storage.h"

#include <atomic>
#include <cstddef>

#include "YGConfigManager/files/AtomicWrite.h"
#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/YGFrameComFun.h"

namespace yg {

namespace {

std::atomic<files::FileLayer*> replacement = nullptr;

}  // namespace

std::optional<std::string> storagePath(std::optional<std::string_view> fileName, bool isNeedWrite) {
    return YGFrameComFun::getStorageFilePath(1, std::nullopt, fileName, isNeedWrite);
}

bool writeStoredFile(const std::optional<std::string>& path, std::string_view bytes) {
    files::FileLayer* const layer = replacement.load();
    return path && bytes.size() <= files::largestFileRead &&
           files::writeFileAtomically(*path, bytes, layer ? *layer : files::systemFileLayer());
}

files::FileLayer* setFileLayer(files::FileLayer* layer) {
    return replacement.exchange(layer);
}

}  // namespace yg
