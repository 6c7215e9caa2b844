// SPDX-License-Identifier: MIT
//
// What the loader of a format reports of a text.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "diagnostics/RecordingSink.h"
#include "events/EventFile.h"

namespace yg::testing {

/// The names of the rules of all findings, by the id of the format.
using Findings = std::vector<std::string>;

inline Findings findingsOfEvents(std::string_view text) {
    RecordingSink sink;
    loadEvents(text, &sink);
    return sink.rules();
}

inline const std::map<std::string, Findings (*)(std::string_view), std::less<>> loaders{
    {"events", findingsOfEvents},
};

}  // namespace yg::testing
