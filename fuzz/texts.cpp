// SPDX-License-Identifier: MIT
//
// The small text operations against slow and simple ones.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/text/Numbers.h"
#include "YGConfigManager/text/Paths.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/text/Split.h"
#include "YGConfigManager/text/Utf8.h"

#include "Target.h"

namespace {

using yg::fuzz::require;
using yg::fuzz::takeUntil;
using yg::fuzz::textOf;

bool isDigit(std::string_view text, std::size_t at) {
    return at < text.size() && text[at] >= '0' && text[at] <= '9';
}

/// Digit by digit, and no further once the bound is reached.
template <class Integer>
Integer slowInteger(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && std::string_view(" \t\n\v\f\r").find(text[at]) != std::string::npos)
        ++at;
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        ++at;
    using Limits = std::numeric_limits<Integer>;
    Integer value = 0;
    for (; isDigit(text, at); ++at) {
        const auto digit = static_cast<Integer>(text[at] - '0');
        if (negative) {
            if (value < (Limits::min() + digit) / 10)
                return Limits::min();
            value = static_cast<Integer>(value * 10 - digit);
        } else {
            if (value > (Limits::max() - digit) / 10)
                return Limits::max();
            value = static_cast<Integer>(value * 10 + digit);
        }
    }
    return value;
}

/// Cuts the number out by hand and leaves the rest to the C library, in the C locale.
double slowDouble(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && std::string_view(" \t\n\v\f\r").find(text[at]) != std::string::npos)
        ++at;
    std::string number;
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        number += text[at++];
    std::size_t digits = 0;
    const auto take = [&] {
        for (; isDigit(text, at); ++digits)
            number += text[at++];
    };
    take();
    if (at < text.size() && text[at] == '.') {
        number += text[at++];
        take();
    }
    if (digits == 0)
        return 0;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        std::string exponent(1, text[at++]);
        if (at < text.size() && (text[at] == '-' || text[at] == '+'))
            exponent += text[at++];
        if (isDigit(text, at)) {
            number += exponent;
            take();
        }
    }
    return std::strtod(number.c_str(), nullptr);
}

/// Decodes code point by code point.
std::size_t slowValidPrefix(std::string_view text, std::size_t& codePoints) {
    std::size_t at = 0;
    while (at < text.size()) {
        const auto byte = [&](std::size_t i) {
            return at + i < text.size() ? static_cast<unsigned char>(text[at + i]) : 0U;
        };
        const unsigned lead = byte(0);
        const std::size_t size = lead < 0x80             ? 1
                                 : (lead & 0xE0) == 0xC0 ? 2
                                 : (lead & 0xF0) == 0xE0 ? 3
                                 : (lead & 0xF8) == 0xF0 ? 4
                                                         : 0;
        if (size == 0)
            return at;
        std::uint32_t c = size == 1 ? lead : lead & (0x7FU >> size);
        for (std::size_t i = 1; i < size; ++i) {
            if ((byte(i) & 0xC0) != 0x80)
                return at;
            c = (c << 6) | (byte(i) & 0x3FU);
        }
        constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (c < smallest[size] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF))
            return at;
        at += size;
        ++codePoints;
    }
    return at;
}

std::string joinedBy(const std::vector<std::string>& pieces, std::string_view separator) {
    std::string all = pieces.front();
    for (std::size_t i = 1; i < pieces.size(); ++i)
        all.append(separator).append(pieces[i]);
    return all;
}

void checkNumbers(std::string_view text) {
    require(yg::text::leadingInt32(text) == slowInteger<std::int32_t>(text), "32-bit integers");
    require(yg::text::leadingInt64(text) == slowInteger<std::int64_t>(text), "64-bit integers");
    const double number = yg::text::readLeadingDouble(text).value;
    const double slow = slowDouble(text);
    // What is too small to be exact is 0 here, and may be a denormal there.
    require(number == slow || (number == 0 && std::abs(slow) < std::numeric_limits<double>::min()),
            "decimal numbers");
    require(yg::text::leadingFloat(text) == static_cast<float>(number), "narrowed numbers");
}

void checkUtf8(std::string_view text) {
    std::size_t codePoints = 0;
    const std::size_t prefix = slowValidPrefix(text, codePoints);
    require(yg::text::validUtf8Prefix(text) == prefix, "the valid part of a text");
    require(yg::text::isValidUtf8(text) == (prefix == text.size()), "whether a text is valid");
    require(yg::text::countCodePoints(text.substr(0, prefix)) == codePoints, "code points");
}

void checkSplit(std::string_view text, std::string_view separator) {
    if (separator.empty())
        return;
    const std::vector<std::string> pieces = yg::text::split(text, separator[0]);
    require(!pieces.empty(), "there is always a piece");
    require(joinedBy(pieces, separator.substr(0, 1)) == text, "pieces join to the text");
    for (const std::string& piece : pieces)
        require(piece.find(separator[0]) == std::string::npos, "no separator in a piece");
}

void checkReplace(std::string_view text, std::string_view target, std::string_view replacement) {
    std::string slow;
    for (std::size_t at = 0; at < text.size();) {
        if (!target.empty() && text.substr(at, target.size()) == target) {
            slow += replacement;
            at += target.size();
        } else {
            slow += text[at++];
        }
    }
    require(yg::text::replaceAll(text, target, replacement) == slow, "replacing");
}

void checkPaths(std::string_view folder, std::string_view path) {
    std::string slow(folder);
    while (slow.size() > 1 && slow.back() == '/')
        slow.pop_back();
    const std::size_t slash = slow.rfind('/');
    const std::optional<std::string> last = yg::text::lastPathComponent(folder);
    require(last == (slow == "/" || slash == std::string::npos ? slow : slow.substr(slash + 1)),
            "the last component");
    require(!yg::text::lastPathComponent(std::nullopt), "of no path there is none");

    const std::string joined = yg::text::joinPath(folder, path);
    require(joined.size() <= folder.size() + path.size() + 1, "joining adds one slash at the most");
    if (folder.empty() || path.empty())
        require(joined == std::string(folder) + std::string(path), "an empty one adds nothing");
    require(!yg::text::isPlainFileName(path) || path.find('/') == std::string_view::npos,
            "a plain name stays in its folder");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest = textOf(data, size);
    checkNumbers(rest);
    checkUtf8(rest);
    const std::string_view first = takeUntil(rest, "\n");
    const std::string_view second = takeUntil(rest, "\n");
    checkNumbers(first);
    checkReplace(rest, first, second);
    checkSplit(rest, first);
    checkPaths(first, second);
    return 0;
}
