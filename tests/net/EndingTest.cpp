// SPDX-License-Identifier: MIT
//
// Processes that end with requests under way: without a crash and without waiting for anybody.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Program.h"
#include "Proof.h"
#include "files/TemporaryFolder.h"
#include "net/FaultServer.h"

namespace yg::testing {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

struct Ended {
    int state = -1;                ///< as waitpid gives it; 0 for a good end
    Clock::duration endingTime{};  ///< from the end of main() to the end of the process
};

Ended run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), YG_ENDING_PROGRAM);
    Program program(std::move(arguments));
    // When it left main(), if it came to that.
    const std::string leaving = program.all();
    Ended result{program.wait()};
    if (!leaving.empty()) {
        result.endingTime =
            Clock::now() - Clock::time_point(std::chrono::nanoseconds(std::atoll(leaving.c_str())));
    }
    return result;
}

/// Runs the program over and over, with delays from nothing to several milliseconds.
void expectQuickEnds(const std::string& way, const std::string& url,
                     const std::string& certificates = {}) {
    const int runs = repeats(100, 1000);
    Clock::duration longest{};
    int crashes = 0;
    for (int i = 0; i < runs; ++i) {
        std::vector<std::string> arguments{way, url, "20", std::to_string(i % 20 * 400)};
        if (!certificates.empty())
            arguments.push_back(certificates);
        const Ended one = run(arguments);
        crashes += one.state != 0 ? 1 : 0;
        longest = std::max(longest, one.endingTime);
    }
    const auto milliseconds = std::chrono::duration<double, std::milli>(longest).count();
    std::printf("%d ends, %d crashes, the longest took %.1f ms\n", runs, crashes, milliseconds);
    EXPECT_EQ(crashes, 0);
    // A wait for an answer or a name would take ten seconds and more.
    EXPECT_LT(longest, 5s);
}

class Identity {
public:
    Identity() { writeIdentity(path()); }
    std::string path() const { return folder_ / "identity.pem"; }

private:
    files::TemporaryFolder folder_;
};

TEST(EndingProof, IsQuickWhileRequestsHang) {
    FaultServer server([](Connection& client) { client.hang(); });
    expectQuickEnds("main", server.url());
    EXPECT_GT(server.connections(), 0);
}

TEST(EndingProof, IsQuickWhileRequestsHangUnderTls) {
    const Identity identity;
    FaultServer server([](Connection& client) { client.hang(); }, identity.path());
    expectQuickEnds("main", server.url(), identity.path());
    EXPECT_GT(server.connections(), 0);
}

TEST(EndingProof, IsQuickWhileAnswersCome) {
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); });
    expectQuickEnds("busy", server.url());
}

TEST(EndingProof, IsQuickWhileAnswersComeUnderTls) {
    const Identity identity;
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); },
                       identity.path());
    expectQuickEnds("busy", server.url(), identity.path());
}

TEST(EndingProof, IsQuickWhileNamesAreLookedUp) {
    for (const char* delay : {"0", "1000", "20000", "100000"}) {
        const Ended one = run({"main", "http://name.hanging/", "20", delay});
        EXPECT_EQ(one.state, 0);
        EXPECT_LT(one.endingTime, 5s) << delay;
    }
}

TEST(EndingProof, MayBeginInACompletion) {
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); });
    const Ended one = run({"completion", server.url()});
    EXPECT_EQ(one.state, 0);
    EXPECT_LT(one.endingTime, 5s);
}

TEST(EndingProof, DropsRequestsThatComeAfterIt) {
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); });
    EXPECT_EQ(run({"static", server.url()}).state, 0);
    EXPECT_EQ(server.connections(), 1);
}

/// Settings of the sanitizers for what they do not expect.
class SanitizersAllow {
public:
    /// Children that go on: what the parent's threads held on their stacks is lost there, and more
    /// threads are refused.
    SanitizersAllow() {
        ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
        ::setenv("TSAN_OPTIONS", "die_after_fork=0", 1);
    }
    ~SanitizersAllow() {
        ::unsetenv("ASAN_OPTIONS");
        ::unsetenv("TSAN_OPTIONS");
    }
    SanitizersAllow(const SanitizersAllow&) = delete;
    SanitizersAllow& operator=(const SanitizersAllow&) = delete;
};

TEST(EndingProof, OfAProcessIsNotThatOfItsForks) {
    const SanitizersAllow forks;
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); });
    EXPECT_EQ(run({"fork", server.url()}).state, 0);
}

TEST(ForkProof, ChildrenOfABusyParentGetTheirAnswers) {
    if (!childrenMayAllocate) {
        GTEST_SKIP() << "the allocators of the sanitizers do not survive such forks";
    }
    const SanitizersAllow forks;
    const Identity identity;
    const auto answer = [](Connection& client) { client.answer("200 OK", "hello"); };
    FaultServer server(answer);
    FaultServer tls(answer, identity.path());
    const int count = repeats(400, 25'000);
    EXPECT_EQ(run({"forks", std::to_string(count), server.url(), tls.url(), identity.path()}).state,
              0);
}

TEST(Threadless, RequestsEndAtOnce) {
    const SanitizersAllow changedUser;
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); });
    EXPECT_EQ(run({"threadless", server.url()}).state, 0);
}

TEST(StartedPrograms, InheritNoFileOfTheNetwork) {
    const Identity identity;
    const auto treatment = [](Connection& client) {
        if (client.path() == "/hanging")
            client.hang();
        else
            client.answer("200 OK", "hello");
    };
    FaultServer server(treatment);
    FaultServer tls(treatment, identity.path());
    EXPECT_EQ(run({"files", server.url(), tls.url()}).state, 0);
}

}  // namespace
}  // namespace yg::testing
