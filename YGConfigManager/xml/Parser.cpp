// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Parser.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <limits>
#include <mutex>
#include <new>
#include <optional>
#include <pthread.h>
#include <thread>
#include <utility>

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>

#include "YGConfigManager/process/ForkMutex.h"
#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg::xml {

namespace {

/// A text between two tags, as it is written; libxml2 has the same limit for what it reads in one
/// piece.
constexpr std::size_t textLimit = 10'000'000;

/// Attributes of one element. libxml2 compares each with all others.
constexpr std::size_t attributeLimit = 256;

/// Different names of elements, attributes and instructions. The dictionary of libxml2 stops
/// growing, and each look-up then takes longer with every name.
constexpr int nameLimit = 100'000;

/// Namespace declarations, and prefixes without one, that libxml2 is to look into. It goes through
/// all declarations in scope for each prefix, and makes a message for each that it does not find.
constexpr int namespaceLimit = 64;

/// Bytes of one name, its prefix included; libxml2 has the same limit for each of the two.
constexpr std::size_t nameLengthLimit = 50'000;

/// Further errors of one text say nothing new, and some texts would give one for each byte.
constexpr std::size_t errorLimit = 8;
constexpr std::size_t messageLimit = 200;

const char* chars(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

/// The length of the start tag that a piece begins with, up to its ">", if it has that many
/// attributes at the most. The piece ends before the next "<", which no tag can hold.
std::optional<std::size_t> lengthOfTag(std::string_view piece) {
    std::size_t attributes = 0;
    std::size_t at = 0;
    while ((at = piece.find_first_of("\"'>", at)) != std::string_view::npos) {
        if (piece[at] == '>')
            return at + 1;
        if (++attributes > attributeLimit)
            return std::nullopt;
        at = piece.find(piece[at], at + 1);
        if (at == std::string_view::npos)
            break;
        ++at;
    }
    return piece.size();
}

/// Looks for what libxml2 would take too long for or read without a limit, before it reads the
/// text. Each byte is looked at a fixed number of times. Answers the place and the fault.
std::optional<std::pair<std::size_t, const char*>> excess(std::string_view text) {
    constexpr std::size_t shortest = 5;  // of an attribute, with the blank before it
    constexpr std::pair<std::string_view, std::string_view> constructs[] = {
        {"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
    for (std::size_t at = text.find('<'); at < text.size();) {
        std::size_t end = at + 1;
        bool isTag = true;
        for (const auto& [opening, closing] : constructs) {
            if (text.substr(at, opening.size()) != opening)
                continue;
            const std::size_t found = text.find(closing, at + opening.size());
            end = found == std::string_view::npos ? text.size() : found + closing.size();
            isTag = false;
        }
        const std::size_t next = std::min(text.find('<', end), text.size());
        if (isTag && next - at > attributeLimit * shortest) {
            const auto length = lengthOfTag(text.substr(at, next - at));
            if (!length)
                return std::pair(at, "More than 256 attributes");
            end = at + *length;
        }
        if (next > end && next - end > textLimit)
            return std::pair(at, "Text is longer than 10 MB");
        at = next;
    }
    return std::nullopt;
}

/// For what takes libxml2's own locks, which the child of a fork could find taken: a thread's first
/// use of it, and making and freeing contexts.
constinit ForkMutex contexts;

/// Parses under way, which begin under the lock of contexts, and none once the process ends.
constinit std::atomic<int> parses = 0;
constinit std::atomic<bool> isEnding = false;

/// Those of this thread; one can be part of another.
thread_local int parsesOfThread = 0;

/// Those of other threads do not go on in the child of a fork.
[[gnu::constructor]] void forgetParsesInChildren() {
    ::pthread_atfork(nullptr, nullptr, [] { parses = 0; });
}

/// libxml2 cleans up behind this, when the process ends, and frees what a parse uses. So parses
/// that are under way come to their end first, but for one whose thread was stopped; threads that
/// begin another wait until the process is gone.
[[gnu::destructor]] void keepThreadsFromLibxml2() {
    constexpr int longestWait = 1000;  // milliseconds
    {
        const std::lock_guard lock(contexts);
        isEnding = true;
    }
    for (int waited = 0; parses > 0 && waited < longestWait; ++waited)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    contexts.lock();
}

/// While one lives, a message of libxml2 that belongs to no context, as each of those on memory
/// that ran out, is noted on this thread and not printed.
class StrayMessages {
public:
    StrayMessages() {
        {
            std::unique_lock lock(contexts);
            while (isEnding && parsesOfThread == 0) {
                lock.unlock();
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
                lock.lock();
            }
            ++parses;
            ++parsesOfThread;
            // libxml2 would do it at its first use, and not safely on two threads.
            xmlInitParser();
            contextBefore_ = xmlStructuredErrorContext;
            functionBefore_ = xmlStructuredError;
        }
        xmlSetStructuredErrorFunc(this, [](void* self, xmlErrorPtr error) {
            if (error->code == XML_ERR_NO_MEMORY)
                static_cast<StrayMessages*>(self)->isOutOfMemory_ = true;
        });
    }
    ~StrayMessages() {
        xmlSetStructuredErrorFunc(contextBefore_, functionBefore_);
        --parsesOfThread;
        --parses;
    }
    StrayMessages(const StrayMessages&) = delete;
    StrayMessages& operator=(const StrayMessages&) = delete;

    bool isOutOfMemory() const { return isOutOfMemory_; }

private:
    void* contextBefore_ = nullptr;
    xmlStructuredErrorFunc functionBefore_ = nullptr;
    bool isOutOfMemory_ = false;
};

struct ContextDeleter {
    void operator()(xmlParserCtxt* context) const {
        const std::lock_guard lock(contexts);
        xmlFreeDoc(context->myDoc);
        xmlFreeParserCtxt(context);
    }
};

/// A libxml2 context that reads a text.
class Context {
public:
    /// `text` ends with a NUL character, and lives as long as this. Throws when memory does not
    /// suffice.
    Context(const std::string& text, const xmlSAXHandler& sax, void* reader) {
        {
            const std::lock_guard lock(contexts);
            context_.reset(xmlNewParserCtxt());
        }
        // An input without a buffer of its own is neither copied nor read in pieces, and what lies
        // behind the parser in it has no limit.
        xmlParserInput* const input =
            context_ ? xmlNewStringInputStream(context_.get(),
                                               reinterpret_cast<const xmlChar*>(text.c_str()))
                     : nullptr;
        if (!input)
            throw std::bad_alloc();
        if (inputPush(context_.get(), input) < 0) {
            xmlFreeInputStream(input);
            throw std::bad_alloc();
        }
        *context_->sax = sax;
        // Some messages come with the context in place of its user data, so that is the context
        // too, for all callbacks alike.
        context_->userData = context_.get();
        context_->_private = reader;
        xmlCtxtUseOptions(context_.get(), XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
    }

    /// What was given as `reader`.
    template <class Reader>
    static Reader& readerOf(void* context) {
        return *static_cast<Reader*>(static_cast<xmlParserCtxt*>(context)->_private);
    }

    xmlParserCtxt* get() const { return context_.get(); }
    xmlParserCtxt* operator->() const { return context_.get(); }
    const xmlParserCtxt& operator*() const { return *context_; }

private:
    std::unique_ptr<xmlParserCtxt, ContextDeleter> context_;
};

void noteStandalone(Tree& tree, const xmlParserCtxt& context) {
    if (context.standalone == 0 || context.standalone == 1)
        tree.standalone = context.standalone == 1;
}

/// The errors of a text, which lives as long as this.
class Errors {
public:
    explicit Errors(std::string_view text) : text_(text) {}

    /// An error at an offset.
    void add(std::size_t at, std::string_view message) { add(pointAt(at), message); }

    /// An error on a line, which shows where the parser stands, when that is known.
    void add(int line, std::optional<std::size_t> parserAt, std::string_view message) {
        TextPoint point = parserAt ? pointAt(*parserAt) : TextPoint();
        if (point.line != static_cast<std::uint32_t>(line))
            point = {static_cast<std::uint32_t>(line), 0};
        add(point, message);
    }

    bool empty() const { return errors_.empty(); }
    bool full() const { return errors_.size() == errorLimit; }
    std::vector<ParseError> take() { return std::move(errors_); }

private:
    TextPoint pointAt(std::size_t offset) {
        if (!lines_)
            lines_.emplace(text_);
        return lines_->pointAt(text_, offset);
    }

    void add(TextPoint point, std::string_view message) {
        if (full())
            return;
        const std::size_t end = message.find_last_not_of(" \n");
        std::string one =
            storableText(message.substr(0, end == std::string_view::npos ? 0 : end + 1));
        if (one.size() > messageLimit) {
            // Some messages quote what they found, however long.
            one.resize(text::validUtf8Prefix(one.substr(0, messageLimit)));
            one += "...";
        }
        std::replace(one.begin(), one.end(), '\n', ' ');
        errors_.push_back({point.line, point.column, std::move(one)});
    }

    std::string_view text_;
    std::optional<text::LineIndex> lines_;  ///< made for the first error
    std::vector<ParseError> errors_;
};

/// What reads a text by libxml2's callbacks. No exception crosses libxml2.
class Reader {
public:
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

protected:
    Reader(const std::string& text, const xmlSAXHandler& callbacks)
        : text_(text), context_(text, callbacks, this), errors_(text) {}
    virtual ~Reader() = default;

    /// Parses; false when there were errors. Throws when memory does not suffice.
    bool read() {
        xmlParseDocument(context_.get());
        if (isOutOfMemory_ || strayMessages_.isOutOfMemory())
            throw std::bad_alloc();
        if (errors_.empty() && !context_->wellFormed)
            errors_.add(1, std::nullopt, "Input is not well-formed");
        return errors_.empty();
    }

    /// The callbacks that do not depend on what is made of the text.
    static xmlSAXHandler commonCallbacks() {
        xmlSAXHandler sax;
        std::memset(&sax, 0, sizeof sax);
        sax.initialized = XML_SAX2_MAGIC;
        // The parser has just chosen the second version, whatever callbacks there are.
        sax.startDocument = [](void* user) {
            auto* const context = static_cast<xmlParserCtxt*>(user);
            context->sax2 = context->sax->startElementNs ? 1 : 0;
        };
        sax.serror = [](void* user, xmlErrorPtr error) {
            call<Reader>(user, [&](Reader& reader) { reader.note(*error); });
        };
        return sax;
    }

    /// Does the work of a callback.
    template <class Kind, class Work>
    static void call(void* user, Work work) {
        Kind& reader = static_cast<Kind&>(Context::readerOf<Reader>(user));
        if (reader.isOutOfMemory_)
            return;
        try {
            work(reader);
        } catch (const std::bad_alloc&) {
            reader.runOutOfMemory();
        }
    }

    /// An error of our own ends the parse: libxml2 would go on.
    void fail(std::string_view message) {
        errors_.add(xmlSAX2GetLineNumber(context_.get()), parserAt(), message);
        xmlStopParser(context_.get());
    }

    /// How many bytes of the text the parser has behind it; absent when it was stopped.
    std::optional<std::size_t> parserAt() const {
        const xmlParserInput* const input = context_->input;
        if (!input || chars(input->base) != text_.c_str())
            return std::nullopt;
        return static_cast<std::size_t>(input->cur - input->base);
    }

    /// No error of the text.
    virtual void noteNamespaceError(const xmlError& /*error*/) {}

    const std::string& text_;
    StrayMessages strayMessages_;
    Context context_;
    Errors errors_;

private:
    void runOutOfMemory() {
        isOutOfMemory_ = true;
        xmlStopParser(context_.get());
    }

    /// What libxml2 reports. A prefix that is not declared is no error: names count as written.
    void note(const xmlError& error) {
        // Without a message, memory did not suffice for that.
        if (error.code == XML_ERR_NO_MEMORY || !error.message)
            return runOutOfMemory();
        if (error.domain == XML_FROM_NAMESPACE)
            return noteNamespaceError(error);
        if (error.level < XML_ERR_ERROR)
            return;
        errors_.add(error.line, parserAt(), error.message);
        // The rest is read for further errors, and the limits are watched by callbacks, which
        // libxml2 would no longer call.
        context_->recovery = 1;
        if (errors_.full())
            xmlStopParser(context_.get());
    }

    bool isOutOfMemory_ = false;
};

/// Lets libxml2 read a text without building anything, and watches the limits.
class Judge : public Reader {
public:
    enum class Verdict { wellFormed, malformed, undecided };

    /// By the callbacks of the parser's second version, which are quicker, and whose messages are
    /// the better known. They look into namespaces, of which the library knows nothing: undecided
    /// is a text of which they may say something else than those of the first version.
    explicit Judge(const std::string& text, bool looksIntoNamespaces)
        : Reader(text, looksIntoNamespaces ? callbacksWithNamespaces() : callbacks()) {}

    Verdict judge() {
        const bool accepts = read();
        if (hasGivenUp_ || (accepts && isUnusual_))
            return Verdict::undecided;
        return accepts ? Verdict::wellFormed : Verdict::malformed;
    }
    std::vector<ParseError> takeErrors() { return errors_.take(); }
    const xmlParserCtxt& context() const { return *context_; }
    bool hasDoctype() const { return hasDoctype_; }
    bool hasInstruction() const { return hasInstruction_; }

private:
    static xmlSAXHandler callbacks();
    static xmlSAXHandler callbacksWithNamespaces();

    void noteNamespaceError(const xmlError& error) override {
        if (error.code != XML_NS_ERR_UNDEFINED_NAMESPACE)
            isUnusual_ = true;
        countNamespaces(1);
    }

    void countNamespaces(int more) {
        namespaces_ += more;
        if (namespaces_ > namespaceLimit) {
            hasGivenUp_ = true;
            xmlStopParser(context_.get());
        }
    }

    void watchNames() {
        if (xmlDictSize(context_->dict) > nameLimit)
            fail("More than 100000 different names");
    }

    void watchLength(const xmlChar* prefix, const xmlChar* name) {
        if (prefix && std::strlen(chars(prefix)) + std::strlen(chars(name)) >= nameLengthLimit)
            isUnusual_ = true;
    }

    int namespaces_ = 0;
    bool isUnusual_ = false;
    bool hasGivenUp_ = false;
    bool hasDoctype_ = false;
    bool hasInstruction_ = false;
};

xmlSAXHandler Judge::callbacks() {
    xmlSAXHandler sax = commonCallbacks();
    sax.internalSubset = [](void* user, const xmlChar*, const xmlChar*, const xmlChar*) {
        call<Judge>(user, [](Judge& judge) {
            judge.hasDoctype_ = true;
            // Entities, attribute lists and notations are where the attacks on readers live, and no
            // configuration needs them.
            // libxml2 would read a subset behind one character more, whatever that is.
            const xmlChar* const end = judge.context_->input->cur;
            if (end[0] == '[' || (end[0] == '>' && end[1] == '['))
                judge.fail("A document type with an internal subset is not allowed");
            else if (end[0] != '>')
                judge.fail("DOCTYPE improperly terminated");
        });
    };
    sax.startElement = [](void* user, const xmlChar*, const xmlChar**) {
        call<Judge>(user, [](Judge& judge) { judge.watchNames(); });
    };
    sax.processingInstruction = [](void* user, const xmlChar*, const xmlChar*) {
        call<Judge>(user, [](Judge& judge) {
            judge.hasInstruction_ = true;
            judge.watchNames();
        });
    };
    // The length of comments is checked only for those who listen.
    sax.comment = [](void*, const xmlChar*) {};
    sax.cdataBlock = [](void*, const xmlChar*, int) {};
    return sax;
}

xmlSAXHandler Judge::callbacksWithNamespaces() {
    xmlSAXHandler sax = callbacks();
    sax.startElement = nullptr;
    sax.startElementNs = [](void* user, const xmlChar* name, const xmlChar* prefix, const xmlChar*,
                            int namespaceCount, const xmlChar** namespaces, int attributeCount, int,
                            const xmlChar** attributes) {
        call<Judge>(user, [&](Judge& judge) {
            judge.watchNames();
            judge.watchLength(prefix, name);
            for (int i = 0; i < attributeCount; ++i, attributes += 5)
                judge.watchLength(attributes[1], attributes[0]);
            const auto* const declaration = reinterpret_cast<const xmlChar*>("xmlns");
            for (int i = 0; i < namespaceCount; ++i, namespaces += 2) {
                if (namespaces[0])
                    judge.watchLength(declaration, namespaces[0]);
            }
            judge.countNamespaces(namespaceCount);
        });
    };
    return sax;
}

/// Builds the tree of a text that libxml2 found well-formed, and that has neither a document type
/// nor character references, with pugixml's own parser. Of such a text both make the same tree, and
/// this way takes half the time.
std::shared_ptr<Tree> buildQuickly(std::string_view text) {
    auto tree = std::make_shared<Tree>();
    constexpr unsigned int flags = pugi::parse_pi | pugi::parse_comments | pugi::parse_cdata |
                                   pugi::parse_escapes | pugi::parse_eol |
                                   pugi::parse_wconv_attribute | pugi::parse_ws_pcdata_single;
    const pugi::xml_parse_result result =
        tree->memory.load_buffer(text.data(), text.size(), flags, pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory)
        throw std::bad_alloc();
    return result ? std::move(tree) : nullptr;
}

/// Builds the tree of any text from the callbacks of the parser's first version, which take names
/// as written and keep namespace declarations in their place among the attributes.
class Builder : public Reader {
public:
    explicit Builder(const std::string& text)
        : Reader(text, callbacks()), tree_(std::make_shared<Tree>()), parent_(tree_->memory) {}

    Parsed run() {
        if (!read())
            return {nullptr, errors_.take()};
        noteStandalone(*tree_, *context_);
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

/// Has a text judged, and the judge who decides say how it read it.
template <class Use>
void judged(const std::string& text, Use use) {
    {
        Judge judge(text, true);
        const Judge::Verdict verdict = judge.judge();
        // A right declaration of this one is left out without a word, however often it stands.
        const bool declaresXml = text.find("xmlns:xml") != std::string::npos;
        if (verdict == Judge::Verdict::malformed ||
            (verdict == Judge::Verdict::wellFormed && !declaresXml))
            return use(judge, verdict == Judge::Verdict::wellFormed);
    }
    Judge judge(text, false);
    use(judge, judge.judge() == Judge::Verdict::wellFormed);
}

/// Where and why libxml2 need not look at a text; nothing when it decides.
std::optional<std::pair<std::size_t, const char*>> fault(const std::string& text) {
    if (text.empty())
        return std::pair(std::size_t{0}, "Document is empty");
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        return std::pair(std::size_t{0}, "Input is larger than 2 GiB");
    // libxml2 would end the text at such a byte, or take it for another encoding.
    if (const std::size_t at = text.find('\0'); at != std::string::npos)
        return std::pair(at, "Input holds a NUL character");
    if (text.compare(0, 3, "\xEF\xBB\xBF") == 0)
        return std::pair(std::size_t{0}, "Start tag expected, '<' not found");
    return excess(text);
}

}  // namespace

Parsed parseUtf8(const std::string& text, bool byCallbacks) {
    if (const auto found = fault(text)) {
        Errors errors(text);
        errors.add(found->first, found->second);
        return {nullptr, errors.take()};
    }
    Parsed parsed;
    judged(text, [&](Judge& judge, bool accepts) {
        if (!accepts) {
            parsed.errors = judge.takeErrors();
            return;
        }
        // pugixml leaves character references to characters that it cannot hold, and the line ends
        // of instructions, as they are.
        const bool isPlain = !judge.hasDoctype() && text.find("&#") == std::string::npos &&
                             !(judge.hasInstruction() && text.find('\r') != std::string::npos);
        parsed.tree = isPlain && !byCallbacks ? buildQuickly(text) : nullptr;
        if (parsed.tree)
            noteStandalone(*parsed.tree, judge.context());
    });
    if (!parsed.tree && parsed.errors.empty())
        return Builder(text).run();
    return parsed;
}

bool isReadable(const std::string& text) {
    bool isReadable = false;
    if (!fault(text))
        judged(text, [&](const Judge&, bool accepts) { isReadable = accepts; });
    return isReadable;
}

}  // namespace yg::xml
