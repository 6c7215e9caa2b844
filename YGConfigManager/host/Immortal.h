// SPDX-License-Identifier: MIT
//
// An object of the whole process that is never destroyed, since threads that end after main() may
// still use it, and that takes no memory. Internal.
#pragma once

#include <new>
#include <type_traits>
#include <utility>

namespace yg {

template <class T>
class Immortal {
public:
    template <class... Args>
    explicit Immortal(Args&&... args) {
        ::new (static_cast<void*>(place_)) std::remove_const_t<T>(std::forward<Args>(args)...);
    }
    Immortal(const Immortal&) = delete;
    Immortal& operator=(const Immortal&) = delete;

    T& operator*() { return *std::launder(reinterpret_cast<T*>(place_)); }
    T* operator->() { return &**this; }

private:
    alignas(T) unsigned char place_[sizeof(T)];
};

}  // namespace yg
