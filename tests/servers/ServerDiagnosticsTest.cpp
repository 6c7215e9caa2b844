// SPDX-License-Identifier: MIT
//
// What a sink is given of a server configuration.
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/servers/YGServerCfgLoader.h"

#include "diagnostics/RecordingSink.h"
#include "files/TemporaryFolder.h"
#include "host/RecordingHost.h"
#include "servers/ScriptedRandomSource.h"
#include "servers/ServerText.h"

namespace yg {
namespace {

using files::put;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::testing::RecordingSink;
using yg::testing::ScopedHost;
using yg::testing::serversOf;

class ServerDiagnostics : public ::testing::Test {
protected:
    ServerDiagnostics() {
        host->storageReadFolder = folder.path();
        host->storageWriteFolder = folder.path();
    }

    std::shared_ptr<YGServerCfgLoader> load(std::string_view xml, DiagnosticsSink* sink) {
        put(folder / "skeleton_v1.xml", xml);
        return YGServerCfgLoader::initWithIsGray(false, sink, &random);
    }

    std::vector<std::string> findings(std::string_view xml) {
        RecordingSink sink;
        load(xml, &sink);
        EXPECT_THAT(sink.unaccounted(), IsEmpty());
        return sink.lines();
    }

    /// The findings in an entry with these addresses.
    std::vector<std::string> findingsInAddresses(std::string_view addrs) {
        return findings("<application><server type='1'><e key='1' name='a' addrs='" +
                        std::string(addrs) + "'/></server></application>");
    }

    files::TemporaryFolder folder;
    ScopedHost<> host;
    yg::testing::ConstantRandomSource random{1};
};

TEST_F(ServerDiagnostics, AFileInOrderHasNoFindings) {
    EXPECT_THAT(findings(R"(<?xml version="1.0"?><!-- comment -->
<application md5="digest"><!-- comment -->
    <server type="1" name="n" domain="d"><e key="1" name="a;b" addrs="10.0.0.1:1;h:65535"/></server>
    <server type="2"/><server type="3"/><server type="4"/><server type="5"/><server type="7"/>
    <server type="8"><!-- comment --></server>
</application>)"),
                IsEmpty());
}

TEST_F(ServerDiagnostics, NameTheFileReadAndTheReasonWhenItCannotBe) {
    RecordingSink sink;
    YGServerCfgLoader::initWithIsGray(false, &sink);
    const std::string path = folder / "skeleton_v1.xml";
    EXPECT_THAT(sink.files, ElementsAre(path));
    EXPECT_THAT(sink.lines(), ElementsAre("unreadable-file =No such file or directory"));
}

TEST_F(ServerDiagnostics, ARootOfAnotherName) {
    EXPECT_THAT(findings("<app md5='d'><server type='1'/></app>"),
                ElementsAre("1: server-root-name =app"));
}

TEST_F(ServerDiagnostics, StrangersBelowTheRoot) {
    EXPECT_THAT(findings(R"(<application version="2">text
<servers><server type="1"/></servers>
<Server type="1"/>
</application>)"),
                ElementsAre("1: unknown-attribute version=2", "1: stray-text =text\n",
                            "2: unknown-element =servers", "3: unknown-element =Server"));
}

TEST_F(ServerDiagnostics, TypesThatAreNeverLoaded) {
    EXPECT_THAT(
        findings(R"(<application>
<server type="6"/><server type="9"/>
<server type="x"/><server type=""/><server type="0"/>
<server/>
</application>)"),
        ElementsAre("2: server-type-never-loaded type=6", "2: server-type-never-loaded type=9",
                    "3: server-type-never-loaded type=x", "3: server-type-never-loaded type=",
                    "3: server-type-never-loaded type=0", "4: server-group-without-type"));
}

TEST_F(ServerDiagnostics, SecondGroupsOfAType) {
    EXPECT_THAT(
        findings(R"(<application>
<server type="1"/>
<server type="2"/>
<server type="01"/>
<server type="2"/><server type="2"/>
</application>)"),
        ElementsAre("4: second-server-group", "5: second-server-group", "5: second-server-group"));
}

TEST_F(ServerDiagnostics, AttributesAndContentThatAreNotRead) {
    EXPECT_THAT(findings(R"(<application><server type="1" port="80">text
<e key="1" name="a" addrs="h:1" weight="5"><f key="1" name="a" addrs="h:1"/>more</e>
</server></application>)"),
                ElementsAre("1: unknown-attribute port=80", "1: stray-text =text\n",
                            "2: unknown-attribute weight=5", "2: unread-content =f",
                            "2: stray-text =more"));
}

TEST_F(ServerDiagnostics, IncompleteEntries) {
    EXPECT_THAT(
        findings(R"(<application><server type="1">
<e name="a" addrs="h:1"/>
<e key="1" addrs="h:1"/>
<e key="1" name="a"/>
<e/>
</server></application>)"),
        ElementsAre("2: incomplete-server-entry =key", "3: incomplete-server-entry =name",
                    "4: incomplete-server-entry =addrs", "5: incomplete-server-entry =key"));
}

TEST_F(ServerDiagnostics, NumbersWithATailOrNone) {
    EXPECT_THAT(findings(R"(<application><server type="1.0">
<e key="12abc" name="a" addrs="h:1"/>
<e key="" name="a" addrs="h:80x"/>
<e key="99999999999" name="a" addrs="h:x"/>
</server></application>)"),
                ElementsAre("1: odd-number type=1.0", "2: odd-number key=12abc",
                            "3: odd-server-port addrs=80x", "3: odd-number key=",
                            "4: odd-server-port addrs=x", "4: odd-number key=99999999999"));
}

TEST_F(ServerDiagnostics, PortsOutOfRange) {
    EXPECT_THAT(findingsInAddresses("h:1;h:0;h:65535;h:65536;h:-1;h:99999999999;h:70000x"),
                ElementsAre("1: odd-server-port addrs=0", "1: odd-server-port addrs=65536",
                            "1: odd-server-port addrs=-1", "1: odd-server-port addrs=99999999999",
                            "1: odd-server-port addrs=70000x"));
}

TEST_F(ServerDiagnostics, AddressesThatDoNotSplit) {
    EXPECT_THAT(findingsInAddresses("h:1;;host;h:2;"),
                ElementsAre("1: empty-server-address addrs=", "1: address-without-port addrs=host",
                            "1: empty-server-address addrs="));
    EXPECT_THAT(findingsInAddresses("host;"),
                ElementsAre("1: server-entry-without-address addrs=host;"));
    EXPECT_THAT(findingsInAddresses(""), ElementsAre("1: server-entry-without-address addrs="));
    EXPECT_THAT(findingsInAddresses(":1"), ElementsAre("1: address-without-host addrs=:1"));
}

TEST_F(ServerDiagnostics, Ipv6AddressesAndTooManyParts) {
    EXPECT_THAT(findingsInAddresses("[::1]:80;fe80::1:80;5:[2001:db8::1]:80;1:h:2:3"),
                ElementsAre("1: ipv6-address addrs=[::1]:80", "1: ipv6-address addrs=fe80::1:80",
                            "1: ipv6-address addrs=5:[2001:db8::1]:80",
                            "1: address-with-too-many-parts addrs=1:h:2:3"));
}

TEST_F(ServerDiagnostics, WeightsAndEmptyNamesOnceForAnEntry) {
    EXPECT_THAT(findings(R"(<application><server type="1">
<e key="1" name="a" addrs="40:h:1;60:h:2"/>
<e key="1" name="b" addrs="h:1;60:h:2"/>
<e key="1" name="c;;d;" addrs="h:1;;h:2;"/>
</server></application>)"),
                ElementsAre("2: address-weight addrs=40", "3: address-weight addrs=60",
                            "4: empty-server-address addrs=", "4: empty-server-address addrs=",
                            "4: server-without-name name="));
}

TEST_F(ServerDiagnostics, EmptyNames) {
    EXPECT_THAT(findings("<application><server type='1'><e key='1' name='a;' addrs='h:1'/>"
                         "<e key='1' name='' addrs='h:1'/></server></application>"),
                ElementsAre("1: server-without-name name=", "1: server-without-name name="));
}

TEST_F(ServerDiagnostics, Deliveries) {
    RecordingSink sink;
    const auto loader = load("<application/>", &sink);
    loader->reloadServerConfigWithData(std::nullopt, "d");
    loader->reloadServerConfigWithData("", "d");
    loader->reloadServerConfigWithData("<application>", "d");
    loader->reloadServerConfigWithData("<application md5='theirs'><x/></application>", "d");
    EXPECT_THAT(sink.lines(), ElementsAre("unreadable-delivery", "unreadable-delivery",
                                          ::testing::StartsWith("1: unreadable-delivery ="),
                                          "1: replaced-md5 md5=theirs", "1: unknown-element =x"));
    EXPECT_THAT(sink.unaccounted(), IsEmpty());
}

TEST_F(ServerDiagnostics, DeliveriesThatCannotBeSaved) {
    RecordingSink sink;
    const std::string delivery = "<application/>";
    const auto loader = load(delivery, &sink);
    ASSERT_EQ(::unlink((folder / "skeleton_v1.xml").c_str()), 0);
    ASSERT_EQ(::mkdir((folder / "skeleton_v1.xml").c_str(), 0700), 0);
    EXPECT_TRUE(loader->reloadServerConfigWithData(delivery, "d"));
    host->paths["skeleton_v1.xml"] = "";
    EXPECT_TRUE(loader->reloadServerConfigWithData(delivery, "d"));
    host->paths["skeleton_v1.xml"] = std::nullopt;
    EXPECT_TRUE(loader->reloadServerConfigWithData(delivery, "d"));
    const std::string none = "unsaved-file =skeleton_v1.xml: there is no path to write to";
    EXPECT_THAT(sink.lines(),
                ElementsAre("unsaved-file =" + (folder / "skeleton_v1.xml") + ": Is a directory",
                            none, none));
}

TEST_F(ServerDiagnostics, OfOneGroupAlone) {
    RecordingSink sink;
    const auto group = yg::testing::groupOf(
        "<application><server type='6' x=''/><server type='6'/></application>", 6, &sink);
    EXPECT_THAT(serversOf(*group), IsEmpty());
    EXPECT_THAT(sink.lines(), ElementsAre("1: unknown-attribute x=", "1: second-server-group"));
}

TEST_F(ServerDiagnostics, ASinkChangesNeitherGroupsNorLog) {
    constexpr std::string_view xml = R"(<application x="y" md5="d">text
        <server type="1"><e key="1x" name="a;" addrs="4:h:1;h;h:2;[::1]:3"/><e/></server>
        <server type="1"/><server type="6"/><server type="2" name="n">text</server><z/>
    </application>)";
    const auto without = load(xml, nullptr);
    const auto log = host->log();
    host->clear();
    RecordingSink sink;
    const auto with = load(xml, &sink);
    EXPECT_FALSE(sink.found.empty());
    EXPECT_EQ(host->log(), log);
    for (const std::uint64_t type : yg::testing::loadedTypes)
        EXPECT_EQ(serversOf(*with->listTagWithServerType(type)),
                  serversOf(*without->listTagWithServerType(type)));
    EXPECT_THAT(serversOf(*with->appServerAddrListTag()), ElementsAre("1 a h:2", "1  h:2"));
}

}  // namespace
}  // namespace yg
