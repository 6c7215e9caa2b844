// SPDX-License-Identifier: MIT
//
// What is reported about an event configuration.
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/events/YGEventLoader.h"

#include "diagnostics/RecordingSink.h"
#include "events/EventFile.h"
#include "host/RecordingHost.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::testing::commandOf;
using yg::testing::keysOf;
using yg::testing::loadEvents;
using yg::testing::RecordingSink;
using yg::testing::ScopedHost;

std::vector<std::string> findings(std::string_view xml) {
    RecordingSink sink;
    loadEvents(xml, &sink);
    EXPECT_THAT(sink.unaccounted(), IsEmpty());
    return sink.lines();
}

/// The findings of an event list with this content; its first line is line 1.
std::vector<std::string> findingsIn(std::string_view content) {
    return findings("<event_list>" + std::string(content) + "</event_list>");
}

TEST(EventDiagnostics, AFileInOrderHasNoFindings) {
    EXPECT_THAT(findings(R"(<?xml version="1.0"?><!-- comment -->
<event_list>
    <command_event><!-- comment --><c name="open" change_style="page" dispatch="" addtion_data=""/>
    </command_event>
    <event_template name="base"><e name="click" command="open" disptch="d"/></event_template>
    <event_template name="more"><i src="base"/><e name="select"/></event_template>
    <element_event name="g"><i src="more"/><event name="key" dispatch="d"/></element_event>
    <element_event name="h"><!-- no events --></element_event>
</event_list>)"),
                IsEmpty());
}

TEST(EventDiagnostics, NameTheFileReadAndTheReasonWhenItCannotBe) {
    const ScopedHost host;
    const yg::files::TemporaryFolder root;
    RecordingSink sink;
    const std::string path = root.at("none.xml");
    YGEventLoader::initWithEventConfigPath(path, &sink);
    EXPECT_THAT(sink.files, ElementsAre(path));
    EXPECT_THAT(sink.lines(), ElementsAre("unreadable-file =No such file or directory"));
}

TEST(EventDiagnostics, ARootOfAnotherName) {
    EXPECT_THAT(findings("<events><command_event><c name='a'/></command_event></events>"),
                ElementsAre("1: event-root-name =events"));
}

TEST(EventDiagnostics, StrangersBelowTheRoot) {
    EXPECT_THAT(findingsIn(R"(text
<comand_event><c name="a"/></comand_event>
<group><command_event><c name="a"/></command_event></group>)"),
                ElementsAre("1: stray-text =text\n", "2: unknown-element =comand_event",
                            "3: unknown-element =group"));
}

TEST(EventDiagnostics, UnknownAttributes) {
    EXPECT_THAT(findings(R"(<event_list version="2">
<command_event name="c"><c name="a" key="F1" src="t"/></command_event>
<event_template name="t" src="u"><e name="a" key="F1"/></event_template>
<element_event name="g" src="t"><event name="a" key="F1"/><i src="t" key="F1"/></element_event>
</event_list>)"),
                ElementsAre("1: unknown-attribute version=2", "2: unknown-attribute name=c",
                            "2: unknown-attribute key=F1", "2: unknown-attribute src=t",
                            "3: unknown-attribute src=u", "3: unknown-attribute key=F1",
                            "4: unknown-attribute src=t", "4: unknown-attribute key=F1",
                            "4: event-lost-to-template =a", "4: unknown-attribute key=F1"));
}

TEST(EventDiagnostics, StrayTextAndContentOfEntries) {
    EXPECT_THAT(findingsIn(R"(
<command_event>one<c name="a"><d name="b"/>two<!-- no --></c></command_event>
<event_template name="t">three<e name="a"><d/>four</e></event_template>
<element_event name="g">five<event name="b"><d/></event><i src="t">six</i></element_event>)"),
                ElementsAre("2: stray-text =one", "2: unread-content =d", "2: stray-text =two",
                            "3: stray-text =three", "3: unread-content =d", "3: stray-text =four",
                            "4: stray-text =five", "4: unread-content =d", "4: stray-text =six"));
}

TEST(EventDiagnostics, EmptySections) {
    EXPECT_THAT(
        findingsIn(R"(
<command_event/>
<event_template name="t"> </event_template>
<element_event name="g"/>)"),
        ElementsAre("2: empty-event-section", "3: empty-event-section", "4: empty-event-section"));
}

TEST(EventDiagnostics, SectionsWithoutAUsableName) {
    EXPECT_THAT(findingsIn(R"(
<event_template><e name="a"/></event_template>
<event_template name=""><e name="a"/></event_template>
<element_event><event name="a"/></element_event>
<element_event name=""><event name="a"/></element_event>)"),
                ElementsAre("2: event-section-without-name", "3: event-section-without-name",
                            "4: event-section-without-name", "5: event-section-without-name"));
}

TEST(EventDiagnostics, SectionsInsideSections) {
    EXPECT_THAT(findingsIn(R"(
<command_event><command_event name="a"/></command_event>
<event_template name="t"><element_event name="a"/></event_template>
<element_event name="g"><event_template src="t"/></element_event>)"),
                ElementsAre("2: nested-event-section =command_event",
                            "3: nested-event-section =element_event",
                            "4: nested-event-section =event_template"));
}

TEST(EventDiagnostics, RepeatedNames) {
    EXPECT_THAT(findingsIn(R"(
<command_event><c name="a"/></command_event><command_event><c name="a"/></command_event>
<event_template name="t"><e name="a"/></event_template>
<event_template name="t"><e name="b"/></event_template>
<event_template name="t"><!-- no events --></event_template>
<element_event name="g"><event name="a"/></element_event>
<element_event name="g"><event name="a"/><event name="a"/></element_event>)"),
                ElementsAre("2: duplicate-command name=a", "4: duplicate-event-template name=t",
                            "5: template-without-events =t", "7: duplicate-event name=a",
                            "7: duplicate-event-group name=g"));
}

TEST(EventDiagnostics, EntriesWithoutAUsableName) {
    EXPECT_THAT(findingsIn(R"(
<command_event><c dispatch="d"/><c name=""/></command_event>
<event_template name="t"><e name="a"/><e command="c"/><e name=""/></event_template>
<element_event name="g"><event command="c"/><event name=""/></element_event>)"),
                ElementsAre("2: command-without-name", "2: unreachable-command name=",
                            "3: event-entry-without-effect", "3: event-entry-without-effect",
                            "4: event-without-name", "4: unreachable-event name="));
}

TEST(EventDiagnostics, OverriddenEvents) {
    EXPECT_THAT(findingsIn(R"(
<event_template name="one"><e name="a"/></event_template>
<event_template name="two"><e name="a"/></event_template>
<event_template name="both"><i src="one"/><i src="two"/></event_template>
<element_event name="g"><i src="one"/><event name="a"/></element_event>
<element_event name="h"><event name="a"/>
<i src="one"/></element_event>
<element_event name="i"><i src="one"/><event name="a"/>
<event name="a"/></element_event>)"),
                ElementsAre("4: overridden-template-event =a",
                            "5: overridden-template-event name=a", "7: event-lost-to-template =a",
                            "8: overridden-template-event name=a", "9: duplicate-event name=a"));
}

TEST(EventDiagnostics, WhatAnIncludeReplacedIsNoLongerTheSectionsOwn) {
    EXPECT_THAT(findingsIn(R"(
<event_template name="one"><e name="a"/></event_template>
<event_template name="two"><e name="a"/></event_template>
<element_event name="g"><event name="a"/>
<i src="one"/>
<i src="two"/>
<event name="a"/></element_event>)"),
                ElementsAre("5: event-lost-to-template =a", "6: overridden-template-event =a",
                            "7: overridden-template-event name=a"));
}

TEST(EventDiagnostics, TheSameRecordTwiceIsARepeatedIncludeAndNotAnOverride) {
    EXPECT_THAT(findingsIn(R"(
<event_template name="one"><e name="a"/></event_template>
<event_template name="two"><i src="one"/></event_template>
<element_event name="g"><i src="one"/><i src="two"/><i src="one"/></element_event>)"),
                ElementsAre("4: repeated-include src=two", "4: repeated-include src=one"));
}

TEST(EventDiagnostics, TheWrongSpellingOfDispatch) {
    EXPECT_THAT(findingsIn(R"(
<command_event><c name="a" disptch="d"/></command_event>
<event_template name="t"><e name="a" dispatch="d"/></event_template>
<element_event name="g"><event name="b" disptch="d"/></element_event>)"),
                ElementsAre("2: dispatch-spelling disptch=d", "3: dispatch-spelling dispatch=d",
                            "4: dispatch-spelling disptch=d"));
}

TEST(EventDiagnostics, AttributesOfAnEventWhereThereIsNone) {
    EXPECT_THAT(
        findingsIn(R"(
<event_template name="t"><e name="a"/></event_template>
<event_template name="u"><i name="" command="c" disptch="d" dispatch="d" src="t"/></event_template>
<element_event name="g"><i name="b" dispatch="d" src="t"/></element_event>)"),
        ElementsAre("3: attribute-without-event name=", "3: attribute-without-event command=c",
                    "3: attribute-without-event disptch=d", "3: attribute-without-event dispatch=d",
                    "4: attribute-without-event name=b", "4: attribute-without-event dispatch=d"));
}

TEST(EventDiagnostics, SourcesThatIncludeNothing) {
    EXPECT_THAT(
        findingsIn(R"(
<event_template name="t"><e name="a"/><e name="b" src=""/></event_template>
<element_event name="g"><event name="a" src="t"/><i/><evnt name="b"/><i src=""/></element_event>)"),
        ElementsAre("2: empty-src src=", "3: src-on-event src=t", "3: include-without-src =i",
                    "3: include-without-src =evnt", "3: include-without-src =i"));
}

TEST(EventDiagnostics, LaterAndUnknownTemplates) {
    EXPECT_THAT(
        findingsIn(R"(
<event_template name="one"><e name="a"/><i src="two"/><i src="none"/></event_template>
<event_template name="two"><e name="b" src="two"/></event_template>
<event_template name="empty"><!-- no events --></event_template>
<event_template name="three"><e name="c"/><i src="empty"/><i src="two"/></event_template>
<element_event name="g"><i src="none"/><i src="three"/></element_event>)"),
        ElementsAre("2: unknown-event-template src=two", "2: unknown-event-template src=none",
                    "3: unknown-event-template src=two", "4: template-without-events =empty",
                    "5: unknown-event-template src=empty", "6: unknown-event-template src=none"));
}

TEST(EventDiagnostics, ASinkChangesNeitherRecordsNorLog) {
    constexpr std::string_view xml = R"(<event_list x="y">text
        <command_event><c name="a"/><c name="a" disptch="d"/><c/></command_event>
        <event_template name="t"><e name="a"/><i src="u"/><i src="t"/></event_template>
        <event_template name="u"><i src="t"/><e name="a" command="2"/></event_template>
        <element_event name="g"><event name="a"/><i src="u"/><i/></element_event>
        <element_event name="g"/><nothing/>
    </event_list>)";
    const ScopedHost host;
    RecordingSink sink;
    const auto with = loadEvents(xml, &sink);
    const auto without = loadEvents(xml);
    EXPECT_FALSE(sink.found.empty());
    EXPECT_THAT(host->log(), IsEmpty());
    EXPECT_EQ(keysOf(with->commandDatas()), keysOf(without->commandDatas()));
    EXPECT_EQ(keysOf(with->eventTemplateDatas()), keysOf(without->eventTemplateDatas()));
    EXPECT_EQ(keysOf(with->elementEventDatas()), keysOf(without->elementEventDatas()));
    EXPECT_EQ(commandOf(*with, "g", "a"), "2");
    EXPECT_EQ(commandOf(*without, "g", "a"), "2");
}

TEST(EventDiagnostics, ASinkIsUsedByLaterStepsToo) {
    RecordingSink sink;
    const auto loader = loadEvents("<event_list><command_event/></event_list>", &sink);
    loader->loadCommandEvent(xml::Element::create("command_event"));
    EXPECT_THAT(sink.rules(), ElementsAre("empty-event-section", "empty-event-section"));
}

}  // namespace
}  // namespace yg
