// SPDX-License-Identifier: MIT
//
// Reading a whole file. Only regular files are read, also through symbolic links: a folder, a pipe
// or a device is an error at once, so a call never waits for anything but the disk. Any thread may
// call.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <utility>

namespace yg::files {

/// Larger files are not read: 256 MiB.
inline constexpr std::size_t largestFileRead = std::size_t{256} * 1024 * 1024;

/// What came of reading a file; true if it was read.
struct FileReading {
    bool ok = false;
    /// The content. An empty file is read, as no bytes; empty as well if the file was not read.
    std::string bytes;
    /// The bytes that were read from the file, also if it then turned out not to be readable.
    std::size_t bytesRead = 0;
    /// Why the file was not read, in one line that names it: "config/a.xml: No such file or
    /// directory". Empty if it was read.
    std::string error;

    explicit operator bool() const { return ok; }
};

/// Reads the file, which may not have more bytes than the limit. The size is looked at before
/// memory is taken, and a file that grows while it is read stays within the limit too. The path is
/// taken as it stands, a relative one from the current folder; an empty one, or one with a NUL
/// byte, is an error. Throws std::bad_alloc.
FileReading readWholeFile(std::string_view path, std::size_t limit = largestFileRead);

/// A regular file that is open for reading at places of choice. Unsaved texts do not count.
class FileInPieces {
public:
    explicit FileInPieces(const std::string& path);
    FileInPieces(const FileInPieces&) = delete;
    FileInPieces& operator=(const FileInPieces&) = delete;
    ~FileInPieces();

    explicit operator bool() const { return number_ >= 0; }

    /// In bytes, when it was opened.
    std::size_t size() const { return size_; }

    /// Whether it has as many bytes from the place on, which are in `bytes` then.
    bool read(std::size_t place, std::span<char> bytes) const;

private:
    int number_;
    std::size_t size_ = 0;
};

/// "PATH: CAUSE" in one line, whatever characters the path holds. Throws std::bad_alloc.
std::string describeFailure(std::string_view path, std::string_view cause);

/// The same for an error number of the system.
std::string describeFailure(std::string_view path, int cause);

/// What all paths to the same file have in common, however spelled or linked: its device and its
/// number.
using FileIdentity = std::pair<dev_t, ino_t>;

/// Which file is at the path, a symbolic link counting as what it names; none if nothing is there.
std::optional<FileIdentity> identityOf(std::string_view path);

/// Whether something of any kind is at the path. A symbolic link counts as what it names, so a
/// dangling one is nothing; so is what cannot be reached. Throws std::bad_alloc.
bool fileExists(std::string_view path);

}  // namespace yg::files
