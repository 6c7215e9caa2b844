// SPDX-License-Identifier: MIT
#include "ygconfig/Settings.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <new>
#include <string_view>

#include "YGConfigManager/host/Host.h"

#include "ygconfig/Display.h"
#include "ygconfig/Json.h"

namespace yg::tool {

namespace {

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

}  // namespace

void declareItem(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "FILE", arguments.file, "a settings file's name, app_config.xml for one");
    declareOperand(app, "SECTION", arguments.section, "the name of an element below the root");
    declareOperand(app, "ITEM", arguments.item, "the name of an element in the section");
}

void declareItemText(CLI::App& app, Arguments& arguments) {
    declareItem(app, arguments);
    declareOperand(app, "TEXT", arguments.text, "the text to store; may be empty");
    declareText(app, "--description", "D", arguments.description,
                "what a new item is for; one that is there keeps its own");
    declareFlag(app, "--readonly", arguments.readonly, "through the store that never writes");
}

void declareWebPage(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "FILE", arguments.file, "a table's name, web_page_urls.xml for one");
    declareOptionalOperand(app, "[KEY]", arguments.key, "the key of an address");
    declareText(app, "--replace", "TABLE", arguments.replacement,
                "the path of a new table, - for standard input; instead of a key");
}

void declareRequestUrl(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "KEY", arguments.name, "the key of an address");
    declareRefresh(app, arguments);
}

void declareSettingsFile(CLI::App& app, Arguments& arguments) {
    declareOptionalOperand(app, "[FILE]", arguments.key,
                           "a settings file's name; app_config.xml if not given");
}

void declareWebPageFile(CLI::App& app, Arguments& arguments) {
    declareOptionalOperand(app, "[FILE]", arguments.key,
                           "a table's name; web_page_urls.xml if not given");
}

void declareRefresh(CLI::App& app, Arguments& arguments) {
    declareFlag(app, "--refresh", arguments.refresh,
                "download the list first, and keep it if its digest is another");
}

Answer withoutStore(std::string_view fileName) {
    Answer answer = jsonAnswer(nullptr);
    answer.complaint =
        "ygconfig: nothing was stored: there is no path for '" + printable(fileName) + "'";
    return answer;
}

std::shared_ptr<YGHttpReqUrlMgr> loadRequestUrls(DiagnosticsSink* sink) {
    auto manager = YGHttpReqUrlMgr::make(sink);
    if (!manager)
        throw std::bad_alloc();
    manager->readUrlModelFromFile();
    return manager;
}

std::string refreshRequestUrls(YGHttpReqUrlMgr& manager, const Arguments& arguments) {
    if (!arguments.refresh)
        return "";
    const auto server = currentHost()->configServer();
    if (!server)
        return "ygconfig: host.json names no configServer to download from";
    refresh(manager, *server);
    return "";
}

}  // namespace yg::tool
