// SPDX-License-Identifier: MIT
//
// The errors that a parse finds. Internal.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/xml/Document.h"

namespace yg::xml {

/// The errors of a text, which lives as long as this. As many are kept as say something new.
class ParseErrors {
public:
    explicit ParseErrors(std::string_view text) : text_(text) {}

    /// An error at an offset.
    void add(std::size_t at, std::string_view message) { add(pointAt(at), message); }

    /// An error on a line, which shows where the parser stands, when that is known.
    void add(int line, std::optional<std::size_t> parserAt, std::string_view message);

    bool empty() const { return errors_.empty(); }
    bool full() const;
    std::vector<ParseError> take() { return std::move(errors_); }

private:
    TextPoint pointAt(std::size_t offset);
    void add(TextPoint point, std::string_view message);

    std::string_view text_;
    std::optional<text::LineIndex> lines_;  ///< made for the first error
    std::vector<ParseError> errors_;
};

}  // namespace yg::xml
