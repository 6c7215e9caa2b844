// SPDX-License-Identifier: MIT
//
// Processes that end with requests under way: without a crash and without waiting for anybody.
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

/// The state at the end as waitpid gives it; 0 for a good end.
int run(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), YG_ENDING_PROGRAM);
    return Program(std::move(arguments)).wait();
}

/// Runs the program over and over, with delays from nothing to several milliseconds.
void expectGoodEnds(const std::string& way, const std::string& url,
                    const std::string& certificates = {}) {
    const int runs = repeats(100, 1000);
    int bad = 0;
    for (int i = 0; i < runs; ++i) {
        std::vector<std::string> arguments{way, url, "20", std::to_string(i % 20 * 400)};
        if (!certificates.empty())
            arguments.push_back(certificates);
        bad += run(std::move(arguments)) != 0 ? 1 : 0;
    }
    std::printf("%d ends, %d of them bad\n", runs, bad);
    EXPECT_EQ(bad, 0);
}

class Identity {
public:
    Identity() { writeIdentity(path()); }
    std::string path() const { return folder_ / "identity.pem"; }

private:
    files::TemporaryFolder folder_;
};

TEST(EndingProof, WaitsForNoAnswer) {
    FaultServer server([](Connection& client) { client.hang(); });
    expectGoodEnds("main", server.url());
    EXPECT_GT(server.connections(), 0);
}

TEST(EndingProof, WaitsForNoAnswerUnderTls) {
    const Identity identity;
    FaultServer server([](Connection& client) { client.hang(); }, identity.path());
    expectGoodEnds("main", server.url(), identity.path());
    EXPECT_GT(server.connections(), 0);
}

TEST(EndingProof, IsGoodWhileAnswersCome) {
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); });
    expectGoodEnds("busy", server.url());
}

TEST(EndingProof, IsGoodWhileAnswersComeUnderTls) {
    const Identity identity;
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); },
                       identity.path());
    expectGoodEnds("busy", server.url(), identity.path());
}

TEST(EndingProof, WaitsForNoName) {
    for (const char* delay : {"0", "1000", "20000", "100000"})
        EXPECT_EQ(run({"main", "http://name.hanging/", "20", delay}), 0) << delay;
}

TEST(EndingProof, MayBeginInACompletion) {
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); });
    EXPECT_EQ(run({"completion", server.url()}), 0);
}

TEST(EndingProof, DropsRequestsThatComeAfterIt) {
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); });
    EXPECT_EQ(run({"static", server.url()}), 0);
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
    EXPECT_EQ(run({"fork", server.url()}), 0);
}

TEST(ForkProof, ChildrenOfABusyParentGetTheirAnswers) {
    if (!childrenMayAllocate)
        GTEST_SKIP() << "the allocators of the sanitizers do not survive such forks";
    const SanitizersAllow forks;
    const Identity identity;
    const auto answer = [](Connection& client) { client.answer("200 OK", "hello"); };
    FaultServer server(answer);
    FaultServer tls(answer, identity.path());
    const int count = repeats(400, 25'000);
    EXPECT_EQ(run({"forks", std::to_string(count), server.url(), tls.url(), identity.path()}), 0);
}

TEST(Threadless, RequestsEndAtOnce) {
    const SanitizersAllow changedUser;
    FaultServer server([](Connection& client) { client.answer("200 OK", "hello"); });
    EXPECT_EQ(run({"threadless", server.url()}), 0);
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
    EXPECT_EQ(run({"files", server.url(), tls.url()}), 0);
}

}  // namespace
}  // namespace yg::testing
