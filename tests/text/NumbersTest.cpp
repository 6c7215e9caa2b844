// SPDX-License-Identifier: MIT
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

#include "YGConfigManager/text/Numbers.h"

namespace yg::text {
namespace {

using enum NumberOddity;

template <class T>
struct Row {
    std::string_view text;
    T value;
    NumberOddity oddity;
};

template <class T>
void expectRow(const Row<T>& row, const LeadingNumber<T>& number) {
    EXPECT_EQ(number.value, row.value) << '"' << row.text << '"';
    EXPECT_EQ(static_cast<int>(number.oddity), static_cast<int>(row.oddity))
        << '"' << row.text << '"';
}

TEST(Numbers, Int32IsTheLeadingDecimalInteger) {
    constexpr Row<std::int32_t> rows[] = {
        {"0", 0, none},
        {"12", 12, none},
        {"-7", -7, none},
        {"+5", 5, none},
        {" 12", 12, none},
        {" \t\n\v\f\r-3", -3, none},
        {"007", 7, none},
        {"2147483647", 2147483647, none},
        {"-2147483648", -2147483647 - 1, none},
        {"000000000000000000000000000042", 42, none},
        {" 12abc", 12, tail},
        {"12 ", 12, tail},
        {"12\n", 12, tail},
        {"1e3", 1, tail},
        {"12.7", 12, tail},
        {"0x10", 0, tail},
        {"1,5", 1, tail},
        {"2147483648", 2147483647, outOfRange},
        {"99999999999", 2147483647, outOfRange},
        {"-2147483649", -2147483647 - 1, outOfRange},
        {"99999999999999999999999999999999", 2147483647, outOfRange},
        {"99999999999 px", 2147483647, outOfRange},
        {"", 0, noDigits},
        {"   ", 0, noDigits},
        {"-", 0, noDigits},
        {"+", 0, noDigits},
        {"--5", 0, noDigits},
        {"+-5", 0, noDigits},
        {"-+5", 0, noDigits},
        {"++5", 0, noDigits},
        {"- 5", 0, noDigits},
        {"x", 0, noDigits},
        {".5", 0, noDigits},
        {"\xC2\xA0"
         "5",
         0, noDigits},
        {"\xE3\x80\x80"
         "5",
         0, noDigits},
        {std::string_view("\0005", 2), 0, noDigits},
    };
    for (const auto& row : rows) {
        expectRow(row, readLeadingInt32(row.text));
        EXPECT_EQ(leadingInt32(row.text), row.value);
    }
}

TEST(Numbers, Int64IsTheLeadingDecimalInteger) {
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
    constexpr Row<std::int64_t> rows[] = {
        {"0", 0, none},
        {"+99999999999", 99999999999, none},
        {"9223372036854775807", largest, none},
        {" -9223372036854775808", smallest, none},
        {"12abc", 12, tail},
        {"9223372036854775808", largest, outOfRange},
        {"-9223372036854775809", smallest, outOfRange},
        {"123456789012345678901234567890", largest, outOfRange},
        {"", 0, noDigits},
        {"- 5", 0, noDigits},
        {"x", 0, noDigits},
    };
    for (const auto& row : rows) {
        expectRow(row, readLeadingInt64(row.text));
        EXPECT_EQ(leadingInt64(row.text), row.value);
    }
}

TEST(Numbers, DoubleIsTheLeadingDecimalNumber) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr Row<double> rows[] = {
        {"0", 0, none},
        {"12", 12, none},
        {"-1.5", -1.5, none},
        {"+5", 5, none},
        {" \t\n\v\f\r2.25", 2.25, none},
        {".5", 0.5, none},
        {"-.5", -0.5, none},
        {"+.5", 0.5, none},
        {"5.", 5, none},
        {"1e3", 1000, none},
        {"1E3", 1000, none},
        {"1e+3", 1000, none},
        {"2.5e-1", 0.25, none},
        {"5.e1", 50, none},
        {"0.1", 0.1, none},
        {"9007199254740993", 9007199254740992, none},
        {"1.7976931348623157e308", std::numeric_limits<double>::max(), none},
        {"4.9406564584124654e-324", std::numeric_limits<double>::denorm_min(), none},
        {"0e999999", 0, none},
        {"0.000e-999999999999999999999", 0, none},
        {"1e", 1, tail},
        {"1e+", 1, tail},
        {"1ex", 1, tail},
        {"1,5", 1, tail},
        {"1.2.3", 1.2, tail},
        {"1 ", 1, tail},
        {"12px", 12, tail},
        {"0x10", 0, tail},
        {"1e309", infinity, outOfRange},
        {"-1e309", -infinity, outOfRange},
        {"1e99999999999999999999999", infinity, outOfRange},
        {"0.001e400 px", infinity, outOfRange},
        {"1e-400", 0, none},
        {"-1e-400", 0, none},
        {"1e-99999999999999999999999", 0, none},
        {"12345678901234567890e-400", 0, none},
        {"1e-400px", 0, tail},
        {"", 0, noDigits},
        {" ", 0, noDigits},
        {".", 0, noDigits},
        {"-.", 0, noDigits},
        {".e5", 0, noDigits},
        {"e5", 0, noDigits},
        {"--5", 0, noDigits},
        {"+-5", 0, noDigits},
        {"-+5", 0, noDigits},
        {"- 5", 0, noDigits},
        {"inf", 0, noDigits},
        {"-inf", 0, noDigits},
        {"infinity", 0, noDigits},
        {"nan", 0, noDigits},
        {"-nan", 0, noDigits},
        {"NAN(1)", 0, noDigits},
        {"x", 0, noDigits},
        {"\xC2\xA0"
         "5",
         0, noDigits},
    };
    for (const auto& row : rows)
        expectRow(row, readLeadingDouble(row.text));
}

TEST(Numbers, DoubleWithHundredsOfDigitsIsLargeOrSmallByThePlaceOfItsPoint) {
    const std::string zeros(400, '0');
    EXPECT_EQ(readLeadingDouble("1" + zeros).value, std::numeric_limits<double>::infinity());
    EXPECT_EQ(readLeadingDouble("." + zeros + "1").value, 0);
    EXPECT_EQ(readLeadingDouble("1" + zeros + "e-400").value, 1);
    EXPECT_EQ(readLeadingDouble("." + zeros + "1e401").value, 1);
    EXPECT_EQ(readLeadingDouble(zeros + "7").value, 7);
    EXPECT_EQ(readLeadingDouble("1" + zeros + "e-900").value, 0);
    EXPECT_EQ(readLeadingDouble(zeros + "1e-330").value, 0);
    EXPECT_EQ(readLeadingDouble("." + zeros + "1e900").value,
              std::numeric_limits<double>::infinity());
}

TEST(Numbers, FloatIsTheDoubleNarrowed) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr Row<float> rows[] = {
        {"0.1", 0.1F, none},
        {" -2.5", -2.5F, none},
        {"16777217", 16777216.0F, none},
        {"3.4028235e38", std::numeric_limits<float>::max(), none},
        {"3.4028235677e38", std::numeric_limits<float>::max(), none},
        {"1e-60", 0.0F, none},
        {"1e-400", 0.0F, none},
        {"1.5 ", 1.5F, tail},
        {"1,5", 1.0F, tail},
        {"1e39", infinity, outOfRange},
        {"-1e39", -infinity, outOfRange},
        {"1e39px", infinity, outOfRange},
        {"1e999", infinity, outOfRange},
        {"inf", 0.0F, noDigits},
        {"", 0.0F, noDigits},
    };
    for (const auto& row : rows) {
        expectRow(row, readLeadingFloat(row.text));
        EXPECT_EQ(leadingFloat(row.text), row.value);
    }
}

TEST(Numbers, FloatIsRoundedTwice) {
    // Just above the middle of two floats by less than a double can hold: read as a double it is
    // the middle and goes to the even one, read as a float at once it would go up.
    EXPECT_EQ(leadingFloat("1.00000005960464477540"), 1.0F);
}

TEST(Numbers, AQueryTakesTheWholeTextForANumberOrNone) {
    constexpr std::pair<std::string_view, std::optional<double>> rows[] = {
        {"1", 1},
        {" \r\n\t1\t\n\r ", 1},
        {"01.00", 1},
        {"1.", 1},
        {".5", 0.5},
        {"-2.5", -2.5},
        {"-.5", -0.5},
        {"-0", 0},
        {"16777217", 16777217},
        {"", {}},
        {" ", {}},
        {".", {}},
        {"-", {}},
        {"-.", {}},
        {"+1", {}},
        {"--1", {}},
        {"- 1", {}},
        {"1 2", {}},
        {"1e0", {}},
        {"0x1", {}},
        {"1,5", {}},
        {"1.2.3", {}},
        {"1-", {}},
        {"inf", {}},
        {"\v1", {}},
        {"1\f", {}},
        {"1..", {}},
        {"\xEF\xBC\x91", {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(queryNumber(row.first), row.second) << row.first;
    EXPECT_EQ(queryNumber("1" + std::string(400, '0')), std::numeric_limits<double>::infinity());
    EXPECT_EQ(queryNumber("1" + std::string(400, '0') + "--"), std::nullopt);
}

TEST(Numbers, ReadingStopsAtTheEndOfTheText) {
    const std::string_view text = "12345";
    EXPECT_EQ(leadingInt32(text.substr(0, 2)), 12);
    EXPECT_EQ(leadingFloat(text.substr(0, 2)), 12.0F);
    EXPECT_EQ(leadingInt32(std::string_view()), 0);
    EXPECT_EQ(leadingFloat(std::string_view()), 0.0F);
}

}  // namespace
}  // namespace yg::text
