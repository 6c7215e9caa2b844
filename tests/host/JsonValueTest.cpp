// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/JsonValue.h"

namespace {

using yg::JsonValue;

/// The text read and written again, or the error.
std::string readAndWritten(std::string_view bytes) {
    const JsonValue::Parsed parsed = JsonValue::parse(bytes);
    if (!parsed)
        return "error: " + parsed.error;
    EXPECT_EQ(parsed.error, "");
    std::string out;
    parsed.value->appendTo(out);
    return out;
}

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

TEST(JsonValue, ReadsEveryKind) {
    const JsonValue::Parsed parsed =
        JsonValue::parse(R"([null, true, false, 12, "text", [1], {"a": 1}])");
    ASSERT_TRUE(parsed);
    const auto list = parsed.value->list();
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->size(), 7U);
    EXPECT_TRUE((*list)[0].isNull());
    EXPECT_EQ((*list)[1].boolean(), true);
    EXPECT_EQ((*list)[2].boolean(), false);
    ASSERT_NE((*list)[3].number(), nullptr);
    EXPECT_EQ(*(*list)[3].number(), "12");
    ASSERT_NE((*list)[4].text(), nullptr);
    EXPECT_EQ(*(*list)[4].text(), "text");
    ASSERT_NE((*list)[5].list(), nullptr);
    EXPECT_EQ((*list)[5].list()->size(), 1U);
    ASSERT_NE((*list)[6].object(), nullptr);
    EXPECT_EQ((*list)[6].object()->count("a"), 1U);
}

TEST(JsonValue, AnswersNothingForAnotherKind) {
    const JsonValue null;
    EXPECT_TRUE(null.isNull());
    EXPECT_EQ(null.boolean(), std::nullopt);
    EXPECT_EQ(null.number(), nullptr);
    EXPECT_EQ(null.text(), nullptr);
    EXPECT_EQ(null.list(), nullptr);
    EXPECT_EQ(null.object(), nullptr);
    const JsonValue text = *JsonValue::parse("\"12\"").value;
    EXPECT_FALSE(text.isNull());
    EXPECT_EQ(text.number(), nullptr);
    EXPECT_EQ(JsonValue::parse("12").value->text(), nullptr);
}

TEST(JsonValue, WritesWhatItRead) {
    struct Row {
        std::string_view bytes;
        std::string_view written;
    };
    for (const Row& row : {
             Row{" { \"b\" : [ 1 , { } , [ ] ] , \"a\" : null } ", R"({"a":null,"b":[1,{},[]]})"},
             Row{R"(["\"\\\/\b\f\n\r\t\u0001"])", R"(["\"\\/\b\f\n\r\t\u0001"])"},
             Row{R"(["\u884c\u60c5 \ud83d\ude00 行情"])", R"(["行情 😀 行情"])"},
             Row{R"({"配置":true})", R"({"配置":true})"},
             Row{"false", "false"},
         }) {
        EXPECT_EQ(readAndWritten(row.bytes), row.written) << row.bytes;
    }
}

TEST(JsonValue, KeepsNumbersAsShortDecimalText) {
    struct Row {
        std::string_view bytes;
        std::string_view written;
    };
    for (const Row& row : {
             Row{"0", "0"},
             Row{"-7", "-7"},
             Row{"9223372036854775807", "9223372036854775807"},
             Row{"-9223372036854775808", "-9223372036854775808"},
             Row{"18446744073709551615", "18446744073709551615"},
             Row{"123456789012345678901234567890", "123456789012345678901234567890"},
             Row{"-123456789012345678901234567890", "-123456789012345678901234567890"},
             Row{"1.50", "1.5"},
             Row{"0.1", "0.1"},
             Row{"1.0", "1"},
             Row{"1e2", "100"},
             Row{"1E5", "100000"},
             Row{"0.0001", "0.0001"},
             Row{"0.00001", "1e-05"},
             Row{"1e16", "10000000000000000"},
             Row{"1e17", "1e+17"},
             Row{"1.7976931348623157e308", "1.7976931348623157e+308"},
             Row{"0.0", "0"},
             Row{"-0", "-0"},
             Row{"-0.0", "-0"},
             Row{"0e5", "0"},
             Row{"0.5e-700", "0"},
             Row{"-0.5e-700", "-0"},
             Row{"1e-400", "0"},
             Row{"1e-99999999999999999999", "0"},
             Row{"0.0e99999999999999999999", "0"},
             Row{"1e-310", "1e-310"},
             Row{"4.9e-324", "5e-324"},
             Row{"2.4e-324", "0"},
             Row{"-12.5e+1", "-125"},
             Row{"[1,2.5,\"3.5\\\"4.5\",{\"5.5\":6.5}]", "[1,2.5,\"3.5\\\"4.5\",{\"5.5\":6.5}]"},
         }) {
        EXPECT_EQ(readAndWritten(row.bytes), row.written) << row.bytes;
        EXPECT_EQ(readAndWritten(row.written), row.written) << row.bytes;
    }
}

TEST(JsonValue, IsStrict) {
    struct Row {
        std::string_view bytes;
        std::string_view error;
    };
    for (const Row& row : {
             Row{"", "line 1, column 1: the text ends too early"},
             Row{" ", "line 1, column 2: the text ends too early"},
             Row{"{", "line 1, column 2: the text ends too early"},
             Row{"{\"a\":1", "line 1, column 7: the text ends too early"},
             Row{"{} {}", "line 1, column 4: not valid JSON"},
             Row{"{}x", "line 1, column 3: not valid JSON"},
             Row{std::string_view("{}\0", 3), "line 1, column 3: not valid JSON"},
             Row{std::string_view("{}\0garbage", 10), "line 1, column 3: not valid JSON"},
             Row{"{} // end", "line 1, column 4: not valid JSON"},
             Row{"/* a */ {}", "line 1, column 1: not valid JSON"},
             Row{"[1,]", "line 1, column 4: not valid JSON"},
             Row{"{\"a\":1,}", "line 1, column 8: not valid JSON"},
             Row{"{a:1}", "line 1, column 2: not valid JSON"},
             Row{"{'a':1}", "line 1, column 2: not valid JSON"},
             Row{"[NaN]", "line 1, column 2: not valid JSON"},
             Row{"[nan]", "line 1, column 3: not valid JSON"},
             Row{"[Infinity]", "line 1, column 2: not valid JSON"},
             Row{"[-Infinity]", "line 1, column 3: not valid JSON"},
             Row{"[+1]", "line 1, column 2: not valid JSON"},
             Row{"[01]", "line 1, column 3: not valid JSON"},
             Row{"[.5]", "line 1, column 2: not valid JSON"},
             Row{"[5.]", "line 1, column 4: not valid JSON"},
             Row{"[0x10]", "line 1, column 3: not valid JSON"},
             Row{"[1e400]", "line 1, column 6: number out of range"},
             Row{"[1.5,\n-1.5e400,]", "line 2, column 8: number out of range"},
             Row{"[1.5.5]", "line 1, column 5: not valid JSON"},
             Row{"[1.5e]", "line 1, column 6: not valid JSON"},
             Row{"[1.5e+]", "line 1, column 7: not valid JSON"},
             Row{"[1.5e5e5]", "line 1, column 7: not valid JSON"},
             Row{"[1.e5]", "line 1, column 4: not valid JSON"},
             Row{"[-.5]", "line 1, column 3: not valid JSON"},
             Row{"[-e5]", "line 1, column 3: not valid JSON"},
             Row{"[00.5]", "line 1, column 5: not valid JSON"},
             Row{"[1.5 2.5]", "line 1, column 8: not valid JSON"},
             Row{"[1.5-2.5]", "line 1, column 8: not valid JSON"},
             Row{"[\"\\\"1.5]", "line 1, column 9: the text ends too early"},
             Row{"[\"a\nb\"]", "line 1, column 4: not valid JSON"},
             Row{"[\"\\x\"]", "line 1, column 4: not valid JSON"},
             Row{"[\"\\ud800\"]", "line 1, column 9: not valid JSON"},
             Row{"[\"\\udc00\"]", "line 1, column 8: not valid JSON"},
             Row{"[\"\xff\"]", "line 1, column 3: invalid UTF-8"},
             Row{"[\"\xc0\x80\"]", "line 1, column 3: invalid UTF-8"},
             Row{"[\"\xed\xa0\x80\"]", "line 1, column 3: invalid UTF-8"},
             Row{"\xff\xfe{}", "line 1, column 1: invalid UTF-8"},
             Row{"\xef\xbb\xbf\xef\xbb\xbf{}", "line 1, column 1: not valid JSON"},
             Row{"\xef\xbb{}", "line 1, column 1: invalid UTF-8"},
             Row{"[1]\xc2\xa0", "line 1, column 4: not valid JSON"},
             Row{"{\"a\":1,\n \"行情\" 2}", "line 2, column 7: not valid JSON"},
         }) {
        EXPECT_EQ(readAndWritten(row.bytes), "error: " + std::string(row.error)) << row.bytes;
    }
}

TEST(JsonValue, SkipsAByteOrderMarkAndWhiteSpace) {
    EXPECT_EQ(readAndWritten("\xef\xbb\xbf \t\r\n{ } \n"), "{}");
}

TEST(JsonValue, OfMembersWithOneNameTheLastCounts) {
    EXPECT_EQ(readAndWritten(R"({"a":1,"b":2,"a":{"c":3},"a":null})"), R"({"a":null,"b":2})");
    EXPECT_EQ(readAndWritten(R"({"a":[1,2],"a":[3]})"), R"({"a":[3]})");
}

TEST(JsonValue, TakesNoMoreThanTheDeepestNesting) {
    const std::size_t deepest = JsonValue::maximumDepth;
    const std::string lists = repeated("[", deepest) + repeated("]", deepest);
    EXPECT_EQ(readAndWritten(lists), lists);
    const std::string objects = repeated("{\"a\":", deepest) + "1" + repeated("}", deepest);
    EXPECT_EQ(readAndWritten(objects), objects);
    EXPECT_EQ(readAndWritten("[" + lists + "]"), "error: nested deeper than 256 levels");
    EXPECT_EQ(readAndWritten("{\"a\":" + objects + "}"), "error: nested deeper than 256 levels");
}

TEST(JsonValue, DeepNestingIsNoStackOverflow) {
    EXPECT_FALSE(JsonValue::parse(repeated("[", 100'000)));
    EXPECT_FALSE(JsonValue::parse(repeated("{\"a\":", 100'000)));
    EXPECT_FALSE(JsonValue::parse(repeated("[", 100'000) + repeated("]", 100'000)));
}

TEST(JsonValue, TakesNoMoreThanTheLargestNumberOfValues) {
    const std::string most = "[{}" + repeated(",1", JsonValue::maximumValues - 2);
    EXPECT_TRUE(JsonValue::parse(most + "]"));
    EXPECT_EQ(JsonValue::parse(most + ",1]").error, "more than 250000 values");
    EXPECT_EQ(JsonValue::parse(most + ",{}]").error, "more than 250000 values");
}

TEST(JsonValue, OutlivesTheTextAndTheValueAroundIt) {
    JsonValue inner;
    {
        std::string bytes = R"({"a":["inner"]})";
        const JsonValue outer = *JsonValue::parse(bytes).value;
        bytes.assign(bytes.size(), 'x');
        inner = outer.object()->at("a");
    }
    EXPECT_EQ(*inner.list()->at(0).text(), "inner");
}

std::string_view partOf(std::string_view bytes, yg::JsonRange range) {
    return bytes.substr(range.begin, range.end - range.begin);
}

/// Adds the bytes of the value and of all values in it, and checks that they read as it does.
void addParts(std::string_view bytes, const JsonValue& value, std::vector<std::string>& parts) {
    ASSERT_NE(value.range(), std::nullopt);
    const std::string_view part = partOf(bytes, *value.range());
    parts.emplace_back(part);
    std::string written;
    value.appendTo(written);
    EXPECT_EQ(readAndWritten(part), written);
    if (const auto list = value.list()) {
        for (const JsonValue& item : *list)
            addParts(bytes, item, parts);
    }
    if (const auto object = value.object()) {
        for (const auto& [name, member] : *object)
            addParts(bytes, member, parts);
        EXPECT_NE(value.members(), nullptr);
    } else {
        EXPECT_EQ(value.members(), nullptr);
    }
}

std::vector<std::string> partsOf(std::string_view bytes) {
    const JsonValue::Parsed parsed = JsonValue::parse(bytes, {.positions = true});
    EXPECT_TRUE(parsed) << parsed.error;
    std::vector<std::string> parts;
    addParts(bytes, *parsed.value, parts);
    return parts;
}

TEST(JsonPositions, AreTheBytesOfEachValue) {
    struct Row {
        std::string_view bytes;
        std::vector<std::string> parts;
    };
    for (const Row& row : {
             Row{"7", {"7"}},
             Row{" null ", {"null"}},
             Row{"\xef\xbb\xbf[true]", {"[true]", "true"}},
             Row{"[ ]", {"[ ]"}},
             Row{"{\r\n}", {"{\r\n}"}},
             Row{"[null,true,false , \"\"]",
                 {"[null,true,false , \"\"]", "null", "true", "false", "\"\""}},
             Row{"[-0,1.50 ,-2.5E+3\r\n,[12345678901234567890123]]",
                 {"[-0,1.50 ,-2.5E+3\r\n,[12345678901234567890123]]", "-0", "1.50", "-2.5E+3",
                  "[12345678901234567890123]", "12345678901234567890123"}},
             Row{R"(["\"a\\","\\\"]","行\u884c"])",
                 {R"(["\"a\\","\\\"]","行\u884c"])", R"("\"a\\")", R"("\\\"]")", R"("行\u884c")"}},
             Row{R"({"a":{"行,:": [{}, 1e5] },"b":"}"})",
                 {R"({"a":{"行,:": [{}, 1e5] },"b":"}"})", R"({"行,:": [{}, 1e5] })", "[{}, 1e5]",
                  "{}", "1e5", R"("}")"}},
             Row{R"({"a":1,"b":[2],"a":[3,{"a":4}]})",
                 {R"({"a":1,"b":[2],"a":[3,{"a":4}]})", R"([3,{"a":4}])", "3", R"({"a":4})", "4",
                  "[2]", "2"}},
         }) {
        EXPECT_EQ(partsOf(row.bytes), row.parts) << row.bytes;
    }
}

TEST(JsonPositions, CountTheByteOrderMark) {
    EXPECT_EQ(JsonValue::parse("\xef\xbb\xbf 1", {.positions = true}).value->range(),
              (yg::JsonRange{4, 5}));
}

TEST(JsonPositions, ListMembersInOrderWithThoseReplaced) {
    const std::string_view bytes = R"({ "b" : 1 ,"a": [2],"\u0062":{"a":3},"a" :4, "b":1})";
    const JsonValue value = *JsonValue::parse(bytes, {.positions = true}).value;
    std::string written;
    for (const yg::JsonMember& member : *value.members()) {
        written.append(member.name).append(" ");
        written.append(partOf(bytes, member.nameRange)).append("=");
        written.append(partOf(bytes, member.valueRange));
        written.append(member.isReplaced ? " replaced\n" : " counts\n");
    }
    EXPECT_EQ(written,
              "b \"b\"=1 replaced\n"
              "a \"a\"=[2] replaced\n"
              "b \"\\u0062\"={\"a\":3} replaced\n"
              "a \"a\"=4 counts\n"
              "b \"b\"=1 counts\n");
}

TEST(JsonPositions, OfMembersOutliveTheValue) {
    std::shared_ptr<const std::vector<yg::JsonMember>> members;
    {
        std::string bytes = R"({"a member with a long name":1})";
        members = JsonValue::parse(bytes, {.positions = true}).value->members();
        bytes.assign(bytes.size(), 'x');
    }
    EXPECT_EQ(members->at(0).name, "a member with a long name");
}

TEST(JsonPositions, AreNotNotedUnlessAskedFor) {
    const JsonValue value = *JsonValue::parse(R"({"a":1})").value;
    EXPECT_EQ(value.range(), std::nullopt);
    EXPECT_EQ(value.members(), nullptr);
    EXPECT_EQ(value.object()->at("a").range(), std::nullopt);
    EXPECT_EQ(JsonValue().range(), std::nullopt);
}

TEST(JsonPositions, OfAnErrorAreInItsTextToo) {
    const JsonValue::Parsed wrong = JsonValue::parse("\xef\xbb\xbf{\"行\":1,\r\n \"行情\" 2}");
    EXPECT_EQ(wrong.error, "line 2, column 7: not valid JSON");
    EXPECT_EQ(wrong.place, (yg::TextPoint{2, 7}));
    EXPECT_EQ(JsonValue::parse("\xef\xbb\xbf[x").place, (yg::TextPoint{1, 2}));
    EXPECT_EQ(JsonValue::parse(repeated("[", 1000)).place, yg::TextPoint());
    EXPECT_EQ(JsonValue::parse("[]").place, yg::TextPoint());
}

TEST(JsonText, IsQuotedAndNotEscapedToAscii) {
    std::string out = "x";
    yg::appendJsonText(out, std::string_view("行\"\\\n\0/", 8));
    EXPECT_EQ(out, "x\"行\\\"\\\\\\n\\u0000/\"");
}

TEST(JsonText, ReplacesWhatIsNoUtf8) {
    std::string out;
    yg::appendJsonText(out,
                       "a\xff"
                       "b");
    EXPECT_EQ(out,
              "\"a\xef\xbf\xbd"
              "b\"");
    EXPECT_TRUE(JsonValue::parse(out));
}

}  // namespace
