// SPDX-License-Identifier: MIT
//
// XML documents: strict reading of files, bytes and text, and writing. A document is a small value
// that shares its tree with the elements taken from it. Reading one tree from several threads is
// safe as long as none of them changes it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/xml/Node.h"

namespace yg::xml {

struct ParseResult;

struct ParseOptions {
    /// Keep file, line and column of every element and attribute.
    bool positions = false;
};

class YG_EXPORT Document {
public:
    /// A document without a root element.
    Document();

    /// Reads a file. Only well-formed XML 1.0 gives a document, in UTF-8, UTF-16 with a mark or a
    /// declared encoding (the GBK family, Big5, Latin sets …). Nothing is fetched: external
    /// entities do not exist. Elements nest 256 levels below the root at the most and have 256
    /// attributes; a value or a text has 10 MB, and entities add 10 MB. On failure the result holds
    /// a description: the file and the cause when it cannot be read, otherwise `Line N: message`
    /// for each error, joined with "; ".
    static ParseResult parseFile(std::string_view path, ParseOptions options = {});

    /// The same for bytes in whatever encoding they declare.
    static ParseResult parseBytes(std::string_view bytes, ParseOptions options = {});

    /// The same for UTF-8 text, whatever encoding it declares.
    static ParseResult parseText(std::string_view text, ParseOptions options = {});

    /// The root element; empty for a document without one.
    Element root() const;

    /// The nodes that an XPath 1.0 query selects with the document node as its context, so that
    /// `config/a` begins at a root element named config. Otherwise as Element::query.
    std::vector<Node> query(const Query& query) const;
    std::vector<Node> query(std::string_view query) const;

    /// A deep copy that shares nothing with this document.
    Document copy() const;

    /// The whole document in UTF-8. The pretty form begins with a declaration and ends with a line
    /// feed; the plain form has neither. "" for a document without a root element.
    std::string serialise(Form form) const;

    /// Frees what was taken out of the document, when no element handle is left that could reach
    /// it; otherwise nothing happens. For documents that live long and change often.
    void releaseRemoved();

private:
    explicit Document(std::shared_ptr<Tree> tree) : tree_(std::move(tree)) {}

    std::shared_ptr<Tree> tree_;
};

/// What a parse answers: a document, or a description of why there is none.
struct ParseResult {
    Document document;  ///< without a root element on failure
    std::string error;  ///< one line; empty on success

    explicit operator bool() const { return error.empty(); }
};

}  // namespace yg::xml
