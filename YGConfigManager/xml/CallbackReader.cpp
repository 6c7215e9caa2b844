// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/CallbackReader.h"

#include <cstring>

#include <libxml/SAX2.h>
#include <libxml/parserInternals.h>

namespace yg::xml {

bool CallbackReader::read() {
    xmlParseDocument(context_.get());
    if (isOutOfMemory_ || strayMessages_.isOutOfMemory())
        throw std::bad_alloc();
    if (errors_.empty() && !context_->wellFormed)
        errors_.add(1, std::nullopt, "Input is not well-formed");
    return errors_.empty();
}

xmlSAXHandler CallbackReader::commonCallbacks() {
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);
    sax.initialized = XML_SAX2_MAGIC;
    // The parser has just chosen the second version, whatever callbacks there are.
    sax.startDocument = [](void* user) {
        auto* const context = static_cast<xmlParserCtxt*>(user);
        context->sax2 = context->sax->startElementNs ? 1 : 0;
    };
    sax.serror = [](void* user, xmlErrorPtr error) {
        call<CallbackReader>(user, [&](CallbackReader& reader) { reader.note(*error); });
    };
    return sax;
}

void CallbackReader::fail(std::string_view message) {
    errors_.add(xmlSAX2GetLineNumber(context_.get()), parserAt(), message);
    xmlStopParser(context_.get());
}

std::optional<std::size_t> CallbackReader::parserAt() const {
    const xmlParserInput* const input = context_->input;
    if (!input || chars(input->base) != text_.c_str())
        return std::nullopt;
    return static_cast<std::size_t>(input->cur - input->base);
}

void CallbackReader::runOutOfMemory() {
    isOutOfMemory_ = true;
    xmlStopParser(context_.get());
}

void CallbackReader::note(const xmlError& error) {
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

}  // namespace yg::xml
