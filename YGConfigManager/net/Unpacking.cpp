// SPDX-License-Identifier: MIT
#include "YGConfigManager/net/Unpacking.h"

#include <array>

namespace yg::net {

namespace {

constexpr int largestWindow = 15;
/// zlib's way of asking for either header, that of gzip or its own.
constexpr int anyHeader = 32;

}  // namespace

Unpacking::Unpacking() : isReady_(inflateInit2(&stream_, largestWindow + anyHeader) == Z_OK) {}

Unpacking::~Unpacking() {
    inflateEnd(&stream_);
}

bool Unpacking::append(std::string_view piece, std::size_t limit, std::string& body) {
    std::array<Bytef, 16 * 1024> unpacked;
    std::string bytes(piece);  // zlib's input is not const everywhere
    stream_.next_in = reinterpret_cast<Bytef*>(bytes.data());
    stream_.avail_in = static_cast<uInt>(bytes.size());
    bool isFull = false;
    while (isReady_ && (stream_.avail_in > 0 || isFull)) {
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
        isReady_ = (result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR) &&
                   count <= limit - body.size();
        if (isReady_) {
            body.append(reinterpret_cast<const char*>(unpacked.data()), count);
        }
    }
    return isReady_;
}

}  // namespace yg::net
