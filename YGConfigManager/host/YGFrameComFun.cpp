// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/YGFrameComFun.h"

#include <type_traits>

namespace yg {

namespace {

/// What the current host answers, or nothing when it throws.
template <class Ask>
std::invoke_result_t<Ask, Host&> answerOfHost(Ask ask) noexcept {
    try {
        return ask(*currentHost());
    } catch (...) {
        return {};
    }
}

}  // namespace

std::optional<std::string> YGFrameComFun::getStorageFilePath(std::int64_t area,
                                                             OptionalText subFolderPath,
                                                             OptionalText fileName,
                                                             bool isNeedWrite) noexcept {
    return answerOfHost([&](Host& host) {
        return host.getStorageFilePath(area, subFolderPath, fileName, isNeedWrite);
    });
}

std::optional<std::string> YGFrameComFun::getUserRightDescription() noexcept {
    return answerOfHost([](Host& host) { return host.getUserRightDescription(); });
}

std::optional<std::string> YGFrameComFun::getSoftOptimizeConfigFilePath(
    std::int64_t kind, OptionalText fileName) noexcept {
    return answerOfHost(
        [&](Host& host) { return host.getSoftOptimizeConfigFilePath(kind, *fileName); });
}

std::optional<std::string> YGFrameComFun::getBaseOptimizeConfigFilePath(
    std::int64_t kind, OptionalText fileName) noexcept {
    return answerOfHost(
        [&](Host& host) { return host.getBaseOptimizeConfigFilePath(kind, *fileName); });
}

std::shared_ptr<const MappingDic> YGFrameComFun::getMappingDicForKey(OptionalText key) noexcept {
    return answerOfHost([&](Host& host) { return host.getMappingDicForKey(*key); });
}

std::optional<std::string> YGFrameComFun::getDefualtFolderPath(std::int64_t kind) noexcept {
    return answerOfHost([&](Host& host) { return host.getDefualtFolderPath(kind); });
}

}  // namespace yg
