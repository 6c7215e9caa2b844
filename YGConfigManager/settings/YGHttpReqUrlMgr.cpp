// SPDX-License-Identifier: MIT
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

#include <atomic>
#include <exception>
#include <mutex>
#include <new>
#include <utility>

#include "YGConfigManager/diagnostics/KeptFindings.h"
#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/MainQueue.h"
#include "YGConfigManager/net/HttpGet.h"
#include "YGConfigManager/records/JsonEntry.h"
#include "YGConfigManager/settings/AtomicReference.h"
#include "YGConfigManager/settings/Storage.h"

namespace yg {

namespace {

constexpr std::string_view listFileName = "request_urls_json.txt";
constexpr std::string_view listUrlPath = "/mac/mac_free_free_request_urls_json.txt";
// Parts of fixed log texts, as in YGWebPageUrlConfig.cpp; so are the numbers behind "L".
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

/// For calls of the sink. Whatever it throws, the list is taken.
constexpr std::string_view reporting = "report request urls";

constexpr std::string_view downloading = "download request urls";

/// Without its reason where memory does not suffice for it.
YGHttpReqUrlMgr::Update failedFor(std::string_view reason) noexcept {
    YGHttpReqUrlMgr::Update update;
    try {
        update.reason = reason;
    } catch (const std::bad_alloc&) {
        // The outcome counts.
    }
    return update;
}

/// Calls what the application gave, which may throw.
template <class Completion, class... Arguments>
void complete(const Completion& completion, Arguments&&... arguments) {
    guarded("request completion", [&] {
        if (completion)
            completion(std::forward<Arguments>(arguments)...);
    });
}

/// The completion of one request, which comes once: a transport may throw after it has called it,
/// or before.
template <class Completion>
class Once {
public:
    /// Before the request is begun.
    void keep(Completion completion) noexcept { completion_ = std::move(completion); }

    template <class... Arguments>
    void call(Arguments&&... arguments) {
        if (isCalled_.exchange(true))
            return;
        const Completion completion = std::exchange(completion_, nullptr);
        complete(completion, std::forward<Arguments>(arguments)...);
    }

private:
    Completion completion_;
    std::atomic<bool> isCalled_ = false;
};

}  // namespace

using Reference = AtomicReference<const YGHttpReqUrlModel>;

struct YGHttpReqUrlMgr::State {
    Reference list;
    std::atomic<std::uint64_t> begun = 0;  ///< downloads and readings, numbered from 1
    std::mutex lock;                       ///< held while list and file change, never by a lookup
    std::uint64_t taken = 0;               ///< the number of the one taken last, under the lock
};

YGHttpReqUrlMgr::YGHttpReqUrlMgr(Key, DiagnosticsSink* sink, Transport transport)
    : state_(std::make_unique<State>()), transport_(std::move(transport)), sink_(sink) {}

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
    return init(sink, net::get);
}

std::shared_ptr<YGHttpReqUrlMgr> YGHttpReqUrlMgr::init(DiagnosticsSink* sink, Transport transport) {
    auto manager = make(sink, std::move(transport));
    if (manager) {
        manager->readUrlModelFromFile();
        manager->updateHttpReqUrls();
    }
    return manager;
}

std::shared_ptr<YGHttpReqUrlMgr> YGHttpReqUrlMgr::make(DiagnosticsSink* sink) {
    return make(sink, net::get);
}

std::shared_ptr<YGHttpReqUrlMgr> YGHttpReqUrlMgr::make(DiagnosticsSink* sink, Transport transport) {
    return guarded("load request urls", [&] {
        return std::make_shared<YGHttpReqUrlMgr>(Key(), sink, std::move(transport));
    });
}

std::shared_ptr<const YGHttpReqUrlModel> YGHttpReqUrlMgr::urlModel() const {
    return state_->list.load();
}

void YGHttpReqUrlMgr::readUrlModelFromFile() {
    guarded("load request urls", [this] { read(); });
}

void YGHttpReqUrlMgr::read() {
    const Reporter reporter(sink_);
    const std::optional<std::string> path = storagePath(listFileName, false);
    writeBusCommonLogInside("%s L%d filePath: %@", readName, 71, path);
    guarded(reporting, [&] { reporter.reading(path.value_or("")); });
    if (!path || path->empty() || !files::fileExists(*path)) {
        writeBusCommonWarning("%s L%d [%@]文件不存在", readName, 75, path);
        reporter.report("unreadable-url-list"_rule, path.value_or(""));
        return;
    }
    KeptFindings found(sink_);
    files::FileReading file;
    std::shared_ptr<const YGHttpReqUrlModel> model;
    {
        // No download may write between what is read here and what becomes the list.
        const std::lock_guard lock(state_->lock);
        file = files::readWholeFile(*path);
        if (file) {
            model = YGHttpReqUrlModel::read({file.bytes, *path}, "unreadable-url-list"_rule,
                                            found.reporter());
            state_->list.store(Reference::Next(model));
            if (model)
                state_->taken = ++state_->begun;
        }
    }
    if (!file) {
        writeBusCommonWarning("%s L%d 读不到数据", readName, 84);
        reporter.unreadable("unreadable-url-list"_rule, *path, file.error);
        return;
    }
    writeBusCommonLogInside("%s L%d _urlModel.Md5: %@", readName, 91, digestOf(model));
    found.passOn();
}

void YGHttpReqUrlMgr::updateHttpReqUrls(std::function<void()> ended) {
    std::function<void(const Update&)> wrapped;
    const bool isWrapped = guarded(downloading, [&] {
        // Memory is taken before `ended` is given away.
        const auto kept = std::make_shared<std::function<void()>>();
        wrapped = [kept](const Update&) { complete(*kept); };
        *kept = std::exchange(ended, nullptr);
        return true;
    });
    if (isWrapped)
        download(std::move(wrapped));
    else
        complete(ended);
}

void YGHttpReqUrlMgr::updateAndTell(std::function<void(const Update&)> ended) {
    guarded(downloading, [&] {
        download([ended = std::move(ended)](const Update& update) {
            postToMainQueue([ended, update] { complete(ended, update); });
        });
    });
}

/// `ended` is called on the network's thread, or inside the call if nothing was begun.
void YGHttpReqUrlMgr::download(std::function<void(const Update&)> ended) {
    std::shared_ptr<Once<std::function<void(const Update&)>>> once;
    std::string_view reason = outOfMemory;
    const bool isStarted = guarded(downloading, [&] {
        const std::string server = configServer();
        if (server.empty()) {
            reason = "the host names no server";
            return false;
        }
        std::string url = "http://" + server + std::string(listUrlPath);
        // Memory is taken before `ended` is given away.
        once = std::make_shared<Once<std::function<void(const Update&)>>>();
        net::GetCompletion completion = [self = shared_from_this(), once, number = ++state_->begun,
                                         url](const std::optional<std::string>& body, const auto&,
                                              const std::optional<std::string>& error) {
            once->call(guarded(
                downloading, [&] { return self->take(number, url, body, error); },
                failedFor(outOfMemory)));
        };
        once->keep(std::exchange(ended, nullptr));
        transport_(std::move(url), std::move(completion));
        return true;
    });
    if (isStarted)
        return;
    const Update failed = failedFor(reason);
    complete(ended, failed);
    if (once)
        once->call(failed);
}

/// Takes what the request of that number has downloaded. Neither status nor error count: any body
/// that can be read does.
YGHttpReqUrlMgr::Update YGHttpReqUrlMgr::take(std::uint64_t number, std::string_view url,
                                              const std::optional<std::string>& body,
                                              const std::optional<std::string>& error) {
    const Reporter reporter(sink_);
    guarded(reporting, [&] { reporter.reading(url); });
    if (!body) {
        reporter.report("failed-download"_rule, url, error.value_or(""));
        return failedFor(error.value_or("nothing came"));
    }
    KeptFindings found(sink_);
    const std::shared_ptr<const YGHttpReqUrlModel> model =
        YGHttpReqUrlModel::read({*body, url}, "failed-download"_rule, found.reporter());
    guarded(reporting, [&] { found.passOn(); });
    const std::optional<std::string> digest = digestOf(model);
    if (!digest || digest->empty())
        return failedFor(model ? "what came has no digest" : "what came is no JSON object");
    Reference::Next next(model);
    std::unique_lock lock(state_->lock);
    // What began later has been taken before.
    if (number < state_->taken)
        return {Update::Outcome::overtaken, ""};
    const auto current = urlModel();
    const std::optional<std::string> currentDigest = digestOf(current);
    if (digest == currentDigest) {
        state_->taken = number;
        lock.unlock();
        if (reporter && model->description() != current->description())
            reporter.report("same-digest-other-entries"_rule, url, *digest);
        return {Update::Outcome::sameDigest, ""};
    }
    const std::optional<std::string> path = storagePath(listFileName, true);
    if (!path || path->empty()) {
        lock.unlock();
        const std::string reason = files::describeFailure(listFileName, noPathToWrite);
        reporter.unsaved(listFileName, reason);
        return failedFor(reason);
    }
    writeBusCommonLogInside("%s L%d newMd5Value : [%@]; oldMd5Value : [%@]", takeName, 110, digest,
                            currentDigest);
    // The next start begins with the old list when it cannot be written; this one goes on.
    files::FileWriting writing = writeStoredFile(listFileName, path, *body);
    state_->list.store(std::move(next));
    state_->taken = number;
    lock.unlock();
    if (!writing)
        guarded(reporting, [&] { reporter.unsaved(listFileName, writing.error); });
    return {Update::Outcome::newList, std::move(writing.error)};
}

std::optional<std::string> YGHttpReqUrlMgr::httpReqUrlStringWithUrlKey(OptionalText urlKey) const {
    return guarded("read request urls", [&]() -> std::optional<std::string> {
        const std::shared_ptr<const YGHttpReqUrlModel> model = urlModel();
        const auto entries = model && urlKey ? model->urlConfigs() : nullptr;
        if (entries) {
            for (const std::shared_ptr<YGHttpUrlConfigModel>& entry : *entries) {
                if (entry->urlKey() && *entry->urlKey() == *urlKey)
                    return entry->urlValue();
            }
        }
        Reporter(sink_).report("unknown-url-key"_rule, {}, *urlKey);
        return std::nullopt;
    });
}

void YGHttpReqUrlMgr::requestUrl(OptionalText url, Finish finish) const {
    std::shared_ptr<Once<Finish>> once;
    std::string error(outOfMemory);
    const bool isStarted = guarded("request url", [&] {
        std::string address(*url);
        net::GetCompletion completion;
        if (finish) {
            once = std::make_shared<Once<Finish>>();
            completion = [once](std::optional<std::string> body,
                                std::optional<HttpResponse> response,
                                std::optional<std::string> cause) {
                once->call(std::move(body), std::move(response), std::move(cause));
            };
            once->keep(std::exchange(finish, nullptr));
        }
        try {
            transport_(std::move(address), std::move(completion));
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& thrown) {
            error = thrown.what();
            throw;
        } catch (...) {
            error = "unknown exception";
            throw;
        }
        return true;
    });
    if (!isStarted) {
        complete(finish, std::nullopt, std::nullopt, error);
        if (once)
            once->call(std::nullopt, std::nullopt, error);
    }
}

}  // namespace yg
