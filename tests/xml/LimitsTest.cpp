// SPDX-License-Identifier: MIT
//
// Small files that would become large trees, and large or deep files.
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <malloc.h>
#include <string>
#include <string_view>
#include <thread>

#include <pugixml.hpp>

#include "YGConfigManager/xml/Document.h"

#include "xml/XmlTesting.h"

namespace yg::xml {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using testing::HasSubstr;

/// Counts the memory of trees, and refuses more than a limit so that a failing test does not take
/// the machine with it.
class TreeMemory {
public:
    TreeMemory()
        : allocate_(pugi::get_memory_allocation_function()),
          release_(pugi::get_memory_deallocation_function()) {
        used_ = 0;
        peak_ = 0;
        pugi::set_memory_management_functions(
            [](std::size_t size) -> void* {
                if (used_ + size > limit)
                    return nullptr;
                void* const memory = std::malloc(size);
                used_ += ::malloc_usable_size(memory);
                if (used_ > peak_)
                    peak_ = used_.load();
                return memory;
            },
            [](void* memory) {
                used_ -= ::malloc_usable_size(memory);
                std::free(memory);
            });
    }
    TreeMemory(const TreeMemory&) = delete;
    TreeMemory& operator=(const TreeMemory&) = delete;
    ~TreeMemory() { pugi::set_memory_management_functions(allocate_, release_); }

    std::size_t peak() const { return peak_; }

private:
    static constexpr std::size_t limit = 800'000'000;
    static inline std::atomic<std::size_t> used_ = 0;
    static inline std::atomic<std::size_t> peak_ = 0;
    pugi::allocation_function allocate_;
    pugi::deallocation_function release_;
};

constexpr std::size_t megabyte = 1'000'000;

void expectRefusedCheaply(const std::string& text) {
    const TreeMemory memory;
    for (const bool positions : {false, true}) {
        const ParseResult result = Document::parseText(text, {.positions = positions});
        EXPECT_FALSE(result) << "of " << text.size() << " bytes";
        EXPECT_FALSE(result.document.root());
        EXPECT_LT(result.error.size(), 4096U);
    }
    EXPECT_LT(memory.peak(), 200 * megabyte);
}

std::string referringTo(std::string_view content, std::size_t times,
                        std::string_view before = "&e;", std::string_view after = "") {
    std::string text = joined("<!DOCTYPE a [<!ENTITY e '", content, "'>]><a>");
    for (std::size_t i = 0; i < times; ++i)
        (text += before) += after;
    return text + "</a>";
}

TEST(Limits, OneLongTextReferredToAgainAndAgainIsAnError) {
    const std::string text = referringTo(repeated("x", 65'000), 21'000);
    ASSERT_LT(text.size(), 130'000U);
    expectRefusedCheaply(text);
    EXPECT_THAT(Document::parseText(text).error, HasSubstr("10 MB"));
}

TEST(Limits, OneLongTextReferredToFromManyAttributesIsAnError) {
    expectRefusedCheaply(referringTo(repeated("x", 65'000), 5'000, "<b c='&e;'/>"));
}

TEST(Limits, OneLongTextReferredToFromOneAttributeIsAnError) {
    expectRefusedCheaply(joined("<!DOCTYPE a [<!ENTITY e '", repeated("x", 65'000), "'>]><a b='",
                                repeated("&e;", 21'000), "'/>"));
}

TEST(Limits, NodesThatEntitiesMultiplyCountEvenWhenTheyHoldNoText) {
    expectRefusedCheaply(referringTo(repeated("<!---->", 1'000), 10'000));
    expectRefusedCheaply(referringTo(repeated("<a/>", 1'000), 10'000));
    expectRefusedCheaply(referringTo(repeated("<?a?>", 1'000), 10'000));
    expectRefusedCheaply(referringTo(repeated("<![CDATA[]]>", 1'000), 10'000));
}

TEST(Limits, AttributesThatEntitiesMultiplyCountEvenWhenTheyAreEmpty) {
    std::string element = "<b";
    for (int i = 0; i < 200; ++i)
        element += joined(" a", std::to_string(i), "=\"\"");
    expectRefusedCheaply(referringTo(element + "/>", 30'000));
}

TEST(Limits, BillionLaughsAreAnError) {
    for (const std::string_view use : {"<a>&e11;</a>"sv, "<a b='&e11;'/>"sv}) {
        std::string text = "<!DOCTYPE a [<!ENTITY e0 'laugh'>";
        for (int i = 1; i < 12; ++i)
            text += joined("<!ENTITY e", std::to_string(i), " '",
                           repeated(joined("&e", std::to_string(i - 1), ";"), 10), "'>");
        expectRefusedCheaply(text + "]>" + std::string(use));
    }
}

TEST(Limits, ParameterEntitiesThatLaughAreAnError) {
    std::string text = "<!DOCTYPE a [<!ENTITY % e0 ' '>";
    for (int i = 1; i < 12; ++i)
        text += joined("<!ENTITY % e", std::to_string(i), " '",
                       repeated(joined("&#37;e", std::to_string(i - 1), ";"), 10), "'>");
    expectRefusedCheaply(text + "%e11;]><a/>");
}

TEST(Limits, EntitiesThatReferToEachOtherAreAnError) {
    expectRefusedCheaply("<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>");
    expectRefusedCheaply("<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;</a>");
    expectRefusedCheaply("<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a b='&e;'/>");
    expectRefusedCheaply("<!DOCTYPE a [<!ENTITY % e '&#37;f;'><!ENTITY % f '&#37;e;'>%e;]><a/>");
}

TEST(Limits, EntitiesWithinTheLimitAreExpanded) {
    const Document document = documentOf(referringTo(repeated("x", 65'000), 100));
    EXPECT_EQ(document.root().stringValue().size(), 6'500'000U);
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

TEST(Limits, NestingThroughEntitiesCountsAsAnyOther) {
    const auto text = [](std::size_t levels) {
        const std::string open = repeated("<a>", levels);
        const std::string close = repeated("</a>", levels);
        return joined("<!DOCTYPE a [<!ENTITY inner '", open, close, "'><!ENTITY outer '", open,
                      "&inner;", close, "'>]>", open, "&outer;", close);
    };
    EXPECT_TRUE(parsedText(text(80)));
    EXPECT_FALSE(parsedText(text(100)));
    EXPECT_FALSE(parsedText(text(250)));
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

TEST(Limits, AFileMayBeLargerThan10Megabytes) {
    const ParseResult result = Document::parseText(
        joined("<a>", repeated("<b c='a value'>and a text</b>\n", 500'000), "</a>"));
    EXPECT_TRUE(result) << result.error;
    EXPECT_EQ(result.document.root().childCount(), 500'000U);
}

std::string withAttributes(std::size_t count, std::string_view between = " ") {
    std::string text = "<b";
    for (std::size_t i = 0; i < count; ++i)
        text += joined(between, "a", std::to_string(i), "=\"/>\"");
    return text + "/>";
}

TEST(Limits, AnElementOf256AttributesIsReadAndOneOfMoreIsAnError) {
    EXPECT_TRUE(parsedText(withAttributes(256)));
    EXPECT_TRUE(parsedText(withAttributes(256, "\r\n    ")));
    EXPECT_FALSE(parsedText(withAttributes(257)));
    EXPECT_FALSE(parsedText(withAttributes(200'000)));
    EXPECT_FALSE(parsedText(joined("<a>'\"", withAttributes(257), "</a>")));
    EXPECT_FALSE(parsedText(joined("<!DOCTYPE a><a>", withAttributes(257), "</a>")));
    EXPECT_FALSE(
        parsedText(joined("<!DOCTYPE a [<!ENTITY e '", withAttributes(257), "'>]><a>&e;</a>")));
    EXPECT_TRUE(
        parsedText(joined("<!DOCTYPE a [<!ENTITY e '", withAttributes(256), "'>]><a>&e;</a>")));
}

TEST(Limits, QuotesInTextCommentsAndCdataAreNoAttributes) {
    const std::string quotes = repeated("it's \"so\" > ", 1'000);
    EXPECT_TRUE(parsedText(joined("<a>", quotes, "</a>")));
    EXPECT_TRUE(parsedText(joined("<a><!--<b ", quotes, "--></a>")));
    EXPECT_TRUE(parsedText(joined("<a><![CDATA[<b ", quotes, "]]></a>")));
    EXPECT_TRUE(parsedText(joined("<a><?b <c ", quotes, "?></a>")));
    EXPECT_TRUE(parsedText(joined("<!DOCTYPE a [<!--<b ", quotes, "-->]><a/>")));
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
