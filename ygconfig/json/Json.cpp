// SPDX-License-Identifier: MIT
#include "ygconfig/json/Json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <new>

#include "YGConfigManager/host/JsonValue.h"

namespace yg::tool {

void JsonWriter::write(float number) {
    // The digits of a double are written, so it gets the double that the float's own digits stand
    // for.
    char digits[32];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number);
    double written = number;
    std::from_chars(digits, end.ptr, written);
    write(written);
}

void JsonWriter::write(double number) {
    if (std::isinf(number)) {
        writeText(number > 0 ? "inf" : "-inf");
        return;
    }
    if (std::isnan(number)) {
        write(nullptr);
        return;
    }
    const double size = std::abs(number);
    const bool isPlain = size == 0 || (size >= 1e-4 && size < 1e15);
    char digits[32];
    const std::to_chars_result end =
        std::to_chars(digits, digits + sizeof digits, number,
                      isPlain ? std::chars_format::fixed : std::chars_format::scientific);
    const std::string_view text(digits, static_cast<std::size_t>(end.ptr - digits));
    pending_ += text;
    // Marks the number as one that is not an integer.
    if (isPlain && text.find('.') == std::string_view::npos)
        pending_ += ".0";
}

void JsonWriter::writeText(std::string_view text) {
    const std::size_t begin = pending_.size();
    if (!appendJsonText(pending_, text))
        throw std::bad_alloc();
    if (form_ == JsonForm::lines)
        return;
    std::size_t at = pending_.find('<', begin);
    if (at == std::string::npos)
        return;
    const std::string rest = pending_.substr(at);
    pending_.resize(at);
    for (at = 0; at < rest.size();) {
        const std::size_t next = std::min(rest.find('<', at + 1), rest.size());
        pending_.append("\\u003c").append(rest, at + 1, next - at - 1);
        at = next;
    }
}

void JsonWriter::newLine() {
    if (form_ == JsonForm::lines)
        pending_.append(1, '\n').append(2 * level_, ' ');
}

void JsonWriter::begin(char bracket) {
    pending_ += bracket;
    ++level_;
    isFirst_ = true;
}

void JsonWriter::beginItem() {
    output_.passOn();
    if (!isFirst_)
        pending_ += ',';
    newLine();
    isFirst_ = false;
}

void JsonWriter::end(char bracket) {
    --level_;
    if (!isFirst_)
        newLine();
    pending_ += bracket;
    isFirst_ = false;
}

}  // namespace yg::tool
