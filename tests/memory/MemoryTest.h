// SPDX-License-Identifier: MIT
//
// What the tests of this folder share: a host that takes no part in the failures, the whole of a
// record as text, and the rounds in which one allocation after the other fails.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <type_traits>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/xmlerror.h>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/host/Host.h"

#include "files/TemporaryFolder.h"
#include "host/RecordingHost.h"
#include "memory/FailingAllocations.h"
#include "records/RecordText.h"

namespace yg::testing {

/// A host on one folder, whose own work never fails. It counts the log lines that say that memory
/// ran out, and forgets all others.
class MemoryHost final : public Host {
public:
    explicit MemoryHost(std::string folder) : folder_(std::move(folder)) {}

    std::optional<std::string> userRight;
    std::optional<std::string> server;
    std::shared_ptr<const MappingDic> mapping;
    int outOfMemoryLines = 0;

    std::optional<std::string> getStorageFilePath(std::int64_t, std::optional<std::string_view>,
                                                  std::optional<std::string_view> fileName,
                                                  bool) override {
        return pathOf("", fileName.value_or(""));
    }
    std::optional<std::string> getUserRightDescription() override {
        const PausedFailures paused;
        return userRight;
    }
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view fileName) override {
        return pathOf("soft/", fileName);
    }
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view fileName) override {
        return pathOf("base/", fileName);
    }
    std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view) override {
        return mapping;
    }
    std::optional<std::string> getDefualtFolderPath(std::int64_t) override {
        return pathOf("", "images");
    }
    std::optional<std::string> configServer() override {
        const PausedFailures paused;
        return server;
    }
    void writeLog(LogChannel, std::string_view message) override {
        outOfMemoryLines += message.ends_with(" fail:out of memory");
    }

private:
    std::optional<std::string> pathOf(std::string_view folder, std::string_view name) const {
        const PausedFailures paused;
        return folder_ + "/" + std::string(folder) + std::string(name);
    }

    const std::string folder_;
};

/// Has the library make its findings, which takes memory, and keeps none.
class SilentSink final : public DiagnosticsSink {
    void report(const Finding&) override {}
};

inline SilentSink silentSink;

/// Without findings and with them.
inline DiagnosticsSink* const bothSinks[] = {nullptr, &silentSink};

/// Longer than what a text keeps without memory of its own.
inline const std::string longText(40, 'x');

class MemoryTest : public ::testing::Test {
protected:
    void put(std::string_view name, std::string_view bytes) const { root.write(name, bytes); }

    /// What an operation is, and what it must keep.
    template <class Call, class Text>
    struct Operation {
        /// The operation; what it answers is freed when it was looked at.
        Call call;
        /// What it has brought about, as text; takes the answer, if there is one.
        Text text;
        /// The text when memory did not suffice.
        std::string otherwise;
        /// Brings back what was before a round.
        std::function<void()> prepare = [] {};
        Allocators allocators = Allocators::all;
        /// Whether a text other than the full one must come with a line in the log.
        bool isLogged = true;
    };
    template <class Call, class Text, class... Rest>
    Operation(Call, Text, std::string, Rest...) -> Operation<Call, Text>;

    /// Lets each allocation of the operation fail, one in each round, and then that one and all
    /// that follow, until a round needs none of them. Nothing may be thrown or left over, the
    /// outcome is the whole one or the documented one, and afterwards the operation does all it
    /// should.
    template <class Call, class Text>
    void everyAllocationFails(const Operation<Call, Text>& operation) {
        operation.prepare();
        const std::string full = outcome(operation, nullptr);
        ASSERT_NE(full, operation.otherwise) << "the test needs two outcomes";
        for (const Failures failures : {Failures::one, Failures::allFrom}) {
            for (std::size_t number = 1;; ++number) {
                SCOPED_TRACE("allocation " + std::to_string(number) +
                             (failures == Failures::allFrom ? " and all that follow" : ""));
                operation.prepare();
                host->outOfMemoryLines = 0;
                // A thread's last error is kept by what reads XML.
                ::xmlResetLastError();
                const std::ptrdiff_t before = liveAllocations();
                Round round{number, failures, false};
                const bool isFull = isAllowed(outcome(operation, &round), full, operation);
                ::xmlResetLastError();
                // What an operation has changed may take more or less than what was there before.
                if (!isFull || !std::is_void_v<decltype(operation.call())>) {
                    EXPECT_EQ(liveAllocations(), before) << "left over";
                }
                if (!round.hasFailed) {
                    // It may take all of it from malloc.
                    ASSERT_TRUE(number > 1 || !YG_OWN_MALLOC) << "the operation takes no memory";
                    EXPECT_TRUE(isFull);
                    break;
                }
                EXPECT_EQ(outcome(operation, nullptr), full) << "afterwards";
                if (HasFailure())
                    return;
            }
        }
    }

    /// The same in a process of its own for each round, which has done nothing before: what is made
    /// at the first use of something must be there after a failure, too.
    template <class Call, class Text>
    void everyAllocationOfTheFirstCallFails(const Operation<Call, Text>& operation) {
        operation.prepare();
        const std::string full =
            inChild([&] { return std::pair(true, outcome(operation, nullptr)); }).second;
        ASSERT_NE(full, operation.otherwise);
        for (std::size_t number = 1;; ++number) {
            const auto [hasFailed, complaint] = inChild([&]() -> std::pair<bool, std::string> {
                Round round{number, Failures::one, false};
                const std::string first = outcome(operation, &round);
                if (first != full && first != operation.otherwise)
                    return {true, "then: " + first};
                operation.prepare();
                const std::string second = outcome(operation, nullptr);
                return {round.hasFailed, second == full ? "" : "afterwards: " + second};
            });
            ASSERT_EQ(complaint, "") << "allocation " << number;
            if (!hasFailed)
                return;
        }
    }

    const files::TemporaryFolder root;
    const ScopedHost<MemoryHost> host{root.path()};

private:
    struct Round {
        std::size_t number;
        Failures failures;
        bool hasFailed;
    };

    template <class Call, class Text>
    static std::string outcome(const Operation<Call, Text>& operation, Round* round) {
        try {
            std::optional<FailingAllocations> failing;
            if (round)
                failing.emplace(round->number, round->failures, operation.allocators);
            const auto end = [&] {
                if (round)
                    round->hasFailed = failing->hasFailed();
                failing.reset();
            };
            if constexpr (std::is_void_v<decltype(operation.call())>) {
                operation.call();
                end();
                return operation.text();
            } else {
                const auto answer = operation.call();
                end();
                return operation.text(answer);
            }
        } catch (const std::exception& error) {
            if (round)
                round->hasFailed = true;
            return std::string("thrown: ") + error.what();
        }
    }

    template <class Call, class Text>
    bool isAllowed(const std::string& text, const std::string& full,
                   const Operation<Call, Text>& operation) {
        if (text == full)
            return true;
        EXPECT_EQ(text, operation.otherwise);
        EXPECT_TRUE(!operation.isLogged || host->outOfMemoryLines > 0) << "no word in the log";
        return false;
    }

    /// Does the work in a child; a child that dies answers how.
    static std::pair<bool, std::string> inChild(
        const std::function<std::pair<bool, std::string>()>& work) {
        int ends[2];
        if (::pipe(ends) != 0)
            return {false, "no pipe"};
        const pid_t child = ::fork();
        if (child == 0) {
            const auto [flag, text] = work();
            const std::string bytes = (flag ? "1" : "0") + text;
            const bool isWritten =
                ::write(ends[1], bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
            ::_exit(isWritten ? 0 : 1);
        }
        ::close(ends[1]);
        std::string bytes;
        std::array<char, 4096> piece;
        for (ssize_t count; (count = ::read(ends[0], piece.data(), piece.size())) > 0;)
            bytes.append(piece.data(), static_cast<std::size_t>(count));
        ::close(ends[0]);
        int status = 0;
        ::waitpid(child, &status, 0);
        if (status != 0 || bytes.empty())
            return {true, "the process died with " + std::to_string(status)};
        return {bytes.front() == '1', bytes.substr(1)};
    }
};

}  // namespace yg::testing
