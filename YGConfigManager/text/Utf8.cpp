// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/Utf8.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace yg::text {

namespace {

unsigned byteAt(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

bool isContinuation(unsigned byte) {
    return (byte & 0xC0) == 0x80;
}

/// The size of the sequence that a lead byte begins, and the range of the byte after it, which is
/// where overlong forms, surrogates and too large code points show. Size 0 is not a lead byte.
struct Lead {
    std::size_t size;
    unsigned lowest = 0x80;
    unsigned highest = 0xBF;
};

Lead leadOf(unsigned byte) {
    if (byte >= 0xC2 && byte <= 0xDF)
        return {2};
    if (byte >= 0xE0 && byte <= 0xEF)
        return {3, byte == 0xE0 ? 0xA0U : 0x80U, byte == 0xED ? 0x9FU : 0xBFU};
    if (byte >= 0xF0 && byte <= 0xF4)
        return {4, byte == 0xF0 ? 0x90U : 0x80U, byte == 0xF4 ? 0x8FU : 0xBFU};
    return {0};
}

/// The size of the valid sequence of several bytes that the text begins with, 0 if there is none.
std::size_t sequenceSize(std::string_view text) {
    // Most characters have three bytes, and nearly all leads of such take whatever follows.
    const unsigned first = byteAt(text, 0);
    if (first > 0xE0 && first < 0xED && text.size() >= 3)
        return isContinuation(byteAt(text, 1)) && isContinuation(byteAt(text, 2)) ? 3 : 0;
    const Lead lead = leadOf(first);
    if (lead.size == 0 || text.size() < lead.size || byteAt(text, 1) < lead.lowest ||
        byteAt(text, 1) > lead.highest)
        return 0;
    for (std::size_t at = 2; at < lead.size; ++at) {
        if (!isContinuation(byteAt(text, at)))
            return 0;
    }
    return lead.size;
}

constexpr std::uint64_t highestBits = 0x8080808080808080U;

std::uint64_t highestBitsAt(std::string_view text, std::size_t at) {
    std::uint64_t word;
    std::memcpy(&word, text.data() + at, sizeof word);
    return word & highestBits;
}

/// The first byte of eight that is not zero, from 0.
std::size_t firstByte(std::uint64_t word) {
    const bool isLittle = std::endian::native == std::endian::little;
    return static_cast<std::size_t>(isLittle ? std::countr_zero(word) : std::countl_zero(word)) / 8;
}

/// The first byte from `at` on that is not ASCII; the size of the text if there is none.
std::size_t behindAscii(std::string_view text, std::size_t at) {
    for (; text.size() - at >= 16; at += 16) {
        if (const std::uint64_t word = highestBitsAt(text, at))
            return at + firstByte(word);
        if (const std::uint64_t word = highestBitsAt(text, at + 8))
            return at + 8 + firstByte(word);
    }
    while (at < text.size() && byteAt(text, at) < 0x80)
        ++at;
    return at;
}

}  // namespace

std::size_t validUtf8Prefix(std::string_view text) {
    std::size_t at = behindAscii(text, 0);
    while (at < text.size()) {
        const std::size_t size = sequenceSize(text.substr(at));
        if (size == 0)
            break;
        at += size;
        if (at < text.size() && byteAt(text, at) < 0x80)
            at = behindAscii(text, at);
    }
    return at;
}

bool isValidUtf8(std::string_view text) {
    return validUtf8Prefix(text) == text.size();
}

Character detail::firstOfSeveralBytes(std::string_view text) {
    constexpr char32_t replacement = 0xFFFD;
    const unsigned lead = byteAt(text, 0);
    const std::size_t size = sequenceSize(text);
    if (size == 0)
        return {replacement, 1, false};
    // The lead byte's marker has one bit more than the sequence has bytes.
    char32_t value = lead & (0x7FU >> size);
    for (std::size_t at = 1; at < size; ++at)
        value = value << 6 | (byteAt(text, at) & 0x3FU);
    return {value, size, true};
}

std::size_t countCodePoints(std::string_view text) {
    std::size_t count = 0;
    for (; text.size() >= sizeof(std::uint64_t); text.remove_prefix(sizeof(std::uint64_t))) {
        std::uint64_t word;
        std::memcpy(&word, text.data(), sizeof word);
        // Of eight bytes those whose two highest bits are 10; the product adds them up.
        const std::uint64_t continuations = (word & ~word << 1 & highestBits) >> 7;
        count += sizeof word - (continuations * 0x0101010101010101U >> 56);
    }
    for (const char byte : text)
        count += isContinuation(static_cast<unsigned char>(byte)) ? 0 : 1;
    return count;
}

}  // namespace yg::text
