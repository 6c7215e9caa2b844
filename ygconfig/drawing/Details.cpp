// SPDX-License-Identifier: MIT
#include "ygconfig/drawing/Details.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

constexpr std::string_view between = "  ";

/// A name that cannot be taken for several.
std::string nameInList(std::string_view name) {
    const std::string shown = printable(name);
    return name.empty() || name.find_first_of(",\"") != std::string_view::npos ? '"' + shown + '"'
                                                                               : shown;
}

}  // namespace

std::string quotedIfEmpty(std::string_view name) {
    return name.empty() ? "\"\"" : printable(name);
}

std::string nameOr(const std::optional<std::string>& name, std::string_view otherwise) {
    return name ? quotedIfEmpty(*name) : std::string(otherwise);
}

void Details::add(std::string_view item) {
    if (!item.empty())
        items_.emplace_back(item);
}

void Details::addIf(bool isSet, std::string_view item) {
    if (isSet)
        add(item);
}

void Details::append(Details items) {
    items_.insert(items_.end(), std::make_move_iterator(items.items_.begin()),
                  std::make_move_iterator(items.items_.end()));
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
        list += (&name == &names->front() ? " " : ", ") + nameInList(name);
    add(list);
}

void Details::add(std::string_view word, float number, float byDefault) {
    if (number == byDefault)
        return;
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number);
    add(std::string(word) + " " + std::string(digits, end.ptr));
}

std::size_t Details::width() const {
    std::size_t width = items_.empty() ? 0 : (items_.size() - 1) * between.size();
    for (const std::string& item : items_)
        width += shownWidth(item);
    return width;
}

std::vector<std::string> Details::lines(std::size_t columns) const {
    std::vector<std::string> lines;
    std::size_t taken = 0;
    for (const std::string& item : items_) {
        const std::size_t width = shownWidth(item);
        if (!lines.empty() && taken + between.size() + width <= columns) {
            lines.back().append(between).append(item);
            taken += between.size() + width;
            continue;
        }
        std::ranges::move(folded(item, columns), std::back_inserter(lines));
        taken = shownWidth(lines.back());
    }
    return lines;
}

std::string headed(std::string_view title, const Details& details, const Paint& paint) {
    const std::size_t indent = displayWidth(title) + between.size();
    std::string text = paint(Tone::heading, title);
    std::string_view before = between;
    const std::string below = '\n' + std::string(indent, ' ');
    for (const std::string& line :
         details.lines(paint.columns() - std::min(paint.columns(), indent))) {
        text.append(before).append(line);
        before = below;
    }
    return text + '\n';
}

}  // namespace yg::tool
