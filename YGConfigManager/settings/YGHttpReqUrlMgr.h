// SPDX-License-Identifier: MIT
//
// The addresses of the HTTP services by key. The list comes from a JSON file in the user's storage,
// "request_urls_json.txt", and is refreshed from the configuration download server: a download with
// another digest takes the place of the list and of the file, byte for byte.
//
// Any thread may call. A lookup works on the list that it finds when it begins; a download replaces
// the list in one step, on the network service's thread. Nothing waits for the network. Nothing is
// thrown: when memory does not suffice, which is logged, there is no manager or no address, and a
// list stays as it is.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/net/HttpResponse.h"
#include "YGConfigManager/settings/AtomicReference.h"
#include "YGConfigManager/settings/YGHttpReqUrlModel.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

class YG_EXPORT YGHttpReqUrlMgr : public std::enable_shared_from_this<YGHttpReqUrlMgr> {
    struct Key {
        explicit Key() = default;
    };

public:
    /// Hears how a request ended: with the decoded body of any whole answer, whatever its status,
    /// or with none and the error. The response is there as soon as its headers have come.
    using Finish =
        std::function<void(std::optional<std::string> body, std::optional<HttpResponse> response,
                           std::optional<std::string> error)>;

    /// The one manager of the process, made by init() at the first call, also when several threads
    /// call at the same time. Null while memory does not suffice for it.
    static const std::shared_ptr<YGHttpReqUrlMgr>& shared();

    /// A manager that has read the stored file and has started a download, which it does not wait
    /// for. `sink` hears of what is wrong with both, also on the network's thread and from several
    /// threads at the same time, and must outlive both manager and download.
    static std::shared_ptr<YGHttpReqUrlMgr> init(DiagnosticsSink* sink = nullptr);

    /// A manager without a list, which has read and started nothing.
    static std::shared_ptr<YGHttpReqUrlMgr> make(DiagnosticsSink* sink = nullptr);

    YGHttpReqUrlMgr(Key, DiagnosticsSink* sink) : sink_(sink) {}
    YGHttpReqUrlMgr(const YGHttpReqUrlMgr&) = delete;
    YGHttpReqUrlMgr& operator=(const YGHttpReqUrlMgr&) = delete;
    ~YGHttpReqUrlMgr();

    /// Makes the stored file the list; no list when it is not a JSON object. When there is no file
    /// or it cannot be read, the list stays as it is. Logs each of these.
    void readUrlModelFromFile();

    /// Starts a download of the list and returns at once. The list that comes takes the place of
    /// list and stored file if it has a digest, and another one than the list. Anything else
    /// changes nothing. Without a configuration download server nothing is downloaded. `ended`, if
    /// there is one, is called once when all this has ended, on the network's thread; inside the
    /// call when there is no server or no memory to begin. The manager is held until then.
    void updateHttpReqUrls(std::function<void()> ended = nullptr);

    /// The address of the first entry with exactly this key; absent when it has none, when there is
    /// no such entry or no list, and for an absent key.
    std::optional<std::string> httpReqUrlStringWithUrlKey(OptionalText urlKey) const;

    /// Starts a GET of an http or https address and returns at once. `finish`, if there is one, is
    /// called once, on the network's thread; it must not block there, and may start a request.
    /// Without memory to begin it is called inside this call.
    void requestUrl(OptionalText url, Finish finish) const;

    /// The list; null when there is none. It stays as it is, another one takes its place.
    std::shared_ptr<const YGHttpReqUrlModel> urlModel() const { return urlModel_.load(); }

private:
    void read();
    void take(const std::optional<std::string>& body);

    AtomicReference<const YGHttpReqUrlModel> urlModel_;
    DiagnosticsSink* const sink_;
};

}  // namespace yg
