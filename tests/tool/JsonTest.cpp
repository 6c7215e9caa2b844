// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "LargeInput.h"
#include "ygconfig/Json.h"

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
using yg::tool::Json;
using yg::tool::jsonAnswer;
using yg::tool::jsonText;
using yg::tool::toJson;

std::string written(float number) {
    return toJson(number).dump();
}

TEST(Json, IsMadeFromTheDescriptionOfARecord) {
    EXPECT_EQ(toJson(Sample()).dump(),
              R"({"text":"文","absentText":null,"emptyText":"","flag":true,"whole":-7,)"
              R"("large":18446744073709551615,"scale":0.1,"exact":0.1,"names":["n","n"],)"
              R"("noNames":null,"numbers":{"z":1,"a":2}})");
}

TEST(Json, HoldsRecordsInRecords) {
    Holder holder;
    holder.children_->push_back(std::make_shared<Holder>());
    holder.children_->push_back(nullptr);
    EXPECT_EQ(toJson(holder).dump(), R"({"children":[{"children":[]},null]})");
}

TEST(Json, WritesAFloatWithTheFewestDigits) {
    EXPECT_EQ(written(0.0F), "0.0");
    EXPECT_EQ(written(-1.0F), "-1.0");
    EXPECT_EQ(written(0.1F), "0.1");
    EXPECT_EQ(written(0.3333333433F), "0.33333334");
    EXPECT_EQ(written(16777216.0F), "16777216.0");
    EXPECT_EQ(written(1e-45F), "1e-45");
}

TEST(Json, WritesAFloatSoThatItReadsBack) {
    for (const float number : {3.4028235e38F, 1.17549435e-38F, 0.7F, 1.0F / 3, 123456.789F, -2e-7F})
        EXPECT_EQ(static_cast<float>(std::stod(written(number))), number);
}

TEST(Json, WritesInfinitiesAsTexts) {
    EXPECT_EQ(written(std::numeric_limits<float>::infinity()), "\"inf\"");
    EXPECT_EQ(written(-std::numeric_limits<float>::infinity()), "\"-inf\"");
    EXPECT_EQ(toJson(std::numeric_limits<double>::infinity()).dump(), "\"inf\"");
    EXPECT_EQ(toJson(-std::numeric_limits<double>::infinity()).dump(), "\"-inf\"");
}

TEST(JsonText, ReplacesWhatIsNoUtf8) {
    EXPECT_EQ(jsonText(toJson(std::string("a\xff"
                                          "b"))),
              "\"a\uFFFDb\"\n");
    Json object = Json::object();
    yg::tool::addMember(object, "\xe4\xb8", 1);
    EXPECT_EQ(jsonText(object), "{\n  \"\uFFFD\": 1\n}\n");
}

TEST(JsonText, ManagesManyLevels) {
    // Sanitizers make the frames of the JSON library several times larger.
    constexpr int levels = yg::testing::isSanitized ? 200 : 800;
    Holder root;
    for (int i = 0; i < levels; ++i) {
        auto above = std::make_shared<Holder>();
        above->children_->push_back(std::make_shared<Holder>(root));
        root = *above;
    }
    const std::string text = jsonText(toJson(root));
    EXPECT_EQ(std::count(text.begin(), text.end(), '{'), levels + 1);
}

TEST(JsonAnswer, TellsNullAndFalseFromTheRest) {
    EXPECT_EQ(jsonAnswer(Json()).exitCode, ExitCode::noAnswer);
    EXPECT_EQ(jsonAnswer(false).exitCode, ExitCode::noAnswer);
    for (const Json& json : {Json(true), Json(0), Json(""), Json::array(), Json::object()})
        EXPECT_EQ(jsonAnswer(json).exitCode, ExitCode::answer) << json;
    EXPECT_EQ(jsonAnswer(Json()).output, "null\n");
}

}  // namespace
