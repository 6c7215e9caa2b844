// SPDX-License-Identifier: MIT
//
// One settings file with eight writers at the same time: runs of the tool and applications that
// merge, many of them killed. What was acknowledged is in the file at the end.
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <fcntl.h>
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

#include <gtest/gtest.h>

#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/xml/Document.h"

#include "Proof.h"
#include "host/TempRoot.h"

namespace yg::testing {
namespace {

/// A program from its start until it ends or is killed, with pipes to its standard input and from
/// one of its other streams.
class Program {
public:
    Program(const std::vector<std::string>& words, int streamRead) {
        std::array<int, 2> input{};
        std::array<int, 2> output{};
        if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
        ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_adddup2(&actions, output[1], streamRead);
        std::vector<std::string> copies = words;
        std::vector<char*> pointers;
        for (std::string& word : copies)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        const int failure =
            ::posix_spawn(&process_, pointers[0], &actions, nullptr, pointers.data(), environ);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(input[0]);
        ::close(output[1]);
        input_ = input[1];
        output_ = output[0];
        if (failure != 0)
            throw std::runtime_error("the program cannot be run");
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() {
        if (process_ > 0)
            kill();
        closeInput();
        ::close(output_);
    }

    void send() const {
        const char byte = '.';
        if (::write(input_, &byte, 1) != 1)
            throw std::runtime_error("the program reads no more");
    }
    void closeInput() {
        if (input_ >= 0)
            ::close(std::exchange(input_, -1));
    }

    /// Waits for one more line, without its end; none when there is none any more.
    std::optional<std::string> line() {
        std::size_t end = 0;
        while ((end = read_.find('\n')) == std::string::npos) {
            if (!readMore())
                return std::nullopt;
        }
        std::string found = read_.substr(0, end);
        read_.erase(0, end + 1);
        return found;
    }

    /// All that it wrote, until its end.
    std::string all() {
        while (readMore()) {
        }
        return std::exchange(read_, {});
    }

    void kill() const { ::kill(process_, SIGKILL); }

    /// Its exit status; -1 when it was killed.
    int wait() {
        int state = 0;
        ::waitpid(std::exchange(process_, -1), &state, 0);
        return WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    }

private:
    bool readMore() {
        std::array<char, 4096> piece{};
        const ssize_t count = ::read(output_, piece.data(), piece.size());
        if (count > 0)
            read_.append(piece.data(), static_cast<std::size_t>(count));
        return count > 0;
    }

    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string read_;
};

/// One of those who write at the same time. Each has a section of its own.
struct Writer {
    std::string section;
    std::vector<long> acknowledged = {};
    int attempts = 0;
    int kills = 0;
};

/// Lets a program run on for a moment in which it has some chance to end.
void pause(std::mt19937& random) {
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 12'000));
}

void runTools(const std::string& root, int runs, unsigned seed, Writer& writer) {
    std::mt19937 random(seed);
    for (long number = 0; number < runs; ++number) {
        const std::string text = std::to_string(number);
        Program tool({YG_TOOL, "settings", "set", "shared.xml", writer.section, "i" + text, text,
                      "--root", root},
                     STDERR_FILENO);
        ++writer.attempts;
        if (random() % 4 == 0) {
            pause(random);
            tool.kill();
        }
        const std::string errors = tool.all();
        const int status = tool.wait();
        writer.kills += status == -1;
        // It may have come to its end before it was killed. On a busy machine it may not have come
        // to the lock.
        if (status == 0 && errors.empty()) {
            writer.acknowledged.push_back(number);
        } else if (status != -1) {
            EXPECT_NE(errors.find("another writer holds the lock"), std::string::npos) << errors;
        }
    }
}

void runApplications(const std::string& root, int writes, bool isKilled, unsigned seed,
                     Writer& writer) {
    std::mt19937 random(seed);
    while (writer.attempts < writes) {
        Program application(
            {YG_SHARING_PROGRAM, root, writer.section, std::to_string(writer.attempts)},
            STDOUT_FILENO);
        const auto take = [&](const std::optional<std::string>& line) {
            if (line && *line != "-")
                writer.acknowledged.push_back(std::stol(*line));
        };
        while (writer.attempts < writes) {
            application.send();
            ++writer.attempts;
            if (isKilled && random() % 8 == 0) {
                pause(random);
                application.kill();
                take(application.line());
                ++writer.kills;
                break;
            }
            take(application.line());
        }
    }
}

TEST(SharedSettingsProof, NothingThatWasAcknowledgedIsLost) {
    const int writes = repeats(320, 10'000) / 8;
    const TempRoot root;
    root.write("storage/shared.xml", "<config><!-- kept --><shipped><x>1</x></shipped></config>");
    std::vector<Writer> writers;
    for (int writer = 0; writer < 8; ++writer)
        writers.push_back({"w" + std::to_string(writer)});
    // An application that has the file open from before the first write until after the last one.
    Program open({YG_SHARING_PROGRAM, root.path(), "open", "0"}, STDOUT_FILENO);
    open.send();
    EXPECT_EQ(open.line(), "0");
    const unsigned seed = std::random_device()();
    std::vector<std::thread> threads;
    for (unsigned at = 0; at < 8; ++at) {
        threads.emplace_back([&, at] {
            if (at < 5)
                runTools(root.path(), writes, seed + at, writers[at]);
            else
                runApplications(root.path(), writes, at > 5, seed + at, writers[at]);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    open.send();
    EXPECT_EQ(open.line(), "1");
    open.closeInput();
    EXPECT_EQ(open.wait(), 0);

    const auto file = xml::Document::parseFile(root.at("user/shared.xml"));
    ASSERT_TRUE(file) << file.error;
    const auto textOf = [&](const std::string& path) {
        const auto found = file.document.query("config/" + path);
        return found.empty() ? "none" : found.front().stringValue();
    };
    EXPECT_EQ(textOf("comment()"), " kept ");
    EXPECT_EQ(textOf("shipped/x"), "1");
    EXPECT_EQ(textOf("open/i0") + textOf("open/i1"), "01");
    int attempts = 0;
    int kills = 0;
    std::size_t acknowledged = 0;
    std::size_t lost = 0;
    for (const Writer& writer : writers) {
        attempts += writer.attempts;
        kills += writer.kills;
        acknowledged += writer.acknowledged.size();
        const auto section = file.document.query("config/" + writer.section);
        ASSERT_EQ(section.size(), 1U) << writer.section;
        RecordMap<std::string> texts;
        for (const xml::Node& item : xml::Element(section.front()).children())
            texts.set(xml::Element(item).name(), item.stringValue());
        for (const long number : writer.acknowledged) {
            const std::string* const text = texts.find("i" + std::to_string(number));
            lost += !text || *text != std::to_string(number);
        }
    }
    EXPECT_EQ(lost, 0U) << "seed " << seed;
    EXPECT_EQ(attempts, 8 * writes);
    EXPECT_GT(kills, 0);
    EXPECT_GT(acknowledged, 0U);
    std::printf("%d writes, %d kills, %zu acknowledged, %zu lost\n", attempts, kills, acknowledged,
                lost);
}

}  // namespace
}  // namespace yg::testing
