// SPDX-License-Identifier: MIT
#include "tool/ToolRun.h"

#include <array>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <stdlib.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace yg::testing {

namespace {

/// A file descriptor that is closed at the end of the scope.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {
        if (number < 0)
            throw std::runtime_error("no file descriptor");
    }
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    int number() const { return number_; }
    void close() {
        if (number_ >= 0)
            ::close(std::exchange(number_, -1));
    }

private:
    int number_;
};

Descriptor memoryFile() {
    return Descriptor(::memfd_create("ygconfig", MFD_CLOEXEC));
}

/// Reads until the end, or until the other side of a terminal is gone.
template <class Take>
void readPieces(const Descriptor& from, Take take) {
    std::array<char, 64 * 1024> piece{};
    for (;;) {
        const ssize_t count = ::read(from.number(), piece.data(), piece.size());
        if (count <= 0)
            return;
        take(std::string_view(piece.data(), static_cast<std::size_t>(count)));
    }
}

std::string readAll(const Descriptor& from) {
    std::string all;
    readPieces(from, [&](std::string_view piece) { all += piece; });
    return all;
}

std::size_t sizeOf(const Descriptor& from) {
    std::size_t size = 0;
    readPieces(from, [&](std::string_view piece) { size += piece.size(); });
    return size;
}

std::string contentOf(const Descriptor& file) {
    ::lseek(file.number(), 0, SEEK_SET);
    return readAll(file);
}

struct Pipe {
    Descriptor reader;
    Descriptor writer;
};

Pipe newPipe() {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// What to run so that the tool runs with the limits of the setting.
std::vector<std::string> commandOf(const std::vector<std::string>& arguments,
                                   const ToolSetting& setting) {
    std::vector<std::string> words;
    std::string limits;
    if (setting.memory > 0)
        limits += "ulimit -v " + std::to_string(setting.memory / 1024) + "; ";
    if (setting.fileSize > 0)
        limits += "trap '' XFSZ; ulimit -f " + std::to_string(setting.fileSize / 512) + "; ";
    if (!limits.empty())
        words = {"/bin/sh", "-c", limits + "exec \"$@\"", "sh"};
    words.emplace_back(YG_TOOL);
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

Descriptor newTerminal() {
    Descriptor terminal(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (::grantpt(terminal.number()) != 0 || ::unlockpt(terminal.number()) != 0)
        throw std::runtime_error("no terminal");
    return terminal;
}

/// The program's side of a terminal, which passes line feeds on as they are.
Descriptor programSide(const Descriptor& terminal) {
    std::array<char, 64> name{};
    if (::ptsname_r(terminal.number(), name.data(), name.size()) != 0)
        throw std::runtime_error("no terminal");
    Descriptor side(::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    termios state{};
    ::tcgetattr(side.number(), &state);
    ::cfmakeraw(&state);
    ::tcsetattr(side.number(), TCSANOW, &state);
    return side;
}

std::vector<std::string> environmentOf(const ToolSetting& setting) {
    std::vector<std::string> all = setting.environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text(*entry);
        const std::string_view name = text.substr(0, text.find('='));
        if (name != "NO_COLOR" && name != "CLICOLOR_FORCE" && name != "TERM" && name != "COLUMNS")
            all.emplace_back(text);
    }
    return all;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

ToolRun runTool(const std::vector<std::string>& arguments, const ToolSetting& setting) {
    std::vector<std::string> words = commandOf(arguments, setting);
    std::vector<std::string> environment = environmentOf(setting);

    const bool isTerminal = setting.outputTo == OutputTo::terminal;
    const Descriptor errors = memoryFile();
    const Descriptor kept = isTerminal ? newTerminal() : memoryFile();
    Pipe counted = newPipe();
    Descriptor output = isTerminal ? programSide(kept)
                        : setting.outputTo == OutputTo::fullDisk
                            ? Descriptor(::open("/dev/full", O_WRONLY | O_CLOEXEC))
                        : setting.outputTo == OutputTo::closedPipe ? std::move(newPipe().writer)
                        : setting.outputTo == OutputTo::count      ? std::move(counted.writer)
                                                              : Descriptor(::dup(kept.number()));

    const Descriptor input = memoryFile();
    if (::write(input.number(), setting.input.data(), setting.input.size()) !=
        static_cast<ssize_t>(setting.input.size()))
        throw std::runtime_error("no standard input");
    ::lseek(input.number(), 0, SEEK_SET);

    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    const std::string& folder = setting.folder.empty() ? YG_PROJECT_FOLDER : setting.folder;
    ::posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    ::posix_spawn_file_actions_adddup2(&actions, input.number(), STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, errors.number(), STDERR_FILENO);
    if (setting.outputTo == OutputTo::nowhere)
        ::posix_spawn_file_actions_addclose(&actions, STDOUT_FILENO);
    else
        ::posix_spawn_file_actions_adddup2(&actions, output.number(), STDOUT_FILENO);
    pid_t child = -1;
    const int failure = ::posix_spawn(&child, words[0].c_str(), &actions, nullptr,
                                      pointersTo(words).data(), pointersTo(environment).data());
    ::posix_spawn_file_actions_destroy(&actions);
    if (failure != 0)
        throw std::runtime_error("the tool cannot be run");

    ToolRun run;
    output.close();
    // Terminals and pipes hold little, so they are read while the tool runs.
    if (isTerminal)
        run.output = readAll(kept);
    if (setting.outputTo == OutputTo::count)
        run.outputSize = sizeOf(counted.reader);
    int state = 0;
    ::waitpid(child, &state, 0);
    run.status = WIFEXITED(state) ? WEXITSTATUS(state) : -1;
    if (!isTerminal)
        run.output = contentOf(kept);
    run.errors = contentOf(errors);
    return run;
}

}  // namespace yg::testing
