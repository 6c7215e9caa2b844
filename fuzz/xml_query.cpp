// SPDX-License-Identifier: MIT
//
// Any text as a query on a fixed tree: nothing is thrown, nodes come once and in document order,
// and a tree from which something was taken out answers as a clean one.
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Query.h"

#include "Target.h"

namespace {

using namespace yg::xml;
using yg::fuzz::require;
using yg::fuzz::textOf;

constexpr std::string_view text =
    "<!--b--><a n='1' 名='值'><b n='2'>x<c/></b><p:b> </p:b><?p q?><b n=\"it's\"><![CDATA[y]]></b>"
    "<页/></a>";

/// The same tree after something was taken out of it.
Document changedDocument() {
    Document document = Document::parseText(text).document;
    Element root = document.root();
    root.insertChild(Document::parseText("<b n='2'><c/><d/></b>").document.root(), 1);
    root.childAt(1).remove();
    Node replaced = root.childAt(0);
    replaced.replaceWith(replaced);
    return document;
}

std::string answerOf(const std::vector<Node>& nodes) {
    std::string all;
    for (const Node& node : nodes)
        all += node.serialise() + "\n";
    return all;
}

void expectDocumentOrder(const Document& document, const std::vector<Node>& found) {
    const std::vector<Node> all = document.query("//node()");
    auto at = all.begin();
    for (const Node& node : found) {
        at = std::find(at, all.end(), node);
        require(at != all.end(), "nodes come once and in document order");
        ++at;
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Document clean = Document::parseText(text).document;
    static const Document changed = changedDocument();
    static const Element inner = Element(clean.query("//b").at(0));
    static const Element copy = Element(inner.copy());

    const std::string_view expression = textOf(data, size);
    // Each level of a predicate multiplies the time, as the language has it.
    if (size > 512 || std::count(expression.begin(), expression.end(), '[') > 6)
        return 0;
    const Query query(expression);
    const std::vector<Node> found = clean.query(query);
    require(query || found.empty(), "an invalid query selects nothing");
    expectDocumentOrder(clean, found);
    require(answerOf(clean.query(expression)) == answerOf(found),
            "the same query, the same answer");
    require(answerOf(changed.query(query)) == answerOf(found),
            "a tree from which something was taken out answers as a clean one");
    expectDocumentOrder(changed, changed.query(query));
    require(
        answerOf(Element(changed.root().childAt(0)).query(query)) == answerOf(inner.query(query)),
        "the same holds below the root");
    static_cast<void>(copy.query(query));
    return 0;
}
