// SPDX-License-Identifier: MIT
//
// What killed writes left in a folder goes with a later write, and nothing else does.
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/files/AtomicWrite.h"
#include "YGConfigManager/files/Leftovers.h"

#include "files/ScriptedFileLayer.h"
#include "files/TemporaryFolder.h"

namespace yg::files {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
namespace fs = std::filesystem;

constexpr time_t oldAge = 3700;
constexpr const char* leftover = ".yg-1-1700000000000000000-7.tmp";

void putOld(const std::string& path) {
    put(path, "half");
    age(path, oldAge);
}

/// Writes a file into the folder; whether that could be done.
bool writeInto(const TemporaryFolder& folder) {
    ScriptedFileLayer layer;
    return writeFileAtomically(folder / "a.xml", "new", layer).ok;
}

TEST(Leftovers, OfKilledWritesGoWithALaterOne) {
    const TemporaryFolder folder;
    putOld(folder / leftover);
    // Whatever process has the number now; 1 is always there.
    putOld(folder / ".yg-4000000-1700000000000000000-1.tmp");
    EXPECT_TRUE(writeInto(folder));
    EXPECT_THAT(folder.names(), ElementsAre("a.xml"));
}

TEST(Leftovers, GoAlsoWhereNoMoreCanBeWritten) {
    const TemporaryFolder folder;
    putOld(folder / leftover);
    ScriptedFileLayer layer;
    layer.errorOf = [](std::string_view call) { return call == "write" ? ENOSPC : 0; };
    EXPECT_FALSE(writeFileAtomically(folder / "a.xml", "new", layer));
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST(Leftovers, GoBesideTheFileThatALinkNames) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "real");
    fs::create_symlink("real/a.xml", folder / "a.xml");
    putOld(folder / ("real/" + std::string(leftover)));
    EXPECT_TRUE(writeInto(folder));
    EXPECT_THAT(folder.names("real"), ElementsAre("a.xml"));
}

TEST(Leftovers, OfTheLastHourStay) {
    const TemporaryFolder folder;
    put(folder / leftover, "half");
    age(folder / leftover, 3500);
    EXPECT_TRUE(writeInto(folder));
    EXPECT_THAT(folder.names(), ElementsAre(leftover, "a.xml"));
}

TEST(Leftovers, AreNotWhatAWriterHasOpen) {
    const TemporaryFolder folder;
    putOld(folder / leftover);
    const int file = ::open((folder / leftover).c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(file, LOCK_EX | LOCK_NB), 0);
    EXPECT_TRUE(writeInto(folder));
    EXPECT_THAT(folder.names(), Contains(leftover));
    ::close(file);
    EXPECT_TRUE(writeInto(folder));
    EXPECT_THAT(folder.names(), ElementsAre("a.xml"));
}

TEST(Leftovers, AreNotWhatAStoppedWriteGoesOnToFinish) {
    const TemporaryFolder folder;
    ScriptedFileLayer slow;
    slow.largestWrite = 1;
    bool wroteMeanwhile = false;
    slow.after = [&](std::string_view call) {
        if (call != "write" || wroteMeanwhile)
            return;
        wroteMeanwhile = true;
        for (const std::string& name : folder.names())
            age(folder / name, oldAge);
        ScriptedFileLayer layer;
        EXPECT_TRUE(writeFileAtomically(folder / "b.xml", "other", layer));
    };
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new", slow));
    EXPECT_TRUE(wroteMeanwhile);
    EXPECT_EQ(contentOf(folder / "a.xml"), "new");
}

TEST(Leftovers, AreFilesOfOneFormOfNameOnly) {
    for (const std::string_view name : {".yg-1-2-3.tmp", ".yg-12-34-56.tmp"}) {
        EXPECT_TRUE(isTempName(name)) << name;
    }
    EXPECT_TRUE(isTempName(nextTempName()));
    const TemporaryFolder folder;
    const std::vector<std::string> others = {
        ".yg-1-2.tmp",    ".yg-1-2-3-4.tmp", ".yg-1-2-3.tmpx",  ".yg-1-2-3",
        "yg-1-2-3.tmp",   ".yg--2-3.tmp",    ".yg-1--3.tmp",    ".yg-1-2-.tmp",
        ".yg-a-2-3.tmp",  ".yg-1-2-3.tmp~",  ".yg-1-2-3.TMP",   ".yg- 1-2-3.tmp",
        ".yg-+1-2-3.tmp", ".yg-.tmp",        "a..yg-1-2-3.tmp", "user.xml"};
    for (const std::string& name : others) {
        putOld(folder / name);
        EXPECT_FALSE(isTempName(name)) << name;
    }
    EXPECT_TRUE(writeInto(folder));
    for (const std::string& name : others) {
        EXPECT_TRUE(fs::exists(folder / name)) << name;
    }
}

TEST(Leftovers, AreRegularFilesOnly) {
    const TemporaryFolder folder;
    put(folder / "real", "kept");
    fs::create_symlink("real", folder / ".yg-1-1-1.tmp");
    fs::create_directory(folder / ".yg-1-1-2.tmp");
    ASSERT_EQ(::mkfifo((folder / ".yg-1-1-3.tmp").c_str(), 0600), 0);
    for (const std::string& name : folder.names())
        age(folder / name, oldAge);
    EXPECT_TRUE(writeInto(folder));
    EXPECT_THAT(folder.names(),
                ElementsAre(".yg-1-1-1.tmp", ".yg-1-1-2.tmp", ".yg-1-1-3.tmp", "a.xml", "real"));
}

TEST(Leftovers, BelongToTheWriterOrToTheOwnerOfTheFileWritten) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can be several users";
    const TemporaryFolder folder;
    put(folder / "a.xml", "old");
    ASSERT_EQ(::chown((folder / "a.xml").c_str(), 12'001, 12'001), 0);
    for (const uid_t owner : {0U, 12'001U, 12'002U}) {
        const std::string path = folder / (".yg-1-1-" + std::to_string(owner) + ".tmp");
        putOld(path);
        ASSERT_EQ(::chown(path.c_str(), owner, owner), 0);
    }
    EXPECT_TRUE(writeInto(folder));
    EXPECT_THAT(folder.names(), ElementsAre(".yg-1-1-12002.tmp", "a.xml"));
}

TEST(Leftovers, AreLookedForOnceInAnHourInEachFolder) {
    const TemporaryFolder folder;
    const auto looks = [&](ScriptedFileLayer& layer) {
        const auto before = std::count(layer.made.begin(), layer.made.end(), "eachName");
        EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new", layer));
        return std::count(layer.made.begin(), layer.made.end(), "eachName") > before;
    };
    ScriptedFileLayer layer;
    EXPECT_TRUE(looks(layer));
    EXPECT_FALSE(looks(layer));
    layer.paused += std::chrono::minutes(59);
    EXPECT_FALSE(looks(layer));
    layer.paused += std::chrono::minutes(2);
    EXPECT_TRUE(looks(layer));
    EXPECT_FALSE(looks(layer));

    const TemporaryFolder other;
    EXPECT_TRUE(writeFileAtomically(other / "a.xml", "new", layer));
    EXPECT_FALSE(looks(layer));
}

TEST(Leftovers, AreLookedForAmongALimitedNumberOfNames) {
    const TemporaryFolder folder;
    put(folder / "a", "");
    put(folder / "b", "");
    const int opened = systemFileLayer().openFolder(folder.path().c_str());
    int names = 0;
    const auto count = [&](const char*) { ++names; };
    EXPECT_EQ(systemFileLayer().eachName(opened, 3, count), 0);
    EXPECT_EQ(names, 3);
    names = 0;
    EXPECT_EQ(systemFileLayer().eachName(opened, 10'000, count), 0);
    EXPECT_EQ(names, 4);
    systemFileLayer().close(opened);
}

TEST(Leftovers, ThatCannotBeRemovedFailNoWrite) {
    for (const int error : {EIO, EACCES, EPERM, EMFILE, ENOLCK, EROFS}) {
        for (const std::string_view failing : {"openOld", "unlink", "lock", "eachName"}) {
            const TemporaryFolder folder;
            putOld(folder / leftover);
            ScriptedFileLayer layer;
            layer.errorOf = [&](std::string_view call) { return call == failing ? error : 0; };
            EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new", layer));
            EXPECT_EQ(contentOf(folder / "a.xml"), "new");
            EXPECT_EQ(contentOf(folder / leftover), "half");
        }
    }
}

TEST(Leftovers, AnotherFileThatTookTheNameStays) {
    const TemporaryFolder folder;
    putOld(folder / leftover);
    put(folder / "other", "kept");
    ScriptedFileLayer layer;
    layer.errorOf = [&](std::string_view call) {
        if (call == "openOld")
            fs::rename(folder / "other", folder / leftover);
        return 0;
    };
    EXPECT_TRUE(writeFileAtomically(folder / "a.xml", "new", layer));
    EXPECT_EQ(contentOf(folder / leftover), "kept");
}

TEST(Leftovers, OfAKilledProcessGo) {
    const TemporaryFolder folder;
    const pid_t child = ::fork();
    if (child == 0) {
        ScriptedFileLayer layer;
        layer.after = [](std::string_view call) {
            if (call == "write")
                ::_exit(0);
        };
        writeFileAtomically(folder / "a.xml", "new", layer);
        ::_exit(1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    ASSERT_EQ(folder.names().size(), 1U);
    ageTempFiles(folder.path());
    EXPECT_TRUE(writeInto(folder));
    EXPECT_THAT(folder.names(), ElementsAre("a.xml"));
}

}  // namespace
}  // namespace yg::files
