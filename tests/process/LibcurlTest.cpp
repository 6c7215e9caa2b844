// SPDX-License-Identifier: MIT
//
// When libcurl is loaded, and what happens without it.
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Program.h"
#include "files/TemporaryFolder.h"
#include "process/SampleRoot.h"

namespace yg::testing {
namespace {

using ::testing::MatchesRegex;

/// Nobody listens there.
constexpr const char* url = "http://127.0.0.1:1/";

/// For programs that begin meanwhile: a libcurl that cannot be loaded is found before the real one.
class BrokenLibcurl {
public:
    BrokenLibcurl() {
        std::ofstream(folder_.at("libcurl.so.4")) << "this is not a library";
        ::setenv("LD_LIBRARY_PATH", folder_.path().c_str(), 1);
    }
    ~BrokenLibcurl() { ::unsetenv("LD_LIBRARY_PATH"); }
    BrokenLibcurl(const BrokenLibcurl&) = delete;
    BrokenLibcurl& operator=(const BrokenLibcurl&) = delete;

    std::string path() const { return folder_.at("libcurl.so.4"); }

private:
    files::TemporaryFolder folder_;
};

std::string run(int count, int stream = STDOUT_FILENO) {
    const SampleRoot root;
    Program program({YG_PROCESS_LIBCURL_PROGRAM, root.path(), url, std::to_string(count)}, stream);
    std::string all = program.all();
    EXPECT_EQ(program.wait(), 0);
    return all;
}

TEST(Libcurl, IsLoadedForTheFirstRequestAndNotBefore) {
    EXPECT_THAT(run(1), MatchesRegex("in memory:\nCould[^\n]* connect to server\n"
                                     "in memory: libcrypto libcurl libssl\n"));
}

TEST(Libcurl, IsLoadedOnceForRequestsOfManyThreads) {
    EXPECT_THAT(run(8), MatchesRegex("in memory:\n(Could[^\n]* connect to server\n){8}"
                                     "in memory: libcrypto libcurl libssl\n"));
}

TEST(Libcurl, ThatIsMissingEndsEachRequestWithTheReason) {
    const BrokenLibcurl broken;
    const std::string reason = broken.path() + ": file too short\n";
    EXPECT_EQ(run(3), "in memory:\n" + reason + reason + reason + "in memory:\n");
}

TEST(Libcurl, ThatIsMissingIsLoggedOnceWithItsPackage) {
    const BrokenLibcurl broken;
    std::istringstream log(run(8, STDERR_FILENO));
    int count = 0;
    for (std::string line; std::getline(log, line);) {
        if (line.find("libcurl") != std::string::npos) {
            ++count;
            EXPECT_EQ(line,
                      "no HTTP request can be made without libcurl.so.4 of the package "
                      "libcurl4:" +
                          broken.path() + ": file too short");
        }
    }
    EXPECT_EQ(count, 1);
}

}  // namespace
}  // namespace yg::testing
