// SPDX-License-Identifier: MIT
//
// libjpeg's errors leave by longjmp. The functions that call it therefore hold nothing with a
// destructor; that is all in their callers.
#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <jerror.h>
#include <vector>

#include <jpeglib.h>

#include "YGConfigManager/graphics/ImageFormats.h"

namespace yg {

namespace {

/// Each scan of a progressive file goes over the whole picture, however few bytes it has. A picture
/// of the most pixels may have 16.
constexpr std::size_t maxScans = 64;
constexpr std::size_t maxScannedPixels = std::size_t{1} << 30;

/// What libjpeg may take for a progressive file's coefficients.
constexpr long maxMemory = 512L << 20;

constexpr double centimetresPerInch = 2.54;

/// libjpeg's own record comes first, so that its pointer is also ours.
struct ErrorHandler {
    jpeg_error_mgr base;
    std::jmp_buf jump;
};

[[noreturn]] void fail(j_common_ptr jpeg) {
    std::longjmp(reinterpret_cast<ErrorHandler*>(jpeg->err)->jump, 1);
}

/// libjpeg goes on after damage with grey where the picture should be; we do not.
void onMessage(j_common_ptr jpeg, int level) {
    if (level >= 0)
        return;
    switch (jpeg->err->msg_code) {
        case JWRN_HIT_MARKER:
        case JWRN_HUFF_BAD_CODE:
        case JWRN_JPEG_EOF:
        case JWRN_MUST_RESYNC:
            fail(jpeg);
        default:
            break;
    }
}

void printNothing(j_common_ptr) {}

void onProgress(j_common_ptr jpeg) {
    const auto* const reader = reinterpret_cast<j_decompress_ptr>(jpeg);
    const auto scans = static_cast<std::size_t>(reader->input_scan_number);
    const std::size_t pixels = std::size_t{reader->image_width} * reader->image_height;
    if (scans > maxScans || scans * pixels > maxScannedPixels)
        fail(jpeg);
}

class JpegReader {
public:
    explicit JpegReader(std::string_view bytes) : bytes_(bytes) {
        jpeg_.err = jpeg_std_error(&errors_.base);
        errors_.base.error_exit = fail;
        errors_.base.emit_message = onMessage;
        errors_.base.output_message = printNothing;
        progress_.progress_monitor = onProgress;
    }
    ~JpegReader() {
        if (isCreated_)
            jpeg_destroy_decompress(&jpeg_);
    }
    JpegReader(const JpegReader&) = delete;
    JpegReader& operator=(const JpegReader&) = delete;

    /// Reads up to the pixels; false when there is nothing to be read or too much.
    bool readHeader() {
        if (setjmp(errors_.jump) != 0)
            return false;
        jpeg_create_decompress(&jpeg_);
        isCreated_ = true;
        jpeg_.progress = &progress_;
        jpeg_.mem->max_memory_to_use = maxMemory;
        jpeg_mem_src(&jpeg_, reinterpret_cast<const unsigned char*>(bytes_.data()),
                     static_cast<unsigned long>(bytes_.size()));
        jpeg_read_header(&jpeg_, TRUE);

        width = jpeg_.image_width;
        height = jpeg_.image_height;
        // Files coded arithmetically are as good as unknown, and nothing bounds how small they are.
        if (!PixelBuffer::isAllowed(width, height) || jpeg_.arith_code != 0 || !canBeWhole())
            return false;
        if (jpeg_.saw_JFIF_marker != 0 && (jpeg_.density_unit == 1 || jpeg_.density_unit == 2)) {
            const double factor = jpeg_.density_unit == 1 ? 1 : centimetresPerInch;
            horizontalDensity = jpeg_.X_density * factor;
            verticalDensity = jpeg_.Y_density * factor;
        }
        isInk = jpeg_.jpeg_color_space == JCS_CMYK || jpeg_.jpeg_color_space == JCS_YCCK;
        jpeg_.out_color_space = isInk ? JCS_CMYK : JCS_EXT_RGBA;
        return true;
    }

    /// Reads the pixels and the file to its end; false when something is damaged or missing.
    bool readRows(PixelBuffer& pixels) {
        if (setjmp(errors_.jump) != 0)
            return false;
        jpeg_start_decompress(&jpeg_);
        if (jpeg_.output_components != static_cast<int>(PixelBuffer::bytesPerPixel))
            return false;
        while (jpeg_.output_scanline < jpeg_.output_height) {
            JSAMPROW row = pixels.row(jpeg_.output_scanline);
            jpeg_read_scanlines(&jpeg_, &row, 1);
        }
        jpeg_finish_decompress(&jpeg_);
        return true;
    }

    /// Adobe's programs write how much of the paper shows instead of how much ink covers it.
    bool isInverted() const { return jpeg_.saw_Adobe_marker != 0; }

    std::size_t width = 0;
    std::size_t height = 0;
    double horizontalDensity = 0;
    double verticalDensity = 0;
    bool isInk = false;

private:
    /// Each block of each component takes at least a bit, so a smaller file has lost some.
    bool canBeWhole() const {
        std::uint64_t blocks = 0;
        for (int i = 0; i < jpeg_.num_components; ++i) {
            blocks += std::uint64_t{jpeg_.comp_info[i].width_in_blocks} *
                      jpeg_.comp_info[i].height_in_blocks;
        }
        return blocks <= std::uint64_t{bytes_.size()} * 8;
    }

    std::string_view bytes_;
    jpeg_decompress_struct jpeg_ = {};
    jpeg_progress_mgr progress_ = {};
    ErrorHandler errors_ = {};
    bool isCreated_ = false;
};

/// Makes cyan, magenta, yellow and black red, green, blue and opaque, in place.
void convertInk(PixelBuffer& pixels, bool isInverted) {
    const auto paper = [isInverted](std::uint8_t value) {
        return static_cast<unsigned>(isInverted ? value : 255 - value);
    };
    for (std::size_t y = 0; y < pixels.height(); ++y) {
        std::uint8_t* pixel = pixels.row(y);
        for (std::size_t x = 0; x < pixels.width(); ++x, pixel += PixelBuffer::bytesPerPixel) {
            const unsigned black = paper(pixel[3]);
            for (int i = 0; i < 3; ++i)
                pixel[i] = static_cast<std::uint8_t>((paper(pixel[i]) * black + 127) / 255);
            pixel[3] = 255;
        }
    }
}

}  // namespace

std::optional<DecodedImage> decodeJpeg(std::string_view bytes, std::size_t& pixelCount) {
    pixelCount = 0;
    JpegReader reader(bytes);
    if (!reader.readHeader())
        return std::nullopt;
    pixelCount = reader.width * reader.height;
    const std::shared_ptr<PixelBuffer> pixels = PixelBuffer::make(reader.width, reader.height);
    if (!pixels || !reader.readRows(*pixels))
        return std::nullopt;
    if (reader.isInk)
        convertInk(*pixels, reader.isInverted());
    return DecodedImage{pixels, reader.horizontalDensity, reader.verticalDensity};
}

}  // namespace yg
