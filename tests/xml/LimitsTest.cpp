// SPDX-License-Identifier: MIT
//
// What is refused because it would take too long or too much memory, and large or deep files.
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Document.h"

#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::HasSubstr;

constexpr std::size_t megabyte = 1'000'000;

std::string withAttributes(std::size_t count, std::string_view between = " ") {
    std::string text = "<b";
    for (std::size_t i = 0; i < count; ++i)
        text += joined(between, "a", std::to_string(i), "=\"/>\"");
    return text + "/>";
}

std::string nested(std::size_t levels) {
    return repeated("<a>", levels) + repeated("</a>", levels);
}

TEST(Limits, NestingOf256LevelsBelowTheRootIsReadAndDeeperIsAnError) {
    EXPECT_TRUE(parsedText(nested(256)));
    EXPECT_TRUE(parsedText(nested(257)));
    EXPECT_FALSE(parsedText(nested(258)));
    EXPECT_FALSE(parsedText(nested(1'000)));
    EXPECT_FALSE(parsedText(nested(1'000'000)));
    EXPECT_FALSE(parsedText(repeated("<a>", 1'000'000)));
    EXPECT_TRUE(parsedText(joined("<!DOCTYPE a>", nested(257))));
    EXPECT_FALSE(parsedText(joined("<!DOCTYPE a>", nested(258))));
    EXPECT_FALSE(parsedText(repeated("<a x='&#65;'>", 258) + repeated("</a>", 258)));
    EXPECT_FALSE(parsedText(repeated("<p:a>", 258) + repeated("</p:a>", 258)));
}

TEST(Limits, AValueOver10MegabytesIsAnError) {
    const std::string large = repeated("x", 10 * megabyte + 1'000);
    EXPECT_FALSE(parsedText("<a>" + large + "</a>"));
    EXPECT_FALSE(parsedText("<a b='" + large + "'/>"));
    EXPECT_FALSE(parsedText("<a><![CDATA[" + large + "]]></a>"));
    EXPECT_FALSE(parsedText("<a><!--" + large + "--></a>"));
    EXPECT_FALSE(parsedText("<a><?b " + large + "?></a>"));
    EXPECT_FALSE(parsedText("<a>&#65;" + large + "</a>"));
    EXPECT_FALSE(parsedText("<!DOCTYPE a><a>" + large + "</a>"));
}

TEST(Limits, AValueOfLessThan10MegabytesIsRead) {
    const std::string large = repeated("x", 10 * megabyte - 1'000);
    EXPECT_TRUE(parsedText("<a>" + large + "</a>").document.root().stringValue() == large);
    EXPECT_TRUE(parsedText("<a b='" + large + "'/>").document.root().attribute("b") == large);
    EXPECT_TRUE(parsedText("<a><![CDATA[" + large + "]]></a>"));
    EXPECT_TRUE(parsedText("<a><!--" + large + "--></a>"));
    EXPECT_TRUE(parsedText("<a>&#65;" + large + "</a>"));
}

TEST(Limits, ATextOver10MegabytesIsAnErrorWhateverStandsBeforeIt) {
    const std::string large = repeated("x", 11 * megabyte);
    for (const std::string_view before :
         {"<b/>"sv, "</b>"sv, "<!--c-->"sv, "<![CDATA[c]]>"sv, "<?c?>"sv, "<b c='>'>"sv}) {
        const std::string opening = joined(before == "</b>" ? "<a><b>" : "<a>", before);
        const std::string closing =
            before.back() == '>' && before.starts_with("<b c") ? "</b></a>" : "</a>";
        EXPECT_EQ(parsedText(joined(opening, large, closing)).error,
                  "Line 1: Text is longer than 10 MB")
            << before;
        EXPECT_TRUE(parsedText(joined(opening, large.substr(0, 9 * megabyte), closing))) << before;
    }
}

TEST(Limits, ALargeFileMayHaveLongValues) {
    for (const std::size_t length : {1'000U, 30'000U, 100'000U, 5'000'000U}) {
        const std::string value = repeated("x", length);
        const std::string element = joined("<b c='", value, "'>", value, "</b><!--", value,
                                           "--><![CDATA[", value, "]]><?p ", value, "?>");
        const ParseResult result = parsedText(
            joined("<a>", repeated(element, 12 * megabyte / element.size() + 1), "</a>"));
        ASSERT_TRUE(result) << result.error;
        const Element last(result.document.query("a/b[last()]").front());
        EXPECT_TRUE(last.attribute("c") == value && last.stringValue() == value);
    }
}

TEST(Limits, ANameOf50000BytesIsReadAndALongerOneIsAnError) {
    const auto isRead = [](std::string_view name) {
        const bool element = static_cast<bool>(parsedText(joined("<", name, "/>")));
        EXPECT_EQ(static_cast<bool>(parsedText(joined("<a ", name, "=''/>"))), element);
        EXPECT_EQ(static_cast<bool>(
                      parsedText(joined("<a>", "<", name, " b='&#65;'>x</", name, "></a>"))),
                  element);
        return element;
    };
    for (const std::string_view letter : {"x"sv, "\xC3\xA9"sv}) {
        const auto name = [&](std::size_t bytes) {
            return repeated(letter, bytes / letter.size());
        };
        EXPECT_TRUE(isRead(name(49'998)));
        EXPECT_FALSE(isRead(name(50'004)));
        EXPECT_TRUE(isRead(joined("p:", name(49'990))));
        EXPECT_TRUE(isRead(joined(name(30'000), ":", name(19'990))));
        EXPECT_FALSE(isRead(joined(name(30'000), ":", name(30'000))));
        EXPECT_FALSE(isRead(joined(name(40'000), ":", name(40'000))));
    }
    for (std::size_t bytes = 49'990; bytes < 50'010; ++bytes) {
        isRead(repeated("x", bytes));
        isRead(joined("p:", repeated("x", bytes - 2)));
        isRead(joined(repeated("x", bytes - 2), ":p"));
        parsedText(joined("<a xmlns:", repeated("x", bytes - 6), "='u'/>"));
    }
}

std::string differentNames(std::size_t count, std::string_view before, std::string_view after) {
    std::string text = "<a>";
    for (std::size_t i = 0; i < count; ++i)
        ((text += before) += "n" + std::to_string(i)) += after;
    return text + "</a>";
}

TEST(Limits, ADocumentOf100000DifferentNamesIsReadAndOneOfMoreIsAnError) {
    for (const auto& [before, after] :
         {std::pair("<"sv, "/>"sv), {"<b "sv, "=''/>"sv}, {"<?"sv, "?>"sv}, {"<p:"sv, "/>"sv}}) {
        const std::string most = differentNames(99'000, before, after);
        EXPECT_TRUE(Document::parseText(most)) << before;
        EXPECT_TRUE(Document::parseText(most, withPositions)) << before;
        EXPECT_THAT(parsedText(differentNames(101'000, before, after)).error,
                    testing::EndsWith("More than 100000 different names"));
    }
    EXPECT_TRUE(parsedText(joined("<a>", repeated("<b c=''/><?d?>", 101'000), "</a>")));
    // After an error, libxml2 reads on.
    EXPECT_THAT(parsedText("<!-- -- -->" + differentNames(300'000, "<", "/>")).error,
                testing::EndsWith("More than 100000 different names"));
}

std::string declarations(std::size_t from, std::size_t to) {
    std::string text;
    for (std::size_t i = from; i < to; ++i)
        text += joined(" xmlns:p", std::to_string(i), "='u'");
    return text;
}

TEST(Limits, NamespacesHaveNone) {
    const std::string many = joined("<b", declarations(0, 200), "/>");
    EXPECT_TRUE(parsedText(joined("<a>", repeated(many, 100), "</a>")));
    std::string open;
    std::string close;
    for (std::size_t i = 0; i < 200; ++i) {
        open += joined("<p", std::to_string(i), ":a", declarations(i * 200, i * 200 + 200), ">");
        close.insert(0, joined("</p", std::to_string(i), ":a>"));
    }
    EXPECT_TRUE(parsedText(joined(open, "<q:b q:c='1'/>", close)));
    EXPECT_TRUE(parsedText(joined("<a>", repeated("<p:b q:c='1'/>", 10'000), "</a>")));
    EXPECT_TRUE(parsedText(joined("<a>", repeated("<b xmlns='u v'/>", 10'000), "</a>")));
}

TEST(Limits, ARepeatedDeclarationIsAnErrorWhateverItDeclares) {
    for (const std::string_view value :
         {""sv, "u"sv, "u v"sv, "http://www.w3.org/XML/1998/namespace"sv,
          "http://www.w3.org/2000/xmlns/"sv}) {
        for (const std::string_view name :
             {"xmlns"sv, "xmlns:p"sv, "xmlns:xml"sv, "xmlns:xmlns"sv}) {
            const std::string one = joined(" ", name, "='", value, "'");
            EXPECT_TRUE(parsedText(joined("<a", one, "/>"))) << one;
            EXPECT_FALSE(parsedText(joined("<a", one, one, "/>"))) << one;
            EXPECT_FALSE(parsedText(joined("<a", one, " b=''", one, "/>"))) << one;
        }
    }
}

TEST(Limits, TagsWithoutAnEndAreAnError) {
    EXPECT_FALSE(parsedText("<r>" + repeated("<" + std::string(1'300, ' '), 3'000)));
    EXPECT_FALSE(parsedText("<r>" + repeated("<a b='" + std::string(1'300, ' '), 3'000)));
    EXPECT_FALSE(parsedText("<r>" + repeated("<", 1'000'000)));
    EXPECT_FALSE(parsedText("<r>" + repeated("<!--", 1'000'000)));
    EXPECT_FALSE(parsedText("<r>" + repeated("<![CDATA[", 1'000'000)));
    EXPECT_FALSE(parsedText("<r>" + repeated("<?", 1'000'000)));
}

TEST(Limits, WhatCanBeReadIsSaidAsTheReaderSaysIt) {
    const auto expectSame = [](const std::string& text) {
        EXPECT_EQ(Document::canBeRead(text), static_cast<bool>(parsedText(text)))
            << text.substr(0, 100);
        return Document::canBeRead(text);
    };
    EXPECT_TRUE(expectSame("<a b='c'>d</a>"));
    EXPECT_TRUE(expectSame("<!DOCTYPE a><a/>"));
    EXPECT_TRUE(expectSame(nested(257)));
    EXPECT_TRUE(expectSame(withAttributes(256)));
    EXPECT_FALSE(expectSame(""));
    EXPECT_FALSE(expectSame("<a>"));
    EXPECT_FALSE(expectSame("<a>\xFF</a>"));
    EXPECT_FALSE(expectSame("<a>\0</a>"s));
    EXPECT_FALSE(expectSame("<!DOCTYPE a []><a/>"));
    EXPECT_FALSE(expectSame(nested(258)));
    EXPECT_FALSE(expectSame(withAttributes(257)));
    EXPECT_TRUE(expectSame("<a b='" + repeated("&quot;", 2 * megabyte) + "'/>"));
    EXPECT_FALSE(expectSame("<a b='" + repeated("x", 11 * megabyte) + "'/>"));
    EXPECT_FALSE(expectSame("<a>" + repeated("&gt;", 3 * megabyte) + "</a>"));
    EXPECT_FALSE(expectSame(joined("<", repeated("x", 50'100), "/>")));
    EXPECT_FALSE(expectSame(joined("<", repeated("x", 30'000), ":", repeated("y", 30'000), "/>")));
    EXPECT_FALSE(expectSame("<a xmlns:p='' xmlns:p=''/>"));
    EXPECT_FALSE(expectSame(differentNames(101'000, "<", "/>")));
    EXPECT_TRUE(expectSame(joined("<a", declarations(0, 65), "/>")));
}

TEST(Limits, AFileMayBeLargerThan10Megabytes) {
    const ParseResult result = Document::parseText(
        joined("<a>", repeated("<b c='a value'>and a text</b>\n", 500'000), "</a>"));
    EXPECT_TRUE(result) << result.error;
    EXPECT_EQ(result.document.root().childCount(), 500'000U);
}

TEST(Limits, AnElementOf256AttributesIsReadAndOneOfMoreIsAnError) {
    EXPECT_TRUE(parsedText(withAttributes(256)));
    EXPECT_TRUE(parsedText(withAttributes(256, "\r\n    ")));
    EXPECT_FALSE(parsedText(withAttributes(257)));
    EXPECT_FALSE(parsedText(withAttributes(200'000)));
    EXPECT_FALSE(parsedText(joined("<a>'\"", withAttributes(257), "</a>")));
    EXPECT_FALSE(parsedText(joined("<!DOCTYPE a><a>", withAttributes(257), "</a>")));
}

TEST(Limits, QuotesInTextCommentsAndCdataAreNoAttributes) {
    const std::string quotes = repeated("it's \"so\" > ", 1'000);
    EXPECT_TRUE(parsedText(joined("<a>", quotes, "</a>")));
    EXPECT_TRUE(parsedText(joined("<a><!--<b ", quotes, "--></a>")));
    EXPECT_TRUE(parsedText(joined("<a><![CDATA[<b ", quotes, "]]></a>")));
    EXPECT_TRUE(parsedText(joined("<a><?b <c ", quotes, "?></a>")));
    EXPECT_TRUE(parsedText(joined("<!--<b ", quotes, "--><!DOCTYPE a><a/>")));
}

TEST(Limits, ErrorsAreDescribedInUtf8WhereverTheyAreCut) {
    for (std::size_t before = 0; before < 8; ++before) {
        const std::string words = std::string(before, 'x') + repeated("\xE8\xA1\xA8", 200);
        for (const std::string& text :
             {joined("<", words, "></a>"), joined("<a><!--", words), joined("<a><![CDATA[", words),
              joined("<a>&", words, ";</a>"), joined("<a><?", words),
              joined("<?xml version='", words, "'?><a/>"), joined("<a ", words, "/>")}) {
            const std::string error = parsedText(text).error;
            EXPECT_TRUE(text::isValidUtf8(error)) << error;
            EXPECT_LT(error.size(), 4096U);
        }
    }
}

TEST(Limits, ManyErrorsAreDescribedInShort) {
    const std::string error =
        Document::parseText(joined("<a>", repeated("&x;", 100'000), "</a>")).error;
    EXPECT_LT(error.size(), 4096U);
    EXPECT_THAT(error, HasSubstr("Line 1: "));
}

/// Runs on a thread whose stack is small, so that whatever recurses over a deep tree shows.
template <class Work>
void onSmallStack(Work work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 512 * 1024), 0);
    pthread_t thread;
    const auto start = [](void* argument) -> void* {
        (*static_cast<Work*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

constexpr std::size_t deep = 100'000;

/// An element with a chain of elements below it.
Element deepElement() {
    Element top = Element::create("top");
    Element at = top;
    for (std::size_t i = 0; i < deep; ++i)
        at = Element(at.appendChild(Element::create("a")));
    at.setContent("x");
    return top;
}

TEST(DeepTree, IsWritten) {
    onSmallStack([] {
        EXPECT_EQ(deepElement().serialise(Form::plain),
                  joined("<top>", repeated("<a>", deep), "x", repeated("</a>", deep), "</top>"));
    });
}

TEST(DeepTree, IsWrittenPretty) {
    // The indentation of a tree grows with the square of its depth, so this one is less deep.
    onSmallStack([] {
        Element at = Element::create("top");
        const Element top = at;
        for (std::size_t i = 0; i < 3'000; ++i)
            at = Element(at.appendChild(Element::create("a")));
        const std::string pretty = top.serialise(Form::pretty);
        EXPECT_THAT(pretty, testing::StartsWith("<top>\n    <a>\n        <a>"));
        EXPECT_THAT(pretty, testing::EndsWith("</a>\n    </a>\n</top>"));
    });
}

TEST(DeepTree, IsReadAndCopiedAndReleased) {
    onSmallStack([] {
        Element top = deepElement();
        EXPECT_EQ(top.stringValue(), "x");
        EXPECT_EQ(top.query("//a").size(), deep);
        EXPECT_EQ(top.query("//a[not(*)]").size(), 1U);
        Element copy(top.copy());
        top = {};
        EXPECT_EQ(copy.stringValue(), "x");
    });
}

TEST(DeepTree, IsTakenOutAndReleased) {
    onSmallStack([] {
        Document document = Document::parseText("<root><b/></root>").document;
        document.root().appendChild(deepElement());
        document.root().childAt(1).remove();
        EXPECT_EQ(document.serialise(Form::plain), "<root><b></b></root>");
        EXPECT_EQ(document.query("//a").size(), 0U);
        document.releaseRemoved();
        EXPECT_EQ(document.serialise(Form::plain), "<root><b></b></root>");
    });
}

TEST(DeepTree, LosesItsContent) {
    onSmallStack([] {
        Element root = Element::create("root");
        root.appendChild(deepElement());
        root.childAt(0).replaceWith(Element::create("b"));
        EXPECT_EQ(plain(root), "<root><b></b></root>");
        root.appendChild(deepElement());
        root.setContent("x");
        EXPECT_EQ(plain(root), "<root>x</root>");
    });
}

}  // namespace
}  // namespace yg::xml
