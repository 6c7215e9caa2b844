// SPDX-License-Identifier: MIT
//
// What the tests of this folder share: a storage of their own, a transport, file layers and
// sinks.
#pragma once

#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/net/HttpGet.h"
#include "YGConfigManager/settings/Storage.h"
#include "YGConfigManager/settings/Transport.h"

#include "diagnostics/RecordingSink.h"
#include "files/ScopedFileLayer.h"
#include "files/TemporaryFolder.h"
#include "host/RecordingHost.h"

namespace yg::testing {

/// A test with a storage folder, which is read and written.
class StorageTest : public ::testing::Test {
protected:
    StorageTest() {
        host->storageReadFolder = folder.path();
        host->storageWriteFolder = folder.path();
    }

    void put(std::string_view name, std::string_view bytes) const {
        files::put(folder / name, bytes);
    }
    std::string contentOf(std::string_view name) const { return files::contentOf(folder / name); }

    files::TemporaryFolder folder;
    ScopedHost<> host;
};

/// A transport that keeps requests until the test answers them, on another thread as the network
/// would. Outlives the managers that use it.
class KeptRequests : public RequestUrlsOver {
public:
    KeptRequests()
        : RequestUrlsOver{[this](std::string url, net::GetCompletion completion) {
              const std::lock_guard lock(mutex_);
              urls_.push_back(std::move(url));
              completions_.push_back(std::move(completion));
          }} {}
    KeptRequests(const KeptRequests&) = delete;
    KeptRequests& operator=(const KeptRequests&) = delete;

    /// The addresses asked for so far.
    std::vector<std::string> urls() const {
        const std::lock_guard lock(mutex_);
        return urls_;
    }

    /// Ends the request made last, and returns when its completion did.
    void answer(std::optional<std::string> body, std::optional<std::string> error = std::nullopt) {
        net::GetCompletion completion;
        {
            const std::lock_guard lock(mutex_);
            completion = std::exchange(completions_.back(), nullptr);
        }
        std::thread([&] {
            if (completion)
                completion(std::move(body), std::nullopt, std::move(error));
        }).join();
    }

    /// Whether the request made last has a completion.
    bool hasCompletion() const {
        const std::lock_guard lock(mutex_);
        return completions_.back() != nullptr;
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> urls_;
    std::vector<net::GetCompletion> completions_;
};

}  // namespace yg::testing
