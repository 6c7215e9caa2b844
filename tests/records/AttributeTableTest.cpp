// SPDX-License-Identifier: MIT
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/records/AttributeTable.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {
namespace {

using ::testing::ElementsAre;

/// A record that is not what a missing attribute makes of it.
class Shelf {
public:
    const std::string& name() const { return name_; }
    void setName(std::string_view text) { name_ = text; }
    bool isOpen() const { return isOpen_; }
    void setIsOpen(bool flag) { isOpen_ = flag; }
    std::int32_t doubled() const { return 2 * row; }

    std::int32_t row = 7;
    float width = 7;
    float scale = 1;
    std::shared_ptr<TextList> labels;
    std::string note = "none";
    std::string origin = "here";

private:
    std::string name_ = "nobody";
    bool isOpen_ = true;
};

/// A record whose setter may not have memory.
struct Tight {
    bool setName(std::string_view) { return hasMemory; }
    std::string name;
    bool hasMemory = false;
};

}  // namespace

template <>
struct Description<Shelf> {
    static constexpr std::tuple fields{
        Field{"name", &Shelf::name, &Shelf::setName,
              AttributeInfo{.name = "name", .sentence = "The name.", .isRequired = true}},
        Field{"isOpen", &Shelf::isOpen, &Shelf::setIsOpen,
              AttributeInfo{.name = "open", .kind = AttributeKind::flag}},
        Field{"row", &Shelf::row, &Shelf::row,
              AttributeInfo{.name = "row", .kind = AttributeKind::integer}},
        Field{"doubled", &Shelf::doubled},
        Field{"width", &Shelf::width, &Shelf::width,
              AttributeInfo{.name = "width", .kind = AttributeKind::wholeNumber}},
        Field{"scale", &Shelf::scale, &Shelf::scale,
              AttributeInfo{.name = "scale", .kind = AttributeKind::decimal}},
        Field{"labels", &Shelf::labels, &Shelf::labels,
              AttributeInfo{.name = "labels", .kind = AttributeKind::nameList}},
        Field{"note", &Shelf::note, &Shelf::note},
        Field{"origin", &Shelf::origin, &Shelf::origin, AttributeInfo{.name = "origin"}, false},
    };
};

template <>
struct Description<Tight> {
    static constexpr std::tuple fields{
        Field{"name", &Tight::name, &Tight::setName, AttributeInfo{.name = "name"}}};
};

namespace {

xml::Document documentOf(std::string_view text) {
    const xml::ParseResult parsed = xml::Document::parseText(text);
    EXPECT_EQ(parsed.error, "");
    return parsed.document;
}

Shelf shelfOf(std::string_view text) {
    Shelf shelf;
    attributesOf<Shelf>.read(documentOf(text).root(), shelf);
    return shelf;
}

/// The rule about a value; "" when there is nothing to say.
std::string oddityOf(const AttributeInfo& attribute, std::string_view value) {
    const Rule* rule = oddity(attribute, value);
    return rule ? std::string(rule->name) : "";
}

TEST(AttributeTable, HasARowForEachFieldThatAnAttributeGives) {
    std::vector<std::string> rows;
    for (const AttributeInfo& row : attributesOf<Shelf>.rows())
        rows.push_back(std::string(row.name) + " of " + std::string(row.field));
    EXPECT_THAT(rows, ElementsAre("name of name", "open of isOpen", "row of row", "width of width",
                                  "scale of scale", "labels of labels", "origin of origin"));
    EXPECT_EQ(attributesOf<Shelf>.rows().front().sentence, "The name.");
    EXPECT_TRUE(attributesOf<Shelf>.rows().front().isRequired);
}

TEST(AttributeTable, ReadsEachKind) {
    const Shelf shelf = shelfOf(
        R"(<a labels="x;;y" scale=" 1.5e1x" width="2.9" row="-3.7" open="true" name=" b "/>)");
    EXPECT_EQ(shelf.name(), " b ");
    EXPECT_TRUE(shelf.isOpen());
    EXPECT_EQ(shelf.row, -3);
    EXPECT_EQ(shelf.width, 2.0f);
    EXPECT_EQ(shelf.scale, 15.0f);
    ASSERT_NE(shelf.labels, nullptr);
    EXPECT_THAT(*shelf.labels, ElementsAre("x", "", "y"));
}

TEST(AttributeTable, AMissingAttributeLeavesAllButFlagsAsTheyAre) {
    const Shelf shelf = shelfOf("<a/>");
    EXPECT_EQ(shelf.name(), "nobody");
    EXPECT_FALSE(shelf.isOpen());
    EXPECT_EQ(shelf.row, 7);
    EXPECT_EQ(shelf.width, 7.0f);
    EXPECT_EQ(shelf.scale, 1.0f);
    EXPECT_EQ(shelf.labels, nullptr);
}

TEST(AttributeTable, AnEmptyTextIsAValueButNoList) {
    const Shelf shelf = shelfOf(R"(<a name="" open="" row="" scale="" labels=""/>)");
    EXPECT_EQ(shelf.name(), "");
    EXPECT_FALSE(shelf.isOpen());
    EXPECT_EQ(shelf.row, 0);
    EXPECT_EQ(shelf.scale, 0.0f);
    EXPECT_EQ(shelf.labels, nullptr);
}

TEST(AttributeTable, NamesAndFlagsMatchExactly) {
    const Shelf shelf = shelfOf(R"(<a Name="b" ROW="1" open="TRUE" x:name="c" nam="d" names="e"
        a-name-that-is-longer-than-any-of-the-table="f"/>)");
    EXPECT_EQ(shelf.name(), "nobody");
    EXPECT_EQ(shelf.row, 7);
    EXPECT_FALSE(shelf.isOpen());
}

TEST(AttributeTable, ARenamedAttributeIsReadUnderItsOtherNameOnly) {
    constexpr auto renamed = attributesOf<Shelf>.renamed("name", "label");
    const xml::Document document = documentOf(R"(<a name="b" label="c" row="1"/>)");
    Shelf shelf;
    renamed.read(document.root(), shelf);
    EXPECT_EQ(shelf.name(), "c");
    EXPECT_EQ(shelf.row, 1);
    EXPECT_EQ(renamed.rows().front().name, "label");
    EXPECT_EQ(renamed.rows().front().field, "name");
}

TEST(AttributeTable, ASetterWithoutMemoryThrows) {
    const xml::Document document = documentOf(R"(<a name="b"/>)");
    Tight record;
    EXPECT_THROW(attributesOf<Tight>.read(document.root(), record), std::bad_alloc);
    record.hasMemory = true;
    EXPECT_NO_THROW(attributesOf<Tight>.read(document.root(), record));
}

TEST(CopyFields, TakesEachFieldWithASetterThatIsCopied) {
    Shelf from;
    from.setName("b");
    from.setIsOpen(false);
    from.row = 1;
    from.scale = 2;
    from.labels = std::make_shared<TextList>();
    from.note = "note";
    from.origin = "there";
    Shelf to;
    copyFields(from, to);
    EXPECT_EQ(to.name(), "b");
    EXPECT_FALSE(to.isOpen());
    EXPECT_EQ(to.row, 1);
    EXPECT_EQ(to.scale, 2.0f);
    EXPECT_EQ(to.labels, from.labels);
    EXPECT_EQ(to.note, "note");
    EXPECT_EQ(to.origin, "here");
}

TEST(Oddity, IsThatOfTheKind) {
    constexpr AttributeInfo flag{.kind = AttributeKind::flag};
    for (const char* value : {"true", "false"})
        EXPECT_EQ(oddityOf(flag, value), "") << value;
    for (const char* value : {"", "TRUE", "1", " true"})
        EXPECT_EQ(oddityOf(flag, value), "odd-flag") << value;
    for (const AttributeKind kind : {AttributeKind::integer, AttributeKind::wholeNumber}) {
        for (const char* value : {"0", "-1", "2147483647"})
            EXPECT_EQ(oddityOf({.kind = kind}, value), "") << value;
        for (const char* value : {"", "x", "1x", "2147483648", "1.5"})
            EXPECT_EQ(oddityOf({.kind = kind}, value), "odd-number") << value;
    }
    for (const char* value : {"0", ".5", "-1e3"})
        EXPECT_EQ(oddityOf({.kind = AttributeKind::decimal}, value), "") << value;
    for (const char* value : {"", "1,5", "1e99"})
        EXPECT_EQ(oddityOf({.kind = AttributeKind::decimal}, value), "odd-number") << value;
    EXPECT_EQ(oddityOf({.kind = AttributeKind::nameList}, ";"), "");
    EXPECT_EQ(oddityOf({.kind = AttributeKind::nameList}, ""), "empty-list");
    EXPECT_EQ(oddityOf({}, ""), "");
}

TEST(Oddity, OfANumberIsItsRange) {
    for (const AttributeKind kind :
         {AttributeKind::integer, AttributeKind::wholeNumber, AttributeKind::decimal}) {
        const AttributeInfo number{.kind = kind, .least = -1, .most = 255};
        for (const char* value : {"-1", "0", "255"})
            EXPECT_EQ(oddityOf(number, value), "") << value;
        for (const char* value : {"-2", "256"})
            EXPECT_EQ(oddityOf(number, value), "number-out-of-range") << value;
        EXPECT_EQ(oddityOf(number, "256x"), "odd-number");
    }
}

}  // namespace
}  // namespace yg
