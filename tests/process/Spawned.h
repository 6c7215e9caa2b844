// SPDX-License-Identifier: MIT
//
// A program that is run to its end.
#pragma once

#include <array>
#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "LargeInput.h"

namespace yg::testing {

struct Ended {
    int state = -1;      ///< as waitpid gives it; 0 for a good end
    std::string output;  ///< on standard output
};

/// Runs the program with these arguments. Its log goes nowhere; a sanitizer's report does not.
inline Ended run(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    if (!isSanitized) {
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    pid_t child = -1;
    const int failure =
        ::posix_spawn(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    if (failure != 0) {
        ::close(ends[0]);
        throw std::runtime_error("the program cannot be run");
    }
    Ended ended;
    std::array<char, 256> piece{};
    for (ssize_t size; (size = ::read(ends[0], piece.data(), piece.size())) > 0;) {
        ended.output.append(piece.data(), static_cast<std::size_t>(size));
    }
    ::waitpid(child, &ended.state, 0);
    ::close(ends[0]);
    return ended;
}

}  // namespace yg::testing
