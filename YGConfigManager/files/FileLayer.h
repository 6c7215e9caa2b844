// SPDX-License-Identifier: MIT
//
// The system calls that durable writes and locks are made of, behind an abstract class so that
// tests can let any one of them fail, or cut a write short at any step. Nothing but tests needs a
// class of its own. Each call answers as its system call does: -1 and `errno` if it fails.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <sys/stat.h>
#include <sys/types.h>

namespace yg::files {

class FileLayer {
public:
    virtual ~FileLayer() = default;

    // Calls that take a folder and a name take AT_FDCWD and a path as well, and some an open file
    // and no name.

    /// What the symbolic link, or the open link, names, without a NUL at the end; EINVAL if it is
    /// no link.
    virtual ssize_t readLink(int folder, const char* name, char* buffer, std::size_t size) = 0;

    /// Opens what is at the path, a link itself and not what it names, to look at it only.
    virtual int openLink(const char* path) = 0;

    /// Opens a folder, which the calls below take as the place of their names.
    virtual int openFolder(const char* path) = 0;

    /// The state of the file, or of the link if it is one, or of the open file.
    virtual int status(int folder, const char* name, struct stat& state) = 0;

    /// Opens a file for reading, no link, and without waiting for anything.
    virtual int openOld(int folder, const char* name) = 0;

    /// Creates a file for writing, with the mode less the umask; EEXIST if anything has that name.
    virtual int openNew(int folder, const char* name, mode_t mode) = 0;

    virtual ssize_t write(int file, const void* bytes, std::size_t size) = 0;
    virtual int changeMode(int file, mode_t mode) = 0;

    /// The group alone where the user is -1.
    virtual int changeOwner(int file, uid_t user, gid_t group) = 0;

    /// The bytes of the access list (AccessList.h) of the file, or of the link if it is one;
    /// ENODATA if it has none beside its mode, ENOTSUP if the file system has none.
    virtual ssize_t readAccessList(const char* path, void* buffer, std::size_t size) = 0;
    virtual int setAccessList(int file, const void* bytes, std::size_t size) = 0;
    virtual int removeAccessList(int file) = 0;

    /// Brings a file, or the names in a folder, to the disk.
    virtual int sync(int fileOrFolder) = 0;

    /// The number is free again whatever is answered.
    virtual int close(int fileOrFolder) = 0;

    virtual int rename(int folder, const char* from, const char* to) = 0;
    virtual int unlink(int folder, const char* name) = 0;

    /// Hands over the names in the folder, so many at most.
    virtual int eachName(int folder, std::size_t most,
                         const std::function<void(const char* name)>& take) = 0;

    /// Makes a folder with all rights less the umask.
    virtual int makeFolder(const char* path) = 0;
    virtual int removeFolder(const char* path) = 0;

    /// Takes the lock of the open file or folder for this opening of it, without waiting;
    /// EWOULDBLOCK if another opening has it, in this process too. It is released when all copies
    /// of the number are closed.
    virtual int lock(int fileOrFolder) = 0;
    virtual int unlock(int fileOrFolder) = 0;

    /// Says, and takes back, that this opening of the folder waits for its lock. Where that cannot
    /// be said it is left out.
    virtual void beginWaiting(int folder) = 0;
    virtual void endWaiting(int folder) = 0;

    /// Whether another opening of the folder waits for its lock.
    virtual bool hasWaiters(int folder) = 0;

    /// A clock that nobody sets.
    virtual std::chrono::steady_clock::time_point now() = 0;
    virtual void pause(std::chrono::milliseconds time) = 0;
};

/// The real system calls. Any thread may use it.
FileLayer& systemFileLayer();

}  // namespace yg::files
