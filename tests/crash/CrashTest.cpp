// SPDX-License-Identifier: MIT
//
// A program that is killed while it writes settings leaves a whole file, with the value that it
// acknowledged last or the one that it was writing.
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <random>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/xml/Document.h"
#include "YGConfigManager/xml/Node.h"

#include "Proof.h"
#include "crash/Counting.h"
#include "files/TemporaryFolder.h"

namespace yg::testing {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using files::TemporaryFolder;

/// The program from its start until it is killed.
class Writer {
public:
    explicit Writer(std::string root) {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        std::string name = YG_WRITER_PROGRAM;
        std::array<char*, 3> words{name.data(), root.data(), nullptr};
        const int failure =
            ::posix_spawn(&process_, YG_WRITER_PROGRAM, &actions, nullptr, words.data(), environ);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
        acknowledgements_ = ends[0];
        if (failure != 0) {
            throw std::runtime_error("the program cannot be run");
        }
    }
    ~Writer() {
        if (process_ > 0) {
            kill();
        }
        ::close(acknowledgements_);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// Waits for one more acknowledgement, or several that have come.
    void read() {
        std::array<char, 256> piece{};
        const ssize_t count = ::read(acknowledgements_, piece.data(), piece.size());
        if (count > 0) {
            lines_.append(piece.data(), static_cast<std::size_t>(count));
        } else {
            isOver_ = true;
        }
    }

    /// Whether it was still running.
    bool kill() {
        ::kill(process_, SIGKILL);
        int state = 0;
        ::waitpid(std::exchange(process_, -1), &state, 0);
        return WIFSIGNALED(state);
    }

    /// All that it acknowledged last, once it is killed; none if nothing.
    std::optional<long> lastNumber() {
        while (!isOver_) {
            read();
        }
        if (lines_.empty()) {
            return std::nullopt;
        }
        const std::size_t end = lines_.rfind('\n', lines_.size() - 2);
        return std::atol(lines_.c_str() + (end == std::string::npos ? 0 : end + 1));
    }

private:
    pid_t process_ = -1;
    int acknowledgements_ = -1;
    bool isOver_ = false;
    std::string lines_;
};

constexpr std::string_view beginning =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!-- of the user -->\n"
    "<config>\n"
    "    <!-- kept -->\n"
    "    <other a=\"b\"><unknown/></other>\n"
    "    <counting>\n"
    "        <value description=\"counts\">0</value>\n"
    "    </counting>\n"
    "</config>\n";

/// The number of the value in the file, which has to be whole; -1 if it is not.
long numberIn(const std::string& path) {
    const auto read = xml::Document::parseFile(path);
    EXPECT_TRUE(read) << read.error;
    if (!read) {
        return -1;
    }
    const xml::Document& document = read.document;
    const auto values = document.query("config/counting/value[@description='counts']");
    EXPECT_EQ(values.size(), 1U);
    EXPECT_EQ(document.query("config/comment()").size(), 1U);
    EXPECT_EQ(document.query("config/other[@a='b']/unknown").size(), 1U);
    if (values.size() != 1) {
        return -1;
    }
    const std::string text = values[0].stringValue();
    const long number = std::atol(text.c_str());
    EXPECT_TRUE(text == "0" || text == textOf(number)) << text;
    return number;
}

TEST(CrashProof, LeavesTheValueAcknowledgedLastOrTheOneBeingWritten) {
    const int kills = repeats(100, 10'000);
    const TemporaryFolder root;
    // The user keeps the file elsewhere and private.
    fs::create_directory(root / "user");
    fs::create_directory(root / "elsewhere");
    const std::string file = root / "elsewhere/mine.xml";
    const std::string link = root / "user/settings.xml";
    files::put(file, beginning);
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("../elsewhere/mine.xml", link);

    const unsigned seed = std::random_device()();
    std::mt19937 random(seed);
    long number = 0;
    int acknowledged = 0;
    int beingWritten = 0;
    int early = 0;
    for (int i = 0; i < kills; ++i) {
        Writer writer(root.path());
        // Some die before their first write is done, the others anywhere between two writes.
        if (random() % 10 != 0) {
            for (unsigned left = random() % 4 + 1; left > 0; --left) {
                writer.read();
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 4000));
        ASSERT_TRUE(writer.kill()) << "the program ended by itself";
        const std::optional<long> last = writer.lastNumber();
        early += last ? 0 : 1;

        const long expected = last.value_or(number);
        ASSERT_GE(expected, number);
        number = numberIn(link);
        ASSERT_TRUE(number == expected || number == expected + 1)
            << "seed " << seed << ", kill " << i << ": " << number << " instead of " << expected;
        ++(number == expected ? acknowledged : beingWritten);
        ASSERT_TRUE(fs::is_symlink(link));
        ASSERT_EQ(files::modeOf(file), 0600U);
    }

    // What a kill leaves beside the file is a hidden, private file, at most one for each.
    int leftOver = 0;
    for (const std::string& name : root.names("elsewhere")) {
        if (name != "mine.xml") {
            ++leftOver;
            EXPECT_THAT(name, ::testing::StartsWith(".yg-"));
            EXPECT_EQ(files::modeOf(root / ("elsewhere/" + name)) & 077U, 0U);
        }
    }
    EXPECT_LE(leftOver, kills);
    EXPECT_EQ(root.names("user"), std::set<std::string>{"settings.xml"});
    EXPECT_GT(number, 0);
    std::printf(
        "%d kills after %ld writes, %d before the first of a run: %d files with the value "
        "acknowledged last, %d with the next one, %d unfinished neighbours\n",
        kills, number, early, acknowledged, beingWritten, leftOver);
}

}  // namespace
}  // namespace yg::testing
