// SPDX-License-Identifier: MIT
//
// Host services, queues, notifications and JSON when memory runs out.
#include <fcntl.h>

#include "YGConfigManager/host/JsonModel.h"
#include "YGConfigManager/host/Log.h"
#include "YGConfigManager/host/MainQueue.h"
#include "YGConfigManager/host/NotificationCenter.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/host/YGFrameComFun.h"

#include "memory/MemoryTest.h"

#if YG_OWN_ALLOCATION

namespace yg {
namespace {

const std::string& text = testing::longText;

class HostMemory : public testing::MemoryTest {};

const auto whole = [](const auto& answer) { return testing::wholeText(answer); };

TEST_F(HostMemory, AStandAloneHostOpensOrSaysThatMemoryRanOut) {
    put("host.json", R"({"rightLevel":")" + text + R"(","configServer":")" + text +
                         R"(","mappings":{"k":{"n":[")" + text + R"("]}}})");
    const auto textOf = [](const auto& opened) {
        return opened ? "open: " + opened.host->getUserRightDescription().value_or("-")
                      : opened.error;
    };
    everyAllocationFails(Operation{[this] { return StandAloneHost::open(root.path()); }, textOf,
                                   "out of memory", [] {}, testing::Allocators::operatorNew,
                                   false});
    everyAllocationFails(Operation{[this] { return StandAloneHost::openOrDefaults(root.path()); },
                                   [](const auto& opened) {
                                       return opened
                                                  ? opened->getUserRightDescription().value_or("-")
                                                  : "null";
                                   },
                                   "null", [] {}, testing::Allocators::operatorNew, false});
}

TEST_F(HostMemory, AStandAloneHostAnswersOrHasNoAnswer) {
    put("host.json", R"({"rightLevel":")" + text + R"(","configServer":")" + text + R"("})");
    const auto alone = StandAloneHost::open(root.path()).host;
    everyAllocationFails(Operation{
        [&] { return alone->getStorageFilePath(1, std::nullopt, text, false); }, whole, "-"});
    everyAllocationFails(Operation{
        [&] { return alone->getStorageFilePath(1, std::nullopt, text, true); }, whole, "-"});
    everyAllocationFails(Operation{[&] { return alone->getUserRightDescription(); }, whole, "-"});
    everyAllocationFails(
        Operation{[&] { return alone->getSoftOptimizeConfigFilePath(0, text); }, whole, "-"});
    everyAllocationFails(
        Operation{[&] { return alone->getBaseOptimizeConfigFilePath(0, text); }, whole, "-"});
    everyAllocationFails(Operation{[&] { return alone->getDefualtFolderPath(4); }, whole, "-"});
    everyAllocationFails(Operation{[&] { return alone->configServer(); }, whole, "-"});
    // What the library asks it is answered the same way.
    const auto previous = setHost(alone);
    everyAllocationFails(
        Operation{[&] { return YGFrameComFun::getStorageFilePath(1, std::nullopt, text, false); },
                  whole, "-", [] {}, testing::Allocators::operatorNew, false});
    setHost(previous);
}

TEST_F(HostMemory, ThereIsAlwaysAHostAndAQueue) {
    const auto previous = setHost(nullptr);
    everyAllocationOfTheFirstCallFails(Operation{
        [] { return currentHost(); },
        [](const auto& found) { return std::string(found ? "a host" : "none"); }, "none"});
    const testing::FailingAllocations failing(1, testing::Failures::allFrom,
                                              testing::Allocators::all);
    EXPECT_NE(currentHost(), nullptr);
    EXPECT_NE(defaultMainQueue(), nullptr);
    setHost(previous);
}

TEST_F(HostMemory, ATaskIsQueuedOrLoggedAsLost) {
    int runs = 0;
    everyAllocationFails(Operation{[&] { return postToMainQueue([&runs] { ++runs; }); },
                                   [&](bool isTaken) {
                                       runPendingMainTasks();
                                       EXPECT_EQ(std::exchange(runs, 0), isTaken ? 1 : 0);
                                       return std::string(isTaken ? "taken" : "lost");
                                   },
                                   "lost"});
}

TEST_F(HostMemory, AWakeUpIsSetOrTheOneBeforeStays) {
    std::string woken;
    const auto prepare = [&] { setMainQueueWakeUp([&] { woken = "old"; }); };
    const auto textOf = [&] {
        postToMainQueue([] {});
        runPendingMainTasks();
        prepare();
        return woken;
    };
    everyAllocationFails(
        Operation{[&] { setMainQueueWakeUp([&] { woken = "new"; }); }, textOf, "old", prepare});
    setMainQueueWakeUp({});
}

TEST_F(HostMemory, AnObserverIsAddedOrNot) {
    NotificationCenter center;
    int calls = 0;
    const auto add = [&] {
        return center.addObserver("short", nullptr, [&](const auto&) { ++calls; });
    };
    { const auto first = add(); }
    everyAllocationFails(Operation{add,
                                   [&](const auto&) {
                                       center.post("short", nullptr);
                                       return std::to_string(std::exchange(calls, 0));
                                   },
                                   "0"});
    everyAllocationOfTheFirstCallFails(
        Operation{[&] {
                      return NotificationCenter::standard().addObserver(
                          "short", nullptr, [&](const auto&) { ++calls; });
                  },
                  [&](const auto&) {
                      NotificationCenter::standard().post("short", nullptr);
                      return std::to_string(std::exchange(calls, 0));
                  },
                  "0"});
}

TEST_F(HostMemory, ANotificationReachesAllObserversOrIsLogged) {
    NotificationCenter center;
    int calls = 0;
    const auto one = center.addObserver(text, nullptr, [&](const auto&) { ++calls; });
    const auto other = center.addObserver(text, nullptr, [&](const auto&) { ++calls; });
    everyAllocationFails(Operation{[&] { center.post(text, nullptr); },
                                   [&] { return std::to_string(std::exchange(calls, 0)); }, "0"});
}

TEST_F(HostMemory, ALogLineIsWrittenWithoutMemory) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const int standardError = ::dup(STDERR_FILENO);
    ::dup2(ends[1], STDERR_FILENO);
    {
        const testing::FailingAllocations failing(1, testing::Failures::allFrom,
                                                  testing::Allocators::all);
        writeConsoleLine("a line\nof an ordinary length");
    }
    ::dup2(standardError, STDERR_FILENO);
    ::close(standardError);
    std::array<char, 100> line;
    const ssize_t size = ::read(ends[0], line.data(), line.size());
    ::close(ends[0]);
    ::close(ends[1]);
    EXPECT_EQ(std::string_view(line.data(), static_cast<std::size_t>(size)),
              "a line of an ordinary length\n");
}

TEST_F(HostMemory, JsonIsReadAndWrittenAsAWholeOrNotAtAll) {
    const std::string json = R"({"a":[1,2.5,true,null,")" + text + R"("],")" + text + R"(":{}})";
    const auto textOf = [](const JsonValue::Parsed& parsed) {
        std::string out;
        if (!parsed)
            return parsed.error;
        EXPECT_TRUE(parsed.value->appendTo(out));
        return out;
    };
    for (const bool positions : {false, true}) {
        everyAllocationFails(Operation{[&] { return JsonValue::parse(json, {positions}); }, textOf,
                                       "out of memory", [] {}, testing::Allocators::all, false});
    }
    const JsonValue value = *JsonValue::parse(json).value;
    const auto append = [&](auto write) {
        everyAllocationFails(Operation{[&, write] {
                                           std::string out;
                                           {
                                               const testing::PausedFailures paused;
                                               out = "before" + text;
                                           }
                                           const bool isWritten = write(out);
                                           const testing::PausedFailures paused;
                                           EXPECT_TRUE(isWritten || out == "before" + text);
                                           return isWritten ? out : std::string();
                                       },
                                       whole, "", [] {}, testing::Allocators::operatorNew, false});
    };
    append([&](std::string& out) { return value.appendTo(out); });
    append([&](std::string& out) { return appendJsonText(out, text); });
}

class Entry {
public:
    static constexpr auto modelFields() { return std::tuple{ModelField{"key", &Entry::key}}; }
    std::optional<std::string> key;
};

class Book {
public:
    static constexpr auto modelFields() {
        return std::tuple{ModelField{"title", &Book::title}, ModelField{"entries", &Book::entries}};
    }
    std::optional<std::string> title;
    ModelList<Entry> entries;
};

TEST_F(HostMemory, AModelIsFilledAndWrittenAsAWholeOrNotAtAll) {
    const std::string json =
        R"({"title":")" + text + R"(","entries":[{"key":")" + text + R"("},{"key":"b"}]})";
    const auto textOf = [](const auto& model) {
        return model ? modelToJSONString(*model) : std::string("null");
    };
    everyAllocationFails(Operation{[&] { return modelWithJSON<Book>(json); }, textOf, "null", [] {},
                                   testing::Allocators::operatorNew, false});
    const auto book = modelWithJSON<Book>(json);
    const JsonList list = book->entries.json();
    everyAllocationFails(
        Operation{[&] { return modelArrayWithClass<Entry>(list); },
                  [](const auto& models) { return std::to_string(models ? models->size() : 0); },
                  "0", [] {}, testing::Allocators::operatorNew, false});
    everyAllocationFails(Operation{[&] { return modelToJSONString(*book); }, whole, "", [] {},
                                   testing::Allocators::operatorNew, false});
}

}  // namespace
}  // namespace yg

#endif
