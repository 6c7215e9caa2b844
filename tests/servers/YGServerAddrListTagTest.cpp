// SPDX-License-Identifier: MIT
//
// The server records and the parse of one group.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/servers/YGServerAddrListTag.h"
#include "YGConfigManager/servers/YGServerAddrTag.h"

#include "servers/ScriptedRandomSource.h"
#include "servers/ServerText.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::testing::groupOf;
using yg::testing::ScriptedRandomSource;
using yg::testing::serversOf;
using yg::testing::serversOfEntries;

template <class Record>
std::vector<std::string> fieldNames() {
    std::vector<std::string> names;
    forEachField(Record(), [&](std::string_view name, const auto&) { names.emplace_back(name); });
    return names;
}

TEST(ServerAddr, TakesItsFourValuesUnchanged) {
    const auto server = YGServerAddrTag::initWithServerAddrInfo(" a ", "10.0.0.1",
                                                                UINT64_C(18446744073709551615), -7);
    EXPECT_EQ(server->serverName(), " a ");
    EXPECT_EQ(server->ipAddr(), "10.0.0.1");
    EXPECT_EQ(server->serverPort(), UINT64_MAX);
    EXPECT_EQ(server->serverKey(), -7);
}

TEST(ServerAddr, AbsentIsNotEmpty) {
    const auto server = YGServerAddrTag::initWithServerAddrInfo(std::nullopt, "", 0, 0);
    EXPECT_EQ(server->serverName(), std::nullopt);
    EXPECT_EQ(server->ipAddr(), "");
}

TEST(ServerAddr, EveryFieldCanBeSet) {
    YGServerAddrTag server;
    server.setServerName("a");
    server.setIpAddr("h");
    server.setServerPort(80);
    server.setServerKey(1);
    EXPECT_EQ(yg::testing::textOf(server), "1 a h:80");
}

TEST(ServerAddr, NamesItsFieldsExactly) {
    EXPECT_THAT(fieldNames<YGServerAddrTag>(),
                ElementsAre("serverName", "ipAddr", "serverPort", "serverKey"));
    EXPECT_THAT(fieldNames<YGServerAddrListTag>(),
                ElementsAre("serverDescription", "glooxDomain", "serverAddrList", "serverType"));
}

TEST(ServerGroup, EveryFieldCanBeSet) {
    YGServerAddrListTag group;
    EXPECT_EQ(group.serverAddrList(), nullptr);
    group.setServerDescription("text");
    group.setGlooxDomain("domain");
    group.setServerType(9);
    group.setServerAddrList(std::make_shared<ServerAddrList>());
    EXPECT_EQ(group.serverDescription(), "text");
    EXPECT_EQ(group.glooxDomain(), "domain");
    EXPECT_EQ(group.serverType(), 9u);
    EXPECT_THAT(serversOf(group), IsEmpty());
}

TEST(ServerGroup, ThatTheDocumentDoesNotHaveIsAbsentThroughout) {
    const auto group =
        groupOf(R"(<application><server type="2" name="n" domain="d"/></application>)", 1);
    EXPECT_EQ(group->serverType(), 1u);
    EXPECT_EQ(group->serverDescription(), std::nullopt);
    EXPECT_EQ(group->glooxDomain(), std::nullopt);
    EXPECT_EQ(group->serverAddrList(), nullptr);
}

TEST(ServerGroup, WithoutARootElementIsAbsentThroughout) {
    const auto group = YGServerAddrListTag::initWithServerType(1, {});
    EXPECT_EQ(group->serverType(), 1u);
    EXPECT_EQ(group->serverAddrList(), nullptr);
}

TEST(ServerGroup, WithoutChildrenHasAnEmptyList) {
    EXPECT_THAT(serversOf(*groupOf("<application><server type='1'/></application>", 1)), IsEmpty());
    EXPECT_THAT(serversOfEntries(" "), IsEmpty());
    EXPECT_THAT(serversOfEntries("<!-- none -->"), IsEmpty());
}

TEST(ServerGroup, ReadsDescriptionAndDomain) {
    const auto group = groupOf(
        R"(<application><server type="5" name="消息" domain=""><a/></server></application>)", 5);
    EXPECT_EQ(group->serverDescription(), "消息");
    EXPECT_EQ(group->glooxDomain(), "");
    EXPECT_THAT(serversOf(*group), IsEmpty());
}

TEST(ServerGroup, GivesAServerForEachNameOfAnEntry) {
    EXPECT_THAT(serversOfEntries("<e key='1' name='a;b' addrs='10.0.0.1:80'/>"),
                ElementsAre("1 a 10.0.0.1:80", "1 b 10.0.0.1:80"));
}

TEST(ServerGroup, ChoosesOneOfTwoWeightedAddressesWithEqualChance) {
    constexpr const char* entry = "<e key='1' name='a' addrs='30:10.0.0.1:80;70:10.0.0.2:81'/>";
    ScriptedRandomSource random({0, 1, 2, 3, 4294967295u});
    EXPECT_THAT(serversOfEntries(entry, random), ElementsAre("1 a 10.0.0.1:80"));
    EXPECT_THAT(serversOfEntries(entry, random), ElementsAre("1 a 10.0.0.2:81"));
    EXPECT_THAT(serversOfEntries(entry, random), ElementsAre("1 a 10.0.0.1:80"));
    EXPECT_THAT(serversOfEntries(entry, random), ElementsAre("1 a 10.0.0.2:81"));
    EXPECT_THAT(serversOfEntries(entry, random), ElementsAre("1 a 10.0.0.2:81"));
}

TEST(ServerGroup, DrawsForEachName) {
    ScriptedRandomSource random({2, 0, 4, 5});
    EXPECT_THAT(serversOfEntries("<e key='1' name='a;b' addrs='h:0;h:1;h:2'/>"
                                 "<e key='2' name='c' addrs='h:9'/>"
                                 "<e key='3' name='d;e' addrs='h:0;h:1;h:2'/>",
                                 random),
                ElementsAre("1 a h:2", "1 b h:0", "2 c h:9", "3 d h:1", "3 e h:2"));
    EXPECT_TRUE(random.uniformNumbers.empty());
}

TEST(ServerGroup, HasNoServerOfAnEntryWithoutUsableAddress) {
    EXPECT_THAT(serversOfEntries("<e key='1' name='a;b' addrs=''/><e key='1' name='a' addrs=';'/>"
                                 "<e key='1' name='a' addrs='host;;other'/>"),
                IsEmpty());
}

TEST(ServerGroup, SkipsAnEntryThatLacksAnAttribute) {
    EXPECT_THAT(serversOfEntries("<e name='a' addrs='10.0.0.1:80'/>"), IsEmpty());
    EXPECT_THAT(serversOfEntries("<e key='1' addrs='10.0.0.1:80'/>"), IsEmpty());
    EXPECT_THAT(serversOfEntries("<e key='1' name='a'/>"), IsEmpty());
    EXPECT_THAT(serversOfEntries("<e key='' name='' addrs='10.0.0.1:80'/>"),
                ElementsAre("0  10.0.0.1:80"));
}

TEST(ServerGroup, ReadsKeysAndPortsAsLeadingNumbers) {
    EXPECT_THAT(serversOfEntries("<e key='12abc' name='a' addrs='h:x'/>"), ElementsAre("12 a h:0"));
    EXPECT_THAT(serversOfEntries("<e key=' +7' name='a' addrs='h: 80 '/>"),
                ElementsAre("7 a h:80"));
    EXPECT_THAT(serversOfEntries("<e key='-3.9' name='a' addrs='h:0x50'/>"),
                ElementsAre("-3 a h:0"));
    EXPECT_THAT(serversOfEntries("<e key='99999999999' name='a' addrs='h:99999999999'/>"),
                ElementsAre("2147483647 a h:2147483647"));
    EXPECT_THAT(serversOfEntries("<e key='- 1' name='a' addrs='h:'/>"), ElementsAre("0 a h:0"));
}

TEST(ServerGroup, KeepsANegativePortAsItsTwosComplement) {
    const auto group = groupOf(
        "<application><server type='1'><e key='1' name='a' addrs='h:-1'/>"
        "<e key='1' name='a' addrs='h:-99999999999'/></server></application>",
        1);
    EXPECT_EQ(group->serverAddrList()->at(0)->serverPort(), UINT64_C(0xFFFFFFFFFFFFFFFF));
    EXPECT_EQ(group->serverAddrList()->at(1)->serverPort(), UINT64_C(0xFFFFFFFF80000000));
}

TEST(ServerGroup, KeepsEmptyNames) {
    EXPECT_THAT(serversOfEntries("<e key='1' name='a;;b;' addrs='h:1'/>"),
                ElementsAre("1 a h:1", "1  h:1", "1 b h:1", "1  h:1"));
    EXPECT_THAT(serversOfEntries("<e key='1' name='' addrs='h:1'/>"), ElementsAre("1  h:1"));
}

TEST(ServerGroup, LeavesNamesAndHostsAsTheyStand) {
    EXPECT_THAT(serversOfEntries("<e key='1' name=' a ; b' addrs='999.no such host :80'/>"),
                ElementsAre("1  a  999.no such host :80", "1  b 999.no such host :80"));
}

TEST(ServerGroup, CutsAddressesAtEveryColon) {
    EXPECT_THAT(serversOfEntries("<e key='1' name='a' addrs=':'/>"), ElementsAre("1 a :0"));
    EXPECT_THAT(serversOfEntries("<e key='1' name='a' addrs='1:2:3:4'/>"), ElementsAre("1 a 2:3"));
    EXPECT_THAT(serversOfEntries("<e key='1' name='a' addrs='[::1]:80'/>"), ElementsAre("1 a :1"));
    EXPECT_THAT(serversOfEntries("<e key='1' name='a' addrs='fe80::1:80'/>"),
                ElementsAre("1 a :1"));
}

TEST(ServerGroup, ReadsEntriesOfAnyNameInTheirOrder) {
    EXPECT_THAT(serversOfEntries("<addr key='1' name='a' addrs='h:1'/>text<!-- c --><?p i?>"
                                 "<server type='2' key='2' name='b' addrs='h:2'/>"
                                 "<条目 key='3' name='c' addrs='h:3'/>"),
                ElementsAre("1 a h:1", "2 b h:2", "3 c h:3"));
}

TEST(ServerGroup, DoesNotReadEntriesInsideEntries) {
    EXPECT_THAT(serversOfEntries("<g><e key='1' name='a' addrs='h:1'/></g>"), IsEmpty());
}

TEST(ServerGroup, IsTheFirstOfItsType) {
    const auto group = groupOf(R"(<application>
        <server type="2" name="other"/>
        <server type="1" name="first"/>
        <server type="1" name="second"><e key="1" name="a" addrs="h:1"/></server>
    </application>)",
                               1);
    EXPECT_EQ(group->serverDescription(), "first");
    EXPECT_THAT(serversOf(*group), IsEmpty());
}

TEST(ServerGroup, StandsBelowTheApplicationOnly) {
    constexpr const char* server = "<server type='1'><e key='1' name='a' addrs='h:1'/></server>";
    EXPECT_THAT(serversOf(*groupOf("<app>" + std::string(server) + "</app>", 1)),
                ElementsAre("null"));
    EXPECT_THAT(
        serversOf(*groupOf("<application><g>" + std::string(server) + "</g></application>", 1)),
        ElementsAre("null"));
    EXPECT_THAT(serversOf(*groupOf(server, 1)), ElementsAre("null"));
}

TEST(ServerGroup, ComparesItsTypeAsANumber) {
    const auto nameOf = [](std::string_view type, std::uint64_t wanted) {
        const auto group = groupOf(
            "<application><server name='n' type='" + std::string(type) + "'/></application>",
            wanted);
        return group->serverDescription().has_value();
    };
    EXPECT_TRUE(nameOf("1", 1));
    EXPECT_TRUE(nameOf("01", 1));
    EXPECT_TRUE(nameOf(" 1 ", 1));
    EXPECT_TRUE(nameOf("1.0", 1));
    EXPECT_FALSE(nameOf("1a", 1));
    EXPECT_FALSE(nameOf("+1", 1));
    EXPECT_FALSE(nameOf("", 0));
    EXPECT_TRUE(nameOf("0", 0));
    EXPECT_TRUE(nameOf("-1", UINT64_MAX));
}

TEST(ServerGroup, IsWhatTheQueryFinds) {
    std::string xml = "<application>text<server/><!-- c --><other type='1'/><s:server type='1'/>";
    for (const char* type : {"1", "2", " 1&#9;", "1.0", "1.5", "+1", "1e0", "-1", "9", "",
                             "9223372036854775807", "9223372036854775808", "0x1", "\u00A01"})
        xml += "<server type='" + std::string(type) + "'><server type='1'/></server>";
    xml::Element top = xml::Document::parseText(xml + "</application>").document.root();
    const auto expectFound = [](const xml::Element& from) {
        std::size_t count = 0;
        for (const std::uint64_t type :
             {UINT64_C(1), UINT64_C(2), UINT64_C(9), UINT64_MAX, UINT64_C(9223372036854775807)}) {
            const auto found = serverGroups(from, type);
            EXPECT_EQ(found, from.query("/application/server[@type=" +
                                        std::to_string(static_cast<std::int64_t>(type)) + "]"));
            count += found.size();
        }
        return count;
    };
    EXPECT_EQ(expectFound(top), 8U);
    EXPECT_EQ(expectFound(xml::Element(top.childAt(5)).firstElementChild()), 8U);
    xml::Element first(top.childAt(5));
    first.remove();
    EXPECT_EQ(expectFound(top), 7U);
    EXPECT_EQ(expectFound(first), 0U);
    first.appendChild(top);
    xml::Element part = first.firstElementChild();
    EXPECT_EQ(expectFound(part), 0U);
    first.rename("application");
    EXPECT_EQ(expectFound(part), 1U);
    EXPECT_EQ(expectFound(xml::Element(top.copy())), 7U);
    EXPECT_EQ(expectFound({}), 0U);
}

TEST(ServerGroup, IsFoundFromAnyElementOfTheDocument) {
    const auto parsed = xml::Document::parseText(
        "<application><other/><server type='1'><e key='1' name='a' addrs='h:1'/></server>"
        "</application>");
    const auto group = YGServerAddrListTag::initWithServerType(
        1, xml::Element(parsed.document.root().firstChild()));
    EXPECT_THAT(serversOf(*group), ElementsAre("1 a h:1"));
}

TEST(ServerGroup, LoadedAgainKeepsWhatTheDocumentDoesNotSay) {
    const auto group = groupOf(
        "<application><server type='1' name='n' domain='d'>"
        "<e key='1' name='a' addrs='h:1'/></server></application>",
        1);
    const auto second =
        xml::Document::parseText("<application><server type='1' name='m'/></application>");
    group->loadServerGroupCfg(second.document.root());
    EXPECT_EQ(group->serverDescription(), "m");
    EXPECT_EQ(group->glooxDomain(), "d");
    EXPECT_THAT(serversOf(*group), IsEmpty());
    group->loadServerGroupCfg({});
    EXPECT_EQ(group->serverDescription(), "m");
}

TEST(ServerGroup, RecordsOutliveTheirGroup) {
    auto group = groupOf(
        "<application><server type='1'><e key='1' name='a' addrs='h:1'/></server></application>",
        1);
    const auto server = group->serverAddrList()->front();
    group.reset();
    EXPECT_EQ(yg::testing::textOf(*server), "1 a h:1");
}

}  // namespace
}  // namespace yg
