// SPDX-License-Identifier: MIT
//
// A stored list of request URLs and a download: lookups are the first entry of a key, a listener
// changes nothing, and a download is kept byte for byte or not at all.
//
// The input is cut at a line "=====" into the stored list and the download.
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "YGConfigManager/net/HttpGet.h"
#include "YGConfigManager/settings/Transport.h"
#include "YGConfigManager/text/Utf8.h"

#include "Loaders.h"
#include "StoredFile.h"
#include "Target.h"

namespace {

using namespace yg;
using yg::fuzz::LoggingHost;
using yg::fuzz::LookingSink;
using yg::fuzz::require;
using yg::fuzz::StoredFile;
using yg::fuzz::takeUntil;
using yg::fuzz::textOf;

class ServerHost final : public LoggingHost {
public:
    std::optional<std::string> configServer() override { return "127.0.0.1:1"; }
};

std::string described(const YGHttpReqUrlMgr& manager) {
    return manager.urlModel() ? manager.urlModel()->description() : "none";
}

void lookUpAll(const YGHttpReqUrlMgr& manager) {
    require(!manager.httpReqUrlStringWithUrlKey(std::nullopt), "no key finds nothing");
    const auto list = manager.urlModel();
    const auto entries = list ? list->urlConfigs() : nullptr;
    if (!entries)
        return;
    require(text::isValidUtf8(list->description()), "a list is written in UTF-8");
    std::size_t looked = 0;
    for (auto entry = entries->begin(); entry != entries->end() && looked < 64; ++entry, ++looked) {
        const auto& key = (*entry)->urlKey();
        bool isFirst = key.has_value();
        for (auto earlier = entries->begin(); earlier != entry; ++earlier)
            isFirst = isFirst && (*earlier)->urlKey() != key;
        if (isFirst)
            require(manager.httpReqUrlStringWithUrlKey(*key) == (*entry)->urlValue(),
                    "the first entry of a key is found");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const StoredFile file;
    static const auto host = std::make_shared<ServerHost>();
    static const std::shared_ptr<Host> before = setHost(host);
    static_cast<void>(before);
    host->storagePath = file.path();

    std::string_view rest = textOf(data, size);
    const std::string stored(takeUntil(rest, "=====\n"));
    const std::string download(rest);
    const RequestUrlsOver transport{[&](const std::string&, const net::GetCompletion& completion) {
        completion(download, std::nullopt, std::nullopt);
    }};

    const auto run = [&](DiagnosticsSink* sink) {
        file.put(stored);
        host->log.clear();
        const auto manager = transport.make(sink);
        manager->readUrlModelFromFile();
        lookUpAll(*manager);
        const std::string listBefore = described(*manager);
        manager->updateHttpReqUrls();
        lookUpAll(*manager);
        const bool isNew = described(*manager) != listBefore;
        require(file.bytes() == (isNew ? download : stored) || file.bytes() == download,
                "the file is the stored one or the download");
        require(!isNew || file.bytes() == download, "a download is kept byte for byte");
        return described(*manager) + host->log + file.bytes();
    };
    const std::string silent = run(nullptr);
    LookingSink sink;
    require(run(&sink) == silent, "a listener changes no answer, line or byte");

    const auto next = transport.make();
    next->readUrlModelFromFile();
    const std::string kept = described(*next);
    next->updateHttpReqUrls();
    require(described(*next) == kept, "the same download twice changes nothing");
    return 0;
}
