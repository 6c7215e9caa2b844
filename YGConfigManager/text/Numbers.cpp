// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "YGConfigManager/text/Characters.h"

namespace yg::text {

namespace {

/// A text that begins with a number, up to its sign.
struct Signed {
    bool negative;
    std::string_view rest;
};

Signed skipBlanksAndSign(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    if (text.starts_with('-'))
        return {true, text.substr(1)};
    return {false, text.starts_with('+') ? text.substr(1) : text};
}

template <class Integer>
LeadingNumber<Integer> readInteger(std::string_view text) {
    const auto [negative, rest] = skipBlanksAndSign(text);
    if (rest.empty() || !isDigit(rest.front()))
        return {0, NumberOddity::noDigits};
    // The minus sign is read along, because the smallest value has no positive counterpart.
    const char* const begin = negative ? rest.data() - 1 : rest.data();
    const char* const end = rest.data() + rest.size();
    Integer value = 0;
    const std::from_chars_result result = std::from_chars(begin, end, value);
    if (result.ec == std::errc::result_out_of_range) {
        using Limits = std::numeric_limits<Integer>;
        return {negative ? Limits::min() : Limits::max(), NumberOddity::outOfRange};
    }
    return {value, result.ptr == end ? NumberOddity::none : NumberOddity::tail};
}

/// Whether a decimal number that no double can hold is too large rather than too small: whether its
/// first digit other than 0 stands before the point once the exponent has moved it.
bool isTooLarge(std::string_view number) {
    const std::size_t mantissaSize = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, mantissaSize);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = mantissa.find_first_of("123456789");
    const std::int64_t exponent =
        leadingInt64(number.substr(std::min(mantissaSize + 1, number.size())));
    // Both sides are bounded: the clamped exponent is compared, never added to.
    return exponent > static_cast<std::int64_t>(first) - static_cast<std::int64_t>(point);
}

}  // namespace

LeadingNumber<std::int32_t> readLeadingInt32(std::string_view text) {
    return readInteger<std::int32_t>(text);
}

LeadingNumber<std::int64_t> readLeadingInt64(std::string_view text) {
    return readInteger<std::int64_t>(text);
}

LeadingNumber<double> readLeadingDouble(std::string_view text) {
    const auto [negative, rest] = skipBlanksAndSign(text);
    const std::string_view digits = rest.starts_with('.') ? rest.substr(1) : rest;
    if (digits.empty() || !isDigit(digits.front()))
        return {0, NumberOddity::noDigits};
    const char* const end = rest.data() + rest.size();
    double value = 0;
    const std::from_chars_result result = std::from_chars(rest.data(), end, value);
    NumberOddity oddity = result.ptr == end ? NumberOddity::none : NumberOddity::tail;
    if (result.ec == std::errc::result_out_of_range) {
        const auto size = static_cast<std::size_t>(result.ptr - rest.data());
        value = 0;
        if (isTooLarge(rest.substr(0, size))) {
            value = std::numeric_limits<double>::infinity();
            oddity = NumberOddity::outOfRange;
        }
    }
    return {negative ? -value : value, oddity};
}

std::optional<double> queryNumber(std::string_view text) {
    text = withoutBlanksAround(text);
    const std::string_view digits = text.substr(text.starts_with('-') ? 1 : 0);
    const bool isNumber = digits.find_first_not_of(".0123456789") == std::string_view::npos &&
                          digits.find_first_not_of('.') != std::string_view::npos &&
                          std::ranges::count(digits, '.') <= 1;
    return isNumber ? std::optional(readLeadingDouble(text).value) : std::nullopt;
}

LeadingNumber<float> readLeadingFloat(std::string_view text) {
    // Beyond the range of a float the conversion gives an infinity or 0.
    static_assert(std::numeric_limits<float>::is_iec559);
    const LeadingNumber<double> number = readLeadingDouble(text);
    const auto value = static_cast<float>(number.value);
    return {value, std::isinf(value) ? NumberOddity::outOfRange : number.oddity};
}

}  // namespace yg::text
