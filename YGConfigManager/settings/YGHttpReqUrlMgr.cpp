// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

#include <new>
#include <utility>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/settings/SettingsRules.h"
#include "YGConfigManager/settings/Storage.h"
#include "YGConfigManager/settings/Transport.h"
#include "YGConfigManager/settings/UrlReports.h"

namespace yg {

namespace {

constexpr std::string_view listFileName = "request_urls_json.txt";
constexpr std::string_view listUrlPath = "/mac/mac_free_free_request_urls_json.txt";
constexpr std::string_view readName = "-[YGHttpReqUrlMgr readUrlModelFromFile]";
constexpr std::string_view takeName = "-[YGHttpReqUrlMgr updateHttpReqUrls]_block_invoke";

/// The authority of the download server; empty when there is none.
std::string configServer() {
    try {
        return currentHost()->configServer().value_or("");
    } catch (...) {
        return {};
    }
}

/// The digest of a list that may be missing.
std::optional<std::string> digestOf(const std::shared_ptr<const YGHttpReqUrlModel>& model) {
    return model ? model->md5Value() : std::nullopt;
}

}  // namespace

YGHttpReqUrlMgr::~YGHttpReqUrlMgr() = default;

const std::shared_ptr<YGHttpReqUrlMgr>& YGHttpReqUrlMgr::shared() {
    static Immortal<std::shared_ptr<YGHttpReqUrlMgr>> none;
    return *guarded(
        "load request urls",
        [] {
            // Without memory for it the next call tries again.
            static Immortal<std::shared_ptr<YGHttpReqUrlMgr>> manager([] {
                auto made = init();
                return made ? made : throw std::bad_alloc();
            }());
            return &*manager;
        },
        &*none);
}

std::shared_ptr<YGHttpReqUrlMgr> YGHttpReqUrlMgr::init(DiagnosticsSink* sink) {
    auto manager = make(sink);
    if (manager) {
        manager->readUrlModelFromFile();
        manager->updateHttpReqUrls();
    }
    return manager;
}

std::shared_ptr<YGHttpReqUrlMgr> YGHttpReqUrlMgr::make(DiagnosticsSink* sink) {
    return guarded("load request urls",
                   [sink] { return std::make_shared<YGHttpReqUrlMgr>(Key(), sink); });
}

void YGHttpReqUrlMgr::readUrlModelFromFile() {
    guarded("load request urls", [this] { read(); });
}

void YGHttpReqUrlMgr::read() {
    const Reporter reporter(sink_);
    const std::optional<std::string> path = storagePath(listFileName, false);
    writeBusCommonLogInside("%s L%d filePath: %@", readName, 71, path);
    reporter.reading(path.value_or(""));
    if (!path || path->empty() || !files::fileExists(*path)) {
        writeBusCommonLogInside("%s L%d [%@]文件不存在", readName, 75, path);
        reporter.report(rules::unreadableUrlList, {}, {}, path.value_or(""));
        return;
    }
    const files::FileReading file = files::readWholeFile(*path);
    if (!file) {
        writeBusCommonLogInside("%s L%d 读不到数据", readName, 84);
        reporter.report(rules::unreadableUrlList, {}, {}, file.error);
        return;
    }
    const std::shared_ptr<const YGHttpReqUrlModel> model = YGHttpReqUrlModel::read(file.bytes);
    urlModel_.store(model);
    writeBusCommonLogInside("%s L%d _urlModel.Md5: %@", readName, 91, digestOf(model));
    reportUrlList(file.bytes, reporter);
}

void YGHttpReqUrlMgr::updateHttpReqUrls(std::function<void()> ended) {
    const bool isStarted = guarded("download request urls", [&] {
        const std::string server = configServer();
        if (server.empty())
            return false;
        std::string url = "http://" + server + std::string(listUrlPath);
        // Memory is taken before `ended` is given away.
        auto finish = std::make_shared<std::function<void()>>();
        net::GetCompletion completion = [self = shared_from_this(), finish](
                                            const std::optional<std::string>& body,
                                            const auto&...) {
            guarded("download request urls", [&] { self->take(body); });
            if (*finish)
                (*finish)();
        };
        *finish = std::exchange(ended, nullptr);
        startGet(std::move(url), std::move(completion));
        return true;
    });
    if (!isStarted && ended)
        ended();
}

/// Takes what was downloaded. Neither status nor error count: any body that can be read does.
void YGHttpReqUrlMgr::take(const std::optional<std::string>& body) {
    const Reporter reporter(sink_);
    if (!body)
        return;
    reportUrlList(*body, reporter);
    std::shared_ptr<const YGHttpReqUrlModel> model = YGHttpReqUrlModel::read(*body);
    const std::optional<std::string> digest = digestOf(model);
    if (!digest || digest->empty())
        return;
    const auto current = urlModel_.load();
    const std::optional<std::string> currentDigest = digestOf(current);
    if (digest == currentDigest) {
        if (!haveSameEntries(*model, *current))
            reporter.report(rules::sameDigestOtherEntries, {}, "md5Value", *digest);
        return;
    }
    const std::optional<std::string> path = storagePath(listFileName, true);
    if (!path || path->empty())
        return;
    writeBusCommonLogInside("%s L%d newMd5Value : [%@]; oldMd5Value : [%@]", takeName, 110, digest,
                            currentDigest);
    // The next start begins with the old list when it cannot be written; this one goes on.
    const bool isSaved = writeStoredFile(path, *body).ok;
    urlModel_.store(std::move(model));
    if (!isSaved)
        reporter.report(rules::unsavedFile, {}, {}, *path);
}

std::optional<std::string> YGHttpReqUrlMgr::httpReqUrlStringWithUrlKey(OptionalText urlKey) const {
    return guarded("read request urls", [&]() -> std::optional<std::string> {
        const std::shared_ptr<const YGHttpReqUrlModel> model = urlModel_.load();
        const auto entries = model && urlKey ? model->urlConfigs() : nullptr;
        if (entries) {
            for (const std::shared_ptr<YGHttpUrlConfigModel>& entry : *entries) {
                if (entry->urlKey() && *entry->urlKey() == *urlKey)
                    return entry->urlValue();
            }
        }
        Reporter(sink_).report(rules::unknownUrlKey, {}, {}, *urlKey);
        return std::nullopt;
    });
}

void YGHttpReqUrlMgr::requestUrl(OptionalText url, Finish finish) const {
    const bool isStarted = guarded("request url", [&] {
        std::string address(*url);
        startGet(std::move(address), std::exchange(finish, nullptr));
        return true;
    });
    if (!isStarted && finish)
        finish(std::nullopt, std::nullopt, std::string(outOfMemory));
}

}  // namespace yg
