// SPDX-License-Identifier: MIT
//
// The network service: HTTP GET requests, run beside each other on one background thread. The
// thread starts with the first request of the process and ends with the static objects. Any thread
// may call.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "YGConfigManager/net/HttpResponse.h"

namespace yg::net {

/// Is called when a request has ended. `body` is the decoded body of any whole HTTP answer, that of
/// a 404 too; an answer without one gives an empty text. Absent: there was no whole answer (no
/// server, a bad address, 10 seconds without a byte, too many redirects, a transfer cut short, more
/// than 64 MiB), and `error` says why. `response` is there as soon as the headers of an answer have
/// come, and names the address that they came from; a redirect is one, a status below 200 is not.
///
/// Whole is what its length, its last chunk and its compression say. Without a length and chunks a
/// body ends with the connection: with TLS it must have been closed in order, without TLS nothing
/// can distinguish the end from a cut.
using GetCompletion =
    std::function<void(std::optional<std::string> body, std::optional<HttpResponse> response,
                       std::optional<std::string> error)>;

/// Starts a GET of `url` (http or https) and returns at once, whatever the address is. The first
/// request of the process opens libcurl (net/Libcurl.h), which takes some milliseconds. Where that
/// is missing, each request ends without an answer, `error` says why, and one log line names it.
/// `completion` may be null. It is called exactly once, on the background thread, never inside this
/// call unless memory does not suffice to begin or the system gives no thread; it is dropped
/// uncalled when the process ends first. All completions run one after the other: one must not
/// block, nor wait for another request; it may start one. What it throws is logged.
///
/// A completion runs with the signal mask and the scheduling policy of the thread that made the
/// first request, but without its real-time priority; threads and programs that it starts have them
/// too, so a signal handler of the application may run there. Otherwise the background thread
/// blocks all signals but those of a fault. Programs inherit none of the sockets.
///
/// 64 requests run at a time, the others wait for their turn. In the child of a fork, a request
/// runs on a thread of the child's own, whatever the parent's threads were doing; what the parent
/// began does not go on there. A child that is forked in a completion must not return from it.
void get(std::string url, GetCompletion completion) noexcept;

}  // namespace yg::net
