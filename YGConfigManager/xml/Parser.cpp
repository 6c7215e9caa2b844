// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Parser.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>
#include <optional>
#include <set>
#include <utility>

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>

#include "YGConfigManager/text/Utf8.h"

namespace yg::xml {

namespace {

/// What entities may add to a text. The guards of libxml2 alone let a text of 130 KB that refers
/// to one long entity again and again grow to gigabytes.
constexpr std::size_t entityLimit = 10'000'000;

/// What a node or an attribute from an entity counts beside its text.
constexpr std::size_t nodeCost = 64;

/// References that a text may hold, those inside entities counted each time. The guards of libxml2
/// do not see entities that add nothing and refer to each other.
constexpr std::size_t generalReferenceLimit = 1'000'000;
constexpr std::size_t parameterReferenceLimit = 1'000;

/// A text between two tags; libxml2 has the same limit for what it reads in one piece.
constexpr std::size_t textLimit = 10'000'000;

/// Levels of elements; libxml2 has the same limit, but not for what entities put together.
constexpr std::size_t depthLimit = 257;

/// Attributes of one element. libxml2 compares each with all others.
constexpr std::size_t attributeLimit = 256;

/// Further errors of one text say nothing new, and some texts would give one for each byte.
constexpr std::size_t errorLimit = 8;
constexpr std::size_t messageLimit = 200;

const char* chars(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

constexpr std::string_view blanks = " \t\r\n";

bool isBlank(std::string_view text) {
    return text.find_first_not_of(blanks) == std::string_view::npos;
}

int lineAt(std::string_view text, std::size_t at) {
    return static_cast<int>(
        1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

/// Where the start tag at `at` ends, behind its ">", if it has that many attributes at the most.
std::optional<std::size_t> endOfTag(std::string_view text, std::size_t at) {
    std::size_t attributes = 0;
    while ((at = text.find_first_of("\"'>", at)) != std::string_view::npos) {
        if (text[at] == '>')
            return at + 1;
        if (++attributes > attributeLimit)
            return std::nullopt;
        at = text.find(text[at], at + 1);
        if (at == std::string_view::npos)
            break;
        ++at;
    }
    return text.size();
}

/// Looks for what libxml2 would take too long or too much memory for, before it reads the text.
/// Answers the place and the fault.
std::optional<std::pair<std::size_t, const char*>> excess(std::string_view text) {
    constexpr std::size_t shortest = 5;  // of an attribute, with the blank before it
    const auto behind = [&](std::string_view end, std::size_t from) {
        const std::size_t found = text.find(end, from);
        return found == std::string_view::npos ? text.size() : found + end.size();
    };
    for (std::size_t at = text.find('<'); at < text.size();) {
        std::size_t next = at + 1;
        if (text.substr(at, 4) == "<!--")
            next = behind("-->", at + 4);
        else if (text.substr(at, 9) == "<![CDATA[")
            next = behind("]]>", at + 9);
        else if (text.substr(at, 2) == "<?")
            next = behind("?>", at + 2);
        next = std::min(text.find('<', next), text.size());
        if (next - at > attributeLimit * shortest && text[at + 1] != '!' && text[at + 1] != '?') {
            const std::optional<std::size_t> end = endOfTag(text, at);
            if (!end)
                return std::pair(at, "More than 256 attributes");
            if (next > *end && next - *end > textLimit)
                return std::pair(at, "Text is longer than 10 MB");
        }
        at = next;
    }
    return std::nullopt;
}

struct ContextDeleter {
    void operator()(xmlParserCtxt* context) const {
        xmlFreeDoc(context->myDoc);
        xmlFreeParserCtxt(context);
    }
};

/// A libxml2 context that reads a text. Stays where it is made: the parser points to it.
class Context {
public:
    Context() = default;
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    /// False for an empty text.
    bool open(std::string_view text, const xmlSAXHandler& sax, void* user) {
        static const bool initialised = (xmlInitParser(), true);
        static_cast<void>(initialised);
        // libxml2 looks back over what it was given in one piece, up to a limit; beyond it takes
        // pieces.
        constexpr std::size_t inOnePiece = 9'000'000;
        rest_ = text;
        if (text.size() <= inOnePiece)
            context_.reset(xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size())));
        else
            context_.reset(xmlCreateIOParserCtxt(nullptr, nullptr, readPiece, nullptr, this,
                                                 XML_CHAR_ENCODING_NONE));
        if (!context_)
            return false;
        *context_->sax = sax;
        context_->userData = user;
        xmlCtxtUseOptions(context_.get(), XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
        return true;
    }

    xmlParserCtxt* get() const { return context_.get(); }
    xmlParserCtxt* operator->() const { return context_.get(); }
    explicit operator bool() const { return context_ != nullptr; }

private:
    static int readPiece(void* user, char* buffer, int length) {
        Context& self = *static_cast<Context*>(user);
        const std::string_view piece = self.rest_.substr(0, static_cast<std::size_t>(length));
        std::memcpy(buffer, piece.data(), piece.size());
        self.rest_.remove_prefix(piece.size());
        return static_cast<int>(piece.size());
    }

    std::unique_ptr<xmlParserCtxt, ContextDeleter> context_;
    std::string_view rest_;
};

void noteStandalone(Tree& tree, const xmlParserCtxt& context) {
    if (context.standalone == 0 || context.standalone == 1)
        tree.standalone = context.standalone == 1;
}

/// The description of a failure: `Line N: message` for each error, joined with "; ".
class Errors {
public:
    void add(int line, std::string_view message) {
        if (full())
            return;
        const std::size_t end = message.find_last_not_of(" \n");
        std::string one(message.substr(0, end == std::string_view::npos ? 0 : end + 1));
        if (one.size() > messageLimit) {
            // Some messages quote what they found, however long.
            one.resize(text::validUtf8Prefix(one.substr(0, messageLimit)));
            one += "...";
        }
        std::replace(one.begin(), one.end(), '\n', ' ');
        text_ += (count_++ == 0 ? "Line " : "; Line ") + std::to_string(line) + ": " + one;
    }

    /// What libxml2 reports. A prefix that is not declared is no error: names count as written.
    void add(const xmlError& error) {
        if (error.domain != XML_FROM_NAMESPACE && error.level >= XML_ERR_ERROR)
            add(error.line, error.message ? error.message : "unknown error");
    }

    bool empty() const { return count_ == 0; }
    bool full() const { return count_ == errorLimit; }
    std::string take() { return std::move(text_); }

private:
    std::string text_;
    std::size_t count_ = 0;
};

/// Lets libxml2 read a text without building anything.
class Judge {
public:
    enum class Verdict { wellFormed, malformed, undecided };

    /// Undecided, when the text has what only the builder knows how to read.
    Verdict judge(std::string_view text);
    std::string takeErrors() { return errors_.take(); }
    const xmlParserCtxt& context() const { return *context_.get(); }

private:
    static Judge& self(void* user) { return *static_cast<Judge*>(user); }

    Context context_;
    Errors errors_;
    bool hasDoctype_ = false;
    bool hasInstruction_ = false;
};

Judge::Verdict Judge::judge(std::string_view text) {
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);
    sax.initialized = XML_SAX2_MAGIC;
    sax.internalSubset = [](void* user, const xmlChar*, const xmlChar*, const xmlChar*) {
        self(user).hasDoctype_ = true;
        xmlStopParser(self(user).context_.get());
    };
    sax.processingInstruction = [](void* user, const xmlChar*, const xmlChar*) {
        self(user).hasInstruction_ = true;
    };
    // The length of comments is checked only for those who listen.
    sax.comment = [](void*, const xmlChar*) {};
    sax.cdataBlock = [](void*, const xmlChar*, int) {};
    sax.serror = [](void* user, xmlErrorPtr error) {
        self(user).errors_.add(*error);
        if (self(user).errors_.full())
            xmlStopParser(self(user).context_.get());
    };
    if (context_.open(text, sax, this))
        xmlParseDocument(context_.get());
    if (!errors_.empty())
        return Verdict::malformed;
    // pugixml leaves the line ends of instructions as they are.
    if (hasDoctype_ || (hasInstruction_ && text.find('\r') != std::string_view::npos))
        return Verdict::undecided;
    if (context_ && context_->wellFormed)
        return Verdict::wellFormed;
    errors_.add(1, text.empty() ? "Document is empty" : "Input is not well-formed");
    return Verdict::malformed;
}

/// Builds the tree of a text that libxml2 found well-formed, and that has neither a document type
/// nor character references, with pugixml's own parser. Of such a text both make the same tree, and
/// this way takes half the time.
std::shared_ptr<Tree> buildQuickly(std::string_view text) {
    auto tree = std::make_shared<Tree>();
    constexpr unsigned int flags = pugi::parse_pi | pugi::parse_comments | pugi::parse_cdata |
                                   pugi::parse_escapes | pugi::parse_eol |
                                   pugi::parse_wconv_attribute | pugi::parse_ws_pcdata_single;
    if (!tree->memory.load_buffer(text.data(), text.size(), flags, pugi::encoding_utf8))
        return nullptr;
    return tree;
}

/// Follows the parser through a text and counts lines and columns as it goes.
class PositionKeeper {
public:
    PositionKeeper(Tree& tree, std::string_view text, std::shared_ptr<const std::string> file)
        : tree_(tree), text_(text), file_(file.get()) {
        tree.files.push_back(std::move(file));
    }

    /// Called when the parser stands at the end of a start tag, or behind the reference to the
    /// entity that holds the element: its attributes have no place of their own then.
    void keep(pugi::xml_node element, std::size_t parserAt, bool inEntity) {
        const std::size_t tag = text_.rfind(inEntity ? '&' : '<', parserAt - 1);
        if (tag == std::string_view::npos || tag < offset_)
            return;
        place(element.internal_object(), tag);
        if (inEntity)
            return;
        std::size_t at = tag + 1 + std::strlen(element.name());
        for (pugi::xml_attribute attribute : element.attributes()) {
            at = text_.find_first_not_of(" \t\r\n", at);
            place(attribute.internal_object(), at);
            const std::size_t quote = text_.find_first_of("\"'", at);
            if (quote == std::string_view::npos)
                return;
            at = text_.find(text_[quote], quote + 1) + 1;
        }
    }

private:
    void place(const void* of, std::size_t at) {
        if (at == std::string_view::npos || at < offset_)
            return;
        const std::string_view between = text_.substr(offset_, at - offset_);
        const std::size_t lastBreak = between.rfind('\n');
        if (lastBreak == std::string_view::npos) {
            column_ += text::countCodePoints(between);
        } else {
            line_ += static_cast<std::size_t>(std::count(between.begin(), between.end(), '\n'));
            column_ = 1 + text::countCodePoints(between.substr(lastBreak + 1));
        }
        offset_ = at;
        tree_.places[of] = {file_, static_cast<std::uint32_t>(line_),
                            static_cast<std::uint32_t>(column_)};
    }

    Tree& tree_;
    std::string_view text_;
    const std::string* file_;
    std::size_t offset_ = 0;
    std::size_t line_ = 1;
    std::size_t column_ = 1;
};

std::string qualified(const xmlChar* prefix, const xmlChar* name) {
    return prefix ? std::string(chars(prefix)) + ':' + chars(name) : std::string(chars(name));
}

/// Builds the tree of any text from libxml2's callbacks.
class Builder {
public:
    Builder(const std::string& text, std::shared_ptr<const std::string> file)
        : text_(text), tree_(std::make_shared<Tree>()), parent_(tree_->memory) {
        if (file)
            positions_.emplace(*tree_, text_, std::move(file));
    }

    Parsed run();

private:
    static Builder& self(void* user) { return *static_cast<Builder*>(user); }

    static xmlSAXHandler callbacks();
    void fail(std::string_view message);
    void stopWhenFull() {
        if (errors_.full())
            xmlStopParser(context_.get());
    }

    /// How many bytes of the text the parser has behind it.
    std::size_t parserAt() const {
        const xmlParserInput& input = *context_->input;
        return input.consumed + static_cast<std::size_t>(input.cur - input.base);
    }

    bool count(std::size_t nodes, std::size_t bytes);
    bool mayRefer(std::size_t limit);
    void declareEntity(const xmlChar* name, int type, const xmlChar* publicId,
                       const xmlChar* systemId, xmlChar* content);
    void startElement(const std::string& name);
    void addAttribute(const std::string& name, std::string_view value);
    void finishStart();
    void endElement();
    void addText(std::string_view text);
    void addNode(pugi::xml_node_type type, const char* name, std::string_view value);
    pugi::xml_node append(pugi::xml_node_type type);
    void flushText(bool atEnd);
    void keepDoctype(const char* name);

    /// True while the parser reads the document type: comments and instructions there are part of
    /// its text.
    bool ignores() const { return context_->inSubset != 0 || stopped_; }

    std::string_view text_;
    std::shared_ptr<Tree> tree_;
    std::optional<PositionKeeper> positions_;
    Context context_;
    pugi::xml_node parent_;
    std::size_t depth_ = 0;
    std::string pendingText_;
    std::set<std::string, std::less<>> externalEntities_;
    Errors errors_;
    std::size_t references_ = 0;
    std::size_t produced_ = 0;
    std::size_t producedByEntities_ = 0;
    bool stopped_ = false;
};

/// An error of our own ends the parse: libxml2 would go on.
void Builder::fail(std::string_view message) {
    if (stopped_)
        return;
    stopped_ = true;
    errors_.add(xmlSAX2GetLineNumber(context_.get()), message);
    xmlStopParser(context_.get());
}

bool Builder::count(std::size_t nodes, std::size_t bytes) {
    produced_ += bytes;
    if (context_->depth > 0)  // inside an entity
        producedByEntities_ += bytes + nodes * nodeCost;
    if (produced_ > text_.size() + entityLimit || producedByEntities_ > entityLimit)
        fail("Entities add more than 10 MB");
    return !stopped_;
}

bool Builder::mayRefer(std::size_t limit) {
    if (++references_ > limit)
        fail("Too many entity references");
    return !stopped_;
}

void Builder::declareEntity(const xmlChar* name, int type, const xmlChar* publicId,
                            const xmlChar* systemId, xmlChar* content) {
    const bool isParameter =
        type == XML_INTERNAL_PARAMETER_ENTITY || type == XML_EXTERNAL_PARAMETER_ENTITY;
    std::string key(1, isParameter ? '%' : '&');
    key += chars(name);
    const bool isInternal =
        type == XML_INTERNAL_GENERAL_ENTITY || type == XML_INTERNAL_PARAMETER_ENTITY;
    // libxml2 knows these without a declaration, and prints when it meets one.
    if (!isParameter && xmlGetPredefinedEntity(name))
        return;
    // An external entity is not declared, so that nothing can be read through it; the first
    // declaration of a name is the one that binds.
    if (!isInternal) {
        if (!xmlGetDocEntity(context_->myDoc, name) || isParameter)
            externalEntities_.insert(key);
        return;
    }
    if (externalEntities_.contains(key))
        return;
    if (content && excess(chars(content)))
        return fail("An entity holds more than 256 attributes in one element");
    xmlSAX2EntityDecl(context_.get(), name, type, publicId, systemId, content);
}

pugi::xml_node Builder::append(pugi::xml_node_type type) {
    pugi::xml_node node = parent_.append_child(type);
    if (parent_ == tree_->memory && !tree_->doctype.empty() && !tree_->nodeAfterDoctype)
        tree_->nodeAfterDoctype = node;
    return node;
}

void Builder::startElement(const std::string& name) {
    flushText(false);
    if (++depth_ > depthLimit)
        return fail("Excessive depth in document");
    if (!count(1, name.size()))
        return;
    parent_ = append(pugi::node_element);
    parent_.set_name(name.c_str());
}

void Builder::addAttribute(const std::string& name, std::string_view value) {
    if (count(1, value.size()))
        parent_.append_attribute(name.c_str()).set_value(value.data(), value.size());
}

void Builder::finishStart() {
    if (positions_ && !stopped_)
        positions_->keep(parent_, parserAt(), context_->depth > 0);
}

void Builder::endElement() {
    flushText(true);
    --depth_;
    parent_ = parent_.parent();
}

void Builder::addText(std::string_view text) {
    if (!count(0, text.size()))
        return;
    pendingText_ += text;
    if (pendingText_.size() > textLimit)
        fail("Text is longer than 10 MB");
}

void Builder::addNode(pugi::xml_node_type type, const char* name, std::string_view value) {
    flushText(false);
    if (!count(1, value.size()))
        return;
    pugi::xml_node node = append(type);
    if (*name != '\0')
        node.set_name(name);
    node.set_value(value.data(), value.size());
}

/// White space alone is kept only as the whole content of an element.
void Builder::flushText(bool atEnd) {
    if (pendingText_.empty())
        return;
    if (!isBlank(pendingText_) || (atEnd && !parent_.first_child()))
        parent_.append_child(pugi::node_pcdata).set_value(pendingText_.data(), pendingText_.size());
    pendingText_.clear();
}

/// Keeps the document type as it is written, internal subset included.
void Builder::keepDoctype(const char* name) {
    constexpr std::string_view opening = "<!DOCTYPE";
    const std::size_t start = text_.rfind(opening, parserAt());
    if (start == std::string_view::npos)
        return;
    std::size_t end = start + opening.size();
    int brackets = 0;
    for (; end < text_.size(); ++end) {
        const char c = text_[end];
        if (c == '"' || c == '\'') {
            end = text_.find(c, end + 1);
        } else if (text_.substr(end, 4) == "<!--") {
            end = text_.find("-->", end + 4);
        } else if (text_.substr(end, 2) == "<?") {
            end = text_.find("?>", end + 2);
        } else if (c == '[') {
            ++brackets;
        } else if (c == ']') {
            --brackets;
        } else if (c == '>' && brackets == 0) {
            break;
        }
        if (end == std::string_view::npos)
            return;
    }
    std::size_t from = text_.find(name, start + opening.size());
    if (from >= end)
        return;
    tree_->doctype = text_.substr(from, end - from);
}

xmlSAXHandler Builder::callbacks() {
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);
    sax.initialized = XML_SAX2_MAGIC;

    // Entities live in the parser's own document, which stays otherwise empty.
    sax.startDocument = [](void* user) {
        Builder& builder = self(user);
        xmlSAX2StartDocument(builder.context_.get());
        noteStandalone(*builder.tree_, *builder.context_.get());
        builder.context_->sax2 = 0;  // not before: the parser has just chosen the second version
    };
    sax.internalSubset = [](void* user, const xmlChar* name, const xmlChar* external,
                            const xmlChar* system) {
        xmlSAX2InternalSubset(self(user).context_.get(), name, external, system);
        self(user).keepDoctype(chars(name));
    };
    sax.entityDecl = [](void* user, const xmlChar* name, int type, const xmlChar* publicId,
                        const xmlChar* systemId, xmlChar* content) {
        self(user).declareEntity(name, type, publicId, systemId, content);
    };
    sax.getEntity = [](void* user, const xmlChar* name) {
        return self(user).mayRefer(generalReferenceLimit)
                   ? xmlSAX2GetEntity(self(user).context_.get(), name)
                   : nullptr;
    };
    sax.getParameterEntity = [](void* user, const xmlChar* name) {
        const xmlEntityPtr entity = self(user).mayRefer(parameterReferenceLimit)
                                        ? xmlSAX2GetParameterEntity(self(user).context_.get(), name)
                                        : nullptr;
        if (!entity)
            self(user).fail(std::string("Entity '%") + chars(name) + "' not defined");
        return entity;
    };
    sax.reference = [](void* user, const xmlChar* name) {
        self(user).fail(std::string("Entity '") + chars(name) + "' not defined");
    };

    // The document itself is read with the callbacks of the parser's first version, which take
    // names as written and keep namespace declarations in their place among the attributes.
    sax.startElement = [](void* user, const xmlChar* name, const xmlChar** attributes) {
        Builder& builder = self(user);
        if (builder.ignores())
            return;
        builder.startElement(chars(name));
        for (; attributes && attributes[0]; attributes += 2)
            builder.addAttribute(chars(attributes[0]), attributes[1] ? chars(attributes[1]) : "");
        builder.finishStart();
    };
    sax.endElement = [](void* user, const xmlChar*) {
        if (!self(user).ignores())
            self(user).endElement();
    };
    // Elements that stand in an entity come through those of the second version only.
    sax.startElementNs = [](void* user, const xmlChar* name, const xmlChar* prefix, const xmlChar*,
                            int namespaceCount, const xmlChar** namespaces, int attributeCount,
                            int defaultedCount, const xmlChar** attributes) {
        Builder& builder = self(user);
        if (builder.ignores())
            return;
        builder.startElement(qualified(prefix, name));
        for (int i = 0; i < namespaceCount; ++i, namespaces += 2)
            builder.addAttribute(
                namespaces[0] ? "xmlns:" + std::string(chars(namespaces[0])) : "xmlns",
                namespaces[1] ? chars(namespaces[1]) : "");
        // Attributes that only a DTD adds come last; a file holds what it says.
        for (int i = 0; i < attributeCount - defaultedCount; ++i, attributes += 5)
            builder.addAttribute(
                qualified(attributes[1], attributes[0]),
                {chars(attributes[3]), static_cast<std::size_t>(attributes[4] - attributes[3])});
        builder.finishStart();
    };
    sax.endElementNs = [](void* user, const xmlChar*, const xmlChar*, const xmlChar*) {
        if (!self(user).ignores())
            self(user).endElement();
    };
    sax.characters = [](void* user, const xmlChar* text, int length) {
        if (!self(user).ignores())
            self(user).addText({chars(text), static_cast<std::size_t>(length)});
    };
    sax.ignorableWhitespace = sax.characters;
    sax.cdataBlock = [](void* user, const xmlChar* text, int length) {
        if (!self(user).ignores())
            self(user).addNode(pugi::node_cdata, "",
                               {chars(text), static_cast<std::size_t>(length)});
    };
    sax.comment = [](void* user, const xmlChar* text) {
        if (!self(user).ignores())
            self(user).addNode(pugi::node_comment, "", chars(text));
    };
    sax.processingInstruction = [](void* user, const xmlChar* target, const xmlChar* data) {
        if (!self(user).ignores())
            self(user).addNode(pugi::node_pi, chars(target), data ? chars(data) : "");
    };
    sax.serror = [](void* user, xmlErrorPtr error) {
        if (self(user).stopped_)
            return;
        self(user).errors_.add(*error);
        self(user).stopWhenFull();
    };
    return sax;
}

Parsed Builder::run() {
    if (!context_.open(text_, callbacks(), this))
        return {nullptr, "Line 1: Document is empty"};
    xmlParseDocument(context_.get());
    if (errors_.empty() && !context_->wellFormed)
        errors_.add(1, "Input is not well-formed");
    if (!errors_.empty())
        return {nullptr, errors_.take()};
    return {std::move(tree_), {}};
}

}  // namespace

Parsed parseUtf8(const std::string& text, std::shared_ptr<const std::string> file) {
    const auto refuse = [&](std::size_t at, const char* fault) {
        Errors errors;
        errors.add(lineAt(text, at), fault);
        return Parsed{nullptr, errors.take()};
    };
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return refuse(0, "Input is larger than 2 GiB");
    // libxml2 would end the text at such a byte, or take it for another encoding.
    if (const std::size_t at = text.find('\0'); at != std::string::npos)
        return refuse(at, "Input holds a NUL character");
    if (text.compare(0, 3, "\xEF\xBB\xBF") == 0)
        return refuse(0, "Start tag expected, '<' not found");
    if (const auto found = excess(text))
        return refuse(found->first, found->second);

    Judge judge;
    const Judge::Verdict verdict = judge.judge(text);
    if (verdict == Judge::Verdict::malformed)
        return {nullptr, judge.takeErrors()};
    if (verdict == Judge::Verdict::wellFormed && !file && text.find("&#") == std::string::npos) {
        if (auto tree = buildQuickly(text)) {
            noteStandalone(*tree, judge.context());
            return {std::move(tree), {}};
        }
    }
    return Builder(text, std::move(file)).run();
}

}  // namespace yg::xml
