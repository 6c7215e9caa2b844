// SPDX-License-Identifier: MIT
//
// Whole runs on server files: dump servers, show servers, servers deliver, choose. Several
// addresses are chosen from at random, so that most roots here have one address for each server.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "files/TemporaryFolder.h"
#include "tool/ToolRun.h"

namespace {

using nlohmann::json;
using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using yg::files::TemporaryFolder;
using yg::testing::runTool;
using yg::testing::ToolRun;

const std::string freePath = "storage/skeleton_v1.xml";
const std::string sample = "examples/terminal";

ToolRun runOn(const TemporaryFolder& root, std::vector<std::string> words) {
    words.insert(words.begin(), {"--root", root.path()});
    return runTool(words);
}

json dumpOf(const TemporaryFolder& root, std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"dump", "servers"});
    return json::parse(runOn(root, options).output);
}

/// A file whose one server of type 1 has this name.
std::string fileWith(const std::string& name) {
    return "<application><server type='1'><addr key='1' name='" + name +
           "' addrs='h:80'/></server></application>";
}

std::string nameIn(const json& dump) {
    return dump.at("appServerAddrListTag").at("serverAddrList").at(0).at("serverName");
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(DumpServers, WritesEachFieldOfEachRecord) {
    const TemporaryFolder root;
    root.write(freePath, R"(<application md5="m">
        <server type="1" name=""><addr key="7" name="行情" addrs="40:h:9211"/></server>
        <server type="5" domain="d"/>
    </application>)");
    const ToolRun run = runOn(root, {"dump", "servers"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output.substr(0, run.output.find("  \"hisServer")), R"({
  "configPath": "storage/skeleton_v1.xml",
  "configMd5": "m",
  "appServerAddrListTag": {
    "serverDescription": "",
    "glooxDomain": null,
    "serverAddrList": [
      {
        "serverName": "行情",
        "ipAddr": "h",
        "serverPort": 9211,
        "serverKey": 7
      }
    ],
    "serverType": 1
  },
)");
    const json dump = json::parse(run.output);
    EXPECT_EQ(dump.size(), 9);
    const auto group = [](int type, const json& domain, const json& list) {
        return json{{"serverDescription", nullptr},
                    {"glooxDomain", domain},
                    {"serverAddrList", list},
                    {"serverType", type}};
    };
    EXPECT_EQ(dump.at("gssServerAddrListTag"), group(2, nullptr, nullptr));
    EXPECT_EQ(dump.at("hisServerAddrListTag"), group(3, nullptr, nullptr));
    EXPECT_EQ(dump.at("mineServerAddrListTag"), group(4, nullptr, nullptr));
    EXPECT_EQ(dump.at("glooxMsgServerAddrListTag"), group(5, "d", json::array()));
    EXPECT_EQ(dump.at("superL2ServerAddrListTag"), group(7, nullptr, nullptr));
    EXPECT_EQ(dump.at("domeFutureServerAddrListTag"), group(8, nullptr, nullptr));
}

TEST(DumpServers, HasNoGroupsWithoutAFile) {
    const TemporaryFolder root;
    const ToolRun run = runOn(root, {"dump", "servers"});
    EXPECT_EQ(run.status, 0);
    const json dump = json::parse(run.output);
    EXPECT_EQ(dump.size(), 9);
    for (const auto& [name, value] : dump.items()) {
        if (name == "configPath")
            EXPECT_EQ(value, "user/skeleton_v1.xml");
        else
            EXPECT_EQ(value, nullptr) << name;
    }
    EXPECT_THAT(run.errors, HasSubstr("load style config fail:" + root.at("user")));
}

TEST(DumpServers, ChoosesTheFileByRightLevelAndGreyRelease) {
    const TemporaryFolder root;
    for (const char* name :
         {"skeleton_v1", "skeleton_gray_v1", "skeleton_l2_v1", "skeleton_l2_gray_v1"})
        root.write("storage/" + std::string(name) + ".xml", fileWith(name));
    EXPECT_EQ(nameIn(dumpOf(root)), "skeleton_v1");
    EXPECT_EQ(nameIn(dumpOf(root, {"--right="})), "skeleton_v1");
    EXPECT_EQ(nameIn(dumpOf(root, {"--right", "free", "--gray"})), "skeleton_gray_v1");
    EXPECT_EQ(nameIn(dumpOf(root, {"--right", "l2"})), "skeleton_l2_v1");
    EXPECT_EQ(nameIn(dumpOf(root, {"--gray", "--right", "Free", "--gray"})), "skeleton_l2_gray_v1");
    EXPECT_EQ(nameIn(dumpOf(root, {"--right", "free", "--right=l2"})), "skeleton_l2_v1");
    root.write("host.json", R"({"rightLevel": "l2"})");
    EXPECT_EQ(nameIn(dumpOf(root)), "skeleton_l2_v1");
    EXPECT_EQ(nameIn(dumpOf(root, {"--right="})), "skeleton_v1");
}

TEST(DumpServers, PrefersTheUsersOwnFile) {
    const TemporaryFolder root;
    root.write(freePath, fileWith("shipped"));
    root.write("user/skeleton_v1.xml", fileWith("own"));
    const json dump = dumpOf(root);
    EXPECT_EQ(dump.at("configPath"), "user/skeleton_v1.xml");
    EXPECT_EQ(nameIn(dump), "own");
}

TEST(DumpServers, WritesThePathBelowTheRoot) {
    const TemporaryFolder root;
    root.write(freePath, fileWith("s"));
    for (const char* end : {"", "/", "//"}) {
        const ToolRun run = runTool({"dump", "servers", "--root", root.path() + end});
        EXPECT_EQ(json::parse(run.output).at("configPath"), freePath);
    }
    for (const char* folder : {".", "./", "storage/.."}) {
        const ToolRun run = runTool({"dump", "servers", "--root", folder}, {.folder = root.path()});
        EXPECT_EQ(json::parse(run.output).at("configPath"), freePath) << folder;
    }
}

TEST(DumpServers, ChoosesAmongTheAddressesOfTheSample) {
    const json dump = json::parse(runTool({"dump", "servers", "--root", sample}).output);
    const json servers = dump.at("appServerAddrListTag").at("serverAddrList");
    ASSERT_EQ(servers.size(), 5);
    EXPECT_THAT(servers.at(2).at("ipAddr").get<std::string>(), AnyOf("192.0.2.14", "192.0.2.15"));
    EXPECT_EQ(servers.at(4).at("ipAddr"), "us1.quote.example.com");
    EXPECT_EQ(dump.at("glooxMsgServerAddrListTag").at("glooxDomain"), "im.terminal.example.com");
}

TEST(ShowServers, SetsWeightsBesideChances) {
    const TemporaryFolder root;
    root.write(freePath, R"(<application md5="m">
        <server type="8"/>
        <server type="1" name="行情" domain="d">
            <addr key="7x" name="甲;乙" addrs="90:h:9211;;k:80a"/>
            <addr name="no key" addrs="h:1"/>
            <addr key="1" name="no port" addrs="h;k"/>
            <addr key="2"/>
            <addr key="3" name="" addrs="10:solo:70000:x"/>
        </server>
        <server type="1" name="second"/>
    </application>)");
    const std::string text = runOn(root, {"show", "servers"}).output;
    const auto from = text.find("└─ addresses");
    ASSERT_NE(from, std::string::npos);
    EXPECT_THAT(text.substr(0, from), AnyOf(HasSubstr("甲                h:9211  key 7\n"),
                                            HasSubstr("甲                k:80  key 7\n")));
    EXPECT_EQ(text.substr(0, text.find("├─")),
              "Servers  storage/skeleton_v1.xml  md5 m\n\n"
              "行情                 type 1  appServerAddrListTag  domain d\n");
    EXPECT_EQ(text.substr(from, text.find("(no description)") - from),
              R"(└─ addresses
   ├─ 甲;乙          key 7x
   │  ├─ h:9211      chance 50%  weight 90
   │  ├─ ""          skipped
   │  └─ k:80a       chance 50%
   ├─ no key         key missing  skipped
   │  └─ h:1         skipped
   ├─ no port        key 1  skipped
   │  ├─ h           skipped
   │  └─ k           skipped
   ├─ (no name)      key 2  skipped
   └─ ""             key 3
      └─ solo:70000  chance 100%  weight 10

)");
    EXPECT_THAT(text,
                HasSubstr("(no description)  type 2  gssServerAddrListTag  not in the file\n"));
    EXPECT_THAT(text,
                EndsWith("(no description)  type 8  domeFutureServerAddrListTag  no servers\n"));
}

TEST(ShowServers, ShowsTheFileThatTheOptionsChoose) {
    const TemporaryFolder root;
    root.write("storage/skeleton_l2_gray_v1.xml", fileWith("甲"));
    EXPECT_THAT(runOn(root, {"show", "servers", "--right", "l2", "--gray"}).output,
                HasSubstr("甲             h:80  key 1\n"));
    const ToolRun none = runOn(root, {"show", "servers"});
    EXPECT_EQ(none.status, 0);
    EXPECT_EQ(none.output, "Servers  user/skeleton_v1.xml  nothing was loaded\n");
}

TEST(DeliverServers, KeepsTheFileAsTheUsersOwn) {
    const TemporaryFolder root;
    const std::string shipped = fileWith("shipped");
    root.write(freePath, shipped);
    root.write("new.xml",
               "<application md5='old'><server type='1'><addr key='1' name='new' "
               "addrs='h:80'/></server></application>");
    const ToolRun run = runOn(root, {"servers", "deliver", root.at("new.xml"), "digest"});
    EXPECT_EQ(run.output, "true\n");
    EXPECT_EQ(run.status, 0);
    const json dump = dumpOf(root);
    EXPECT_EQ(dump.at("configPath"), "user/skeleton_v1.xml");
    EXPECT_EQ(dump.at("configMd5"), "digest");
    EXPECT_EQ(nameIn(dump), "new");
    EXPECT_EQ(contentOf(root.at(freePath)), shipped);
    EXPECT_THAT(contentOf(root.at("user/skeleton_v1.xml")),
                HasSubstr("<application md5=\"digest\">"));
}

TEST(DeliverServers, NamesTheFileByRightLevelAndGreyRelease) {
    const TemporaryFolder root;
    root.write("new.xml", fileWith("s"));
    const std::string data = root.at("new.xml");
    EXPECT_EQ(runOn(root, {"servers", "deliver", "--gray", data, ""}).status, 0);
    EXPECT_EQ(dumpOf(root, {"--gray"}).at("configMd5"), "");
    EXPECT_EQ(runOn(root, {"servers", "deliver", data, "-m", "--right", "l2"}).status, 2);
    EXPECT_EQ(runOn(root, {"servers", "--right", "l2", "deliver", "--", data, "-m"}).status, 0);
    EXPECT_EQ(dumpOf(root, {"--right", "l2"}).at("configMd5"), "-m");
    EXPECT_TRUE(std::filesystem::exists(root.at("user/skeleton_gray_v1.xml")));
    EXPECT_TRUE(std::filesystem::exists(root.at("user/skeleton_l2_v1.xml")));
    EXPECT_FALSE(std::filesystem::exists(root.at("user/skeleton_v1.xml")));
}

TEST(DeliverServers, RefusesWhatIsNotXml) {
    const TemporaryFolder root;
    root.write(freePath, fileWith("shipped"));
    for (const char* bytes : {"", "no XML", "<application>", "<a/><b/>"}) {
        root.write("new.xml", bytes);
        const ToolRun run = runOn(root, {"servers", "deliver", root.at("new.xml"), "m"});
        EXPECT_EQ(run.output, "false\n") << bytes;
        EXPECT_EQ(run.status, 1) << bytes;
        EXPECT_FALSE(std::filesystem::exists(root.at("user"))) << bytes;
    }
    EXPECT_EQ(nameIn(dumpOf(root)), "shipped");
}

TEST(DeliverServers, NeedsAFileThatCanBeRead) {
    const TemporaryFolder root;
    const auto expectRefused = [&](const std::string& data, const std::string& reason) {
        const ToolRun run = runOn(root, {"servers", "deliver", data, "m"});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.errors, "ygconfig servers deliver: \"" + data + "\": " + reason + "\n");
    };
    expectRefused(root.at("none.xml"), "No such file or directory");
    expectRefused(root.path(), "Is a directory");
    expectRefused("", "No such file or directory");
    EXPECT_FALSE(std::filesystem::exists(root.at("user")));
}

std::string chosen(std::vector<std::string> words) {
    words.insert(words.begin(), "choose");
    const ToolRun run = runTool(words);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    return run.output;
}

TEST(Choose, AnswersHostAndPort) {
    EXPECT_EQ(chosen({"h:80"}), "\"h:80\"\n");
    EXPECT_EQ(chosen({"40:主机:80"}), "\"主机:80\"\n");
    EXPECT_EQ(chosen({"", "x", "h:80", "--root", "."}), "\"h:80\"\n");
    EXPECT_THAT(chosen({"99:a:1", "b:2"}), AnyOf("\"a:1\"\n", "\"b:2\"\n"));
}

TEST(Choose, AnswersEmptyTextWhenThereIsNothingToChoose) {
    EXPECT_EQ(chosen({}), "\"\"\n");
    EXPECT_EQ(chosen({"--weighted"}), "\"\"\n");
    EXPECT_EQ(chosen({"", "x"}), "\"\"\n");
}

TEST(Choose, AnswersTheHeavyHostWithoutPort) {
    EXPECT_EQ(chosen({"--weighted", "100:a:80"}), "\"a\"\n");
    EXPECT_EQ(chosen({"50:a:80", "--weighted", "50:a:80", "--weighted"}), "\"a\"\n");
    EXPECT_THAT(chosen({"--weighted", "50:a:1", "50:b:2"}), AnyOf("\"a\"\n", "\"b\"\n"));
}

TEST(Choose, TakesEachItemAsItStands) {
    // Weights that add up to 0 answer the first item.
    EXPECT_EQ(chosen({"--weighted", "[a,b]", "c"}), "\"[a,b]\"\n");
    EXPECT_EQ(chosen({"--weighted", "{}"}), "\"{}\"\n");
    EXPECT_EQ(chosen({"--weighted", "", "c"}), "\"\"\n");
    EXPECT_EQ(chosen({"--weighted", "0:a:80", "c"}), "\"0:a:80\"\n");
    EXPECT_EQ(chosen({"--weighted", "--", "--gray", "--"}), "\"--gray\"\n");
    EXPECT_EQ(chosen({"--weighted", "--", "--", "c"}), "\"--\"\n");
    EXPECT_EQ(chosen({"[1:a:2,x]"}), "\"a:2,x]\"\n");
}

TEST(Choose, ChoosesAgainInEachRun) {
    const auto isEverDifferent = [](const std::vector<std::string>& words) {
        const std::string first = chosen(words);
        for (int i = 0; i < 64; ++i) {
            if (chosen(words) != first)
                return true;
        }
        return false;
    };
    // 64 draws from halves are all like the first once in 2^64 times.
    EXPECT_TRUE(isEverDifferent({"a:1", "b:1"}));
}

}  // namespace
