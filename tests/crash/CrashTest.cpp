// SPDX-License-Identifier: MIT
//
// A program that is killed while it saves a file, by any of the savers, leaves it whole, with what
// it acknowledged last or what it was writing.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Program.h"
#include "Proof.h"
#include "crash/Savers.h"
#include "crash/WriterLoop.h"
#include "files/TemporaryFolder.h"

namespace yg::testing {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;
using files::TemporaryFolder;

/// The program that saves numbers, from its start until it is killed.
class Writer {
public:
    /// Saves numbers from the first one on, for ever or so many.
    Writer(const std::string& program, const std::string& saver, const std::string& root,
           long first, std::optional<long> count = std::nullopt)
        : program_(wordsOf({program, saver, root, std::to_string(first)}, count)) {}

    /// Waits for one more acknowledgement.
    bool read() {
        const std::optional<std::string> line = program_.line();
        if (line)
            last_ = std::stol(*line);
        return line.has_value();
    }

    /// Whether it was still running.
    bool kill() {
        program_.kill();
        return WIFSIGNALED(program_.wait());
    }

    /// What it acknowledged last, once it is killed or has ended; none if nothing.
    std::optional<long> lastNumber() {
        while (read()) {
        }
        return last_;
    }

private:
    static std::vector<std::string> wordsOf(std::vector<std::string> words,
                                            std::optional<long> count) {
        if (count)
            words.push_back(std::to_string(*count));
        return words;
    }

    Program program_;
    std::optional<long> last_;
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
    for (const Saver& saver : savers())
        all.push_back({YG_WRITER_PROGRAM, std::string(saver.name), std::string(saver.file)});
    return all;
}

/// What is in the settings file beside the value that is counted.
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
    for (const std::string_view folder : {"user", "storage", "images"})
        fs::create_directory(root / folder);
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
            for (unsigned left = random() % 4 + 1; left > 0; --left)
                writer.read();
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
