// SPDX-License-Identifier: MIT
#include "YGConfigManager/net/Transfers.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/net/Unpacking.h"

namespace yg::net {

namespace {

constexpr long mostRedirects = 20;
constexpr std::chrono::milliseconds longestWait = std::chrono::minutes(1);
/// Without the means to be woken, new requests and the end are looked for.
constexpr std::chrono::milliseconds waitWithoutWaking{20};

/// Once in a process and never undone: the application may use the same library.
bool initialise() {
    static const CURLcode result = curl_global_init(CURL_GLOBAL_DEFAULT);
    return result == CURLE_OK;
}

/// Null if there is no memory for them.
curl_slist* requestHeaders() {
    curl_slist* all = nullptr;
    for (const char* line :
         {"Content-Type: application/json; charset=utf-8", "Accept-Encoding: gzip, deflate"}) {
        curl_slist* const longer = curl_slist_append(all, line);
        if (longer == nullptr) {
            curl_slist_free_all(all);
            return nullptr;
        }
        all = longer;
    }
    return all;
}

/// Programs that the application starts do not inherit the connections.
curl_socket_t openSocket(void*, curlsocktype, curl_sockaddr* address) {
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

constexpr const char* tooLarge = "the answer is too large";

constexpr std::string_view encodingName = "content-encoding:";

char lower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

bool equalsInAnyCase(std::string_view text, std::string_view lowerCase) {
    return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                      [](char one, char other) { return lower(one) == other; });
}

bool hasName(std::string_view line, std::string_view lowerCaseName) {
    return equalsInAnyCase(line.substr(0, lowerCaseName.size()), lowerCaseName);
}

}  // namespace

/// One request on its way.
class Transfer {
public:
    using Clock = std::chrono::steady_clock;

    Transfer(Request request, const HttpGetOptions& options, const std::atomic<bool>& isStopping,
             curl_slist* headers)
        : request_(std::move(request)),
          options_(options),
          isStopping_(isStopping),
          handle_(curl_easy_init()),
          lastArrival_(Clock::now()) {
        isReady_ = handle_ != nullptr && headers != nullptr && prepare(headers);
    }
    ~Transfer() { curl_easy_cleanup(handle_); }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    bool isReady() const { return isReady_; }
    CURL* handle() const { return handle_; }
    Clock::time_point idleEnd() const { return lastArrival_ + options_.idleTime; }

    /// `result`: with "ok" the connection has brought as much as it promised.
    Ended end(CURLcode result) && noexcept {
        try {
            std::optional<HttpResponse> response = responseSoFar();
            if (result == CURLE_OK && hasHeaders_ && (!unpacking_ || unpacking_->isWhole())) {
                return {std::move(request_), std::move(body_), std::move(response), std::nullopt};
            }
            std::string error = refusal_;
            if (error.empty()) {
                error =
                    result == CURLE_OK ? "the answer is incomplete" : curl_easy_strerror(result);
            }
            return {std::move(request_), std::nullopt, std::move(response), std::move(error)};
        } catch (...) {
            return {std::move(request_), std::nullopt, std::nullopt, std::string(outOfMemory)};
        }
    }

    /// Has it end because of its silence.
    Ended giveUp() && {
        refusal_ = "the request timed out";
        return std::move(*this).end(CURLE_OPERATION_TIMEDOUT);
    }

private:
    template <class Value>
    bool set(CURLoption option, Value value) {
        return curl_easy_setopt(handle_, option, value) == CURLE_OK;
    }

    std::optional<HttpResponse> responseSoFar() const {
        if (!hasHeaders_) {
            return std::nullopt;
        }
        long status = 0;
        curl_easy_getinfo(handle_, CURLINFO_RESPONSE_CODE, &status);
        const char* url = nullptr;
        curl_easy_getinfo(handle_, CURLINFO_EFFECTIVE_URL, &url);
        const char* type = nullptr;
        curl_easy_getinfo(handle_, CURLINFO_CONTENT_TYPE, &type);
        return HttpResponse{static_cast<std::int32_t>(status), url ? url : request_.url,
                            type ? std::optional<std::string>(type) : std::nullopt};
    }

    // A proxy left to the environment would be a wrong answer without a word, so each option
    // counts.
    bool prepare(curl_slist* headers) {
        const auto idle = static_cast<long>(options_.idleTime.count());
        const auto largest = static_cast<curl_off_t>(options_.largestBody);
        const bool hasWhere = request_.url.find('\0') == std::string::npos &&
                              set(CURLOPT_URL, request_.url.c_str()) &&
                              set(CURLOPT_DEFAULT_PROTOCOL, "none") &&  // nothing is guessed
                              set(CURLOPT_PROTOCOLS_STR, "http,https") &&
                              set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https") &&
                              set(CURLOPT_FOLLOWLOCATION, 1L) &&
                              set(CURLOPT_MAXREDIRS, mostRedirects) && set(CURLOPT_PROXY, "");
        const bool hasWhat = set(CURLOPT_HTTPGET, 1L) && set(CURLOPT_HTTPHEADER, headers) &&
                             set(CURLOPT_HTTP09_ALLOWED, 0L) &&
                             set(CURLOPT_MAXFILESIZE_LARGE, largest);
        // As if each request had a session of its own, and an end that waits for nobody: neither
        // for a signal handler nor for the thread that looks up a name.
        const bool hasHow = set(CURLOPT_FRESH_CONNECT, 1L) && set(CURLOPT_FORBID_REUSE, 1L) &&
                            set(CURLOPT_NOSIGNAL, 1L) && set(CURLOPT_QUICK_EXIT, 1L) &&
                            set(CURLOPT_CONNECTTIMEOUT_MS, idle) &&
                            set(CURLOPT_OPENSOCKETFUNCTION, &openSocket) && trust();
        return hasWhere && hasWhat && hasHow && set(CURLOPT_NOPROGRESS, 0L) &&
               set(CURLOPT_XFERINFOFUNCTION, &Transfer::onProgress) &&
               set(CURLOPT_XFERINFODATA, this) &&
               set(CURLOPT_HEADERFUNCTION, &Transfer::onHeader) && set(CURLOPT_HEADERDATA, this) &&
               set(CURLOPT_WRITEFUNCTION, &Transfer::onBody) && set(CURLOPT_WRITEDATA, this);
    }

    /// The system names its certificates twice, as one file and as a folder. Given both, libcurl
    /// reads the file anew for each connection, a tenth of a second each; given the file alone,
    /// once.
    bool trust() {
        char* systemFile = nullptr;
        curl_easy_getinfo(handle_, CURLINFO_CAINFO, &systemFile);
        const std::string& own = options_.trustedCertificates;
        const char* const file = own.empty() ? systemFile : own.c_str();
        return file == nullptr || ::access(file, R_OK) != 0 ||
               (set(CURLOPT_CAINFO, file) && set<const char*>(CURLOPT_CAPATH, nullptr));
    }

    /// Bytes that arrive are seen here before they are decoded: a slow compressed answer is not
    /// idle. Bodies of redirects are seen nowhere else.
    static int onProgress(void* self, curl_off_t, curl_off_t arrived, curl_off_t, curl_off_t) {
        auto& transfer = *static_cast<Transfer*>(self);
        if (std::exchange(transfer.arrived_, arrived) != arrived) {
            transfer.lastArrival_ = Clock::now();
        }
        const bool isTooLarge = std::cmp_greater(arrived, transfer.options_.largestBody);
        if (isTooLarge) {
            transfer.refusal_ = tooLarge;
        }
        return isTooLarge || transfer.isStopping_ ? 1 : 0;
    }

    static std::size_t onHeader(char* bytes, std::size_t, std::size_t size, void* self) {
        auto& transfer = *static_cast<Transfer*>(self);
        transfer.lastArrival_ = Clock::now();
        transfer.headerBytes_ += size;
        if (transfer.headerBytes_ > transfer.options_.largestHeaders) {
            transfer.refusal_ = tooLarge;
            return 0;
        }
        return transfer.takeHeader({bytes, size}) ? size : 0;
    }

    static std::size_t onBody(char* bytes, std::size_t, std::size_t size, void* self) {
        auto& transfer = *static_cast<Transfer*>(self);
        try {
            return transfer.takeBody({bytes, size}) ? size : 0;
        } catch (...) {
            return 0;
        }
    }

    /// One line. False if the body cannot be read then.
    bool takeHeader(std::string_view line) {
        line = line.substr(0, line.find_last_not_of("\r\n \t") + 1);
        if (line.starts_with("HTTP/")) {
            // Those before it belong to a redirect or said that there is more to come.
            hasHeaders_ = false;
            unpacking_.reset();
        } else if (line.empty()) {
            // Without the empty line the connection may just have been cut.
            hasHeaders_ = true;
        } else if (!hasHeaders_ && hasName(line, encodingName)) {
            return takeEncoding(line.substr(encodingName.size()));
        }
        return true;
    }

    bool takeEncoding(std::string_view encoding) {
        encoding.remove_prefix(std::min(encoding.find_first_not_of(" \t"), encoding.size()));
        if (encoding.empty() || equalsInAnyCase(encoding, "identity")) {
            return true;
        }
        // One of those that the request asks for, and once.
        if (unpacking_ ||
            !(equalsInAnyCase(encoding, "gzip") || equalsInAnyCase(encoding, "x-gzip") ||
              equalsInAnyCase(encoding, "deflate"))) {
            refusal_ = "the answer is encoded in an unknown way";
            return false;
        }
        unpacking_.emplace();
        return true;
    }

    bool takeBody(std::string_view piece) {
        if (unpacking_) {
            const bool isGood = unpacking_->append(piece, options_.largestBody, body_);
            if (!isGood) {
                refusal_ = "the answer cannot be unpacked";
            }
            return isGood;
        }
        if (piece.size() > options_.largestBody - body_.size()) {
            refusal_ = tooLarge;
            return false;
        }
        body_.append(piece);
        return true;
    }

    Request request_;
    const HttpGetOptions& options_;
    const std::atomic<bool>& isStopping_;
    CURL* handle_;
    bool isReady_;
    Clock::time_point lastArrival_;
    curl_off_t arrived_ = 0;
    std::size_t headerBytes_ = 0;
    bool hasHeaders_ = false;
    std::optional<Unpacking> unpacking_;
    std::string body_;
    const char* refusal_ = "";  // why it was cut here
};

Transfers::Transfers(const HttpGetOptions& options, const std::atomic<bool>& isStopping)
    : options_(options),
      isStopping_(isStopping),
      multi_(initialise() ? curl_multi_init() : nullptr),
      headers_(requestHeaders()),
      wakeUp_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      sockets_{{wakeUp_, POLLIN, 0}} {
    curl_multi_setopt(multi_, CURLMOPT_SOCKETFUNCTION, &Transfers::onSocket);
    curl_multi_setopt(multi_, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(multi_, CURLMOPT_TIMERFUNCTION, &Transfers::onTimer);
    curl_multi_setopt(multi_, CURLMOPT_TIMERDATA, this);
}

Transfers::~Transfers() {
    clear();
    curl_multi_cleanup(multi_);
    curl_slist_free_all(headers_);
    ::close(wakeUp_);
}

int Transfers::onSocket(CURL*, curl_socket_t socket, int what, void* self, void*) {
    std::vector<pollfd>& sockets = static_cast<Transfers*>(self)->sockets_;
    const auto known = std::find_if(sockets.begin() + 1, sockets.end(),
                                    [socket](const pollfd& one) { return one.fd == socket; });
    if (what == CURL_POLL_REMOVE) {
        if (known != sockets.end()) {
            sockets.erase(known);
        }
        return 0;
    }
    const int events =
        ((what & CURL_POLL_IN) != 0 ? POLLIN : 0) | ((what & CURL_POLL_OUT) != 0 ? POLLOUT : 0);
    if (known != sockets.end()) {
        known->events = static_cast<short>(events);
        return 0;
    }
    try {
        sockets.push_back({socket, static_cast<short>(events), 0});
        return 0;
    } catch (...) {
        return -1;
    }
}

int Transfers::onTimer(CURLM*, long milliseconds, void* self) {
    auto& timer = static_cast<Transfers*>(self)->timer_;
    timer.reset();
    if (milliseconds >= 0) {
        timer = Clock::now() + std::chrono::milliseconds(milliseconds);
    }
    return 0;
}

void Transfers::add(Request& request) {
    // Beyond the transfer itself nothing takes memory, so that no request is lost.
    running_.reserve(running_.size() + 1);
    unstarted_.reserve(unstarted_.size() + 1);
    auto transfer = std::make_unique<Transfer>(std::move(request), options_, isStopping_, headers_);
    if (transfer->isReady() && multi_ != nullptr &&
        curl_multi_add_handle(multi_, transfer->handle()) == CURLM_OK) {
        running_.push_back(std::move(transfer));
    } else {
        unstarted_.push_back(std::move(*transfer).end(CURLE_FAILED_INIT));
    }
}

void Transfers::act(curl_socket_t socket, int events) {
    // One connection at a time, so that the end of the service waits for one at most.
    if (!isStopping_) {
        int count = 0;
        curl_multi_socket_action(multi_, socket, events, &count);
    }
}

std::vector<Ended> Transfers::step() {
    // Taken before anything ends, so that nothing that has ended is lost.
    std::vector<Ended> ended;
    ended.reserve(unstarted_.size() + running_.size());
    std::move(unstarted_.begin(), unstarted_.end(), std::back_inserter(ended));
    unstarted_.clear();
    for (const pollfd& one : std::exchange(ready_, {})) {
        if (one.revents != 0) {
            act(one.fd, ((one.revents & (POLLIN | POLLHUP)) != 0 ? CURL_CSELECT_IN : 0) |
                            ((one.revents & POLLOUT) != 0 ? CURL_CSELECT_OUT : 0) |
                            ((one.revents & (POLLERR | POLLNVAL)) != 0 ? CURL_CSELECT_ERR : 0));
        }
    }
    if (timer_ && *timer_ <= Clock::now()) {
        timer_.reset();
        act(CURL_SOCKET_TIMEOUT, 0);
    }
    int count = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_, &count)) {
        // The message goes with the handle.
        const CURL* const handle = message->easy_handle;
        const CURLcode result = message->data.result;
        const auto found =
            std::find_if(running_.begin(), running_.end(),
                         [handle](const auto& one) { return one->handle() == handle; });
        const auto index = static_cast<std::size_t>(found - running_.begin());
        ended.push_back(std::move(*remove(index)).end(result));
    }
    const Clock::time_point now = Clock::now();
    for (std::size_t i = running_.size(); i-- > 0;) {
        if (running_[i]->idleEnd() <= now) {
            ended.push_back(std::move(*remove(i)).giveUp());
        }
    }
    return ended;
}

void Transfers::wait() {
    const Clock::time_point now = Clock::now();
    Clock::time_point until = now + (wakeUp_ >= 0 ? longestWait : waitWithoutWaking);
    for (const auto& transfer : running_) {
        until = std::min(until, transfer->idleEnd());
    }
    until = std::max(now, std::min(until, timer_.value_or(until)));
    const auto time = std::chrono::ceil<std::chrono::milliseconds>(until - now);
    ready_ = sockets_;
    ::poll(ready_.data(), ready_.size(), unstarted_.empty() ? static_cast<int>(time.count()) : 0);
    if (ready_.front().revents != 0) {
        eventfd_t ignored = 0;
        ::eventfd_read(wakeUp_, &ignored);
    }
    ready_.erase(ready_.begin());
}

void Transfers::wake() {
    ::eventfd_write(wakeUp_, 1);
}

void Transfers::clear() {
    while (!running_.empty()) {
        remove(running_.size() - 1);
    }
    unstarted_.clear();
}

std::unique_ptr<Transfer> Transfers::remove(std::size_t index) {
    std::swap(running_[index], running_.back());
    std::unique_ptr<Transfer> transfer = std::move(running_.back());
    running_.pop_back();
    curl_multi_remove_handle(multi_, transfer->handle());
    return transfer;
}

}  // namespace yg::net
