// SPDX-License-Identifier: MIT
//
// The decoding of a compressed body. libcurl decodes as well, but takes a compressed body that
// stops in the middle for a whole one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <zlib.h>

namespace yg::net {

/// Unpacks what the encodings "gzip" and "deflate" stand for, piece by piece.
class Unpacking {
public:
    /// `mayLackHeader`: whether the data may also come without any header, as servers have it that
    /// take the name "deflate" literally.
    explicit Unpacking(bool mayLackHeader);
    ~Unpacking();
    Unpacking(const Unpacking&) = delete;
    Unpacking& operator=(const Unpacking&) = delete;

    /// Appends what the next piece holds. False, for good, if it is damaged or if the body would
    /// have more bytes than the limit.
    bool append(std::string_view piece, std::size_t limit, std::string& body);

    /// Whether the last piece was the last one. Nothing at all is whole too.
    bool isWhole() const { return isReady_ && isBetweenParts_ && beginning_.empty(); }

private:
    z_stream stream_{};
    bool isReady_;
    bool isBetweenParts_ = true;
    bool isHeaderKnown_;
    bool hasHeader_ = true;
    std::string beginning_;  // while the header is not known
    bool isOver_ = false;    // data without a header is one part
    std::size_t bytesBehind_ = 0;
};

}  // namespace yg::net
