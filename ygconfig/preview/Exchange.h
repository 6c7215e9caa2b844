// SPDX-License-Identifier: MIT
//
// One HTTP request and its answer, for LocalServer. It is a module of its own, which the tool opens
// when it serves: cpp-httplib brings OpenSSL and more, which would be half of what each run of the
// tool takes to start.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace yg::tool {

struct ShownPage;

/// Reads a request from the socket and answers it with the page. Answers true when the client goes
/// on to wait for changes. `hosts` are the names that this server may be asked by.
using ExchangeFunction = bool(int socket, const std::vector<std::string>& hosts,
                              std::shared_ptr<const ShownPage> page);

/// Opens the module; it stays open. Null with the reason in `error` when it is missing.
ExchangeFunction* openExchange(std::string& error);

}  // namespace yg::tool
