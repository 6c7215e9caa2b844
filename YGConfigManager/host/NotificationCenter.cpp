// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/NotificationCenter.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <utility>
#include <vector>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/Immortal.h"
#include "YGConfigManager/host/Log.h"

namespace yg {

namespace {

/// Guards every centre's `state_`, which is made for its first observer.
std::mutex firstObserver;

}  // namespace

class NotificationCenter::State {
public:
    unsigned long long add(std::string name, const void* sender, Observer observer) {
        const auto place = std::make_shared<Place>();
        place->name = std::move(name);
        place->sender = sender;
        place->observer = std::move(observer);
        const std::lock_guard lock(mutex_);
        place->id = ++lastId_;
        places_.push_back(place);
        return place->id;
    }

    void remove(unsigned long long id) noexcept {
        // Goes after the lock: what the observer holds may have a destructor that comes back here.
        std::shared_ptr<Place> removed;
        const std::lock_guard lock(mutex_);
        const auto found = std::find_if(places_.begin(), places_.end(),
                                        [id](const auto& place) { return place->id == id; });
        if (found != places_.end()) {
            removed = std::move(*found);
            removed->isRemoved = true;
            places_.erase(found);
        }
    }

    void notify(const Notification& notification) {
        std::vector<std::shared_ptr<Place>> concerned;
        {
            const std::lock_guard lock(mutex_);
            for (const auto& place : places_) {
                if (place->name == notification.name &&
                    (place->sender == nullptr || place->sender == notification.sender.get())) {
                    concerned.push_back(place);
                }
            }
        }
        for (const auto& place : concerned) {
            if (!place->isRemoved && place->observer) {
                tell(*place, notification);
            }
        }
    }

private:
    struct Place {
        unsigned long long id = 0;
        std::string name;
        const void* sender = nullptr;
        Observer observer;
        std::atomic<bool> isRemoved = false;
    };

    static void tell(const Place& place, const Notification& notification) noexcept {
        try {
            place.observer(notification);
        } catch (const std::exception& error) {
            writeRuntimeLog("notification %@ fail:%@", notification.name, error.what());
        } catch (...) {
            writeRuntimeLog("notification %@ fail:%@", notification.name, "unknown exception");
        }
    }

    std::mutex mutex_;
    std::vector<std::shared_ptr<Place>> places_;
    unsigned long long lastId_ = 0;
};

NotificationCenter::Token::Token(Token&& other) noexcept
    : state_(std::exchange(other.state_, {})), id_(std::exchange(other.id_, 0)) {}

NotificationCenter::Token& NotificationCenter::Token::operator=(Token&& other) noexcept {
    if (this != &other) {
        remove();
        state_ = std::exchange(other.state_, {});
        id_ = std::exchange(other.id_, 0);
    }
    return *this;
}

NotificationCenter::Token::~Token() {
    remove();
}

void NotificationCenter::Token::remove() noexcept {
    if (const std::shared_ptr<State> state = std::exchange(state_, {}).lock()) {
        state->remove(id_);
    }
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
        std::shared_ptr<State> state;
        {
            const std::lock_guard lock(firstObserver);
            if (state_ == nullptr) {
                state_ = std::make_shared<State>();
            }
            state = state_;
        }
        Token token;
        token.id_ = state->add(std::string(*name), sender, std::move(observer));
        token.state_ = state;
        return token;
    });
}

void NotificationCenter::post(OptionalText name, const std::shared_ptr<void>& sender) noexcept {
    // A share of its own: an observer may let the centre go.
    std::shared_ptr<State> state;
    {
        const std::lock_guard lock(firstObserver);
        state = state_;
    }
    if (state != nullptr) {
        guarded("notification", [&] { state->notify({std::string(*name), sender}); });
    }
}

}  // namespace yg
