// SPDX-License-Identifier: MIT
#include "YGConfigManager/servers/YGServerAddrTag.h"

#include "YGConfigManager/host/Guarded.h"

namespace yg {

std::shared_ptr<YGServerAddrTag> YGServerAddrTag::initWithServerAddrInfo(
    std::optional<std::string_view> serverName, std::optional<std::string_view> serverAddr,
    std::uint64_t serverPort, std::int32_t serverKey) {
    return guarded("server record", [&] {
        auto record = std::make_shared<YGServerAddrTag>();
        record->serverName_ = serverName;
        record->ipAddr_ = serverAddr;
        record->serverPort_ = serverPort;
        record->serverKey_ = serverKey;
        return record;
    });
}

}  // namespace yg
