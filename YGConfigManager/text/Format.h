// SPDX-License-Identifier: MIT
//
// Formatting for logs and descriptions, in the manner of printf but checked when it is compiled: an
// unknown placeholder, a missing or surplus argument and an argument of the wrong kind do not
// compile. Any thread may call.
//
// Placeholders:
//   %@        text: std::string, std::string_view, const char*, OptionalText, std::optional
//             of the first two, any class with `std::string description() const`, a pointer or
//             std::shared_ptr to one. What is absent or null prints "(null)".
//   %s        a plain byte string: std::string, std::string_view, const char*
//   %d, %ld   any integer, printed in full whatever its width; bool prints 0 or 1
//   %p        any pointer to an object, in hexadecimal with 0x
//   %%        a percent sign
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "YGConfigManager/text/OptionalText.h"

namespace yg::text {

/// What is wrong between a format and its arguments.
enum class FormatFault {
    none,
    unknownPlaceholder,
    argumentMissing,
    argumentSurplus,
    argumentOfWrongKind,
};

/// What is wrong with the format for arguments of these types; the first fault from the left.
template <class... Args>
constexpr FormatFault formatFault(std::string_view format);

/// A format that fits arguments of these types, made from a string literal. Functions that format
/// take it as `FormatString<std::type_identity_t<Args>...>`, so that the arguments alone decide.
template <class... Args>
class FormatString {
public:
    template <std::size_t size>
    // Implicit, so that a literal can stand where a format is expected.
    consteval FormatString(const char (&literal)[size]);

    constexpr std::string_view text() const { return text_; }

private:
    std::string_view text_;
};

/// The format with its placeholders replaced by the arguments, from left to right.
template <class... Args>
std::string format(FormatString<std::type_identity_t<Args>...> format, const Args&... args);

// ---- Behind the interface -------------------------------------------------------------------

namespace detail {

/// The placeholders that an argument can stand for, one bit each.
enum FormatUse : unsigned {
    useNone = 0,
    useText = 1,
    useBytes = 2,
    useInteger = 4,
    usePointer = 8
};

/// The use that a placeholder asks for; useNone for an unknown one.
struct Placeholder {
    FormatUse use;
    std::size_t size;
};

/// The placeholder that the text begins with, behind its percent sign.
constexpr Placeholder placeholderAt(std::string_view text) {
    if (text.starts_with('@'))
        return {useText, 1};
    if (text.starts_with('s'))
        return {useBytes, 1};
    if (text.starts_with('d'))
        return {useInteger, 1};
    if (text.starts_with("ld"))
        return {useInteger, 2};
    if (text.starts_with('p'))
        return {usePointer, 1};
    return {useNone, 0};
}

constexpr FormatFault findFault(std::string_view format, std::span<const unsigned> uses) {
    std::size_t next = 0;
    for (std::size_t at = format.find('%'); at != std::string_view::npos;
         at = format.find('%', at)) {
        const std::string_view rest = format.substr(at + 1);
        if (rest.starts_with('%')) {
            at += 2;
            continue;
        }
        const Placeholder placeholder = placeholderAt(rest);
        if (placeholder.use == useNone)
            return FormatFault::unknownPlaceholder;
        if (next == uses.size())
            return FormatFault::argumentMissing;
        if ((uses[next] & placeholder.use) == 0)
            return FormatFault::argumentOfWrongKind;
        ++next;
        at += 1 + placeholder.size;
    }
    return next == uses.size() ? FormatFault::none : FormatFault::argumentSurplus;
}

template <class T>
concept Described = std::is_class_v<T> && requires(const T& value) {
    { value.description() } -> std::convertible_to<std::string>;
};

template <class T>
concept TextOrNone = std::same_as<T, std::optional<std::string>> ||
    std::same_as<T, std::optional<std::string_view>> || std::same_as<T, OptionalText>;

template <class T>
concept CharacterPointer = std::same_as<T, const char*> || std::same_as<T, char*>;

template <class T>
concept ObjectPointer =
    std::is_pointer_v<T> && std::convertible_to<T, const void*> && !CharacterPointer<T>;

template <class T>
constexpr bool isCharacterArray = false;
template <std::size_t size>
constexpr bool isCharacterArray<char[size]> = true;

template <class T>
constexpr bool isSharedPointer = false;
template <class T>
constexpr bool isSharedPointer<std::shared_ptr<T>> = true;

template <class T>
constexpr unsigned usesOf() {
    if constexpr (std::same_as<T, std::string> || std::same_as<T, std::string_view> ||
                  isCharacterArray<T>) {
        return useText | useBytes;
    } else if constexpr (CharacterPointer<T>) {
        return useText | useBytes | usePointer;
    } else if constexpr (std::is_integral_v<T>) {
        return useInteger;
    } else if constexpr (std::is_null_pointer_v<T>) {
        return useText | usePointer;
    } else if constexpr (ObjectPointer<T>) {
        return Described<std::remove_cv_t<std::remove_pointer_t<T>>> ? useText | usePointer
                                                                     : usePointer;
    } else if constexpr (isSharedPointer<T>) {
        return usesOf<typename T::element_type*>();
    } else if constexpr (TextOrNone<T> || Described<T>) {
        return useText;
    } else {
        return useNone;
    }
}

/// An object that describes itself; null is possible.
struct DescribedObject {
    const void* object;
    std::string (*describe)(const void*);
};

/// An argument whose type is forgotten, so that one function does the work for every call. It
/// refers to the value, which has to live until the text is made. No value is an absent text.
using FormatArgument = std::variant<std::monostate, std::string_view, const char*, std::int64_t,
                                    std::uint64_t, const void*, DescribedObject>;

template <class T>
DescribedObject describedObject(const T* object) {
    return {object, [](const void* any) -> std::string {
                return static_cast<const T*>(any)->description();
            }};
}

template <class T>
FormatArgument formatArgument(const T& value) {
    if constexpr (isCharacterArray<T>) {
        return std::string_view(value, ::strnlen(value, sizeof value));
    } else if constexpr (TextOrNone<T>) {
        return value ? FormatArgument(std::string_view(*value)) : FormatArgument();
    } else if constexpr (std::same_as<T, std::string>) {
        return std::string_view(value);
    } else if constexpr (CharacterPointer<T>) {
        return static_cast<const char*>(value);
    } else if constexpr (std::is_integral_v<T>) {
        if constexpr (std::is_signed_v<T>)
            return std::int64_t{value};
        else
            return std::uint64_t{value};
    } else if constexpr (std::is_null_pointer_v<T>) {
        return static_cast<const char*>(nullptr);
    } else if constexpr (ObjectPointer<T>) {
        if constexpr (Described<std::remove_cv_t<std::remove_pointer_t<T>>>)
            return describedObject(value);
        else
            return static_cast<const void*>(value);
    } else if constexpr (isSharedPointer<T>) {
        return formatArgument(value.get());
    } else if constexpr (Described<T>) {
        return describedObject(std::addressof(value));
    } else {
        return value;
    }
}

/// Does the work of every call. The format fits the arguments.
std::string formatArguments(std::string_view format, std::span<const FormatArgument> arguments);

// Never defined: a compiler that refuses a format names one of them.
void formatHasAnUnknownPlaceholder();
void formatNeedsAnotherArgument();
void formatLeavesAnArgumentUnused();
void formatArgumentIsOfTheWrongKind();

}  // namespace detail

template <class... Args>
constexpr FormatFault formatFault(std::string_view format) {
    const std::array<unsigned, sizeof...(Args)> uses{detail::usesOf<Args>()...};
    return detail::findFault(format, uses);
}

template <class... Args>
template <std::size_t size>
consteval FormatString<Args...>::FormatString(const char (&literal)[size])
    : text_(literal, size - 1) {
    switch (formatFault<Args...>(text_)) {
        case FormatFault::none:
            break;
        case FormatFault::unknownPlaceholder:
            detail::formatHasAnUnknownPlaceholder();
            break;
        case FormatFault::argumentMissing:
            detail::formatNeedsAnotherArgument();
            break;
        case FormatFault::argumentSurplus:
            detail::formatLeavesAnArgumentUnused();
            break;
        case FormatFault::argumentOfWrongKind:
            detail::formatArgumentIsOfTheWrongKind();
            break;
    }
}

template <class... Args>
std::string format(FormatString<std::type_identity_t<Args>...> format, const Args&... args) {
    const std::array<detail::FormatArgument, sizeof...(Args)> arguments{
        detail::formatArgument(args)...};
    return detail::formatArguments(format.text(), arguments);
}

}  // namespace yg::text
