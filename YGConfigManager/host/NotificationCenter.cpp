// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/NotificationCenter.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <iterator>
#include <mutex>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/process/ForkMutex.h"

namespace yg {

namespace {

/// Guards the observers of all centres and what all tokens stand for: a token may be used by
/// several threads, and the centre that it belongs to may have gone.
constinit ForkMutex centers;

}  // namespace

/// All but notify() only under the lock.
class NotificationCenter::State {
public:
    struct Place {
        unsigned long long id = 0;
        std::string name;
        const void* sender = nullptr;
        Observer observer;
        std::atomic<bool> isRemoved = false;
    };
    using Places = std::vector<std::shared_ptr<Place>>;

    unsigned long long add(const std::shared_ptr<Place>& place) {
        place->id = ++lastId_;
        places_.push_back(place);
        return place->id;
    }

    /// The observer, which is not called any more; null if it is not here. It goes after the lock:
    /// what it holds may have a destructor that comes back here.
    std::shared_ptr<Place> remove(unsigned long long id) noexcept {
        std::shared_ptr<Place> removed;
        const auto found = std::find_if(places_.begin(), places_.end(),
                                        [id](const auto& place) { return place->id == id; });
        if (found != places_.end()) {
            removed = std::move(*found);
            removed->isRemoved = true;
            places_.erase(found);
        }
        return removed;
    }

    Places concernedBy(std::string_view name, const void* sender) const {
        Places concerned;
        std::copy_if(places_.begin(), places_.end(), std::back_inserter(concerned),
                     [&](const auto& place) {
                         return place->name == name && (!place->sender || place->sender == sender);
                     });
        return concerned;
    }

    static void notify(const Places& concerned, const Notification& notification) noexcept {
        for (const auto& place : concerned) {
            if (!place->isRemoved && place->observer)
                notify(*place, notification);
        }
    }

private:
    static void notify(const Place& place, const Notification& notification) noexcept {
        try {
            place.observer(notification);
        } catch (const std::exception& error) {
            writeRuntimeError("notification %@ fail:%@", notification.name, error.what());
        } catch (...) {
            writeRuntimeError("notification %@ fail:%@", notification.name, "unknown exception");
        }
    }

    Places places_;
    unsigned long long lastId_ = 0;
};

NotificationCenter::Token::Token(Token&& other) noexcept {
    const std::lock_guard lock(centers);
    state_.swap(other.state_);
    std::swap(id_, other.id_);
}

NotificationCenter::Token& NotificationCenter::Token::operator=(Token&& other) noexcept {
    if (this != &other) {
        // The observer before goes last, after the lock and when this token is finished: what it
        // holds may hold this token.
        Token before;
        const std::lock_guard lock(centers);
        before.state_.swap(state_);
        std::swap(before.id_, id_);
        state_.swap(other.state_);
        std::swap(id_, other.id_);
    }
    return *this;
}

NotificationCenter::Token::~Token() {
    remove();
}

void NotificationCenter::Token::remove() noexcept {
    // Both go after the lock, and this token perhaps with them.
    std::shared_ptr<State> state;
    std::shared_ptr<State::Place> removed;
    const std::lock_guard lock(centers);
    state = state_.lock();
    state_.reset();
    if (state)
        removed = state->remove(id_);
}

NotificationCenter::NotificationCenter() noexcept = default;

NotificationCenter::~NotificationCenter() = default;

NotificationCenter& NotificationCenter::standard() noexcept {
    static Immortal<NotificationCenter> standard;
    return *standard;
}

NotificationCenter::Token NotificationCenter::addObserver(OptionalText name, const void* sender,
                                                          Observer observer) noexcept {
    return guarded("notification observer", [&] {
        const auto place = std::make_shared<State::Place>();
        place->name = *name;
        place->sender = sender;
        place->observer = std::move(observer);
        Token token;
        {
            const std::lock_guard lock(centers);
            if (!state_)
                state_ = std::make_shared<State>();
            token.id_ = state_->add(place);
            token.state_ = state_;
        }
        return token;
    });
}

void NotificationCenter::post(OptionalText name, const std::shared_ptr<void>& sender) noexcept {
    guarded("notification", [&] {
        State::Places concerned;
        {
            const std::lock_guard lock(centers);
            if (state_)
                concerned = state_->concernedBy(*name, sender.get());
        }
        // From here on without the centre: an observer may let it go.
        if (!concerned.empty())
            State::notify(concerned, {std::string(*name), sender});
    });
}

}  // namespace yg
