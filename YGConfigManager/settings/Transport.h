// SPDX-License-Identifier: MIT
//
// How requests reach the network: the network service, unless a test puts itself in its place.
// Internal. Any thread may call.
#pragma once

#include <functional>
#include <string>

#include "YGConfigManager/net/HttpGet.h"

namespace yg {

/// Starts a GET and keeps what net::get promises of the completion.
using Transport = std::function<void(std::string url, net::GetCompletion completion)>;

/// Starts a GET by the transport in use.
void startGet(std::string url, net::GetCompletion completion);

/// Puts a transport in use for the whole process; an empty one brings net::get back. Answers the
/// one that it replaces, empty for net::get.
Transport setTransport(Transport transport);

}  // namespace yg
