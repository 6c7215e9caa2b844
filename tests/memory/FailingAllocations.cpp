// SPDX-License-Identifier: MIT
#include "memory/FailingAllocations.h"

#if YG_OWN_ALLOCATION

#include <cerrno>
#include <cstdlib>
#include <new>
#include <utility>

namespace yg::testing {

namespace {

struct State {
    bool isOn = false;
    bool hasFailed = false;
    Failures failures = Failures::one;
    Allocators allocators = Allocators::all;
    std::size_t left = 0;
    std::ptrdiff_t live = 0;
};

constinit thread_local State state;

/// Whether the allocation that is about to be made fails.
bool fails(Allocators allocator) {
    if (!state.isOn || (allocator == Allocators::all && state.allocators != Allocators::all))
        return false;
    if (state.left > 1) {
        --state.left;
        return false;
    }
    state.hasFailed = true;
    state.isOn = state.failures == Failures::allFrom;
    errno = ENOMEM;
    return true;
}

void* counted(void* memory) {
    state.live += memory != nullptr;
    return memory;
}

}  // namespace

FailingAllocations::FailingAllocations(std::size_t number, Failures failures,
                                       Allocators allocators) {
    state.failures = failures;
    state.allocators = allocators;
    state.left = number;
    state.hasFailed = false;
    state.isOn = true;
}

FailingAllocations::~FailingAllocations() {
    state.isOn = false;
}

bool FailingAllocations::hasFailed() const {
    return state.hasFailed;
}

PausedFailures::PausedFailures() : wasOn_(std::exchange(state.isOn, false)) {}

PausedFailures::~PausedFailures() {
    state.isOn = wasOn_;
}

std::ptrdiff_t liveAllocations() {
    return state.live;
}

}  // namespace yg::testing

using yg::testing::Allocators;
using yg::testing::counted;
using yg::testing::fails;
using yg::testing::state;

#if YG_OWN_MALLOC

// The libraries below must find these too, which clang hides otherwise.
#pragma GCC visibility push(default)

// The C library's own, under the names that it keeps for those who replace malloc.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) {
    return fails(Allocators::all) ? nullptr : counted(__libc_malloc(size));
}
void* calloc(std::size_t count, std::size_t size) {
    return fails(Allocators::all) ? nullptr : counted(__libc_calloc(count, size));
}
void* realloc(void* memory, std::size_t size) {
    if (fails(Allocators::all))
        return nullptr;
    const bool isNew = !memory;
    void* const moved = __libc_realloc(memory, size);
    state.live += (isNew && moved) - (!isNew && size == 0);
    return moved;
}
void* memalign(std::size_t alignment, std::size_t size) {
    return fails(Allocators::all) ? nullptr : counted(__libc_memalign(alignment, size));
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return memalign(alignment, size);
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    void* const made = memalign(alignment, size);
    if (made)
        *memory = made;
    return made ? 0 : ENOMEM;
}
void free(void* memory) {
    state.live -= memory != nullptr;
    __libc_free(memory);
}
}

#pragma GCC visibility pop

#define YG_MALLOC __libc_malloc
#define YG_FREE __libc_free
#else
#define YG_MALLOC std::malloc
#define YG_FREE std::free
#endif

void* operator new(std::size_t size) {
    if (!fails(Allocators::operatorNew)) {
        if (void* memory = counted(YG_MALLOC(size == 0 ? 1 : size)))
            return memory;
    }
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
    return ::operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return fails(Allocators::operatorNew) ? nullptr : counted(YG_MALLOC(size == 0 ? 1 : size));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return ::operator new(size, std::nothrow);
}
void operator delete(void* memory) noexcept {
    state.live -= memory != nullptr;
    YG_FREE(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    ::operator delete(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    ::operator delete(memory);
}
void operator delete[](void* memory) noexcept {
    ::operator delete(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    ::operator delete(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    ::operator delete(memory);
}

#endif
