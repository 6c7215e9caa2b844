// SPDX-License-Identifier: MIT
//
// The number that a text begins with, as configuration files hold them: blanks before it are
// skipped, whatever follows it is ignored, and a text without a number counts as 0. Blanks are
// space, tab, line feed, vertical tab, form feed and carriage return. The locale has no say.
// Any thread may call.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace yg::text {

/// What the author of a text may want to know about a number in it.
enum class NumberOddity {
    none,
    /// There is no number; the value is 0.
    noDigits,
    /// Other characters, blanks included, follow the number.
    tail,
    /// The number does not fit the type: an integer was clamped, a float became an infinity.
    /// Takes precedence over `tail`.
    outOfRange,
};

/// A number together with what is odd about its text.
template <class T>
struct LeadingNumber {
    T value;
    NumberOddity oddity;
};

/// The integer at the beginning: blanks, at most one sign, decimal digits. Without a digit 0; too
/// large or too small gives the type's largest or smallest value.
LeadingNumber<std::int32_t> readLeadingInt32(std::string_view text);
LeadingNumber<std::int64_t> readLeadingInt64(std::string_view text);

/// The decimal number at the beginning: blanks, at most one sign, digits with at most one point (a
/// digit on at least one side of it), and an exponent if it has digits. Anything else, "inf" and
/// hexadecimal too, is 0. What is too large becomes an infinity, what is too small 0, and neither
/// the latter nor lost digits are odd.
LeadingNumber<double> readLeadingDouble(std::string_view text);

/// As readLeadingDouble, the result narrowed to float.
LeadingNumber<float> readLeadingFloat(std::string_view text);

/// The number that all of a text is to a query, which XPath calls its number: digits with at most
/// one point (a digit on at least one side of it), at most a minus before them, and spaces, tabs,
/// line feeds and carriage returns around. Absent for any other text.
std::optional<double> queryNumber(std::string_view text);

/// The value alone.
inline std::int32_t leadingInt32(std::string_view text) {
    return readLeadingInt32(text).value;
}
inline std::int64_t leadingInt64(std::string_view text) {
    return readLeadingInt64(text).value;
}
inline float leadingFloat(std::string_view text) {
    return readLeadingFloat(text).value;
}

}  // namespace yg::text
