// SPDX-License-Identifier: MIT
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/events/YGCommandData.h"
#include "YGConfigManager/events/YGEventData.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using Text = std::optional<std::string>;

template <class Record>
std::vector<std::string> fieldNames() {
    std::vector<std::string> names;
    forEachField(Record(), [&](std::string_view name, const Text&) { names.emplace_back(name); });
    return names;
}

template <class Record>
std::vector<Text> fieldValues(const Record& record) {
    std::vector<Text> values;
    forEachField(record, [&](std::string_view, const Text& value) { values.push_back(value); });
    return values;
}

TEST(CommandData, TakesItsFourTextsInOrder) {
    const auto command = YGCommandData::initWithCommandInfo("open", "page", "symbol", "more");
    EXPECT_THAT(fieldValues(*command), ElementsAre("open", "page", "symbol", "more"));
    EXPECT_EQ(command->commandName(), "open");
    EXPECT_EQ(command->changeStyleName(), "page");
    EXPECT_EQ(command->dispatchParam(), "symbol");
    EXPECT_EQ(command->addtionData(), "more");
}

TEST(CommandData, AbsentIsNotEmpty) {
    const auto command = YGCommandData::initWithCommandInfo(std::nullopt, "", std::nullopt, "");
    EXPECT_THAT(fieldValues(*command), ElementsAre(std::nullopt, "", std::nullopt, ""));
}

TEST(CommandData, EveryFieldCanBeSetAndUnset) {
    YGCommandData command;
    EXPECT_THAT(fieldValues(command),
                ElementsAre(std::nullopt, std::nullopt, std::nullopt, std::nullopt));
    command.setCommandName("open");
    command.setChangeStyleName("page");
    command.setDispatchParam("");
    command.setAddtionData("more");
    EXPECT_THAT(fieldValues(command), ElementsAre("open", "page", "", "more"));
    command.setChangeStyleName(std::nullopt);
    EXPECT_THAT(fieldValues(command), ElementsAre("open", std::nullopt, "", "more"));
}

TEST(CommandData, NamesItsFieldsExactly) {
    EXPECT_THAT(fieldNames<YGCommandData>(),
                ElementsAre("commandName", "changeStyleName", "dispatchParam", "addtionData"));
}

TEST(EventData, TakesItsFiveTextsInOrder) {
    const auto event = YGEventData::initWithEventInfo("click", "open", "page", "symbol", "more");
    EXPECT_THAT(fieldValues(*event), ElementsAre("click", "open", "page", "symbol", "more"));
    EXPECT_EQ(event->eventName(), "click");
    EXPECT_EQ(event->command(), "open");
    EXPECT_EQ(event->changeStyleName(), "page");
    EXPECT_EQ(event->dispatchParam(), "symbol");
    EXPECT_EQ(event->addtionData(), "more");
}

TEST(EventData, AbsentIsNotEmpty) {
    const auto event =
        YGEventData::initWithEventInfo("", std::nullopt, "", std::nullopt, std::nullopt);
    EXPECT_THAT(fieldValues(*event), ElementsAre("", std::nullopt, "", std::nullopt, std::nullopt));
}

TEST(EventData, EveryFieldCanBeSetAndUnset) {
    YGEventData event;
    event.setEventName("click");
    event.setCommand("open");
    event.setChangeStyleName("page");
    event.setDispatchParam("");
    event.setAddtionData("more");
    EXPECT_THAT(fieldValues(event), ElementsAre("click", "open", "page", "", "more"));
    event.setCommand(std::nullopt);
    EXPECT_THAT(fieldValues(event), ElementsAre("click", std::nullopt, "page", "", "more"));
}

TEST(EventData, NamesItsFieldsExactly) {
    EXPECT_THAT(fieldNames<YGEventData>(), ElementsAre("eventName", "command", "changeStyleName",
                                                       "dispatchParam", "addtionData"));
}

}  // namespace
}  // namespace yg
