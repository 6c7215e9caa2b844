// SPDX-License-Identifier: MIT
//
// A program that is killed while it saves a file, by any of the savers, leaves it whole, with what
// it acknowledged last or what it was writing.
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
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Proof.h"
#include "crash/Savers.h"
#include "crash/WriterLoop.h"
#include "files/TemporaryFolder.h"

namespace yg::testing {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using files::TemporaryFolder;

/// The program from its start until it is killed.
class Writer {
public:
    /// Saves numbers from the first one on, for ever or so many.
    Writer(std::string program, std::string saver, std::string root, long first,
           std::optional<long> count = std::nullopt) {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        // What the tool's host logs is not wanted here.
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        std::string begin = std::to_string(first);
        std::string number = std::to_string(count.value_or(0));
        std::array<char*, 6> words{program.data(),
                                   saver.data(),
                                   root.data(),
                                   begin.data(),
                                   count ? number.data() : nullptr,
                                   nullptr};
        const int failure =
            ::posix_spawn(&process_, program.c_str(), &actions, nullptr, words.data(), environ);
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

/// A saver that is killed, in a program of its own.
struct KilledSaver {
    std::string program;
    std::string name;
    std::string file;
};

std::vector<KilledSaver> killedSavers() {
    std::vector<KilledSaver> all;
#ifdef YG_IMAGE_PROGRAM
    all.push_back({YG_IMAGE_PROGRAM, "image", "out.png"});
#endif
    for (const Saver& saver : savers()) {
        all.push_back({YG_WRITER_PROGRAM, std::string(saver.name), std::string(saver.file)});
    }
    return all;
}

/// What stands in the settings file beside the value that is counted.
constexpr std::string_view settings =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!-- of the user -->\n"
    "<config>\n"
    "    <!-- kept -->\n"
    "    <other a=\"b\"><unknown/></other>\n"
    "    <counting>\n"
    "        <value description=\"counts\">0</value>\n"
    "    </counting>\n"
    "</config>\n";

/// Makes a root with everything that a saver needs.
void fill(const TemporaryFolder& root) {
    for (const std::string_view folder : {"user", "storage", "images"}) {
        fs::create_directory(root / folder);
    }
    files::put(root / "user/settings.xml", settings);
    files::put(root / "storage/palette_white.xml",
               "<ROOT><SWPALETTE><BITMAPS><i NAME='strip' PATH='strip.png'/></BITMAPS>"
               "</SWPALETTE></ROOT>");
    fs::copy_file(YG_IMAGE_FILE, root / "images/strip.png");
}

/// The bytes of the file after each number, as a run that nobody disturbs has them.
class Expected {
public:
    explicit Expected(const KilledSaver& saver) {
        const bool isImage = saver.name == "image";
        const long numbers = isImage ? imageWidths : 1;
        const TemporaryFolder root;
        fill(root);
        for (long number = 0; number < numbers; ++number) {
            Writer writer(saver.program, saver.name, root.path(), number, 1);
            EXPECT_EQ(writer.lastNumber(), number);
            contents_.push_back(files::contentOf(root / ("user/" + saver.file)));
        }
        if (!isImage) {
            const std::size_t begin = contents_[0].find(textOf(0));
            EXPECT_NE(begin, std::string::npos);
            end_ = contents_[0].substr(begin + textOf(0).size());
            contents_[0].resize(begin);
        }
    }

    bool areOf(long number, const std::string& bytes) const {
        return contents_.size() > 1
                   ? bytes == contents_[static_cast<std::size_t>(number) % contents_.size()]
                   : bytes == contents_[0] + textOf(number) + end_;
    }

private:
    /// For an image those of all widths; else what stands before the text.
    std::vector<std::string> contents_;
    std::string end_;
};

class CrashProof : public ::testing::TestWithParam<KilledSaver> {};

INSTANTIATE_TEST_SUITE_P(Savers, CrashProof, ::testing::ValuesIn(killedSavers()),
                         [](const auto& parameter) { return parameter.param.name; });

TEST_P(CrashProof, LeavesWhatWasAcknowledgedLastOrWhatWasBeingWritten) {
    const int kills = repeats(100, 10'000) / static_cast<int>(killedSavers().size()) + 1;
    const KilledSaver& saver = GetParam();
    const Expected expected(saver);
    const TemporaryFolder root;
    fill(root);
    // The user keeps the file elsewhere and private.
    fs::create_directory(root / "elsewhere");
    const std::string file = root / "elsewhere/mine";
    const std::string link = root / ("user/" + saver.file);
    EXPECT_EQ(Writer(saver.program, saver.name, root.path(), 0, 1).lastNumber(), 0);
    fs::rename(link, file);
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    fs::create_symlink("../elsewhere/mine", link);

    const unsigned seed = std::random_device()();
    std::mt19937 random(seed);
    long number = 0;
    int acknowledged = 0;
    int beingWritten = 0;
    int early = 0;
    for (int i = 0; i < kills; ++i) {
        Writer writer(saver.program, saver.name, root.path(), number + 1);
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

        number = last.value_or(number);
        const std::string bytes = files::contentOf(link);
        const bool isNext = !expected.areOf(number, bytes);
        number += isNext ? 1 : 0;
        ASSERT_TRUE(expected.areOf(number, bytes))
            << "seed " << seed << ", kill " << i << ": neither " << number - 1 << " nor the next";
        ++(isNext ? beingWritten : acknowledged);
        ASSERT_TRUE(fs::is_symlink(link));
        ASSERT_EQ(files::modeOf(file), 0600U);
    }

    // What a kill leaves beside the file is a hidden, private file, at most one for each.
    int leftOver = 0;
    for (const std::string& name : root.names("elsewhere")) {
        if (name != "mine") {
            ++leftOver;
            EXPECT_THAT(name, ::testing::StartsWith(".yg-"));
            EXPECT_EQ(files::modeOf(root / ("elsewhere/" + name)) & 077U, 0U);
        }
    }
    EXPECT_LE(leftOver, kills);
    EXPECT_GT(number, 0);

    // A write removes them once they are old.
    files::ageTempFiles(root / "elsewhere");
    const long next = number + 1;
    EXPECT_EQ(Writer(saver.program, saver.name, root.path(), next, 1).lastNumber(), next);
    EXPECT_THAT(root.names("elsewhere"), ::testing::ElementsAre("mine"));
    std::printf(
        "%d kills after %ld writes, %d before the first of a run: %d files with what was "
        "acknowledged last, %d with the next, %d hidden files, which a later write removed\n",
        kills, number, early, acknowledged, beingWritten, leftOver);
}

}  // namespace
}  // namespace yg::testing
