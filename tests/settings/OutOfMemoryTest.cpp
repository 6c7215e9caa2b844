// SPDX-License-Identifier: MIT
//
// Lookups when memory runs out at any of their allocations: the fallback, no lock left behind. The
// thread sanitizer lets nobody else define the allocation functions, and has no such tests.
#if defined(__SANITIZE_THREAD__)
#define YG_NO_ALLOCATION_OF_OUR_OWN
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define YG_NO_ALLOCATION_OF_OUR_OWN
#endif
#endif
#ifndef YG_NO_ALLOCATION_OF_OUR_OWN

#include <cstddef>
#include <cstdlib>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "settings/SettingsFixture.h"

namespace {

/// The allocation of this thread that fails, counted from 1; 0 for none.
thread_local std::size_t failing = 0;

}  // namespace

void* operator new(std::size_t size) {
    if (failing > 0 && --failing == 0)
        throw std::bad_alloc();
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace yg {
namespace {

/// Lets each allocation of a call fail, one in each round, and then none. Answers what the rounds
/// answered; the last one is the right answer.
template <class Call>
auto answersWithFailures(Call call) {
    std::vector<decltype(call())> answers;
    for (std::size_t failure = 1;; ++failure) {
        failing = failure;
        auto answer = call();
        const bool hasFailed = failing == 0;
        failing = 0;
        answers.push_back(std::move(answer));
        if (!hasFailed)
            return answers;
    }
}

class OutOfMemory : public yg::testing::StorageTest {
protected:
    /// Long enough to be allocated.
    const std::string text = std::string(100, 'x');
};

TEST_F(OutOfMemory, AnItemReadsAsNone) {
    put("app.xml", "<config><a><b>" + text + "</b></a></config>");
    const auto store = YGAppConfigManager::initWithFileName("app.xml");
    for (const std::string_view item : {"b", "b[1]"}) {
        const auto answers = answersWithFailures([&] { return store->getItemText("a", item); });
        ASSERT_GT(answers.size(), 1u);
        for (const auto& answer : answers)
            EXPECT_TRUE(!answer || *answer == text);
        EXPECT_EQ(answers.front(), std::nullopt);
        EXPECT_EQ(answers.back(), text);
    }
}

TEST_F(OutOfMemory, AWebPageIsBlankWithAMessageOfItsOwn) {
    put("pages.xml", "<urls><url key='k'>" + text + "</url></urls>");
    const auto table = YGWebPageUrlConfig::initWithFileName("pages.xml");
    for (const std::string_view key : {"k", "x' or @key='k"}) {
        host->clear();
        const auto answers = answersWithFailures([&] { return table->getWebPageUrlByKey(key); });
        ASSERT_GT(answers.size(), 1u);
        for (const auto& answer : answers)
            EXPECT_TRUE(answer == "about:blank" || answer == text);
        EXPECT_EQ(answers.back(), text);
        EXPECT_EQ(host->businessLog().front(),
                  "-[YGWebPageUrlConfig getWebPageUrlByKey:] L77 获取不到4 Key: [" +
                      std::string(key) + "]");
    }
}

}  // namespace
}  // namespace yg

#endif
