// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/FileLayer.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace yg::files {

namespace {

class SystemFileLayer final : public FileLayer {
public:
    ssize_t readLink(const char* path, char* buffer, std::size_t size) override {
        return ::readlink(path, buffer, size);
    }

    int openFolder(const char* path) override {
        return ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    }

    int status(int folder, const char* name, struct stat& state) override {
        return ::fstatat(folder, name, &state, AT_SYMLINK_NOFOLLOW);
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
};

}  // namespace

FileLayer& systemFileLayer() {
    // Never destroyed, so that a write during process exit still finds it.
    static SystemFileLayer& layer = *new SystemFileLayer;
    return layer;
}

}  // namespace yg::files
