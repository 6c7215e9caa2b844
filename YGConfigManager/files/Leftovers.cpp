// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/Leftovers.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <unistd.h>

#include "YGConfigManager/text/Format.h"

namespace yg::files {

namespace {

using namespace std::chrono_literals;

constexpr std::string_view nameBegin = ".yg-";
constexpr std::string_view nameEnd = ".tmp";
constexpr std::size_t maxNames = 10'000;
constexpr auto timeBetweenLooks = 1h;
constexpr time_t secondsUntilOld = 3600;

/// The folders that the process looked into last.
class Looks {
public:
    /// Whether it is time to look into that folder; it then counts as looked into.
    bool isDue(const struct stat& folder, std::chrono::steady_clock::time_point now) {
        const std::unique_lock lock(mutex_, std::try_to_lock);
        // Some other thread is here, or was when this process was forked.
        if (!lock)
            return false;
        for (Look& look : looks_) {
            if (look.device == folder.st_dev && look.number == folder.st_ino) {
                const bool isDue = now - look.time >= timeBetweenLooks;
                look.time = isDue ? now : look.time;
                return isDue;
            }
        }
        looks_[next_++ % looks_.size()] = {folder.st_dev, folder.st_ino, now};
        return true;
    }

private:
    struct Look {
        dev_t device = 0;
        ino_t number = 0;
        std::chrono::steady_clock::time_point time;
    };

    std::mutex mutex_;
    std::array<Look, 16> looks_;
    std::size_t next_ = 0;
};

/// Takes a number off the beginning of the text; false if there is none.
bool takeNumber(std::string_view& text) {
    const auto end = std::find_if_not(text.begin(), text.end(),
                                      [](char letter) { return letter >= '0' && letter <= '9'; });
    const auto size = static_cast<std::size_t>(end - text.begin());
    text.remove_prefix(size);
    return size > 0;
}

bool takeText(std::string_view& text, std::string_view beginning) {
    const bool begins = text.starts_with(beginning);
    text.remove_prefix(begins ? beginning.size() : 0);
    return begins;
}

/// What a file has to be for being a leftover.
struct Criteria {
    uid_t user;
    uid_t owner;
    time_t newestTime;

    bool apply(const struct stat& file) const {
        return S_ISREG(file.st_mode) && (file.st_uid == user || file.st_uid == owner) &&
               file.st_mtime <= newestTime;
    }
};

void clear(int folder, const char* name, const Criteria& criteria, FileLayer& layer) {
    struct stat named;
    if (layer.status(folder, name, named) != 0 || !criteria.apply(named))
        return;
    const int file = layer.openOld(folder, name);
    if (file < 0)
        return;
    struct stat opened;
    if (layer.lock(file) == 0 && layer.status(file, "", opened) == 0 &&
        opened.st_dev == named.st_dev && opened.st_ino == named.st_ino && criteria.apply(opened))
        layer.unlink(folder, name);
    layer.close(file);
}

}  // namespace

std::string nextTempName() {
    static std::atomic<unsigned> counter = 0;
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return text::format(".yg-%d-%d-%d.tmp", ::getpid(), now.count(), ++counter);
}

bool isTempName(std::string_view name) {
    return takeText(name, nameBegin) && takeNumber(name) && takeText(name, "-") &&
           takeNumber(name) && takeText(name, "-") && takeNumber(name) && name == nameEnd;
}

void clearLeftovers(int folder, int newFile, uid_t owner, FileLayer& layer) {
    static constinit Looks looks;
    struct stat state;
    if (layer.status(folder, "", state) != 0 || !looks.isDue(state, layer.now()) ||
        layer.status(newFile, "", state) != 0)
        return;
    const Criteria criteria{state.st_uid, owner, state.st_mtime - secondsUntilOld};
    const auto look = [&](const char* name) {
        if (isTempName(name))
            clear(folder, name, criteria, layer);
    };
    layer.eachName(folder, maxNames, std::ref(look));
}

}  // namespace yg::files
