// SPDX-License-Identifier: MIT
//
// A text, or none, for an operation that keeps it: made from what an OptionalText is made from, and
// by moving from a std::string or a std::optional of one. What is not a std::string is copied,
// which throws std::bad_alloc when memory does not suffice.
#pragma once

#include <concepts>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "YGConfigManager/text/OptionalText.h"

namespace yg {

class OwnedText {
public:
    /// Absent.
    OwnedText() = default;
    OwnedText(std::nullopt_t) {}

    /// Moved in.
    OwnedText(std::string text) noexcept : text_(std::move(text)) {}
    OwnedText(std::optional<std::string> text) noexcept : text_(std::move(text)) {}

    /// Copied from whatever an OptionalText is made from.
    template <class Text>
    requires(std::convertible_to<const Text&, OptionalText> && !std::same_as<Text, std::string> &&
             !std::same_as<Text, std::optional<std::string>>) OwnedText(const Text& text) {
        if (const OptionalText given = text)
            text_.emplace(*given);
    }

    /// The text as it is kept.
    operator std::optional<std::string>() && noexcept { return std::move(text_); }

private:
    std::optional<std::string> text_;
};

}  // namespace yg
