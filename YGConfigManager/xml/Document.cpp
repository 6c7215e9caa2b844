// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Document.h"

#include <exception>
#include <utility>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/xml/Decoding.h"
#include "YGConfigManager/xml/Parser.h"
#include "YGConfigManager/xml/Query.h"
#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

namespace {

struct Reading {
    std::shared_ptr<Tree> tree;
    std::string error;
};

Reading read(Decoded decoded, std::string_view file, ParseOptions options) {
    if (!decoded.error.empty())
        return {nullptr, std::move(decoded.error)};
    Parsed parsed =
        parseUtf8(decoded.text, options.positions ? std::make_shared<std::string>(file) : nullptr);
    return {std::move(parsed.tree), std::move(parsed.error)};
}

}  // namespace

Document::Document() : tree_(std::make_shared<Tree>()) {}

ParseResult Document::parseFile(std::string_view path, ParseOptions options) {
    const files::FileReading file = files::readWholeFile(path);
    if (!file)
        return {Document(), file.error};
    Reading reading = read(decodeXml(file.bytes), path, options);
    return {reading.tree ? Document(std::move(reading.tree)) : Document(),
            std::move(reading.error)};
}

ParseResult Document::parseBytes(std::string_view bytes, ParseOptions options) {
    Reading reading = read(decodeXml(bytes), {}, options);
    return {reading.tree ? Document(std::move(reading.tree)) : Document(),
            std::move(reading.error)};
}

ParseResult Document::parseText(std::string_view text, ParseOptions options) {
    Reading reading = read(decodeUtf8(text), {}, options);
    return {reading.tree ? Document(std::move(reading.tree)) : Document(),
            std::move(reading.error)};
}

Element Document::root() const {
    return Tree::element(tree_, tree_->root());
}

std::vector<Node> Document::query(const Query& query) const {
    return Tree::select(tree_, {}, query);
}

std::vector<Node> Document::query(std::string_view query) const {
    return this->query(Query(query));
}

Document Document::copy() const {
    auto copy = std::make_shared<Tree>();
    copy->standalone = tree_->standalone;
    copy->doctype = tree_->doctype;
    for (pugi::xml_node child : tree_->memory.children()) {
        if (child == tree_->keep)
            continue;
        const pugi::xml_node copied = copy->memory.append_copy(child);
        copy->copyPlaces(*tree_, child, copied);
        if (child == tree_->nodeAfterDoctype)
            copy->nodeAfterDoctype = copied;
    }
    return Document(std::move(copy));
}

std::string Document::serialise(Form form) const {
    std::string out;
    serialiseDocument(out, *tree_, form);
    return out;
}

void Document::releaseRemoved() {
    if (tree_.use_count() == 1)
        tree_->freeRemoved();
}

}  // namespace yg::xml
