// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/Scaling.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <span>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace yg {

namespace {

/// The two weights of a direction add up to this. Times a byte it still is a signed 16-bit number.
constexpr std::uint32_t whole = 128;
constexpr float wholeOfBoth = whole * whole;

/// Where a row or column of the target comes from: two pixels side by side, given by where they
/// begin.
struct Tap {
    std::uint32_t near;
    std::uint32_t far;
    std::uint32_t farWeight;
};

/// The taps of one direction, computed where they are needed: a table of them all would take three
/// times the memory of a row.
class Taps {
public:
    /// `stride` is what lies between one pixel and the next.
    Taps(std::size_t sourceSize, std::size_t targetSize, std::size_t stride)
        : step_(static_cast<double>(sourceSize) / static_cast<double>(targetSize)),
          last_(sourceSize - 1),
          stride_(stride) {}

    Tap at(std::size_t i) const {
        const double position = std::clamp((static_cast<double>(i) + 0.5) * step_ - 0.5, 0.0,
                                           static_cast<double>(last_));
        const auto near = static_cast<std::size_t>(position);
        return {static_cast<std::uint32_t>(near * stride_),
                static_cast<std::uint32_t>(std::min(near + 1, last_) * stride_),
                static_cast<std::uint32_t>(
                    std::lround((position - static_cast<double>(near)) * whole))};
    }

private:
    double step_;
    std::size_t last_;
    std::size_t stride_;
};

/// The two rows that a row of the target comes from.
struct Rows {
    const std::uint8_t* upper;
    const std::uint8_t* lower;
    std::uint32_t low;
};

/// The mean of pixels that are all transparent, or weigh nothing.
void blendTransparent(const Rows& rows, const Tap& tap, std::uint8_t* target) {
    const std::uint32_t left = whole - tap.farWeight;
    const std::uint32_t right = tap.farWeight;
    const std::uint32_t high = whole - rows.low;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::uint32_t upper =
            left * rows.upper[tap.near + i] + right * rows.upper[tap.far + i];
        const std::uint32_t lower =
            left * rows.lower[tap.near + i] + right * rows.lower[tap.far + i];
        target[i] = static_cast<std::uint8_t>(
            (high * upper + rows.low * lower + whole * whole / 2) / (whole * whole));
    }
    target[3] = 0;
}

// The same blend twice: four channels at once where the processor can, one by one elsewhere. Both
// do the same operations in the same order and so give the same bytes. Sums of weights and alpha
// are exact; with colours they may have 30 bits, of which single precision keeps 24.

#if defined(__SSE2__)

__m128i load(const std::uint8_t* pixel) {
    int bytes;
    std::memcpy(&bytes, pixel, sizeof bytes);
    return _mm_cvtsi32_si128(bytes);
}

/// The mean of two pixels one above the other, given as pairs of channels: its colours times its
/// alpha, its alpha.
__m128 blendDown(__m128i pairs, __m128i weights) {
    const __m128i colours = _mm_set_epi32(0, -1, -1, -1);
    const __m128i ones = _mm_set_epi32(0x10001, 0, 0, 0);
    const __m128i alphas = _mm_shuffle_epi32(pairs, _MM_SHUFFLE(3, 3, 3, 3));
    const __m128i values = _mm_or_si128(_mm_and_si128(pairs, colours), ones);
    return _mm_cvtepi32_ps(_mm_madd_epi16(values, _mm_mullo_epi16(alphas, weights)));
}

void blendRow(const Rows& rows, std::span<const Tap> columns, std::uint8_t* target) {
    const __m128i down = _mm_set1_epi32(static_cast<int>(rows.low << 16 | (whole - rows.low)));
    const __m128i colours = _mm_set_epi32(0, -1, -1, -1);
    const __m128 alphaDivisor = _mm_set_ps(wholeOfBoth, 0, 0, 0);
    for (const Tap& tap : columns) {
        const __m128i pairs = _mm_unpacklo_epi8(
            _mm_unpacklo_epi32(load(rows.upper + tap.near), load(rows.upper + tap.far)),
            _mm_unpacklo_epi32(load(rows.lower + tap.near), load(rows.lower + tap.far)));
        const __m128 left = blendDown(_mm_unpacklo_epi8(pairs, _mm_setzero_si128()), down);
        const __m128 right = blendDown(_mm_unpackhi_epi8(pairs, _mm_setzero_si128()), down);
        const __m128 sums =
            _mm_add_ps(_mm_mul_ps(left, _mm_set1_ps(static_cast<float>(whole - tap.farWeight))),
                       _mm_mul_ps(right, _mm_set1_ps(static_cast<float>(tap.farWeight))));
        const __m128 alpha = _mm_shuffle_ps(sums, sums, _MM_SHUFFLE(3, 3, 3, 3));
        if (_mm_cvtss_f32(alpha) == 0) {
            blendTransparent(rows, tap, target);
        } else {
            const __m128 divisors =
                _mm_or_ps(_mm_and_ps(alpha, _mm_castsi128_ps(colours)), alphaDivisor);
            const __m128i rounded =
                _mm_cvttps_epi32(_mm_add_ps(_mm_div_ps(sums, divisors), _mm_set1_ps(0.5F)));
            const __m128i words = _mm_packs_epi32(rounded, rounded);
            const int bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
            std::memcpy(target, &bytes, sizeof bytes);
        }
        target += PixelBuffer::bytesPerPixel;
    }
}

#else

void blendRow(const Rows& rows, std::span<const Tap> columns, std::uint8_t* target) {
    const std::uint32_t high = whole - rows.low;
    for (const Tap& tap : columns) {
        const auto down = [&](std::uint32_t at, std::uint32_t channel) {
            const std::uint32_t upper = high * rows.upper[at + 3];
            const std::uint32_t lower = rows.low * rows.lower[at + 3];
            return static_cast<float>(channel == 3 ? upper + lower
                                                   : upper * rows.upper[at + channel] +
                                                         lower * rows.lower[at + channel]);
        };
        const auto sum = [&](std::uint32_t channel) {
            const float left = down(tap.near, channel) * static_cast<float>(whole - tap.farWeight);
            const float right = down(tap.far, channel) * static_cast<float>(tap.farWeight);
            return left + right;
        };
        const float alpha = sum(3);
        if (alpha == 0) {
            blendTransparent(rows, tap, target);
        } else {
            for (std::uint32_t i = 0; i < 3; ++i)
                target[i] = static_cast<std::uint8_t>(sum(i) / alpha + 0.5F);
            target[3] = static_cast<std::uint8_t>(alpha / wholeOfBoth + 0.5F);
        }
        target += PixelBuffer::bytesPerPixel;
    }
}

#endif

}  // namespace

void scaleBilinear(const PixelView& source, PixelBuffer& target) {
    const Taps columns(source.width, target.width(), PixelBuffer::bytesPerPixel);
    const Taps rows(source.height, target.height(), 1);
    std::array<Tap, 2048> block;
    for (std::size_t left = 0; left < target.width(); left += block.size()) {
        const std::size_t count = std::min(block.size(), target.width() - left);
        for (std::size_t i = 0; i < count; ++i)
            block[i] = columns.at(left + i);
        for (std::size_t y = 0; y < target.height(); ++y) {
            const Tap row = rows.at(y);
            blendRow({source.row(row.near), source.row(row.far), row.farWeight},
                     std::span(block).first(count),
                     target.row(y) + left * PixelBuffer::bytesPerPixel);
        }
    }
}

}  // namespace yg
