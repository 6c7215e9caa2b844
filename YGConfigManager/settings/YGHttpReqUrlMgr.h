// SPDX-License-Identifier: MIT
//
// The addresses of the HTTP services by key. The list comes from a JSON file in the user's storage,
// "request_urls_json.txt", and is refreshed from the configuration download server: a download with
// another digest takes the place of the list and of the file, byte for byte.
//
// Any thread may call. A lookup works on the list that it finds when it begins, and waits for
// nothing; a download replaces the list in one step, on the network's thread. Nothing waits
// for the network. Downloads and readings of the file end in any order, and the one begun last
// wins: what was begun before another that gave a list changes nothing. List and file change
// together, so they agree as far as the file could be written. Of several managers on one file each
// has a list of its own, and the file is the one that was written last.
//
// Nothing is thrown, and what the application's functions and sinks throw is logged and changes
// nothing: when memory does not suffice, which is logged, there is no manager or no address, and a
// list stays as it is.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/host/Callables.h"
#include "YGConfigManager/net/HttpResponse.h"
#include "YGConfigManager/settings/YGHttpReqUrlModel.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

class YG_EXPORT YGHttpReqUrlMgr : public std::enable_shared_from_this<YGHttpReqUrlMgr> {
    struct Key {
        explicit Key() = default;
    };

public:
    /// Called when a request ended: with the decoded body of any whole answer, whatever its status,
    /// or with none and the error. The response is there as soon as its headers have come.
    using Finish =
        std::function<void(std::optional<std::string> body, std::optional<HttpResponse> response,
                           std::optional<std::string> error)>;

    /// The one manager of the process, made by init() at the first call, also when several threads
    /// call at the same time. Null while memory does not suffice for it.
    static const std::shared_ptr<YGHttpReqUrlMgr>& shared();

    /// A manager that has read the stored file and has started a download, which it does not wait
    /// for. Findings go to the sink, see diagnostics/DiagnosticsSink.h: also on the network's
    /// thread, on several threads at the same time, and until the download has ended.
    static std::shared_ptr<YGHttpReqUrlMgr> init(DiagnosticsSink* sink = nullptr);

    /// A manager without a list, which has read and started nothing.
    static std::shared_ptr<YGHttpReqUrlMgr> make(DiagnosticsSink* sink = nullptr);

    /// For the library; call init() or make().
    YGHttpReqUrlMgr(Key, DiagnosticsSink* sink,
                    std::function<void(std::string url, Finish finish)> transport);
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
    /// call when there is no server or no memory to begin; never when the process ends first. The
    /// manager is held until then.
    void updateHttpReqUrls(std::function<void()> ended = nullptr);

    /// What a download of the list came to.
    struct Update {
        /// What became of the list.
        enum class Outcome {
            newList,     ///< what came is the list now
            sameDigest,  ///< the list has the digest of what came, and stays
            overtaken,   ///< a download or a reading that began later has given a list, which stays
            failed,      ///< nothing that could be used came, and the list stays
        };
        Outcome outcome = Outcome::failed;  ///< what became of the list
        /// Why it failed, in one line. With a new list why the file could not be written, so that
        /// the next start begins with the old list. "" otherwise.
        std::string reason;
    };

    /// The same with a completion that is called once with what it came to: always on the main
    /// thread, from the main queue (host/MainQueue.h), which the application drains, and never
    /// inside this call. It is lost when the queue does not take it, which is logged, and when the
    /// process ends first. The manager is held until then.
    template <std::invocable<const Update&> Ended>
    requires(!std::invocable<Ended&> &&
             !CapturesWhatCannotBeCopied<Ended>) void updateHttpReqUrls(Ended ended) {
        updateAndTell(std::move(ended));
    }
    template <CapturesWhatCannotBeCopied Ended>
    void updateHttpReqUrls(Ended&&) = delete;  // capture a shared_ptr

    /// The address of the first entry with exactly this key; absent when it has none, when there is
    /// no such entry or no list, and for an absent key.
    std::optional<std::string> httpReqUrlStringWithUrlKey(OptionalText urlKey) const;

    /// Starts a GET of an http or https address and returns at once. `finish`, if there is one, is
    /// called once, on the network's thread; it must not block there, and may start a request.
    /// Without memory to begin it is called inside this call.
    void requestUrl(OptionalText url, Finish finish) const;
    template <CapturesWhatCannotBeCopied Ended>
    void requestUrl(OptionalText, Ended&&) const = delete;  // capture a shared_ptr

    /// The list; null when there is none. It stays as it is, another one takes its place.
    std::shared_ptr<const YGHttpReqUrlModel> urlModel() const;

private:
    friend struct RequestUrlsOver;
    struct State;

    /// How requests reach the network: starts a GET, and calls `finish` once.
    using Transport = std::function<void(std::string url, Finish finish)>;

    static std::shared_ptr<YGHttpReqUrlMgr> init(DiagnosticsSink* sink, Transport transport);
    static std::shared_ptr<YGHttpReqUrlMgr> make(DiagnosticsSink* sink, Transport transport);

    void read();
    Update take(std::uint64_t number, std::string_view url, const std::optional<std::string>& body,
                const std::optional<std::string>& error);
    void updateAndTell(std::function<void(const Update&)> ended);
    void download(std::function<void(const Update&)> ended);

    const std::unique_ptr<State> state_;
    const Transport transport_;
    DiagnosticsSink* const sink_;
};

}  // namespace yg
