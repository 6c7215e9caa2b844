// SPDX-License-Identifier: MIT
//
// Where the nodes and attributes of a tree are in the text that it was parsed from. Internal.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Place.h"

namespace yg::xml {

struct Tree;

/// Where the parts of a well-formed text are that its nodes and attributes begin in. Texts of 4 GiB
/// and more cannot be parsed, so an offset has 32 bits. All lists are in the order of the text.
struct SourceIndex {
    explicit SourceIndex(std::string_view text) : lines(text) {}

    struct Element {
        std::uint32_t begin;
        std::uint32_t content;  ///< behind the start tag
        std::uint32_t end;
    };
    /// What is between two quotes.
    struct Value {
        std::uint32_t begin;
        std::uint32_t end;
    };
    /// A reference or a line break in a value, which is read as fewer bytes. Offsets as read do not
    /// count the bytes by which the shortened parts up to there are shorter.
    struct Shortened {
        std::uint32_t begin;
        std::uint32_t readBegin;
        std::uint32_t end;
        std::uint32_t readEnd;
    };

    std::size_t asRead(std::size_t offset) const;
    std::size_t beginOf(std::size_t offsetAsRead) const;
    std::size_t endOf(std::size_t offsetAsRead) const;
    const Element& element(std::size_t begin) const;
    /// The first value behind an offset.
    const Value& valueBehind(std::size_t offset) const;

    text::LineIndex lines;
    std::vector<Element> elements;
    std::vector<Value> values;
    std::vector<Shortened> shortened;
};

/// A parsed text and its file. What a node or an attribute begins at is enough to find the rest of
/// it; the index for that is made at the first question. Any thread may ask. Throws std::bad_alloc.
class Source {
public:
    Source(std::string_view file, std::string text) : file_(file), text_(std::move(text)) {}
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    ~Source() { delete index_.load(); }

    std::string_view file() const { return file_; }

    Place nodePlace(std::size_t begin) const;
    Place tagPlace(std::size_t begin) const;
    Place attributePlace(std::size_t begin) const;

    /// The place of `length` bytes from `offset` on, as many as there are, of the attribute's
    /// value.
    Place valuePlace(std::size_t begin, std::size_t offset, std::size_t length) const;

private:
    friend void notePlaces(Tree& tree, const std::shared_ptr<const Source>& source);

    const SourceIndex& index() const;
    const SourceIndex& keep(std::unique_ptr<const SourceIndex> made) const;
    Place place(std::size_t begin, std::size_t end) const;

    std::string file_;
    std::string text_;
    mutable std::atomic<const SourceIndex*> index_ = nullptr;
};

/// Where a node or an attribute begins.
struct Origin {
    const Source* source = nullptr;  ///< null when that is not known
    std::uint32_t begin = 0;
    bool hasNewValue = false;  ///< an attribute whose value was changed
};

/// Makes a tree that was just parsed from the source know its places.
void notePlaces(Tree& tree, const std::shared_ptr<const Source>& source);

}  // namespace yg::xml
