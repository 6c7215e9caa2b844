// SPDX-License-Identifier: MIT
//
// XML when memory runs out, in the libraries below as well: a parse says so, every other operation
// throws std::bad_alloc, and no tree is ever cut short.
#include <new>

#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Query.h"

#include "memory/MemoryTest.h"

#if YG_OWN_ALLOCATION

namespace yg {
namespace {

using testing::Allocators;
using testing::longText;

constexpr std::string_view thrown = "thrown";

class XmlMemory : public testing::MemoryTest {
protected:
    /// The operation, absent when it throws for want of memory.
    template <class Call>
    static auto orThrown(Call call) {
        return [call]() -> std::optional<decltype(call())> {
            try {
                return call();
            } catch (const std::bad_alloc&) {
                return std::nullopt;
            }
        };
    }

    /// Reading: the whole answer, or an exception.
    template <class Call, class Text>
    void readsAllOrThrows(Call call, Text text) {
        everyAllocationFails(Operation{
            orThrown(call),
            [text](const auto& answer) { return answer ? text(*answer) : std::string(thrown); },
            std::string(thrown), [] {}, Allocators::all, false});
    }

    /// Changing: the whole change, or an exception and none.
    template <class Change>
    void changesAllOrThrows(Change change) {
        std::optional<xml::Document> document;
        const auto prepare = [&] {
            document.reset();
            document = xml::Document::parseText(source).document;
        };
        prepare();
        const std::string before = document->serialise(xml::Form::plain);
        const auto textOf = [&](const auto& answer) {
            const std::string text = document->serialise(xml::Form::plain);
            EXPECT_TRUE(answer || text == before) << text;
            prepare();
            return answer ? text : std::string(thrown);
        };
        everyAllocationFails(Operation{orThrown([&] {
                                           change(document->root());
                                           return true;
                                       }),
                                       textOf, std::string(thrown), prepare, Allocators::all,
                                       false});
    }

    static std::string plain(const xml::Node& node) { return node.serialise(); }

    /// Too long for the memory that a tree has taken in advance.
    const std::string largeText = std::string(100'000, 'x');

    xml::Element large() const {
        return xml::Document::parseText("<large>" + largeText + "</large>").document.root();
    }
    xml::Document tree() const { return xml::Document::parseText(source).document; }

    const std::string source =
        "<r a='" + longText + "'><!--c--><s b='1'>" + longText + "<t/></s><s>&#65;</s></r>";
};

TEST_F(XmlMemory, AParseAnswersAllOrSaysThatMemoryRanOut) {
    put("a.xml", source);
    const std::string path = root.at("a.xml");
    const std::string withoutReferences = "<r>" + longText + "</r>";
    const std::string malformed = withoutReferences + "&x;";
    const std::string declared =
        "<?xml version='1.0' encoding='gb2312'?><r a='\xC4\xE3'>" + longText + "</r>";
    const auto text = [](const xml::ParseResult& result) {
        std::string all = result ? result.document.serialise(xml::Form::plain) : result.error;
        for (const xml::ParseError& error : result.errors)
            all += '\n' + error.message;
        return all;
    };
    const auto fails = [&](auto call) {
        everyAllocationFails(Operation{call, text, "out of memory", [] {}, Allocators::all, false});
    };
    fails([&] { return xml::Document::parseText(source); });
    fails([&] { return xml::Document::parseText(source, {.positions = true}); });
    fails([&] { return xml::Document::parseText(withoutReferences); });
    fails([&] { return xml::Document::parseText(malformed); });
    fails([&] { return xml::Document::parseBytes(declared); });
    fails([&] { return xml::Document::parseFile(path); });
}

TEST_F(XmlMemory, AFirstParseAnswersAllOrSaysThatMemoryRanOut) {
    for (const bool positions : {false, true})
        everyAllocationOfTheFirstCallFails(Operation{
            [&] { return xml::Document::parseText(source, {.positions = positions}); },
            [](const xml::ParseResult& result) {
                return result ? result.document.serialise(xml::Form::plain) : result.error;
            },
            "out of memory", [] {}, Allocators::all, false});
}

TEST_F(XmlMemory, AQueryFindsAllOrThrows) {
    const xml::Document tree = this->tree();
    const auto count = [](const auto& found) { return std::to_string(found.size()); };
    readsAllOrThrows([&] { return tree.query("r/s[@b or not(t)]"); }, count);
    readsAllOrThrows([&] { return tree.root().query("s"); }, count);
    readsAllOrThrows(
        [] { return xml::Query("r/s[1]"); },
        [](const xml::Query& query) { return std::string(query ? "valid" : "invalid"); });
    const xml::Query compiled("//s");
    readsAllOrThrows([&] { return tree.query(compiled); }, count);
}

TEST_F(XmlMemory, ATreeIsReadCopiedAndWrittenInFullOrThrows) {
    const xml::Document tree = this->tree();
    const auto self = [](const std::string& text) { return text; };
    readsAllOrThrows(
        [&] { return tree.copy(); },
        [](const xml::Document& document) { return document.serialise(xml::Form::plain); });
    readsAllOrThrows([&] { return tree.root().copy(); }, plain);
    readsAllOrThrows([&] { return tree.serialise(xml::Form::pretty); }, self);
    readsAllOrThrows([&] { return tree.root().serialise(); }, self);
    readsAllOrThrows([&] { return tree.root().stringValue(); }, self);
    readsAllOrThrows([&] { return xml::Element::create("name"); }, plain);
}

TEST_F(XmlMemory, AChangeIsMadeInFullOrThrows) {
    const xml::Element large = this->large();
    const auto child = [](const xml::Element& of, std::size_t index) {
        return xml::Element(of.childAt(index));
    };
    changesAllOrThrows([&](xml::Element element) { element.appendChild(large); });
    changesAllOrThrows([&](xml::Element element) { element.insertChild(large, 1); });
    changesAllOrThrows([&](xml::Element element) { element.setContent(largeText); });
    changesAllOrThrows([&](xml::Element element) { element.setAttribute("new", largeText); });
    changesAllOrThrows([&](xml::Element element) { element.setAttribute("a", largeText); });
    changesAllOrThrows([&](xml::Element element) { element.rename(largeText); });
    changesAllOrThrows([&](const xml::Element& element) { child(element, 1).replaceWith(large); });
}

}  // namespace
}  // namespace yg

#endif
