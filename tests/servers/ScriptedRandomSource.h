// SPDX-License-Identifier: MIT
//
// A random source that gives the numbers of a test. A number that the test has not foreseen fails
// it.
#pragma once

#include <cstdint>
#include <deque>
#include <initializer_list>

#include <gtest/gtest.h>

#include "YGConfigManager/servers/RandomSource.h"

namespace yg::testing {

class ScriptedRandomSource final : public RandomSource {
public:
    explicit ScriptedRandomSource(std::initializer_list<std::uint32_t> numbers = {})
        : uniformNumbers(numbers) {}

    std::uint32_t uniform() override { return next(uniformNumbers); }
    int legacy() override { return next(legacyNumbers); }

    std::deque<std::uint32_t> uniformNumbers;
    std::deque<int> legacyNumbers;

private:
    template <class Number>
    static Number next(std::deque<Number>& numbers) {
        if (numbers.empty()) {
            ADD_FAILURE() << "a random number more than foreseen";
            return 0;
        }
        const Number number = numbers.front();
        numbers.pop_front();
        return number;
    }
};

/// Always the same number, from any thread: each choice takes the address at that index.
class ConstantRandomSource final : public RandomSource {
public:
    explicit ConstantRandomSource(std::uint32_t number) : number_(number) {}

    std::uint32_t uniform() override { return number_; }
    int legacy() override { return static_cast<int>(number_); }

private:
    std::uint32_t number_;
};

}  // namespace yg::testing
