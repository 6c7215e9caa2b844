// SPDX-License-Identifier: MIT
//
// The server configuration: a stored file is loaded without and with a listener, which must be the
// same; a delivery is applied and saved, and loaded again, which must give the groups again; and
// items are chosen from. What the entries offer goes with the servers that they gave.
//
// The input is cut at lines "=====" into the stored file, the delivery, its digest, and items, one
// to a line.
#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/text/Split.h"

#include "Loaders.h"
#include "StoredFile.h"
#include "Target.h"

namespace {

using namespace yg;
using yg::fuzz::LoggingHost;
using yg::fuzz::LookingSink;
using yg::fuzz::require;
using yg::fuzz::shown;
using yg::fuzz::StoredFile;
using yg::fuzz::takeUntil;
using yg::fuzz::textOf;

/// The same numbers in every run.
class CountingSource final : public RandomSource {
public:
    std::uint32_t uniform() override { return number_ = number_ * 1664525 + 1013904223; }
    int legacy() override { return static_cast<int>(uniform() >> 1); }
    void restart() { number_ = 1; }

private:
    std::uint32_t number_ = 1;
};

std::string groupsOf(const YGServerCfgLoader& loader) {
    std::string text;
    for (const std::uint64_t type : {1u, 2u, 3u, 4u, 5u, 7u, 8u}) {
        const auto group = loader.listTagWithServerType(type);
        text += shown(group) + '\n';
        if (!group || !group->serverAddrList())
            continue;
        for (const auto& server : *group->serverAddrList()) {
            require(server->serverName() && server->ipAddr(), "a server has name and address");
            require(server->ipAddr()->find(':') == std::string::npos, "an address has no colon");
        }
    }
    return text;
}

/// An entry that offers an address gives at least one server, one without gives none.
void checkOffers(const YGServerCfgLoader& loader) {
    for (const auto& [type, entries] : loader.offers()) {
        const auto group = loader.listTagWithServerType(type);
        require(group && group->serverAddrList(), "a type with offers has a group");
        std::size_t offering = 0;
        for (const ServerOffer& entry : entries)
            offering += std::ranges::any_of(entry.addresses, &AddressOffer::canBeChosen);
        require(offering <= group->serverAddrList()->size(), "an offer gives a server");
        require(offering > 0 || group->serverAddrList()->empty(), "a server has an offer");
    }
}

void choose(std::string_view lines, RandomSource& random) {
    const std::vector<std::string> items = text::split(lines, '\n');
    const std::string chosen = chooseAddress(&items, random);
    const auto colon = chosen.find(':');
    require(chosen.empty() || (colon != std::string::npos && colon == chosen.rfind(':')),
            "a choice is a host and a port");
    const std::string host = chooseHostByPercent(&items, random);
    require(host == items.front() || host.find(':') == std::string::npos,
            "a choice by weight is the first item or a host");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const StoredFile file;
    static const auto host = std::make_shared<LoggingHost>();
    static const std::shared_ptr<Host> before = setHost(host);
    static_cast<void>(before);
    CountingSource random;
    host->storagePath = file.path();

    std::string_view rest = textOf(data, size);
    file.put(takeUntil(rest, "=====\n"));
    const std::string_view delivery = takeUntil(rest, "=====\n");
    const std::string_view digest = takeUntil(rest, "=====\n");

    const auto load = [&](DiagnosticsSink* sink) {
        host->log.clear();
        random.restart();
        return YGServerCfgLoader::initWithIsGray(false, sink, &random);
    };
    const auto silent = load(nullptr);
    const std::string log = host->log;
    LookingSink sink;
    const auto observed = load(&sink);
    require(shown(*observed) == shown(*silent), "a listener changes no answer");
    require(host->log == log, "a listener changes no log line");
    checkOffers(*observed);

    const std::string stored = file.bytes();
    const std::string groups = groupsOf(*observed);
    random.restart();
    if (observed->reloadServerConfigWithData(delivery, digest)) {
        const auto next = load(nullptr);
        require(groupsOf(*next) == groupsOf(*observed), "what was saved gives the groups again");
        require(next->configMd5() == observed->configMd5(), "what was saved has the digest");
        const std::string saved = file.bytes();
        random.restart();
        require(next->reloadServerConfigWithData(saved, digest), "what was saved is XML");
        require(file.bytes() == saved, "saved again it is the same");
    } else {
        require(groupsOf(*observed) == groups, "a refused delivery changes no group");
        require(file.bytes() == stored, "a refused delivery is not saved");
    }
    choose(rest, random);
    return 0;
}
