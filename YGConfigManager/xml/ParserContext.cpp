// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/ParserContext.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <new>
#include <pthread.h>
#include <thread>

#include <libxml/parserInternals.h>

#include "YGConfigManager/process/ForkMutex.h"

namespace yg::xml {

namespace {

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

}  // namespace

StrayMessages::StrayMessages() {
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

StrayMessages::~StrayMessages() {
    xmlSetStructuredErrorFunc(contextBefore_, functionBefore_);
    --parsesOfThread;
    --parses;
}

void ParserContext::Deleter::operator()(xmlParserCtxt* context) const {
    const std::lock_guard lock(contexts);
    xmlFreeDoc(context->myDoc);
    xmlFreeParserCtxt(context);
}

ParserContext::ParserContext(const std::string& text, const xmlSAXHandler& sax, void* reader) {
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

}  // namespace yg::xml
