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

/// Decodes and parses what `read` answers. `path` is kept as the file of places.
template <class Read>
Parsed parsed(Read read, std::string_view path, ParseOptions options) {
    try {
        Decoded decoded = read();
        if (!decoded.error.empty())
            return {nullptr, std::move(decoded.error)};
        Parsed parsed = parseUtf8(decoded.text, options.positions);
        if (options.positions && parsed.tree)
            notePlaces(*parsed.tree, std::make_shared<Source>(path, std::move(decoded.text)));
        return parsed;
    } catch (const std::exception&) {
        return {nullptr, outOfMemory};
    }
}

}  // namespace

bool Document::canBeRead(const std::string& text) {
    return text.size() <= files::largestFileRead && text::isValidUtf8(text) && isReadable(text);
}

ParseResult Document::result(Parsed parsed) {
    return {Document(std::move(parsed.tree)), std::move(parsed.error)};
}

ParseResult Document::parseFile(OptionalText path, ParseOptions options) {
    const auto read = [&]() -> Decoded {
        files::FileReading file = files::readWholeFile(*path);
        return file ? decodeXml(file.bytes) : Decoded{{}, std::move(file.error)};
    };
    return result(parsed(read, *path, options));
}

ParseResult Document::parseBytes(OptionalText bytes, ParseOptions options) {
    return result(parsed([&] { return decodeXml(*bytes); }, {}, options));
}

ParseResult Document::parseText(OptionalText text, ParseOptions options) {
    return result(parsed([&] { return decodeUtf8(*text); }, {}, options));
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
