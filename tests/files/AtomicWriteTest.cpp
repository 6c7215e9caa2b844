// SPDX-License-Identifier: MIT
#include <algorithm>
#include <atomic>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/files/AtomicWrite.h"

#include "files/ScriptedFileLayer.h"
#include "files/TemporaryFolder.h"

namespace yg::files {
namespace {

using testing::ElementsAre;
namespace fs = std::filesystem;

/// Runs the task in a process of its own, whose umask and current folder it may change.
bool succeedsInAnotherProcess(const std::function<bool()>& task) {
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(task() ? 0 : 1);
    int status = -1;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool writesUnderUmask(mode_t mask, const std::string& path) {
    return succeedsInAnotherProcess([&] {
        ::umask(mask);
        return writeFileAtomically(path, "new").ok;
    });
}

/// The widest rights that the new file beside the target had before it took the target's place.
mode_t widestModeWhileWriting(const TemporaryFolder& folder, const std::string& target) {
    ScriptedFileLayer layer;
    layer.largestWrite = 1;
    mode_t widest = 0;
    layer.after = [&](std::string_view) {
        for (const std::string& name : folder.names()) {
            if (name.starts_with("."))
                widest |= modeOf(folder / name);
        }
    };
    EXPECT_TRUE(writeFileAtomically(target, "new", layer));
    return widest;
}

TEST(AtomicWrite, CreatesANewFile) {
    const TemporaryFolder folder;
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new"));
    EXPECT_EQ(contentOf(folder / "a.xml"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a.xml"));
}

TEST(AtomicWrite, ReplacesALongerFile) {
    const TemporaryFolder folder;
    put(folder / "a.xml", "something longer");
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new"));
    EXPECT_EQ(contentOf(folder / "a.xml"), "new");
    EXPECT_THAT(folder.names(), ElementsAre("a.xml"));
}

TEST(AtomicWrite, WritesNoBytesAtAll) {
    const TemporaryFolder folder;
    put(folder / "a.xml", "old");
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", {}));
    EXPECT_TRUE(fs::exists(folder / "a.xml"));
    EXPECT_EQ(contentOf(folder / "a.xml"), "");
}

TEST(AtomicWrite, KeepsEveryByteOfALargeContent) {
    const TemporaryFolder folder;
    std::string bytes;
    for (int i = 0; i < 3'000'000; ++i)
        bytes += static_cast<char>(i % 251);
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", bytes));
    EXPECT_TRUE(contentOf(folder / "a.xml") == bytes);
}

TEST(AtomicWrite, TheOldFileIsReplacedNotOverwritten) {
    const TemporaryFolder folder;
    put(folder / "a.xml", "old");
    fs::create_hard_link(folder / "a.xml", folder / "second name");
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new"));
    EXPECT_EQ(contentOf(folder / "second name"), "old");
}

TEST(AtomicWrite, TakesAPathWithoutFolder) {
    const TemporaryFolder folder;
    EXPECT_TRUE(succeedsInAnotherProcess([&] {
        return ::chdir(folder.path().c_str()) == 0 && writeFileAtomically("a.xml", "new").ok;
    }));
    EXPECT_EQ(contentOf(folder / "a.xml"), "new");
}

TEST(AtomicWrite, TakesTheLongestNameThatAFileCanHave) {
    const TemporaryFolder folder;
    const std::string name(255, 'n');
    EXPECT_TRUE(writeFileAtomically(folder / name, "new"));
    EXPECT_EQ(contentOf(folder / name), "new");
}

TEST(AtomicWrite, SyncsTheFileBeforeAndItsFolderAfterTheRename) {
    const TemporaryFolder folder;
    put(folder / "a.xml", "old");
    ScriptedFileLayer layer;
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new", layer));
    const auto first = std::find(layer.made.begin(), layer.made.end(), "write");
    EXPECT_THAT(std::vector(first, layer.made.end()),
                ElementsAre("write", "changeOwner", "removeAccessList", "changeMode", "sync",
                            "close", "rename", "sync", "close"));
}

// ---- Modes ----------------------------------------------------------------------------------

TEST(AtomicWrite, KeepsTheModeOfTheFileReplaced) {
    const TemporaryFolder folder;
    for (const mode_t mode : {0600U, 0640U, 0664U, 0666U, 0755U, 0400U, 0444U, 0000U}) {
        put(folder / "a.xml", "old");
        ASSERT_EQ(::chmod((folder / "a.xml").c_str(), mode), 0);
        EXPECT_TRUE(writesUnderUmask(0077, folder / "a.xml"));
        EXPECT_EQ(modeOf(folder / "a.xml"), mode);
        EXPECT_TRUE(writesUnderUmask(0000, folder / "a.xml"));
        EXPECT_EQ(modeOf(folder / "a.xml"), mode);
        fs::remove(folder / "a.xml");
    }
}

TEST(AtomicWrite, DoesNotPassOnTheRightToRunAsTheOwner) {
    const TemporaryFolder folder;
    put(folder / "a.xml", "old");
    ASSERT_EQ(::chmod((folder / "a.xml").c_str(), 06755), 0);
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new"));
    EXPECT_EQ(modeOf(folder / "a.xml"), 0755U);
}

TEST(AtomicWrite, ANewFileHasTheModeThatTheUmaskLeaves) {
    const TemporaryFolder folder;
    EXPECT_TRUE(writesUnderUmask(0022, folder / "a.xml"));
    EXPECT_EQ(modeOf(folder / "a.xml"), 0644U);
    EXPECT_TRUE(writesUnderUmask(0077, folder / "b.xml"));
    EXPECT_EQ(modeOf(folder / "b.xml"), 0600U);
    EXPECT_TRUE(writesUnderUmask(0000, folder / "c.xml"));
    EXPECT_EQ(modeOf(folder / "c.xml"), 0666U);
}

TEST(AtomicWrite, LeavesTheUmaskAlone) {
    const TemporaryFolder folder;
    EXPECT_TRUE(succeedsInAnotherProcess([&] {
        ::umask(0027);
        return writeFileAtomically(folder / "a.xml", "new").ok && ::umask(0) == 0027;
    }));
}

TEST(AtomicWrite, IsNeverWiderWhileBeingWrittenThanAtTheEnd) {
    const TemporaryFolder folder;
    for (const mode_t mode : {0600U, 0640U, 0400U, 0044U, 0000U}) {
        put(folder / "a.xml", "old");
        ASSERT_EQ(::chmod((folder / "a.xml").c_str(), mode), 0);
        EXPECT_EQ(widestModeWhileWriting(folder, folder / "a.xml"), mode);
        fs::remove(folder / "a.xml");
    }
    EXPECT_TRUE(succeedsInAnotherProcess([&] {
        ::umask(0077);
        return widestModeWhileWriting(folder, folder / "a.xml") == 0600;
    }));
}

// ---- Links ----------------------------------------------------------------------------------

TEST(AtomicWrite, ALinkStaysAndTheFileThatItNamesIsReplaced) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "real");
    put(folder / "real/a.xml", "old");
    fs::create_symlink("real/a.xml", folder / "a.xml");
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new"));
    EXPECT_EQ(fs::read_symlink(folder / "a.xml"), "real/a.xml");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(folder / "real/a.xml")));
    EXPECT_EQ(contentOf(folder / "real/a.xml"), "new");
    EXPECT_THAT(folder.names("real"), ElementsAre("a.xml"));
    EXPECT_THAT(folder.names(), ElementsAre("a.xml", "real"));
}

TEST(AtomicWrite, TheNewFileIsBesideTheOneThatALinkNames) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "real");
    fs::create_symlink("real/a.xml", folder / "a.xml");
    ScriptedFileLayer layer;
    layer.after = [&](std::string_view call) {
        if (call == "write") {
            EXPECT_EQ(folder.names("real").size(), 1U);
            EXPECT_THAT(folder.names(), ElementsAre("a.xml", "real"));
        }
    };
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new", layer));
}

TEST(AtomicWrite, ALinkKeepsTheModeOfTheFileThatItNames) {
    const TemporaryFolder folder;
    put(folder / "real.xml", "old");
    ASSERT_EQ(::chmod((folder / "real.xml").c_str(), 0600), 0);
    fs::create_symlink(folder / "real.xml", folder / "a.xml");
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new"));
    EXPECT_EQ(modeOf(folder / "real.xml"), 0600U);
}

TEST(AtomicWrite, LinksAreFollowedThroughFoldersToTheLastFile) {
    const TemporaryFolder folder;
    fs::create_directories(folder / "one/two");
    fs::create_directory(folder / "other");
    put(folder / "other/real.xml", "old");
    fs::create_symlink("one/two", folder / "shortcut");
    fs::create_symlink("../../other/second.xml", folder / "one/two/a.xml");
    fs::create_symlink(folder / "other/real.xml", folder / "other/second.xml");
    EXPECT_TRUE(writeFileAtomically(folder / "shortcut/a.xml", "new"));
    EXPECT_EQ(contentOf(folder / "other/real.xml"), "new");
    EXPECT_TRUE(fs::is_symlink(folder / "one/two/a.xml"));
    EXPECT_TRUE(fs::is_symlink(folder / "other/second.xml"));
}

TEST(AtomicWrite, ADanglingLinkGetsTheFileThatItNames) {
    const TemporaryFolder folder;
    fs::create_symlink("real.xml", folder / "a.xml");
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "a.xml"));
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(folder / "real.xml")));
    EXPECT_EQ(contentOf(folder / "real.xml"), "new");
}

TEST(AtomicWrite, ALinkIntoAMissingFolderFails) {
    const TemporaryFolder folder;
    fs::create_symlink("missing/real.xml", folder / "a.xml");
    EXPECT_FALSE(writeFileAtomically(folder / "a.xml", "new"));
    EXPECT_THAT(folder.names(), ElementsAre("a.xml"));
}

TEST(AtomicWrite, LinksInACircleFail) {
    const TemporaryFolder folder;
    fs::create_symlink("b.xml", folder / "a.xml");
    fs::create_symlink("a.xml", folder / "b.xml");
    fs::create_symlink("self.xml", folder / "self.xml");
    EXPECT_FALSE(writeFileAtomically(folder / "a.xml", "new"));
    EXPECT_FALSE(writeFileAtomically(folder / "self.xml", "new"));
    EXPECT_THAT(folder.names(), ElementsAre("a.xml", "b.xml", "self.xml"));
}

/// What a write through the link answers where everyone may write to the folder but remove only
/// what is his own, and what became of the file that the link names.
struct SharedFolder {
    static constexpr mode_t mode = 01777;

    TemporaryFolder folder;
    std::string link = folder / "shared/a.xml";
    std::string real = folder / "real.xml";

    SharedFolder() {
        fs::create_directory(folder / "shared");
        ::chmod((folder / "shared").c_str(), mode);
        put(real, "old");
        fs::create_symlink("../real.xml", link);
    }
    FileWriting write(uid_t linkOwner, uid_t folderOwner, mode_t folderMode = mode) const {
        ScriptedFileLayer layer;
        layer.changeStatus = [&](struct stat& state) {
            if (S_ISLNK(state.st_mode)) {
                state.st_uid = linkOwner;
            } else if (S_ISDIR(state.st_mode)) {
                state.st_uid = folderOwner;
                state.st_mode = S_IFDIR | folderMode;
            }
        };
        return writeFileAtomically(link, "new", layer);
    }
};

TEST(AtomicWrite, AStrangersLinkInASharedFolderIsNotFollowed) {
    const SharedFolder shared;
    const uid_t stranger = ::geteuid() + 1;
    EXPECT_EQ(shared.write(stranger, ::geteuid()).error, shared.link + ": Permission denied");
    EXPECT_EQ(shared.write(stranger, stranger + 1).error, shared.link + ": Permission denied");
    EXPECT_EQ(contentOf(shared.real), "old");
    EXPECT_TRUE(fs::is_symlink(shared.link));
}

TEST(AtomicWrite, OtherLinksInASharedFolderAreFollowed) {
    const uid_t me = ::geteuid();
    const uid_t stranger = me + 1;
    EXPECT_TRUE(SharedFolder().write(me, stranger));
    EXPECT_TRUE(SharedFolder().write(stranger, stranger));
    // Not shared, or not by everyone.
    EXPECT_TRUE(SharedFolder().write(stranger, me, 0777));
    EXPECT_TRUE(SharedFolder().write(stranger, me, 01775));
}

TEST(AtomicWrite, AStrangersLinkBehindALinkIsNotFollowed) {
    const SharedFolder shared;
    fs::create_symlink("shared/a.xml", shared.folder / "first");
    if (::geteuid() != 0)
        GTEST_SKIP() << "nobody else's link can be made";
    ASSERT_EQ(::lchown(shared.link.c_str(), 12'000, 12'000), 0);
    EXPECT_EQ(writeFileAtomically(shared.folder / "first", "new").error,
              shared.folder / "first" + ": Permission denied");
    EXPECT_FALSE(writeFileAtomically(shared.link, "new"));
    EXPECT_EQ(contentOf(shared.real), "old");
}

// ---- Targets that cannot be written -----------------------------------------------------------

TEST(AtomicWrite, AFolderAsTargetFails) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "empty");
    fs::create_symlink("empty", folder / "link");
    EXPECT_FALSE(writeFileAtomically(folder / "empty", "new"));
    EXPECT_FALSE(writeFileAtomically(folder / "empty/", "new"));
    EXPECT_FALSE(writeFileAtomically(folder / "empty/.", "new"));
    EXPECT_FALSE(writeFileAtomically(folder / "empty/..", "new"));
    EXPECT_FALSE(writeFileAtomically(folder / "link", "new"));
    EXPECT_FALSE(writeFileAtomically("/", "new"));
    EXPECT_TRUE(fs::is_directory(folder / "empty"));
    EXPECT_THAT(folder.names(), ElementsAre("empty", "link"));
    EXPECT_THAT(folder.names("empty"), ElementsAre());
}

TEST(AtomicWrite, AMissingFolderFails) {
    const TemporaryFolder folder;
    put(folder / "file", "old");
    EXPECT_FALSE(writeFileAtomically(folder / "missing/a.xml", "new"));
    EXPECT_FALSE(writeFileAtomically(folder / "file/a.xml", "new"));
    EXPECT_THAT(folder.names(), ElementsAre("file"));
}

TEST(AtomicWrite, APathThatEndsWithoutANameWritesNothing) {
    const TemporaryFolder folder;
    ScriptedFileLayer layer;
    EXPECT_FALSE(writeFileAtomically("", "new", layer));
    EXPECT_FALSE(writeFileAtomically(folder / "", "new", layer));
    EXPECT_THAT(layer.made, ElementsAre());
}

TEST(AtomicWrite, NoPathFails) {
    const TemporaryFolder folder;
    EXPECT_FALSE(writeFileAtomically("", "new"));
    EXPECT_FALSE(writeFileAtomically(folder / std::string("a\0b", 3), "new"));
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST(AtomicWrite, ANameTooLongFails) {
    const TemporaryFolder folder;
    EXPECT_FALSE(writeFileAtomically(folder / std::string(256, 'n'), "new"));
    EXPECT_FALSE(writeFileAtomically(folder / std::string(10'000, 'n'), "new"));
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST(AtomicWrite, APipeIsNotReplaced) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("pipe", folder / "link");
    EXPECT_FALSE(writeFileAtomically(folder / "pipe", "new"));
    EXPECT_FALSE(writeFileAtomically(folder / "link", "new"));
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
    EXPECT_THAT(folder.names(), ElementsAre("link", "pipe"));
}

// ---- Several at once ------------------------------------------------------------------------

TEST(AtomicWrite, WritersAtOnceLeaveOneWholeContentAndReadersSeeNoOther) {
    const TemporaryFolder folder;
    const std::string target = folder / "a.xml";
    constexpr std::size_t size = 50'000;
    const auto isWhole = [](const std::string& bytes) {
        return bytes.size() == size && bytes.find_first_not_of(bytes.front()) == std::string::npos;
    };
    put(target, std::string(size, '-'));
    std::atomic<int> failures = 0;
    std::atomic<bool> done = false;
    std::thread reader([&] {
        while (!done)
            failures += isWhole(contentOf(target)) ? 0 : 1;
    });
    std::vector<std::thread> writers;
    for (char letter = 'a'; letter < 'i'; ++letter) {
        writers.emplace_back([&, letter] {
            for (int round = 0; round < 10; ++round)
                failures += writeFileAtomically(target, std::string(size, letter)) ? 0 : 1;
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    done = true;
    reader.join();
    EXPECT_EQ(failures, 0);
    EXPECT_TRUE(isWhole(contentOf(target)));
    EXPECT_NE(contentOf(target).front(), '-');
    EXPECT_THAT(folder.names(), ElementsAre("a.xml"));
}

}  // namespace
}  // namespace yg::files
