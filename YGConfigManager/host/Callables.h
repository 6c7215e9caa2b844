// SPDX-License-Identifier: MIT
//
// What the library keeps to call later, tasks, observers and completions, it keeps as a
// std::function, which copies what a lambda captures.
#pragma once

#include <concepts>
#include <type_traits>

namespace yg {

/// A lambda with a std::unique_ptr among its captures, for one: the operations that take something
/// to call refuse it, so that the compiler's message is about the call. Capture a std::shared_ptr.
template <class Callable>
concept CapturesWhatCannotBeCopied = !std::copy_constructible<std::decay_t<Callable>>;

}  // namespace yg
