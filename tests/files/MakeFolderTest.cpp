// SPDX-License-Identifier: MIT
#include <cerrno>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/files/MakeFolder.h"

#include "files/ScriptedFileLayer.h"
#include "files/TemporaryFolder.h"

namespace yg::files {
namespace {

using ::testing::ElementsAre;
namespace fs = std::filesystem;

TEST(MakeFolder, BringsTheNewNameToTheDisk) {
    const TemporaryFolder folder;
    ScriptedFileLayer layer;
    EXPECT_TRUE(makeFolder(folder / "user", layer));
    EXPECT_TRUE(fs::is_directory(folder / "user"));
    EXPECT_THAT(layer.made, ElementsAre("makeFolder", "openFolder", "sync", "close"));
}

TEST(MakeFolder, BringsANameThatWasThereToTheDiskToo) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "user");
    put(folder / "user/a.xml", "kept");
    ScriptedFileLayer layer;
    EXPECT_TRUE(makeFolder(folder / "user", layer));
    EXPECT_THAT(layer.happened, ::testing::Contains("sync"));
    EXPECT_EQ(contentOf(folder / "user/a.xml"), "kept");
}

TEST(MakeFolder, ALinkToAFolderIsOneAndADanglingOneIsNot) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "real");
    fs::create_directory_symlink("real", folder / "user");
    fs::create_directory_symlink("missing", folder / "dangling");
    EXPECT_TRUE(makeFolder(folder / "user"));
    EXPECT_FALSE(makeFolder(folder / "dangling"));
}

TEST(MakeFolder, FailsWhereSomethingElseIsThereOrTheFolderAboveIsMissing) {
    const TemporaryFolder folder;
    put(folder / "file", "");
    EXPECT_FALSE(makeFolder(folder / "file"));
    EXPECT_FALSE(makeFolder(folder / "file/user"));
    EXPECT_FALSE(makeFolder(folder / "missing/user"));
    EXPECT_FALSE(makeFolder(""));
}

TEST(MakeFolder, WhatCannotBeBroughtToTheDiskIsTakenBack) {
    for (const std::string_view failing : {"makeFolder", "openFolder", "sync"}) {
        for (const int error : {EIO, ENOSPC, EACCES, EMFILE, EROFS, EDQUOT}) {
            const TemporaryFolder folder;
            ScriptedFileLayer layer;
            layer.errorOf = [&](std::string_view call) { return call == failing ? error : 0; };
            EXPECT_FALSE(makeFolder(folder / "user", layer));
            EXPECT_FALSE(fs::exists(folder / "user"));
            layer.errorOf = [](std::string_view) { return 0; };
            EXPECT_TRUE(makeFolder(folder / "user", layer));
        }
    }
}

TEST(MakeFolder, AFolderThatWasThereIsOneAlsoIfTheOneAboveCannotBeSynced) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "user");
    for (const std::string_view failing : {"openFolder", "sync"}) {
        ScriptedFileLayer layer;
        layer.errorOf = [&](std::string_view call) { return call == failing ? EACCES : 0; };
        EXPECT_TRUE(makeFolder(folder / "user", layer));
        EXPECT_TRUE(fs::exists(folder / "user"));
    }
}

TEST(MakeFolder, AnInterruptedCallIsMadeAgain) {
    const TemporaryFolder folder;
    ScriptedFileLayer layer;
    layer.errorOf = [interrupted = false](std::string_view call) mutable {
        interrupted = (call == "sync" || call == "openFolder") && !interrupted;
        return interrupted ? EINTR : 0;
    };
    EXPECT_TRUE(makeFolder(folder / "user", layer));
}

}  // namespace
}  // namespace yg::files
