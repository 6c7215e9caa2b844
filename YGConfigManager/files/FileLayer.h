// SPDX-License-Identifier: MIT
//
// The system calls that a durable write is made of, behind an abstract class so that tests can let
// any one of them fail, or cut the write short at any step. Nothing but tests needs a class of its
// own. Each call answers as its system call does: -1 and `errno` if it fails.
#pragma once

#include <cstddef>
#include <sys/stat.h>
#include <sys/types.h>

namespace yg::files {

class FileLayer {
public:
    virtual ~FileLayer() = default;

    /// What the symbolic link names, without a NUL at the end; EINVAL if it is no link.
    virtual ssize_t readLink(const char* path, char* buffer, std::size_t size) = 0;

    /// Opens a folder, which the calls below take as the place of their names.
    virtual int openFolder(const char* path) = 0;

    /// The state of the file, or of the link if it is one.
    virtual int status(int folder, const char* name, struct stat& state) = 0;

    /// Creates a file for writing, with the mode less the umask; EEXIST if anything has that name.
    virtual int openNew(int folder, const char* name, mode_t mode) = 0;

    virtual ssize_t write(int file, const void* bytes, std::size_t size) = 0;
    virtual int changeMode(int file, mode_t mode) = 0;

    /// Brings a file, or the names in a folder, to the disk.
    virtual int sync(int fileOrFolder) = 0;

    /// The number is free again whatever is answered.
    virtual int close(int fileOrFolder) = 0;

    virtual int rename(int folder, const char* from, const char* to) = 0;
    virtual int unlink(int folder, const char* name) = 0;
};

/// The real system calls. Any thread may use it.
FileLayer& systemFileLayer();

}  // namespace yg::files
