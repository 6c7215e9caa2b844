// SPDX-License-Identifier: MIT
#include "YGConfigManager/net/Unpacking.h"

#include <array>
#include <utility>

namespace yg::net {

namespace {

constexpr int largestWindow = 15;
/// zlib's way of asking for either header, that of gzip or its own.
constexpr int anyHeader = 32;
/// Servers that leave out the header may still send the checksum that belongs to it.
constexpr std::size_t maxBehindData = 4;

bool isHeader(unsigned char first, unsigned char second) {
    const bool isOfGzip = first == 0x1f && second == 0x8b;
    const bool isOfZlib = (first & 0x0f) == Z_DEFLATED && (first * 256 + second) % 31 == 0;
    return isOfGzip || isOfZlib;
}

}  // namespace

Unpacking::Unpacking(bool mayLackHeader)
    : isReady_(inflateInit2(&stream_, largestWindow + anyHeader) == Z_OK),
      isHeaderKnown_(!mayLackHeader) {}

Unpacking::~Unpacking() {
    inflateEnd(&stream_);
}

bool Unpacking::append(std::string_view piece, std::size_t limit, std::string& body) {
    std::string bytes = std::exchange(beginning_, {});
    bytes.append(piece);  // a copy, as zlib's input is not const everywhere
    if (!isHeaderKnown_) {
        if (bytes.size() < 2) {
            beginning_ = std::move(bytes);
            return isReady_;
        }
        isHeaderKnown_ = true;
        hasHeader_ =
            isHeader(static_cast<unsigned char>(bytes[0]), static_cast<unsigned char>(bytes[1]));
        isReady_ = isReady_ && (hasHeader_ || inflateReset2(&stream_, -largestWindow) == Z_OK);
    }
    std::array<Bytef, std::size_t{16} * 1024> unpacked;
    stream_.next_in = reinterpret_cast<Bytef*>(bytes.data());
    stream_.avail_in = static_cast<uInt>(bytes.size());
    bool isFull = false;
    while (isReady_ && (stream_.avail_in > 0 || isFull)) {
        if (isOver_) {
            bytesBehind_ += stream_.avail_in;
            isReady_ = bytesBehind_ <= maxBehindData;
            break;
        }
        // A body may be several compressed parts in a row.
        if (isBetweenParts_) {
            inflateReset(&stream_);
            isBetweenParts_ = false;
        }
        stream_.next_out = unpacked.data();
        stream_.avail_out = static_cast<uInt>(unpacked.size());
        const int result = inflate(&stream_, Z_NO_FLUSH);
        const std::size_t count = unpacked.size() - stream_.avail_out;
        isFull = stream_.avail_out == 0 && result == Z_OK;
        isBetweenParts_ = result == Z_STREAM_END;
        isOver_ = isBetweenParts_ && !hasHeader_;
        isReady_ = (result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR) &&
                   count <= limit - body.size();
        if (isReady_)
            body.append(reinterpret_cast<const char*>(unpacked.data()), count);
    }
    return isReady_;
}

}  // namespace yg::net
