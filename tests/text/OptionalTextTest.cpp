// SPDX-License-Identifier: MIT
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/text/OwnedText.h"

namespace yg {
namespace {

/// What an operation finds in its argument.
std::optional<std::string> viewed(OptionalText text) {
    const std::optional<std::string_view> found = text;
    EXPECT_EQ(found.has_value(), static_cast<bool>(text));
    EXPECT_EQ(found.value_or(""), *text);
    return text ? std::optional(std::string(*text)) : std::nullopt;
}

std::optional<std::string> owned(OwnedText text) {
    std::optional<std::string> kept;
    kept = std::move(text);
    return kept;
}

/// A text class of an application.
struct OtherText {
    operator std::string_view() const { return "other"; }
    operator const char*() const { return "other"; }
};

/// Both answer the same; an operation compiles with all that it took before.
#define EXPECT_TEXT(argument, expected)        \
    do {                                       \
        EXPECT_EQ(viewed(argument), expected); \
        EXPECT_EQ(owned(argument), expected);  \
    } while (false)

using Text = std::optional<std::string>;

TEST(OptionalText, ANullPointerIsAbsent) {
    const char* const none = nullptr;
    char* const noneToChange = nullptr;
    EXPECT_TEXT(none, Text());
    EXPECT_TEXT(noneToChange, Text());
    EXPECT_TEXT(nullptr, Text());
    EXPECT_TEXT(std::optional<const char*>(none), Text());
}

TEST(OptionalText, AnEmptyOptionalIsAbsent) {
    EXPECT_TEXT(std::nullopt, Text());
    EXPECT_TEXT({}, Text());
    EXPECT_TEXT(std::optional<std::string>(), Text());
    EXPECT_TEXT(std::optional<std::string_view>(), Text());
    EXPECT_TEXT(std::optional<const char*>(), Text());
    EXPECT_TEXT(OptionalText(), Text());
}

TEST(OptionalText, AnEmptyTextIsNotAbsent) {
    EXPECT_TEXT("", Text(""));
    EXPECT_TEXT(std::string_view(), Text(""));
    EXPECT_TEXT(std::optional(std::string_view()), Text(""));
    EXPECT_TEXT(std::string(), Text(""));
}

TEST(OptionalText, ATextIsItselfWhateverItIsMadeFrom) {
    const char* const pointer = "text";
    std::array<char, 8> characters{'t', 'e', 'x', 't'};
    const std::string text = "text";
    EXPECT_TEXT("text", Text("text"));
    EXPECT_TEXT(pointer, Text("text"));
    EXPECT_TEXT(characters.data(), Text("text"));
    EXPECT_TEXT(text, Text("text"));
    EXPECT_TEXT(std::string("text"), Text("text"));
    EXPECT_TEXT(std::string_view("text\0", 5), Text(std::string("text\0", 5)));
    EXPECT_TEXT(std::optional(text), Text("text"));
    EXPECT_TEXT(std::optional(std::string_view("text")), Text("text"));
    EXPECT_TEXT(std::optional(pointer), Text("text"));
    EXPECT_TEXT(OptionalText("text"), Text("text"));
    EXPECT_TEXT(OtherText(), Text("other"));
    EXPECT_TEXT(std::optional(OtherText()), Text("other"));
}

TEST(OptionalText, IsPassedInRegistersAsAStringViewIs) {
    EXPECT_TRUE(std::is_trivially_copyable_v<OptionalText>);
    EXPECT_EQ(sizeof(OptionalText), sizeof(std::string_view));
}

TEST(OwnedText, TakesAStringWithoutCopyingIt) {
    std::string text(1000, 'x');
    const void* const characters = text.data();
    const std::optional<std::string> kept = owned(std::move(text));
    EXPECT_TRUE(kept->data() == characters);
    std::optional<std::string> optional(std::string(1000, 'x'));
    const void* const others = optional->data();
    const std::optional<std::string> keptToo = owned(std::move(optional));
    EXPECT_TRUE(keptToo->data() == others);
}

}  // namespace
}  // namespace yg
