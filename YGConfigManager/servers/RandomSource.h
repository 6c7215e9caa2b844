// SPDX-License-Identifier: MIT
//
// Where the choice of an address gets its random numbers, behind an abstract class so that tests
// can say which ones come. Internal.
#pragma once

#include <cstdint>

namespace yg {

class RandomSource {
public:
    virtual ~RandomSource() = default;

    /// A number of cryptographic quality, uniform over all 32 bits; nobody seeds it.
    virtual std::uint32_t uniform() = 0;

    /// The next number of the C library's rand(), which the library never seeds.
    virtual int legacy() = 0;
};

/// The source in use: the system's unless another one was set. Any thread.
RandomSource& randomSource();

/// Puts a source in use for the whole process; null brings the system's back. Answers the one that
/// it replaces, null for the system's. The source must outlive its use and, like the system's, be
/// safe from any thread that chooses addresses.
RandomSource* setRandomSource(RandomSource* source);

}  // namespace yg
