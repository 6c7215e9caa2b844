// SPDX-License-Identifier: MIT
#include "YGConfigManager/servers/RandomSource.h"

#include <array>
#include <cstddef>
#include <cstdlib>

#include "YGConfigManager/host/Immortal.h"

namespace yg {

namespace {

class SystemRandomSource final : public RandomSource {
public:
    std::uint32_t uniform() override {
        // Each request is a system call, dearer than reading a server from a file, so numbers come
        // by the dozen. A forked process repeats those left over, which does no harm here.
        thread_local std::array<std::uint32_t, 64> numbers;
        thread_local std::size_t next = numbers.size();
        if (next == numbers.size()) {
            ::arc4random_buf(numbers.data(), sizeof numbers);
            next = 0;
        }
        return numbers[next++];
    }

    int legacy() override { return ::rand(); }
};

}  // namespace

RandomSource& systemRandomSource() {
    static Immortal<SystemRandomSource> system;
    return *system;
}

}  // namespace yg
