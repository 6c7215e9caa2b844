// SPDX-License-Identifier: MIT
//
// ygconfig: shows what the configuration in a root folder holds. See `ygconfig --help`.
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "ygconfig/Run.h"
#include "ygconfig/commandline/CommandLine.h"
#include "ygconfig/drawing/Paint.h"
#include "ygconfig/drawing/Terminal.h"

namespace {

using yg::tool::Answer;
using yg::tool::ExitCode;

/// Fills the places of standard streams that are closed, so that no file that the library opens
/// takes one. What is opened here refuses the stream's use, as the closed stream does.
void occupyStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) == -1)
            ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

/// True when all of it was written; errno says why not.
bool writeAll(int stream, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(stream, text.data(), text.size());
        if (written >= 0)
            text.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            return false;
    }
    return true;
}

void complain(const std::string& line) {
    writeAll(STDERR_FILENO, line + '\n');
}

/// Ends an answer in the middle.
struct NotWritten {
    int error;  ///< its number
};

int statusOf(ExitCode code) {
    return static_cast<int>(code);
}

int answerTo(const std::vector<std::string>& words) {
    const yg::tool::CommandLine line = yg::tool::readCommandLine(words);
    const bool colour = yg::tool::wantsColour({.choice = line.arguments.color,
                                               .isTerminal = ::isatty(STDOUT_FILENO) == 1,
                                               .noColour = std::getenv("NO_COLOR"),
                                               .forceColour = std::getenv("CLICOLOR_FORCE"),
                                               .term = std::getenv("TERM")});
    const Answer answer = yg::tool::run(line, {colour, yg::tool::terminalWidth()});
    if (!answer.complaint.empty())
        complain(answer.complaint);
    try {
        answer.output.writeTo([](std::string_view piece) {
            if (!writeAll(STDOUT_FILENO, piece))
                throw NotWritten{errno};
        });
        return statusOf(answer.exitCode);
    } catch (const NotWritten& failure) {
        // A reader that has seen enough, such as `head`, gets no message.
        if (failure.error != EPIPE)
            complain(std::string("ygconfig: standard output: ") + std::strerror(failure.error));
        return statusOf(ExitCode::failed);
    }
}

}  // namespace

int main(int argc, char** argv) {
    occupyStandardStreams();
    std::signal(SIGPIPE, SIG_IGN);
    try {
        std::vector<std::string> words(argv, argv + argc);
        if (!words.empty())
            words.erase(words.begin());
        return answerTo(words);
    } catch (const std::exception& error) {
        complain(std::string("ygconfig: ") + error.what());
        return statusOf(ExitCode::failed);
    }
}
