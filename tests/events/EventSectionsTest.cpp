// SPDX-License-Identifier: MIT
//
// Templates and groups: what they define, include and override.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/xml/Document.h"

#include "events/EventFile.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::testing::commandOf;
using yg::testing::keysOf;
using yg::testing::loadEvents;

TEST(EventSections, TheLaterOfOwnAndIncludedEventWinsInAGroup) {
    const std::string base =
        R"(<event_template name="base"><e name="click" command="A"/></event_template>)";
    const auto ownFirst = loadEvents("<event_list>" + base +
                                     R"(<element_event name="quote">
        <event name="click" command="B"/><include src="base"/></element_event></event_list>)");
    EXPECT_EQ(commandOf(*ownFirst, "quote", "click"), "A");
    const auto includeFirst = loadEvents("<event_list>" + base +
                                         R"(<element_event name="quote">
        <include src="base"/><event name="click" command="B"/></element_event></event_list>)");
    EXPECT_EQ(commandOf(*includeFirst, "quote", "click"), "B");
}

TEST(EventSections, TheLaterOfTwoIncludesWins) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template name="one"><e name="click" command="1"/><e name="a"/></event_template>
        <event_template name="two"><e name="click" command="2"/><e name="b"/></event_template>
        <element_event name="g"><i src="one"/><i src="two"/></element_event>
        <element_event name="h"><i src="two"/><i src="one"/></element_event>
        <element_event name="i"><i src="one"/><i src="two"/><i src="one"/></element_event>
    </event_list>)");
    EXPECT_EQ(commandOf(*loader, "g", "click"), "2");
    EXPECT_EQ(commandOf(*loader, "h", "click"), "1");
    EXPECT_EQ(commandOf(*loader, "i", "click"), "1");
    EXPECT_THAT(keysOf(*loader->elementEventDatas().find("g")), ElementsAre("click", "a", "b"));
}

TEST(EventSections, ATemplateGainsNothingFromALaterOne) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template name="first"><i src="second"/><e name="a"/></event_template>
        <event_template name="second"><e name="b"/></event_template>
        <event_template name="third"><i src="second"/></event_template>
    </event_list>)");
    EXPECT_THAT(keysOf(*loader->eventTemplateDatas().find("first")), ElementsAre("a"));
    EXPECT_THAT(keysOf(*loader->eventTemplateDatas().find("third")), ElementsAre("b"));
}

TEST(EventSections, AGroupReachesALaterTemplate) {
    const auto loader = loadEvents(R"(<event_list>
        <element_event name="g"><i src="later"/></element_event>
        <event_template name="later"><e name="click" command="A"/></event_template>
    </event_list>)");
    EXPECT_EQ(commandOf(*loader, "g", "click"), "A");
}

TEST(EventSections, EachSpellingOfDispatchCountsInItsOwnSectionOnly) {
    const auto loader = loadEvents(R"(<event_list>
        <command_event><c name="right" dispatch="1"/><c name="wrong" disptch="1"/></command_event>
        <event_template name="t">
            <e name="right" disptch="2"/><e name="wrong" dispatch="2"/>
        </event_template>
        <element_event name="g">
            <event name="right" dispatch="3"/><event name="wrong" disptch="3"/>
        </element_event>
    </event_list>)");
    EXPECT_EQ(loader->commandByName("right")->dispatchParam(), "1");
    EXPECT_EQ(loader->commandByName("wrong")->dispatchParam(), std::nullopt);
    const EventMap& events = *loader->eventTemplateDatas().find("t");
    EXPECT_EQ((*events.find("right"))->dispatchParam(), "2");
    EXPECT_EQ((*events.find("wrong"))->dispatchParam(), std::nullopt);
    EXPECT_EQ(loader->eventByName("g", "right")->dispatchParam(), "3");
    EXPECT_EQ(loader->eventByName("g", "wrong")->dispatchParam(), std::nullopt);
}

TEST(EventSections, AGroupOfACommentAloneReplacesTheEarlierOne) {
    const auto loader = loadEvents(R"(<event_list>
        <element_event name="quote"><event name="click"/></element_event>
        <element_event name="quote"><!-- nothing --></element_event>
    </event_list>)");
    EXPECT_EQ(loader->eventByName("quote", "click"), nullptr);
    EXPECT_TRUE(loader->elementEventDatas().find("quote")->empty());
}

TEST(EventSections, AGroupWithoutChildrenLeavesTheEarlierOne) {
    const auto loader = loadEvents(R"(<event_list>
        <element_event name="quote"><event name="click"/></element_event>
        <element_event name="quote"/><element_event name="quote">
        </element_event>
    </event_list>)");
    EXPECT_NE(loader->eventByName("quote", "click"), nullptr);
}

TEST(EventSections, ATemplateWithoutEventsLeavesTheEarlierOne) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template name="base"><e name="click"/></event_template>
        <event_template name="base"><!-- nothing --></event_template>
        <event_template name="base"><e command="A"/><i src="none"/></event_template>
        <event_template name="base"/>
        <element_event name="g"><i src="base"/></element_event>
    </event_list>)");
    EXPECT_NE(loader->eventByName("g", "click"), nullptr);
}

TEST(EventSections, ALaterTemplateWithEventsReplacesTheEarlierOneWhole) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template name="base"><e name="click"/></event_template>
        <event_template name="user"><i src="base"/></event_template>
        <event_template name="base"><e name="select"/></event_template>
        <element_event name="g"><i src="base"/></element_event>
        <element_event name="h"><i src="user"/></element_event>
    </event_list>)");
    EXPECT_THAT(keysOf(*loader->elementEventDatas().find("g")), ElementsAre("select"));
    // Included as the template stood then.
    EXPECT_THAT(keysOf(*loader->elementEventDatas().find("h")), ElementsAre("click"));
    EXPECT_THAT(keysOf(loader->eventTemplateDatas()), ElementsAre("base", "user"));
}

TEST(EventSections, ALaterGroupReplacesTheEarlierOneWhole) {
    const auto loader = loadEvents(R"(<event_list>
        <element_event name="g"><event name="a"/><event name="b" command="1"/></element_event>
        <element_event name="g"><event name="b" command="2"/></element_event>
    </event_list>)");
    EXPECT_EQ(loader->eventByName("g", "a"), nullptr);
    EXPECT_EQ(commandOf(*loader, "g", "b"), "2");
}

TEST(EventSections, AnEntryWithNameAndSrcEndsWithTheIncludedEvent) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template name="base"><e name="click" command="included"/></event_template>
        <event_template name="t">
            <e name="click" command="own" src="base"/>
            <e name="select" command="own" src="base"/>
        </event_template>
        <element_event name="g"><i src="t"/></element_event>
    </event_list>)");
    EXPECT_EQ(commandOf(*loader, "g", "click"), "included");
    EXPECT_EQ(commandOf(*loader, "g", "select"), "own");
}

TEST(EventSections, ATemplateThatIncludesItsOwnNameTakesTheEarlierOfThatName) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template name="alone"><e name="a"/><i src="alone"/></event_template>
        <event_template name="base"><e name="a" command="1"/></event_template>
        <event_template name="base"><i src="base"/><e name="b"/></event_template>
    </event_list>)");
    EXPECT_THAT(keysOf(*loader->eventTemplateDatas().find("alone")), ElementsAre("a"));
    EXPECT_THAT(keysOf(*loader->eventTemplateDatas().find("base")), ElementsAre("a", "b"));
}

TEST(EventSections, AreDroppedWithoutAUsableName) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template><e name="a"/></event_template>
        <event_template name=""><e name="a"/></event_template>
        <element_event><event name="a"/></element_event>
        <element_event name=""><event name="a"/></element_event>
        <element_event name="g"><event name="a"/></element_event>
    </event_list>)");
    EXPECT_TRUE(loader->eventTemplateDatas().empty());
    EXPECT_THAT(keysOf(loader->elementEventDatas()), ElementsAre("g"));
}

TEST(EventSections, TemplateEntriesOfAnyNameDefineEvents) {
    const auto loader = loadEvents(R"(<event_list><event_template name="t">
        <event name="a" command="c" change_style="s" disptch="d" addtion_data="x"/>
        <事件 name="b" command="" change_style="" disptch="" addtion_data=""/>
        <event name=""/><event command="c"/>text<![CDATA[t]]>
    </event_template></event_list>)");
    const EventMap& events = *loader->eventTemplateDatas().find("t");
    EXPECT_THAT(keysOf(events), ElementsAre("a", "b"));
    const auto& full = *events.find("a");
    EXPECT_EQ(full->eventName(), "a");
    EXPECT_EQ(full->command(), "c");
    EXPECT_EQ(full->changeStyleName(), "s");
    EXPECT_EQ(full->dispatchParam(), "d");
    EXPECT_EQ(full->addtionData(), "x");
    const auto& empty = *events.find("b");
    EXPECT_EQ(empty->command(), "");
    EXPECT_EQ(empty->changeStyleName(), "");
    EXPECT_EQ(empty->dispatchParam(), "");
    EXPECT_EQ(empty->addtionData(), "");
}

TEST(EventSections, GroupEntriesNamedEventDefineEvents) {
    const auto loader = loadEvents(R"(<event_list><element_event name="g">
        <event name="a" command="c" change_style="s" dispatch="d" addtion_data="x"/>
        <event name="b"/><Event name="c"/><evnt name="d"/><event command="c"/>
    </element_event></event_list>)");
    EXPECT_THAT(keysOf(*loader->elementEventDatas().find("g")), ElementsAre("a", "b"));
    const auto full = loader->eventByName("g", "a");
    EXPECT_EQ(full->command(), "c");
    EXPECT_EQ(full->changeStyleName(), "s");
    EXPECT_EQ(full->dispatchParam(), "d");
    EXPECT_EQ(full->addtionData(), "x");
    EXPECT_EQ(loader->eventByName("g", "b")->command(), std::nullopt);
}

TEST(EventSections, AnEventOfAGroupIncludesNothing) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template name="t"><e name="a"/></event_template>
        <element_event name="g"><event name="b" src="t"/><event src="t"/></element_event>
    </event_list>)");
    EXPECT_THAT(keysOf(*loader->elementEventDatas().find("g")), ElementsAre("b"));
}

TEST(EventSections, AnIncludeOfAGroupDefinesNoEvent) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template name="t"><e name="a"/></event_template>
        <element_event name="g"><i name="b" command="c" src="t"/></element_event>
    </event_list>)");
    EXPECT_THAT(keysOf(*loader->elementEventDatas().find("g")), ElementsAre("a"));
}

TEST(EventSections, UnknownAndEmptySourcesAddNothing) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template name="t"><i src="none"/><i src=""/><e name="a" src="none"/></event_template>
        <element_event name="g"><i src="none"/><i src=""/><i/></element_event>
    </event_list>)");
    EXPECT_THAT(keysOf(*loader->eventTemplateDatas().find("t")), ElementsAre("a"));
    EXPECT_THAT(keysOf(*loader->elementEventDatas().find("g")), IsEmpty());
}

TEST(EventSections, NestedAnywhereElseAreIgnored) {
    const auto loader = loadEvents(R"(<event_list>
        <group><event_template name="t"><e name="a"/></event_template>
            <element_event name="g"><event name="a"/></element_event></group>
        <element_event name="h"><element_event name="i"><event name="a"/></element_event>
        </element_event>
    </event_list>)");
    EXPECT_TRUE(loader->eventTemplateDatas().empty());
    EXPECT_THAT(keysOf(loader->elementEventDatas()), ElementsAre("h"));
    EXPECT_TRUE(loader->elementEventDatas().find("h")->empty());
}

TEST(EventSections, TemplateAndGroupOfOneNameAreDifferentThings) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template name="x"><e name="a"/></event_template>
        <element_event name="x"><event name="b"/></element_event>
        <element_event name="y"><i src="x"/></element_event>
    </event_list>)");
    EXPECT_EQ(loader->eventByName("x", "a"), nullptr);
    EXPECT_THAT(keysOf(*loader->elementEventDatas().find("y")), ElementsAre("a"));
}

TEST(EventSections, IncludedEventsAreTheTemplatesOwnRecords) {
    std::string xml = "<event_list><event_template name='t'>";
    for (int i = 0; i < 20; ++i)
        xml += "<e name='e" + std::to_string(i) + "'/>";
    xml += R"(</event_template>
        <event_template name="u"><i src="t"/></event_template>
        <element_event name="g"><i src="t"/></element_event>
        <element_event name="h"><i src="u"/><event name="own"/></element_event>
    </event_list>)";
    const auto loader = loadEvents(xml);
    const EventMap& records = *loader->eventTemplateDatas().find("t");
    EXPECT_EQ(records.size(), 20u);
    for (const auto& [name, record] : records) {
        EXPECT_EQ(*loader->eventTemplateDatas().find("u")->find(name), record);
        EXPECT_EQ(loader->eventByName("g", name), record);
        EXPECT_EQ(loader->eventByName("h", name), record);
        // Template, template and two groups hold it.
        EXPECT_EQ(record.use_count(), 4);
    }
}

TEST(EventSections, GroupsKeepTheOrderInWhichEventsCame) {
    const auto loader = loadEvents(R"(<event_list>
        <event_template name="t"><e name="m"/><e name="b"/></event_template>
        <element_event name="g">
            <event name="z"/><i src="t"/><event name="a"/><event name="b"/>
        </element_event>
    </event_list>)");
    EXPECT_THAT(keysOf(*loader->elementEventDatas().find("g")), ElementsAre("z", "m", "b", "a"));
}

TEST(EventSections, CanBeReadOneByOne) {
    const auto document = xml::Document::parseText(R"(<event_list>
        <event_template name="t"><e name="a"/></event_template>
        <element_event name="g"><i src="t"/></element_event>
        <element_event name="h"><i src="t"/></element_event>
    </event_list>)")
                              .document;
    const xml::Element root = document.root();
    const auto loader = YGEventLoader::initWithEventConfigPath(std::nullopt);

    loader->loadSingleElementEvent(xml::Element(root.childAt(1)));
    EXPECT_TRUE(loader->elementEventDatas().find("g")->empty());
    loader->loadSingleEventTemplate(xml::Element(root.childAt(0)));
    EXPECT_THAT(keysOf(loader->eventTemplateDatas()), ElementsAre("t"));
    loader->loadSingleElementEvent(xml::Element(root.childAt(1)));
    EXPECT_NE(loader->eventByName("g", "a"), nullptr);
    EXPECT_EQ(loader->elementEventDatas().size(), 1u);

    loader->loadElementEvent(root);
    EXPECT_NE(loader->eventByName("h", "a"), nullptr);
}

TEST(EventSections, AbsentElementsReadNothing) {
    const auto loader = YGEventLoader::initWithEventConfigPath(std::nullopt);
    loader->loadEventTemplate({});
    loader->loadSingleEventTemplate({});
    loader->loadElementEvent({});
    loader->loadSingleElementEvent({});
    EXPECT_TRUE(loader->eventTemplateDatas().empty());
    EXPECT_TRUE(loader->elementEventDatas().empty());
}

TEST(EventSections, AreFoundFromAnyElementOfTheDocumentThatHasChildren) {
    const auto document = xml::Document::parseText(R"(<event_list>
        <event_template name="t"><e name="a"/></event_template><leaf/>
        <element_event name="g"><event name="a"/></element_event>
    </event_list>)")
                              .document;
    const auto loader = YGEventLoader::initWithEventConfigPath(std::nullopt);
    loader->loadEventTemplate(xml::Element(document.root().childAt(1)));
    loader->loadElementEvent(xml::Element(document.root().childAt(1)));
    EXPECT_TRUE(loader->eventTemplateDatas().empty());
    EXPECT_TRUE(loader->elementEventDatas().empty());
    loader->loadEventTemplate(xml::Element(document.root().childAt(0)));
    loader->loadElementEvent(xml::Element(document.root().childAt(0)));
    EXPECT_EQ(loader->eventTemplateDatas().size(), 1u);
    EXPECT_EQ(loader->elementEventDatas().size(), 1u);
}

}  // namespace
}  // namespace yg
