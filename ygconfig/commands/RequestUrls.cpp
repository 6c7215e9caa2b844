// SPDX-License-Identifier: MIT
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/YGFrameComFun.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

#include "ygconfig/commandline/Suggestion.h"
#include "ygconfig/commands/Commands.h"
#include "ygconfig/commands/Names.h"
#include "ygconfig/drawing/Display.h"
#include "ygconfig/drawing/SettingsView.h"
#include "ygconfig/files/NothingStored.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

void declareRefresh(CLI::App& app, Arguments& arguments) {
    declareFlag(app, "--refresh", arguments.refresh,
                "download the list first, and keep it if its digest differs");
}

void declareKey(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "KEY", arguments.name, "the key of an address",
                   named({NameKind::requestUrl}));
    declareRefresh(app, arguments);
}

/// The end of something on another thread.
class Ending {
public:
    void set() {
        const std::lock_guard lock(mutex_);
        isSet_ = true;
        changed_.notify_all();
    }
    /// False when it has not come after this time.
    bool waitFor(std::chrono::seconds time) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, time, [this] { return isSet_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isSet_ = false;
};

/// Starts a download and waits for its end.
void refresh(YGHttpReqUrlMgr& manager, std::string_view server) {
    const auto ending = std::make_shared<Ending>();
    manager.updateHttpReqUrls([ending] { ending->set(); });
    const std::string line = "ygconfig: waiting for " + printable(server);
    std::chrono::seconds step(1);
    for (std::chrono::seconds waited(0); !ending->waitFor(step); step = std::chrono::seconds(5)) {
        waited += step;
        std::fprintf(stderr, "%s, %lld s\n", line.c_str(), static_cast<long long>(waited.count()));
    }
}

/// With --refresh, waits for a download to end, and says so on standard error when that takes
/// longer than a second. Answers a line on why there can be no download; "" otherwise.
std::string refreshIfAsked(YGHttpReqUrlMgr& manager, const Arguments& arguments) {
    if (!arguments.refresh)
        return "";
    const auto server = currentHost()->configServer();
    if (!server)
        return "ygconfig: host.json names no configServer to download from";
    refresh(manager, *server);
    return "";
}

/// A manager that has read the stored list.
std::shared_ptr<YGHttpReqUrlMgr> loadRequestUrls(DiagnosticsSink* sink) {
    auto manager = YGHttpReqUrlMgr::make(sink);
    if (!manager)
        throw std::bad_alloc();
    manager->readUrlModelFromFile();
    return manager;
}

Answer dumpRequestUrls(const Session& session) {
    return jsonAnswer(loadRequestUrls(session.unreadable)->urlModel());
}

Answer showRequestUrls(const Session& session) {
    const auto manager = loadRequestUrls(session.unreadable);
    std::string complaint = refreshIfAsked(*manager, session.arguments);
    const auto path = session.arguments.withoutRoot(
        YGFrameComFun::getStorageFilePath(1, std::nullopt, "request_urls_json.txt", false));
    return {SettingsView(session.paint()).requestUrls(manager->urlModel(), path.value_or("")),
            ExitCode::answer, std::move(complaint)};
}

std::vector<std::string> keysOf(const YGHttpReqUrlMgr& manager) {
    std::vector<std::string> keys;
    const auto list = manager.urlModel();
    if (const auto entries = list ? list->urlConfigs() : nullptr) {
        for (const auto& entry : *entries) {
            if (entry->urlKey())
                keys.push_back(*entry->urlKey());
        }
    }
    return keys;
}

Answer findRequestUrl(const Session& session) {
    const std::string& key = session.arguments.name;
    NothingStored nothing(session.unreadable);
    const auto manager = loadRequestUrls(&nothing);
    nothing.beginStoring();
    std::string complaint = refreshIfAsked(*manager, session.arguments);
    if (complaint.empty())
        complaint = nothing.complaint();
    Answer answer = jsonAnswer(manager->httpReqUrlStringWithUrlKey(key));
    if (answer.exitCode != ExitCode::answer)
        addLine(complaint, nothingNamed("request URL", key, keysOf(*manager)));
    answer.complaint = std::move(complaint);
    return answer;
}

constexpr std::string_view requestUrlNotes =
    "--refresh downloads http://SERVER/mac/mac_free_free_request_urls_json.txt from the "
    "configServer\n"
    "of host.json and waits for the end. A list with another digest is written to ROOT/user and "
    "used;\n"
    "after any failure the stored list is used. Without --refresh nothing is downloaded. If the "
    "list\n"
    "cannot be downloaded or stored, a line on standard error says why.\n";

constexpr Command table[] = {
    {"dump request-urls", "the stored list of request URLs, as JSON; null if there is none",
     "  ygconfig dump request-urls --root examples/terminal\n", "", nullptr, dumpRequestUrls},

    {"show request-urls", "the addresses of HTTP services by key",
     "  ygconfig show request-urls --root examples/terminal\n"
     "  ygconfig show request-urls --root examples/terminal --refresh\n",
     urlsLegend, declareRefresh, showRequestUrls, true, true},

    {"request-url", "the address of an HTTP service, as a JSON string; null if there is none",
     "  ygconfig request-url quote_snapshot --root examples/terminal\n"
     "  ygconfig request-url quote_snapshot --refresh --root examples/terminal\n",
     requestUrlNotes, declareKey, findRequestUrl},
};

}  // namespace

NameList requestUrlNames(const Session& session, NameGroups) {
    return keysOf(*loadRequestUrls(session.unreadable));
}

std::span<const Command> requestUrlCommands() {
    return table;
}

}  // namespace yg::tool
