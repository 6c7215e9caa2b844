// SPDX-License-Identifier: MIT
//
// Where the nodes and attributes of a tree are in the text that it was parsed from. Internal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Place.h"

namespace yg::xml {

struct Tree;

/// A parsed text and its file. Texts of 4 GiB and more cannot be parsed, so an offset has 32 bits.
class Source {
public:
    Source(std::string_view file, std::string text)
        : file_(file), text_(std::move(text)), lines_(text_) {}

    std::string_view text() const { return text_; }
    Place place(std::size_t begin, std::size_t end) const;

    /// The place of `length` bytes from `offset` on, as many as there are, of the value that stands
    /// between two offsets of the text.
    Place placeInValue(std::size_t valueBegin, std::size_t valueEnd, std::size_t offset,
                       std::size_t length) const;

    /// Notes that the text between two offsets of a value is read as `size` bytes, which are fewer.
    /// The calls come in the order of the text.
    void addShortened(std::size_t begin, std::size_t end, std::size_t size);

private:
    /// A reference or a line break in a value. Offsets as read do not count the bytes by which the
    /// shortened parts up to there are shorter.
    struct Shortened {
        std::uint32_t begin;
        std::uint32_t readBegin;
        std::uint32_t end;
        std::uint32_t readEnd;
    };

    std::size_t asRead(std::size_t offset) const;
    std::size_t beginOf(std::size_t offsetAsRead) const;
    std::size_t endOf(std::size_t offsetAsRead) const;

    std::string file_;
    std::string text_;
    text::LineIndex lines_;
    std::vector<Shortened> shortened_;
};

/// The range of a node or an attribute in its source.
struct Range {
    const Source* source = nullptr;
    std::uint32_t begin = 0;
    /// Behind an element's start tag; where an attribute's value begins, 0 when it was changed.
    std::uint32_t inner = 0;
    std::uint32_t end = 0;

    std::optional<Place> place() const {
        return source ? std::optional(source->place(begin, end)) : std::nullopt;
    }
};

/// Notes the ranges of all that was just parsed, in one pass over the text.
void notePlaces(Tree& tree, const std::shared_ptr<Source>& source);

}  // namespace yg::xml
