// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/FileLayer.h"

#include <atomic>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
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

    int openNew(int folder, const char* name, mode_t mode) override {
        return ::openat(folder, name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    }

    ssize_t write(int file, const void* bytes, std::size_t size) override {
        return ::write(file, bytes, size);
    }

    int changeMode(int file, mode_t mode) override { return ::fchmod(file, mode); }

    int sync(int fileOrFolder) override { return ::fsync(fileOrFolder); }

    int close(int fileOrFolder) override { return ::close(fileOrFolder); }

    int rename(int folder, const char* from, const char* to) override {
        return ::renameat(folder, from, folder, to);
    }

    int unlink(int folder, const char* name) override { return ::unlinkat(folder, name, 0); }

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
    static struct flock firstByte(short kind) {
        struct flock range = {};
        range.l_type = kind;
        range.l_whence = SEEK_SET;
        range.l_len = 1;
        return range;
    }
};

std::atomic<FileLayer*> replacement = nullptr;

}  // namespace

FileLayer& systemFileLayer() {
    // Never destroyed, so that a write during process exit still finds it.
    static SystemFileLayer& layer = *new SystemFileLayer;
    return layer;
}

FileLayer& fileLayer() {
    FileLayer* const layer = replacement.load();
    return layer ? *layer : systemFileLayer();
}

FileLayer* setFileLayer(FileLayer* layer) {
    return replacement.exchange(layer);
}

}  // namespace yg::files
