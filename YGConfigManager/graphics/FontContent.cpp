// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/FontContent.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <optional>
#include <span>
#include <vector>

#include "YGConfigManager/files/ReadFile.h"

namespace yg {

namespace {

/// A piece of the file.
struct Range {
    std::size_t begin;
    std::size_t end;
    bool operator==(const Range&) const = default;
};

constexpr std::size_t sizeOfNumber = 4;
constexpr std::size_t sizeOfHeader = 12;
constexpr std::size_t sizeOfEntry = 16;
/// Of files with more all is read.
constexpr std::size_t mostFaces = 64;
constexpr std::size_t mostTables = 64;

/// Reads the lists of tables of a font file.
class Tables {
public:
    explicit Tables(const files::FileInPieces& file) : file_(file) {}

    /// What need not be read, in the order of the file; nothing where that is not certain.
    std::vector<Range> unneeded() {
        if (!readAll())
            return {};
        const auto comesBefore = [](const Range& one, const Range& other) {
            return one.begin < other.begin;
        };
        std::sort(unneeded_.begin(), unneeded_.end(), comesBefore);
        // Faces of one file share tables.
        unneeded_.erase(std::unique(unneeded_.begin(), unneeded_.end()), unneeded_.end());
        for (std::size_t i = 0; i < unneeded_.size(); ++i) {
            const auto overlaps = [&one = unneeded_[i]](const Range& other) {
                return one.begin < other.end && other.begin < one.end;
            };
            if ((i > 0 && overlaps(unneeded_[i - 1])) ||
                std::any_of(needed_.begin(), needed_.end(), overlaps))
                return {};
        }
        return std::move(unneeded_);
    }

private:
    bool readAll() {
        const std::optional<std::string> begin = read(0, sizeOfHeader);
        if (!begin)
            return false;
        if (!begin->starts_with("ttcf"))
            return readFace(0);
        const std::size_t count = numberIn(*begin, 2 * sizeOfNumber, sizeOfNumber);
        const auto places =
            count <= mostFaces ? read(sizeOfHeader, count * sizeOfNumber) : std::nullopt;
        bool isRead = places.has_value();
        for (std::size_t i = 0; isRead && i < count; ++i)
            isRead = readFace(numberIn(*places, i * sizeOfNumber, sizeOfNumber));
        return isRead;
    }

    bool readFace(std::size_t place) {
        const std::optional<std::string> header = read(place, sizeOfHeader);
        if (!header)
            return false;
        const std::size_t count = numberIn(*header, sizeOfNumber, 2);
        const std::size_t size = count * sizeOfEntry;
        const std::optional<std::string> entries =
            count <= mostTables ? read(place + sizeOfHeader, size) : std::nullopt;
        if (!entries)
            return false;
        std::vector<Range> glyphs;
        bool hasOutlines = false;
        bool varies = false;
        for (std::size_t i = 0; i < size; i += sizeOfEntry) {
            const std::string_view name = std::string_view(*entries).substr(i, sizeOfNumber);
            const std::size_t begin = numberIn(*entries, i + 2 * sizeOfNumber, sizeOfNumber);
            const Range range{begin,
                              begin + numberIn(*entries, i + 3 * sizeOfNumber, sizeOfNumber)};
            hasOutlines = hasOutlines || name == "glyf";
            varies = varies || name == "fvar";
            (name == "glyf" || name == "post" ? glyphs : needed_).push_back(range);
        }
        // Widths in a variable face may be computed from its outlines. A face with outlines of
        // another kind cannot do without them: whether it has any decides how marks are placed.
        std::vector<Range>& kind = hasOutlines && !varies ? unneeded_ : needed_;
        kind.insert(kind.end(), glyphs.begin(), glyphs.end());
        return true;
    }

    /// Notes that it is needed too.
    std::optional<std::string> read(std::size_t place, std::size_t size) {
        std::string bytes(size, '\0');
        needed_.push_back({place, place + size});
        return file_.read(place, bytes) ? std::optional(std::move(bytes)) : std::nullopt;
    }

    static std::size_t numberIn(std::string_view bytes, std::size_t place, std::size_t size) {
        std::size_t number = 0;
        for (const char byte : bytes.substr(place, size))
            number = number << 8 | static_cast<unsigned char>(byte);
        return number;
    }

    const files::FileInPieces& file_;
    std::vector<Range> needed_;
    std::vector<Range> unneeded_;
};

}  // namespace

FontContent::FontContent(std::size_t size)
    // The system gives large memory as zeros that take none until they are written to.
    : memory_(static_cast<char*>(std::calloc(std::max(size, std::size_t{1}), 1))), size_(size) {
    if (!memory_)
        throw std::bad_alloc();
}

std::shared_ptr<const FontContent> FontContent::read(const std::string& path, std::size_t limit) {
    const files::FileInPieces file(path);
    if (!file || file.size() > limit)
        return nullptr;
    const std::shared_ptr<FontContent> content(new FontContent(file.size()));
    const std::span<char> memory(content->memory_.get(), file.size());
    std::size_t begin = 0;
    const auto readUpTo = [&](std::size_t end) {
        return begin >= end || file.read(begin, memory.subspan(begin, end - begin));
    };
    for (const Range& range : Tables(file).unneeded()) {
        if (!readUpTo(std::min(range.begin, file.size())))
            return nullptr;
        begin = std::min(range.end, file.size());
    }
    return readUpTo(file.size()) ? content : nullptr;
}

}  // namespace yg
