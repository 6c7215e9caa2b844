// SPDX-License-Identifier: MIT
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/records/AttributeTable.h"
#include "YGConfigManager/xml/Document.h"

#include "diagnostics/RecordingSink.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using yg::testing::RecordingSink;

/// A record that is not what a missing attribute makes of it.
struct Place {
    std::string name = "nobody";
    bool isOpen = true;
    std::int32_t row = 7;
    float width = 7;
    float scale = 1;
    std::shared_ptr<TextList> labels;

    void setName(std::string text) { name = std::move(text); }
    void setOpen(bool flag) { isOpen = flag; }
    void setRow(std::int32_t number) { row = number; }
    void setWidth(float number) { width = number; }
    void setScale(float number) { scale = number; }
    void setLabels(std::shared_ptr<TextList> list) { labels = std::move(list); }
};

constexpr AttributeRow<Place> table[] = {
    textRow<&Place::setName, Place>("name", "name"),
    flagRow<&Place::setOpen, Place>("open", "isOpen"),
    integerRow<&Place::setRow, Place>("row", "row"),
    integerAsFloatRow<&Place::setWidth, Place>("width", "width"),
    decimalRow<&Place::setScale, Place>("scale", "scale", "1.0"),
    nameListRow<&Place::setLabels, Place>("labels", "labels"),
};

xml::Document documentOf(std::string_view text, bool withPositions = false) {
    xml::ParseOptions options;
    options.positions = withPositions;
    const xml::ParseResult parsed = xml::Document::parseText(text, options);
    EXPECT_EQ(parsed.error, "");
    return parsed.document;
}

Place placeOf(std::string_view text) {
    Place place;
    readAttributes(documentOf(text).root(), table, place);
    return place;
}

TEST(AttributeTable, ReadsEachKind) {
    const Place place = placeOf(
        R"(<a labels="x;;y" scale=" 1.5e1x" width="2.9" row="-3.7" open="true" name=" b "/>)");
    EXPECT_EQ(place.name, " b ");
    EXPECT_TRUE(place.isOpen);
    EXPECT_EQ(place.row, -3);
    EXPECT_EQ(place.width, 2.0f);
    EXPECT_EQ(place.scale, 15.0f);
    ASSERT_NE(place.labels, nullptr);
    EXPECT_THAT(*place.labels, ElementsAre("x", "", "y"));
}

TEST(AttributeTable, AMissingAttributeLeavesAllButFlagsAsTheyAre) {
    const Place place = placeOf("<a/>");
    EXPECT_EQ(place.name, "nobody");
    EXPECT_FALSE(place.isOpen);
    EXPECT_EQ(place.row, 7);
    EXPECT_EQ(place.width, 7.0f);
    EXPECT_EQ(place.scale, 1.0f);
    EXPECT_EQ(place.labels, nullptr);
}

TEST(AttributeTable, AnEmptyTextIsAValueButNoList) {
    const Place place = placeOf(R"(<a name="" open="" row="" scale="" labels=""/>)");
    EXPECT_EQ(place.name, "");
    EXPECT_FALSE(place.isOpen);
    EXPECT_EQ(place.row, 0);
    EXPECT_EQ(place.scale, 0.0f);
    EXPECT_EQ(place.labels, nullptr);
}

TEST(AttributeTable, NamesAndFlagsMatchExactly) {
    const Place place = placeOf(R"(<a Name="b" ROW="1" open="TRUE" x:name="c"/>)");
    EXPECT_EQ(place.name, "nobody");
    EXPECT_EQ(place.row, 7);
    EXPECT_FALSE(place.isOpen);
}

TEST(AttributeTable, ReportsWhatIsOddOrUnknown) {
    const xml::Document document = documentOf(
        "<a name=\"\" row=\"1x\"\n open=\"yes\" scale=\"\" width=\"2\" labels=\"\" other=\"o\"/>",
        true);
    RecordingSink sink;
    reportAttributes(document.root(), table, sink);
    EXPECT_THAT(sink.lines(),
                ElementsAre("1: odd-number row=1x", "1: odd-flag open=yes", "1: odd-number scale=",
                            "1: empty-list labels=", "1: unknown-attribute other=o"));
}

TEST(AttributeTable, ReportsNothingOfASoundElement) {
    const xml::Document document =
        documentOf(R"(<a name="b" row="-1" open="false" scale=".5" width="2" labels=";"/>)", true);
    RecordingSink sink;
    reportAttributes(document.root(), table, sink);
    EXPECT_THAT(sink.lines(), ElementsAre());
}

}  // namespace
}  // namespace yg
