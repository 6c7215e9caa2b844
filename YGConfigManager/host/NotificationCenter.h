// SPDX-License-Identifier: MIT
//
// Notifications by name from a sender to whoever observes it. Every operation is safe from any
// thread, on one centre or one token too, and inside an observer; destroying a centre or a token is
// not, while another thread uses that same one. An observer runs on the thread that posts.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "YGConfigManager/export.h"
#include "YGConfigManager/host/Callables.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

/// What an observer receives. `sender` is the object that the notification is about; it is alive as
/// long as the observer holds it. std::static_pointer_cast makes it what the name promises.
struct Notification {
    std::string name;              ///< as it was posted
    std::shared_ptr<void> sender;  ///< as it was posted; may be null
};

/// The place where observers wait for notifications.
class YG_EXPORT NotificationCenter {
    class State;

public:
    /// What is called for a notification.
    using Observer = std::function<void(const Notification&)>;

    /// An observer's place. When the token goes or another is assigned to it, the observer is
    /// removed; it may go inside the observer itself, after the centre, and with what its own
    /// observer holds. A default token stands for nothing.
    class YG_EXPORT Token {
    public:
        Token() = default;
        /// Takes over the place of another token, which stands for nothing from then on.
        Token(Token&& other) noexcept;
        Token& operator=(Token&& other) noexcept;
        Token(const Token&) = delete;
        Token& operator=(const Token&) = delete;
        ~Token();

        /// Removes the observer now, and the token stands for nothing. After this call the observer
        /// is not called any more, whichever thread has removed it; a call that another thread has
        /// begun may still be under way.
        void remove() noexcept;

    private:
        friend class NotificationCenter;
        std::weak_ptr<State> state_;
        unsigned long long id_ = 0;
    };

    NotificationCenter() noexcept;
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;
    ~NotificationCenter();

    /// The process's centre, to which the library posts. Never destroyed.
    static NotificationCenter& standard() noexcept;

    /// Has `observer` called for each notification `name` from `sender`, from any sender when that
    /// is null, until the token answered goes. The sender is only compared, never kept alive. An
    /// empty observer is never called. Without memory for it a default token, which is logged.
    [[nodiscard]] Token addObserver(OptionalText name, const void* sender,
                                    Observer observer) noexcept;
    template <CapturesWhatCannotBeCopied Callable>
    Token addObserver(OptionalText, const void*, Callable&&) = delete;  // capture a shared_ptr

    /// Calls the observers of `name` from `sender`, one after the other in the order in which they
    /// were added, and returns after the last. Those added meanwhile are not called, those removed
    /// meanwhile neither. No lock is held: an observer may add, remove and post. One that throws is
    /// logged, and the others are still called. Without memory nobody is called, which is logged.
    void post(OptionalText name, const std::shared_ptr<void>& sender) noexcept;

private:
    std::shared_ptr<State> state_;  // null until there is an observer
};

}  // namespace yg
