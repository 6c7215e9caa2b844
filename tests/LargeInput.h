// SPDX-License-Identifier: MIT
//
// How much the tests of large inputs make: 50 MB, and a tenth of it where a sanitizer slows
// everything down.
#pragma once

#include <cstddef>

namespace yg::testing {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif
#else
inline constexpr bool isSanitized = false;
#endif

inline constexpr std::size_t largeInput = isSanitized ? 5'000'000 : 50'000'000;

}  // namespace yg::testing
