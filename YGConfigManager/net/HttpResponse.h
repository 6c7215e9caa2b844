// SPDX-License-Identifier: MIT
//
// What a server said before the body of its answer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace yg {

struct HttpResponse {
    /// The status, as in 200 or 404.
    std::int32_t statusCode = 0;

    /// The address that answered: after redirects, the last one that did.
    std::string url;

    /// The type of the body, as in "application/json"; absent when the server did not say it.
    std::optional<std::string> contentType;
};

}  // namespace yg
