// SPDX-License-Identifier: MIT
#include "graphics/CountedMemory.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t taken = 0;

#ifndef YG_NO_COUNTED_MEMORY
void* take(std::size_t size) {
    taken += size;
    if (void* const memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}
#endif

}  // namespace

namespace yg::testing {

std::size_t bytesTaken() {
    return taken;
}

}  // namespace yg::testing

#ifndef YG_NO_COUNTED_MEMORY

void* operator new(std::size_t size) {
    return take(size);
}
void* operator new[](std::size_t size) {
    return take(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

#endif
