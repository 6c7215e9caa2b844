// SPDX-License-Identifier: MIT
//
// Numbers of JSON in locales with another decimal point. The program answers for the C library what
// the decimal point is, because not every machine has such a locale.
#include <array>
#include <clocale>
#include <dlfcn.h>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "YGConfigManager/host/JsonValue.h"

namespace {

/// The point for this thread; that of the locale when it is null.
thread_local std::array<char, 4>* decimalPoint = nullptr;

}  // namespace

// Takes the place of the C library's function in this program.
extern "C" __attribute__((visibility("default"))) struct lconv* localeconv() noexcept {
    static const auto real =
        reinterpret_cast<struct lconv* (*)()>(::dlsym(RTLD_NEXT, "localeconv"));
    static thread_local struct lconv answer;
    answer = *real();
    if (decimalPoint)
        answer.decimal_point = decimalPoint->data();
    return &answer;
}

namespace {

using yg::JsonValue;

/// The text read and written again, or the error, in a locale with such a decimal point.
std::string readWithPoint(std::array<char, 4> point, std::string_view bytes) {
    decimalPoint = &point;
    EXPECT_STREQ(std::localeconv()->decimal_point, point.data());
    const JsonValue::Parsed parsed = JsonValue::parse(bytes);
    decimalPoint = nullptr;
    std::string out;
    if (parsed)
        parsed.value->appendTo(out);
    return parsed ? out : parsed.error;
}

// A decimal point of two bytes once ended each number.
TEST(JsonLocale, NumbersAreTheSameWithEveryDecimalPoint) {
    const std::string large(310, '1');
    for (const std::array<char, 4> point :
         {std::array<char, 4>{"."}, std::array<char, 4>{","}, std::array<char, 4>{"\u066B"},
          std::array<char, 4>{"\u2396"}, std::array<char, 4>{""}}) {
        EXPECT_EQ(readWithPoint(point, "[3.0e2,-0.5,1.25,7,\"1.5\",1e2]"),
                  "[300,-0.5,1.25,7,\"1.5\",100]");
        EXPECT_EQ(readWithPoint(point, "[1.5e400]"), "line 1, column 8: number out of range");
        EXPECT_EQ(readWithPoint(point, large + ".5e-308"), "11.11111111111111");
        EXPECT_EQ(readWithPoint(point, "0.5e-700"), "0");
    }
}

}  // namespace
