// SPDX-License-Identifier: MIT
//
// The attributes of styles, panels and elements, table for table: which field each one fills, what
// a missing one gives, and how the text of each kind is read. A row that is new in a table of the
// loader fails here until it has an example.
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/layout/LayoutEntries.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "layout/LayoutTest.h"
#include "layout/RecordText.h"

namespace {

using ::testing::ElementsAre;
using ::testing::Pair;
using yg::AttributeKind;
using yg::YGStyleConfigLoad;
using yg::testing::fieldsOf;
using yg::testing::parsed;

using Fields = std::map<std::string, std::string>;

/// Each kind of record: its table, and its fields when it is read with one attribute or none.
struct Styles {
    static constexpr auto table = yg::attributesOf<yg::StyleConfigInfo>.rows();

    static Fields read(const std::string& attribute) {
        const auto record =
            YGStyleConfigLoad().parseStyleConfig(parsed("<style " + attribute + "/>"));
        const auto fields = fieldsOf(*record);
        return Fields(fields.begin(), fields.end());
    }
};

struct Panels {
    static constexpr auto table = yg::attributesOf<yg::PanelConfigInfo>.rows();

    static Fields read(const std::string& attribute) {
        const auto record = YGStyleConfigLoad().parsePaneInfo(parsed("<panel " + attribute + "/>"),
                                                              std::nullopt, std::nullopt);
        const auto fields = fieldsOf(*record);
        return Fields(fields.begin(), fields.end());
    }
};

struct Elements {
    static constexpr auto table = yg::attributesOf<yg::ElementConfigInfo>.rows();

    /// An element needs a name, here "n" unless the attribute is the name.
    static Fields read(const std::string& attribute) {
        const std::string name = attribute.starts_with("name=") ? "" : "name='n' ";
        const auto record =
            YGStyleConfigLoad().parseElementInfo(parsed("<element " + name + attribute + "/>"));
        const auto fields = fieldsOf(*record);
        return Fields(fields.begin(), fields.end());
    }
};

/// What one attribute does: `text` is XML, `expected` the field as text.
struct Example {
    std::string attribute;
    std::string field;
    std::string text;
    std::string expected;
};

/// Each attribute alone changes its own field and nothing else, and each row has its example.
template <class Kind>
void eachRowFillsItsField(const std::vector<Example>& examples) {
    std::vector<std::string> rows;
    for (const auto& row : Kind::table)
        rows.push_back(std::string(row.name) + " to " + std::string(row.field));
    std::vector<std::string> exampleRows;
    for (const Example& example : examples)
        exampleRows.push_back(example.attribute + " to " + example.field);
    EXPECT_EQ(rows, exampleRows);

    const Fields without = Kind::read("");
    for (const Example& example : examples) {
        SCOPED_TRACE(example.attribute);
        Fields changed;
        for (const auto& [field, value] :
             Kind::read(example.attribute + "='" + example.text + "'")) {
            if (value != without.at(field))
                changed[field] = value;
        }
        EXPECT_THAT(changed, ElementsAre(Pair(example.field, example.expected)));
    }
}

TEST(Attributes, OfAStyleFillOneFieldEach) {
    eachRowFillsItsField<Styles>({
        {"name", "styleName", "行情", "\"行情\""},
        {"layer", "styleLayer", "-3", "-3"},
        {"focus", "styleFucus", " f ", "\" f \""},
    });
}

TEST(Attributes, OfAPanelFillOneFieldEach) {
    eachRowFillsItsField<Panels>({
        {"name", "panelName", "a &amp; b", "\"a & b\""},
        {"vertical", "paneVertical", "true", "true"},
        {"is_scroll_view", "isScrollView", "true", "true"},
        {"scroll_size", "scrollSize", "1200", "1200"},
        {"is_dis_split_space", "isDisSplitSpace", "true", "true"},
        {"is_dis_wide_bound", "isDispWideBound", "true", "true"},
        {"is_border_radius", "isBorderRaduis", "true", "true"},
        {"is_border_right_angle", "isBorderRightAngle", "true", "true"},
        {"switch_expand_panel", "switchExpandPanelName", "wide", "\"wide\""},
        {"foldPosition", "foldPosition", "left", "\"left\""},
        {"display_border", "displayBorders", "top,left", "\"top,left\""},
        {"is_editable", "isEditable", "true", "true"},
        {"excute_command_info", "excuteCommandInfo", "", "\"\""},
        {"split_scale", "splitScale", "0.25", "0.25"},
        {"fix_size", "fixSize", "28.5", "28.5"},
        {"min_size", "minSize", "12.7", "12.0"},
        {"max_size", "maxSize", "-7.9", "-7.0"},
    });
}

TEST(Attributes, OfAnElementFillOneFieldEach) {
    eachRowFillsItsField<Elements>({
        {"name", "elementName", "Grid", "\"Grid\""},
        {"param", "elementParam", " p ", "\" p \""},
        {"property", "elementProperty", "a=1;b=2", "\"a=1;b=2\""},
        {"uuid", "elementUuid", "", "\"\""},
        {"event", "elementEvent", "quote_list", "\"quote_list\""},
        {"event_dispatch_dest", "eventDispathDestArray", "a;b", "[\"a\", \"b\"]"},
        {"event_dispatch_src", "eventDispathSrcArray", "a", "[\"a\"]"},
        {"is_first_responder", "isFristReponder", "true", "true"},
        {"always_recv_event", "alwaysRecvEvent", "true", "true"},
        {"event_not_change_style", "eventNotChangeStyle", "true", "true"},
    });
}

/// What a missing attribute of a kind gives unless its row says otherwise.
std::string_view missingOf(AttributeKind kind) {
    switch (kind) {
        case AttributeKind::flag:
            return "false";
        case AttributeKind::integer:
            return "0";
        case AttributeKind::wholeNumber:
        case AttributeKind::decimal:
            return "0.0";
        case AttributeKind::text:
        case AttributeKind::nameList:
            break;
    }
    return "absent";
}

/// What the field of each row holds when its attribute is missing, from the record and from what
/// the row itself says.
template <class Kind>
std::vector<std::pair<std::string, std::string>> missingValues() {
    const Fields without = Kind::read("");
    std::vector<std::pair<std::string, std::string>> values;
    for (const auto& row : Kind::table) {
        const std::string& value = without.at(std::string(row.field));
        values.emplace_back(row.name, value);
        if (value != "\"n\"") {
            EXPECT_EQ(row.whenMissing.empty() ? missingOf(row.kind) : row.whenMissing, value)
                << row.name;
        }
    }
    return values;
}

TEST(Attributes, OfAStyleHaveDefaultsWhenMissing) {
    EXPECT_THAT(missingValues<Styles>(),
                ElementsAre(Pair("name", "absent"), Pair("layer", "0"), Pair("focus", "absent")));
}

TEST(Attributes, OfAPanelHaveDefaultsWhenMissing) {
    EXPECT_THAT(
        missingValues<Panels>(),
        ElementsAre(Pair("name", "absent"), Pair("vertical", "false"),
                    Pair("is_scroll_view", "false"), Pair("scroll_size", "0"),
                    Pair("is_dis_split_space", "false"), Pair("is_dis_wide_bound", "false"),
                    Pair("is_border_radius", "false"), Pair("is_border_right_angle", "false"),
                    Pair("switch_expand_panel", "absent"), Pair("foldPosition", "absent"),
                    Pair("display_border", "absent"), Pair("is_editable", "false"),
                    Pair("excute_command_info", "absent"), Pair("split_scale", "1.0"),
                    Pair("fix_size", "-1.0"), Pair("min_size", "0.0"), Pair("max_size", "0.0")));
}

TEST(Attributes, OfAnElementHaveDefaultsWhenMissing) {
    EXPECT_THAT(
        missingValues<Elements>(),
        ElementsAre(Pair("name", "\"n\""), Pair("param", "absent"), Pair("property", "absent"),
                    Pair("uuid", "absent"), Pair("event", "absent"),
                    Pair("event_dispatch_dest", "absent"), Pair("event_dispatch_src", "absent"),
                    Pair("is_first_responder", "false"), Pair("always_recv_event", "false"),
                    Pair("event_not_change_style", "false")));
}

struct Value {
    std::string text;  ///< XML between apostrophes
    std::string expected;
};

/// Reads every value through every attribute of a kind.
template <class Kind>
void readThroughRowsOf(AttributeKind kind, const std::vector<Value>& values) {
    for (const auto& row : Kind::table) {
        if (row.kind != kind)
            continue;
        for (const Value& value : values) {
            const Fields fields = Kind::read(std::string(row.name) + "='" + value.text + "'");
            EXPECT_EQ(fields.at(std::string(row.field)), value.expected)
                << row.name << "='" << value.text << "'";
        }
    }
}

void readThroughAllRowsOf(AttributeKind kind, const std::vector<Value>& values) {
    readThroughRowsOf<Styles>(kind, values);
    readThroughRowsOf<Panels>(kind, values);
    readThroughRowsOf<Elements>(kind, values);
}

TEST(Attributes, OfTextAreTakenAsTheyStand) {
    readThroughAllRowsOf(AttributeKind::text, {{"abc", "\"abc\""},
                                               {"  abc ", "\"  abc \""},
                                               {"行情", "\"行情\""},
                                               {"a;b", "\"a;b\""},
                                               {"a&#10;b&#9;c", "\"a\nb\tc\""},
                                               {"a\nb", "\"a b\""},
                                               {"&lt;&amp;&quot;", "\"<&\"\""},
                                               {" ", "\" \""}});
}

TEST(Attributes, OfIntegersReadTheLeadingDecimalInteger) {
    readThroughAllRowsOf(AttributeKind::integer, {{"12", "12"},
                                                  {"-12", "-12"},
                                                  {"+12", "12"},
                                                  {"012", "12"},
                                                  {" 12abc", "12"},
                                                  {"&#9;&#10;&#13; 12 13", "12"},
                                                  {"12.7", "12"},
                                                  {"1e3", "1"},
                                                  {"1e", "1"},
                                                  {"0x10", "0"},
                                                  {".5", "0"},
                                                  {"", "0"},
                                                  {"x", "0"},
                                                  {"--5", "0"},
                                                  {"- 5", "0"},
                                                  {"+-5", "0"},
                                                  {"\xC2\xA0"
                                                   "12",
                                                   "0"},
                                                  {"\xEF\xBC\x91", "0"},
                                                  {"2147483647", "2147483647"},
                                                  {"2147483648", "2147483647"},
                                                  {"99999999999999999999999", "2147483647"},
                                                  {"-2147483648", "-2147483648"},
                                                  {"-2147483649", "-2147483648"}});
}

TEST(Attributes, OfIntegersInFloatFieldsDropTheFraction) {
    readThroughAllRowsOf(AttributeKind::wholeNumber, {{"7.9", "7.0"},
                                                      {"12.7", "12.0"},
                                                      {"-12.7", "-12.0"},
                                                      {" 12abc", "12.0"},
                                                      {"1e3", "1.0"},
                                                      {".5", "0.0"},
                                                      {"", "0.0"},
                                                      {"inf", "0.0"},
                                                      {"16777217", "16777216.0"},
                                                      {"2147483648", "2147483648.0"},
                                                      {"-99999999999", "-2147483648.0"}});
}

TEST(Attributes, OfDecimalsReadTheLeadingDecimalNumber) {
    readThroughAllRowsOf(
        AttributeKind::decimal,
        {{"0.68", "0.68"},   {"-1.5", "-1.5"}, {"+2", "2.0"},    {" 12.5abc", "12.5"},
         {".5", "0.5"},      {"5.", "5.0"},    {"1e", "1.0"},    {"1e+", "1.0"},
         {"2e2", "200.0"},   {"5E-1", "0.5"},  {"1,5", "1.0"},   {"1.5.6", "1.5"},
         {"", "0.0"},        {"x", "0.0"},     {".", "0.0"},     {"--1", "0.0"},
         {"inf", "0.0"},     {"nan", "0.0"},   {"0x10", "0.0"},  {"1e999", "inf"},
         {"-1e999", "-inf"}, {"1e39", "inf"},  {"1e-999", "0.0"}});
}

TEST(Attributes, OfFlagsAreTrueOnlyForTheExactWord) {
    readThroughAllRowsOf(AttributeKind::flag, {{"true", "true"},
                                               {"false", "false"},
                                               {"True", "false"},
                                               {"TRUE", "false"},
                                               {" true", "false"},
                                               {"true ", "false"},
                                               {"1", "false"},
                                               {"yes", "false"},
                                               {"truetrue", "false"},
                                               {"", "false"}});
}

TEST(Attributes, OfNameListsAreSplitAtEverySemicolon) {
    readThroughAllRowsOf(AttributeKind::nameList, {{"a", "[\"a\"]"},
                                                   {"a;b", "[\"a\", \"b\"]"},
                                                   {"a;;b", "[\"a\", \"\", \"b\"]"},
                                                   {"a;", "[\"a\", \"\"]"},
                                                   {";a", "[\"\", \"a\"]"},
                                                   {";", "[\"\", \"\"]"},
                                                   {" a ; b ", "[\" a \", \" b \"]"},
                                                   {"a,b", "[\"a,b\"]"},
                                                   {" ", "[\" \"]"},
                                                   {"", "absent"}});
}

TEST(Attributes, AreExplainedToTheAuthorsOfFiles) {
    const auto expectSentences = [](const auto& rows) {
        for (const yg::AttributeInfo& row : rows) {
            EXPECT_TRUE(row.sentence.ends_with('.')) << row.name;
            EXPECT_TRUE(!row.defines || row.names != yg::Naming::nothing) << row.name;
        }
    };
    expectSentences(Styles::table);
    expectSentences(Panels::table);
    expectSentences(Elements::table);
    for (const yg::AttributeInfo& row : {yg::defaultStyle, yg::magicGroup, yg::magicMember,
                                         yg::magicSlot, yg::reuseDefinition, yg::reuseReference}) {
        expectSentences(std::vector{row});
        EXPECT_NE(row.names, yg::Naming::nothing) << row.sentence;
    }
}

TEST(Attributes, OfOtherNamesChangeNothing) {
    for (const char* other : {"Name='x'", "p:name='x'", "isEditable='true'", "fold_position='x'",
                              "execute_command_info='x'", "vertical2='true'"}) {
        EXPECT_EQ(Styles::read(other), Styles::read("")) << other;
        EXPECT_EQ(Panels::read(other), Panels::read("")) << other;
        EXPECT_EQ(Elements::read(other), Elements::read("")) << other;
    }
}

TEST(Attributes, MayStandInAnyOrder) {
    EXPECT_EQ(Panels::read("vertical='true' fix_size='3' name='p'"),
              Panels::read("name='p' fix_size='3' vertical='true'"));
}

TEST(TrueTest, HoldsForTheExactWordOfTheNamedAttributeOnly) {
    const auto node = parsed("<panel a='true' b='True' c='' d='1'/>");
    EXPECT_TRUE(YGStyleConfigLoad::isTureForName("a", node));
    EXPECT_FALSE(YGStyleConfigLoad::isTureForName("b", node));
    EXPECT_FALSE(YGStyleConfigLoad::isTureForName("c", node));
    EXPECT_FALSE(YGStyleConfigLoad::isTureForName("d", node));
    EXPECT_FALSE(YGStyleConfigLoad::isTureForName("missing", node));
    EXPECT_FALSE(YGStyleConfigLoad::isTureForName("", node));
    EXPECT_FALSE(YGStyleConfigLoad::isTureForName("a", {}));
}

}  // namespace
