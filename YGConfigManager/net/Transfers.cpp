// SPDX-License-Identifier: MIT
#include "YGConfigManager/net/Transfers.h"

#include <algorithm>
#include <climits>
#include <iterator>
#include <linux/tcp.h>
#include <mutex>
#include <netinet/in.h>
#include <optional>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/net/CloseOnExec.h"
#include "YGConfigManager/net/Libcurl.h"
#include "YGConfigManager/net/Unpacking.h"
#include "YGConfigManager/process/ForkMutex.h"

namespace yg::net {

namespace {

constexpr long maxRedirects = 20;
constexpr std::chrono::milliseconds longestWait = std::chrono::minutes(1);
/// Without the means to be woken, new requests and the end are looked for.
constexpr std::chrono::milliseconds waitWithoutWaking{20};

/// Held in each call of libcurl. It and OpenSSL have locks of their own, which the child of a fork
/// would find taken for ever.
constinit ForkMutex libraryUse;

/// Where OpenSSL keeps what belongs to the application.
constexpr int applicationData = 0;

/// Null if there is no memory for them.
curl_slist* requestHeaders() {
    curl_slist* all = nullptr;
    for (const char* line :
         {"Content-Type: application/json; charset=utf-8", "Accept-Encoding: gzip, deflate"}) {
        curl_slist* const longer = libcurl().listAppend(all, line);
        if (!longer) {
            libcurl().listFree(all);
            return nullptr;
        }
        all = longer;
    }
    return all;
}

constexpr const char* tooLarge = "the answer is too large";
constexpr const char* cannotBeUnpacked = "the answer cannot be unpacked";

constexpr std::string_view contentEncoding = "content-encoding:";
constexpr std::string_view contentType = "content-type:";
constexpr std::string_view transferEncoding = "transfer-encoding:";

// Those that an answer may have without a body, and the first of an answer.
constexpr long ok = 200;
constexpr long noContent = 204;
constexpr long notModified = 304;

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

/// By a connection, since it began; 0 if the system does not say.
std::uint64_t bytesReceived(int socket) {
    tcp_info info{};
    socklen_t size = sizeof info;
    ::getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size);
    return info.tcpi_bytes_received;
}

/// Without the blanks at both ends.
std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
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
          lastArrival_(Clock::now()) {
        const std::lock_guard use(libraryUse);
        handle_ = libcurl().easyInit();
        isReady_ = handle_ && headers && prepare(headers);
    }
    ~Transfer() {
        const std::lock_guard use(libraryUse);
        libcurl().easyCleanup(handle_);
    }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    bool isReady() const { return isReady_; }
    CURL* handle() const { return handle_; }
    Clock::time_point idleEnd() const { return lastArrival_ + options_.idleTime; }

    /// Bytes have come that libcurl will read now. It shows whole lines of headers and the body; a
    /// part of a line, TLS and what stands between the pieces of a body are seen only here.
    void arrive(std::uint64_t bytes) {
        lastArrival_ = Clock::now();
        bytesUnseen_ += bytes;
    }

    /// `result`: with "ok" the connection has brought as much as it promised.
    Ended end(CURLcode result) && noexcept {
        try {
            if (result == CURLE_OK && hasHeaders_ && hasWholeConnection() &&
                isWhole(packedForTheWay_) && isWhole(packed_))
                return {std::move(request_), std::move(body_), std::move(response_), std::nullopt};
            std::string error = refusal_;
            if (error.empty()) {
                error =
                    result == CURLE_OK ? "the answer is incomplete" : libcurl().easyError(result);
            }
            return {std::move(request_), std::nullopt, std::move(response_), std::move(error)};
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
        return libcurl().easySetOption(handle_, option, value) == CURLE_OK;
    }

    /// libcurl takes TLS that was cut for TLS that ended. Where neither a length nor chunks say how
    /// much belongs to a body, only the end of TLS does; without TLS nothing can.
    bool hasWholeConnection() const { return hasLength_ || !isTls_ || isTlsClosed_; }

    static bool isWhole(const std::optional<Unpacking>& unpacking) {
        return !unpacking || unpacking->isWhole();
    }

    // A proxy left to the environment would be a wrong answer without a word, so each option
    // counts.
    bool prepare(curl_slist* headers) {
        const auto largest = static_cast<curl_off_t>(options_.largestBody);
        const bool hasWhere = request_.url.find('\0') == std::string::npos &&
                              set(CURLOPT_URL, request_.url.c_str()) &&
                              set(CURLOPT_DEFAULT_PROTOCOL, "none") &&  // nothing is guessed
                              set(CURLOPT_PROTOCOLS_STR, "http,https") &&
                              set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https") &&
                              set(CURLOPT_FOLLOWLOCATION, 1L) &&
                              set(CURLOPT_MAXREDIRS, maxRedirects) && set(CURLOPT_PROXY, "");
        const bool hasWhat = set(CURLOPT_HTTPGET, 1L) && set(CURLOPT_HTTPHEADER, headers) &&
                             set(CURLOPT_HTTP09_ALLOWED, 0L) &&
                             set(CURLOPT_HTTP_CONTENT_DECODING, 0L) &&  // Unpacking does it
                             set(CURLOPT_MAXFILESIZE_LARGE, largest);
        // As if each request had a session of its own, and an end that waits for nobody: neither
        // for a signal handler nor for the thread that looks up a name.
        const bool hasHow = set(CURLOPT_FRESH_CONNECT, 1L) && set(CURLOPT_FORBID_REUSE, 1L) &&
                            set(CURLOPT_NOSIGNAL, 1L) && set(CURLOPT_QUICK_EXIT, 1L) &&
                            limitConnecting() &&
                            set(CURLOPT_OPENSOCKETFUNCTION, &Transfer::onOpening) &&
                            set(CURLOPT_OPENSOCKETDATA, this) && trust();
        return hasWhere && hasWhat && hasHow && set(CURLOPT_NOPROGRESS, 0L) &&
               set(CURLOPT_XFERINFOFUNCTION, &Transfer::onProgress) &&
               set(CURLOPT_XFERINFODATA, this) &&
               set(CURLOPT_HEADERFUNCTION, &Transfer::onHeader) && set(CURLOPT_HEADERDATA, this) &&
               set(CURLOPT_WRITEFUNCTION, &Transfer::onBody) && set(CURLOPT_WRITEDATA, this);
    }

    /// The system names its certificates twice, as one file and as a folder. Given both, libcurl
    /// reads the file again for each connection, a tenth of a second each; given the file alone,
    /// once.
    bool trust() {
        char* systemFile = nullptr;
        libcurl().easyGetInfo(handle_, CURLINFO_CAINFO, &systemFile);
        const std::string& own = options_.trustedCertificates;
        const char* const file = own.empty() ? systemFile : own.c_str();
        return (!file || ::access(file, R_OK) != 0 ||
                (set(CURLOPT_CAINFO, file) && set<const char*>(CURLOPT_CAPATH, nullptr))) &&
               set(CURLOPT_SSL_CTX_FUNCTION, &Transfer::onTls) && set(CURLOPT_SSL_CTX_DATA, this);
    }

    /// For libcurl, which has other addresses to try; our own clock starts again with each byte.
    bool limitConnecting() {
        return set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(options_.idleTime.count()));
    }

    static curl_socket_t onOpening(void* self, curlsocktype, curl_sockaddr* address) {
        // Perhaps after a redirect.
        auto& transfer = *static_cast<Transfer*>(self);
        transfer.limitConnecting();
        transfer.isTls_ = false;
        transfer.isTlsClosed_ = false;
        return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
    }

    /// The server is connected and TLS about to begin.
    static CURLcode onTls(CURL*, void* context, void* self) {
        auto* const tls = static_cast<SSL_CTX*>(context);
        auto& transfer = *static_cast<Transfer*>(self);
        libcurl().setContextData(tls, applicationData, self);
        libcurl().setContextCallback(tls, &Transfer::onTlsState);
        transfer.isTls_ = true;
        // To libcurl this is part of connecting.
        return transfer.set(CURLOPT_CONNECTTIMEOUT_MS, long{INT_MAX}) ? CURLE_OK
                                                                      : CURLE_OUT_OF_MEMORY;
    }

    static void onTlsState(const SSL* tls, int event, int alert) {
        if (event != SSL_CB_READ_ALERT || (alert & 0xff) != SSL_AD_CLOSE_NOTIFY)
            return;
        static_cast<Transfer*>(libcurl().contextData(libcurl().contextOf(tls), applicationData))
            ->isTlsClosed_ = true;
    }

    /// Bytes of bodies are seen here before they are decoded, and those of redirects nowhere else.
    static int onProgress(void* self, curl_off_t, curl_off_t arrived, curl_off_t, curl_off_t) {
        auto& transfer = *static_cast<Transfer*>(self);
        if (std::exchange(transfer.arrived_, arrived) != arrived) {
            transfer.lastArrival_ = Clock::now();
            transfer.bytesUnseen_ = 0;
        }
        const bool isTooLarge = std::cmp_greater(arrived, transfer.options_.largestBody) ||
                                transfer.bytesUnseen_ > transfer.options_.largestHeaders;
        if (isTooLarge)
            transfer.refusal_ = tooLarge;
        return isTooLarge || transfer.isStopping_ ? 1 : 0;
    }

    static std::size_t onHeader(char* bytes, std::size_t, std::size_t size, void* self) {
        auto& transfer = *static_cast<Transfer*>(self);
        transfer.lastArrival_ = Clock::now();
        transfer.headerBytes_ += size;
        transfer.bytesUnseen_ = 0;
        if (transfer.headerBytes_ > transfer.options_.largestHeaders) {
            transfer.refusal_ = tooLarge;
            return 0;
        }
        return transfer.take([&] { return transfer.takeHeader({bytes, size}); }) ? size : 0;
    }

    static std::size_t onBody(char* bytes, std::size_t, std::size_t size, void* self) {
        auto& transfer = *static_cast<Transfer*>(self);
        return transfer.take([&] { return transfer.takeBody({bytes, size}); }) ? size : 0;
    }

    template <class Work>
    bool take(Work work) {
        try {
            return work();
        } catch (...) {
            refusal_ = outOfMemory.data();
            return false;
        }
    }

    /// One line. False if the body cannot be read then.
    bool takeHeader(std::string_view line) {
        line = line.substr(0, line.find_last_not_of("\r\n \t") + 1);
        if (line.starts_with("HTTP/")) {
            takeStatus();
            return true;
        }
        // What informs is followed by the answer that counts.
        const bool counts = !hasHeaders_ && status_ >= ok;
        if (counts && line.empty()) {
            // Without the empty line the connection may just have been cut.
            takeEndOfHeaders();
        } else if (counts && hasName(line, contentType)) {
            takeType(trimmed(line.substr(contentType.size())));
        } else if (counts && hasName(line, contentEncoding)) {
            return takeEncodings(line.substr(contentEncoding.size()), packed_);
        } else if (counts && hasName(line, transferEncoding)) {
            return takeEncodings(line.substr(transferEncoding.size()), packedForTheWay_);
        }
        return true;
    }

    void takeType(std::string_view type) {
        if (!type.empty())
            contentType_ = type;
    }

    void takeStatus() {
        // The headers before it belong to a redirect or said that there is more to come.
        libcurl().easyGetInfo(handle_, CURLINFO_RESPONSE_CODE, &status_);
        hasHeaders_ = false;
        hasLength_ = status_ == noContent || status_ == notModified;
        contentType_.reset();
        packedForTheWay_.reset();
        packed_.reset();
    }

    void takeEndOfHeaders() {
        const char* url = nullptr;
        libcurl().easyGetInfo(handle_, CURLINFO_EFFECTIVE_URL, &url);
        curl_off_t length = -1;
        libcurl().easyGetInfo(handle_, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
        response_ = {static_cast<std::int32_t>(status_), url ? url : request_.url, contentType_};
        hasLength_ = hasLength_ || length >= 0;
        hasHeaders_ = true;
    }

    /// Any of those that the request asks for, and once.
    bool takeEncodings(std::string_view list, std::optional<Unpacking>& unpacking) {
        for (bool isMore = true; isMore;) {
            const std::size_t comma = list.find(',');
            isMore = comma != std::string_view::npos;
            const std::string_view one = trimmed(list.substr(0, comma));
            list.remove_prefix(isMore ? comma + 1 : list.size());
            if (one.empty() || equalsInAnyCase(one, "identity"))
                continue;
            if (&unpacking == &packedForTheWay_ && equalsInAnyCase(one, "chunked")) {
                hasLength_ = true;
                continue;
            }
            const bool isDeflate = equalsInAnyCase(one, "deflate");
            if (unpacking ||
                !(isDeflate || equalsInAnyCase(one, "gzip") || equalsInAnyCase(one, "x-gzip"))) {
                refusal_ = "the answer is encoded in an unknown way";
                return false;
            }
            unpacking.emplace(isDeflate);
        }
        return true;
    }

    bool takeBody(std::string_view piece) {
        std::string unpacked;
        if (packedForTheWay_) {
            if (!packedForTheWay_->append(piece, options_.largestBody - bytesOfTheWay_, unpacked)) {
                refusal_ = cannotBeUnpacked;
                return false;
            }
            bytesOfTheWay_ += unpacked.size();
            piece = unpacked;
        }
        if (packed_) {
            const bool isGood = packed_->append(piece, options_.largestBody, body_);
            if (!isGood)
                refusal_ = cannotBeUnpacked;
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
    CURL* handle_ = nullptr;
    bool isReady_ = false;
    Clock::time_point lastArrival_;
    curl_off_t arrived_ = 0;
    std::uint64_t bytesUnseen_ = 0;  // since libcurl last showed any
    std::size_t headerBytes_ = 0;
    // Of the connection that the answer comes by.
    bool isTls_ = false;
    bool isTlsClosed_ = false;
    // Of what comes now.
    long status_ = 0;
    bool hasHeaders_ = false;  // to their end
    bool hasLength_ = false;   // whether a cut body can be recognised
    std::optional<std::string> contentType_;
    std::optional<HttpResponse> response_;  // the last one with whole headers
    // For the way (Transfer-Encoding) packed is packed once more what the server holds.
    std::optional<Unpacking> packedForTheWay_;
    std::size_t bytesOfTheWay_ = 0;
    std::optional<Unpacking> packed_;
    std::string body_;
    const char* refusal_ = "";  // why it was cut here
};

Transfers::Transfers(const HttpGetOptions& options, const std::atomic<bool>& isStopping)
    : options_(options),
      isStopping_(isStopping),
      wakeUp_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    const std::lock_guard use(libraryUse);
    missing_ = openLibcurl();
    if (missing_)
        return;
    headers_ = requestHeaders();
    multi_ = libcurl().multiInit();
    closeWakeUpOnExec(multi_);
    libcurl().multiSetOption(multi_, CURLMOPT_SOCKETFUNCTION, &Transfers::onSocket);
    libcurl().multiSetOption(multi_, CURLMOPT_SOCKETDATA, this);
    libcurl().multiSetOption(multi_, CURLMOPT_TIMERFUNCTION, &Transfers::onTimer);
    libcurl().multiSetOption(multi_, CURLMOPT_TIMERDATA, this);
}

Transfers::~Transfers() {
    clear();
    ::close(wakeUp_);
    if (missing_)
        return;
    const std::lock_guard use(libraryUse);
    libcurl().multiCleanup(multi_);
    libcurl().listFree(headers_);
}

int Transfers::onSocket(CURL* handle, curl_socket_t socket, int what, void* self, void*) {
    std::vector<Socket>& sockets = static_cast<Transfers*>(self)->sockets_;
    const auto known = std::find_if(sockets.begin(), sockets.end(),
                                    [socket](const Socket& one) { return one.number == socket; });
    if (what == CURL_POLL_REMOVE) {
        if (known != sockets.end())
            sockets.erase(known);
        return 0;
    }
    const int events =
        ((what & CURL_POLL_IN) != 0 ? POLLIN : 0) | ((what & CURL_POLL_OUT) != 0 ? POLLOUT : 0);
    if (known != sockets.end()) {
        known->events = static_cast<short>(events);
        return 0;
    }
    // Those to servers are opened here and have the mark; what is left wakes from a look-up.
    const bool isToServer = isClosedOnExec(socket);
    if (!isToServer)
        closePairOnExec(socket);
    try {
        sockets.push_back({socket, static_cast<short>(events), isToServer ? handle : nullptr, 0});
        return 0;
    } catch (...) {
        return -1;
    }
}

int Transfers::onTimer(CURLM*, long milliseconds, void* self) {
    auto& timer = static_cast<Transfers*>(self)->timer_;
    timer.reset();
    if (milliseconds >= 0)
        timer = Clock::now() + std::chrono::milliseconds(milliseconds);
    return 0;
}

void Transfers::add(Request& request) {
    // Beyond the transfer itself nothing takes memory, so that no request is lost.
    running_.reserve(running_.size() + 1);
    unstarted_.reserve(unstarted_.size() + 1);
    if (missing_) {
        std::string error = *missing_;
        unstarted_.push_back({std::move(request), std::nullopt, std::nullopt, std::move(error)});
        return;
    }
    auto transfer = std::make_unique<Transfer>(std::move(request), options_, isStopping_, headers_);
    if (transfer->isReady() && multi_ && begin(*transfer))
        running_.push_back(std::move(transfer));
    else
        unstarted_.push_back(std::move(*transfer).end(CURLE_FAILED_INIT));
}

void Transfers::logWhatIsMissing() const {
    if (missing_)
        writeRuntimeError("no HTTP request can be made without %s of the package %s:%@",
                          libcurlFile, libcurlPackage, *missing_);
}

bool Transfers::begin(const Transfer& transfer) {
    const std::lock_guard use(libraryUse);
    return libcurl().multiAdd(multi_, transfer.handle()) == CURLM_OK;
}

void Transfers::noteArrival(curl_socket_t socket) {
    const auto known = std::find_if(sockets_.begin(), sockets_.end(),
                                    [socket](const Socket& one) { return one.number == socket; });
    if (known == sockets_.end())
        return;
    const auto transfer = find(known->handle);
    if (transfer != running_.end()) {
        const std::uint64_t received = bytesReceived(socket);
        (*transfer)->arrive(received - std::exchange(known->received, received));
    }
}

void Transfers::act(curl_socket_t socket, int events) {
    // One connection at a time, so that the end of the service waits for one at most, and a fork.
    if (!isStopping_) {
        const std::lock_guard use(libraryUse);
        int count = 0;
        libcurl().multiAct(multi_, socket, events, &count);
    }
}

std::vector<Ended> Transfers::step() {
    // Taken before anything ends, so that nothing that has ended is lost.
    std::vector<Ended> ended;
    ended.reserve(unstarted_.size() + running_.size());
    std::move(unstarted_.begin(), unstarted_.end(), std::back_inserter(ended));
    unstarted_.clear();
    for (const pollfd& one : std::exchange(ready_, {})) {
        if ((one.revents & (POLLIN | POLLERR | POLLHUP)) == POLLIN)
            noteArrival(one.fd);
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
    while (const auto message = nextMessage()) {
        const auto found = find(message->handle);
        const auto index = static_cast<std::size_t>(found - running_.begin());
        ended.push_back(std::move(*remove(index)).end(message->result));
    }
    const Clock::time_point now = Clock::now();
    for (std::size_t i = running_.size(); i-- > 0;) {
        if (running_[i]->idleEnd() <= now)
            ended.push_back(std::move(*remove(i)).giveUp());
    }
    return ended;
}

std::optional<Transfers::Message> Transfers::nextMessage() {
    if (!multi_)
        return std::nullopt;
    const std::lock_guard use(libraryUse);
    int count = 0;
    const CURLMsg* const message = libcurl().multiReadInfo(multi_, &count);
    // It goes with the handle.
    return message ? std::optional<Message>({message->easy_handle, message->data.result})
                   : std::nullopt;
}

void Transfers::wait() {
    const Clock::time_point now = Clock::now();
    Clock::time_point until = now + (wakeUp_ >= 0 ? longestWait : waitWithoutWaking);
    for (const auto& transfer : running_)
        until = std::min(until, transfer->idleEnd());
    until = std::max(now, std::min(until, timer_.value_or(until)));
    const auto time = std::chrono::ceil<std::chrono::milliseconds>(until - now);
    ready_.assign(1, {wakeUp_, POLLIN, 0});
    for (const Socket& one : sockets_)
        ready_.push_back({one.number, one.events, 0});
    ::poll(ready_.data(), ready_.size(), unstarted_.empty() ? static_cast<int>(time.count()) : 0);
    if (ready_.front().revents != 0) {
        eventfd_t ignored = 0;
        ::eventfd_read(wakeUp_, &ignored);
    }
    ready_.erase(ready_.begin());
}

void Transfers::wake() const {
    ::eventfd_write(wakeUp_, 1);
}

void Transfers::clear() {
    while (!running_.empty())
        remove(running_.size() - 1);
    unstarted_.clear();
}

std::unique_ptr<Transfer> Transfers::remove(std::size_t index) {
    std::swap(running_[index], running_.back());
    std::unique_ptr<Transfer> transfer = std::move(running_.back());
    running_.pop_back();
    const std::lock_guard use(libraryUse);
    libcurl().multiRemove(multi_, transfer->handle());
    return transfer;
}

std::vector<std::unique_ptr<Transfer>>::iterator Transfers::find(const CURL* handle) {
    return std::find_if(running_.begin(), running_.end(),
                        [handle](const auto& one) { return one->handle() == handle; });
}

}  // namespace yg::net
