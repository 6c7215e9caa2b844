// SPDX-License-Identifier: MIT
//
// libpng leaves its functions by longjmp. The functions that call it therefore hold nothing with a
// destructor; that is all in their callers.
#include <csetjmp>
#include <cstring>
#include <vector>

#include <png.h>

#include "YGConfigManager/graphics/ImageFormats.h"

namespace yg {

namespace {

/// No side is longer, and no chunk takes more memory.
constexpr png_uint_32 longestSide = 32768;
constexpr png_alloc_size_t largestChunk = png_alloc_size_t{8} << 20;

/// Compressed data never grow to more than this many times their size when they are inflated.
constexpr std::size_t mostInflation = 1032;

constexpr double metresPerInch = 0.0254;

struct Source {
    const char* bytes;
    std::size_t size;
};

void readFromSource(png_structp png, png_bytep target, std::size_t count) {
    auto* const source = static_cast<Source*>(png_get_io_ptr(png));
    if (count > source->size) {
        png_error(png, "cut short");
    }
    std::memcpy(target, source->bytes, count);
    source->bytes += count;
    source->size -= count;
}

[[noreturn]] void fail(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

class PngReader {
public:
    explicit PngReader(std::string_view bytes)
        : source_{bytes.data(), bytes.size()}, fileSize_(bytes.size()) {
        png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignoreWarning);
        if (png_ != nullptr) {
            info_ = png_create_info_struct(png_);
        }
    }
    ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    /// Reads up to the pixels; false when there is nothing to be read or too much.
    bool readHeader() {
        if (info_ == nullptr || setjmp(png_jmpbuf(png_)) != 0) {
            return false;
        }
        png_set_read_fn(png_, &source_, readFromSource);
        png_set_user_limits(png_, longestSide, longestSide);
        png_set_chunk_malloc_max(png_, largestChunk);
        // Texts and profiles are no part of the picture and may be inflated to any size.
        static const png_byte skipped[] = "zTXt\0iTXt\0tEXt\0iCCP\0eXIf\0sPLT";
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, skipped, sizeof skipped / 5);
        png_read_info(png_, info_);

        width = png_get_image_width(png_, info_);
        height = png_get_image_height(png_, info_);
        if (!PixelBuffer::isAllowed(width, height) ||
            png_get_rowbytes(png_, info_) > fileSize_ * mostInflation / height) {
            return false;
        }
        png_uint_32 horizontal = 0;
        png_uint_32 vertical = 0;
        int unit = PNG_RESOLUTION_UNKNOWN;
        if (png_get_pHYs(png_, info_, &horizontal, &vertical, &unit) != 0 &&
            unit == PNG_RESOLUTION_METER) {
            horizontalDensity = horizontal * metresPerInch;
            verticalDensity = vertical * metresPerInch;
        }

        png_set_expand(png_);
        png_set_scale_16(png_);
        png_set_gray_to_rgb(png_);
        png_set_add_alpha(png_, 0xFF, PNG_FILLER_AFTER);
        png_set_interlace_handling(png_);
        png_read_update_info(png_, info_);
        return png_get_rowbytes(png_, info_) == PixelBuffer::bytesPerPixel * width;
    }

    /// Reads the pixels and the file to its end; false when something is damaged or missing.
    bool readRows(png_bytepp rows) {
        if (setjmp(png_jmpbuf(png_)) != 0) {
            return false;
        }
        png_read_image(png_, rows);
        png_read_end(png_, nullptr);
        return true;
    }

    std::size_t width = 0;
    std::size_t height = 0;
    double horizontalDensity = 0;
    double verticalDensity = 0;

private:
    Source source_;
    std::size_t fileSize_;
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
};

}  // namespace

std::optional<DecodedImage> decodePng(std::string_view bytes) {
    PngReader reader(bytes);
    if (!reader.readHeader()) {
        return std::nullopt;
    }
    const std::shared_ptr<PixelBuffer> pixels = PixelBuffer::make(reader.width, reader.height);
    if (pixels == nullptr) {
        return std::nullopt;
    }
    std::vector<png_bytep> rows(reader.height);
    for (std::size_t y = 0; y < rows.size(); ++y) {
        rows[y] = pixels->row(y);
    }
    if (!reader.readRows(rows.data())) {
        return std::nullopt;
    }
    return DecodedImage{pixels, reader.horizontalDensity, reader.verticalDensity};
}

}  // namespace yg
