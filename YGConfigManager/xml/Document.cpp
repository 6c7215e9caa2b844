// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Document.h"

#include <exception>
#include <utility>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Decoding.h"
#include "YGConfigManager/xml/Parser.h"
#include "YGConfigManager/xml/Query.h"
#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

namespace {

constexpr const char* outOfMemory = "out of memory";

/// What `parse` answers, which may run out of memory.
template <class Parse>
ParseResult guarded(Parse parse) {
    try {
        return parse();
    } catch (const std::exception&) {
        return {{}, outOfMemory, {}};
    }
}

/// `Line N: message` for each error, joined with "; ".
std::string described(const std::vector<ParseError>& errors) {
    std::string text;
    for (const ParseError& error : errors)
        text += (text.empty() ? "Line " : "; Line ") + std::to_string(error.line) + ": " +
                error.message;
    return text;
}

}  // namespace

bool Document::canBeRead(const std::string& text) {
    return text.size() <= files::largestFileRead && text::isValidUtf8(text) && isReadable(text);
}

ParseResult Document::parsed(Decoded decoded, std::string_view path, ParseOptions options) {
    Parsed parsed{nullptr, std::move(decoded.errors)};
    if (parsed.errors.empty()) {
        std::shared_ptr<const Source> source;
        if (options.positions)
            source = std::make_shared<const Source>(path, decoded.text);
        parsed = parseUtf8(std::move(decoded.text));
        if (parsed.tree && source)
            notePlaces(*parsed.tree, source);
    }
    std::string error = described(parsed.errors);
    return {Document(std::move(parsed.tree)), std::move(error), std::move(parsed.errors)};
}

ParseResult Document::parseFile(OptionalText path, ParseOptions options) {
    return guarded([&]() -> ParseResult {
        files::FileReading file = files::readWholeFile(*path);
        if (!file)
            return {{}, std::move(file.error), {}};
        return parsed(decodeXml(std::move(file.bytes)), *path, options);
    });
}

ParseResult Document::parseBytes(OptionalText bytes, ParseOptions options) {
    return guarded([&] { return parsed(decodeXml(std::string(*bytes)), {}, options); });
}

ParseResult Document::parseText(OptionalText text, ParseOptions options) {
    return guarded([&] { return parsed(decodeUtf8(std::string(*text)), {}, options); });
}

Element Document::root() const {
    return tree_ ? Tree::element(tree_, tree_->root()) : Element();
}

std::vector<Node> Document::query(const Query& query) const {
    return tree_ ? Tree::select(tree_, {}, query) : std::vector<Node>();
}

std::vector<Node> Document::query(OptionalText query) const {
    return this->query(Query(query));
}

Document Document::copy() const {
    if (!tree_)
        return {};
    auto copy = std::make_shared<Tree>();
    copy->standalone = tree_->standalone;
    copy->doctype = tree_->doctype;
    for (pugi::xml_node child : tree_->memory.children()) {
        if (child == tree_->keep)
            continue;
        const pugi::xml_node copied = copy->insertCopy(copy->memory, {}, *tree_, child);
        if (child == tree_->nodeAfterDoctype)
            copy->nodeAfterDoctype = copied;
    }
    return Document(std::move(copy));
}

std::string Document::serialise(Form form) const {
    std::string out;
    if (tree_)
        serialiseDocument(out, *tree_, form);
    return out;
}

void Document::releaseRemoved() {
    if (tree_ && tree_.use_count() == 1)
        tree_->freeRemoved();
}

}  // namespace yg::xml
