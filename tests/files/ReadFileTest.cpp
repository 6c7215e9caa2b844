// SPDX-License-Identifier: MIT
#include <filesystem>
#include <new>
#include <string>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/files/ReadFile.h"

#include "files/TemporaryFolder.h"

namespace yg::files {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
namespace fs = std::filesystem;

// Whether the program is instrumented to check or watch every access to memory.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool memoryIsChecked = true;
#elif defined(__has_feature)
constexpr bool memoryIsChecked =
    __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool memoryIsChecked = false;
#endif

void expectFailure(const FileReading& reading, const std::string& path) {
    EXPECT_FALSE(reading);
    EXPECT_TRUE(reading.bytes.empty());
    EXPECT_THAT(reading.error, StartsWith(path + ": "));
}

TEST(ReadFile, ReadsEveryByte) {
    const TemporaryFolder folder;
    const std::string bytes("a\0\r\n\xFF z", 7);
    put(folder / "a.xml", bytes);
    const FileReading reading = readWholeFile(folder / "a.xml");
    EXPECT_TRUE(reading);
    EXPECT_EQ(reading.bytes, bytes);
    EXPECT_EQ(reading.error, "");
}

TEST(ReadFile, ReadsALargeFile) {
    const TemporaryFolder folder;
    std::string bytes;
    for (int i = 0; i < 3'000'000; ++i)
        bytes += static_cast<char>(i % 251);
    put(folder / "a.xml", bytes);
    EXPECT_TRUE(readWholeFile(folder / "a.xml").bytes == bytes);
}

TEST(ReadFile, AnEmptyFileIsReadAsNoBytes) {
    const TemporaryFolder folder;
    put(folder / "a.xml", "");
    const FileReading reading = readWholeFile(folder / "a.xml");
    EXPECT_TRUE(reading);
    EXPECT_EQ(reading.bytes, "");
}

TEST(ReadFile, ReadsThroughLinks) {
    const TemporaryFolder folder;
    put(folder / "real.xml", "content");
    fs::create_symlink("real.xml", folder / "second.xml");
    fs::create_symlink(folder / "second.xml", folder / "a.xml");
    EXPECT_EQ(readWholeFile(folder / "a.xml").bytes, "content");
}

TEST(ReadFile, AMissingFileIsNamedWithItsCause) {
    const TemporaryFolder folder;
    const FileReading reading = readWholeFile(folder / "a.xml");
    expectFailure(reading, folder / "a.xml");
    EXPECT_EQ(reading.error, folder / "a.xml" + ": No such file or directory");
}

TEST(ReadFile, ADanglingLinkIsMissing) {
    const TemporaryFolder folder;
    fs::create_symlink("missing.xml", folder / "a.xml");
    expectFailure(readWholeFile(folder / "a.xml"), folder / "a.xml");
}

TEST(ReadFile, AFolderIsAnError) {
    const TemporaryFolder folder;
    fs::create_directory_symlink(folder.path(), folder / "link");
    EXPECT_EQ(readWholeFile(folder.path()).error, folder.path() + ": Is a directory");
    expectFailure(readWholeFile(folder / "link"), folder / "link");
}

TEST(ReadFile, APipeIsAnErrorAtOnce) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    const FileReading reading = readWholeFile(folder / "pipe");
    expectFailure(reading, folder / "pipe");
    EXPECT_THAT(reading.error, EndsWith("not a regular file"));
}

TEST(ReadFile, ADeviceIsAnErrorAtOnce) {
    expectFailure(readWholeFile("/dev/zero"), "/dev/zero");
    expectFailure(readWholeFile("/dev/null"), "/dev/null");
}

TEST(ReadFile, ASocketIsAnError) {
    const TemporaryFolder folder;
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const std::string path = folder / "s";
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    expectFailure(readWholeFile(path), path);
    ::close(socket);
}

TEST(ReadFile, NoPathIsAnError) {
    EXPECT_FALSE(readWholeFile(""));
    EXPECT_EQ(readWholeFile("").error, ": the path is empty");
    const TemporaryFolder folder;
    put(folder / "a", "content");
    const FileReading reading = readWholeFile(folder / std::string("a\0b", 3));
    expectFailure(reading, folder / "a?b");
}

TEST(ReadFile, TheErrorIsOneLineWhateverThePathHolds) {
    const FileReading reading = readWholeFile("missing\r\nname\x1B");
    EXPECT_FALSE(reading);
    EXPECT_EQ(reading.error, "missing??name?: No such file or directory");
    EXPECT_THAT(readWholeFile("missing \xE9\x85\x8D").error, HasSubstr(" \xE9\x85\x8D: "));
}

TEST(ReadFile, AFileAsLargeAsTheLimitIsReadAndALargerOneIsNot) {
    const TemporaryFolder folder;
    put(folder / "a.xml", "12345");
    EXPECT_EQ(readWholeFile(folder / "a.xml", 5).bytes, "12345");
    expectFailure(readWholeFile(folder / "a.xml", 4), folder / "a.xml");
}

TEST(ReadFile, AFileBeyondTheLargestIsAnErrorThatTakesNoMemory) {
    const TemporaryFolder folder;
    put(folder / "a.xml", "");
    fs::resize_file(folder / "a.xml", largestFileRead + 1);
    const auto largestMemoryInKilobytes = [] {
        rusage usage = {};
        ::getrusage(RUSAGE_SELF, &usage);
        return usage.ru_maxrss;
    };
    const long before = largestMemoryInKilobytes();
    const FileReading reading = readWholeFile(folder / "a.xml");
    expectFailure(reading, folder / "a.xml");
    EXPECT_THAT(reading.error, EndsWith("larger than 268435456 bytes"));
    EXPECT_LT(largestMemoryInKilobytes() - before, 50'000);
}

// Files below /proc have no size until they are read, just as one that grows meanwhile.

TEST(ReadFile, AFileThatGrowsIsReadToItsEnd) {
    struct stat state = {};
    if (::stat("/proc/self/smaps", &state) != 0 || state.st_size != 0)
        GTEST_SKIP() << "no file that grows";
    const FileReading reading = readWholeFile("/proc/self/smaps");
    EXPECT_TRUE(reading);
    EXPECT_GT(reading.bytes.size(), 10'000U);
    EXPECT_THAT(reading.bytes, EndsWith("\n"));
    EXPECT_EQ(reading.bytes.find('\0'), std::string::npos);
}

TEST(ReadFile, AFileThatGrowsBeyondTheLimitIsAnError) {
    struct stat state = {};
    if (::stat("/proc/self/smaps", &state) != 0 || state.st_size != 0)
        GTEST_SKIP() << "no file that grows";
    for (const std::size_t limit : {0U, 1U, 5000U}) {
        const FileReading reading = readWholeFile("/proc/self/smaps", limit);
        expectFailure(reading, "/proc/self/smaps");
        EXPECT_THAT(reading.error, HasSubstr("larger than"));
    }
}

TEST(ReadFile, ThrowsForAFileLargerThanTheMemory) {
    if (memoryIsChecked)
        GTEST_SKIP() << "the checker ends the process when memory runs out";
    const TemporaryFolder folder;
    put(folder / "a.xml", "");
    fs::resize_file(folder / "a.xml", largestFileRead);
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit limit = {128 * 1024 * 1024, 128 * 1024 * 1024};
        ::setrlimit(RLIMIT_AS, &limit);
        try {
            readWholeFile(folder / "a.xml");
        } catch (const std::bad_alloc&) {
            ::_exit(0);
        }
        ::_exit(1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST(FileExists, WhateverKindIsThere) {
    const TemporaryFolder folder;
    put(folder / "file", "");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("file", folder / "link");
    EXPECT_TRUE(fileExists(folder / "file"));
    EXPECT_TRUE(fileExists(folder / "pipe"));
    EXPECT_TRUE(fileExists(folder / "link"));
    EXPECT_TRUE(fileExists(folder.path()));
}

TEST(FileExists, NotIfNothingIsThere) {
    const TemporaryFolder folder;
    put(folder / "file", "");
    fs::create_symlink("missing", folder / "dangling");
    EXPECT_FALSE(fileExists(folder / "missing"));
    EXPECT_FALSE(fileExists(folder / "dangling"));
    EXPECT_FALSE(fileExists(folder / "file/below"));
    EXPECT_FALSE(fileExists(""));
    EXPECT_FALSE(fileExists(folder / std::string("file\0", 5)));
}

TEST(ReadFile, SaysHowMuchWasReadAlsoOfAFileThatTurnsOutTooLarge) {
    // Its size is 0 as long as it is not read.
    const FileReading tooLarge = readWholeFile("/proc/self/status", 10);
    EXPECT_FALSE(tooLarge);
    EXPECT_GT(tooLarge.bytesRead, 10U);
    EXPECT_EQ(readWholeFile("/proc/self/none").bytesRead, 0U);
    const FileReading whole = readWholeFile("/proc/self/status");
    EXPECT_EQ(whole.bytesRead, whole.bytes.size());
}

TEST(FileIdentity, IsThatOfTheFileWhateverPathLeadsToIt) {
    EXPECT_TRUE(identityOf("/proc/self/status"));
    EXPECT_EQ(identityOf("/dev/null"), identityOf("/dev/../dev//null"));
    EXPECT_NE(identityOf("/dev/null"), identityOf("/dev/zero"));
    for (const std::string_view path : {"", "/proc/self/none", "/dev/null/none"}) {
        EXPECT_FALSE(identityOf(path)) << path;
    }
}

}  // namespace
}  // namespace yg::files
