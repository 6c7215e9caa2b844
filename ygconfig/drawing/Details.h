// SPDX-License-Identifier: MIT
//
// What stands beside a branch of a tree: items side by side, and names in them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace yg::tool {

/// The name, printable; "" in quotes when it is empty.
std::string quotedIfEmpty(std::string_view name);

/// The same, and something else when it is absent.
std::string nameOr(const std::optional<std::string>& name, std::string_view otherwise);

/// Two items side by side; one alone when the other is empty.
std::string joined(std::string_view left, std::string_view right);

/// Items side by side.
class Details {
public:
    /// Nothing when the item is empty.
    void add(std::string_view item);
    void addIf(bool isSet, std::string_view item);
    /// Nothing when the text is absent; an empty one shows as "".
    void add(std::string_view word, const std::optional<std::string>& text);
    void add(std::string_view word, const std::shared_ptr<std::vector<std::string>>& names);
    /// Nothing when the number is the default.
    void add(std::string_view word, float number, float byDefault);
    std::string text() && { return std::move(text_); }

private:
    std::string text_;
};

}  // namespace yg::tool
