// SPDX-License-Identifier: MIT
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/files/AtomicWrite.h"
#include "YGConfigManager/files/FolderLock.h"

#include "Proof.h"
#include "files/ScriptedFileLayer.h"
#include "files/TemporaryFolder.h"

namespace yg::files {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
namespace fs = std::filesystem;

/// Whether the lock could be had at once.
bool isFree(const std::string& path) {
    return static_cast<bool>(FolderLock(path, 0ms, systemFileLayer()));
}

/// Another process, which does the task and then waits to be killed.
class OtherProcess {
public:
    explicit OtherProcess(const std::function<void()>& task) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        process_ = ::fork();
        if (process_ == 0) {
            task();
            EXPECT_EQ(::write(ends[1], "x", 1), 1);
            while (true)
                ::pause();
        }
        char letter = 0;
        EXPECT_EQ(::read(ends[0], &letter, 1), 1);
        ::close(ends[0]);
        ::close(ends[1]);
    }
    ~OtherProcess() {
        if (process_ > 0)
            kill();
    }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    void signal(int number) const { ::kill(process_, number); }
    void kill() {
        signal(SIGKILL);
        ::waitpid(std::exchange(process_, -1), nullptr, 0);
    }

private:
    pid_t process_ = -1;
};

/// Takes the lock and keeps it until the process ends.
void keepLock(const std::string& path) {
    static const auto& lock = *new FolderLock(path);
    EXPECT_TRUE(lock) << lock.error();
}

TEST(FolderLock, IsHeldByOneObjectOfAProcess) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.xml";
    {
        const FolderLock lock(path);
        EXPECT_TRUE(lock);
        EXPECT_EQ(lock.error(), "");
        EXPECT_FALSE(isFree(path));
    }
    EXPECT_TRUE(isFree(path));
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST(FolderLock, IsHeldByOneProcessAndFreeWhenThatIsKilled) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.xml";
    OtherProcess other([&] { keepLock(path); });
    EXPECT_FALSE(isFree(path));
    other.kill();
    EXPECT_TRUE(isFree(path));
}

TEST(FolderLock, IsWaitedForNoLongerThanItsTime) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.xml";
    const OtherProcess other([&] { keepLock(path); });
    other.signal(SIGSTOP);
    ScriptedFileLayer layer;
    const FolderLock lock(path, FolderLock::longestWait, layer);
    EXPECT_FALSE(lock);
    EXPECT_EQ(lock.error(), path + ": another writer holds the lock of its folder");
    EXPECT_GE(layer.paused, 10s);
    EXPECT_LT(layer.paused, 11s);
    // It rests between its attempts.
    EXPECT_LT(layer.made.size(), 10'000U);
    other.signal(SIGCONT);
}

TEST(FolderLock, IsTakenAsSoonAsItIsFree) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.xml";
    std::optional<FolderLock> first(path);
    ScriptedFileLayer layer;
    layer.errorOf = [&, attempts = 0](std::string_view call) mutable {
        if (call == "lock" && ++attempts == 5)
            first.reset();
        return 0;
    };
    EXPECT_TRUE(FolderLock(path, 1s, layer));
    EXPECT_LT(layer.paused, 20ms);
}

TEST(FolderLock, ANewcomerLetsThoseThatWaitTryFirst) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.xml";
    ScriptedFileLayer layer;
    EXPECT_TRUE(FolderLock(path, 1s, layer));
    EXPECT_EQ(layer.paused, 0ms);

    const int waiter = systemFileLayer().openFolder(folder.path().c_str());
    systemFileLayer().beginWaiting(waiter);
    EXPECT_TRUE(FolderLock(path, 1s, layer));
    EXPECT_GT(layer.paused, 2ms);

    layer.paused = 0ms;
    systemFileLayer().endWaiting(waiter);
    EXPECT_TRUE(FolderLock(path, 1s, layer));
    EXPECT_EQ(layer.paused, 0ms);
    systemFileLayer().close(waiter);
}

TEST(FolderLock, IsTheSameForAllPathsToOneFile) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "real");
    fs::create_symlink("real/a.xml", folder / "a.xml");
    fs::create_directory_symlink("real", folder / "shortcut");
    const FolderLock lock(folder / "a.xml");
    EXPECT_FALSE(isFree(folder / "real/a.xml"));
    EXPECT_FALSE(isFree(folder / "real/../real/a.xml"));
    EXPECT_FALSE(isFree(folder / "shortcut/a.xml"));
    EXPECT_TRUE(isFree(folder / "b.xml"));
}

TEST(FolderLock, StaysWhenTheFileIsReplaced) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.xml";
    const FolderLock lock(path);
    EXPECT_TRUE(writeFileAtomically(path, "one"));
    EXPECT_FALSE(isFree(path));
    EXPECT_TRUE(writeFileAtomically(path, "two"));
    EXPECT_FALSE(isFree(path));
}

TEST(FolderLock, IsOfTheFolderToWhichThePathLeadsInTheEnd) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "old");
    fs::create_directory(folder / "new");
    fs::create_symlink("old/a.xml", folder / "a.xml");
    ScriptedFileLayer layer;
    layer.after = [&](std::string_view call) {
        if (call == "lock") {
            fs::remove(folder / "a.xml");
            fs::create_symlink("new/a.xml", folder / "a.xml");
        }
    };
    const FolderLock lock(folder / "a.xml", 1s, layer);
    EXPECT_TRUE(lock);
    EXPECT_TRUE(isFree(folder / "old/a.xml"));
    EXPECT_FALSE(isFree(folder / "new/a.xml"));
}

TEST(FolderLock, IsReleasedForAProcessForkedMeanwhileToo) {
    const TemporaryFolder folder;
    const std::string path = folder / "a.xml";
    std::optional<FolderLock> lock(path);
    const OtherProcess other([] {});
    lock.reset();
    EXPECT_TRUE(isFree(path));
}

TEST(FolderLock, IsNotHandedToOtherPrograms) {
    const TemporaryFolder folder;
    const FolderLock lock(folder / "a.xml");
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        if (fs::read_symlink(entry.path(), gone) == folder.path()) {
            EXPECT_EQ(::fcntl(std::stoi(entry.path().filename()), F_GETFD), FD_CLOEXEC);
        }
    }
}

TEST(FolderLock, SaysWhyItIsNotHeld) {
    const TemporaryFolder folder;
    put(folder / "file", "");
    fs::create_symlink("circle", folder / "circle");
    const auto errorFor = [](const std::string& path) { return FolderLock(path).error(); };
    EXPECT_EQ(errorFor(""), ": the path is empty");
    EXPECT_EQ(errorFor(std::string("a\0b", 3)), "a?b: the path holds a NUL byte");
    EXPECT_EQ(errorFor(folder / "none/a.xml"),
              folder / "none/a.xml" + ": No such file or directory");
    EXPECT_EQ(errorFor(folder / "file/a.xml"), folder / "file/a.xml" + ": Not a directory");
    EXPECT_EQ(errorFor(folder / "circle"),
              folder / "circle" + ": Too many levels of symbolic links");
}

TEST(FolderLock, IsNotHeldWhereAnyCallFails) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "real");
    fs::create_symlink("real/a.xml", folder / "a.xml");
    const std::string path = folder / "a.xml";
    for (const int error : {EIO, EACCES, EMFILE, ENOLCK, EBADF, EOPNOTSUPP}) {
        std::size_t number = 0;
        for (bool failed = true; failed; ++number) {
            failed = false;
            ScriptedFileLayer layer;
            std::string failing;
            layer.errorOf = [&](std::string_view call) {
                if (layer.made.size() != number + 1)
                    return 0;
                failed = true;
                failing = call;
                return error;
            };
            {
                const FolderLock lock(path, 1s, layer);
                // Whatever was opened to look at a link is closed for nothing.
                const bool matters = failed && failing != "close" && failing != "unlock";
                EXPECT_EQ(static_cast<bool>(lock), !matters) << failing;
                EXPECT_EQ(lock.error().empty(), !matters) << lock.error();
                layer.errorOf = [](std::string_view) { return 0; };
            }
            EXPECT_TRUE(isFree(path));
        }
        EXPECT_GT(number, 12U);
    }
}

TEST(FolderLock, AnInterruptedCallIsMadeAgain) {
    const TemporaryFolder folder;
    ScriptedFileLayer layer;
    layer.errorOf = [interrupted = false](std::string_view call) mutable {
        interrupted = (call == "lock" || call == "openFolder") && !interrupted;
        return interrupted ? EINTR : 0;
    };
    EXPECT_TRUE(FolderLock(folder / "a.xml", 1s, layer));
}

// ---- Several at once ------------------------------------------------------------------------

/// Adds one to the number in the file, under the lock.
bool increase(const std::string& path) {
    const FolderLock lock(path);
    return lock && writeFileAtomically(path, std::to_string(std::stol(contentOf(path)) + 1));
}

TEST(FolderLockProof, LosesNoChangeOfThreadsAndProcessesThatWriteAtOnce) {
    const int rounds = yg::testing::repeats(25, 1000);
    const TemporaryFolder folder;
    const std::string path = folder / "a.xml";
    put(path, "0");
    const auto work = [&] {
        for (int round = 0; round < rounds; ++round) {
            if (!increase(path))
                return false;
        }
        return true;
    };
    std::vector<pid_t> processes;
    for (int number = 0; number < 4; ++number) {
        const pid_t process = ::fork();
        if (process == 0)
            ::_exit(work() ? 0 : 1);
        processes.push_back(process);
    }
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number)
        threads.emplace_back([&] { failures += work() ? 0 : 1; });
    for (std::thread& thread : threads)
        thread.join();
    for (const pid_t process : processes) {
        int status = -1;
        ::waitpid(process, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    }
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(contentOf(path), std::to_string(8 * rounds));
    EXPECT_THAT(folder.names(), ElementsAre("a.xml"));
}

}  // namespace
}  // namespace yg::files
