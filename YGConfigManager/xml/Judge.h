// SPDX-License-Identifier: MIT
//
// Whether a text is well-formed and within the limits. Internal.
#pragma once

#include <string>
#include <vector>

#include "YGConfigManager/xml/CallbackReader.h"

namespace yg::xml {

/// Lets libxml2 read a text without building anything, and watches the limits.
class Judge : public CallbackReader {
public:
    enum class Verdict { wellFormed, malformed, undecided };

    /// By the callbacks of the parser's second version, which are quicker, and whose messages are
    /// the better known. They look into namespaces, of which the library knows nothing: undecided
    /// is a text of which they may say something else than those of the first version.
    explicit Judge(const std::string& text, bool looksIntoNamespaces)
        : CallbackReader(text, looksIntoNamespaces ? callbacksWithNamespaces() : callbacks()),
          looksIntoNamespaces_(looksIntoNamespaces) {}

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
        // Colons in the targets of instructions are reported either way.
        if (!looksIntoNamespaces_)
            return;
        if (error.code != XML_NS_ERR_UNDEFINED_NAMESPACE)
            isUnusual_ = true;
        countNamespaces(1);
    }

    void countNamespaces(int more);
    void watchNames();
    void watchLength(const xmlChar* prefix, const xmlChar* name);

    const bool looksIntoNamespaces_;
    int namespaces_ = 0;
    bool isUnusual_ = false;
    bool hasGivenUp_ = false;
    bool hasDoctype_ = false;
    bool hasInstruction_ = false;
};

}  // namespace yg::xml
