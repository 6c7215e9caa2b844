// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Judge.h"

#include <cstring>

namespace yg::xml {

namespace {

/// Different names of elements, attributes and instructions. The dictionary of libxml2 stops
/// growing, and each look-up then takes longer with every name.
constexpr int nameLimit = 100'000;

/// Namespace declarations, and prefixes without one, that libxml2 is to look into. It goes through
/// all declarations in scope for each prefix, and makes a message for each that it does not find.
constexpr int namespaceLimit = 64;

/// Bytes of one name, its prefix included; libxml2 has the same limit for each of the two.
constexpr std::size_t nameLengthLimit = 50'000;

}  // namespace

void Judge::countNamespaces(int more) {
    namespaces_ += more;
    if (namespaces_ > namespaceLimit) {
        hasGivenUp_ = true;
        xmlStopParser(context_.get());
    }
}

void Judge::watchNames() {
    if (xmlDictSize(context_->dict) > nameLimit)
        fail("More than 100000 different names");
}

void Judge::watchLength(const xmlChar* prefix, const xmlChar* name) {
    if (prefix && std::strlen(chars(prefix)) + std::strlen(chars(name)) >= nameLengthLimit)
        isUnusual_ = true;
}

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

}  // namespace yg::xml
