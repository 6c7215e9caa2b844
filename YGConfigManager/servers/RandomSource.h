// SPDX-License-Identifier: MIT
//
// Where the choice of an address gets its random numbers. A loader may be given another source than
// the system's, so that the choices are known beforehand.
#pragma once

#include <cstdint>

#include "YGConfigManager/export.h"

namespace yg {

class YG_EXPORT RandomSource {
public:
    virtual ~RandomSource() = default;

    /// A number of cryptographic quality, uniform over all 32 bits; nobody seeds it.
    virtual std::uint32_t uniform() = 0;

    /// The next number of the C library's rand(), which the library never seeds.
    virtual int legacy() = 0;
};

/// The system's source, for any thread.
YG_EXPORT RandomSource& systemRandomSource();

}  // namespace yg
