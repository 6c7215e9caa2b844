// SPDX-License-Identifier: MIT
//
// The choice of the file, loads, reloads and deliveries.
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/servers/YGServerCfgLoader.h"

#include "files/TemporaryFolder.h"
#include "host/RecordingHost.h"
#include "servers/ScriptedRandomSource.h"
#include "servers/ServerText.h"

namespace yg {
namespace {

using files::contentOf;
using files::put;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using yg::testing::RecordingHost;
using yg::testing::ScopedHost;
using yg::testing::ScriptedRandomSource;
using yg::testing::serversOf;

/// A configuration of which every group has the name.
std::string wholeConfiguration(std::string_view name, std::string_view rootAttributes = "") {
    std::string xml = "<application " + std::string(rootAttributes) + ">";
    for (const char* type : {"1", "2", "3", "4", "5", "6", "7", "8", "9"})
        xml += "<server type='" + std::string(type) + "' name='" + std::string(name) + type +
               "'><e key='" + type + "' name='" + std::string(name) + "' addrs='h:" + type +
               "'/></server>";
    return xml + "</application>";
}

class ServerCfgLoader : public ::testing::Test {
protected:
    ServerCfgLoader() {
        host->storageReadFolder = folder.path();
        host->storageWriteFolder = folder.path();
    }

    /// The description of each group in the order of the fields; "null" without a group.
    static std::vector<std::string> descriptions(const YGServerCfgLoader& loader) {
        std::vector<std::string> texts;
        for (const auto& group :
             {loader.appServerAddrListTag(), loader.hisServerAddrListTag(),
              loader.mineServerAddrListTag(), loader.gssServerAddrListTag(),
              loader.glooxMsgServerAddrListTag(), loader.superL2ServerAddrListTag(),
              loader.domeFutureServerAddrListTag()})
            texts.push_back(group ? group->serverDescription().value_or("absent") : "null");
        return texts;
    }

    static auto groupsNamed(const std::string& name) {
        return ElementsAre(name + "1", name + "3", name + "4", name + "2", name + "5", name + "7",
                           name + "8");
    }

    static auto noGroups() {
        return ElementsAre("null", "null", "null", "null", "null", "null", "null");
    }

    files::TemporaryFolder folder;
    ScopedHost<> host;
};

// ---- The choice of the file ------------------------------------------------------------------

TEST_F(ServerCfgLoader, ReadsTheFileOfTheRightLevelAndTheGreyFlag) {
    struct Case {
        std::optional<std::string> right;
        bool isGray;
        const char* file;
    };
    const std::vector<Case> cases{
        {std::nullopt, false, "skeleton_v1.xml"}, {"", false, "skeleton_v1.xml"},
        {"free", false, "skeleton_v1.xml"},       {std::nullopt, true, "skeleton_gray_v1.xml"},
        {"", true, "skeleton_gray_v1.xml"},       {"free", true, "skeleton_gray_v1.xml"},
        {"l2", false, "skeleton_l2_v1.xml"},      {"l2", true, "skeleton_l2_gray_v1.xml"},
        {"free ", false, "skeleton_l2_v1.xml"},   {"FREE", true, "skeleton_l2_gray_v1.xml"},
    };
    for (const char* file : {"skeleton_v1.xml", "skeleton_gray_v1.xml", "skeleton_l2_v1.xml",
                             "skeleton_l2_gray_v1.xml"})
        put(folder / file, wholeConfiguration(file));
    for (const Case& one : cases) {
        SCOPED_TRACE(one.right.value_or("absent") + one.file);
        host->userRight = one.right;
        const auto loader = YGServerCfgLoader::initWithIsGray(one.isGray);
        EXPECT_EQ(loader->configPath(), folder / one.file);
        EXPECT_THAT(descriptions(*loader), groupsNamed(one.file));
    }
}

TEST_F(ServerCfgLoader, ListsTheServersOfATypeAndNoneWithoutAGroup) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("skeleton_v1.xml"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    const auto group = loader->listTagWithServerType(1);
    ASSERT_NE(group->serverAddrList(), nullptr);
    EXPECT_EQ(&loader->serversOfType(1), group->serverAddrList().get());
    EXPECT_EQ(&group->servers(), group->serverAddrList().get());
    EXPECT_THAT(loader->serversOfType(6), IsEmpty());
    group->setServerAddrList(nullptr);
    EXPECT_THAT(group->servers(), IsEmpty());
    EXPECT_THAT(loader->serversOfType(1), IsEmpty());
    loader->setAppServerAddrListTag(nullptr);
    EXPECT_THAT(loader->serversOfType(1), IsEmpty());
}

TEST_F(ServerCfgLoader, WithoutRightLevelReadsTheFreeFile) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("free"));
    for (const auto& right : {std::optional<std::string>(), std::optional<std::string>(""),
                              std::optional<std::string>("free")}) {
        host->userRight = right;
        EXPECT_THAT(descriptions(*YGServerCfgLoader::initWithIsGray(false)), groupsNamed("free"));
    }
}

TEST_F(ServerCfgLoader, FreeInAnotherCaseIsNotFree) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("free"));
    put(folder / "skeleton_l2_v1.xml", wholeConfiguration("l2"));
    host->userRight = "Free";
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_EQ(loader->configPath(), folder / "skeleton_l2_v1.xml");
    EXPECT_THAT(descriptions(*loader), groupsNamed("l2"));
}

TEST_F(ServerCfgLoader, AsksTheHostForTheRightLevelAndOnePathToRead) {
    host->userRight = "l2";
    YGServerCfgLoader::initWithIsGray(true);
    EXPECT_THAT(host->questions(),
                ElementsAre("getUserRightDescription()",
                            "getStorageFilePath(1, (null), skeleton_l2_gray_v1.xml, 0)"));
}

TEST_F(ServerCfgLoader, OnlyChoosesInInitConfigFilePath) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("free"));
    put(folder / "skeleton_gray_v1.xml", wholeConfiguration("gray"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    host->clear();
    loader->initConfigFilePath(true);
    EXPECT_EQ(loader->configPath(), folder / "skeleton_gray_v1.xml");
    EXPECT_THAT(descriptions(*loader), groupsNamed("free"));
    EXPECT_THAT(host->log(), IsEmpty());
    // What the loader was made for stays.
    loader->reloadServerConfigWhenRightChanged();
    EXPECT_EQ(loader->configPath(), folder / "skeleton_v1.xml");
}

TEST_F(ServerCfgLoader, IsNotMadeWithoutAPath) {
    host->storageReadFolder = std::nullopt;
    EXPECT_EQ(YGServerCfgLoader::initWithIsGray(false), nullptr);
    EXPECT_THAT(host->log(), IsEmpty());
}

// An empty path is one that the host gave, of a file that does not exist.
TEST_F(ServerCfgLoader, IsMadeWithoutGroupsForAnEmptyPath) {
    host->paths["skeleton_v1.xml"] = "";
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    ASSERT_NE(loader, nullptr);
    EXPECT_EQ(loader->configPath(), "");
    EXPECT_THAT(descriptions(*loader), noGroups());
    EXPECT_THAT(host->runtimeLog(),
                ElementsAre("server config path:", StartsWith("load style config fail:")));
}

// ---- Loading ---------------------------------------------------------------------------------

TEST_F(ServerCfgLoader, LogsThePathAndLoads) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("a", "md5='digest'"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_THAT(host->log(),
                ElementsAre(yg::testing::LogLine{
                    LogChannel::runtime, "server config path:" + folder / "skeleton_v1.xml"}));
    EXPECT_EQ(loader->configMd5(), "digest");
    EXPECT_THAT(descriptions(*loader), groupsNamed("a"));
}

TEST_F(ServerCfgLoader, OfAMissingFileHasNoGroups) {
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    ASSERT_NE(loader, nullptr);
    EXPECT_THAT(descriptions(*loader), noGroups());
    EXPECT_EQ(loader->configMd5(), std::nullopt);
    const std::string path = folder / "skeleton_v1.xml";
    EXPECT_THAT(host->runtimeLog(),
                ElementsAre("server config path:" + path,
                            "load style config fail:" + path + ": No such file or directory"));
}

TEST_F(ServerCfgLoader, OfAFileThatIsNoXmlHasNoGroups) {
    put(folder / "skeleton_v1.xml", "<application>\n<server type='1'></application>");
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    ASSERT_NE(loader, nullptr);
    EXPECT_THAT(descriptions(*loader), noGroups());
    const std::string path = folder / "skeleton_v1.xml";
    EXPECT_THAT(host->runtimeLog(),
                ElementsAre("server config path:" + path,
                            "load style config fail:" + xml::Document::parseFile(path).error));
    EXPECT_THAT(host->runtimeLog().back(), StartsWith("load style config fail:Line 2: "));
}

TEST_F(ServerCfgLoader, AnswersGroupsByTheirType) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("a"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_EQ(loader->listTagWithServerType(1), loader->appServerAddrListTag());
    EXPECT_EQ(loader->listTagWithServerType(2), loader->gssServerAddrListTag());
    EXPECT_EQ(loader->listTagWithServerType(3), loader->hisServerAddrListTag());
    EXPECT_EQ(loader->listTagWithServerType(4), loader->mineServerAddrListTag());
    EXPECT_EQ(loader->listTagWithServerType(5), loader->glooxMsgServerAddrListTag());
    EXPECT_EQ(loader->listTagWithServerType(7), loader->superL2ServerAddrListTag());
    EXPECT_EQ(loader->listTagWithServerType(8), loader->domeFutureServerAddrListTag());
    for (const std::uint64_t type : yg::testing::loadedTypes) {
        const auto group = loader->listTagWithServerType(type);
        EXPECT_EQ(group->serverType(), type);
        EXPECT_EQ(group->serverDescription(), "a" + std::to_string(type));
        EXPECT_THAT(serversOf(*group),
                    ElementsAre(std::to_string(type) + " a h:" + std::to_string(type)));
    }
}

TEST_F(ServerCfgLoader, HasNoGroupOfTypeSixOrAnyOther) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("a"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_EQ(loader->listTagWithServerType(6), nullptr);
    EXPECT_EQ(loader->listTagWithServerType(0), nullptr);
    EXPECT_EQ(loader->listTagWithServerType(9), nullptr);
    EXPECT_EQ(loader->listTagWithServerType(UINT64_MAX), nullptr);
}

TEST_F(ServerCfgLoader, HasGroupsOfTheTypesThatAFileLacks) {
    put(folder / "skeleton_v1.xml", "<application><server type='4' name='n'/></application>");
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_THAT(descriptions(*loader),
                ElementsAre("absent", "absent", "n", "absent", "absent", "absent", "absent"));
    EXPECT_EQ(loader->appServerAddrListTag()->serverAddrList(), nullptr);
    EXPECT_NE(loader->mineServerAddrListTag()->serverAddrList(), nullptr);
}

TEST_F(ServerCfgLoader, BuildsTheGroupsInAFixedOrder) {
    std::string xml = "<application>";
    for (const char* type : {"1", "2", "3", "4", "5", "7", "8"})
        xml += "<server type='" + std::string(type) +
               "'><e key='0' name='a' addrs='h:0;h:1;h:2;h:3;h:4;h:5;h:6'/></server>";
    xml += "</application>";
    put(folder / "skeleton_v1.xml", xml);
    ScriptedRandomSource random({0, 1, 2, 3, 4, 5, 6});
    const auto loader = YGServerCfgLoader::initWithIsGray(false, nullptr, &random);
    EXPECT_THAT(serversOf(*loader->appServerAddrListTag()), ElementsAre("0 a h:0"));
    EXPECT_THAT(serversOf(*loader->hisServerAddrListTag()), ElementsAre("0 a h:1"));
    EXPECT_THAT(serversOf(*loader->mineServerAddrListTag()), ElementsAre("0 a h:2"));
    EXPECT_THAT(serversOf(*loader->gssServerAddrListTag()), ElementsAre("0 a h:3"));
    EXPECT_THAT(serversOf(*loader->glooxMsgServerAddrListTag()), ElementsAre("0 a h:4"));
    EXPECT_THAT(serversOf(*loader->superL2ServerAddrListTag()), ElementsAre("0 a h:5"));
    EXPECT_THAT(serversOf(*loader->domeFutureServerAddrListTag()), ElementsAre("0 a h:6"));
    // Later loads and deliveries choose again, by the same source.
    const auto expectNext = [&](auto load) {
        random.uniformNumbers = {6, 5, 4, 3, 2, 1, 0};
        load();
        EXPECT_TRUE(random.uniformNumbers.empty());
        EXPECT_THAT(serversOf(*loader->appServerAddrListTag()), ElementsAre("0 a h:6"));
        EXPECT_THAT(serversOf(*loader->domeFutureServerAddrListTag()), ElementsAre("0 a h:0"));
    };
    expectNext([&] { loader->reloadConfig(); });
    expectNext([&] { loader->reloadServerConfigWithData(xml, "digest"); });
    expectNext([&] { loader->loadServerCfg(xml::Document::parseText(xml).document); });
}

std::vector<std::string> linesOf(const std::vector<ServerOffer>& offers) {
    std::vector<std::string> lines;
    for (const ServerOffer& offer : offers) {
        lines.push_back(offer.key.value_or("-") + ' ' + offer.names.value_or("-"));
        for (const AddressOffer& each : offer.addresses)
            lines.push_back(each.address + ' ' + each.weight.value_or("-") +
                            (each.canBeChosen ? "" : " never"));
    }
    return lines;
}

TEST_F(ServerCfgLoader, ListsWhatTheEntriesOffer) {
    put(folder / "skeleton_v1.xml", R"(<application>
        <server type="6"><e key="1" name="a" addrs="h:1"/></server>
        <server type="2"/>
        <server type="01"><e key="7x" name="a;b" addrs="90:h:1;;h;k:80a:;4:m:5:6"/>
            text<e name="c" addrs="h:1"/><e key="1" addrs="h:1"/><e key="" name=""/></server>
        <server type="1"><e key="1" name="second" addrs="h:1"/></server>
    </application>)");
    auto offers = YGServerCfgLoader::initWithIsGray(false)->offers();
    EXPECT_EQ(offers.size(), 2u);
    EXPECT_THAT(linesOf(offers[2]), IsEmpty());
    EXPECT_THAT(linesOf(offers[1]),
                ElementsAre("7x a;b", "h:1 90", " - never", "h - never", "80a: k", "m:5 4", "- c",
                            "h:1 - never", "1 -", "h:1 - never", " "));
}

TEST_F(ServerCfgLoader, CountsTheServersThatAnEntryOffers) {
    put(folder / "skeleton_v1.xml", R"(<application><server type="1">
        <e key="1" name="a;b;" addrs="9:h:1:x;"/><e key="1" name="" addrs="h:1"/>
        <e key="1" name="a" addrs="h"/><e name="a" addrs="h:1"/></server></application>)");
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    const std::vector<ServerOffer> offers = loader->offers().at(1);
    std::vector<std::size_t> servers;
    std::ranges::transform(offers, std::back_inserter(servers), &ServerOffer::servers);
    EXPECT_THAT(servers, ElementsAre(3, 1, 0, 0));
    EXPECT_EQ(loader->appServerAddrListTag()->serverAddrList()->size(), 4u);
    EXPECT_EQ(offers.front().addrs, "9:h:1:x;");
}

TEST_F(ServerCfgLoader, ListsNoOffersWithoutAFile) {
    put(folder / "skeleton_v1.xml", "<application/>");
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_THAT(loader->offers(), IsEmpty());
    put(folder / "skeleton_v1.xml", "<application><server type='1'/>");
    EXPECT_THAT(loader->offers(), IsEmpty());
    ASSERT_EQ(::unlink((folder / "skeleton_v1.xml").c_str()), 0);
    EXPECT_THAT(loader->offers(), IsEmpty());
}

TEST_F(ServerCfgLoader, TakesADocumentFromTheHost) {
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_TRUE(loader->loadServerCfg(
        xml::Document::parseText(wholeConfiguration("a", "md5=''")).document));
    EXPECT_THAT(descriptions(*loader), groupsNamed("a"));
    EXPECT_EQ(loader->configMd5(), "");
    EXPECT_FALSE(loader->loadServerCfg(xml::Document()));
    EXPECT_THAT(descriptions(*loader), groupsNamed("a"));
}

TEST_F(ServerCfgLoader, EveryFieldCanBeSet) {
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    loader->setConfigMd5("digest");
    const auto group = std::make_shared<YGServerAddrListTag>();
    group->setServerDescription("own");
    loader->setAppServerAddrListTag(group);
    loader->setHisServerAddrListTag(group);
    loader->setMineServerAddrListTag(group);
    loader->setGssServerAddrListTag(group);
    loader->setGlooxMsgServerAddrListTag(group);
    loader->setSuperL2ServerAddrListTag(group);
    loader->setDomeFutureServerAddrListTag(group);
    EXPECT_EQ(loader->configMd5(), "digest");
    EXPECT_THAT(descriptions(*loader),
                ElementsAre("own", "own", "own", "own", "own", "own", "own"));
    EXPECT_EQ(loader->listTagWithServerType(7), group);
}

TEST_F(ServerCfgLoader, NamesItsFieldsExactly) {
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    std::vector<std::string> names;
    forEachField(*loader, [&](std::string_view name, const auto&) { names.emplace_back(name); });
    EXPECT_THAT(names, ElementsAre("configPath", "configMd5", "appServerAddrListTag",
                                   "hisServerAddrListTag", "mineServerAddrListTag",
                                   "gssServerAddrListTag", "glooxMsgServerAddrListTag",
                                   "superL2ServerAddrListTag", "domeFutureServerAddrListTag"));
}

// ---- Reloads ---------------------------------------------------------------------------------

TEST_F(ServerCfgLoader, ReloadsTheSameFileWithoutChoosingAnew) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("old"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    put(folder / "skeleton_v1.xml", wholeConfiguration("new"));
    put(folder / "skeleton_l2_v1.xml", wholeConfiguration("l2"));
    host->userRight = "l2";
    host->clear();
    loader->reloadConfig();
    EXPECT_THAT(descriptions(*loader), groupsNamed("new"));
    EXPECT_THAT(host->questions(), IsEmpty());
    EXPECT_THAT(host->runtimeLog(),
                ElementsAre("server config path:" + folder / "skeleton_v1.xml"));
}

TEST_F(ServerCfgLoader, ReloadReplacesTheRecords) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("a"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    const auto before = loader->appServerAddrListTag();
    loader->reloadConfig();
    EXPECT_NE(loader->appServerAddrListTag(), before);
    EXPECT_EQ(before->serverDescription(), "a1");
}

TEST_F(ServerCfgLoader, AReloadThatFailsKeepsTheGroups) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("old", "md5='digest'"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    const auto before = loader->appServerAddrListTag();
    for (const char* broken : {"", "<application>", "no xml"}) {
        put(folder / "skeleton_v1.xml", broken);
        host->clear();
        loader->reloadConfig();
        loader->reloadServerConfigWhenRightChanged();
        loader->reloadFreeRightServerConfig();
        EXPECT_EQ(loader->appServerAddrListTag(), before);
        EXPECT_THAT(descriptions(*loader), groupsNamed("old"));
        EXPECT_EQ(loader->configMd5(), "digest");
        const auto isFailure = StartsWith("load style config fail:");
        const std::string path = folder / "skeleton_v1.xml";
        EXPECT_THAT(host->runtimeLog(),
                    ElementsAre("server config path:" + path, isFailure,
                                "reload server config(" + path + ")", isFailure, isFailure));
    }
}

TEST_F(ServerCfgLoader, AFileWithoutMd5KeepsTheEarlierOne) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("a", "md5='digest'"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    put(folder / "skeleton_v1.xml", wholeConfiguration("b"));
    loader->reloadConfig();
    EXPECT_THAT(descriptions(*loader), groupsNamed("b"));
    EXPECT_EQ(loader->configMd5(), "digest");
}

TEST_F(ServerCfgLoader, FollowsAChangedRightLevel) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("free"));
    put(folder / "skeleton_l2_v1.xml", wholeConfiguration("l2"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    host->userRight = "l2";
    host->clear();
    loader->reloadServerConfigWhenRightChanged();
    const std::string path = folder / "skeleton_l2_v1.xml";
    EXPECT_EQ(loader->configPath(), path);
    EXPECT_THAT(descriptions(*loader), groupsNamed("l2"));
    EXPECT_THAT(host->runtimeLog(), ElementsAre("reload server config(" + path + ")"));
    EXPECT_THAT(host->questions(),
                ElementsAre("getUserRightDescription()",
                            "getStorageFilePath(1, (null), skeleton_l2_v1.xml, 0)"));
}

TEST_F(ServerCfgLoader, AChangedRightLevelWithoutAPathKeepsTheGroups) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("free"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    host->userRight = "l2";
    host->paths["skeleton_l2_v1.xml"] = std::nullopt;
    host->clear();
    loader->reloadServerConfigWhenRightChanged();
    EXPECT_EQ(loader->configPath(), std::nullopt);
    EXPECT_THAT(descriptions(*loader), groupsNamed("free"));
    EXPECT_THAT(host->runtimeLog(),
                ElementsAre("reload server config((null))", StartsWith("load style config fail:")));
}

TEST_F(ServerCfgLoader, LoadsTheFreeFileWhateverTheRightLevel) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("free"));
    put(folder / "skeleton_gray_v1.xml", wholeConfiguration("gray"));
    host->userRight = "l2";
    for (const bool isGray : {false, true}) {
        const auto loader = YGServerCfgLoader::initWithIsGray(isGray);
        host->clear();
        loader->reloadFreeRightServerConfig();
        const std::string name = isGray ? "skeleton_gray_v1.xml" : "skeleton_v1.xml";
        EXPECT_EQ(loader->configPath(), folder / name);
        EXPECT_THAT(descriptions(*loader), groupsNamed(isGray ? "gray" : "free"));
        EXPECT_THAT(host->log(), IsEmpty());
        EXPECT_THAT(host->questions(),
                    ElementsAre("getStorageFilePath(1, (null), " + name + ", 0)"));
    }
}

TEST_F(ServerCfgLoader, WithoutAPathForTheFreeFileDoesNothingFurther) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("free"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    for (const auto& path : {std::optional<std::string>(), std::optional<std::string>("")}) {
        host->paths["skeleton_v1.xml"] = path;
        host->clear();
        loader->reloadFreeRightServerConfig();
        EXPECT_EQ(loader->configPath(), path);
        EXPECT_THAT(host->log(), IsEmpty());
        EXPECT_THAT(descriptions(*loader), groupsNamed("free"));
    }
}

// ---- Deliveries ------------------------------------------------------------------------------

constexpr std::string_view twoGroups =
    "<application><server type='1' name='one'><e key='1' name='a' addrs='h:1'/></server>"
    "<server type='2' name='two'/></application>";

TEST_F(ServerCfgLoader, AppliesAndSavesADelivery) {
    put(folder / "skeleton_v1.xml", wholeConfiguration("old", "md5='before'"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_TRUE(loader->reloadServerConfigWithData(twoGroups, "digest"));
    EXPECT_THAT(descriptions(*loader),
                ElementsAre("one", "absent", "absent", "two", "absent", "absent", "absent"));
    for (const std::uint64_t type : {3u, 4u, 5u, 7u, 8u})
        EXPECT_EQ(loader->listTagWithServerType(type)->serverAddrList(), nullptr);
    EXPECT_EQ(loader->configMd5(), "digest");
    EXPECT_THAT(contentOf(folder / "skeleton_v1.xml"), HasSubstr("<application md5=\"digest\">"));

    const auto next = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_EQ(next->configMd5(), "digest");
    EXPECT_EQ(descriptions(*next), descriptions(*loader));
}

TEST_F(ServerCfgLoader, SavesPrettyPrinted) {
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_TRUE(loader->reloadServerConfigWithData(twoGroups, "digest"));
    EXPECT_EQ(contentOf(folder / "skeleton_v1.xml"), R"(<?xml version="1.0" encoding="UTF-8"?>
<application md5="digest">
    <server type="1" name="one">
        <e key="1" name="a" addrs="h:1"></e>
    </server>
    <server type="2" name="two"></server>
</application>
)");
    EXPECT_THAT(folder.names(), ElementsAre("skeleton_v1.xml"));
}

TEST_F(ServerCfgLoader, ADeliveryThatHasAnMd5EndsWithExactlyOne) {
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_TRUE(loader->reloadServerConfigWithData(
        "<application version='2' md5='theirs' x=''><server md5='kept' type='1'/></application>",
        "digest"));
    EXPECT_EQ(loader->configMd5(), "digest");
    const std::string saved = contentOf(folder / "skeleton_v1.xml");
    EXPECT_THAT(saved, HasSubstr("<application version=\"2\" md5=\"digest\" x=\"\">"));
    EXPECT_EQ(YGServerCfgLoader::initWithIsGray(false)->configMd5(), "digest");
}

TEST_F(ServerCfgLoader, KeepsAStrangeDigest) {
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    for (const char* digest : {"", "a\"b<c>&d'", " 摘要 \t\n"}) {
        EXPECT_TRUE(loader->reloadServerConfigWithData(twoGroups, digest));
        EXPECT_EQ(loader->configMd5(), digest);
        EXPECT_EQ(YGServerCfgLoader::initWithIsGray(false)->configMd5(), digest);
    }
}

TEST_F(ServerCfgLoader, SavesUnderTheRightLevelOfTheMoment) {
    put(folder / "skeleton_gray_v1.xml", wholeConfiguration("free"));
    const auto loader = YGServerCfgLoader::initWithIsGray(true);
    host->userRight = "l2";
    host->clear();
    EXPECT_TRUE(loader->reloadServerConfigWithData(twoGroups, "digest"));
    const std::string saved = folder / "skeleton_l2_gray_v1.xml";
    EXPECT_THAT(contentOf(saved), HasSubstr("digest"));
    EXPECT_EQ(contentOf(folder / "skeleton_gray_v1.xml"), wholeConfiguration("free"));
    EXPECT_EQ(loader->configPath(), folder / "skeleton_gray_v1.xml");
    EXPECT_THAT(host->runtimeLog(),
                ElementsAre("(Login Server)reloadServerConfigWithData(" + saved + ")"));
    EXPECT_THAT(host->questions(),
                ElementsAre("getUserRightDescription()",
                            "getStorageFilePath(1, (null), skeleton_l2_gray_v1.xml, 1)"));
}

TEST_F(ServerCfgLoader, SavesWhereTheHostWritesAndReadsWhereItReads) {
    files::TemporaryFolder user;
    host->storageWriteFolder = user.path();
    put(folder / "skeleton_v1.xml", wholeConfiguration("shipped"));
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_TRUE(loader->reloadServerConfigWithData(twoGroups, "digest"));
    EXPECT_EQ(contentOf(folder / "skeleton_v1.xml"), wholeConfiguration("shipped"));
    EXPECT_THAT(contentOf(user / "skeleton_v1.xml"), HasSubstr("digest"));
}

/// Looks at the loader and the file at the moment when the path to write is asked for.
class WatchingHost : public RecordingHost {
public:
    std::function<void()> onWrite;

    std::optional<std::string> getStorageFilePath(std::int64_t area,
                                                  std::optional<std::string_view> subFolderPath,
                                                  std::optional<std::string_view> fileName,
                                                  bool isNeedWrite) override {
        if (isNeedWrite)
            onWrite();
        return RecordingHost::getStorageFilePath(area, subFolderPath, fileName, isNeedWrite);
    }
};

TEST_F(ServerCfgLoader, AppliesADeliveryBeforeItSavesIt) {
    const ScopedHost<WatchingHost> watching;
    watching->storageReadFolder = folder.path();
    watching->storageWriteFolder = folder.path();
    put(folder / "skeleton_v1.xml", "<application/>");
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    int times = 0;
    watching->onWrite = [&] {
        ++times;
        EXPECT_EQ(loader->configMd5(), "digest");
        EXPECT_EQ(loader->appServerAddrListTag()->serverDescription(), "one");
        EXPECT_EQ(contentOf(folder / "skeleton_v1.xml"), "<application/>");
    };
    EXPECT_TRUE(loader->reloadServerConfigWithData(twoGroups, "digest"));
    EXPECT_EQ(times, 1);
    EXPECT_NE(contentOf(folder / "skeleton_v1.xml"), "<application/>");
}

TEST_F(ServerCfgLoader, SavesADeliveryInUtf8WhateverItsEncoding) {
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    EXPECT_TRUE(loader->reloadServerConfigWithData(
        "<?xml version=\"1.0\" encoding=\"gb2312\"?><application><server type=\"1\" "
        "name=\"\xD0\xD0\xC7\xE9\"/></application>",
        "digest"));
    EXPECT_EQ(loader->appServerAddrListTag()->serverDescription(), "行情");
    EXPECT_THAT(contentOf(folder / "skeleton_v1.xml"),
                StartsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<application"));
    EXPECT_EQ(YGServerCfgLoader::initWithIsGray(false)->appServerAddrListTag()->serverDescription(),
              "行情");
}

TEST_F(ServerCfgLoader, ADeliverySavedAgainIsTheSameFile) {
    const auto loader = YGServerCfgLoader::initWithIsGray(false);
    const std::string delivered =
        "<application><!-- c --><?p i?><server type='1'>text<e/>more</server>"
        "<server type='2' name='a&#10;b&#13;&#9;c'><![CDATA[x]]></server></application>";
    EXPECT_TRUE(loader->reloadServerConfigWithData(delivered, "digest"));
    const std::string saved = contentOf(folder / "skeleton_v1.xml");
    EXPECT_TRUE(loader->reloadServerConfigWithData(saved, "digest"));
    EXPECT_EQ(contentOf(folder / "skeleton_v1.xml"), saved);
}

}  // namespace
}  // namespace yg
