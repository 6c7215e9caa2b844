// SPDX-License-Identifier: MIT
//
// What stands beside a branch of a tree: items side by side, and names in them.
#pragma once

#include <concepts>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ygconfig/drawing/Paint.h"

namespace yg::tool {

/// The name, printable; "" in quotes when it is empty.
std::string quotedIfEmpty(std::string_view name);

/// The same, and something else when it is absent.
std::string nameOr(const std::optional<std::string>& name, std::string_view otherwise);

/// Items side by side. Each is printable and may have colours.
class Details {
public:
    Details() = default;
    /// One item; none when it is empty.
    template <std::convertible_to<std::string_view> Text>
    Details(const Text& item) {
        add(item);
    }

    /// Nothing when the item is empty.
    void add(std::string_view item);
    void addIf(bool isSet, std::string_view item);
    /// All items of another one.
    void append(Details items);
    /// Nothing when the text is absent; an empty one shows as "".
    void add(std::string_view word, const std::optional<std::string>& text);
    /// Names with a comma or a quotation mark stand in quotes.
    void add(std::string_view word, const std::shared_ptr<std::vector<std::string>>& names);
    /// Nothing when the number is the default.
    void add(std::string_view word, float number, float byDefault);

    bool empty() const { return items_.empty(); }
    /// The columns of all items in one line.
    std::size_t width() const;
    /// The items in lines of at most so many columns, which part items only when they are wider.
    std::vector<std::string> lines(std::size_t columns) const;

private:
    std::vector<std::string> items_;
};

/// A title with what stands beside it, as lines that fit, each with its line feed.
std::string headed(std::string_view title, const Details& details, const Paint& paint);

}  // namespace yg::tool
