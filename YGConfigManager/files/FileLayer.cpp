// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/FileLayer.h"

#include <cerrno>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/xattr.h>
#include <thread>
#include <unistd.h>

namespace yg::files {

namespace {

class SystemFileLayer final : public FileLayer {
public:
    ssize_t readLink(int folder, const char* name, char* buffer, std::size_t size) override {
        return ::readlinkat(folder, name, buffer, size);
    }

    int openLink(const char* path) override {
        return ::open(path, O_PATH | O_NOFOLLOW | O_CLOEXEC);
    }

    int openFolder(const char* path) override {
        return ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    }

    int status(int folder, const char* name, struct stat& state) override {
        return ::fstatat(folder, name, &state, AT_SYMLINK_NOFOLLOW | AT_EMPTY_PATH);
    }

    int openOld(int folder, const char* name) override {
        return ::openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    }

    int openNew(int folder, const char* name, mode_t mode) override {
        return ::openat(folder, name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    }

    ssize_t write(int file, const void* bytes, std::size_t size) override {
        return ::write(file, bytes, size);
    }

    int changeMode(int file, mode_t mode) override { return ::fchmod(file, mode); }

    int changeOwner(int file, uid_t user, gid_t group) override {
        return ::fchown(file, user, group);
    }

    ssize_t readAccessList(const char* path, void* buffer, std::size_t size) override {
        return ::lgetxattr(path, accessListName, buffer, size);
    }

    int setAccessList(int file, const void* bytes, std::size_t size) override {
        return ::fsetxattr(file, accessListName, bytes, size, 0);
    }

    int removeAccessList(int file) override { return ::fremovexattr(file, accessListName); }

    int sync(int fileOrFolder) override { return ::fsync(fileOrFolder); }

    int close(int fileOrFolder) override { return ::close(fileOrFolder); }

    int rename(int folder, const char* from, const char* to) override {
        return ::renameat(folder, from, folder, to);
    }

    int unlink(int folder, const char* name) override { return ::unlinkat(folder, name, 0); }

    int eachName(int folder, std::size_t most,
                 const std::function<void(const char* name)>& take) override {
        const int opened = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        DIR* const names = opened < 0 ? nullptr : ::fdopendir(opened);
        if (!names) {
            const int error = errno;
            if (opened >= 0)
                ::close(opened);
            errno = error;
            return -1;
        }
        for (; most > 0; --most) {
            const dirent* const entry = ::readdir(names);
            if (!entry)
                break;
            take(entry->d_name);
        }
        return ::closedir(names);
    }

    int makeFolder(const char* path) override { return ::mkdir(path, S_IRWXU | S_IRWXG | S_IRWXO); }

    int removeFolder(const char* path) override { return ::rmdir(path); }

    int lock(int fileOrFolder) override { return ::flock(fileOrFolder, LOCK_EX | LOCK_NB); }

    int unlock(int fileOrFolder) override { return ::flock(fileOrFolder, LOCK_UN); }

    // Those that wait share a lock on the first byte, which has nothing to do with that of flock()
    // and may be had by whoever may read the folder.

    void beginWaiting(int folder) override {
        struct flock shared = firstByte(F_RDLCK);
        ::fcntl(folder, F_OFD_SETLK, &shared);
    }

    void endWaiting(int folder) override {
        struct flock none = firstByte(F_UNLCK);
        ::fcntl(folder, F_OFD_SETLK, &none);
    }

    bool hasWaiters(int folder) override {
        struct flock exclusive = firstByte(F_WRLCK);
        return ::fcntl(folder, F_OFD_GETLK, &exclusive) == 0 && exclusive.l_type != F_UNLCK;
    }

    std::chrono::steady_clock::time_point now() override {
        return std::chrono::steady_clock::now();
    }

    void pause(std::chrono::milliseconds time) override { std::this_thread::sleep_for(time); }

private:
    static constexpr const char* accessListName = "system.posix_acl_access";

    static struct flock firstByte(short kind) {
        struct flock range = {};
        range.l_type = kind;
        range.l_whence = SEEK_SET;
        range.l_len = 1;
        return range;
    }
};

}  // namespace

FileLayer& systemFileLayer() {
    // Never destroyed, so that a write during process exit still finds it.
    static SystemFileLayer& layer = *new SystemFileLayer;
    return layer;
}

}  // namespace yg::files
