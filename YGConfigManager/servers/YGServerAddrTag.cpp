// SPDX-License-Identifier: MIT
#include "YGConfigManager/servers/YGServerAddrTag.h"

#include "YGConfigManager/host/Guarded.h"

namespace yg {

std::shared_ptr<YGServerAddrTag> YGServerAddrTag::initWithServerAddrInfo(OptionalText serverName,
                                                                         OptionalText serverAddr,
                                                                         std::uint64_t serverPort,
                                                                         std::int32_t serverKey) {
    return guarded("server record", [&] {
        auto record = std::make_shared<YGServerAddrTag>();
        record->setServerName(serverName);
        record->setIpAddr(serverAddr);
        record->setServerPort(serverPort);
        record->setServerKey(serverKey);
        return record;
    });
}

}  // namespace yg
