// SPDX-License-Identifier: MIT
//
// A load from the outside: commands, lookups, the order of the pass, the log.
#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/xml/Document.h"

#include "events/EventFile.h"
#include "files/TemporaryFolder.h"
#include "host/RecordingHost.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::files::TemporaryFolder;
using yg::testing::commandOf;
using yg::testing::keysOf;
using yg::testing::loadEvents;
using yg::testing::ScopedHost;

void expectEmpty(const YGEventLoader& loader) {
    EXPECT_TRUE(loader.commandDatas().empty());
    EXPECT_TRUE(loader.eventTemplateDatas().empty());
    EXPECT_TRUE(loader.elementEventDatas().empty());
    EXPECT_EQ(loader.commandByName("open"), nullptr);
    EXPECT_EQ(loader.eventByName("quote", "click"), nullptr);
}

// ---- Commands --------------------------------------------------------------------------------

TEST(EventCommands, TheLaterOfTwoSectionsWins) {
    const auto loader = loadEvents(R"(<event_list>
        <command_event><c name="open" change_style="one"/><c name="close"/></command_event>
        <command_event><c name="open" change_style="two"/></command_event>
    </event_list>)");
    EXPECT_EQ(loader->commandByName("open")->changeStyleName(), "two");
    EXPECT_THAT(keysOf(loader->commandDatas()), ElementsAre("open", "close"));
}

TEST(EventCommands, TheLaterOfOneSectionWinsWhole) {
    const auto loader = loadEvents(R"(<event_list><command_event>
        <c name="open" change_style="one" dispatch="d"/><c name="open" addtion_data="more"/>
    </command_event></event_list>)");
    const auto command = loader->commandByName("open");
    EXPECT_EQ(command->changeStyleName(), std::nullopt);
    EXPECT_EQ(command->dispatchParam(), std::nullopt);
    EXPECT_EQ(command->addtionData(), "more");
}

TEST(EventCommands, AChildOfAnyNameIsACommand) {
    const auto loader = loadEvents(R"(<event_list><command_event>
        <command name="a"/><anything name="b"/><命令 name="c"/><x:y name="d"/>
        <command_event name="e"/>
    </command_event></event_list>)");
    EXPECT_THAT(keysOf(loader->commandDatas()), ElementsAre("a", "b", "c", "d", "e"));
}

TEST(EventCommands, TheEmptyNameIsNeverFound) {
    const auto loader = loadEvents(
        R"(<event_list><command_event><c name="" dispatch="d"/></command_event></event_list>)");
    EXPECT_EQ(loader->commandByName(""), nullptr);
    EXPECT_THAT(keysOf(loader->commandDatas()), ElementsAre(""));
}

TEST(EventCommands, WithANameAloneHasNoOtherText) {
    const auto loader =
        loadEvents(R"(<event_list><command_event><c name="open"/></command_event></event_list>)");
    const auto command = loader->commandByName("open");
    EXPECT_EQ(command->commandName(), "open");
    EXPECT_EQ(command->changeStyleName(), std::nullopt);
    EXPECT_EQ(command->dispatchParam(), std::nullopt);
    EXPECT_EQ(command->addtionData(), std::nullopt);
}

TEST(EventCommands, EmptyAttributesAreEmptyTexts) {
    const auto loader = loadEvents(R"(<event_list><command_event>
        <c name="open" change_style="" dispatch="" addtion_data=""/>
    </command_event></event_list>)");
    const auto command = loader->commandByName("open");
    EXPECT_EQ(command->changeStyleName(), "");
    EXPECT_EQ(command->dispatchParam(), "");
    EXPECT_EQ(command->addtionData(), "");
}

TEST(EventCommands, ValuesAreTakenAsTheyStand) {
    const auto loader = loadEvents(R"(<event_list><command_event>
        <c name=" open " change_style="个股详细视图-沪深" dispatch="&lt;a&gt;;b" addtion_data=" 1 "/>
    </command_event></event_list>)");
    EXPECT_EQ(loader->commandByName("open"), nullptr);
    const auto command = loader->commandByName(" open ");
    EXPECT_EQ(command->changeStyleName(), "个股详细视图-沪深");
    EXPECT_EQ(command->dispatchParam(), "<a>;b");
    EXPECT_EQ(command->addtionData(), " 1 ");
}

TEST(EventCommands, WithoutANameAreNotStored) {
    const auto loader = loadEvents(
        R"(<event_list><command_event><c dispatch="d"/>text<!-- no --><![CDATA[c]]><?p i?>
        <c name="b"/></command_event></event_list>)");
    EXPECT_THAT(keysOf(loader->commandDatas()), ElementsAre("b"));
}

TEST(EventCommands, ASectionAnywhereElseIsIgnored) {
    const auto loader = loadEvents(R"(<event_list>
        <group><command_event><c name="a"/></command_event></group>
        <command_event><section><command_event><c name="b"/></command_event></section>
        </command_event>
        <element_event name="g"><command_event><c name="c"/></command_event></element_event>
    </event_list>)");
    EXPECT_TRUE(loader->commandDatas().empty());
}

TEST(EventCommands, KeepTheOrderOfTheFile) {
    const auto loader = loadEvents(R"(<event_list>
        <command_event><c name="z"/><c name="m"/></command_event>
        <command_event><c name="a"/><c name="z"/></command_event>
    </event_list>)");
    EXPECT_THAT(keysOf(loader->commandDatas()), ElementsAre("z", "m", "a"));
}

TEST(EventCommands, AnEmptySectionElementReadsNothing) {
    const auto loader = loadEvents(
        R"(<event_list><command_event/><command_event>
        </command_event><command_event><c name="a"/></command_event></event_list>)");
    EXPECT_THAT(keysOf(loader->commandDatas()), ElementsAre("a"));
    loader->loadCommandEvent({});
    EXPECT_THAT(keysOf(loader->commandDatas()), ElementsAre("a"));
}

// ---- Lookups ---------------------------------------------------------------------------------

TEST(EventLookups, CompareNamesExactly) {
    const auto loader = loadEvents(R"(<event_list>
        <command_event><c name="Open"/></command_event>
        <element_event name="Quote"><event name="Click"/></element_event>
    </event_list>)");
    EXPECT_NE(loader->commandByName("Open"), nullptr);
    EXPECT_EQ(loader->commandByName("open"), nullptr);
    EXPECT_EQ(loader->commandByName("Open "), nullptr);
    EXPECT_NE(loader->eventByName("Quote", "Click"), nullptr);
    EXPECT_EQ(loader->eventByName("quote", "Click"), nullptr);
    EXPECT_EQ(loader->eventByName("Quote", "click"), nullptr);
}

TEST(EventLookups, AbsentNamesFindNothing) {
    const auto loader = loadEvents(R"(<event_list>
        <command_event><c name="a"/></command_event>
        <element_event name="g"><event name="e"/></element_event>
    </event_list>)");
    EXPECT_EQ(loader->commandByName(std::nullopt), nullptr);
    EXPECT_EQ(loader->eventByName(std::nullopt, "e"), nullptr);
    EXPECT_EQ(loader->eventByName("g", std::nullopt), nullptr);
    EXPECT_EQ(loader->eventByName(std::nullopt, std::nullopt), nullptr);
}

TEST(EventLookups, AnEmptyGroupOrEventNameFindsNothing) {
    const auto loader = loadEvents(R"(<event_list>
        <element_event name=""><event name="e"/></element_event>
        <element_event name="g"><event name=""/><event name="e"/></element_event>
    </event_list>)");
    EXPECT_EQ(loader->eventByName("", "e"), nullptr);
    EXPECT_EQ(loader->eventByName("g", ""), nullptr);
    EXPECT_EQ(loader->eventByName("", ""), nullptr);
    EXPECT_THAT(keysOf(*loader->elementEventDatas().find("g")), ElementsAre("", "e"));
    EXPECT_FALSE(loader->elementEventDatas().contains(""));
}

TEST(EventLookups, VeryLongNamesFindNothingOrTheirOwn) {
    const std::string longName(1'000'000, 'n');
    const auto loader =
        loadEvents("<event_list><command_event><c name='" + longName +
                   "'/></command_event><element_event name='" + longName + "'><event name='" +
                   longName + "'/></element_event></event_list>");
    EXPECT_NE(loader->commandByName(longName), nullptr);
    EXPECT_NE(loader->eventByName(longName, longName), nullptr);
    EXPECT_EQ(loader->commandByName(longName + "n"), nullptr);
    EXPECT_EQ(loader->eventByName(longName, longName + "n"), nullptr);
    EXPECT_EQ(loader->eventByName(longName.substr(1), longName), nullptr);
    EXPECT_EQ(loader->commandByName(std::string_view("n\0n", 3)), nullptr);
}

TEST(EventLookups, AnswerTheStoredRecordsThemselves) {
    const auto loader = loadEvents(R"(<event_list>
        <command_event><c name="a"/></command_event>
        <element_event name="g"><event name="e"/></element_event>
    </event_list>)");
    EXPECT_EQ(loader->commandByName("a"), loader->commandByName("a"));
    EXPECT_EQ(loader->commandByName("a"), *loader->commandDatas().find("a"));
    EXPECT_EQ(loader->eventByName("g", "e"), *loader->elementEventDatas().find("g")->find("e"));
}

TEST(EventLookups, RecordsOutliveTheirLoader) {
    auto loader = loadEvents(R"(<event_list>
        <command_event><c name="a" dispatch="d"/></command_event>
        <element_event name="g"><event name="e" command="c"/></element_event>
    </event_list>)");
    const auto command = loader->commandByName("a");
    const auto event = loader->eventByName("g", "e");
    loader.reset();
    EXPECT_EQ(command->dispatchParam(), "d");
    EXPECT_EQ(event->command(), "c");
}

TEST(EventLookups, DoNotLookIntoCommandsTemplatesOrOtherGroups) {
    const auto loader = loadEvents(R"(<event_list>
        <command_event><c name="click"/></command_event>
        <event_template name="base"><e name="click"/></event_template>
        <element_event name="other"><event name="click"/></element_event>
        <element_event name="quote"><event name="select"/></element_event>
    </event_list>)");
    EXPECT_EQ(loader->eventByName("quote", "click"), nullptr);
    EXPECT_EQ(loader->eventByName("base", "click"), nullptr);
}

TEST(EventLookups, MayRunOnSeveralThreads) {
    std::string xml = "<event_list><command_event>";
    for (int i = 0; i < 200; ++i)
        xml += "<c name='c" + std::to_string(i) + "'/>";
    xml += "</command_event><event_template name='t'><e name='shared'/></event_template>";
    for (int i = 0; i < 200; ++i)
        xml += "<element_event name='g" + std::to_string(i) +
               "'><i src='t'/><event name='own'/></element_event>";
    const std::shared_ptr<const YGEventLoader> loader = loadEvents(xml + "</event_list>");

    std::atomic<int> found = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 200; ++i) {
                const std::string number = std::to_string(i);
                if (loader->commandByName("c" + number))
                    ++found;
                for (const char* event : {"shared", "own", "none"}) {
                    const auto record = loader->eventByName("g" + number, event);
                    if (record && record->eventName() == event)
                        ++found;
                }
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(found, 4 * 200 * 3);
}

// ---- The load pass ---------------------------------------------------------------------------

TEST(EventLoad, ReadsCommandsThenTemplatesThenGroupsWhateverTheirOrder) {
    const auto loader = loadEvents(R"(<event_list>
        <element_event name="g"><include src="t"/></element_event>
        <event_template name="t"><e name="click" command="open"/></event_template>
        <command_event><c name="open" change_style="page"/></command_event>
    </event_list>)");
    const auto event = loader->eventByName("g", "click");
    ASSERT_NE(event, nullptr);
    EXPECT_EQ(loader->commandByName(event->command())->changeStyleName(), "page");
}

TEST(EventLoad, IgnoresOtherChildrenOfTheRoot) {
    const auto loader = loadEvents(R"(<event_list>
        <commands><c name="a"/></commands><Command_Event><c name="b"/></Command_Event>
        text <!-- comment --> <?instruction?>
        <command_event><c name="c"/></command_event>
    </event_list>)");
    EXPECT_THAT(keysOf(loader->commandDatas()), ElementsAre("c"));
}

TEST(EventLoad, ASecondPassReadsTheFileAgain) {
    const TemporaryFolder root;
    root.write(
        "events.xml",
        "<event_list><command_event><c name='a' dispatch='1'/></command_event></event_list>");
    const auto loader = YGEventLoader::initWithEventConfigPath(root.at("events.xml"));
    root.write(
        "events.xml",
        "<event_list><command_event><c name='a' dispatch='2'/></command_event></event_list>");
    EXPECT_EQ(loader->commandByName("a")->dispatchParam(), "1");
    loader->loadEventConfig();
    EXPECT_EQ(loader->commandByName("a")->dispatchParam(), "2");
}

TEST(EventLoad, EachLoaderReadsForItself) {
    const TemporaryFolder root;
    root.write("events.xml",
               "<event_list><command_event><c name='a'/></command_event></event_list>");
    const auto one = YGEventLoader::initWithEventConfigPath(root.at("events.xml"));
    const auto two = YGEventLoader::initWithEventConfigPath(root.at("events.xml"));
    EXPECT_NE(one->commandByName("a"), two->commandByName("a"));
}

TEST(EventLoad, AsksTheHostNothingAndLogsNothingWhenAllIsWell) {
    const ScopedHost host;
    const auto loader = loadEvents("<event_list><event_template/><x/></event_list>");
    expectEmpty(*loader);
    EXPECT_THAT(host->log(), IsEmpty());
    EXPECT_THAT(host->questions(), IsEmpty());
}

TEST(EventLoad, AFileThatDoesNotParseIsLoggedWithTheParsersWords) {
    const ScopedHost host;
    const TemporaryFolder root;
    root.write("events.xml", "<event_list>\n<command_event><c name='open'/></event_list>");
    const std::string path = root.at("events.xml");
    const auto loader = YGEventLoader::initWithEventConfigPath(path);
    const std::string error = xml::Document::parseFile(path).error;
    EXPECT_THAT(error, ::testing::StartsWith("Line 2: "));
    EXPECT_THAT(host->log(), ElementsAre(yg::testing::LogLine{
                                 LogChannel::runtime, "load palette config fail:" + error}));
    expectEmpty(*loader);
}

TEST(EventLoad, AMissingFileIsLogged) {
    const ScopedHost host;
    const TemporaryFolder root;
    const std::string path = root.at("none.xml");
    const auto loader = YGEventLoader::initWithEventConfigPath(path);
    EXPECT_THAT(host->runtimeLog(),
                ElementsAre("load palette config fail:" + path + ": No such file or directory"));
    expectEmpty(*loader);
}

TEST(EventLoad, AnAbsentOrEmptyPathIsSilent) {
    const ScopedHost host;
    expectEmpty(*YGEventLoader::initWithEventConfigPath(std::nullopt));
    expectEmpty(*YGEventLoader::initWithEventConfigPath(""));
    EXPECT_THAT(host->log(), IsEmpty());
}

TEST(EventLoad, ARootOfAnotherNameIsSilentlyEmpty) {
    const ScopedHost host;
    const auto loader = loadEvents(R"(<events>
        <command_event><c name="open"/></command_event>
        <event_template name="t"><e name="click"/></event_template>
        <element_event name="quote"><event name="click"/></element_event>
        <event_list><command_event><c name="open"/></command_event></event_list>
    </events>)");
    expectEmpty(*loader);
    EXPECT_THAT(host->log(), IsEmpty());
}

}  // namespace
}  // namespace yg
