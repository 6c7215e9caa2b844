// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/TextHash.h"

#include <array>
#include <cstdlib>

namespace yg::text {

TextHash TextHash::ofProcess() {
    static const TextHash hash = [] {
        std::array<std::uint64_t, 2> key;
        ::arc4random_buf(key.data(), sizeof key);
        return TextHash(key[0], key[1]);
    }();
    return hash;
}

namespace {

// Drawn when the library is loaded: the child of a fork could not wait for another thread to do it.
[[maybe_unused]] const TextHash drawn = TextHash::ofProcess();

}  // namespace

}  // namespace yg::text
