// SPDX-License-Identifier: MIT
//
// Which changes of the files are noticed. Changes are made before the wait for them begins, so
// nothing depends on how fast they are.
#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/TemporaryFolder.h"
#include "ygconfig/preview/RootWatch.h"

namespace {

namespace fs = std::filesystem;

using testing::Each;
using yg::files::put;
using yg::files::TemporaryFolder;
using yg::tool::Descriptor;
using yg::tool::isUsed;
using yg::tool::RootWatch;
using yg::tool::usedFolders;
using yg::tool::UsedFolders;

using Means = RootWatch::Means;

/// Readable when the time is over.
Descriptor timer(std::chrono::milliseconds time) {
    Descriptor made(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC));
    itimerspec when{};
    when.it_value = {time.count() / 1000, time.count() % 1000 * 1'000'000};
    ::timerfd_settime(made.number(), 0, &when, nullptr);
    return made;
}

bool noticesChange(RootWatch& watch) {
    return watch.wait(timer(std::chrono::seconds(60)).number());
}

/// What was noticed is not noticed again, and nothing else is there to be noticed.
bool noticesNothing(RootWatch& watch) {
    return !watch.wait(timer(std::chrono::milliseconds(300)).number());
}

struct Kind {
    const char* name;
    /// In a folder with "root", which holds config/events.xml, and "other".
    std::function<void(const TemporaryFolder&)> prepare;
    std::function<void(const TemporaryFolder&)> change;
};

void nothing(const TemporaryFolder&) {}

void make(const TemporaryFolder& folder) {
    folder.write("root/config/events.xml", "<event_list/>");
    folder.makeFolder("other");
}

void rename(const TemporaryFolder& folder, std::string_view from, std::string_view to) {
    fs::rename(folder / from, folder / to);
}

void link(const TemporaryFolder& folder, std::string_view name, const std::string& target) {
    fs::create_symlink(target, folder / name);
}

const Kind kinds[] = {
    {"AFileWrittenInPlace", nothing,
     [](const auto& folder) { put(folder / "root/config/events.xml", "<event_list />"); }},
    {"AFileCutOffByItsPath", nothing,
     [](const auto& folder) { fs::resize_file(folder / "root/config/events.xml", 3); }},
    {"AFileRenamedOverAnother",
     [](const auto& folder) { folder.write("root/config/.events.xml.1", "<event_list/>"); },
     [](const auto& folder) {
         rename(folder, "root/config/.events.xml.1", "root/config/events.xml");
     }},
    {"AFileMovedThereFromElsewhere",
     [](const auto& folder) { folder.write("other/events.xml", "<event_list/>"); },
     [](const auto& folder) { rename(folder, "other/events.xml", "root/config/events.xml"); }},
    {"AFileRenamedAway", nothing,
     [](const auto& folder) { rename(folder, "root/config/events.xml", "root/config/old~"); }},
    {"AFileRemoved", nothing,
     [](const auto& folder) { fs::remove(folder / "root/config/events.xml"); }},
    {"AFileThatAppears", nothing,
     [](const auto& folder) { folder.write("root/config/tab_styles.xml", "<styles/>"); }},
    {"AFileThatMayNoLongerBeRead", nothing,
     [](const auto& folder) { ::chmod((folder / "root/config/events.xml").c_str(), 0); }},
    {"HostJson", nothing, [](const auto& folder) { folder.write("root/host.json", "{}"); }},
    {"ContrastJson", nothing, [](const auto& folder) { folder.write("root/contrast.json", "{}"); }},
    {"AFolderThatAppears", nothing, [](const auto& folder) { folder.makeFolder("root/storage"); }},
    {"AFolderRenamedAway", nothing,
     [](const auto& folder) { rename(folder, "root/config", "root/old"); }},
    {"AFolderRemoved", nothing, [](const auto& folder) { fs::remove_all(folder / "root/config"); }},
    {"TheRootRenamedAway", nothing, [](const auto& folder) { rename(folder, "root", "root.old"); }},
    {"TheRootRemoved", nothing, [](const auto& folder) { fs::remove_all(folder / "root"); }},
    {"TheRootThatComesBack", [](const auto& folder) { fs::remove_all(folder / "root"); },
     [](const auto& folder) { folder.makeFolder("root"); }},
    {"AnImageInAFolderOfTheImages",
     [](const auto& folder) { folder.makeFolder("root/images/black/small"); },
     [](const auto& folder) { folder.write("root/images/black/small/button.png", "png"); }},
    {"AnImageInALinkedFolder",
     [](const auto& folder) {
         folder.makeFolder("root/images");
         link(folder, "root/images/black", folder / "other");
     },
     [](const auto& folder) { folder.write("other/button.png", "png"); }},
    {"TheFileThatALinkLeadsTo",
     [](const auto& folder) {
         folder.write("other/target.xml", "<styles/>");
         link(folder, "root/config/tab_styles.xml", "../../other/target.xml");
     },
     [](const auto& folder) { folder.write("other/target.xml", "<styles></styles>"); }},
    {"TheFileThatALinkOfALinkLeadsTo",
     [](const auto& folder) {
         folder.write("other/far/target.xml", "<styles/>");
         link(folder, "other/middle.xml", "far/target.xml");
         link(folder, "root/config/tab_styles.xml", folder / "other/middle.xml");
     },
     [](const auto& folder) { folder.write("other/far/target.xml", "<styles></styles>"); }},
    {"ALinkOnTheWayThatLeadsElsewhere",
     [](const auto& folder) {
         folder.write("other/1.xml", "<styles/>");
         folder.write("other/2.xml", "<styles></styles>");
         link(folder, "other/middle.xml", "1.xml");
         link(folder, "root/config/tab_styles.xml", folder / "other/middle.xml");
     },
     [](const auto& folder) {
         link(folder, "other/new", "2.xml");
         rename(folder, "other/new", "other/middle.xml");
     }},
    {"AFileInALinkedFolder", [](const auto& folder) { link(folder, "root/storage", "../other"); },
     [](const auto& folder) { folder.write("other/app_config.xml", "<config/>"); }},
    {"ALinkThatLedNowhere",
     [](const auto& folder) { link(folder, "root/storage", "../other/later"); },
     [](const auto& folder) { folder.makeFolder("other/later"); }},
};

class WatchedChange : public testing::TestWithParam<std::pair<Kind, Means>> {};

TEST_P(WatchedChange, IsNoticedOnce) {
    const auto& [kind, means] = GetParam();
    const TemporaryFolder folder;
    make(folder);
    kind.prepare(folder);
    RootWatch watch(folder / "root", means);
    watch.renew();
    EXPECT_TRUE(noticesNothing(watch));
    kind.change(folder);
    EXPECT_TRUE(noticesChange(watch));
    watch.renew();
    EXPECT_TRUE(noticesNothing(watch));
}

/// The root is found by the path that people give.
TEST_P(WatchedChange, IsNoticedWhereTheRootIsALink) {
    const auto& [kind, means] = GetParam();
    const TemporaryFolder folder;
    make(folder);
    kind.prepare(folder);
    link(folder, "link", "root");
    RootWatch watch(folder / "link", means);
    watch.renew();
    kind.change(folder);
    EXPECT_TRUE(noticesChange(watch));
}

std::vector<std::pair<Kind, Means>> allKinds() {
    std::vector<std::pair<Kind, Means>> all;
    for (const Kind& kind : kinds) {
        all.emplace_back(kind, Means::notices);
        all.emplace_back(kind, Means::looks);
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(Kinds, WatchedChange, testing::ValuesIn(allKinds()), [](const auto& of) {
    return of.param.first.name +
           std::string(of.param.second == Means::looks ? "ByItsLook" : "ByNotice");
});

TEST(RootWatch, NoticesALinkOfTheRootThatLeadsElsewhere) {
    const TemporaryFolder folder;
    make(folder);
    link(folder, "link", "root");
    RootWatch watch(folder / "link");
    watch.renew();
    link(folder, "new", "other");
    rename(folder, "new", "link");
    EXPECT_TRUE(noticesChange(watch));
}

TEST(RootWatch, TakesWritesOneAfterTheOtherForOneChange) {
    const TemporaryFolder folder;
    make(folder);
    RootWatch watch(folder / "root");
    watch.renew();
    for (const char* text : {"", "<event_list>", "<event_list></event_list>"})
        put(folder / "root/config/events.xml", text);
    EXPECT_TRUE(noticesChange(watch));
    EXPECT_TRUE(noticesNothing(watch));
}

TEST(RootWatch, NoticesWhatHappensInAFolderThatCameLater) {
    const TemporaryFolder folder;
    make(folder);
    RootWatch watch(folder / "root");
    watch.renew();
    folder.makeFolder("root/storage");
    EXPECT_TRUE(noticesChange(watch));
    // Between the notice and the new watch; it is there when the root is read after that.
    folder.write("root/storage/first.xml", "<config/>");
    watch.renew();
    folder.write("root/storage/second.xml", "<config/>");
    EXPECT_TRUE(noticesChange(watch));
}

TEST(RootWatch, IsNotDisturbedByFilesThatNobodyReads) {
    const TemporaryFolder folder;
    make(folder);
    for (const Means means : {Means::notices, Means::looks}) {
        RootWatch watch(folder / "root", means);
        watch.renew();
        for (const char* name : {".events.xml.swp", ".#events.xml", "#events.xml#", "events.xml~",
                                 ".yg-1-2.tmp", "events.xml.tmp"})
            folder.write(std::string("root/config/") + name, "<");
        folder.write("root/notes.txt", "mine");
        folder.write("root/build/events.xml", "<");
        folder.write("other/events.xml", "<");
        folder.write("beside", "");
        EXPECT_TRUE(noticesNothing(watch));
        fs::remove_all(folder / "root/build");
    }
}

/// A queue that overflows has lost notices, maybe of what counts.
TEST(RootWatch, TakesLostNoticesForAChange) {
    std::ifstream limit("/proc/sys/fs/inotify/max_queued_events");
    int events = 0;
    if (!(limit >> events) || events > 100'000)
        GTEST_SKIP() << "the queue is too long to be filled";
    const TemporaryFolder folder;
    make(folder);
    RootWatch watch(folder / "root");
    watch.renew();
    // Each is another event than the one before, and none counts.
    folder.write("root/config/.1", "");
    folder.write("root/config/.2", "");
    for (int made = 0; made <= events; made += 2) {
        ::chmod((folder / "root/config/.1").c_str(), 0600);
        ::chmod((folder / "root/config/.2").c_str(), 0600);
    }
    EXPECT_TRUE(noticesChange(watch));
}

TEST(RootWatch, EndsItsWait) {
    const TemporaryFolder folder;
    make(folder);
    const yg::tool::Bell ending;
    ending.ring();
    for (const Means means : {Means::notices, Means::looks}) {
        RootWatch watch(folder / "root", means);
        watch.renew();
        EXPECT_FALSE(watch.wait(ending.number()));
    }
}

TEST(UsedFolders, AreThoseOfTheRootAndThoseOnTheWay) {
    const TemporaryFolder folder;
    make(folder);
    folder.makeFolder("root/storage/deep");
    folder.makeFolder("root/images/black/small");
    folder.makeFolder("root/elsewhere");
    const UsedFolders used = usedFolders(folder / "root");
    std::set<std::string> whole;
    for (const auto& [path, each] : used) {
        if (each.isWhole)
            whole.insert(path);
    }
    EXPECT_EQ(whole,
              (std::set<std::string>{folder / "root/config", folder / "root/images",
                                     folder / "root/images/black",
                                     folder / "root/images/black/small", folder / "root/storage"}));
    EXPECT_THAT(used.at("/").names, Each(folder.path().substr(1, folder.path().find('/', 1) - 1)));
    EXPECT_THAT(used.at(folder.path()).names, Each("root"));
}

TEST(UsedFolders, EndWhereLinksGoRound) {
    const TemporaryFolder folder;
    make(folder);
    folder.makeFolder("root/images/black");
    link(folder, "root/images/black/again", "..");
    link(folder, "root/config/itself", "itself");
    link(folder, "root/storage", "storage");
    const UsedFolders used = usedFolders(folder / "root");
    EXPECT_TRUE(used.contains(folder / "root/images/black"));
    EXPECT_FALSE(used.contains(folder / "root/images/black/again"));
    EXPECT_FALSE(used.contains(folder / "root/storage"));
}

TEST(UsedFolders, OfImagesAreUpToEightLevelsAndAThousand) {
    const TemporaryFolder folder;
    folder.makeFolder("root/images/2/3/4/5/6/7/8/9");
    UsedFolders used = usedFolders(folder / "root");
    EXPECT_TRUE(used.contains(folder / "root/images/2/3/4/5/6/7/8"));
    EXPECT_FALSE(used.contains(folder / "root/images/2/3/4/5/6/7/8/9"));
    for (int made = 0; made < 1'100; ++made)
        folder.makeFolder("root/images/2/many" + std::to_string(made));
    used = usedFolders(folder / "root");
    EXPECT_EQ(std::ranges::count_if(used, [](const auto& each) { return each.second.isWhole; }),
              1'000);
}

}  // namespace
