// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Builder.h"

#include <new>
#include <utility>

#include "YGConfigManager/xml/CallbackReader.h"

namespace yg::xml {

namespace {

/// Builds the tree of any text from the callbacks of the parser's first version, which take names
/// as written and keep namespace declarations in their place among the attributes.
class Builder : public CallbackReader {
public:
    explicit Builder(const std::string& text)
        : CallbackReader(text, callbacks()),
          tree_(std::make_shared<Tree>()),
          parent_(tree_->memory) {}

    Parsed run() {
        if (!read())
            return {nullptr, errors_.take()};
        tree_->standalone = standaloneOf(*context_);
        return {std::move(tree_), {}};
    }

private:
    static xmlSAXHandler callbacks();

    /// Does the work of a callback that builds, as long as there is something to be built.
    template <class Work>
    static void build(void* user, Work work) {
        call<Builder>(user, [&](Builder& builder) {
            if (builder.errors_.empty())
                work(builder);
        });
    }

    void startElement(const char* name, const xmlChar** attributes);
    void endElement();
    void addNode(pugi::xml_node_type type, const char* name, std::string_view value);
    pugi::xml_node append(pugi::xml_node_type type);
    void flushText(bool atEnd);
    void keepDoctype(const char* name);

    std::shared_ptr<Tree> tree_;
    pugi::xml_node parent_;
    std::string pendingText_;
};

pugi::xml_node Builder::append(pugi::xml_node_type type) {
    const pugi::xml_node node = made(parent_.append_child(type));
    if (parent_ == tree_->memory && !tree_->doctype.empty() && !tree_->nodeAfterDoctype)
        tree_->nodeAfterDoctype = node;
    return node;
}

void Builder::startElement(const char* name, const xmlChar** attributes) {
    flushText(false);
    parent_ = append(pugi::node_element);
    setName(parent_, name);
    for (; attributes && attributes[0]; attributes += 2) {
        pugi::xml_attribute attribute = made(parent_.append_attribute(chars(attributes[0])));
        setValue(attribute, attributes[1] ? chars(attributes[1]) : "");
    }
}

void Builder::endElement() {
    flushText(true);
    parent_ = parent_.parent();
}

void Builder::addNode(pugi::xml_node_type type, const char* name, std::string_view value) {
    flushText(false);
    pugi::xml_node node = append(type);
    if (*name != '\0')
        setName(node, name);
    setValue(node, value);
}

/// White space alone is kept only as the whole content of an element.
void Builder::flushText(bool atEnd) {
    if (pendingText_.empty())
        return;
    if (!isBlank(pendingText_) || (atEnd && !parent_.first_child())) {
        pugi::xml_node node = append(pugi::node_pcdata);
        setValue(node, pendingText_);
    }
    pendingText_.clear();
}

/// Keeps the document type, at whose end the parser stands, as it is written.
void Builder::keepDoctype(const char* name) {
    const std::string_view text = text_;
    // Before it there are comments and instructions at the most.
    std::size_t at = text.find('<');
    while (text.substr(at, 2) == "<?" || text.substr(at, 4) == "<!--")
        at = text.find('<', text.find(text[at + 1] == '?' ? "?>" : "-->", at));
    const std::size_t from = text.find(name, at + std::string_view("<!DOCTYPE").size());
    tree_->doctype = withLineFeeds(text.substr(from, parserAt().value() - from));
}

xmlSAXHandler Builder::callbacks() {
    xmlSAXHandler sax = commonCallbacks();
    sax.internalSubset = [](void* user, const xmlChar* name, const xmlChar*, const xmlChar*) {
        build(user, [&](Builder& builder) { builder.keepDoctype(chars(name)); });
    };
    sax.startElement = [](void* user, const xmlChar* name, const xmlChar** attributes) {
        build(user, [&](Builder& builder) { builder.startElement(chars(name), attributes); });
    };
    sax.endElement = [](void* user, const xmlChar*) {
        build(user, [](Builder& builder) { builder.endElement(); });
    };
    sax.characters = [](void* user, const xmlChar* text, int length) {
        build(user, [&](Builder& builder) {
            builder.pendingText_.append(chars(text), static_cast<std::size_t>(length));
        });
    };
    sax.ignorableWhitespace = sax.characters;
    sax.cdataBlock = [](void* user, const xmlChar* text, int length) {
        build(user, [&](Builder& builder) {
            builder.addNode(pugi::node_cdata, "", {chars(text), static_cast<std::size_t>(length)});
        });
    };
    sax.comment = [](void* user, const xmlChar* text) {
        build(user,
              [&](Builder& builder) { builder.addNode(pugi::node_comment, "", chars(text)); });
    };
    sax.processingInstruction = [](void* user, const xmlChar* target, const xmlChar* data) {
        build(user, [&](Builder& builder) {
            builder.addNode(pugi::node_pi, chars(target), data ? chars(data) : "");
        });
    };
    return sax;
}

}  // namespace

std::shared_ptr<Tree> buildInPlace(std::string text) {
    auto tree = std::make_shared<Tree>();
    tree->inPlace = std::move(text);
    constexpr unsigned int flags = pugi::parse_pi | pugi::parse_comments | pugi::parse_cdata |
                                   pugi::parse_escapes | pugi::parse_eol |
                                   pugi::parse_wconv_attribute | pugi::parse_ws_pcdata_single;
    const pugi::xml_parse_result result = tree->memory.load_buffer_inplace(
        tree->inPlace.data(), tree->inPlace.size(), flags, pugi::encoding_utf8);
    // pugixml takes whatever is well-formed, if memory suffices.
    if (!result)
        throw std::bad_alloc();
    return tree;
}

Parsed buildByCallbacks(const std::string& text) {
    return Builder(text).run();
}

std::optional<bool> standaloneOf(const xmlParserCtxt& context) {
    if (context.standalone == 0 || context.standalone == 1)
        return context.standalone == 1;
    return std::nullopt;
}

}  // namespace yg::xml
