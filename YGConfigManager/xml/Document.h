// SPDX-License-Identifier: MIT
//
// XML documents: strict reading of files, bytes and text, and writing. A document is a small value
// that shares its tree with the elements taken from it. Reading one tree from several threads is
// safe as long as none of them changes it. Parses throw nothing; what else makes a text, a list or
// nodes throws std::bad_alloc when memory does not suffice.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/xml/Element.h"

namespace yg::xml {

struct Decoded;
struct ParseResult;

/// What a parse keeps beside the tree.
struct ParseOptions {
    /// Keep the text, and where in it every node and attribute stands. Copies and other trees that
    /// nodes are added to share the text.
    bool positions = false;
};

class YG_EXPORT Document {
public:
    /// A document without a root element; one that was moved from is such a document, too.
    Document() = default;

    /// Reads a file. Only well-formed XML 1.0 gives a document, in UTF-8, UTF-16 with a mark or a
    /// declared encoding (the GBK family, Big5, Latin sets …). Nothing is fetched, and the only
    /// entities are the five of XML: a document type with an internal subset is an error. So is
    /// what is beyond the limits: elements nest 256 levels below the root and have 256
    /// attributes; a name has 50,000 bytes, a value 10,000,000 bytes, a text between two tags as
    /// many as it is written; a document has 100,000 different names. On failure the result holds a
    /// description: the file and the cause when it cannot be read, "out of memory", otherwise `Line
    /// N: message` for each error, joined with
    /// "; ". Nothing is thrown.
    static ParseResult parseFile(OptionalText path, ParseOptions options = {});

    /// The same for bytes in whatever encoding they declare.
    static ParseResult parseBytes(OptionalText bytes, ParseOptions options = {});

    /// The same for UTF-8 text, whatever encoding it declares.
    static ParseResult parseText(OptionalText text, ParseOptions options = {});

    /// The root element; empty for a document without one.
    Element root() const;

    /// The nodes that an XPath 1.0 query selects with the document node as its context, so that
    /// `config/a` begins at a root element named config. Otherwise as Element::query.
    std::vector<Node> query(const Query& query) const;
    std::vector<Node> query(OptionalText query) const;

    /// A deep copy that shares nothing with this document.
    Document copy() const;

    /// The whole document in UTF-8. The pretty form begins with a declaration and ends with a line
    /// feed; the plain form has neither. "" for a document without a root element.
    std::string serialise(Form form) const;

    /// Whether a file of this UTF-8 text could be read, for what is saved must be readable at the
    /// next start. Takes less than a parse. Throws std::bad_alloc when memory does not suffice.
    static bool canBeRead(const std::string& text);
    static bool canBeRead(const char* text) { return text && canBeRead(std::string(text)); }

    /// Frees what was taken out of the document, when no element handle is left that could reach
    /// it; otherwise nothing happens. For documents that live long and change often.
    void releaseRemoved();

private:
    YG_HIDDEN static ParseResult parsed(Decoded decoded, std::string_view path,
                                        ParseOptions options);

    explicit Document(std::shared_ptr<Tree> tree) : tree_(std::move(tree)) {}

    std::shared_ptr<Tree> tree_;  ///< null without a root element
};

/// One error of a text.
struct ParseError {
    std::uint32_t line;    ///< from 1
    std::uint32_t column;  ///< where it shows, in characters, from 1; 0 when that is not known
    std::string message;   ///< one line
};

/// What a parse answers: a document, or a description of why there is none.
struct ParseResult {
    Document document;  ///< without a root element on failure
    std::string error;  ///< one line; empty on success
    /// What `error` lists; empty when the file cannot be read or memory does not suffice.
    std::vector<ParseError> errors;

    /// Whether there is a document.
    explicit operator bool() const { return error.empty(); }
};

}  // namespace yg::xml
