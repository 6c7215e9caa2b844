// SPDX-License-Identifier: MIT
//
// One server with the one address that was chosen for it. A plain record, held by shared pointers.
// Not synchronised: a record that one thread changes must not be read by another.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "YGConfigManager/export.h"
#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/text/OwnedText.h"

namespace yg {

class YG_EXPORT YGServerAddrTag {
public:
    /// A new record with these four values, unchanged; null when memory does not suffice.
    static std::shared_ptr<YGServerAddrTag> initWithServerAddrInfo(OptionalText serverName,
                                                                   OptionalText serverAddr,
                                                                   std::uint64_t serverPort,
                                                                   std::int32_t serverKey);

    /// The server's name, one of those in its entry's "name".
    const std::optional<std::string>& serverName() const { return serverName_; }
    void setServerName(OwnedText name) { serverName_ = std::move(name); }

    /// The host of the chosen address as the file has it, neither resolved nor checked.
    const std::optional<std::string>& ipAddr() const { return ipAddr_; }
    void setIpAddr(OwnedText addr) { ipAddr_ = std::move(addr); }

    /// The port of the chosen address, not checked: a text that is not a number gives 0, a negative
    /// number its two's complement.
    std::uint64_t serverPort() const { return serverPort_; }
    void setServerPort(std::uint64_t port) { serverPort_ = port; }

    /// The entry's "key", the same for all servers of the entry.
    std::int32_t serverKey() const { return serverKey_; }
    void setServerKey(std::int32_t key) { serverKey_ = key; }

private:
    std::optional<std::string> serverName_;
    std::optional<std::string> ipAddr_;
    std::uint64_t serverPort_ = 0;
    std::int32_t serverKey_ = 0;
};

template <>
struct Description<YGServerAddrTag> {
    static constexpr std::tuple fields{
        Field{"serverName", &YGServerAddrTag::serverName},
        Field{"ipAddr", &YGServerAddrTag::ipAddr},
        Field{"serverPort", &YGServerAddrTag::serverPort},
        Field{"serverKey", &YGServerAddrTag::serverKey},
    };
};

}  // namespace yg
