// SPDX-License-Identifier: MIT
//
// One settings file with eight writers at the same time: runs of the tool and applications that
// merge, many of them killed. What was acknowledged is in the file at the end.
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <random>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/xml/Document.h"

#include "Program.h"
#include "Proof.h"
#include "files/TemporaryFolder.h"

namespace yg::testing {
namespace {

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
        const int state = tool.wait();
        writer.kills += WIFSIGNALED(state) ? 1 : 0;
        // It may have come to its end before it was killed. On a busy machine it may not have come
        // to the lock.
        if (state == 0 && errors.empty()) {
            writer.acknowledged.push_back(number);
        } else if (!WIFSIGNALED(state)) {
            EXPECT_NE(errors.find("another writer holds the lock"), std::string::npos) << errors;
        }
    }
}

void runApplications(const std::string& root, int writes, bool isKilled, unsigned seed,
                     Writer& writer) {
    std::mt19937 random(seed);
    while (writer.attempts < writes) {
        Program application(
            {YG_SHARING_PROGRAM, root, writer.section, std::to_string(writer.attempts)});
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
    const files::TemporaryFolder root;
    root.write("storage/shared.xml", "<config><!-- kept --><shipped><x>1</x></shipped></config>");
    std::vector<Writer> writers;
    for (int writer = 0; writer < 8; ++writer)
        writers.push_back({"w" + std::to_string(writer)});
    // An application that has the file open from before the first write until after the last one.
    Program open({YG_SHARING_PROGRAM, root.path(), "open", "0"});
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
