// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "tool/TextOf.h"
#include "ygconfig/json/Json.h"

namespace {

/// A record with a field of each kind.
struct Sample {
    std::optional<std::string> text() const { return "文"; }
    std::optional<std::string> absentText() const { return std::nullopt; }
    std::string emptyText() const { return ""; }
    bool flag() const { return true; }
    std::int32_t whole() const { return -7; }
    std::uint64_t large() const { return 18446744073709551615U; }
    float scale() const { return 0.1F; }
    double exact() const { return 0.1; }
    std::shared_ptr<std::vector<std::string>> names() const {
        return std::make_shared<std::vector<std::string>>(2, "n");
    }
    std::shared_ptr<std::vector<std::string>> noNames() const { return nullptr; }
    yg::RecordMap<std::int32_t> numbers() const {
        yg::RecordMap<std::int32_t> map;
        map.set("z", 1);
        map.set("a", 2);
        return map;
    }
};

/// A record that holds records.
struct Holder {
    using List = std::vector<std::shared_ptr<Holder>>;
    const std::shared_ptr<List>& children() const { return children_; }
    std::shared_ptr<List> children_ = std::make_shared<List>();
};

}  // namespace

template <>
struct yg::Description<Sample> {
    static constexpr std::tuple fields{
        Field{"text", &Sample::text},           Field{"absentText", &Sample::absentText},
        Field{"emptyText", &Sample::emptyText}, Field{"flag", &Sample::flag},
        Field{"whole", &Sample::whole},         Field{"large", &Sample::large},
        Field{"scale", &Sample::scale},         Field{"exact", &Sample::exact},
        Field{"names", &Sample::names},         Field{"noNames", &Sample::noNames},
        Field{"numbers", &Sample::numbers},
    };
};

template <>
struct yg::Description<Holder> {
    static constexpr std::tuple fields{Field{"children", &Holder::children}};
};

namespace {

using yg::tool::Answer;
using yg::tool::ExitCode;
using yg::tool::jsonAnswer;

/// What the tool prints of a value.
template <class Value>
std::string written(const Value& value) {
    return yg::testing::textOf(jsonAnswer(value).output);
}

TEST(Json, IsMadeFromTheDescriptionOfARecord) {
    EXPECT_EQ(written(Sample()), R"({
  "text": "文",
  "absentText": null,
  "emptyText": "",
  "flag": true,
  "whole": -7,
  "large": 18446744073709551615,
  "scale": 0.1,
  "exact": 0.1,
  "names": [
    "n",
    "n"
  ],
  "noNames": null,
  "numbers": {
    "z": 1,
    "a": 2
  }
}
)");
}

TEST(Json, HoldsRecordsInRecords) {
    Holder holder;
    holder.children_->push_back(std::make_shared<Holder>());
    holder.children_->push_back(nullptr);
    EXPECT_EQ(written(holder), R"({
  "children": [
    {
      "children": []
    },
    null
  ]
}
)");
}

TEST(Json, WritesWhatIsEmptyInOneLine) {
    EXPECT_EQ(written(std::vector<std::string>()), "[]\n");
    EXPECT_EQ(written(yg::RecordMap<bool>()), "{}\n");
}

TEST(Json, ForHtmlHasNeitherWhiteSpaceNorTheBeginOfATag) {
    const std::vector<std::vector<std::string>> value{{"</script><!-- \n", "<"}, {}};
    const yg::tool::Text text([&](yg::tool::Output& output) {
        yg::tool::JsonWriter json(output, yg::tool::JsonForm::inHtml);
        json.object([&] { json.member("<a>", value); });
    });
    EXPECT_EQ(yg::testing::textOf(text),
              R"({"\u003ca>":[["\u003c/script>\u003c!-- \n","\u003c"],[]]})");
}

TEST(Json, WritesAFloatWithTheFewestDigits) {
    EXPECT_EQ(written(0.0F), "0.0\n");
    EXPECT_EQ(written(-0.0F), "-0.0\n");
    EXPECT_EQ(written(-1.0F), "-1.0\n");
    EXPECT_EQ(written(0.1F), "0.1\n");
    EXPECT_EQ(written(0.3333333433F), "0.33333334\n");
    EXPECT_EQ(written(-15.959924F), "-15.959924\n");
    EXPECT_EQ(written(16777216.0F), "16777216.0\n");
    EXPECT_EQ(written(123456792.0F), "123456792.0\n");
    EXPECT_EQ(written(1e-45F), "1e-45\n");
}

TEST(Json, WritesADoubleWithTheFewestDigits) {
    EXPECT_EQ(written(1.0 / 3), "0.3333333333333333\n");
    EXPECT_EQ(written(4.1752050594835e+78), "4.1752050594835e+78\n");
}

TEST(Json, WritesLargeAndSmallNumbersWithAnExponent) {
    EXPECT_EQ(written(999999999999999.0), "999999999999999.0\n");
    EXPECT_EQ(written(1e15), "1e+15\n");
    EXPECT_EQ(written(0.0001), "0.0001\n");
    EXPECT_EQ(written(0.000099), "9.9e-05\n");
}

TEST(Json, WritesAFloatSoThatItReadsBack) {
    for (const float number : {3.4028235e38F, 1.17549435e-38F, 0.7F, 1.0F / 3, 123456.789F, -2e-7F})
        EXPECT_EQ(std::stof(written(number)), number);
}

TEST(Json, WritesInfinitiesAsTexts) {
    EXPECT_EQ(written(std::numeric_limits<float>::infinity()), "\"inf\"\n");
    EXPECT_EQ(written(-std::numeric_limits<float>::infinity()), "\"-inf\"\n");
    EXPECT_EQ(written(std::numeric_limits<double>::infinity()), "\"inf\"\n");
    EXPECT_EQ(written(-std::numeric_limits<double>::infinity()), "\"-inf\"\n");
}

TEST(Json, WritesNotANumberAsNull) {
    EXPECT_EQ(written(std::numeric_limits<float>::quiet_NaN()), "null\n");
}

TEST(Json, EscapesInTextsWhatItMust) {
    EXPECT_EQ(written(std::string("\"\\/\n\x01\x7F")), "\"\\\"\\\\/\\n\\u0001\x7F\"\n");
}

TEST(Json, ReplacesWhatIsNotUtf8) {
    EXPECT_EQ(written(std::string("a\xff"
                                  "b")),
              "\"a\uFFFDb\"\n");
    yg::RecordMap<std::int32_t> map;
    map.set("\xe4\xb8", 1);
    EXPECT_EQ(written(map), "{\n  \"\uFFFD\": 1\n}\n");
}

TEST(Json, ManagesManyLevels) {
    constexpr int levels = 800;
    Holder root;
    for (int i = 0; i < levels; ++i) {
        auto above = std::make_shared<Holder>();
        above->children_->push_back(std::make_shared<Holder>(root));
        root = *above;
    }
    const std::string text = written(root);
    EXPECT_EQ(std::count(text.begin(), text.end(), '{'), levels + 1);
}

/// Two million characters of JSON from one record that is in many places.
Answer longAnswer() {
    const auto shared = std::make_shared<Sample>();
    return jsonAnswer(std::vector<std::shared_ptr<Sample>>(10'000, shared));
}

TEST(JsonAnswer, IsWrittenInSmallPieces) {
    std::size_t total = 0;
    std::size_t largest = 0;
    longAnswer().output.writeTo([&](std::string_view piece) {
        total += piece.size();
        largest = std::max(largest, piece.size());
    });
    EXPECT_GT(total, 2'000'000);
    EXPECT_LT(largest, 100'000);
}

TEST(JsonAnswer, EndsWhereTheSinkThrows) {
    int pieces = 0;
    EXPECT_THROW(longAnswer().output.writeTo([&](std::string_view) {
        if (++pieces == 2)
            throw pieces;
    }),
                 int);
    EXPECT_EQ(pieces, 2);
}

template <class Value>
ExitCode exitCodeOf(const Value& value) {
    return jsonAnswer(value).exitCode;
}

TEST(JsonAnswer, DistinguishesNullAndFalseFromOtherAnswers) {
    EXPECT_EQ(exitCodeOf(nullptr), ExitCode::noAnswer);
    EXPECT_EQ(exitCodeOf(false), ExitCode::noAnswer);
    EXPECT_EQ(exitCodeOf(std::optional<std::string>()), ExitCode::noAnswer);
    EXPECT_EQ(exitCodeOf(std::shared_ptr<const Sample>()), ExitCode::noAnswer);
    EXPECT_EQ(exitCodeOf(true), ExitCode::answer);
    EXPECT_EQ(exitCodeOf(0), ExitCode::answer);
    EXPECT_EQ(exitCodeOf(std::string()), ExitCode::answer);
    EXPECT_EQ(exitCodeOf(std::optional<std::string>("")), ExitCode::answer);
    EXPECT_EQ(exitCodeOf(std::make_shared<const Holder>()), ExitCode::answer);
    EXPECT_EQ(exitCodeOf(std::vector<std::string>()), ExitCode::answer);
    EXPECT_EQ(exitCodeOf(yg::RecordMap<bool>()), ExitCode::answer);
    EXPECT_EQ(written(nullptr), "null\n");
    EXPECT_EQ(written(false), "false\n");
}

}  // namespace
