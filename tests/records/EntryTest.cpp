// SPDX-License-Identifier: MIT
//
// What reading an element by its Entry reports, each promise by itself.
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/records/Entry.h"
#include "YGConfigManager/xml/Document.h"

#include "diagnostics/RecordingSink.h"
#include "graphics/CountedMemory.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::testing::RecordingSink;

struct Box {
    std::string name = "none";
    std::int32_t size = 0;
};

/// The same record with one attribute more: a member and a row.
struct LargerBox : Box {
    float weight = 1;
};

}  // namespace

template <>
struct Description<Box> {
    static constexpr std::tuple fields{
        Field{"name", &Box::name, &Box::name, AttributeInfo{.name = "name"}},
        Field{"size", &Box::size, &Box::size,
              AttributeInfo{.name = "size", .kind = AttributeKind::integer}},
    };
};

template <>
struct Description<LargerBox> {
    static constexpr std::tuple fields =
        std::tuple_cat(Description<Box>::fields,
                       std::tuple{Field{"weight", &LargerBox::weight, &LargerBox::weight,
                                        AttributeInfo{.name = "weight",
                                                      .kind = AttributeKind::decimal,
                                                      .sentence = "The weight in kilograms.",
                                                      .isExpected = true,
                                                      .most = 30,
                                                      .whenMissing = "1"}}});
};

namespace {

using Read = std::function<void(Entry&)>;

void readWith(DiagnosticsSink* sink, std::string_view xml, const Read& read) {
    const xml::ParseResult parsed = xml::Document::parseBytes(xml, {.positions = true});
    EXPECT_EQ(parsed.error, "");
    reading(Reporter(sink), parsed.document.root(), read);
}

/// The findings of a reader; everything else in the text must have been used.
std::vector<std::string> findings(std::string_view xml, const Read& read) {
    RecordingSink sink;
    sink.addText(std::string(xml));
    readWith(&sink, xml, read);
    EXPECT_THAT(sink.unaccounted(), IsEmpty());
    return sink.lines();
}

/// What is used, as lines and columns.
class UsedPlaces : public DiagnosticsSink {
public:
    void report(const Finding& finding) override { findings.push_back(finding); }
    void used(const Place& place) override {
        places.push_back(std::to_string(place.begin.line) + ':' +
                         std::to_string(place.begin.column));
    }
    std::vector<Finding> findings;
    std::vector<std::string> places;
};

const Read nothing = [](Entry&) {};

TEST(Entry, AnAttributeThatNobodyAskedForIsUnknown) {
    EXPECT_THAT(findings(R"(<a name="n" other="o" Name="m"/>)",
                         [](Entry& entry) { EXPECT_EQ(entry.attribute("name"), "n"); }),
                ElementsAre("1: unknown-attribute other=o", "1: unknown-attribute Name=m"));
}

TEST(Entry, AskingForAMissingAttributeAnswersNothingAndIsNotReported) {
    EXPECT_THAT(
        findings("<a/>", [](Entry& entry) { EXPECT_EQ(entry.attribute("name"), std::nullopt); }),
        IsEmpty());
}

TEST(Entry, ATableAsksForItsAttributesAndFindsOddValues) {
    EXPECT_THAT(findings(R"(<a size="3x" name="" other="o"/>)",
                         [](Entry& entry) {
                             Box box;
                             entry.read(box);
                             EXPECT_EQ(box.name, "");
                             EXPECT_EQ(box.size, 3);
                         }),
                ElementsAre("1: odd-number size=3x", "1: unknown-attribute other=o"));
}

TEST(Entry, SeveralTablesAskForTheirAttributesTogether) {
    constexpr auto second = attributesOf<Box>.renamed("name", "label").renamed("size", "length");
    EXPECT_THAT(findings(R"(<a name="n" size="1" label="l" length="x"/>)",
                         [&](Entry& entry) {
                             Box box;
                             entry.read(box);
                             entry.read(second, box);
                             EXPECT_EQ(box.name, "l");
                             EXPECT_EQ(box.size, 0);
                         }),
                ElementsAre("1: odd-number length=x"));
}

TEST(Entry, ContentThatNobodyAskedForIsUnread) {
    EXPECT_THAT(findings("<a>text<b c='d'><e/></b><!-- no -->\n<f/></a>", nothing),
                ElementsAre("1: stray-text =text", "1: unread-content =b", "2: unread-content =f"));
}

TEST(Entry, TextBetweenElementsIsStray) {
    std::vector<std::string> names;
    EXPECT_THAT(
        findings("<a>one<b/><!-- no -->two<?no no?><c/> \n</a>",
                 [&](Entry& entry) {
                     entry.forEachElement([&](Entry& child) { names.emplace_back(child.name()); });
                 }),
        ElementsAre("1: stray-text =one", "1: stray-text =two"));
    EXPECT_THAT(names, ElementsAre("b", "c"));
}

TEST(Entry, TextThatIsAskedForIsReadAndElementsInItAreReported) {
    RecordingSink sink;
    readWith(&sink, "<a>one<![CDATA[<two>]]>\n<b>three</b></a>",
             [](Entry& entry) { EXPECT_EQ(entry.text(), "one<two>three"); });
    EXPECT_THAT(sink.lines(), ElementsAre("2: element-in-text =b"));
}

TEST(Entry, ContentThatIsReadElsewhereIsNotReportedButAttributesAre) {
    RecordingSink sink;
    readWith(&sink, "<a b='c'>text<d/></a>", [](Entry& entry) { entry.leaveContent(); });
    EXPECT_THAT(sink.lines(), ElementsAre("1: unknown-attribute b=c"));
}

TEST(Entry, AnElementThatIsLeftIsNeitherReportedNorUsed) {
    UsedPlaces sink;
    readWith(&sink, "<a b='c'>text<d/></a>", [](Entry& entry) { entry.leave(); });
    EXPECT_THAT(sink.findings, IsEmpty());
    EXPECT_THAT(sink.places, IsEmpty());
}

TEST(Entry, ADropIsReportedAloneWhateverIsInTheElementOrFoundLater) {
    EXPECT_THAT(findings("<a b='c'>text<d/></a>",
                         [](Entry& entry) {
                             entry.drop("missing-name"_rule);
                             EXPECT_FALSE(entry);
                             entry.report("duplicate-name"_rule);
                             entry.reportIfThere("odd-flag"_rule, "b");
                             entry.drop("second-panel"_rule);
                         }),
                ElementsAre("1: missing-name"));
}

TEST(Entry, WhatIsInsideADroppedElementIsReadWithoutAWord) {
    std::vector<std::string> names;
    EXPECT_THAT(findings("<a><b x='y'>text</b><c/></a>",
                         [&](Entry& entry) {
                             entry.drop("missing-name"_rule);
                             entry.forEachElement([&](Entry& child) {
                                 EXPECT_FALSE(child);
                                 child.report("duplicate-name"_rule);
                                 names.emplace_back(child.name());
                             });
                         }),
                ElementsAre("1: missing-name"));
    EXPECT_THAT(names, ElementsAre("b", "c"));
}

TEST(Entry, ADroppedChildDoesNotSilenceTheOthers) {
    EXPECT_THAT(findings("<a><b x='y'/><c x='y'/></a>",
                         [](Entry& entry) {
                             entry.forEachElement([](Entry& child) {
                                 if (child.name() == "b")
                                     child.drop("unknown-element"_rule, {}, child.name());
                             });
                         }),
                ElementsAre("1: unknown-element =b", "1: unknown-attribute x=y"));
}

TEST(Entry, FindingsComeInTheOrderOfTheDocument) {
    EXPECT_THAT(
        findings("<a x='1'>one<b y='2'>two<c/></b>\n<d z='3'/>three</a>",
                 [](Entry& entry) { entry.forEachElement(nothing); }),
        ElementsAre("1: unknown-attribute x=1", "1: stray-text =one", "1: unknown-attribute y=2",
                    "1: stray-text =two", "1: unread-content =c", "2: unknown-attribute z=3",
                    "2: stray-text =three"));
}

TEST(Entry, OneFindingOfAnAttributeTakesThePlaceOfTheUsualOne) {
    EXPECT_THAT(findings("<a size='x' name='n' other='o' third='t'/>",
                         [](Entry& entry) {
                             Box box;
                             entry.read(box);
                             entry.report("second-panel"_rule, "size", "x");
                             entry.reportIfThere("dispatch-spelling"_rule, "other");
                             entry.reportIfThere("dispatch-spelling"_rule, "missing");
                         }),
                ElementsAre("1: second-panel size=x", "1: dispatch-spelling other=o",
                            "1: unknown-attribute third=t"));
}

TEST(Entry, AFindingOfAnAttributeStandsAtTheAttributeAndADropCoversTheElement) {
    UsedPlaces sink;
    readWith(&sink, "<a>\n <b\n  name='n'/></a>", [](Entry& entry) {
        entry.forEachElement([](Entry& child) {
            child.report("duplicate-name"_rule, "name", "n");
            child.drop("misplaced-panel"_rule, "name", "n");
        });
    });
    ASSERT_EQ(sink.findings.size(), 2u);
    EXPECT_EQ(sink.findings[0].place.begin.line, 3u);
    EXPECT_EQ(sink.findings[0].extent.begin.line, 3u);
    EXPECT_EQ(sink.findings[0].element, "b");
    EXPECT_EQ(sink.findings[1].place.begin.line, 3u);
    EXPECT_EQ(sink.findings[1].extent.begin.line, 2u);
}

TEST(Entry, WhatCountsAsItIsWrittenIsUsed) {
    UsedPlaces sink;
    readWith(&sink, "<a name='n' other='o'><b size='x'/><c/></a>", [](Entry& entry) {
        entry.attribute("name");
        entry.forEachElement([](Entry& child) {
            Box box;
            child.read(box);
            if (child.name() == "c")
                child.drop("unknown-element"_rule);
        });
    });
    EXPECT_THAT(sink.places, ElementsAre("1:1", "1:4", "1:23"));
    EXPECT_THAT(sink.findings, ::testing::SizeIs(3));
}

TEST(Entry, ADefinitionAnswersTheOneBeforeIt) {
    UsedPlaces sink;
    RecordMap<xml::Element> places;
    readWith(&sink, "<a>\n<b/>\n<b/>\n<b/></a>", [&](Entry& entry) {
        entry.forEachElement([&](Entry& child) {
            if (const auto earlier = child.define("n", places))
                child.report("duplicate-name"_rule, {}, "n", earlier);
        });
    });
    ASSERT_EQ(sink.findings.size(), 2u);
    for (std::size_t at = 0; at < 2; ++at) {
        ASSERT_EQ(sink.findings[at].related.size(), 1u);
        EXPECT_EQ(sink.findings[at].related[0].place.begin.line, at + 2);
        EXPECT_EQ(sink.findings[at].related[0].meaning, "the earlier definition");
    }
}

TEST(Entry, WithoutASinkNothingIsKept) {
    RecordMap<xml::Element> places;
    Box box;
    std::vector<std::string> names;
    readWith(nullptr, "<a name='n' other='o'>text<b/></a>", [&](Entry& entry) {
        EXPECT_FALSE(entry);
        entry.read(box);
        EXPECT_EQ(entry.attribute("other"), "o");
        EXPECT_EQ(entry.define("n", places), std::nullopt);
        entry.drop("missing-name"_rule);
        entry.forEachElement([&](Entry& child) { names.emplace_back(child.name()); });
        EXPECT_EQ(entry.text(), "text");
    });
    EXPECT_EQ(box.name, "n");
    EXPECT_THAT(names, ElementsAre("b"));
    EXPECT_TRUE(places.empty());
}

#ifndef YG_NO_COUNTED_MEMORY
TEST(Entry, WithoutASinkNothingIsAllocated) {
    const xml::ParseResult parsed =
        xml::Document::parseText("<a name='n' size='1' other='o'>text<b x='y'/><c>text</c></a>");
    const std::size_t before = yg::testing::bytesTaken();
    reading(Reporter(nullptr), parsed.document.root(), [](Entry& entry) {
        Box box;
        entry.read(box);
        entry.attribute("other");
        entry.report("odd-number"_rule, "size", "1");
        entry.reportIfThere("odd-number"_rule, "size");
        entry.forEachElement([](Entry& child) {
            child.attribute("x");
            child.drop("missing-name"_rule);
        });
    });
    EXPECT_EQ(yg::testing::bytesTaken(), before);
}
#endif

TEST(Entry, NothingHappensForAnEmptyHandle) {
    RecordingSink sink;
    reading(Reporter(&sink), xml::Element(), [](Entry&) { FAIL(); });
    EXPECT_THAT(sink.lines(), IsEmpty());
}

TEST(OneRow, IsEnoughToReadDescribeCopyAndCheckAnAttribute) {
    LargerBox box;
    EXPECT_THAT(findings(R"(<a name="n" weight="2.5"/>)", [&](Entry& entry) { entry.read(box); }),
                IsEmpty());
    EXPECT_EQ(box.weight, 2.5f);

    std::vector<std::string> fields;
    forEachField(box, [&](std::string_view name, const auto&) { fields.emplace_back(name); });
    EXPECT_THAT(fields, ElementsAre("name", "size", "weight"));

    LargerBox copied;
    copyFields(box, copied);
    EXPECT_EQ(copied.weight, 2.5f);

    const Read read = [](Entry& entry) {
        LargerBox other;
        entry.read(other);
    };
    EXPECT_THAT(findings("<a weight='2,5'/>", read), ElementsAre("1: odd-number weight=2,5"));
    EXPECT_THAT(findings("<a weight='31'/>", read),
                ElementsAre("1: number-out-of-range weight=31"));
    EXPECT_THAT(findings("<a/>", read), ElementsAre("1: missing-attribute =weight"));
    EXPECT_THAT(findings("<a weight='1'/>",
                         [](Entry& entry) {
                             Box without;
                             entry.read(without);
                         }),
                ElementsAre("1: unknown-attribute weight=1"));
    EXPECT_EQ(attributesOf<LargerBox>.rows().back().sentence, "The weight in kilograms.");
}

}  // namespace
}  // namespace yg
