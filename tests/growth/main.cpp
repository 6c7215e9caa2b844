// SPDX-License-Identifier: MIT
//
// Runs the tests under callgrind: outside of it the program starts itself again inside.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <valgrind/valgrind.h>
#include <vector>

#include <gtest/gtest.h>

#include "files/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;

/// Becomes valgrind, or ends.
[[noreturn]] void becomeCounted(const std::string& folder, char** arguments) {
    ::setenv("YG_GROWTH_FOLDER", folder.c_str(), 1);
    ::setenv("FONTCONFIG_FILE", YG_TEST_FONTS "/fonts.conf", 1);
    std::vector<std::string> words{YG_VALGRIND,
                                   "--tool=callgrind",
                                   "--quiet",
                                   "--collect-atstart=no",
                                   "--callgrind-out-file=" + folder + "/counts",
                                   fs::read_symlink("/proc/self/exe").string()};
    for (char** argument = arguments + 1; *argument != nullptr; ++argument)
        words.emplace_back(*argument);
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    ::execv(pointers.front(), pointers.data());
    std::perror(YG_VALGRIND);
    std::_Exit(1);
}

int runCounted(char** arguments) {
    const yg::files::TemporaryFolder folder;
    const pid_t child = ::fork();
    if (child == 0)
        becomeCounted(folder.path(), arguments);
    int status = 1;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (RUNNING_ON_VALGRIND == 0)
        return runCounted(arguments);
    ::testing::InitGoogleTest(&argumentCount, arguments);
    const int failed = RUN_ALL_TESTS();
    // A filter that fits nothing is a mistake.
    return ::testing::UnitTest::GetInstance()->test_to_run_count() == 0 ? 1 : failed;
}
