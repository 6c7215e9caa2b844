// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/JsonValue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <utility>

#include <nlohmann/json.hpp>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Numbers.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
constexpr std::string_view outOfRange = "number out of range";

/// "line L, column C: what" for the byte at `offset`; columns count characters.
std::string located(std::string_view bytes, std::size_t offset, std::string_view what) {
    std::string_view before = bytes.substr(0, std::min(offset, bytes.size()));
    if (before.starts_with(byteOrderMark)) {
        before.remove_prefix(byteOrderMark.size());
    }
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    before.remove_prefix(before.rfind('\n') + 1);  // npos + 1 is 0
    return text::format("line %d, column %d: %@", line, 1 + text::countCodePoints(before), what);
}

void appendText(std::string& out, std::string_view text) {
    out += nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

/// Does an operation that appends; false, and nothing is appended, when it throws.
template <class Append>
bool appendWhole(std::string& out, Append append) noexcept {
    const std::size_t size = out.size();
    return guarded("write JSON", [&] {
        try {
            append();
        } catch (...) {
            out.resize(size);
            throw;
        }
        return true;
    });
}

std::string decimalOf(double number) {
    char digits[64];
    const double size = std::abs(number);
    const auto form = size == 0 || (size >= 1e-4 && size < 1e17) ? std::chars_format::fixed
                                                                 : std::chars_format::scientific;
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number, form).ptr;
    return {digits, end};
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// A number of JSON at the beginning of a text: how long it is, 0 when there is none, and whether
/// it has a point or an exponent. One that breaks off behind either counts up to there.
struct Written {
    std::size_t size;
    bool isDecimal;
};

Written writtenNumber(std::string_view text) {
    const auto afterDigits = [&](std::size_t at) {
        while (at < text.size() && isDigit(text[at]))
            ++at;
        return at;
    };
    const std::size_t first = text.starts_with('-') ? 1 : 0;
    std::size_t end = text.substr(first).starts_with('0') ? first + 1 : afterDigits(first);
    const std::size_t whole = end;
    if (end == first)
        return {0, false};
    if (text.substr(end).starts_with('.')) {
        const std::size_t point = end;
        end = afterDigits(point + 1);
        if (end == point + 1)
            return {point, false};
    }
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        std::size_t digits = end + 1;
        if (digits < text.size() && (text[digits] == '+' || text[digits] == '-'))
            ++digits;
        if (afterDigits(digits) == digits)
            return {end, false};
        end = afterDigits(digits);
    }
    return {end, end != whole};
}

/// The next number with a point or an exponent, outside of texts; empty when there is none.
std::string_view nextDecimal(std::string_view bytes, std::size_t at) {
    while (at < bytes.size()) {
        if (bytes[at] == '"') {
            for (++at; at < bytes.size() && bytes[at] != '"'; ++at)
                at += bytes[at] == '\\' ? 1 : 0;
        } else if (const Written number = writtenNumber(bytes.substr(at)); number.size > 0) {
            if (number.isDecimal)
                return bytes.substr(at, number.size);
            at += number.size;
            continue;
        }
        ++at;
    }
    return {};
}

std::size_t offsetIn(std::string_view bytes, std::string_view part) {
    return static_cast<std::size_t>(part.data() - bytes.data());
}

/// The text as the reader gets it. The reader converts numbers by the locale, which another thread
/// may change meanwhile; so each one with a point or an exponent becomes a 0 of its sign and
/// length.
std::string withoutDecimals(std::string_view bytes) {
    std::string text(bytes);
    for (std::string_view decimal = nextDecimal(bytes, 0); !decimal.empty();) {
        const std::size_t end = offsetIn(bytes, decimal) + decimal.size();
        const std::size_t size = decimal.size() - (decimal.starts_with('-') ? 1 : 0);
        text.replace(end - size, size, size, '0');
        text[end - size + 1] = 'e';
        decimal = nextDecimal(bytes, end);
    }
    return text;
}

}  // namespace

/// Builds values from the events of the JSON reader. The reader keeps no call stack, and neither
/// does this: a text that nests too deeply is refused before values are nested in each other.
class JsonBuilder {
public:
    explicit JsonBuilder(std::string_view bytes) : bytes_(bytes) {}

    JsonValue::Parsed result() && { return {std::move(root_), std::move(error_)}; }

    // The names and parameters of these operations are the reader's.

    bool null() { return add(std::monostate()); }
    bool boolean(bool value) { return add(value); }
    // Only what begins with a minus sign arrives here.
    bool number_integer(std::int64_t value) {
        return addNumber(value == 0 ? "-0" : std::to_string(value));
    }
    bool number_unsigned(std::uint64_t value) { return addNumber(std::to_string(value)); }
    bool number_float(double /*value*/, const std::string& written) {
        // A whole number too large for 64 bits arrives here; its digits are all kept.
        if (written.find('e') == std::string::npos)
            return addNumber(written);
        const std::string_view decimal = nextDecimal(bytes_, place_);
        place_ = offsetIn(bytes_, decimal) + decimal.size();
        const double value = text::readLeadingDouble(decimal).value;
        if (std::isinf(value)) {
            error_ = located(bytes_, place_ - 1, outOfRange);
            return false;
        }
        return addNumber(decimalOf(value));
    }
    bool string(std::string& value) { return add(std::move(value)); }
    bool binary(nlohmann::json::binary_t& /*value*/) { return false; }
    bool start_object(std::size_t /*size*/) { return open(true); }
    bool start_array(std::size_t /*size*/) { return open(false); }
    bool key(std::string& name) {
        levels_.back().name = std::move(name);
        return true;
    }
    bool end_object() {
        auto object = std::make_shared<const JsonValue::Object>(std::move(levels_.back().object));
        levels_.pop_back();
        return place(std::move(object));
    }
    bool end_array() {
        auto list = std::make_shared<const JsonValue::List>(std::move(levels_.back().list));
        levels_.pop_back();
        return place(std::move(list));
    }
    bool parse_error(std::size_t position, const std::string& /*token*/,
                     const nlohmann::json::exception& exception) {
        constexpr int numberOverflow = 406;
        const std::size_t offset = position == 0 ? 0 : position - 1;
        error_ = located(bytes_, offset,
                         exception.id == numberOverflow ? outOfRange
                         : offset >= bytes_.size()      ? "the text ends too early"
                                                        : "not valid JSON");
        return false;
    }

private:
    struct Level {
        bool isObject = false;
        JsonValue::List list{};
        JsonValue::Object object{};
        std::string name{};
    };

    template <class Content>
    static JsonValue made(Content content) {
        JsonValue value;
        value.value_ = std::move(content);
        return value;
    }

    bool addNumber(std::string decimal) { return add(JsonValue::Number{std::move(decimal)}); }

    bool open(bool isObject) {
        if (levels_.size() == JsonValue::maximumDepth) {
            error_ = text::format("nested deeper than %d levels", JsonValue::maximumDepth);
            return false;
        }
        levels_.emplace_back().isObject = isObject;
        return count();
    }

    template <class Content>
    bool add(Content content) {
        return count() && place(std::move(content));
    }

    bool count() {
        if (++count_ > JsonValue::maximumValues) {
            error_ = text::format("more than %d values", JsonValue::maximumValues);
            return false;
        }
        return true;
    }

    template <class Content>
    bool place(Content content) {
        if (levels_.empty()) {
            root_ = made(std::move(content));
        } else if (Level& level = levels_.back(); level.isObject) {
            level.object.insert_or_assign(std::move(level.name), made(std::move(content)));
        } else {
            level.list.emplace_back().value_ = std::move(content);
        }
        return true;
    }

    std::string_view bytes_;
    std::size_t place_ = 0;  ///< where the search for the next decimal number begins
    std::vector<Level> levels_;
    std::size_t count_ = 0;
    std::optional<JsonValue> root_;
    std::string error_;
};

JsonValue::Parsed JsonValue::parse(OptionalText bytes) noexcept {
    try {
        if (const std::size_t valid = text::validUtf8Prefix(*bytes); valid < bytes->size()) {
            return {std::nullopt, located(*bytes, valid, "invalid UTF-8")};
        }
        // The reader takes a NUL byte for the end of the text and ignores what follows.
        if (const std::size_t nul = bytes->find('\0'); nul != std::string_view::npos) {
            return {std::nullopt, located(*bytes, nul, "not valid JSON")};
        }
        JsonBuilder builder(*bytes);
        const bool isWhole = nlohmann::json::sax_parse(withoutDecimals(*bytes), &builder);
        Parsed parsed = std::move(builder).result();
        if (!isWhole) {
            // A value that was complete before text behind it turned out to be wrong.
            parsed.value.reset();
        }
        return parsed;
    } catch (...) {
        return {std::nullopt, std::string(outOfMemory)};
    }
}

std::optional<bool> JsonValue::boolean() const {
    const bool* value = std::get_if<bool>(&value_);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

const std::string* JsonValue::number() const {
    const Number* value = std::get_if<Number>(&value_);
    return value == nullptr ? nullptr : &value->decimal;
}

std::shared_ptr<const JsonValue::List> JsonValue::list() const {
    const auto* value = std::get_if<std::shared_ptr<const List>>(&value_);
    return value == nullptr ? nullptr : *value;
}

std::shared_ptr<const JsonValue::Object> JsonValue::object() const {
    const auto* value = std::get_if<std::shared_ptr<const Object>>(&value_);
    return value == nullptr ? nullptr : *value;
}

bool JsonValue::appendTo(std::string& out) const noexcept {
    return appendWhole(out, [&] { append(out); });
}

void JsonValue::append(std::string& out) const {
    const char* separator = "";
    if (isNull()) {
        out += "null";
    } else if (const bool* boolean = std::get_if<bool>(&value_)) {
        out += *boolean ? "true" : "false";
    } else if (const std::string* decimal = number()) {
        out += *decimal;
    } else if (const std::string* content = text()) {
        appendText(out, *content);
    } else if (const auto items = list()) {
        out += '[';
        for (const JsonValue& item : *items) {
            out += std::exchange(separator, ",");
            item.append(out);
        }
        out += ']';
    } else if (const auto members = object()) {
        out += '{';
        for (const auto& [name, value] : *members) {
            out += std::exchange(separator, ",");
            appendText(out, name);
            out += ':';
            value.append(out);
        }
        out += '}';
    }
}

bool appendJsonText(std::string& out, OptionalText text) noexcept {
    return appendWhole(out, [&] { appendText(out, *text); });
}

}  // namespace yg
