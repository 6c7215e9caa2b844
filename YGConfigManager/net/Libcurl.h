// SPDX-License-Identifier: MIT
//
// libcurl, which is opened for the first request of the process and not when the library is loaded:
// with all that it brings it takes as long to load as everything else together, and a process that
// only reads files never needs it. Opened, it stays open.
#pragma once

#include <optional>
#include <string>

#include <curl/curl.h>
#include <openssl/ssl.h>

namespace yg::net {

/// What the network thread calls.
struct Libcurl {
    decltype(&curl_easy_cleanup) easyCleanup;
    decltype(&curl_easy_getinfo) easyGetInfo;
    decltype(&curl_easy_init) easyInit;
    decltype(&curl_easy_setopt) easySetOption;
    decltype(&curl_easy_strerror) easyError;
    decltype(&curl_global_init) globalInit;
    decltype(&curl_multi_add_handle) multiAdd;
    decltype(&curl_multi_cleanup) multiCleanup;
    decltype(&curl_multi_info_read) multiReadInfo;
    decltype(&curl_multi_init) multiInit;
    decltype(&curl_multi_poll) multiPoll;
    decltype(&curl_multi_remove_handle) multiRemove;
    decltype(&curl_multi_setopt) multiSetOption;
    decltype(&curl_multi_socket_action) multiAct;
    decltype(&curl_multi_wakeup) multiWakeUp;
    decltype(&curl_slist_append) listAppend;
    decltype(&curl_slist_free_all) listFree;

    // Of the OpenSSL that libcurl itself uses.
    decltype(&SSL_CTX_get_ex_data) contextData;
    decltype(&SSL_CTX_set_ex_data) setContextData;
    decltype(&SSL_CTX_set_info_callback) setContextCallback;
    decltype(&SSL_get_SSL_CTX) contextOf;
};

/// The file that is opened, and the Debian package that has it.
inline constexpr const char* libcurlFile = "libcurl.so.4";
inline constexpr const char* libcurlPackage = "libcurl4";

/// Opens and initialises it, unless that was done before. Answers why it cannot be used; none if it
/// can. Only under the lock of all calls of libcurl.
std::optional<std::string> openLibcurl();

/// Its functions, once it is open.
const Libcurl& libcurl() noexcept;

}  // namespace yg::net
