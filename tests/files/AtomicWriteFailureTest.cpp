// SPDX-License-Identifier: MIT
//
// Atomic writes that are cut at every one of their steps, by an error or by the end of the process.
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <set>
#include <string>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/files/AtomicWrite.h"

#include "files/ScriptedFileLayer.h"
#include "files/TemporaryFolder.h"

namespace yg::files {
namespace {

using testing::Contains;
using testing::Not;
namespace fs = std::filesystem;

constexpr std::string_view oldBytes = "the old content of the file";
constexpr std::string_view leftover = ".yg-1-1-1.tmp";
constexpr std::string_view newBytes = "what the file holds from now on, in several writes";

/// What a write finds.
enum class Situation { existingFile, newFile, link, danglingLink, oldTempFile };

/// One write into a folder of its own, with a target as the situation has it.
class Write {
public:
    explicit Write(Situation situation) : situation_(situation) {
        fs::create_directory(folder_ / "real");
        const bool isLink = situation == Situation::link || situation == Situation::danglingLink;
        if (isLink)
            fs::create_symlink("real/a.xml", folder_ / "a.xml");
        path_ = isLink ? folder_ / "a.xml" : folder_ / "real/a.xml";
        if (hasOldFile())
            put(folder_ / "real/a.xml", oldBytes);
        if (situation == Situation::oldTempFile) {
            put(folder_ / ("real/" + std::string(leftover)), "half");
            ageTempFiles(folder_ / "real");
        }
        layer.largestWrite = 16;
    }

    ScriptedFileLayer layer;

    bool run() { return writeFileAtomically(path_, newBytes, layer).ok; }

    bool hasNewContent() const { return contentOf(folder_ / "real/a.xml") == newBytes; }

    bool isAsBefore() const {
        return hasOldFile() ? contentOf(folder_ / "real/a.xml") == oldBytes
                            : !fs::exists(folder_ / "real/a.xml");
    }

    bool linkIsKept() const {
        const bool isLink = path_ == folder_ / "a.xml";
        return !isLink || (fs::is_symlink(path_) && fs::read_symlink(path_) == "real/a.xml");
    }

    /// Whether anything but the target, and what was left over before, is beside it.
    bool hasTempFile() const {
        auto names = folder_.names("real");
        names.erase("a.xml");
        names.erase(std::string(leftover));
        return !names.empty();
    }

    bool happened(std::string_view call) const {
        return std::find(layer.happened.begin(), layer.happened.end(), call) !=
               layer.happened.end();
    }

    /// Whether the new content is in place, and that safe on the disk.
    bool isSafe() const {
        const auto rename = std::find(layer.happened.begin(), layer.happened.end(), "rename");
        return std::find(rename, layer.happened.end(), "sync") != layer.happened.end();
    }

private:
    bool hasOldFile() const {
        return situation_ != Situation::newFile && situation_ != Situation::danglingLink;
    }

    Situation situation_;
    TemporaryFolder folder_;
    std::string path_;
};

class AtomicWriteCut : public testing::TestWithParam<Situation> {};

std::string nameOf(const testing::TestParamInfo<Situation>& parameter) {
    switch (parameter.param) {
        case Situation::existingFile:
            return "ExistingFile";
        case Situation::newFile:
            return "NewFile";
        case Situation::link:
            return "Link";
        case Situation::danglingLink:
            return "DanglingLink";
        case Situation::oldTempFile:
            return "OldTempFile";
    }
    return "";
}

INSTANTIATE_TEST_SUITE_P(Targets, AtomicWriteCut,
                         testing::Values(Situation::existingFile, Situation::newFile,
                                         Situation::link, Situation::danglingLink,
                                         Situation::oldTempFile),
                         nameOf);

TEST_P(AtomicWriteCut, ByAnErrorOfAnyCallLeavesOldOrNewContentAndNoTempFile) {
    std::size_t callsBefore = 0;
    for (bool injected = true; injected; ++callsBefore) {
        SCOPED_TRACE(callsBefore);
        Write write(GetParam());
        std::string failed;
        write.layer.errorOf = [&](std::string_view call) {
            if (write.layer.made.size() != callsBefore + 1)
                return 0;
            failed = call;
            return EIO;
        };
        const bool answer = write.run();
        EXPECT_EQ(write.hasNewContent(), write.happened("rename"));
        EXPECT_EQ(write.isAsBefore(), !write.happened("rename"));
        EXPECT_FALSE(write.hasTempFile());
        EXPECT_TRUE(write.linkIsKept());
        EXPECT_EQ(answer, write.isSafe());
        const std::set<std::string> matter = {
            "openFolder",    "readAccessList",   "openNew", "write",  "changeOwner", "changeMode",
            "setAccessList", "removeAccessList", "sync",    "rename", "readLink",    "openLink"};
        EXPECT_FALSE(answer && matter.contains(failed)) << failed;
        injected = !failed.empty();
    }
    EXPECT_GT(callsBefore, 12U);
}

TEST_P(AtomicWriteCut, ByTheEndOfTheProcessAtAnyCallLeavesOldOrNewContent) {
    std::size_t last = 0;
    bool tempFileSeen = false;
    for (bool injected = true; injected; ++last) {
        SCOPED_TRACE(last);
        Write write(GetParam());
        injected = false;
        write.layer.errorOf = [&](std::string_view) {
            const bool dead = write.layer.made.size() > last;
            injected = injected || dead;
            return dead ? EIO : 0;
        };
        const bool answer = write.run();
        EXPECT_EQ(write.layer.happened.size(), std::min(last, write.layer.made.size()));
        EXPECT_EQ(write.hasNewContent(), write.happened("rename"));
        EXPECT_EQ(write.isAsBefore(), !write.happened("rename"));
        EXPECT_TRUE(write.linkIsKept());
        EXPECT_TRUE(!answer || write.hasNewContent());
        tempFileSeen = tempFileSeen || write.hasTempFile();
    }
    EXPECT_GT(last, 12U);
    EXPECT_TRUE(tempFileSeen);
}

TEST_P(AtomicWriteCut, IntoSingleBytesIsComplete) {
    Write write(GetParam());
    write.layer.largestWrite = 1;
    EXPECT_TRUE(write.run());
    EXPECT_TRUE(write.hasNewContent());
    EXPECT_EQ(std::count(write.layer.made.begin(), write.layer.made.end(), "write"),
              static_cast<std::ptrdiff_t>(newBytes.size()));
}

TEST_P(AtomicWriteCut, ByAFullDiskInTheMiddleKeepsTheOldContent) {
    Write write(GetParam());
    write.layer.errorOf = [writes = 0](std::string_view call) mutable {
        return call == "write" && ++writes == 3 ? ENOSPC : 0;
    };
    EXPECT_FALSE(write.run());
    EXPECT_TRUE(write.isAsBefore());
    EXPECT_FALSE(write.hasTempFile());
}

TEST(AtomicWriteFailure, IsDescribedByThePathAndTheCause) {
    const TemporaryFolder folder;
    fs::create_symlink("circle", folder / "circle");
    fs::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    const auto errorFor = [](const std::string& path) {
        return writeFileAtomically(path, newBytes).error;
    };
    EXPECT_EQ(errorFor(folder / "a.xml"), "");
    EXPECT_EQ(errorFor(""), ": the path is empty");
    EXPECT_EQ(errorFor(std::string("a\0b", 3)), "a?b: the path holds a NUL byte");
    EXPECT_EQ(errorFor("missing\r\n/a"),
              "missing?"
              "?/a: No such file or directory");
    EXPECT_EQ(errorFor(folder / "a.xml/b"), folder / "a.xml/b" + ": Not a directory");
    EXPECT_EQ(errorFor(folder / "circle"),
              folder / "circle" + ": Too many levels of symbolic links");
    EXPECT_EQ(errorFor(folder / "folder"), folder / "folder" + ": Is a directory");
    EXPECT_EQ(errorFor(folder / ""), folder / "" + ": Is a directory");
    EXPECT_EQ(errorFor(folder / "pipe"), folder / "pipe" + ": not a regular file");
    EXPECT_EQ(errorFor("/dev/null"), "/dev/null: not a regular file");
    const std::string longName(256, 'n');
    EXPECT_EQ(errorFor(folder / longName), folder / longName + ": File name too long");
}

TEST(AtomicWriteFailure, AnInterruptedCallIsMadeAgain) {
    Write write(Situation::existingFile);
    bool interrupted = false;
    write.layer.errorOf = [&](std::string_view call) {
        if (call == "readLink" || call == "status" || call == "lock" || call == "eachName" ||
            call == "rename")
            return 0;
        // Twice in a row a call cannot be interrupted here, so each of them comes to its end. A
        // file that was being closed is closed and not asked again.
        interrupted = call == "close" || !interrupted;
        return interrupted ? EINTR : 0;
    };
    EXPECT_TRUE(write.run());
    EXPECT_TRUE(write.hasNewContent());
    EXPECT_FALSE(write.hasTempFile());
    EXPECT_GT(write.layer.made.size(), write.layer.happened.size() + 6);
}

TEST(AtomicWriteFailure, AWriteThatMovesNothingDoesNotGoOnForEver) {
    Write write(Situation::existingFile);
    write.layer.largestWrite = 0;
    EXPECT_FALSE(write.run());
    EXPECT_TRUE(write.isAsBefore());
    EXPECT_FALSE(write.hasTempFile());
}

TEST(AtomicWriteFailure, AReadOnlyFolderFails) {
    for (const int error : {EACCES, EROFS, EPERM}) {
        Write write(Situation::existingFile);
        write.layer.errorOf = [&](std::string_view call) { return call == "openNew" ? error : 0; };
        EXPECT_FALSE(write.run());
        EXPECT_TRUE(write.isAsBefore());
        EXPECT_THAT(write.layer.made, Not(Contains("unlink")));
    }
}

TEST(AtomicWriteFailure, ATargetThatCannotBeLookedAtIsNotReplaced) {
    for (const std::string_view failing : {"readLink", "status", "openFolder"}) {
        Write write(Situation::existingFile);
        write.layer.errorOf = [&](std::string_view call) { return call == failing ? EACCES : 0; };
        EXPECT_FALSE(write.run());
        EXPECT_TRUE(write.isAsBefore());
        EXPECT_THAT(write.layer.made, Not(Contains("openNew")));
    }
}

TEST(AtomicWriteFailure, TakesAnotherNameForTheTempFileWhereOneIsTaken) {
    Write write(Situation::existingFile);
    write.layer.errorOf = [attempts = 0](std::string_view call) mutable {
        return call == "openNew" && ++attempts <= 5 ? EEXIST : 0;
    };
    EXPECT_TRUE(write.run());
    EXPECT_TRUE(write.hasNewContent());
}

TEST(AtomicWriteFailure, WhereEveryNameIsTakenTheWriteGivesUp) {
    Write write(Situation::existingFile);
    write.layer.errorOf = [](std::string_view call) { return call == "openNew" ? EEXIST : 0; };
    EXPECT_FALSE(write.run());
    EXPECT_TRUE(write.isAsBefore());
    EXPECT_LT(write.layer.made.size(), 1000U);
}

TEST(AtomicWriteFailure, AFolderThatFailsToReachTheDiskIsAFailureWithTheNewContentInPlace) {
    Write write(Situation::existingFile);
    write.layer.errorOf = [&](std::string_view call) {
        return call == "sync" && write.happened("rename") ? EIO : 0;
    };
    EXPECT_FALSE(write.run());
    EXPECT_TRUE(write.hasNewContent());
    EXPECT_FALSE(write.hasTempFile());
}

TEST(AtomicWriteFailure, AFileSystemThatSyncsNoFoldersIsNoFailure) {
    for (const int error : {EINVAL, ENOTSUP}) {
        Write write(Situation::existingFile);
        write.layer.errorOf = [&](std::string_view call) {
            return call == "sync" && write.happened("rename") ? error : 0;
        };
        EXPECT_TRUE(write.run());
        EXPECT_TRUE(write.hasNewContent());
    }
}

TEST(AtomicWriteFailure, AFileThatCannotBeSyncedIsAFailure) {
    Write write(Situation::existingFile);
    write.layer.errorOf = [&](std::string_view call) {
        return call == "sync" && !write.happened("rename") ? EINVAL : 0;
    };
    EXPECT_FALSE(write.run());
    EXPECT_TRUE(write.isAsBefore());
    EXPECT_FALSE(write.hasTempFile());
}

}  // namespace
}  // namespace yg::files
