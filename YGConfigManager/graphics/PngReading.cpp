// SPDX-License-Identifier: MIT
//
// libpng leaves its functions by longjmp. The functions that call it therefore hold nothing with a
// destructor; that is all in their callers.
#include <algorithm>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <zlib.h>

#include <png.h>

#include "YGConfigManager/graphics/ImageFormats.h"

namespace yg {

namespace {

/// No side is longer, and no chunk takes more memory.
constexpr png_uint_32 longestSide = 32768;
constexpr png_alloc_size_t largestChunk = png_alloc_size_t{8} << 20;

/// Compressed data never grow to more than this many times their size when they are inflated.
constexpr std::size_t maxInflation = 1032;

constexpr double metresPerInch = 0.0254;

constexpr std::size_t signatureSize = 8;
/// The length and the name of a chunk, four bytes each, and the sum behind its data.
constexpr std::size_t beforeData = 8;
constexpr std::size_t sumSize = 4;

[[noreturn]] void fail(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

/// Whether a chunk is there as a whole, with the sum that belongs to its name and its data.
bool isIntact(std::string_view chunk, std::size_t size) {
    if (chunk.size() < size)
        return false;
    const auto* const begin = reinterpret_cast<png_const_bytep>(chunk.data());
    const std::size_t covered = size - beforeData / 2 - sumSize;
    return crc32(0, begin + beforeData / 2, static_cast<uInt>(covered)) ==
           png_get_uint_32(begin + size - sumSize);
}

/// Whether the names of all chunks are letters, those with pixels follow each other, and the last
/// one is intact: the things that libpng does not look at, some versions of it or when it is given
/// a file piece by piece.
bool hasChunksInOrder(std::string_view bytes) {
    bool isBeforePixels = true;
    std::string_view last;
    for (std::string_view rest = bytes.substr(signatureSize); rest.size() >= beforeData;) {
        const auto* const length = reinterpret_cast<png_const_bytep>(rest.data());
        const std::size_t size = beforeData + png_get_uint_32(length) + sumSize;
        const std::string_view name = rest.substr(beforeData / 2, beforeData / 2);
        const bool isNamed = std::all_of(name.begin(), name.end(), [](char character) {
            return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
        });
        if (!isNamed || (name == "IDAT" && !isBeforePixels && last != name))
            return false;
        if (name == "IEND")
            return isIntact(rest, size);
        isBeforePixels = isBeforePixels && name != "IDAT";
        last = name;
        rest.remove_prefix(std::min(size, rest.size()));
    }
    return true;
}

/// Takes the file from memory as it would come from a network: so libpng stops inflating behind the
/// last row, where its other way of reading unpacks all that follows.
class PngReader {
public:
    explicit PngReader(std::string_view bytes) : bytes_(bytes) {
        png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignoreWarning);
        if (png_)
            info_ = png_create_info_struct(png_);
    }
    ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }
    PngReader(const PngReader&) = delete;
    PngReader& operator=(const PngReader&) = delete;

    /// Reads up to the pixels; false when there is nothing to be read or too much.
    bool readHeader() {
        if (!info_ || setjmp(png_jmpbuf(png_)) != 0)
            return false;
        png_set_progressive_read_fn(
            png_, this, [](png_structp png, png_infop) { readerOf(png).startPixels(); },
            [](png_structp png, png_bytep pixels, png_uint_32 row, int) {
                readerOf(png).addToRow(row, pixels);
            },
            [](png_structp png, png_infop) { readerOf(png).isEnded_ = true; });
        png_set_user_limits(png_, longestSide, longestSide);
        png_set_chunk_malloc_max(png_, largestChunk);
        // Texts and profiles are not part of the picture and may be inflated to any size.
        static const png_byte skipped[] = "zTXt\0iTXt\0tEXt\0iCCP\0eXIf\0sPLT";
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, skipped, sizeof skipped / 5);
        process();
        return pixelsLeft_ > 0;
    }

    /// Reads the pixels and the file to its end; false when something is damaged or missing.
    bool readRows(PixelBuffer& pixels) {
        if (setjmp(png_jmpbuf(png_)) != 0)
            return false;
        pixels_ = &pixels;
        bytes_.remove_prefix(bytes_.size() - pixelsLeft_);
        process();
        const bool isInterlaced = png_get_interlace_type(png_, info_) != PNG_INTERLACE_NONE;
        const bool hasAllRows = isInterlaced ? png_get_current_pass_number(png_) == interlacePasses
                                             : png_get_current_row_number(png_) == height;
        return hasAllRows && isEnded_;
    }

    std::size_t width = 0;
    std::size_t height = 0;
    double horizontalDensity = 0;
    double verticalDensity = 0;

private:
    static constexpr int interlacePasses = 7;

    static PngReader& readerOf(png_structp png) {
        return *static_cast<PngReader*>(png_get_progressive_ptr(png));
    }

    void process() {
        // libpng does not write to what it reads.
        auto* const bytes = reinterpret_cast<png_bytep>(const_cast<char*>(bytes_.data()));
        png_process_data(png_, info_, bytes, bytes_.size());
    }

    /// At the first pixels: checks their number, asks for the pixels as they are wanted and stops
    /// reading.
    void startPixels() {
        width = png_get_image_width(png_, info_);
        height = png_get_image_height(png_, info_);
        if (!PixelBuffer::isAllowed(width, height) ||
            png_get_rowbytes(png_, info_) > bytes_.size() * maxInflation / height)
            png_error(png_, "too large");
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
        if (png_get_rowbytes(png_, info_) != PixelBuffer::bytesPerPixel * width)
            png_error(png_, "unexpected pixels");
        pixelsLeft_ = png_process_data_pause(png_, 0);
    }

    void addToRow(png_uint_32 row, png_bytep pixels) {
        // A pass of an interlaced file has nothing for some rows.
        if (pixels)
            png_progressive_combine_row(png_, pixels_->row(row), pixels);
    }

    std::string_view bytes_;
    std::size_t pixelsLeft_ = 0;  ///< bytes from the first pixels to the file's end
    PixelBuffer* pixels_ = nullptr;
    bool isEnded_ = false;
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
};

}  // namespace

std::optional<DecodedImage> decodePng(std::string_view bytes, std::size_t& pixelCount) {
    pixelCount = 0;
    PngReader reader(bytes);
    if (!hasChunksInOrder(bytes) || !reader.readHeader())
        return std::nullopt;
    pixelCount = reader.width * reader.height;
    const std::shared_ptr<PixelBuffer> pixels = PixelBuffer::make(reader.width, reader.height);
    if (!pixels || !reader.readRows(*pixels))
        return std::nullopt;
    return DecodedImage{pixels, reader.horizontalDensity, reader.verticalDensity};
}

}  // namespace yg
