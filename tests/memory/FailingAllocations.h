// SPDX-License-Identifier: MIT
//
// Takes the place of the process's allocation functions, so that a test can let any allocation of a
// thread fail and count those that are left over. Under the address sanitizer only operator new and
// delete are ours, since malloc is the sanitizer's. The thread sanitizer lets nobody else define
// either, so its build has no such tests.
#pragma once

#include <cstddef>

#if defined(__SANITIZE_THREAD__)
#define YG_OWN_ALLOCATION 0
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define YG_OWN_ALLOCATION 0
#endif
#endif
#if !defined(YG_OWN_ALLOCATION)
#define YG_OWN_ALLOCATION 1
#endif

#if defined(__SANITIZE_ADDRESS__)
#define YG_OWN_MALLOC 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define YG_OWN_MALLOC 0
#endif
#endif
#if !defined(YG_OWN_MALLOC)
#define YG_OWN_MALLOC 1
#endif

namespace yg::testing {

/// Which allocations count and fail.
enum class Allocators {
    operatorNew,  ///< the library's own
    all,          ///< also malloc and its like, which are those of the libraries below
};

enum class Failures {
    one,      ///< the allocation of the number given
    allFrom,  ///< that one and all that follow
};

/// Lets allocations of this thread fail until the end of the scope.
class FailingAllocations {
public:
    /// `number` counts the allocations from now on, from 1.
    FailingAllocations(std::size_t number, Failures failures, Allocators allocators);
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
    ~FailingAllocations();

    /// Whether an allocation has failed.
    bool hasFailed() const;
};

/// Nothing fails and nothing counts until the end of the scope: for the code of a test inside an
/// operation.
class PausedFailures {
public:
    PausedFailures();
    PausedFailures(const PausedFailures&) = delete;
    PausedFailures& operator=(const PausedFailures&) = delete;
    ~PausedFailures();

private:
    bool wasOn_;
};

/// How many allocations of this thread are not freed yet; only differences mean something.
std::ptrdiff_t liveAllocations();

}  // namespace yg::testing
