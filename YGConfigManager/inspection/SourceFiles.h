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

    /// Images and the like have zeros and cannot be decoded.
    bool isText() const;

    const std::string& bytes() const { return bytes_; }

    /// The text in UTF-8. When the bytes cannot be decoded they are read as GBK if they look so,
    /// and otherwise are what they are.
    const std::string& text() const { return text_; }

    /// A line from 1, without its end; absent when there is none, and in a file that is not text.
    std::optional<std::string_view> line(std::uint32_t number) const;

    /// The place without the white space at its ends; as it stands when there is nothing else.
    Place trimmed(Place place) const;

    /// With positions; parsed at the first call unless a loader has done that. Without a root when
    /// it is not well-formed.
    const xml::ParseResult& document() const;
    void setDocument(xml::ParseResult parsed) { document_ = std::move(parsed); }

    /// The elements around a point, the root first.
    std::vector<xml::Element> elementsAt(const TextPoint& point) const;

private:
    /// The character before or behind a point; 0 at the ends of the file.
    std::optional<std::size_t> offsetOf(const TextPoint& point) const;

    std::string path_;
    bool isRead_ = false;
    bool isDecoded_ = false;  ///< without an error
    std::string bytes_;
    std::string text_;
    /// An element with those in it, once they are asked for.
    struct Spot {
        xml::Element element = {};
        TextPoint begin = {};  ///< once it is asked for
        std::optional<std::vector<Spot>> content = {};

        TextPoint beginning();
        /// The last in it that begins at the point or before; null when there is none.
        Spot* lastBefore(const TextPoint& point);
    };

    mutable std::vector<std::size_t> lineBegins_;  ///< once asked for; only of text
    mutable std::optional<xml::ParseResult> document_;
    mutable Spot root_;
};

class SourceFiles {
public:
    explicit SourceFiles(std::string root) : root_(std::move(root)) {}

    /// A file below the root; each is read once.
    const SourceFile& file(std::string_view name) const { return fileNamed(name); }

    /// What a loader parsed, by its path.
    void setDocument(std::string_view path, xml::ParseResult parsed) {
        fileNamed(nameOf(path)).setDocument(std::move(parsed));
    }

    /// The path below the root; as it stands when it is elsewhere.
    std::string nameOf(std::string_view path) const;
    std::string pathOf(std::string_view name) const;

    /// The regular files in a folder below the root, sorted by name. Unsaved ones included.
    std::vector<std::string> namesIn(std::string_view folder) const;

private:
    SourceFile& fileNamed(std::string_view name) const;

    std::string root_;
    mutable std::map<std::string, std::unique_ptr<SourceFile>, std::less<>> files_;
};

}  // namespace yg
