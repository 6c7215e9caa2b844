// SPDX-License-Identifier: MIT
//
// A JSON value as it was read: immutable, cheap to copy, safe from any thread. What list() and
// object() point at lives as long as somebody holds it: keep the answer while going through it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/text/OptionalText.h"
#include "YGConfigManager/text/Place.h"

namespace yg {

class JsonBuilder;

/// A part of the text that was parsed, in bytes from its start, a byte-order mark included.
struct JsonRange {
    std::uint32_t begin = 0;  ///< the first byte
    std::uint32_t end = 0;    ///< behind the last byte

    friend bool operator==(const JsonRange&, const JsonRange&) = default;
};

/// A member of an object as it was written.
struct JsonMember {
    std::string_view name;  ///< lives as long as the list of members
    JsonRange nameRange;    ///< with its quotes
    JsonRange valueRange;   ///< of its value
    bool isReplaced;        ///< a later member of the same name counts
};

/// What parse() notes beside the value.
struct JsonOptions {
    bool positions = false;  ///< note where each value and each member stands
};

/// A null, boolean, number, text, list or object. Values come from parse() only.
class YG_EXPORT JsonValue {
public:
    /// The items of a list.
    using List = std::vector<JsonValue>;
    /// The members of an object by name.
    using Object = std::map<std::string, JsonValue, std::less<>>;

    /// What parse() answers: true with a value, false with one line that says what is wrong and,
    /// unless a limit was reached, where: "line 2, column 7: not valid JSON".
    struct Parsed;

    /// The limits of parse(): the nesting of lists and objects, and the number of values.
    static constexpr std::size_t maximumDepth = 256;
    static constexpr std::size_t maximumValues = 250'000;

    /// Reads one JSON value with nothing but white space around it, strictly: no comments, no
    /// trailing commas, no NaN, no number beyond a double, valid UTF-8 only. A UTF-8 byte-order
    /// mark is skipped. Of members with the same name the last one counts. Never throws; the error
    /// is "out of memory" when that does not suffice. Positions are noted in texts below 4 GiB.
    static Parsed parse(OptionalText bytes, JsonOptions options = {}) noexcept;

    /// Null.
    JsonValue() = default;

    bool isNull() const { return std::holds_alternative<std::monostate>(value_); }

    /// The boolean; none for any other kind.
    std::optional<bool> boolean() const;

    /// The text; a null pointer for any other kind. Lives as long as this value.
    const std::string* text() const& { return std::get_if<std::string>(&value_); }
    const std::string* text() const&& = delete;

    /// The number in decimal: a whole number with all its digits, any other in the shortest form
    /// that reads back to the same double, with an exponent below 0.0001 and from 1e17 on ("1.50"
    /// is "1.5", "1e5" is "100000"). What is too small for a double is "0" or "-0"; the minus sign
    /// of a 0 is kept. The locale has no say. A null pointer for any other kind. Lives as long as
    /// this value.
    const std::string* number() const&;
    const std::string* number() const&& = delete;

    /// The list; null for any other kind.
    std::shared_ptr<const List> list() const;

    /// The object's members by name; null for any other kind.
    std::shared_ptr<const Object> object() const;

    /// Where the value is in the text, without white space around it; none unless it was parsed
    /// with positions.
    std::optional<JsonRange> range() const;

    /// All members of the object in the order of the text; null for any other kind, and unless it
    /// was parsed with positions.
    std::shared_ptr<const std::vector<JsonMember>> members() const;

    /// Appends the value as JSON text without added white space; the members of an object come
    /// sorted by name, text is not escaped to ASCII. False, and nothing appended, when memory does
    /// not suffice.
    bool appendTo(std::string& out) const noexcept;

private:
    friend class JsonBuilder;
    void append(std::string& out) const;

    struct Number {
        std::string decimal;
    };
    struct Members;

    std::variant<std::monostate, bool, Number, std::string, std::shared_ptr<const List>,
                 std::shared_ptr<const Members>>
        value_;
    JsonRange range_;
};

/// What parse() answers.
struct JsonValue::Parsed {
    std::optional<JsonValue> value;  ///< what was read; absent after an error
    std::string error;               ///< what is wrong, in one line; "" without an error
    TextPoint place;  ///< where the error is; without a line when a limit was reached

    /// Whether there is a value.
    explicit operator bool() const { return value.has_value(); }
};

/// A list of JSON values; null when it is absent.
using JsonList = std::shared_ptr<const JsonValue::List>;

/// Appends `text` as a JSON text in quotes: UTF-8 as it stands, each byte sequence that is not
/// UTF-8 replaced by U+FFFD. False, and nothing appended, when memory does not suffice.
YG_EXPORT bool appendJsonText(std::string& out, OptionalText text) noexcept;

}  // namespace yg
