// SPDX-License-Identifier: MIT
//
// Who may do what with a file that was replaced, as the kernel sees it.
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <grp.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/files/AtomicWrite.h"

#include "files/ScriptedFileLayer.h"
#include "files/TemporaryFolder.h"

namespace yg::files {
namespace {

namespace fs = std::filesystem;

constexpr uid_t user = 12'001;
constexpr uid_t otherUser = 12'002;
constexpr gid_t group = 12'011;
constexpr gid_t otherGroup = 12'012;
constexpr gid_t thirdGroup = 12'013;

struct stat stateOf(const std::string& path) {
    struct stat state = {};
    EXPECT_EQ(::lstat(path.c_str(), &state), 0);
    return state;
}

/// An entry of an access list as the kernel has it; the numbers are little-endian.
struct Entry {
    enum Tag : std::uint16_t {
        owner = 1,
        namedUser = 2,
        owningGroup = 4,
        namedGroup = 8,
        mask = 16,
        others = 32,
    };
    std::uint16_t tag;
    std::uint16_t rights;
    std::uint32_t id = UINT32_MAX;
};

std::string listOf(const std::vector<Entry>& entries) {
    std::string bytes("\2\0\0\0", 4);
    for (const Entry& entry : entries)
        bytes.append(reinterpret_cast<const char*>(&entry), sizeof entry);
    return bytes;
}

constexpr const char* accessList = "system.posix_acl_access";
constexpr const char* defaultList = "system.posix_acl_default";

bool setList(const std::string& path, const std::string& list, const char* name = accessList) {
    return ::setxattr(path.c_str(), name, list.data(), list.size(), 0) == 0;
}

std::string listAt(const std::string& path) {
    std::string bytes(1000, '\0');
    const ssize_t size = ::getxattr(path.c_str(), accessList, bytes.data(), bytes.size());
    bytes.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return bytes;
}

/// Does the task in another process, as that user and in these groups.
bool doneAs(uid_t asUser, const std::vector<gid_t>& groups, const std::function<bool()>& task) {
    const pid_t child = ::fork();
    if (child == 0) {
        const bool isUser = ::setgroups(groups.size(), groups.data()) == 0 &&
                            ::setresgid(groups[0], groups[0], groups[0]) == 0 &&
                            ::setresuid(asUser, asUser, asUser) == 0;
        ::_exit(isUser && task() ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// A folder that everyone may write to, with one file in it.
class FileRights : public testing::Test {
protected:
    FileRights() {
        put(path, "old");
        ::chmod(folder.path().c_str(), 0777);
    }

    void own(uid_t owner, gid_t ownerGroup, mode_t mode) const {
        ASSERT_EQ(::chown(path.c_str(), owner, ownerGroup), 0);
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
    }

    void expectOwned(uid_t owner, gid_t ownerGroup, mode_t mode) const {
        const struct stat state = stateOf(path);
        EXPECT_EQ(state.st_uid, owner);
        EXPECT_EQ(state.st_gid, ownerGroup);
        EXPECT_EQ(state.st_mode & 07777U, mode);
        EXPECT_EQ(contentOf(path), "new");
    }

    bool writtenAs(uid_t asUser, const std::vector<gid_t>& groups) const {
        return doneAs(asUser, groups, [this] { return writeFileAtomically(path, "new").ok; });
    }

    TemporaryFolder folder;
    std::string path = folder / "a.xml";
};

/// The same for tests that take several users.
class FileRightsOfUsers : public FileRights {
protected:
    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "only root can be several users";
    }
};

class FileRightsByList : public FileRights {
protected:
    void SetUp() override {
        if (!setList(path,
                     listOf({{Entry::owner, 6}, {Entry::owningGroup, 4}, {Entry::others, 4}})))
            GTEST_SKIP() << "the file system has no access lists";
    }

    // A user who may write, and a group that may read.
    const std::string list = listOf({{Entry::owner, 6},
                                     {Entry::namedUser, 6, otherUser},
                                     {Entry::owningGroup, 0},
                                     {Entry::namedGroup, 4, otherGroup},
                                     {Entry::mask, 6},
                                     {Entry::others, 0}});
};

// ---- Owner and group --------------------------------------------------------------------------

TEST_F(FileRightsOfUsers, AUsersPrivateFileThatRootSavesIsStillTheUsers) {
    own(user, group, 0600);
    EXPECT_TRUE(writeFileAtomically(path, "new"));
    expectOwned(user, group, 0600);
}

TEST_F(FileRightsOfUsers, AGroupOfTheUserIsKept) {
    own(user, otherGroup, 0660);
    EXPECT_TRUE(writtenAs(user, {group, otherGroup}));
    expectOwned(user, otherGroup, 0660);
}

TEST_F(FileRightsOfUsers, TheGroupIsKeptAlsoWhereTheFolderGivesAnother) {
    ASSERT_EQ(::chown(folder.path().c_str(), 0, thirdGroup), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 02777), 0);
    own(user, group, 0640);
    EXPECT_TRUE(writtenAs(user, {group}));
    expectOwned(user, group, 0640);
}

TEST_F(FileRightsOfUsers, ItsRightsAreNotGivenToAnotherGroup) {
    own(user, otherGroup, 0660);
    EXPECT_TRUE(writtenAs(user, {group}));
    expectOwned(user, group, 0600);
    own(user, otherGroup, 0664);
    EXPECT_TRUE(writtenAs(user, {group}));
    expectOwned(user, group, 0644);
    // Who was in the group could do less than others, and counts among them now.
    own(user, otherGroup, 0606);
    EXPECT_TRUE(writtenAs(user, {group}));
    expectOwned(user, group, 0600);
}

TEST_F(FileRightsOfUsers, AStrangersFileBecomesTheWritersAndGivesNobodyMore) {
    own(otherUser, group, 0664);
    EXPECT_TRUE(writtenAs(user, {group}));
    expectOwned(user, group, 0664);
    own(otherUser, otherGroup, 0664);
    EXPECT_TRUE(writtenAs(user, {group}));
    expectOwned(user, group, 0644);
    // The owner could do less than his group, and counts among it now.
    own(otherUser, group, 0467);
    EXPECT_TRUE(writtenAs(user, {group}));
    expectOwned(user, group, 0444);
}

TEST_F(FileRightsOfUsers, NobodyReadsMoreWhateverTheModeAndTheWriter) {
    struct Person {
        uid_t who;
        std::vector<gid_t> groups;
    };
    const std::vector<Person> people = {{otherUser, {group}},         {otherUser, {otherGroup}},
                                        {otherUser, {thirdGroup}},    {12'003, {group}},
                                        {12'003, {otherGroup}},       {12'003, {thirdGroup}},
                                        {12'003, {group, otherGroup}}};
    const auto readers = [&] {
        std::vector<bool> may;
        for (const Person& person : people) {
            may.push_back(doneAs(person.who, person.groups,
                                 [&] { return ::access(path.c_str(), R_OK) == 0; }));
        }
        return may;
    };
    for (const uid_t owner : {user, otherUser}) {
        for (const gid_t ownerGroup : {group, otherGroup}) {
            for (const mode_t mode : {0000U, 0004U, 0040U, 0044U, 0400U, 0404U, 0440U, 0444U}) {
                own(owner, ownerGroup, mode);
                const std::vector<bool> before = readers();
                EXPECT_TRUE(writtenAs(user, {group}));
                const std::vector<bool> after = readers();
                for (std::size_t i = 0; i < people.size(); ++i) {
                    EXPECT_TRUE(before[i] || !after[i])
                        << owner << " " << ownerGroup << " " << mode << ", person " << i;
                }
            }
        }
    }
}

TEST_F(FileRights, WhereTheFileSystemHasNoOwnersTheModeIsKept) {
    ASSERT_EQ(::chmod(path.c_str(), 0664), 0);
    ScriptedFileLayer layer;
    layer.errorOf = [](std::string_view call) { return call == "changeOwner" ? EPERM : 0; };
    EXPECT_TRUE(writeFileAtomically(path, "new", layer));
    // It has its owner and group all the same.
    EXPECT_EQ(modeOf(path), 0664U);
}

TEST_F(FileRights, WhereNothingCanBeGivenTheRightsAreThoseThatAllHad) {
    for (const int error : {EPERM, EACCES, EINVAL, ENOTSUP, ENOSYS}) {
        ASSERT_EQ(::chmod(path.c_str(), 0664), 0);
        ScriptedFileLayer layer;
        layer.errorOf = [&](std::string_view call) { return call == "changeOwner" ? error : 0; };
        // The target belongs to others, and so does not the new file.
        layer.changeStatus = [first = true](struct stat& state) mutable {
            if (S_ISREG(state.st_mode) && first) {
                state.st_gid += 1;
                first = false;
            }
        };
        EXPECT_TRUE(writeFileAtomically(path, "new", layer));
        EXPECT_EQ(modeOf(path), 0644U);
    }
}

TEST_F(FileRights, WhateverElseFailsLeavesTheOldFile) {
    for (const std::string_view failing : {"changeOwner", "removeAccessList", "readAccessList"}) {
        for (const int error : {EIO, ENOSPC, EDQUOT, EROFS}) {
            ScriptedFileLayer layer;
            layer.errorOf = [&](std::string_view call) { return call == failing ? error : 0; };
            EXPECT_FALSE(writeFileAtomically(path, "new", layer));
            EXPECT_EQ(contentOf(path), "old");
        }
    }
}

// ---- Access lists -------------------------------------------------------------------------------

TEST_F(FileRightsByList, AListIsKept) {
    ASSERT_TRUE(setList(path, list));
    EXPECT_TRUE(writeFileAtomically(path, "new"));
    EXPECT_EQ(listAt(path), list);
    EXPECT_EQ(modeOf(path), 0660U);
    EXPECT_EQ(contentOf(path), "new");
}

TEST_F(FileRightsByList, AListIsKeptThroughALink) {
    ASSERT_TRUE(setList(path, list));
    fs::create_symlink("a.xml", folder / "link");
    EXPECT_TRUE(writeFileAtomically(folder / "link", "new"));
    EXPECT_EQ(listAt(path), list);
}

TEST_F(FileRightsByList, AListThatCannotBeGivenBecomesWhatAllOfItHad) {
    struct Case {
        std::vector<Entry> entries;
        mode_t mode;
    };
    const std::vector<Case> cases = {
        {{{Entry::owner, 6},
          {Entry::namedUser, 6, otherUser},
          {Entry::owningGroup, 4},
          {Entry::mask, 6},
          {Entry::others, 4}},
         0644},
        {{{Entry::owner, 6},
          {Entry::namedUser, 6, otherUser},
          {Entry::owningGroup, 6},
          {Entry::mask, 6},
          {Entry::others, 0}},
         0600},
        // One user is kept out.
        {{{Entry::owner, 6},
          {Entry::namedUser, 0, otherUser},
          {Entry::owningGroup, 6},
          {Entry::mask, 6},
          {Entry::others, 6}},
         0600},
        // The mask keeps out everyone but owner and others.
        {{{Entry::owner, 6},
          {Entry::namedUser, 6, otherUser},
          {Entry::owningGroup, 6},
          {Entry::mask, 0},
          {Entry::others, 4}},
         0600},
    };
    for (const int error : {EPERM, ENOTSUP}) {
        for (const Case& one : cases) {
            ASSERT_TRUE(setList(path, listOf(one.entries)));
            ScriptedFileLayer layer;
            layer.errorOf = [&](std::string_view call) {
                return call == "setAccessList" ? error : 0;
            };
            EXPECT_TRUE(writeFileAtomically(path, "new", layer));
            EXPECT_EQ(modeOf(path), one.mode);
            EXPECT_EQ(listAt(path), "");
        }
    }
}

TEST_F(FileRightsByList, AListIsNotGivenToAnotherGroup) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can be several users";
    own(user, otherGroup, 0660);
    ASSERT_TRUE(setList(path, list));
    EXPECT_TRUE(writtenAs(user, {group}));
    expectOwned(user, group, 0600);
    EXPECT_EQ(listAt(path), "");
}

TEST_F(FileRightsByList, AListThatCannotBeReadLeavesTheOldFile) {
    ASSERT_TRUE(setList(path, list));
    ScriptedFileLayer layer;
    layer.errorOf = [](std::string_view call) { return call == "readAccessList" ? EACCES : 0; };
    EXPECT_FALSE(writeFileAtomically(path, "new", layer));
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_EQ(listAt(path), list);
}

/// What new files in the folder inherit.
std::string inherited() {
    return listOf({{Entry::owner, 7},
                   {Entry::namedUser, 7, otherUser},
                   {Entry::owningGroup, 7},
                   {Entry::mask, 7},
                   {Entry::others, 7}});
}

TEST_F(FileRightsByList, AFileWithoutAListInheritsNone) {
    ASSERT_TRUE(setList(folder.path(), inherited(), defaultList));
    ASSERT_EQ(::chmod(path.c_str(), 0660), 0);
    EXPECT_TRUE(writeFileAtomically(path, "new"));
    EXPECT_EQ(listAt(path), "");
    EXPECT_EQ(modeOf(path), 0660U);
}

TEST_F(FileRightsByList, AnInheritedListThatCannotBeRemovedGivesNothing) {
    ASSERT_TRUE(setList(folder.path(), inherited(), defaultList));
    ASSERT_EQ(::chmod(path.c_str(), 0660), 0);
    ScriptedFileLayer layer;
    layer.errorOf = [](std::string_view call) { return call == "removeAccessList" ? EPERM : 0; };
    EXPECT_TRUE(writeFileAtomically(path, "new", layer));
    EXPECT_EQ(modeOf(path), 0600U);
}

TEST_F(FileRightsByList, ANewFileInheritsWhatTheFolderGives) {
    ASSERT_TRUE(setList(folder.path(), inherited(), defaultList));
    EXPECT_TRUE(writeFileAtomically(folder / "b.xml", "new"));
    EXPECT_EQ(modeOf(folder / "b.xml"), 0666U);
    EXPECT_NE(listAt(folder / "b.xml"), "");
}

TEST_F(FileRightsByList, NobodyElseReadsTheFileBeforeItIsWritten) {
    ASSERT_TRUE(setList(folder.path(), inherited(), defaultList));
    ASSERT_TRUE(setList(path, list));
    ScriptedFileLayer layer;
    layer.largestWrite = 1;
    std::vector<mode_t> modes;
    layer.after = [&](std::string_view call) {
        for (const std::string& name : folder.names()) {
            if (name.starts_with(".") && (call == "openNew" || call == "write"))
                modes.push_back(modeOf(folder / name));
        }
    };
    EXPECT_TRUE(writeFileAtomically(path, "new", layer));
    EXPECT_THAT(modes, testing::Each(0600U));
    EXPECT_EQ(modes.size(), 4U);
}

}  // namespace
}  // namespace yg::files
