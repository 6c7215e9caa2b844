// SPDX-License-Identifier: MIT
//
// Everything in the library that saves a file, for tests that let the saving fail or kill it.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/host/Host.h"

namespace yg::testing {

/// The text with that number: texts of very different lengths, none of which can be mistaken for
/// half of another.
inline std::string textOf(long number) {
    const auto length = static_cast<std::size_t>(number * 7919 % 50'000);
    return std::to_string(number) + " " + std::string(length, 'x') + " " + std::to_string(number);
}

/// Saves the text of a number; answers what the operation does.
using Save = std::function<bool(long number)>;

struct Saver {
    std::string_view name;
    /// The file in the user's folder, in which the text stands once; everything else stays the
    /// same.
    std::string_view file;
    /// Whether its answer says that nothing could be written.
    bool answersLoss;
    /// Begins with what the current host has.
    std::function<Save()> open;
};

/// All savers. They ask the current host.
const std::vector<Saver>& savers();

/// A stand-alone host on the root that logs nothing and names a server to download from.
std::shared_ptr<Host> quietHost(const std::string& root);

}  // namespace yg::testing
