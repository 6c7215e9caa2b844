// SPDX-License-Identifier: MIT
//
// The one place where exceptions end. Every public operation that takes memory does its work inside
// guarded(), and calls no other public operation there: what those keep to themselves would be
// missing from the work without notice. The work changes its object in a last step that cannot
// fail, so that a work that is given up has changed nothing. Internal. Any thread may call.
#pragma once

#include <new>
#include <string_view>
#include <type_traits>

namespace yg {

/// What the log and error texts say when memory does not suffice.
inline constexpr std::string_view outOfMemory = "out of memory";

/// Logs the exception being handled as "WHAT fail:REASON", without taking memory.
void logException(std::string_view what) noexcept;

/// Does the work and answers what it does. Work that throws, for want of memory above all, is
/// logged and the answer is `otherwise`.
template <class Work, class Answer = std::invoke_result_t<Work>>
requires(!std::is_void_v<Answer>) std::invoke_result_t<Work> guarded(std::string_view what,
                                                                     Work work,
                                                                     Answer otherwise = Answer())
noexcept {
    try {
        return work();
    } catch (...) {
        logException(what);
        return otherwise;
    }
}

/// The same for work without an answer.
template <class Work>
requires(std::is_void_v<std::invoke_result_t<Work>>) void guarded(std::string_view what,
                                                                  Work work) noexcept {
    try {
        work();
    } catch (...) {
        logException(what);
    }
}

/// Throws if a parse, which throws nothing itself, failed for want of memory.
template <class Parsed>
Parsed orOutOfMemory(Parsed parsed) {
    if (!parsed && parsed.error == outOfMemory)
        throw std::bad_alloc();
    return parsed;
}

}  // namespace yg
