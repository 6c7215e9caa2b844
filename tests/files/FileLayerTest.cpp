// SPDX-License-Identifier: MIT
#include <cerrno>
#include <fcntl.h>
#include <filesystem>

#include <gtest/gtest.h>

#include "YGConfigManager/files/FileLayer.h"

#include "files/TemporaryFolder.h"

namespace yg::files {
namespace {

namespace fs = std::filesystem;

TEST(SystemFileLayer, CreatesNoFileWhereAnythingHasItsName) {
    const TemporaryFolder folder;
    put(folder / "file", "content");
    fs::create_symlink("missing", folder / "dangling");
    for (const char* const name : {"file", "dangling"}) {
        EXPECT_EQ(systemFileLayer().openNew(AT_FDCWD, (folder / name).c_str(), 0600), -1);
        EXPECT_EQ(errno, EEXIST);
    }
    EXPECT_EQ(contentOf(folder / "file"), "content");
    EXPECT_FALSE(fs::exists(folder / "missing"));
}

TEST(SystemFileLayer, LooksAtALinkItself) {
    const TemporaryFolder folder;
    put(folder / "file", "content");
    fs::create_symlink("file", folder / "link");
    struct stat state = {};
    EXPECT_EQ(systemFileLayer().status(AT_FDCWD, (folder / "link").c_str(), state), 0);
    EXPECT_TRUE(S_ISLNK(state.st_mode));
}

TEST(SystemFileLayer, OpensFoldersOnlyAndHandsNothingToOtherPrograms) {
    const TemporaryFolder folder;
    put(folder / "file", "content");
    EXPECT_EQ(systemFileLayer().openFolder((folder / "file").c_str()), -1);
    const int opened = systemFileLayer().openFolder(folder.path().c_str());
    const int created = systemFileLayer().openNew(opened, "new", 0600);
    EXPECT_EQ(::fcntl(opened, F_GETFD), FD_CLOEXEC);
    EXPECT_EQ(::fcntl(created, F_GETFD), FD_CLOEXEC);
    EXPECT_EQ(systemFileLayer().close(created), 0);
    EXPECT_EQ(systemFileLayer().close(opened), 0);
}

}  // namespace
}  // namespace yg::files
