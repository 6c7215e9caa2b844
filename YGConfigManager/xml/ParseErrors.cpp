// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/ParseErrors.h"

#include <algorithm>
#include <string>

#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

namespace {

/// Further errors of one text say nothing new, and some texts would give one for each byte.
constexpr std::size_t errorLimit = 8;
constexpr std::size_t messageLimit = 200;

}  // namespace

void ParseErrors::add(int line, std::optional<std::size_t> parserAt, std::string_view message) {
    TextPoint point = parserAt ? pointAt(*parserAt) : TextPoint();
    if (point.line != static_cast<std::uint32_t>(line))
        point = {static_cast<std::uint32_t>(line), 0};
    add(point, message);
}

bool ParseErrors::full() const {
    return errors_.size() == errorLimit;
}

TextPoint ParseErrors::pointAt(std::size_t offset) {
    if (!lines_)
        lines_.emplace(text_);
    return lines_->pointAt(text_, offset);
}

void ParseErrors::add(TextPoint point, std::string_view message) {
    if (full())
        return;
    const std::size_t end = message.find_last_not_of(" \n");
    std::string one = storableText(message.substr(0, end == std::string_view::npos ? 0 : end + 1));
    if (one.size() > messageLimit) {
        // Some messages quote what they found, however long.
        one.resize(text::validUtf8Prefix(one.substr(0, messageLimit)));
        one += "...";
    }
    std::replace(one.begin(), one.end(), '\n', ' ');
    errors_.push_back({point.line, point.column, std::move(one)});
}

}  // namespace yg::xml
