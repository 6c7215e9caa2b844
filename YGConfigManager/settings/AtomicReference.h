// SPDX-License-Identifier: MIT
//
// A shared pointer that one thread may replace while others read it, as one step each. Neither
// waits: a thread that stops in the middle, or that a fork leaves behind, keeps no other from
// going on. The standard's own, std::atomic<std::shared_ptr>, is missing from some C++20 libraries
// and races with itself in others.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

namespace yg {

template <class T>
class AtomicReference {
    /// A pointer that was stored. It goes when it is no longer the newest and nobody copies it:
    /// each reader that comes too late to leave by the word takes one off, and the writer that
    /// replaces it adds all that came.
    struct Version {
        explicit Version(std::shared_ptr<T> of) : pointer(std::move(of)) {}
        const std::shared_ptr<T> pointer;
        std::atomic<std::int64_t> readers = 0;
    };

public:
    /// A pointer to be stored, with the memory that storing it takes.
    class Next {
    public:
        explicit Next(std::shared_ptr<T> pointer)
            : version_(std::make_unique<Version>(std::move(pointer))) {}

    private:
        friend class AtomicReference;
        std::unique_ptr<Version> version_;
    };

    /// Holds null.
    AtomicReference() = default;
    AtomicReference(const AtomicReference&) = delete;
    AtomicReference& operator=(const AtomicReference&) = delete;
    ~AtomicReference() { delete versionOf(word_.load(std::memory_order_acquire)); }

    /// The pointer stored last. The object stays as long as the answer is held.
    std::shared_ptr<T> load() const noexcept {
        std::uint64_t word = word_.fetch_add(oneReader, std::memory_order_acquire) + oneReader;
        Version* const version = versionOf(word);
        std::shared_ptr<T> pointer = version ? version->pointer : nullptr;
        while (versionOf(word) == version) {
            if (word_.compare_exchange_weak(word, word - oneReader, std::memory_order_release,
                                            std::memory_order_relaxed))
                return pointer;
        }
        leave(version, -1);
        return pointer;
    }

    /// Replaces the pointer. The object before goes when nobody holds it any more.
    void store(Next next) noexcept {
        const std::uint64_t word =
            word_.exchange(wordOf(next.version_.release()), std::memory_order_acq_rel);
        leave(versionOf(word), static_cast<std::int64_t>(word / oneReader));
    }

private:
    // One word holds where the newest version lies, in its lower 48 bits, which every address fits,
    // and how many readers are copying its pointer, which are fewer than 65,536: each is a thread
    // of its own, and Linux lets a process have half as many by default.
    static_assert(sizeof(void*) == sizeof(std::uint64_t));
    static constexpr std::uint64_t oneReader = std::uint64_t{1} << 48;

    static std::uint64_t wordOf(Version* version) {
        return reinterpret_cast<std::uintptr_t>(version);
    }
    static Version* versionOf(std::uint64_t word) {
        return reinterpret_cast<Version*>(word & (oneReader - 1));
    }

    static void leave(Version* version, std::int64_t change) {
        if (version && version->readers.fetch_add(change, std::memory_order_acq_rel) + change == 0)
            delete version;
    }

    mutable std::atomic<std::uint64_t> word_ = 0;
};

}  // namespace yg
