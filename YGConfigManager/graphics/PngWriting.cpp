// SPDX-License-Identifier: MIT
//
// libpng leaves its functions by longjmp, so the function that calls it holds nothing with a
// destructor.
#include <cmath>
#include <csetjmp>
#include <new>

#include <png.h>

#include "YGConfigManager/graphics/ImageFormats.h"

namespace yg {

namespace {

constexpr double metresPerInch = 0.0254;

[[noreturn]] void fail(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

void append(png_structp png, png_bytep bytes, std::size_t count) {
    try {
        static_cast<std::string*>(png_get_io_ptr(png))
            ->append(reinterpret_cast<const char*>(bytes), count);
        return;
    } catch (const std::bad_alloc&) {
        // Passed to libpng outside of the handler, which a jump must not leave.
    }
    png_error(png, "out of memory");
}

void flush(png_structp) {}

/// Dots per metre as the file states them; 0 for what it cannot state or need not.
png_uint_32 dotsPerMetre(double density) {
    const double dots = std::round(density / metresPerInch);
    return dots >= 1 && dots < PNG_UINT_31_MAX ? static_cast<png_uint_32>(dots) : 0;
}

bool write(png_structp png, png_infop info, const PixelView& pixels, png_uint_32 horizontal,
           png_uint_32 vertical, std::string& file) {
    if (setjmp(png_jmpbuf(png)) != 0)
        return false;
    png_set_write_fn(png, &file, append, flush);
    // Cut and scaled images may have longer sides than libpng expects.
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_IHDR(png, info, static_cast<png_uint_32>(pixels.width),
                 static_cast<png_uint_32>(pixels.height), 8, PNG_COLOR_TYPE_RGB_ALPHA,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    const png_uint_32 usual = dotsPerMetre(72);
    if (horizontal != 0 && vertical != 0 && (horizontal != usual || vertical != usual))
        png_set_pHYs(png, info, horizontal, vertical, PNG_RESOLUTION_METER);
    png_write_info(png, info);
    for (std::size_t y = 0; y < pixels.height; ++y)
        png_write_row(png, pixels.row(y));
    png_write_end(png, nullptr);
    return true;
}

}  // namespace

std::optional<std::string> encodePng(const PixelView& pixels, double horizontalDensity,
                                     double verticalDensity) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignoreWarning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    std::string file;
    const bool isWritten = info && write(png, info, pixels, dotsPerMetre(horizontalDensity),
                                         dotsPerMetre(verticalDensity), file);
    png_destroy_write_struct(&png, &info);
    return isWritten ? std::optional(std::move(file)) : std::nullopt;
}

}  // namespace yg
