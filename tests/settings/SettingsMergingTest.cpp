// SPDX-License-Identifier: MIT
//
// Stores of one file that merge: each keeps what the others have written. The stand-alone host has
// shipped files in storage/ and the user's own in user/.
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/files/FolderLock.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"

#include "diagnostics/RecordingSink.h"
#include "files/ScopedFileLayer.h"
#include "files/TemporaryFolder.h"
#include "host/RecordingHost.h"

namespace yg {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;
using yg::testing::RecordingSink;
using yg::testing::ScopedFileLayer;

constexpr std::string_view settings =
    "<config><!-- c --><a><x description=\"d\">1</x></a><b/></config>";

class SettingsMerging : public ::testing::Test {
protected:
    SettingsMerging() { root.write("storage/app.xml", settings); }

    std::shared_ptr<YGAppConfigManager> open(OtherWriters others = OtherWriters::merged) {
        return YGAppConfigManager::initWithFileName("app.xml", &sink, others);
    }
    std::string own() const { return files::contentOf(root.at("user/app.xml")); }

    /// The item's text in the file as it is now.
    static std::string stored(std::string_view section, std::string_view item) {
        return YGAppConfigManager::initWithFileName("app.xml")
            ->getItemText(section, item)
            .value_or("none");
    }

    /// The findings since the last call.
    std::vector<std::string> findings() {
        std::vector<std::string> lines = sink.lines();
        sink = RecordingSink();
        return lines;
    }

    const yg::files::TemporaryFolder root;
    const yg::testing::ScopedHost<StandAloneHost> host{root.path()};
    RecordingSink sink;
};

TEST_F(SettingsMerging, KeepsTheItemsOfAllWriters) {
    const auto one = open();
    const auto two = open();
    EXPECT_TRUE(one->setConfigItem("a", "one", "first", "1"));
    EXPECT_TRUE(two->setConfigItem("a", "two", "", "2"));
    EXPECT_TRUE(two->setConfigItem("a", "one", "second", "3"));
    EXPECT_TRUE(one->setConfigItem("new", "one", "", "4"));
    EXPECT_EQ(own(), R"(<?xml version="1.0" encoding="UTF-8"?>
<config>
    <!-- c -->
    <a>
        <x description="d">1</x>
        <one description="first">3</one>
        <two>2</two>
    </a>
    <b></b>
    <new>
        <one>4</one>
    </new>
</config>
)");
    EXPECT_EQ(files::contentOf(root.at("storage/app.xml")), settings);
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(SettingsMerging, SeesWhatOthersWroteAfterItsOwnNextSave) {
    const auto one = open();
    const auto two = open();
    EXPECT_TRUE(one->setConfigItem("a", "x", "", "2"));
    EXPECT_EQ(two->getItemText("a", "x"), "1");
    EXPECT_TRUE(two->setConfigItem("b", "y", "", "3"));
    EXPECT_EQ(two->getItemText("a", "x"), "2");
    EXPECT_EQ(two->docment().serialise(xml::Form::pretty), own());
}

// The default: a save undoes what another store has written since this one was opened.
TEST_F(SettingsMerging, IsLeftOutByAStoreThatIgnoresOthers) {
    const auto one = open(OtherWriters::ignored);
    const auto two = open(OtherWriters::ignored);
    const auto three = open();
    EXPECT_TRUE(one->setConfigItem("a", "one", "", "1"));
    EXPECT_TRUE(two->setConfigItem("a", "two", "", "2"));
    EXPECT_EQ(stored("a", "one"), "none");
    EXPECT_TRUE(three->setConfigItem("a", "three", "", "3"));
    EXPECT_EQ(stored("a", "two"), "2");
    EXPECT_TRUE(one->setConfigItem("a", "x", "", "2"));
    EXPECT_EQ(stored("a", "two"), "none");
    EXPECT_EQ(stored("a", "three"), "none");
}

TEST_F(SettingsMerging, MakesAQueryAgainOnWhatTheFileIsNow) {
    root.write("user/app.xml", "<config><a><x>1</x><x>2</x></a></config>");
    const auto store = open();
    findings();
    root.write("user/app.xml", "<config><a><x>1</x><x>2</x><x>3</x></a><z/></config>");
    EXPECT_TRUE(store->setConfigItem("a", "x[last()]", "", "new"));
    EXPECT_EQ(store->getItemText("a", "x[3]"), "new");
    EXPECT_EQ(store->getItemText("a", "x[2]"), "2");
    EXPECT_TRUE(store->setConfigItem("z", "y", "", "4"));
    root.write("user/app.xml", "<config><a/></config>");
    findings();
    EXPECT_FALSE(store->setConfigItem("a", "x[last()]", "", "new"));
    EXPECT_THAT(findings(), ElementsAre("no-element-name =x[last()]"));
    EXPECT_EQ(own(), "<config><a/></config>");
}

TEST_F(SettingsMerging, RefusesANameWithoutMakingAFolder) {
    EXPECT_FALSE(open()->setConfigItem("a", "1 2", "", "t"));
    EXPECT_FALSE(open()->setConfigItem("a", std::string(50'100, 'n'), "", "t"));
    EXPECT_FALSE(fs::exists(root.at("user")));
}

// ---- What could not be saved -----------------------------------------------------------------

TEST_F(SettingsMerging, MakesAChangeThatCouldNotBeSavedAgainWithTheNextOne) {
    const auto one = open();
    const auto two = open();
    {
        ScopedFileLayer disk;
        disk->errorOf = [](std::string_view call) { return call == "write" ? ENOSPC : 0; };
        EXPECT_TRUE(one->setConfigItem("a", "one", "why", "1"));
        EXPECT_TRUE(one->setConfigItem("a", "one", "no", "2"));
        EXPECT_TRUE(one->setConfigItem("a", "x[1]", "", "query"));
        const std::string line =
            "unsaved-file =" + root.at("user/app.xml") + ": No space left on device";
        EXPECT_THAT(findings(), ElementsAre(line, line, line));
    }
    EXPECT_EQ(one->getItemText("a", "one"), "2");
    EXPECT_TRUE(two->setConfigItem("a", "two", "", "2"));
    EXPECT_EQ(stored("a", "one"), "none");
    EXPECT_TRUE(one->setConfigItem("a", "three", "", "3"));
    EXPECT_EQ(stored("a", "one"), "2");
    EXPECT_EQ(stored("a", "two"), "2");
    EXPECT_EQ(stored("a", "three"), "3");
    EXPECT_EQ(stored("a", "x"), "query");
    EXPECT_EQ(stored("a", "one[@description='why']"), "2");
    // They are on the disk now, and whoever changes them afterwards is not undone.
    EXPECT_TRUE(two->setConfigItem("a", "one", "", "4"));
    EXPECT_TRUE(one->setConfigItem("a", "three", "", "5"));
    EXPECT_EQ(stored("a", "one"), "4");
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(SettingsMerging, KeepsAMergeThatCouldNotBeSaved) {
    const auto one = open();
    const auto two = open();
    EXPECT_TRUE(two->setConfigItem("a", "two", "", "2"));
    {
        ScopedFileLayer disk;
        disk->errorOf = [](std::string_view call) { return call == "rename" ? EIO : 0; };
        EXPECT_TRUE(one->setConfigItem("a", "one", "", "1"));
        EXPECT_TRUE(one->setConfigItem("a", "three", "", "3"));
    }
    EXPECT_EQ(one->getItemText("a", "two"), "2");
    EXPECT_TRUE(two->setConfigItem("a", "two", "", "4"));
    EXPECT_TRUE(one->setConfigItem("a", "x", "", "5"));
    EXPECT_EQ(stored("a", "one") + stored("a", "two") + stored("a", "three") + stored("a", "x"),
              "1435");
}

// The new content may be there although the write failed: in its very last step.
TEST_F(SettingsMerging, IsNotMisledByAWriteThatFailsInItsLastStep) {
    const auto one = open();
    const auto two = open();
    {
        ScopedFileLayer disk;
        int syncs = 0;
        disk->errorOf = [&](std::string_view call) {
            return call == "sync" && ++syncs == 2 ? EIO : 0;
        };
        EXPECT_TRUE(one->setConfigItem("a", "one", "", "1"));
    }
    EXPECT_TRUE(two->setConfigItem("a", "two", "", "2"));
    EXPECT_TRUE(one->setConfigItem("a", "x", "", "3"));
    EXPECT_EQ(stored("a", "one") + stored("a", "two") + stored("a", "x"), "123");
}

TEST_F(SettingsMerging, SaysWhichChangeCannotBeMadeAgain) {
    root.write("user/app.xml", "<config><a><x>1</x><x>2</x></a></config>");
    const auto store = open();
    {
        ScopedFileLayer disk;
        disk->errorOf = [](std::string_view call) { return call == "write" ? ENOSPC : 0; };
        EXPECT_TRUE(store->setConfigItem("a", "x[2]", "", "3"));
    }
    findings();
    root.write("user/app.xml", "<config><a/></config>");
    EXPECT_TRUE(store->setConfigItem("a", "y", "", "4"));
    EXPECT_THAT(findings(), ElementsAre("lost-setting =a/x[2]"));
    EXPECT_EQ(stored("a", "y"), "4");
    EXPECT_TRUE(store->setConfigItem("a", "y", "", "5"));
    EXPECT_THAT(findings(), IsEmpty());
}

// ---- Files that are damaged or gone ----------------------------------------------------------

TEST_F(SettingsMerging, LeavesAFileThatIsDamagedMeanwhileAsItIs) {
    const std::string path = root.at("user/app.xml");
    const auto store = open();
    EXPECT_TRUE(store->setConfigItem("a", "x", "", "2"));
    for (const std::string damaged : {"", "<config>", "<config><a>\xff</a></config>"}) {
        root.write("user/app.xml", damaged);
        EXPECT_TRUE(store->setConfigItem("a", "y", "", damaged + "!"));
        EXPECT_THAT(findings(), ElementsAre(StartsWith("unsaved-file =" + path + ": ")));
        EXPECT_EQ(own(), damaged);
        EXPECT_EQ(store->getItemText("a", "x"), "2");
    }
    fs::remove(path);
    fs::create_directory(path);
    EXPECT_TRUE(store->setConfigItem("a", "z", "", "3"));
    EXPECT_THAT(findings(), ElementsAre("unsaved-file =" + path + ": Is a directory"));
    fs::remove(path);
    root.write("user/app.xml", "<config><other><o>kept</o></other></config>");
    EXPECT_TRUE(store->setConfigItem("b", "w", "", "4"));
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_EQ(stored("other", "o") + stored("a", "z") + stored("b", "w"), "kept34");
    EXPECT_EQ(stored("a", "y"), "<config><a></a></config>!");
    // It was saved before, and somebody has taken it out of the file.
    EXPECT_EQ(stored("a", "x"), "none");
}

TEST_F(SettingsMerging, WritesAFileThatIsGoneAsItHoldsIt) {
    const auto store = open();
    EXPECT_TRUE(store->setConfigItem("a", "x", "", "2"));
    fs::remove_all(root.at("user"));
    EXPECT_TRUE(store->setConfigItem("a", "y", "", "3"));
    EXPECT_EQ(stored("a", "x") + stored("a", "y"), "23");
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(SettingsMerging, TakesAFileThatWasDamagedOrMissingOnceItIsThere) {
    root.write("storage/app.xml", "<config>");
    const auto damaged = open();
    fs::remove(root.at("storage/app.xml"));
    const auto missing = open();
    for (const auto& store : {damaged, missing}) {
        findings();
        EXPECT_TRUE(store->setConfigItem("a", "x", "", "2"));
        EXPECT_THAT(findings(), ElementsAre("lost-setting =a/x"));
        EXPECT_FALSE(fs::exists(root.at("user/app.xml")));
    }
    root.write("storage/app.xml", settings);
    EXPECT_TRUE(damaged->setConfigItem("a", "y", "", "3"));
    EXPECT_TRUE(missing->setConfigItem("a", "z", "", "4"));
    EXPECT_THAT(findings(), IsEmpty());
    EXPECT_EQ(stored("a", "x") + stored("a", "y") + stored("a", "z"), "134");
}

TEST_F(SettingsMerging, SharesAFileThatIsReachedOverLinks) {
    root.write("elsewhere/real.xml", settings);
    root.makeFolder("user");
    fs::create_symlink("../elsewhere/real.xml", root.at("user/app.xml"));
    const auto one = open();
    const auto two = open();
    EXPECT_TRUE(one->setConfigItem("a", "one", "", "1"));
    EXPECT_TRUE(two->setConfigItem("a", "two", "", "2"));
    EXPECT_EQ(stored("a", "one") + stored("a", "two"), "12");
    EXPECT_TRUE(fs::is_symlink(root.at("user/app.xml")));
}

// ---- The lock --------------------------------------------------------------------------------

TEST_F(SettingsMerging, KeepsAChangeForWhichItDoesNotGetTheLock) {
    const auto store = open();
    EXPECT_TRUE(store->setConfigItem("a", "x", "", "2"));
    const std::string before = own();
    {
        // Pauses take no time under a scripted layer.
        ScopedFileLayer time;
        const files::FolderLock other(root.at("user/any"));
        ASSERT_TRUE(other);
        EXPECT_TRUE(store->setConfigItem("a", "y", "", "3"));
        EXPECT_GE(time->paused, files::FolderLock::longestWait);
    }
    EXPECT_THAT(findings(), ElementsAre("unsaved-file =" + root.at("user/app.xml") +
                                        ": another writer holds the lock of its folder"));
    EXPECT_EQ(own(), before);
    EXPECT_EQ(store->getItemText("a", "y"), "3");
    root.write("user/app.xml", "<config><other/></config>");
    EXPECT_TRUE(store->setConfigItem("a", "z", "", "4"));
    EXPECT_EQ(stored("a", "y") + stored("a", "z"), "34");
}

TEST_F(SettingsMerging, IsNotHeldUpByTheLockWhereItIgnoresOthers) {
    const auto store = open(OtherWriters::ignored);
    root.makeFolder("user");
    const files::FolderLock other(root.at("user/any"));
    ASSERT_TRUE(other);
    EXPECT_TRUE(store->setConfigItem("a", "y", "", "3"));
    EXPECT_EQ(stored("a", "y"), "3");
}

TEST_F(SettingsMerging, LosesNothingOfManyThreadsAndStores) {
    constexpr int threadCount = 8;
    constexpr int rounds = 25;
    const auto shared = open();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&, thread] {
            const auto mine = thread % 2 == 0 ? shared
                                              : YGAppConfigManager::initWithFileName(
                                                    "app.xml", nullptr, OtherWriters::merged);
            // Some names are queries, which are evaluated under no lock.
            const std::string section = thread < 4 ? "a" : "a[1]";
            for (int round = 0; round < rounds; ++round) {
                const std::string name = "t" + std::to_string(thread) + "r" + std::to_string(round);
                EXPECT_TRUE(mine->setConfigItem(section, name, "", name));
                EXPECT_EQ(mine->getItemText("a", name), name);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_THAT(findings(), IsEmpty());
    const auto last = YGAppConfigManager::initWithFileName("app.xml");
    for (int thread = 0; thread < threadCount; ++thread) {
        for (int round = 0; round < rounds; ++round) {
            const std::string name = "t" + std::to_string(thread) + "r" + std::to_string(round);
            EXPECT_EQ(last->getItemText("a", name), name);
        }
    }
}

}  // namespace
}  // namespace yg
