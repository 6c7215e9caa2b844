// SPDX-License-Identifier: MIT
//
// A lock for whoever reads a file, changes what it read and writes it back, so that of several who
// do so none loses what another wrote. It binds those that ask for it, nobody else.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "YGConfigManager/files/FileLayer.h"

namespace yg::files {

/// Holds the lock of the folder that a file lies in, until the end of the scope. One at a time
/// holds it among all processes of a machine and all threads of a process; a thread that holds it
/// and asks for it a second time waits for itself. Any thread may have one.
///
/// The folder itself is locked, by flock(): it stays when the file in it is replaced, no further
/// file comes to lie beside the settings, and the kernel releases it when the process ends, however
/// it ends. So files of one folder share a lock, and whoever may read the folder can hold it. A
/// process forked by another thread meanwhile, which runs no program of its own, takes part in the
/// lock until its end if this process dies while it holds it. On a network file system the machines
/// do not see each other's locks.
class FolderLock {
public:
    /// Longer is not waited, so that a process that was stopped while it held the lock stops no
    /// other for ever.
    static constexpr std::chrono::seconds longestWait{10};

    /// Takes the lock for the file that a write to the path replaces (AtomicWrite.h): links are
    /// followed, so all paths to one file have the same lock. Waits while another holds it, and
    /// looks again when it has it whether the path still leads to that folder.
    explicit FolderLock(std::string_view path, std::chrono::milliseconds longest = longestWait,
                        FileLayer& layer = systemFileLayer());

    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// False if the lock is not held: another held it too long, there is no such folder, it may not
    /// be read, the file system cannot lock, or memory does not suffice.
    explicit operator bool() const { return number_ >= 0; }

    /// Why it is not held, in one line that names the file: "user/a.xml: No such file or
    /// directory". Empty if it is held.
    const std::string& error() const { return error_; }

private:
    /// 0 once the lock is held, or an error number.
    int take(std::string_view path, std::chrono::milliseconds longest);
    void release();

    FileLayer& layer_;
    int number_ = -1;
    std::string error_;
};

}  // namespace yg::files
