// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/inspection/Values.h"

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr AttributeInfo flag{.name = "a", .kind = AttributeKind::flag};
constexpr AttributeInfo integer{.name = "a", .kind = AttributeKind::integer};
constexpr AttributeInfo decimal{.name = "a", .kind = AttributeKind::decimal};
constexpr AttributeInfo byte{.name = "a", .kind = AttributeKind::integer, .least = 0, .most = 255};
constexpr AttributeInfo share{.name = "a", .kind = AttributeKind::decimal, .least = 0, .most = 1};
constexpr AttributeInfo list{.name = "a", .kind = AttributeKind::nameList};
constexpr AttributeInfo text{.name = "a"};
constexpr AttributeInfo name{.name = "a", .names = Naming::color};

TEST(RepairedValue, IsWhatTheAuthorMeantOrAbsent) {
    struct Row {
        const AttributeInfo& attribute;
        std::string value;
        std::optional<std::string> repaired;
    };
    for (const Row& row : {
             Row{flag, "True", "true"},
             Row{flag, "1", "true"},
             Row{flag, "yes", "true"},
             Row{flag, "是", "true"},
             Row{flag, " ｔrue", "true"},
             Row{flag, "ture", "true"},
             Row{flag, "否", "false"},
             Row{flag, "0", "false"},
             Row{flag, "", "false"},
             Row{flag, "perhaps", std::nullopt},
             Row{flag, "true", std::nullopt},
             Row{integer, "132px", "132"},
             Row{integer, "24O", "240"},
             Row{integer, "l2", "12"},
             Row{integer, "OO", std::nullopt},
             Row{integer, "132 pt", "132"},
             Row{integer, "F5", std::nullopt},
             Row{integer, "１３２", "132"},
             Row{integer, "−5px", "-5"},
             Row{integer, "1,000", "1000"},
             Row{integer, "1,5", std::nullopt},
             Row{integer, "7.9", "7"},
             Row{integer, "50%", std::nullopt},
             Row{integer, "0x10", std::nullopt},
             Row{integer, "99999999999", "2147483647"},
             Row{integer, "", std::nullopt},
             Row{integer, "5\u00A0", "5"},
             Row{decimal, "0,5", "0.5"},
             Row{decimal, "1,000", std::nullopt},
             Row{decimal, "0.5px", "0.5"},
             Row{decimal, "１．５", "1.5"},
             Row{decimal, "1.2.3", std::nullopt},
             Row{byte, "300", "255"},
             Row{byte, "-1", "0"},
             Row{share, "128", "0.5"},
             Row{share, "255", "1"},
             Row{share, "1.5", "1"},
             Row{list, "a,b", "a;b"},
             Row{list, "a； b、c", "a;b;c"},
             Row{list, "a ;b", "a;b"},
             Row{list, "a;b", std::nullopt},
             Row{list, "Ａ;b", std::nullopt},
             Row{name, " red\u200B ", "red"},
             Row{name, "“red”", "red"},
             Row{name, "red ink", std::nullopt},
             Row{text, " red ", std::nullopt},
         }) {
        EXPECT_EQ(repairedValue(row.attribute, row.value), row.repaired) << row.value;
    }
}

TEST(ReadValue, IsWhatTheLibraryTakes) {
    EXPECT_EQ(readValue(flag, "True"), "false");
    EXPECT_EQ(readValue(integer, "132px"), "132");
    EXPECT_EQ(readValue(integer, "F5"), "0");
    EXPECT_EQ(readValue(integer, "99999999999"), "2147483647");
    EXPECT_EQ(readValue(decimal, "0,5"), "0");
    EXPECT_EQ(readValue(decimal, "1.5x"), "1.5");
    EXPECT_EQ(readValue(decimal, "1e99"), "infinity");
    EXPECT_EQ(readValue(byte, "300"), "255");
    EXPECT_EQ(readValue(share, "128"), "1");
    EXPECT_EQ(readValue(list, "a,b"), "1 name: 'a,b'");
    EXPECT_EQ(readValue(list, "a; b"), "2 names: 'a', ' b'");
    EXPECT_EQ(readValue(list, ""), "no list");
    EXPECT_EQ(readValue(text, "red"), "");
    EXPECT_EQ(readValue(text, "red\u00A0"), "text with U+00A0 (no-break space)");
}

TEST(AttributeRow, IsThatOfTheElement) {
    ASSERT_NE(attributeRow("panel", "vertical"), nullptr);
    EXPECT_EQ(attributeRow("panel", "vertical")->kind, AttributeKind::flag);
    EXPECT_EQ(attributeRow("panel", "none"), nullptr);
}

std::string page(const std::string& elements) {
    return "<styles default_style=\"q\"><style name=\"q\"><panel name=\"main\">\n" + elements +
           "\n</panel></style></styles>";
}

std::vector<std::string> inPage(const std::string& elements, const std::string& rule) {
    return linesOf(Files{{"config/custompage_template.xml", page(elements)}}, rule);
}

TEST(ValuesCheck, SuggestsValues) {
    EXPECT_THAT(inPage("<panel name='a' vertical='True'/>", "odd-flag"),
                ElementsAre(HasSubstr("odd-flag True -> true")));
    EXPECT_THAT(inPage("<panel name='a' scroll_size='132px'/>", "odd-number"),
                ElementsAre(HasSubstr("odd-number 132px -> 132")));
}

TEST(ValuesCheck, FindsOtherSeparatorsThanSemicolons) {
    const std::string others =
        "<element name='x' uuid='b'/><element name='x' uuid='c'/><element name='x' uuid='d,e'/>";
    const auto found = [&](const std::string& value) {
        return inPage("<element name='a' event_dispatch_dest='" + value + "'/>\n" + others,
                      "odd-separator");
    };
    const std::string place = "config/custompage_template.xml:2:";
    EXPECT_THAT(found("b,c"), ElementsAre(place + "40 error odd-separator b,c -> b;c"));
    EXPECT_THAT(found("b；c"), ElementsAre(place + "40 error odd-separator b；c -> b;c"));
    EXPECT_THAT(found("b; c"), ElementsAre(place + "42 error odd-separator  c -> c"));
    EXPECT_THAT(found("b;c"), IsEmpty());
    EXPECT_THAT(found("b;d,e"), IsEmpty());
    EXPECT_THAT(found("b;;c"), IsEmpty());
}

TEST(ValuesCheck, FindsNamesWithBlanksThatWouldMatchWithout) {
    EXPECT_THAT(inPage("<element name='a' event_dispatch_dest='b'/>\n<element name='x' uuid='b '/>",
                       "name-with-blanks"),
                ElementsAre("config/custompage_template.xml:3:25 error name-with-blanks b  -> b "
                            "(config/custompage_template.xml:2:40)"));
    // It is meant, or nobody asks.
    EXPECT_THAT(
        inPage("<element name='a' event_dispatch_dest='b '/>\n<element name='x' uuid='b '/>",
               "name-with-blanks"),
        IsEmpty());
    EXPECT_THAT(inPage("<element name='x' uuid='b '/>", "name-with-blanks"), IsEmpty());
}

TEST(ValuesCheck, FindsCharactersThatCannotBeSeen) {
    EXPECT_THAT(inPage("<element name='a' param='S\u200BH'/>", "hidden-character"),
                ElementsAre("config/custompage_template.xml:2:26 warning hidden-character "
                            "S\u200BH -> SH"));
    EXPECT_THAT(linesOf(Files{{"storage/app_config.xml",
                               "<config><net><port>80\u200B</port></net></config>"}},
                        "hidden-character"),
                ElementsAre(HasSubstr("hidden-character 80\u200B -> 80")));
    EXPECT_THAT(inPage("<element name='a' param='S\u00A0“H”'/>", "hidden-character"), IsEmpty());
    EXPECT_THAT(inPage("<!-- \u200B --><element name='a'/>", "hidden-character"), IsEmpty());
}

TEST(ValuesCheck, FindsNothingInTheSample) {
    const auto inspection = inspected(YG_SAMPLE_FOLDER);
    for (const RootFinding& finding : inspection->findings())
        EXPECT_EQ(finding.rule->severity, Severity::info) << lineOf(finding);
}

}  // namespace
}  // namespace yg::testing
