// SPDX-License-Identifier: MIT
//
// What is common to all that is read by libxml2's callbacks. Internal.
#pragma once

#include <cstddef>
#include <new>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/xml/ParseErrors.h"
#include "YGConfigManager/xml/ParserContext.h"

namespace yg::xml {

inline const char* chars(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

/// What reads a text by libxml2's callbacks. No exception crosses libxml2.
class CallbackReader {
public:
    CallbackReader(const CallbackReader&) = delete;
    CallbackReader& operator=(const CallbackReader&) = delete;

protected:
    CallbackReader(const std::string& text, const xmlSAXHandler& callbacks)
        : text_(text), context_(text, callbacks, this), errors_(text) {}
    virtual ~CallbackReader() = default;

    /// Parses; false when there were errors. Throws when memory does not suffice.
    bool read();

    /// The callbacks that do not depend on what is made of the text.
    static xmlSAXHandler commonCallbacks();

    /// Does the work of a callback.
    template <class Kind, class Work>
    static void call(void* user, Work work) {
        Kind& reader = static_cast<Kind&>(ParserContext::readerOf<CallbackReader>(user));
        if (reader.isOutOfMemory_)
            return;
        try {
            work(reader);
        } catch (const std::bad_alloc&) {
            reader.runOutOfMemory();
        }
    }

    /// An error of our own ends the parse: libxml2 would go on.
    void fail(std::string_view message);

    /// How many bytes of the text the parser has behind it; absent when it was stopped.
    std::optional<std::size_t> parserAt() const;

    /// No error of the text.
    virtual void noteNamespaceError(const xmlError& /*error*/) {}

    const std::string& text_;
    StrayMessages strayMessages_;
    ParserContext context_;
    ParseErrors errors_;

private:
    void runOutOfMemory();

    /// What libxml2 reports. A prefix that is not declared is not an error: names count as written.
    void note(const xmlError& error);

    bool isOutOfMemory_ = false;
};

}  // namespace yg::xml
