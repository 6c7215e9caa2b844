// SPDX-License-Identifier: MIT
#include "ygconfig/Json.h"

#include <charconv>
#include <cmath>

namespace yg::tool {

namespace {

template <class Number>
Json infinityOr(Number number, double written) {
    if (std::isinf(number))
        return number > 0 ? "inf" : "-inf";
    return written;
}

}  // namespace

Json numberJson(float number) {
    // The JSON library writes the digits that a double needs, so it gets the double that the
    // float's own digits stand for.
    char digits[32];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number);
    double written = 0;
    std::from_chars(digits, end.ptr, written);
    return infinityOr(number, written);
}

Json numberJson(double number) {
    return infinityOr(number, number);
}

std::string jsonText(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

Answer jsonAnswer(const Json& json) {
    const bool isNone = json.is_null() || json == false;
    return {jsonText(json), isNone ? ExitCode::noAnswer : ExitCode::answer};
}

}  // namespace yg::tool
