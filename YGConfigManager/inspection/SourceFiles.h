// SPDX-License-Identifier: MIT
//
// The files of a root as text, read when they are asked for. Internal. Throws std::bad_alloc.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

/// One file.
class SourceFile {
public:
    explicit SourceFile(std::string_view path);

    bool isRead() const { return isRead_; }
    const std::string& bytes() const { return bytes_; }

    /// The text in UTF-8; the bytes as they are when they cannot be decoded.
    const std::string& text() const { return text_; }

    /// A line from 1, without its end; absent when there is none.
    std::optional<std::string_view> line(std::uint32_t number) const;

    /// The place without the white space at its ends; as it stands when there is nothing else.
    Place trimmed(Place place) const;

    /// Parsed with positions at the first call; without a root when it is not well-formed.
    const xml::ParseResult& document() const;

    /// The elements around a point, the root first.
    std::vector<xml::Element> elementsAt(const TextPoint& point) const;

private:
    struct Extent {
        Place place;
        xml::Element element;
        std::size_t around;  ///< the index of the parent, its own at the root
    };

    void noteExtents(const xml::Element& element, std::size_t around) const;

    /// The character before or behind a point; 0 at the ends of the file.
    std::optional<std::size_t> offsetOf(const TextPoint& point) const;

    std::string path_;
    bool isRead_ = false;
    std::string bytes_;
    std::string text_;
    std::vector<std::size_t> lineBegins_;
    mutable std::optional<xml::ParseResult> document_;
    mutable std::vector<Extent> extents_;  ///< of all elements, in the order of the document
};

class SourceFiles {
public:
    explicit SourceFiles(std::string root) : root_(std::move(root)) {}

    /// A file below the root; each is read once.
    const SourceFile& file(std::string_view name) const;

    /// The path below the root; as it stands when it is elsewhere.
    std::string nameOf(std::string_view path) const;
    std::string pathOf(std::string_view name) const;

    /// The regular files in a folder below the root, sorted by name. Unsaved ones included.
    std::vector<std::string> namesIn(std::string_view folder) const;

private:
    std::string root_;
    mutable std::map<std::string, std::unique_ptr<SourceFile>, std::less<>> files_;
};

}  // namespace yg
