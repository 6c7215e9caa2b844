// SPDX-License-Identifier: MIT
//
// Whole runs of `ygconfig preview`: what it serves and to whom, what it shows after each kind of
// change, and how it ends.
#include <arpa/inet.h>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Proof.h"
#include "files/TemporaryFolder.h"
#include "tool/PreviewRun.h"
#include "tool/ToolRun.h"

namespace yg::testing {
namespace {

namespace fs = std::filesystem;

using files::contentOf;
using files::put;
using files::TemporaryFolder;
using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::StartsWith;
using Json = nlohmann::json;

constexpr const char* events = "root/config/events.xml";

/// An event file with one command.
std::string commandNamed(const std::string& name) {
    return "<event_list><command_event><command name=\"" + name +
           "\"/></command_event></event_list>";
}

/// A root with one command, "first".
class Preview : public ::testing::Test {
protected:
    Preview() { folder.write(events, commandNamed("first")); }

    std::string root() const { return folder / "root"; }

    const TemporaryFolder folder;
};

int endOf(PreviewRun& run, int signal = SIGTERM) {
    return run.end(signal);
}

std::string bodyOf(const std::string& answer) {
    const std::size_t end = answer.find("\r\n\r\n");
    return end == std::string::npos ? "" : answer.substr(end + 4);
}

// ---- What it serves ----

TEST_F(Preview, PrintsItsAddressInOneLine) {
    PreviewRun run(root());
    EXPECT_THAT(run.address(), MatchesRegex("http://127\\.0\\.0\\.1:[0-9]+/"));
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, ServesThePageTheModelAndNothingElse) {
    PreviewRun run(root());
    const std::string page = run.ask("GET /");
    EXPECT_THAT(page, StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(page, HasSubstr("Content-Type: text/html; charset=utf-8\r\n"));
    EXPECT_THAT(bodyOf(page), AllOf(StartsWith("<!DOCTYPE html>"), EndsWith("</html>\n"),
                                    HasSubstr(run.model())));
    const std::string model = run.ask("GET /model");
    EXPECT_THAT(model, StartsWith("HTTP/1.1 200 OK\r\n"));
    EXPECT_THAT(model, HasSubstr("Content-Type: application/json\r\n"));
    EXPECT_TRUE(Json::parse(bodyOf(model)).is_object());
    for (const char* path : {"/page.html", "/config/events.xml", "/../root/config/events.xml",
                             "/%2e%2e/etc/passwd", "//", "/model/", "/etc/passwd"})
        EXPECT_THAT(run.ask(std::string("GET ") + path), StartsWith("HTTP/1.1 404 ")) << path;
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, ServesOnThePortGiven) {
    std::optional<PreviewRun> first(root());
    const std::uint16_t port = first->port();
    const std::string number = std::to_string(port);
    const ToolRun second = runTool({"preview", "--root", root(), "--port", number});
    EXPECT_EQ(second.status, 3);
    EXPECT_EQ(second.output, "");
    EXPECT_EQ(second.errors,
              "ygconfig preview: 127.0.0.1:" + number + ": Address already in use\n");
    const std::string before = first->ask("GET /model");
    EXPECT_EQ(endOf(*first), 0);
    PreviewRun third(root(), {"--port", number});
    EXPECT_EQ(third.address(), "http://127.0.0.1:" + number + "/");
    EXPECT_EQ(third.ask("GET /model"), before);
    EXPECT_EQ(endOf(third), 0);
    for (const char* wrong : {"0", "65536", "-1", "http"})
        EXPECT_EQ(runTool({"preview", "--root", root(), "--port", wrong}).status, 2) << wrong;
}

TEST_F(Preview, NeedsARootAtTheBeginning) {
    const ToolRun run = runTool({"preview", "--root", folder / "none"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors,
              "ygconfig: root folder \"" + (folder / "none") + "\": No such file or directory\n");
}

// ---- To whom ----

TEST_F(Preview, AnswersGetAlone) {
    PreviewRun run(root());
    for (const std::string method : {"HEAD", "POST", "PUT", "DELETE", "OPTIONS", "PATCH"}) {
        const std::string answer = run.ask(method + " /", "Content-Length: 4\r\n");
        EXPECT_THAT(answer, StartsWith("HTTP/1.1 405 ")) << method;
        EXPECT_THAT(answer, HasSubstr("\r\nAllow: GET\r\n")) << method;
        EXPECT_EQ(bodyOf(answer), method == "HEAD" ? "" : "Only GET is answered.\n") << method;
    }
    for (const char* line : {"BREW / HTTP/1.1", "GET", "", "GET / HTTP/9.9", "\x01\x02"}) {
        Client client = run.connect();
        client.send(std::string(line) + "\r\nHost: " + run.host() + "\r\n\r\n");
        EXPECT_THAT(client.all(), Not(HasSubstr(" 200 "))) << line;
    }
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, AnswersUnderItsOwnNamesAlone) {
    PreviewRun run(root());
    const std::string port = ":" + std::to_string(run.port());
    const auto statusOf = [&](const std::string& lines) {
        return run.askFor("GET /model", lines).substr(9, 3);
    };
    EXPECT_EQ(statusOf("Host: 127.0.0.1" + port + "\r\n"), "200");
    EXPECT_EQ(statusOf("Host: localhost" + port + "\r\n"), "200");
    for (const std::string host : {"", "127.0.0.1", "localhost", "evil.example", "127.0.0.1:1",
                                   "127.0.0.2", "[::1]", "127.0.0.1.evil.example"}) {
        EXPECT_EQ(statusOf("Host: " + host + "\r\n"), "403") << host;
        if (host.find(':') == std::string::npos && !host.ends_with("127.0.0.1") &&
            host != "localhost") {
            EXPECT_EQ(statusOf("Host: " + host + port + "\r\n"), "403") << host;
        }
    }
    EXPECT_EQ(statusOf(""), "403");
    EXPECT_EQ(statusOf("Host: " + run.host() + "\r\nHost: evil.example\r\n"), "403");
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, AnswersNoOtherPage) {
    PreviewRun run(root());
    const auto statusOf = [&](const std::string& path, const std::string& origin) {
        return run.ask("GET " + path, "Origin: " + origin + "\r\n").substr(9, 3);
    };
    for (const std::string path : {"/", "/model", "/changes", "/none"}) {
        for (const std::string& origin :
             {std::string("http://evil.example"), std::string("null"),
              std::string("http://127.0.0.1:1"), "https://" + run.host(),
              "http://localhost:" + std::to_string(run.port())})
            EXPECT_EQ(statusOf(path, origin), "403") << path << ' ' << origin;
    }
    EXPECT_EQ(statusOf("/model", "http://" + run.host()), "200");
    EXPECT_EQ(statusOf("/model", "http://" + run.host() + "\r\nOrigin: http://evil.example"),
              "403");
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, LetsNoOtherPageShowOrKeepItsAnswers) {
    PreviewRun run(root());
    for (const char* request : {"GET /", "GET /model", "GET /none", "POST /"}) {
        const std::string answer = run.ask(request);
        for (const char* line :
             {"Cache-Control: no-store", "Content-Security-Policy: frame-ancestors 'none'",
              "Cross-Origin-Opener-Policy: same-origin",
              "Cross-Origin-Resource-Policy: same-origin", "Referrer-Policy: no-referrer",
              "X-Content-Type-Options: nosniff", "X-Frame-Options: DENY"})
            EXPECT_THAT(answer, HasSubstr("\r\n" + std::string(line) + "\r\n")) << request;
        EXPECT_THAT(answer, Not(HasSubstr("Access-Control-"))) << request;
    }
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, IsNotReachableUnderOtherAddresses) {
    PreviewRun run(root());
    EXPECT_TRUE(run.connect().isConnected());
    for (const char* address : {"127.0.0.2", "127.1.2.3"})
        EXPECT_FALSE(Client(run.port(), ntohl(::inet_addr(address))).isConnected()) << address;
    // It listens once, and where its address says.
    std::ifstream table("/proc/net/tcp");
    char local[32];
    std::snprintf(local, sizeof local, ":%04X 00000000:0000 0A", unsigned{run.port()});
    std::vector<std::string> listening;
    for (std::string line; std::getline(table, line);) {
        if (line.find(local) != std::string::npos)
            listening.push_back(line.substr(line.find(':') + 2, 8));
    }
    EXPECT_THAT(listening, ::testing::ElementsAre("0100007F"));
    EXPECT_EQ(endOf(run), 0);
}

// ---- Limits ----

TEST_F(Preview, BreaksOffARequestThatIsTooLong) {
    PreviewRun run(root());
    const std::string line = "X-Padding: " + std::string(4'000, 'x') + "\r\n";
    std::string lines;
    for (int count = 0; count < 1'000; ++count)
        lines += line;
    EXPECT_THAT(run.ask("GET /model", lines), Not(HasSubstr("200 OK")));
    EXPECT_THAT(run.ask("GET /" + std::string(100'000, 'x')), Not(HasSubstr("200 OK")));
    EXPECT_THAT(run.ask("GET /model"), HasSubstr("200 OK"));
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, GivesNoPartsAndPacksNothing) {
    PreviewRun run(root());
    const std::string answer = run.ask("GET /model");
    EXPECT_EQ(run.ask("GET /model", "Range: bytes=0-1,3-4,0-,0-,0-\r\n"), answer);
    EXPECT_EQ(run.ask("GET /model", "Accept-Encoding: gzip, br\r\n"), answer);
    EXPECT_EQ(endOf(run), 0);
}

std::size_t countIn(const PreviewRun& run, const char* folder) {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry :
         fs::directory_iterator("/proc/" + std::to_string(run.id()) + "/" + folder))
        ++count;
    return count;
}

/// The threads of a preview that nobody asks anything: one that serves, one that follows the root,
/// and the thread sanitizer's own.
#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define YG_SANITIZES_THREADS
#endif
#endif
#ifdef YG_SANITIZES_THREADS
constexpr std::size_t idleThreads = 3;
#else
constexpr std::size_t idleThreads = 2;
#endif

TEST_F(Preview, LetsClientsThatDoNothingDisturbNobody) {
    PreviewRun run(root());
    Client listener = run.listen();
    std::vector<Client> silent;
    for (int count = 0; count < 100; ++count) {
        silent.push_back(run.connect());
        silent.back().send(count % 2 == 0 ? "" : "GET / HTTP/1.1\r\nHost: ");
        EXPECT_LE(countIn(run, "task"), idleThreads + 16);
    }
    EXPECT_THAT(run.ask("GET /"), HasSubstr("200 OK"));
    folder.write(events, commandNamed("second"));
    EXPECT_THAT(run.modelWith(listener, "second"), HasSubstr("second"));
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, EndsWhileClientsAreInTheMiddle) {
    PreviewRun run(root());
    Client silent = run.connect();
    Client slow = run.connect();
    slow.send("GET / HTTP/1.1\r\n");
    Client listener = run.listen();
    EXPECT_TRUE(becomesTrue([&] { return countIn(run, "task") == idleThreads + 2; }));
    EXPECT_EQ(endOf(run), 0);
    EXPECT_EQ(silent.all(), "");
    EXPECT_EQ(slow.all(), "");
    EXPECT_EQ(listener.all(), "");
}

/// A client that does not read what it asked for, which is more than the system keeps for it.
TEST_F(Preview, EndsWhileAnAnswerIsStuck) {
    folder.write(events, commandNamed(std::string(9'000'000, 'x')));
    PreviewRun run(root());
    Client stuck = run.connect();
    stuck.send("GET / HTTP/1.1\r\nHost: " + run.host() + "\r\n\r\n");
    EXPECT_THAT(stuck.through("\r\n\r\n"), HasSubstr("200 OK"));
    EXPECT_THAT(run.ask("GET /none"), HasSubstr("404"));
    EXPECT_TRUE(becomesTrue([&] { return countIn(run, "task") == idleThreads + 1; }));
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, TellsAllPagesThatAreOpen) {
    PreviewRun run(root());
    std::vector<Client> pages;
    for (int count = 0; count < 20; ++count)
        pages.push_back(run.listen());
    while (pages.size() > 15)  // some go away
        pages.pop_back();
    EXPECT_TRUE(becomesTrue([&] { return countIn(run, "task") == idleThreads; }));
    folder.write(events, commandNamed("second"));
    for (Client& page : pages)
        EXPECT_NE(PreviewRun::nextEvent(page), "");
    EXPECT_THAT(run.model(), HasSubstr("second"));
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, KeepsAPageWaitingOnlySoLongAsThereIsRoom) {
    PreviewRun run(root());
    std::vector<Client> pages;
    for (int count = 0; count < 65; ++count)
        pages.push_back(run.listen());
    EXPECT_EQ(pages.front().all(), "");
    folder.write(events, commandNamed("second"));
    EXPECT_NE(PreviewRun::nextEvent(pages.back()), "");
    EXPECT_EQ(endOf(run), 0);
}

// ---- Changes ----

struct Saving {
    const char* name;
    /// Has the root say `text` in its event file, or another.
    std::function<void(const TemporaryFolder&, const std::string& text)> save;
};

void replace(const TemporaryFolder& folder, std::string_view name, const std::string& text) {
    folder.write("root/config/.new", text);
    fs::rename(folder / "root/config/.new", folder / name);
}

const Saving savings[] = {
    {"InPlace", [](const auto& folder, const std::string& text) { put(folder / events, text); }},
    {"InTwoWrites",
     [](const auto& folder, const std::string& text) {
         std::ofstream file(folder / events, std::ios::binary);
         file << text.substr(0, 10) << std::flush;
         file << text.substr(10) << std::flush;
     }},
    {"TwiceInPlace",
     [](const auto& folder, const std::string& text) {
         put(folder / events, "");
         put(folder / events, text.substr(0, 10));
         put(folder / events, text);
     }},
    {"ByRenameOver",
     [](const auto& folder, const std::string& text) { replace(folder, events, text); }},
    {"ByRenameAwayAndBack",
     [](const auto& folder, const std::string& text) {
         fs::rename(folder / events, folder / "root/config/4913");
         put(folder / "root/config/4913", text);
         fs::rename(folder / "root/config/4913", folder / events);
     }},
    {"ByBackupAndNewFile",
     [](const auto& folder, const std::string& text) {
         fs::rename(folder / events, folder / "root/config/events.xml~");
         put(folder / events, text);
     }},
    {"ByRemovalAndNewFile",
     [](const auto& folder, const std::string& text) {
         fs::remove(folder / events);
         put(folder / events, text);
     }},
    {"InAnEditorWithASwapFile",
     [](const auto& folder, const std::string& text) {
         folder.write("root/config/.events.xml.swp", "<");
         put(folder / events, text);
         fs::remove(folder / "root/config/.events.xml.swp");
     }},
    {"BehindALink",
     [](const auto& folder, const std::string& text) {
         folder.write("other/target.xml", text);
         fs::remove(folder / events);
         fs::create_symlink("../../other/target.xml", folder / events);
     }},
    {"WithItsFolder",
     [](const auto& folder, const std::string& text) {
         fs::remove_all(folder / "root/config");
         folder.write(events, text);
     }},
    {"WithTheRoot",
     [](const auto& folder, const std::string& text) {
         fs::rename(folder / "root", folder / "root.old");
         folder.write(events, text);
         fs::remove_all(folder / "root.old");
     }},
    {"ByAFolderThatIsALink",
     [](const auto& folder, const std::string& text) {
         fs::remove_all(folder / "other/config");
         folder.write("other/config/events.xml", text);
         fs::remove_all(folder / "root/config");
         fs::create_symlink("../other/config", folder / "root/config");
     }},
};

class PreviewOf : public ::testing::TestWithParam<Saving> {};

TEST_P(PreviewOf, ShowsEachSave) {
    const TemporaryFolder folder;
    folder.write(events, commandNamed("first"));
    PreviewRun run(folder / "root");
    Client page = run.listen();
    EXPECT_THAT(run.model(), HasSubstr("first"));
    for (const char* name : {"second", "third", "fourth"}) {
        GetParam().save(folder, commandNamed(name));
        EXPECT_THAT(run.modelWith(page, name), HasSubstr(name));
    }
    EXPECT_THAT(run.model(), Not(HasSubstr("\"broken\"")));
    EXPECT_EQ(endOf(run), 0);
}

INSTANTIATE_TEST_SUITE_P(Savings, PreviewOf, ::testing::ValuesIn(savings),
                         [](const auto& of) { return of.param.name; });

TEST_F(Preview, ShowsChangesOfWhatALinkLeadsTo) {
    folder.write("other/target.xml", commandNamed("first"));
    fs::remove(folder / events);
    fs::create_symlink("../../other/target.xml", folder / events);
    PreviewRun run(root());
    Client page = run.listen();
    folder.write("other/target.xml", commandNamed("second"));
    EXPECT_THAT(run.modelWith(page, "second"), HasSubstr("second"));
    folder.write("other/new.xml", commandNamed("third"));
    fs::rename(folder / "other/new.xml", folder / "other/target.xml");
    EXPECT_THAT(run.modelWith(page, "third"), HasSubstr("third"));
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, ShowsHostJsonAndFilesThatAppearLater) {
    PreviewRun run(root());
    Client page = run.listen();
    folder.write("root/host.json.new", R"({"laterMember": 1})");
    fs::rename(root() + "/host.json.new", root() + "/host.json");
    EXPECT_THAT(run.modelWith(page, "laterMember"), HasSubstr("laterMember"));
    folder.write("root/storage/app_config.xml", "<config><laterSection odd='1'/></config>");
    EXPECT_THAT(run.modelWith(page, "laterSection"), HasSubstr("laterSection"));
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, TellsOfNothingButChanges) {
    PreviewRun run(root());
    Client page = run.listen();
    Client other = run.listen();
    for (const char* name : {"second", "third"}) {
        // What says the same as before, and what nobody reads.
        replace(folder, events, contentOf(folder / events));
        folder.write("root/storage/notes.txt", name);
        folder.write("root/config/events.xml~", name);
        replace(folder, events, commandNamed(name));
        EXPECT_THAT(run.modelWith(page, name), HasSubstr(name));
    }
    EXPECT_EQ(endOf(run), 0);
    EXPECT_EQ(other.all(), "data: 2\n\ndata: 3\n\n");
}

// ---- Files that cannot be read ----

TEST_F(Preview, KeepsTheLastGoodPictureWhileAFileIsNotWellFormed) {
    PreviewRun run(root());
    Client page = run.listen();
    replace(folder, events, "<event_list><command_event><command name=\"second\"/>");
    Json model = Json::parse(run.modelWith(page, "\"broken\""));
    ASSERT_EQ(model["broken"].size(), 1U);
    EXPECT_EQ(model["broken"][0]["file"], "config/events.xml");
    EXPECT_EQ(model["broken"][0]["line"], 1);
    EXPECT_NE(model["broken"][0]["message"], "");
    EXPECT_EQ(model["broken"][0]["text"], "<event_list><command_event><command name=\"second\"/>");
    EXPECT_THAT(model["events"].dump(), AllOf(HasSubstr("first"), Not(HasSubstr("second"))));
    EXPECT_THAT(bodyOf(run.ask("GET /")), HasSubstr("{\"broken\":[{"));

    // Another file changes meanwhile.
    replace(folder, "root/config/magic_panels.xml", "<panels");
    constexpr std::string_view brokenPanels = "\"file\":\"config/magic_panels.xml\"";
    model = Json::parse(run.modelWith(page, brokenPanels));
    EXPECT_EQ(model["broken"].size(), 2U);
    replace(folder, "root/config/magic_panels.xml", "<magic_panels/>");
    run.modelWith(page, brokenPanels, false);

    replace(folder, events, commandNamed("third"));
    model = Json::parse(run.modelWith(page, "third"));
    EXPECT_FALSE(model.contains("broken"));
    EXPECT_THAT(model["events"].dump(), Not(HasSubstr("first")));
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, ShowsWhatThereIsWhenAFileCannotBeReadFromTheBeginning) {
    folder.write("root/config/magic_panels.xml", "<");
    PreviewRun run(root());
    Client page = run.listen();
    Json model = Json::parse(run.model());
    EXPECT_EQ(model["broken"][0]["file"], "config/magic_panels.xml");
    EXPECT_THAT(model["events"].dump(), HasSubstr("first"));
    // The others are drawn again all the same.
    replace(folder, events, commandNamed("second"));
    model = Json::parse(run.modelWith(page, "second"));
    EXPECT_EQ(model["broken"].size(), 1U);
    replace(folder, "root/config/magic_panels.xml", "<magic_panels/>");
    model = Json::parse(run.modelWith(page, "\"broken\"", false));
    EXPECT_FALSE(model.contains("broken"));
    // From now on it is a file that could be read.
    replace(folder, "root/config/magic_panels.xml", "<");
    run.modelWith(page, "\"broken\"");
    replace(folder, events, commandNamed("third"));
    replace(folder, "root/config/magic_panels.xml", "<magic_panels/>");
    model = Json::parse(run.modelWith(page, "third"));
    EXPECT_FALSE(model.contains("broken"));
    EXPECT_EQ(endOf(run), 0);
}

TEST_F(Preview, KeepsThePictureWhileTheRootIsGone) {
    PreviewRun run(root());
    Client page = run.listen();
    fs::rename(root(), folder / "away");
    const Json model = Json::parse(run.modelWith(page, "\"broken\""));
    EXPECT_EQ(model["broken"][0]["message"],
              "root folder \"" + root() + "\": No such file or directory");
    EXPECT_THAT(model["events"].dump(), HasSubstr("first"));
    fs::rename(folder / "away", root());
    EXPECT_THAT(run.modelWith(page, "\"broken\"", false), HasSubstr("first"));
    EXPECT_EQ(endOf(run), 0);
}

// ---- The end ----

TEST_F(Preview, EndsOnASignalWithStatus0) {
    for (const int signal : {SIGINT, SIGTERM}) {
        PreviewRun run(root());
        EXPECT_THAT(run.ask("GET /"), HasSubstr("200 OK"));
        EXPECT_EQ(endOf(run, signal), 0);
        EXPECT_FALSE(Client(run.port()).isConnected());
    }
}

TEST_F(Preview, EndsOnASignalAtOnceWhateverItIsDoing) {
    for (int count = 0; count < 20; ++count) {
        PreviewRun run(root());
        put(folder / events, commandNamed("command" + std::to_string(count)));
        EXPECT_EQ(endOf(run, count % 2 == 0 ? SIGINT : SIGTERM), 0);
    }
}

TEST_F(Preview, CannotServeWhenItsAddressCannotBePrinted) {
    EXPECT_EQ(runTool({"preview", "--root", root()}, {.outputTo = OutputTo::fullDisk}).status, 3);
}

/// What the process has in memory, in KiB.
std::size_t residentOf(const PreviewRun& run) {
    std::ifstream file("/proc/" + std::to_string(run.id()) + "/status");
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("VmRSS:"))
            return std::stoul(line.substr(line.find_first_of("0123456789")));
    }
    return 0;
}

TEST(PreviewProof, ReloadsLeaveNoThreadDescriptorOrMemoryBehind) {
    const TemporaryFolder folder;
    folder.write(events, commandNamed("first"));
    PreviewRun run(folder / "root");
    Client page = run.listen();
    int saved = 0;
    const auto save = [&](int times) {
        for (const int end = saved + times; saved < end; ++saved) {
            const std::string name = "command" + std::to_string(saved);
            const Saving& saving = savings[static_cast<std::size_t>(saved) % std::size(savings)];
            saving.save(folder, commandNamed(name));
            ASSERT_THAT(run.modelWith(page, name + "\""), HasSubstr(name));
            EXPECT_THAT(run.ask("GET /"), HasSubstr("200 OK"));
        }
    };
    constexpr int round = static_cast<int>(std::size(savings));
    save(3 * round);
    // The answers may still be ending.
    std::size_t files = 0;
    EXPECT_TRUE(becomesTrue([&] { return countIn(run, "task") == idleThreads; }));
    files = countIn(run, "fd");
    const std::size_t resident = residentOf(run);
    save(repeats(4, 85) * round);
    EXPECT_TRUE(becomesTrue([&] { return countIn(run, "task") == idleThreads; }));
    EXPECT_TRUE(becomesTrue([&] { return countIn(run, "fd") <= files; }));
    if (!isSanitized) {
        EXPECT_LT(residentOf(run), resident + 4'096);
    }
    EXPECT_EQ(endOf(run), 0);
}

}  // namespace
}  // namespace yg::testing
