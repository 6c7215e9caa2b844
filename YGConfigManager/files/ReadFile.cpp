// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/ReadFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "YGConfigManager/files/UnsavedTexts.h"

namespace yg::files {

namespace {

class OpenFile {
public:
    explicit OpenFile(int number) : number_(number) {}
    ~OpenFile() {
        if (number_ >= 0)
            ::close(number_);
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int number() const { return number_; }

private:
    int number_;
};

FileReading failure(std::string_view path, std::string_view cause, std::size_t bytesRead = 0) {
    FileReading reading;
    reading.bytesRead = bytesRead;
    reading.error = describeFailure(path, cause);
    return reading;
}

FileReading failure(std::string_view path, int cause, std::size_t bytesRead = 0) {
    return failure(path, std::generic_category().message(cause), bytesRead);
}

std::string tooLarge(std::size_t limit) {
    return "larger than " + std::to_string(limit) + " bytes";
}

int openForReading(const char* path) {
    int file = -1;
    do {
        // Without blocking, because opening a pipe waits for its other end otherwise.
        file = ::open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    } while (file < 0 && errno == EINTR);
    return file;
}

FileReading readFrom(int file, std::size_t sizeSeen, std::string_view path, std::size_t limit) {
    FileReading reading;
    std::string& bytes = reading.bytes;
    std::size_t used = 0;
    // With one byte more than expected, a single further read detects the end of the file.
    bytes.resize(sizeSeen + 1);
    while (true) {
        const ssize_t count = ::read(file, bytes.data() + used, bytes.size() - used);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return failure(path, errno, used);
        if (count == 0)
            break;
        used += static_cast<std::size_t>(count);
        if (used > limit)
            return failure(path, tooLarge(limit), used);
        if (used == bytes.size()) {
            constexpr std::size_t smallestStep = 4096;
            bytes.resize(std::min(limit, used + std::max(used, smallestStep)) + 1);
        }
    }
    bytes.resize(used);
    reading.bytesRead = used;
    reading.ok = true;
    return reading;
}

}  // namespace

std::string describeFailure(std::string_view path, std::string_view cause) {
    std::string text(path);
    // A name may hold line breaks, but the description is one line.
    std::replace_if(
        text.begin(), text.end(),
        [](char character) {
            return static_cast<unsigned char>(character) < ' ' || character == '\x7F';
        },
        '?');
    text += ": ";
    text += cause;
    return text;
}

std::string describeFailure(std::string_view path, int cause) {
    return describeFailure(path, std::generic_category().message(cause));
}

FileReading readWholeFile(std::string_view path, std::size_t limit) {
    if (path.empty())
        return failure(path, "the path is empty");
    if (path.find('\0') != std::string_view::npos)
        return failure(path, "the path holds a NUL byte");
    if (const std::string* const unsaved = unsavedText(path)) {
        if (unsaved->size() > limit)
            return failure(path, tooLarge(limit));
        return {true, *unsaved, unsaved->size(), {}};
    }
    const OpenFile file(openForReading(std::string(path).c_str()));
    struct stat state;
    if (file.number() < 0 || ::fstat(file.number(), &state) != 0)
        return failure(path, errno);
    if (S_ISDIR(state.st_mode))
        return failure(path, EISDIR);
    if (!S_ISREG(state.st_mode))
        return failure(path, "not a regular file");
    const auto size = static_cast<std::size_t>(state.st_size);
    if (size > limit)
        return failure(path, tooLarge(limit));
    return readFrom(file.number(), size, path, limit);
}

FileInPieces::FileInPieces(const std::string& path) : number_(openForReading(path.c_str())) {
    struct stat state;
    if (number_ >= 0 && ::fstat(number_, &state) == 0 && S_ISREG(state.st_mode)) {
        size_ = static_cast<std::size_t>(state.st_size);
    } else if (number_ >= 0) {
        ::close(number_);
        number_ = -1;
    }
}

FileInPieces::~FileInPieces() {
    if (number_ >= 0)
        ::close(number_);
}

bool FileInPieces::read(std::size_t place, std::span<char> bytes) const {
    while (!bytes.empty()) {
        const ssize_t count =
            ::pread(number_, bytes.data(), bytes.size(), static_cast<off_t>(place));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        place += static_cast<std::size_t>(count);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

std::optional<FileIdentity> identityOf(std::string_view path) {
    struct stat state;
    if (path.empty() || path.find('\0') != std::string_view::npos ||
        ::stat(std::string(path).c_str(), &state) != 0)
        return std::nullopt;
    return FileIdentity{state.st_dev, state.st_ino};
}

bool fileExists(std::string_view path) {
    return unsavedText(path) || identityOf(path).has_value();
}

}  // namespace yg::files
