// SPDX-License-Identifier: MIT
//
// A program that runs beside the test.
#pragma once

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <optional>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "LargeInput.h"

namespace yg::testing {

/// From its start to its end, with pipes to its standard input and from one of its other streams.
/// What it writes to the other one is dropped, but for a sanitizer's reports. One that still runs
/// when the object goes is killed.
class Program {
public:
    /// The first word is the program's path.
    explicit Program(std::vector<std::string> words, int streamRead = STDOUT_FILENO) {
        std::array<int, 2> input{};
        std::array<int, 2> output{};
        if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions;
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
        for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
            if (stream == streamRead)
                ::posix_spawn_file_actions_adddup2(&actions, output[1], stream);
            else if (stream == STDOUT_FILENO || !isSanitized)
                ::posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
        }
        std::vector<char*> pointers;
        for (std::string& word : words)
            pointers.push_back(word.data());
        pointers.push_back(nullptr);
        const int failure =
            ::posix_spawn(&process_, pointers[0], &actions, nullptr, pointers.data(), environ);
        ::posix_spawn_file_actions_destroy(&actions);
        ::close(input[0]);
        ::close(output[1]);
        input_ = input[1];
        output_ = output[0];
        if (failure != 0) {
            process_ = -1;
            close();
            throw std::runtime_error("the program cannot be run");
        }
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program() {
        if (process_ > 0) {
            kill();
            wait();
        }
        close();
    }

    /// Writes one byte to its standard input.
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

    /// All that it wrote and that was not read yet, until its end.
    std::string all() {
        while (readMore()) {
        }
        return std::exchange(read_, {});
    }

    pid_t id() const { return process_; }

    void kill() const { signal(SIGKILL); }
    void signal(int number) const { ::kill(process_, number); }

    /// Waits for its end; the state as waitpid gives it, 0 for a good end.
    int wait() {
        int state = 0;
        while (::waitpid(process_, &state, 0) < 0 && errno == EINTR) {
        }
        process_ = -1;
        return state;
    }

private:
    bool readMore() {
        std::array<char, 4096> piece{};
        const ssize_t count = ::read(output_, piece.data(), piece.size());
        if (count > 0)
            read_.append(piece.data(), static_cast<std::size_t>(count));
        return count > 0;
    }

    void close() {
        closeInput();
        ::close(output_);
    }

    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string read_;
};

}  // namespace yg::testing
