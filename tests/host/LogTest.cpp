// SPDX-License-Identifier: MIT
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <future>
#include <limits>
#include <string>
#include <unistd.h>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/Log.h"

#include "host/RecordingHost.h"

namespace {

using testing::ElementsAre;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;
using yg::LogChannel;
using yg::testing::LogLine;
using yg::testing::ScopedHost;

TEST(Log, EachFunctionHasItsChannel) {
    ScopedHost<> host;
    yg::writeRuntimeLog("server config path:%@", "/a/b.xml");
    yg::writeBusCommonLogInside("%s L%d filePath: %@", "-[YGHttpReqUrlMgr readUrlModelFromFile]",
                                71, std::string("/c"));
    EXPECT_THAT(host->log(),
                ElementsAre(LogLine{LogChannel::runtime, "server config path:/a/b.xml"},
                            LogLine{LogChannel::business,
                                    "-[YGHttpReqUrlMgr readUrlModelFromFile] L71 filePath: /c"}));
}

class SeverityHost final : public yg::testing::RecordingHost {
public:
    void writeLogLine(LogChannel channel, yg::LogSeverity severity,
                      std::string_view message) override {
        lines.emplace_back(channel, severity, message);
    }
    std::vector<std::tuple<LogChannel, yg::LogSeverity, std::string>> lines;
};

TEST(Log, EachFunctionHasItsSeverity) {
    ScopedHost<SeverityHost> host;
    yg::writeRuntimeLog("a");
    yg::writeRuntimeError("b");
    yg::writeBusCommonLogInside("c");
    yg::writeBusCommonWarning("d");
    using yg::LogSeverity;
    EXPECT_THAT(host->lines,
                ElementsAre(std::tuple(LogChannel::runtime, LogSeverity::info, "a"),
                            std::tuple(LogChannel::runtime, LogSeverity::error, "b"),
                            std::tuple(LogChannel::business, LogSeverity::info, "c"),
                            std::tuple(LogChannel::business, LogSeverity::warning, "d")));
}

TEST(Log, AnAbsentTextPrintsNull) {
    ScopedHost<> host;
    yg::writeRuntimeLog("a:%@", std::optional<std::string>());
    yg::writeRuntimeLog("b:%@", std::optional<std::string_view>());
    yg::writeBusCommonLogInside("c:%@", static_cast<const char*>(nullptr));
    yg::writeRuntimeLog("d:%@", std::optional<std::string>(""));
    EXPECT_THAT(host->log(), ElementsAre(LogLine{LogChannel::runtime, "a:(null)"},
                                         LogLine{LogChannel::runtime, "b:(null)"},
                                         LogLine{LogChannel::business, "c:(null)"},
                                         LogLine{LogChannel::runtime, "d:"}));
}

TEST(Log, TakesEveryKindOfArgument) {
    ScopedHost<> host;
    yg::writeRuntimeLog("no argument");
    yg::writeRuntimeLog("100%%");
    yg::writeRuntimeLog("%@|%@|%@", "literal", std::string("string"), std::string_view("view"));
    yg::writeRuntimeLog("%s|%d|%d", "bytes", -5, std::numeric_limits<std::uint64_t>::max());
    yg::writeRuntimeLog("%@ 文件不存在", std::optional<std::string>("配置.xml"));
    EXPECT_THAT(host->runtimeLog(),
                ElementsAre("no argument", "100%", "literal|string|view",
                            "bytes|-5|18446744073709551615", "配置.xml 文件不存在"));
}

TEST(Log, AnArgumentIsNeverTakenForAFormat) {
    ScopedHost<> host;
    yg::writeRuntimeLog("a:%@", "%s%n%@");
    EXPECT_THAT(host->runtimeLog(), ElementsAre("a:%s%n%@"));
}

TEST(Log, TheHostGetsTheMessageAsItIs) {
    ScopedHost<> host;
    yg::writeRuntimeLog("a:%@", "line 1\nline 2\r\n\x01");
    EXPECT_THAT(host->runtimeLog(), ElementsAre("a:line 1\nline 2\r\n\x01"));
}

TEST(Log, TheConsoleGoesPastTheHost) {
    ScopedHost<> host;
    CaptureStderr();
    yg::writeSystemConsole("a:%@ %d", std::optional<std::string>(), 2);
    EXPECT_EQ(GetCapturedStderr(), "a:(null) 2\n");
    EXPECT_THAT(host->log(), testing::IsEmpty());
}

TEST(Log, AConsoleMessageIsOneLine) {
    CaptureStderr();
    yg::writeConsoleLine("a\nb\r\nc\vd\x1b[31m\x7f\te");
    yg::writeConsoleLine("");
    yg::writeConsoleLine(std::string_view("f\0g", 3));
    yg::writeConsoleLine("行情配置");
    EXPECT_EQ(GetCapturedStderr(), "a b  c d [31m \te\n\nf g\n行情配置\n");
}

TEST(Log, AConsoleMessageNeitherCommandsATerminalNorTurnsItsText) {
    CaptureStderr();
    yg::writeConsoleLine(
        "a\u009b31mb\u202ec\u2066d\u200fe\u061cf\u2028g\x9b"
        "31m");
    yg::writeConsoleLine("\u00db市\xb9");
    EXPECT_EQ(GetCapturedStderr(), "a 31mb c d e f g 31m\n\u00db市\xb9\n");
}

TEST(Log, ALongConsoleLineIsWhole) {
    const std::string message(std::size_t{1} << 20, 'x');
    CaptureStderr();
    yg::writeConsoleLine(message);
    EXPECT_EQ(GetCapturedStderr(), message + "\n");
}

/// Standard error as a pipe that does not block, until the end of the scope.
class PipedConsole {
public:
    PipedConsole() : kept_(::dup(STDERR_FILENO)) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
        reader_ = ends[0];
        ::dup2(ends[1], STDERR_FILENO);
        ::close(ends[1]);
    }
    ~PipedConsole() {
        close();
        ::close(reader_);
    }
    PipedConsole(const PipedConsole&) = delete;
    PipedConsole& operator=(const PipedConsole&) = delete;

    /// Brings standard error back; the pipe then ends with what is in it.
    void close() {
        if (kept_ >= 0) {
            ::dup2(kept_, STDERR_FILENO);
            ::close(std::exchange(kept_, -1));
        }
    }

    /// Fills the pipe up and answers how much that took.
    static std::size_t fill() {
        std::size_t size = 0;
        for (const std::size_t piece : {std::size_t{4096}, std::size_t{1}}) {
            const std::string dots(piece, '.');
            while (::write(STDERR_FILENO, dots.data(), piece) > 0)
                size += piece;
        }
        return size;
    }

    /// What is in the pipe now.
    std::string taken() const {
        std::string all;
        std::array<char, 4096> piece;
        for (ssize_t size; (size = ::read(reader_, piece.data(), piece.size())) > 0;)
            all.append(piece.data(), static_cast<std::size_t>(size));
        return all;
    }

    /// What comes until standard error is brought back; for a thread of its own.
    std::string takenUntilTheEnd() const {
        ::fcntl(reader_, F_SETFL, 0);
        return taken();
    }

private:
    int kept_;
    int reader_ = -1;
};

TEST(Log, ALineLongerThanAPipeThatDoesNotBlockIsWhole) {
    const std::string message(std::size_t{300} << 10, 'x');
    PipedConsole console;
    std::future<std::string> read =
        std::async(std::launch::async, [&] { return console.takenUntilTheEnd(); });
    yg::writeConsoleLine(message);
    yg::writeConsoleLine("next");
    console.close();
    EXPECT_TRUE(read.get() == message + "\nnext\n");
}

TEST(Log, ALineWithoutRoomIsLostAsAWholeAndTheNextOneIsNot) {
    PipedConsole console;
    const std::size_t filled = PipedConsole::fill();
    yg::writeConsoleLine("lost");
    yg::writeConsoleLine("lost as well, and at once");
    EXPECT_EQ(console.taken(), std::string(filled, '.'));
    yg::writeConsoleLine("written");
    EXPECT_EQ(console.taken(), "written\n");
}

TEST(Log, WhatFollowsACutLineBeginsALineOfItsOwn) {
    const std::string message(std::size_t{300} << 10, 'x');
    PipedConsole console;
    yg::writeConsoleLine(message);
    const std::string cut = console.taken();
    EXPECT_GT(cut.size(), 0);
    EXPECT_TRUE(message.starts_with(cut));
    yg::writeConsoleLine("next");
    yg::writeConsoleLine("last");
    EXPECT_EQ(console.taken(), "\nnext\nlast\n");
}

TEST(Log, TheConsoleLeavesErrnoAlone) {
    const int kept = ::dup(STDERR_FILENO);
    const int unwritable = ::open("/dev/null", O_RDONLY);
    ::dup2(unwritable, STDERR_FILENO);
    errno = ENOENT;
    yg::writeConsoleLine("lost");
    const int after = errno;
    ::dup2(kept, STDERR_FILENO);
    ::close(unwritable);
    ::close(kept);
    EXPECT_EQ(after, ENOENT);
}

// Threads that outlive main() log while static objects are destroyed.
TEST(LogDeathTest, WorksUntilTheProcessIsGone) {
    EXPECT_EXIT(
        {
            std::atexit([] { yg::writeRuntimeLog("after main:%@", "still here"); });
            yg::setHost(nullptr);
            yg::writeRuntimeLog("before");
            std::exit(0);
        },
        testing::ExitedWithCode(0), "before\nafter main:still here\n");
}

}  // namespace
