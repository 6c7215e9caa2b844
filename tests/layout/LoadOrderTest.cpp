// SPDX-License-Identifier: MIT
//
// The order of a load: what the host is asked, what is logged, and how often each file is read.
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "diagnostics/RecordingSink.h"
#include "layout/LayoutTest.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::YGStyleConfigLoad;
using yg::testing::allLayoutFiles;
using yg::testing::keys;
using yg::testing::LayoutFile;
using yg::testing::LayoutTest;
using yg::testing::RecordingHost;
using yg::testing::RecordingSink;
using yg::testing::ScopedHost;

/// Keeps questions and log lines in one list, with the temporary root left out.
class EventHost : public RecordingHost {
public:
    explicit EventHost(std::string root) : root_(std::move(root)) {}

    std::vector<std::string> events;

    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override {
        events.push_back("soft " + std::to_string(kind) + " " + std::string(fileName));
        return RecordingHost::getSoftOptimizeConfigFilePath(kind, fileName);
    }

    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override {
        events.push_back("base " + std::to_string(kind) + " " + std::string(fileName));
        return RecordingHost::getBaseOptimizeConfigFilePath(kind, fileName);
    }

    void writeLog(yg::LogChannel channel, std::string_view message) override {
        EXPECT_EQ(channel, yg::LogChannel::runtime);
        events.push_back(yg::text::replaceAll(message, root_, ""));
    }

private:
    std::string root_;
};

class LoadOrder : public LayoutTest {
protected:
    LoadOrder() : events(root.path() + "/") {
        events->softOptimizeFolder = root.at("soft");
        events->baseOptimizeFolder = root.at("base");
    }

    ScopedHost<EventHost> events;
};

TEST_F(LoadOrder, AsksTheHostForThreePathsAndThenReadsTheFilesStepByStep) {
    load();
    EXPECT_THAT(
        events->events,
        ElementsAre("initWithStyleConfigPath", "soft 0 styles.xml", "soft 0 magic.xml",
                    "base 0 reuse_panels.xml",
                    "load style config fail:base/reuse_panels.xml: No such file or directory",
                    "load style config fail:config/magic.xml: No such file or directory",
                    "load style config fail:config/styles.xml: No such file or directory",
                    "load style config fail:soft/magic.xml: No such file or directory",
                    "load style config fail:soft/styles.xml: No such file or directory",
                    "load style config fail:config/tabs.xml: No such file or directory",
                    "load style config fail:soft/styles.xml: No such file or directory",
                    "load style config fail:config/styles.xml: No such file or directory",
                    "load style config fail:config/magic.xml: No such file or directory",
                    "load style config fail:base/reuse_panels.xml: No such file or directory"));
    // Nothing else is asked, and a load asks for no mapping.
    EXPECT_THAT(events->questions(),
                ElementsAre("getSoftOptimizeConfigFilePath(0, styles.xml)",
                            "getSoftOptimizeConfigFilePath(0, magic.xml)",
                            "getBaseOptimizeConfigFilePath(0, reuse_panels.xml)"));
}

TEST_F(LoadOrder, LogsOnlyItsBeginningWhenEveryFileIsThere) {
    for (const LayoutFile file : allLayoutFiles)
        write(file, "<r/>");
    load();
    EXPECT_THAT(events->events, ElementsAre("initWithStyleConfigPath", "soft 0 styles.xml",
                                            "soft 0 magic.xml", "base 0 reuse_panels.xml"));
}

TEST_F(LoadOrder, NeverLogsAPathThatIsAbsentOrEmpty) {
    events->softOptimizeFolder = std::nullopt;
    events->baseOptimizeFolder = std::nullopt;
    loader.initWithStyleConfigPath(std::nullopt, "", std::nullopt);
    EXPECT_THAT(events->events,
                ElementsAre("initWithStyleConfigPath", "soft 0 custompage_template.xml",
                            "soft 0 magic_panels.xml", "base 0 reuse_panels.xml"));
    EXPECT_EQ(loader.styleInfos(), nullptr);
    EXPECT_EQ(loader.tabStyleInfos(), nullptr);
    ASSERT_NE(loader.magicPanelInfos(), nullptr);
    EXPECT_TRUE(loader.magicPanelInfos()->empty());
}

TEST_F(LoadOrder, TreatsAnEmptyPathFromTheHostAsNoFile) {
    events->paths = {{"styles.xml", ""}, {"magic.xml", ""}, {"reuse_panels.xml", ""}};
    write(LayoutFile::styles, "<s><style name='a'/></s>");
    write(LayoutFile::tabs, "<s/>");
    write(LayoutFile::magicPanels, "<m/>");
    load();
    EXPECT_THAT(events->events, ElementsAre("initWithStyleConfigPath", "soft 0 styles.xml",
                                            "soft 0 magic.xml", "base 0 reuse_panels.xml"));
    EXPECT_THAT(keys(loader.styleInfos()), ElementsAre("a"));
}

/// A host whose every answer is an exception.
class ThrowingHost : public RecordingHost {
public:
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        throw std::runtime_error("no path");
    }
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        throw std::runtime_error("no path");
    }
    std::shared_ptr<const yg::MappingDic> getMappingDicForKey(std::string_view) override {
        throw std::runtime_error("no mapping");
    }
    void writeLog(yg::LogChannel, std::string_view) override { throw std::runtime_error("no log"); }
};

TEST_F(LoadOrder, LoadsTheGivenFilesWithAHostThatThrows) {
    write(LayoutFile::styles, "<s><style name='a'/></s>");
    const ScopedHost<ThrowingHost> throwing;
    load();
    EXPECT_THAT(keys(loader.styleInfos()), ElementsAre("a"));
    EXPECT_EQ(YGStyleConfigLoad::getWildCardKeyWithValue("a"), std::nullopt);
}

struct FileNames {
    std::optional<std::string_view> stylePath;
    std::optional<std::string_view> magicPath;
    std::string styleFile;
    std::string magicFile;
};

TEST_F(LoadOrder, AsksForTheLastComponentsOfThePathsOrForTheUsualNames) {
    const FileNames rows[] = {
        {"/a/b.xml", "/c/d.xml", "b.xml", "d.xml"},
        {"b.xml", "d.xml", "b.xml", "d.xml"},
        {"/a/b.xml/", "c//d.xml//", "b.xml", "d.xml"},
        {"/a//b", "./d", "b", "d"},
        {"/a/页面 1.xml", "/a/..", "页面 1.xml", ".."},
        {"/", "//", "/", "/"},
        {"", "", "custompage_template.xml", "magic_panels.xml"},
        {std::nullopt, std::nullopt, "custompage_template.xml", "magic_panels.xml"},
        {std::nullopt, "/c/d.xml", "custompage_template.xml", "d.xml"},
        {"/a/b.xml", std::nullopt, "b.xml", "magic_panels.xml"},
    };
    for (const FileNames& row : rows) {
        events->clear();
        YGStyleConfigLoad().initWithStyleConfigPath(row.stylePath, "/t/tabs.xml", row.magicPath);
        EXPECT_THAT(events->questions(),
                    ElementsAre("getSoftOptimizeConfigFilePath(0, " + row.styleFile + ")",
                                "getSoftOptimizeConfigFilePath(0, " + row.magicFile + ")",
                                "getBaseOptimizeConfigFilePath(0, reuse_panels.xml)"));
    }
}

struct Reads {
    LayoutFile file;
    std::size_t steps;  ///< how many steps of a load read the file
};

constexpr Reads readsOfALoad[] = {
    {LayoutFile::styles, 2},          {LayoutFile::tabs, 1},
    {LayoutFile::magicPanels, 2},     {LayoutFile::softStyles, 2},
    {LayoutFile::softMagicPanels, 1}, {LayoutFile::reusePanels, 2},
};

TEST_F(LoadOrder, LogsAMissingFileAsOftenAsAStepReadsIt) {
    for (const Reads& reads : readsOfALoad) {
        for (const LayoutFile file : allLayoutFiles)
            write(file, "<r/>");
        std::filesystem::remove(path(reads.file));
        events->events.clear();
        load();
        std::vector<std::string> expected(
            reads.steps, "load style config fail:" + std::string(placeOf(reads.file)) +
                             ": No such file or directory");
        EXPECT_EQ(std::vector<std::string>(events->events.begin() + 4, events->events.end()),
                  expected);
    }
}

TEST_F(LoadOrder, LogsABrokenFileAsOftenAsAStepReadsIt) {
    for (const Reads& reads : readsOfALoad) {
        for (const LayoutFile file : allLayoutFiles)
            write(file, "<r/>");
        write(reads.file, "<r>\n<a>\n</r>");
        events->events.clear();
        load();
        ASSERT_EQ(events->events.size(), 4 + reads.steps) << reads.file;
        const std::string& line = events->events[4];
        EXPECT_TRUE(line.starts_with("load style config fail:Line 3: ")) << line;
        EXPECT_EQ(line.find('\n'), std::string::npos);
        EXPECT_EQ(events->events.back(), line);
    }
}

TEST_F(LoadOrder, ReadsEachFileOnce) {
    for (const LayoutFile file : allLayoutFiles)
        write(file, "<r/>");
    RecordingSink sink(root.path());
    YGStyleConfigLoad fresh(&sink);
    load(fresh);
    EXPECT_THAT(sink.files,
                ElementsAre("base/reuse_panels.xml", "config/magic.xml", "config/styles.xml",
                            "soft/magic.xml", "soft/styles.xml", "config/tabs.xml"));
}

TEST_F(LoadOrder, ReadsAMissingOrBrokenFileOnceToo) {
    write(LayoutFile::styles, "<r>");
    RecordingSink sink(root.path());
    YGStyleConfigLoad fresh(&sink);
    load(fresh);
    EXPECT_THAT(sink.files,
                ElementsAre("base/reuse_panels.xml", "config/magic.xml", "config/styles.xml",
                            "soft/magic.xml", "soft/styles.xml", "config/tabs.xml"));
}

TEST_F(LoadOrder, ReadsOneFileOnceThatServesAsSeveral) {
    write(LayoutFile::styles, "<r><style name='a'><panel name='p'/></style></r>");
    events->paths = {{"styles.xml", path(LayoutFile::styles)},
                     {"reuse_panels.xml", path(LayoutFile::styles)}};
    RecordingSink sink(root.path());
    YGStyleConfigLoad fresh(&sink);
    const std::string one = path(LayoutFile::styles);
    fresh.initWithStyleConfigPath(one, one, one);
    EXPECT_THAT(sink.files, ElementsAre("config/styles.xml"));
    EXPECT_THAT(keys(fresh.styleInfos()), ElementsAre("a"));
    EXPECT_THAT(keys(fresh.tabStyleInfos()), ElementsAre("a"));
    EXPECT_THAT(keys(fresh.magicPanelInfos()), ElementsAre("a"));
}

TEST_F(LoadOrder, ReadsAFileAnewInALaterLoad) {
    write(LayoutFile::styles, "<r><style name='a'/></r>");
    load();
    write(LayoutFile::styles, "<r><style name='b'/></r>");
    load();
    EXPECT_THAT(keys(loader.styleInfos()), ElementsAre("b"));
}

TEST_F(LoadOrder, ReportsTheReadingOfAFileByAnOperationOfItsOwn) {
    write(LayoutFile::styles, "<r/>");
    RecordingSink sink(root.path());
    YGStyleConfigLoad fresh(&sink);
    fresh.loadConfig(path(LayoutFile::styles), true);
    EXPECT_THAT(sink.files, ElementsAre("config/styles.xml"));
}

TEST_F(LoadOrder, AsksForTheWildcardMappingOncePerSlotWithoutThatMember) {
    write(LayoutFile::styles, R"(<s><style name="t"><panel><magic_panels name="g"/>
        <magic_panels name="g"/><magic_panels name="none"/></panel></style></s>)");
    write(LayoutFile::softStyles, "<s/>");
    write(LayoutFile::magicPanels,
          "<m><magic_panels name='g'><magic_panel "
          "name='x'><panel/></magic_panel></magic_panels></m>");
    load();
    events->clear();
    loader.createXMLElementWithStyleName("t-x-x-x");
    EXPECT_THAT(events->questions(), IsEmpty());
    loader.createXMLElementWithStyleName("t-x-y-z");
    EXPECT_THAT(events->questions(), ElementsAre("getMappingDicForKey(模版通配)"));
}

}  // namespace
