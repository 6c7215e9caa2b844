// SPDX-License-Identifier: MIT
//
// The life of libxml2 in this process: what is shared by threads, forks and the end. Internal.
#pragma once

#include <memory>
#include <string>

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

namespace yg::xml {

/// While one lives, a message of libxml2 that belongs to no context, as each of those on memory
/// that ran out, is noted on this thread and not printed. Threads that make one once the process
/// ends wait until it is gone.
class StrayMessages {
public:
    StrayMessages();
    ~StrayMessages();
    StrayMessages(const StrayMessages&) = delete;
    StrayMessages& operator=(const StrayMessages&) = delete;

    bool isOutOfMemory() const { return isOutOfMemory_; }

private:
    void* contextBefore_ = nullptr;
    xmlStructuredErrorFunc functionBefore_ = nullptr;
    bool isOutOfMemory_ = false;
};

/// A libxml2 context that reads a text.
class ParserContext {
public:
    /// `text` ends with a NUL character, and lives as long as this. Throws when memory does not
    /// suffice.
    ParserContext(const std::string& text, const xmlSAXHandler& sax, void* reader);

    /// What was given as `reader`.
    template <class Reader>
    static Reader& readerOf(void* context) {
        return *static_cast<Reader*>(static_cast<xmlParserCtxt*>(context)->_private);
    }

    xmlParserCtxt* get() const { return context_.get(); }
    xmlParserCtxt* operator->() const { return context_.get(); }
    const xmlParserCtxt& operator*() const { return *context_; }

private:
    struct Deleter {
        void operator()(xmlParserCtxt* context) const;
    };
    std::unique_ptr<xmlParserCtxt, Deleter> context_;
};

}  // namespace yg::xml
