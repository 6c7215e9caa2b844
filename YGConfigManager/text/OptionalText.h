// SPDX-License-Identifier: MIT
//
// How operations take texts. The operations of the public headers take a text as OptionalText, or
// as OwnedText where they keep it, and one rule holds for all of them: std::nullopt, an empty
// std::optional and a null pointer are an absent text, and where an operation does not say what
// that means, it is the same as "". Only what an application implements itself (Host,
// DiagnosticsSink) is called with plain texts; the library calls it with no null pointer.
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <string_view>
#include <type_traits>

namespace yg {

/// A number where a text is asked for. NULL, a number in some compilers, stays a null pointer.
template <class Number>
concept NumberInsteadOfText = std::is_arithmetic_v<Number> && !std::same_as<Number, decltype(NULL)>;

/// A text, or none, that is only looked at: made from a literal, a pointer to characters that end
/// in a 0, a std::string, a std::string_view, whatever else is a std::string_view, or a
/// std::optional of these. Lives as long as what it is made from. As cheap to pass as a
/// std::string_view.
class OptionalText {
public:
    /// Absent.
    constexpr OptionalText() = default;
    constexpr OptionalText(std::nullopt_t) {}

    /// Absent when the pointer is null.
    constexpr OptionalText(const char* text)
        : text_(text ? std::string_view(text) : std::string_view()) {}

    template <NumberInsteadOfText Number>
    OptionalText(Number) = delete;  // 0 is not the text "0"

    /// A text, an empty one too.
    template <class Text>
    requires(std::convertible_to<const Text&, std::string_view> &&
             !std::is_pointer_v<std::decay_t<const Text&>> &&
             !std::is_null_pointer_v<Text>) constexpr OptionalText(const Text& text)
        : text_(text) {
        if (!text_.data())
            text_ = "";
    }

    /// Absent when the std::optional is empty.
    template <class Text>
    requires std::convertible_to<const Text&, OptionalText>
    constexpr OptionalText(const std::optional<Text>& text) {
        if (text)
            *this = *text;
    }

    /// True when there is a text, an empty one too.
    constexpr explicit operator bool() const { return text_.data() != nullptr; }

    /// The text; "" when it is absent.
    constexpr std::string_view operator*() const { return text_; }
    constexpr const std::string_view* operator->() const { return &text_; }

    /// The text, or none.
    constexpr operator std::optional<std::string_view>() const {
        return *this ? std::optional(text_) : std::nullopt;
    }

private:
    std::string_view text_;  ///< at a null pointer when absent
};

}  // namespace yg
