// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/PlainText.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>

namespace yg::xml {

namespace {

// Well within what libxml2 and the Judge take.
constexpr std::ptrdiff_t longestPiece = 1'000'000;  // a value, a comment, a text between two tags
constexpr std::size_t longestName = 1'000;
constexpr std::size_t mostNames = 500;  // that differ
constexpr std::size_t most = 200;       // attributes of an element, levels of elements

enum Kind { nameStart = 1, inName = 2, blank = 4, inText = 8, inValue = 16, inComment = 32 };

constexpr auto kinds = [] {
    std::array<std::uint8_t, 256> table{};
    for (unsigned c = 0; c < table.size(); ++c) {
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
        const bool isRest = (c >= '0' && c <= '9') || c == '-' || c == '.';
        const bool isBlank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
        const bool isMarkup = c == '<' || c == '&';
        int kind = (isLetter ? nameStart | inName : 0) | (isRest ? inName : 0);
        if ((c >= ' ' || isBlank) && c != 0xEF)  // which U+FFFE and U+FFFF begin with
            kind |= (isBlank ? blank : 0) | (isMarkup || c == ']' ? 0 : inText) |
                    (isMarkup || c == '"' || c == '\'' ? 0 : inValue) | (c == '-' ? 0 : inComment);
        table[c] = static_cast<std::uint8_t>(kind);
    }
    return table;
}();

bool is(Kind kind, char c) {
    return (kinds[static_cast<unsigned char>(c)] & kind) != 0;
}

/// The first character that is not of a kind; the NUL character behind a text is of none.
const char* behind(Kind kind, const char* at) {
    for (;; at += 4) {
        for (int i = 0; i < 4; ++i) {
            if (!is(kind, at[i]))
                return at + i;
        }
    }
}

struct Name {
    std::uint64_t first;  ///< eight bytes, or all of a shorter one
    std::uint64_t last;   ///< eight bytes; 0 of a shorter one
    const char* begin;
    std::size_t size;
    std::uint32_t tag;  ///< the last that has an attribute of the name

    std::string_view text() const { return {begin, size}; }
    bool operator==(const Name& other) const {
        return first == other.first && last == other.last && size == other.size &&
               (size <= 16 || text() == other.text());
    }
};

/// Goes through a text. What passes something is false where that is not there.
class Scan {
public:
    explicit Scan(const std::string& text) : at_(text.c_str()), end_(at_ + text.size()) {}

    bool run() {
        if (!passDeclaration() || !passBlanksAndComments() || !passStartTag())
            return false;
        while (depth_ > 0) {
            if (!passData(inText, '<') || !(pass("</")     ? passEndTag()
                                            : pass("<!--") ? passComment()
                                                           : passStartTag()))
                return false;
        }
        return passBlanksAndComments() && at_ == end_;
    }

private:
    bool pass(std::string_view what) {
        const bool isThere = static_cast<std::size_t>(end_ - at_) >= what.size() &&
                             std::memcmp(at_, what.data(), what.size()) == 0;
        at_ += isThere ? what.size() : 0;
        return isThere;
    }

    /// Accepts a missing declaration and one of the usual form. Any other is refused by what
    /// follows, since it does not begin like a start tag.
    bool passDeclaration() {
        if (!pass("<?xml version=\"1.0\""))
            return true;
        if (pass(" encoding=\"") && !pass("UTF-8\"") && !pass("utf-8\"") && !pass("GBK\"") &&
            !pass("gbk\"") && !pass("GB2312\"") && !pass("gb2312\"") && !pass("GB18030\""))
            return false;
        return pass("?>");
    }

    bool passBlanksAndComments() {
        for (at_ = behind(blank, at_); pass("<!--"); at_ = behind(blank, at_)) {
            if (!passComment())
                return false;
        }
        return true;
    }

    bool passComment() { return passData(inComment, '-') && pass("-->"); }

    /// Up to the character that ends it, which stands there twice if it ends a comment.
    bool passData(Kind kind, char end) {
        const char* const begin = at_;
        for (;;) {
            at_ = behind(kind, at_);
            if (*at_ == end && (kind != inComment || at_[1] == end))
                return at_ - begin <= longestPiece;
            if (*at_ == '\xEF' && !(at_[1] == '\xBF' && (at_[2] & 0x3E) == 0x3E))
                at_ += 3;
            else if (*at_ == '-' || *at_ == '"' || *at_ == '\'' ||
                     (*at_ == ']' && !(at_[1] == ']' && at_[2] == '>')))
                ++at_;
            else if (!pass("&lt;") && !pass("&gt;") && !pass("&amp;") && !pass("&quot;") &&
                     !pass("&apos;"))
                return false;
        }
    }

    bool passEndTag() {
        const bool isRight = pass(open_[--depth_]->text());
        at_ = behind(blank, at_);
        return isRight && pass(">");
    }

    bool passStartTag() {
        const Name* const name = pass("<") ? passName() : nullptr;
        if (!name)
            return false;
        ++tag_;
        for (std::size_t count = 0; is(blank, *at_); ++count) {
            at_ = behind(blank, at_);
            if (*at_ == '/' || *at_ == '>')
                break;
            Name* const attribute = passName();
            if (!attribute || std::exchange(attribute->tag, tag_) == tag_ || count == most ||
                !pass("="))
                return false;
            const char quote = *at_;
            if (!(pass("\"") || pass("'")) || !passData(inValue, quote))
                return false;
            ++at_;
        }
        if (pass("/>"))
            return true;
        if (depth_ == most)
            return false;
        open_[depth_++] = name;
        return pass(">");
    }

    /// Null for what is none, for those that XML itself has a use for, and for one too many.
    Name* passName() {
        const char* const begin = at_;
        if (!is(nameStart, *begin) || pass("xml"))
            return nullptr;
        at_ = behind(inName, begin + 1);
        const auto size = static_cast<std::size_t>(at_ - begin);
        return size <= longestName ? nameOf(begin, size) : nullptr;
    }

    /// Always the same object for the same name. It is found by its first and its last bytes.
    Name* nameOf(const char* begin, std::size_t size) {
        std::uint64_t first = 0;
        std::uint64_t last = 0;
        end_ - begin < 8 ? std::memcpy(&first, begin, size) : std::memcpy(&first, begin, 8);
        if (size >= 8)
            std::memcpy(&last, begin + size - 8, 8);
        else  // without what is behind the name
            first = std::endian::native == std::endian::little ? first << (64 - 8 * size)
                                                               : first >> (64 - 8 * size);
        const Name name{first, last, begin, size, 0};
        const std::size_t at = ((first ^ last * 31) * 0x9E3779B97F4A7C15) >> 54;
        for (std::size_t i = at; i < at + 8; ++i) {
            std::uint16_t& slot = slots_[i % slots_.size()];
            if (slot == 0) {
                if (nameCount_ == mostNames)
                    return nullptr;
                names_[nameCount_] = name;
                slot = ++nameCount_;
            }
            if (names_[slot - 1] == name)
                return &names_[slot - 1];
        }
        return nullptr;
    }

    const char* at_;
    const char* end_;
    // Most files are small, so what is not used yet is left as it is.
    std::array<std::uint16_t, 1024> slots_{};  ///< numbers of names from 1 on; 0 for none
    std::array<Name, mostNames> names_;
    std::uint16_t nameCount_ = 0;
    std::array<const Name*, most> open_;  ///< the elements that have begun
    std::size_t depth_ = 0;
    std::uint32_t tag_ = 0;
};

}  // namespace

bool isPlainText(const std::string& text) {
    return text.size() <= 1'000'000'000 && Scan(text).run();
}

}  // namespace yg::xml
