// SPDX-License-Identifier: MIT
//
// Reads the image files of one load: each file once, whatever paths lead to it, and all together
// within limits, so that neither a small file with many names nor many files take long. For one
// thread.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string_view>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/graphics/Image.h"

namespace yg {

class ImageFileReader {
public:
    /// A larger file is not read: 64 MiB.
    static constexpr std::size_t largestFile = std::size_t{64} << 20;

    /// Once the files read have so many bytes together, whatever they hold, no other is read: 256
    /// MiB.
    static constexpr std::size_t maxBytes = std::size_t{256} << 20;

    /// Once so many pixels were decoded, no other file is read: 64 Mi. A file counts with what its
    /// header declares, also when its pixels then turn out to be damaged.
    static constexpr std::size_t maxPixels = Image::maximumPixels;

    enum class Outcome {
        read,
        unreadable,     ///< missing, no regular file, too large, damaged, or of another format
        tooManyPixels,  ///< not looked at, because of those before it
        tooManyBytes,   ///< the same
    };

    struct Reading {
        Outcome outcome = Outcome::unreadable;
        std::optional<Image> image;  ///< there when it was read
    };

    /// The image in a file. One that was read before answers the same image.
    Reading read(std::string_view path);

private:
    std::optional<Image> decoded(std::string_view path);

    std::map<files::FileIdentity, std::optional<Image>> images_;
    std::size_t bytes_ = 0;
    std::size_t pixels_ = 0;
};

}  // namespace yg
