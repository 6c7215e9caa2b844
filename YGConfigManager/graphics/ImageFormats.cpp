// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/ImageFormats.h"

namespace yg {

std::span<const ImageFormat> imageFormats() {
    using namespace std::string_view_literals;
    static constexpr ImageFormat formats[] = {
        {"\x89PNG\r\n\x1A\n"sv, decodePng},
        {"\xFF\xD8\xFF"sv, decodeJpeg},
    };
    return formats;
}

}  // namespace yg
