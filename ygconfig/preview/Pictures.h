// SPDX-License-Identifier: MIT
//
// The models that pages of a root are drawn from, while its files change. One thread at a time uses
// an object. Throws std::bad_alloc.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <utility>

namespace yg::tool {

class Pictures {
public:
    explicit Pictures(std::string root) : root_(std::move(root)) {}

    /// Reads the root and answers the model to show; absent with the reason in `error` when the
    /// root cannot be read and never could.
    ///
    /// While a file cannot be read that could be when the model was made, or the root is gone, the
    /// model stays as it was. Whatever cannot be read is listed in the member "broken":
    /// [{"message": TEXT, "file": NAME, "line": N, "column": N, "text": the line}]. The root as a
    /// whole has a message alone, and the text may be missing.
    std::optional<std::string> next(std::string& error);

private:
    const std::string root_;
    std::string model_;             ///< without what is broken
    std::set<std::string> unread_;  ///< the files that could not be read for it
};

}  // namespace yg::tool
