// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/StandAloneHost.h"

#include "files/ScopedFileLayer.h"
#include "files/TemporaryFolder.h"

namespace {

using testing::ElementsAre;
using yg::StandAloneHost;
using yg::files::TemporaryFolder;
using yg::testing::ScopedFileLayer;

std::shared_ptr<StandAloneHost> open(const TemporaryFolder& root) {
    StandAloneHost::Opened opened = StandAloneHost::open(root.path());
    EXPECT_TRUE(opened) << opened.error;
    EXPECT_EQ(opened.error, "");
    return opened.host;
}

std::optional<std::string> readPath(StandAloneHost& host,
                                    std::optional<std::string_view> fileName) {
    return host.getStorageFilePath(1, std::nullopt, fileName, false);
}

std::optional<std::string> writePath(StandAloneHost& host,
                                     std::optional<std::string_view> fileName) {
    return host.getStorageFilePath(1, std::nullopt, fileName, true);
}

TEST(StandAloneHost, ReadsTheUsersCopyBeforeTheShippedOne) {
    const TemporaryFolder root;
    const auto host = open(root);
    EXPECT_EQ(readPath(*host, "a.xml"), root.at("user/a.xml"));
    root.write("storage/a.xml", "shipped");
    EXPECT_EQ(readPath(*host, "a.xml"), root.at("storage/a.xml"));
    root.write("user/a.xml", "own");
    EXPECT_EQ(readPath(*host, "a.xml"), root.at("user/a.xml"));
}

TEST(StandAloneHost, AFolderIsNoCopyOfAFile) {
    const TemporaryFolder root;
    const auto host = open(root);
    root.makeFolder("user/a.xml");
    root.makeFolder("storage/b.xml");
    root.write("storage/a.xml", "shipped");
    EXPECT_EQ(readPath(*host, "a.xml"), root.at("storage/a.xml"));
    EXPECT_EQ(readPath(*host, "b.xml"), root.at("user/b.xml"));
}

TEST(StandAloneHost, ReadingMakesNoFolder) {
    const TemporaryFolder root;
    readPath(*open(root), "a.xml");
    EXPECT_FALSE(std::filesystem::exists(root.at("user")));
}

TEST(StandAloneHost, WritesGoToTheUsersFolderWhichIsMade) {
    const TemporaryFolder root;
    const auto host = open(root);
    root.write("storage/a.xml", "shipped");
    EXPECT_EQ(writePath(*host, "a.xml"), root.at("user/a.xml"));
    EXPECT_TRUE(std::filesystem::is_directory(root.at("user")));
    EXPECT_EQ(writePath(*host, "a.xml"), root.at("user/a.xml"));
    root.write("user/a.xml", "own");
    EXPECT_EQ(readPath(*host, "a.xml"), root.at("user/a.xml"));
}

TEST(StandAloneHost, WritesHaveNoLocationWhenTheFolderCannotBeMade) {
    const TemporaryFolder root;
    root.write("user", "a file");
    EXPECT_EQ(writePath(*open(root), "a.xml"), std::nullopt);
    StandAloneHost nowhere(root.at("missing"));
    EXPECT_EQ(writePath(nowhere, "a.xml"), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(root.at("missing")));
}

TEST(StandAloneHost, TheUsersFolderIsBroughtToTheDiskOnce) {
    const TemporaryFolder root;
    ScopedFileLayer layer;
    const auto syncs = [&] {
        return std::count(layer->happened.begin(), layer->happened.end(), "sync");
    };
    const auto host = open(root);
    writePath(*host, "a.xml");
    EXPECT_EQ(syncs(), 1);
    writePath(*host, "b.xml");
    EXPECT_EQ(syncs(), 1);
    // Whoever made it may have been killed at once.
    writePath(*open(root), "a.xml");
    EXPECT_EQ(syncs(), 2);
    std::filesystem::remove(root.at("user"));
    writePath(*host, "a.xml");
    EXPECT_EQ(syncs(), 3);
}

TEST(StandAloneHost, WritesHaveNoLocationUntilTheNewFolderIsSafe) {
    const TemporaryFolder root;
    const auto host = open(root);
    for (const int error : {EIO, ENOSPC, EACCES, EMFILE, EROFS, EDQUOT}) {
        for (const std::string_view failing : {"makeFolder", "openFolder", "sync"}) {
            ScopedFileLayer layer;
            layer->errorOf = [&](std::string_view call) { return call == failing ? error : 0; };
            EXPECT_EQ(writePath(*host, "a.xml"), std::nullopt);
            EXPECT_FALSE(std::filesystem::exists(root.at("user")));
        }
    }
    EXPECT_EQ(writePath(*host, "a.xml"), root.at("user/a.xml"));
}

TEST(StandAloneHost, TheUsersFolderMayBeALink) {
    const TemporaryFolder root;
    root.makeFolder("elsewhere");
    std::filesystem::create_directory_symlink("elsewhere", root.at("user"));
    EXPECT_EQ(writePath(*open(root), "a.xml"), root.at("user/a.xml"));
}

TEST(StandAloneHost, AFileNameThatLeavesTheFolderHasNoLocation) {
    const TemporaryFolder root;
    root.write("b", "outside");
    const auto host = open(root);
    for (const std::optional<std::string_view> name : {std::optional<std::string_view>(),
                                                       {""},
                                                       {"."},
                                                       {".."},
                                                       {"../b"},
                                                       {"/etc/passwd"},
                                                       {"a/b"},
                                                       {"a/"},
                                                       {"/"},
                                                       {std::string_view("a\0b", 3)}}) {
        SCOPED_TRACE(name.value_or("absent"));
        EXPECT_EQ(readPath(*host, name), std::nullopt);
        EXPECT_EQ(writePath(*host, name), std::nullopt);
        EXPECT_EQ(host->getSoftOptimizeConfigFilePath(0, name.value_or("")), std::nullopt);
        EXPECT_EQ(host->getBaseOptimizeConfigFilePath(0, name.value_or("")), std::nullopt);
    }
    EXPECT_FALSE(std::filesystem::exists(root.at("user")));
    EXPECT_EQ(readPath(*host, "..a"), root.at("user/..a"));
    EXPECT_EQ(readPath(*host, "设置.xml"), root.at("user/设置.xml"));
}

TEST(StandAloneHost, KnowsTheStorageAreaOneWithoutSubFoldersOnly) {
    const TemporaryFolder root;
    const auto host = open(root);
    EXPECT_EQ(host->getStorageFilePath(1, "", "a", false), root.at("user/a"));
    EXPECT_EQ(host->getStorageFilePath(1, "sub", "a", false), std::nullopt);
    EXPECT_EQ(host->getStorageFilePath(0, std::nullopt, "a", false), std::nullopt);
    EXPECT_EQ(host->getStorageFilePath(2, std::nullopt, "a", true), std::nullopt);
    EXPECT_EQ(host->getStorageFilePath(-1, std::nullopt, "a", true), std::nullopt);
}

TEST(StandAloneHost, ConfigurationFilesStandInTheirFoldersWhetherOrNotTheyExist) {
    const TemporaryFolder root;
    const auto host = open(root);
    EXPECT_EQ(host->getSoftOptimizeConfigFilePath(0, "magic_panels.xml"),
              root.at("soft_optimize/magic_panels.xml"));
    EXPECT_EQ(host->getBaseOptimizeConfigFilePath(0, "reuse_panels.xml"),
              root.at("base_optimize/reuse_panels.xml"));
    EXPECT_EQ(host->getSoftOptimizeConfigFilePath(1, "a"), std::nullopt);
    EXPECT_EQ(host->getBaseOptimizeConfigFilePath(-1, "a"), std::nullopt);
}

TEST(StandAloneHost, FolderKindFourHoldsTheImages) {
    const TemporaryFolder root;
    const auto host = open(root);
    EXPECT_EQ(host->getDefualtFolderPath(4), root.at("images"));
    EXPECT_EQ(host->getDefualtFolderPath(0), std::nullopt);
    EXPECT_EQ(host->getDefualtFolderPath(3), std::nullopt);
}

TEST(StandAloneHost, PathsBeginWithTheRootAsItWasGiven) {
    EXPECT_EQ(StandAloneHost("data/").getDefualtFolderPath(4), "data/images");
    EXPECT_EQ(StandAloneHost("/").getDefualtFolderPath(4), "/images");
    EXPECT_EQ(StandAloneHost(".").getDefualtFolderPath(4), "./images");
    EXPECT_EQ(StandAloneHost("").getDefualtFolderPath(4), "images");
}

TEST(StandAloneHost, AMissingSettingsFileSetsNothing) {
    const TemporaryFolder root;
    const auto host = open(root);
    EXPECT_EQ(host->getUserRightDescription(), std::nullopt);
    EXPECT_EQ(host->configServer(), std::nullopt);
    EXPECT_EQ(host->getMappingDicForKey("模版通配"), nullptr);
}

TEST(StandAloneHost, ReadsItsSettings) {
    const TemporaryFolder root;
    root.write("host.json",
               "\xef\xbb\xbf"
               R"({
        "rightLevel": "l2",
        "configServer": "127.0.0.1:8080",
        "mappings": {
            "模版通配": { "STOCK": ["SH01", "SZ02"], "NONE": [] },
            "empty": {}
        },
        "comment": [1, null]
    })");
    const auto host = open(root);
    EXPECT_EQ(host->getUserRightDescription(), "l2");
    EXPECT_EQ(host->configServer(), "127.0.0.1:8080");
    const auto mapping = host->getMappingDicForKey("模版通配");
    ASSERT_NE(mapping, nullptr);
    EXPECT_EQ(mapping->size(), 2U);
    EXPECT_THAT(mapping->at("STOCK"), ElementsAre("SH01", "SZ02"));
    EXPECT_THAT(mapping->at("NONE"), testing::IsEmpty());
    ASSERT_NE(host->getMappingDicForKey("empty"), nullptr);
    EXPECT_TRUE(host->getMappingDicForKey("empty")->empty());
    EXPECT_EQ(host->getMappingDicForKey("other"), nullptr);
}

TEST(StandAloneHost, NullSettingsCountAsMissing) {
    const TemporaryFolder root;
    root.write("host.json", R"({"rightLevel": null, "configServer": null, "mappings": null})");
    const auto host = open(root);
    EXPECT_EQ(host->getUserRightDescription(), std::nullopt);
    EXPECT_EQ(host->configServer(), std::nullopt);
    EXPECT_EQ(host->getMappingDicForKey(""), nullptr);
}

TEST(StandAloneHost, AnEmptyRightLevelIsKeptAnEmptyServerIsNone) {
    const TemporaryFolder root;
    root.write("host.json", R"({"rightLevel": "", "configServer": ""})");
    const auto host = open(root);
    EXPECT_EQ(host->getUserRightDescription(), "");
    EXPECT_EQ(host->configServer(), std::nullopt);
}

TEST(StandAloneHost, TheRightLevelCanBeOverridden) {
    const TemporaryFolder root;
    root.write("host.json", R"({"rightLevel": "free"})");
    const auto host = open(root);
    host->overrideUserRight("l2");
    EXPECT_EQ(host->getUserRightDescription(), "l2");
    host->overrideUserRight("");
    EXPECT_EQ(host->getUserRightDescription(), "");
    host->overrideUserRight(std::nullopt);
    EXPECT_EQ(host->getUserRightDescription(), "free");
}

TEST(StandAloneHost, SaysWhereItsSettingsAreWrong) {
    struct Row {
        std::string_view settings;
        std::string_view error;
    };
    for (const Row& row : {
             Row{"", "line 1, column 1: the text ends too early"},
             Row{" \n", "line 2, column 1: the text ends too early"},
             Row{"{\n  \"rightLevel\": \"free\",\n}", "line 3, column 1: not valid JSON"},
             Row{"{\"配置\" 1}", "line 1, column 7: not valid JSON"},
             Row{"{} x", "line 1, column 4: not valid JSON"},
             Row{"{\"a\":\n \"\xff\"}", "line 2, column 3: invalid UTF-8"},
             Row{"\xef\xbb\xbf{x", "line 1, column 2: not valid JSON"},
             Row{"[]", "line 1, column 1: not a JSON object"},
             Row{"null", "line 1, column 1: not a JSON object"},
             Row{"{\"rightLevel\": 2}", "\"rightLevel\" must be a text"},
             Row{"{\"rightLevel\": {}}", "\"rightLevel\" must be a text"},
             Row{"{\"configServer\": true}", "\"configServer\" must be a text"},
             Row{"{\"mappings\": []}", "\"mappings\" must be an object"},
             Row{"{\"mappings\": {\"k\": []}}", "\"mappings\".\"k\" must be an object"},
             Row{"{\"mappings\": {\"k\": null}}", "\"mappings\".\"k\" must be an object"},
             Row{"{\"mappings\": {\"k\": {\"n\": \"t\"}}}",
                 "\"mappings\".\"k\".\"n\" must be a list of texts"},
             Row{"{\"mappings\": {\"k\": {\"n\": [\"t\", 1]}}}",
                 "\"mappings\".\"k\".\"n\" must be a list of texts"},
         }) {
        SCOPED_TRACE(row.settings);
        const TemporaryFolder root;
        root.write("host.json", row.settings);
        const StandAloneHost::Opened opened = StandAloneHost::open(root.path());
        EXPECT_FALSE(opened);
        EXPECT_EQ(opened.host, nullptr);
        EXPECT_EQ(opened.error, root.at("host.json") + ": " + std::string(row.error));
    }
}

TEST(StandAloneHost, SettingsThatCannotBeReadAreAnError) {
    for (const std::string_view kind : {"folder", "dangling link", "pipe"}) {
        SCOPED_TRACE(kind);
        const TemporaryFolder root;
        if (kind == "folder") {
            root.makeFolder("host.json");
        } else if (kind == "pipe") {
            ASSERT_EQ(::mkfifo(root.at("host.json").c_str(), 0600), 0);
        } else {
            std::filesystem::create_symlink("nowhere", root.at("host.json"));
        }
        const StandAloneHost::Opened opened = StandAloneHost::open(root.path());
        EXPECT_FALSE(opened);
        EXPECT_THAT(opened.error, testing::StartsWith(root.at("host.json") + ": "));
        EXPECT_THAT(opened.error, testing::Not(testing::HasSubstr("\n")));
    }
}

TEST(StandAloneHost, TheRootHasToBeAFolder) {
    const TemporaryFolder root;
    root.write("file", "x");
    EXPECT_EQ(StandAloneHost::open(root.at("none")).error,
              "root folder \"" + root.at("none") + "\": No such file or directory");
    EXPECT_EQ(StandAloneHost::open(root.at("file")).error,
              "root folder \"" + root.at("file") + "\": Not a directory");
    EXPECT_EQ(StandAloneHost::open("").error, "root folder \"\": No such file or directory");
    EXPECT_THAT(
        StandAloneHost::open(root.path() + std::string("\0x", 2)).error,
        testing::AllOf(testing::StartsWith("root folder "), testing::EndsWith("Invalid argument")));
}

TEST(StandAloneHost, CanGoOnWithDefaultsAndSaySoOnce) {
    const TemporaryFolder root;
    root.write("host.json", "{");
    testing::internal::CaptureStderr();
    const auto host = StandAloneHost::openOrDefaults(root.path());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              root.at("host.json") + ": line 1, column 2: the text ends too early\n");
    ASSERT_NE(host, nullptr);
    EXPECT_EQ(host->getUserRightDescription(), std::nullopt);
    EXPECT_EQ(host->getDefualtFolderPath(4), root.at("images"));
    root.write("host.json", R"({"rightLevel": "l2"})");
    EXPECT_EQ(StandAloneHost::openOrDefaults(root.path())->getUserRightDescription(), "l2");
}

TEST(StandAloneHost, BothLogsGoToStandardErrorOneLineEach) {
    StandAloneHost host(".");
    testing::internal::CaptureStderr();
    host.writeLog(yg::LogChannel::runtime, "load style config fail:a\nb");
    host.writeLog(yg::LogChannel::business, "文件不存在");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "load style config fail:a b\n文件不存在\n");
}

}  // namespace
