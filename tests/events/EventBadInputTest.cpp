// SPDX-License-Identifier: MIT
//
// Event files that are broken, huge or made to do harm.
#include <cstddef>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/events/YGEventLoader.h"

#include "LargeInput.h"
#include "diagnostics/RecordingSink.h"
#include "events/EventFile.h"
#include "files/TemporaryFolder.h"
#include "host/RecordingHost.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using yg::files::TemporaryFolder;
using yg::testing::keysOf;
using yg::testing::largeInput;
using yg::testing::loadEvents;
using yg::testing::RecordingSink;
using yg::testing::ScopedHost;

constexpr std::string_view whole = R"(<event_list>
    <command_event><c name="open" change_style="page"/></command_event>
    <event_template name="t"><e name="click" command="open"/></event_template>
    <element_event name="g"><i src="t"/></element_event>
</event_list>
)";

void expectFailure(std::string_view bytes) {
    const ScopedHost host;
    const auto loader = loadEvents(bytes);
    EXPECT_THAT(host->runtimeLog(), ElementsAre(StartsWith("load palette config fail:")));
    EXPECT_TRUE(loader->commandDatas().empty());
    EXPECT_TRUE(loader->eventTemplateDatas().empty());
    EXPECT_TRUE(loader->elementEventDatas().empty());
    EXPECT_EQ(loader->commandByName("open"), nullptr);
    EXPECT_EQ(loader->eventByName("g", "click"), nullptr);
}

TEST(EventBadInput, EmptyFilesAreLoggedAndEmpty) {
    expectFailure("");
    expectFailure("\n");
}

TEST(EventBadInput, FilesThatAreNotXmlAreLoggedAndEmpty) {
    expectFailure("event_list");
    expectFailure("{\"event_list\": []}");
    expectFailure(
        "<event_list><command_event><c name='open' name='x'/></command_event></event_list>");
    expectFailure("<event_list><command_event><c name='a&b'/></command_event></event_list>");
    expectFailure("<event_list/><event_list/>");
    expectFailure("<!-- only this -->");
    expectFailure(std::string_view("<event_list>\0</event_list>", 26));
    expectFailure("<event_list><command_event><c name='\xC3\x28'/></command_event></event_list>");
}

TEST(EventBadInput, AFileCutAnywhereIsLoggedAndEmpty) {
    const std::size_t end = whole.find("</event_list>") + std::string_view("</event_list>").size();
    for (std::size_t size = 0; size < end; size += 7)
        expectFailure(whole.substr(0, size));
    expectFailure(whole.substr(0, end - 1));
    EXPECT_NE(loadEvents(whole.substr(0, end))->eventByName("g", "click"), nullptr);
}

TEST(EventBadInput, AFolderIsLoggedAndEmpty) {
    const ScopedHost host;
    const TemporaryFolder root;
    const auto loader = YGEventLoader::initWithEventConfigPath(root.path());
    EXPECT_THAT(host->runtimeLog(),
                ElementsAre(StartsWith("load palette config fail:" + root.path() + ": ")));
    EXPECT_TRUE(loader->commandDatas().empty());
}

TEST(EventBadInput, APathWithStrangeBytesIsLoggedOnOneLine) {
    const ScopedHost host;
    YGEventLoader::initWithEventConfigPath("no\nsuch\nfile");
    YGEventLoader::initWithEventConfigPath(std::string_view("no\0file", 7));
    EXPECT_THAT(host->runtimeLog(),
                ElementsAre(StartsWith("load palette config fail:no?such?file: "),
                            StartsWith("load palette config fail:no?file: ")));
}

TEST(EventBadInput, AHugeFileIsRead) {
    std::string xml = "<event_list>";
    std::size_t sections = 0;
    for (; xml.size() < largeInput; ++sections) {
        const std::string number = std::to_string(sections);
        xml += "<command_event><c name='c" + number +
               "' change_style='page'/></command_event>\n<event_template name='t" + number +
               "'><e name='click' command='c" + number +
               "' disptch='symbol'/></event_template>\n<element_event name='g" + number +
               "'><include src='t" + number + "'/><event name='own'/></element_event>\n";
    }
    const auto loader = loadEvents(xml + "</event_list>");
    EXPECT_EQ(loader->commandDatas().size(), sections);
    EXPECT_EQ(loader->eventTemplateDatas().size(), sections);
    EXPECT_EQ(loader->elementEventDatas().size(), sections);
    const std::string last = std::to_string(sections - 1);
    EXPECT_EQ(loader->eventByName("g" + last, "click")->command(), "c" + last);
}

TEST(EventBadInput, AHugeFileThatIsCutIsLoggedAndEmpty) {
    std::string xml = "<event_list><command_event>";
    while (xml.size() < largeInput)
        xml += "<c name='open' change_style='page' dispatch='symbol'/>\n";
    expectFailure(xml);
}

TEST(EventBadInput, AHugeFlatSectionIsRead) {
    std::string xml = "<event_list><element_event name='g'>";
    std::size_t events = 0;
    for (; xml.size() < largeInput / 5; ++events)
        xml += "<event name='e" + std::to_string(events) + "'/>";
    const auto loader = loadEvents(xml + "</element_event></event_list>");
    EXPECT_EQ(loader->elementEventDatas().find("g")->size(), events);
}

TEST(EventBadInput, DeepNestingIsRefusedOrIgnored) {
    std::string deep = "<event_list>";
    for (int i = 0; i < 100'000; ++i)
        deep += "<command_event>";
    expectFailure(deep);

    std::string nested = "<event_list><command_event><c name='a'>";
    for (int i = 0; i < 200; ++i)
        nested += "<d>";
    for (int i = 0; i < 200; ++i)
        nested += "</d>";
    EXPECT_NE(loadEvents(nested + "</c></command_event></event_list>")->commandByName("a"),
              nullptr);
}

TEST(EventBadInput, InternalSubsetsAreRefused) {
    for (const std::string_view subset :
         {"", "<!ENTITY n 'open'>", "<!ATTLIST a b (x|x) #IMPLIED>"})
        expectFailure("<!DOCTYPE event_list [" + std::string(subset) +
                      "]><event_list><command_event><c name='open'/></command_event></event_list>");
    EXPECT_NE(loadEvents("<!DOCTYPE event_list SYSTEM 'events.dtd'><event_list><command_event>"
                         "<c name='open'/></command_event></event_list>")
                  ->commandByName("open"),
              nullptr);
}

TEST(EventBadInput, TheFamilyOfChineseEncodingsIsRead) {
    const auto loader = loadEvents(
        "<?xml version=\"1.0\" encoding=\"gb2312\"?><event_list><command_event>"
        "<c name=\"\xD0\xD0\xC7\xE9\"/></command_event></event_list>");
    EXPECT_NE(loader->commandByName("行情"), nullptr);
}

// ---- What templates add
// --------------------------------------------------------------------------

constexpr std::size_t mostEvents = 1'000'000;
constexpr std::size_t mostBytes = std::size_t{64} * 1024 * 1024;
constexpr const char* limitLog =
    "load palette config fail:includes add more than 1000000 events or 67108864 bytes";

/// A template "t" and a number of groups, "0", "1" …, that include it.
std::string includedByGroups(std::string_view events, std::size_t groups) {
    std::string xml = "<event_list><event_template name='t'>";
    xml.append(events).append("</event_template>\n");
    for (std::size_t i = 0; i < groups; ++i)
        xml += "<element_event name='" + std::to_string(i) + "'><i src='t'/></element_event>\n";
    return xml + "</event_list>";
}

/// How many events the groups hold, and the bytes of their names and texts, in all places where
/// they stand.
std::size_t eventsOf(const YGEventLoader& loader) {
    std::size_t count = 0;
    for (const auto& [group, events] : loader.elementEventDatas())
        count += events.size();
    return count;
}

std::size_t bytesOf(const YGEventLoader& loader) {
    std::size_t bytes = 0;
    for (const auto& [group, events] : loader.elementEventDatas()) {
        for (const auto& [name, event] : events)
            bytes += 2 * name.size() + event->addtionData().value_or("").size();
    }
    return bytes;
}

TEST(EventBadInput, IncludesEndAtTheEventsThatAFileMayAdd) {
    std::string events;
    for (int i = 0; i < 1'000; ++i)
        events += "<e name='" + std::to_string(i) + "'/>";
    const ScopedHost<> host;
    RecordingSink sink;
    const auto loader = loadEvents(includedByGroups(events, 1'500), &sink);
    EXPECT_EQ(eventsOf(*loader), mostEvents);
    EXPECT_EQ(loader->elementEventDatas().size(), 1'500U);
    ASSERT_EQ(sink.found.size(), 500U);
    EXPECT_EQ(sink.lines().front(), "1002: include-limit src=t");
    EXPECT_THAT(sink.unaccounted(), IsEmpty());
    EXPECT_THAT(host->runtimeLog(), ElementsAre(limitLog));
}

// A group holds the template's own records, but whoever writes the groups writes them each time.
TEST(EventBadInput, IncludesEndAtTheBytesThatAFileMayAdd) {
    const std::string name(1'000, 'n');
    const ScopedHost<> host;
    const auto loader = loadEvents(includedByGroups(
        "<e name='" + name + "' addtion_data='" + std::string(500'000, 'd') + "'/>", 1'000));
    EXPECT_EQ(eventsOf(*loader), mostBytes / 502'000);
    EXPECT_EQ(bytesOf(*loader), mostBytes / 502'000 * 502'000);
    EXPECT_THAT(host->runtimeLog(), ElementsAre(limitLog));
}

TEST(EventBadInput, AnIncludeThatDoesNotFitIsNotBegunAndSmallerOnesStillCount) {
    std::string xml = "<event_list><event_template name='large'>";
    for (std::size_t i = 0; i < mostEvents * 3 / 5; ++i)
        xml += "<e name='" + std::to_string(i) + "'/>";
    const auto loader = loadEvents(
        xml +
        "</event_template><event_template name='small'><e name='s'/></event_template>"
        "<element_event name='a'><i src='large'/></element_event>"
        "<element_event name='b'><i src='large'/><i src='small'/></element_event></event_list>");
    EXPECT_EQ(loader->elementEventDatas().find("a")->size(), mostEvents * 3 / 5);
    EXPECT_EQ(loader->elementEventDatas().find("b")->size(), 1U);
}

}  // namespace
}  // namespace yg
