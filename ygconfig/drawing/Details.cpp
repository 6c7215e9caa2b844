// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/Details.h"

#include <charconv>

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr std::string_view between = "  ";

}  // namespace

std::string quotedIfEmpty(std::string_view name) {
    return name.empty() ? "\"\"" : printable(name);
}

std::string nameOr(const std::optional<std::string>& name, std::string_view otherwise) {
    return name ? quotedIfEmpty(*name) : std::string(otherwise);
}

std::string joined(std::string_view left, std::string_view right) {
    std::string both(left);
    if (!left.empty() && !right.empty())
        both += between;
    return both.append(right);
}

void Details::add(std::string_view item) {
    if (item.empty())
        return;
    if (!text_.empty())
        text_ += between;
    text_ += item;
}

void Details::addIf(bool isSet, std::string_view item) {
    if (isSet)
        add(item);
}

void Details::add(std::string_view word, const std::optional<std::string>& text) {
    if (text)
        add(std::string(word) + " " + quotedIfEmpty(*text));
}

void Details::add(std::string_view word, const std::shared_ptr<std::vector<std::string>>& names) {
    if (!names)
        return;
    std::string list(word);
    for (const std::string& name : *names)
        list += (&name == &names->front() ? " " : ", ") + quotedIfEmpty(name);
    add(list);
}

void Details::add(std::string_view word, float number, float byDefault) {
    if (number == byDefault)
        return;
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number);
    add(std::string(word) + " " + std::string(digits, end.ptr));
}

}  // namespace yg::tool
