// SPDX-License-Identifier: MIT
#include "YGConfigManager/host/JsonValue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <type_traits>
#include <utility>

#include <nlohmann/json.hpp>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Numbers.h"
#include "YGConfigManager/text/Utf8.h"

namespace yg {

namespace {

constexpr std::string_view outOfRange = "number out of range";

/// The error "line L, column C: what" for the byte at `offset`.
JsonValue::Parsed errorAt(std::string_view bytes, std::size_t offset, std::string_view what) {
    const TextPoint place = text::pointAt(bytes, offset);
    return {std::nullopt, text::format("line %d, column %d: %@", place.line, place.column, what),
            place};
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

/// A number of JSON at the beginning of a text: how long it is, 0 when there is none, and whether
/// it has a point or an exponent. One that breaks off behind either counts up to there.
struct Written {
    std::size_t size;
    bool isDecimal;
};

Written writtenNumber(std::string_view text) {
    const auto afterDigits = [&](std::size_t at) {
        while (at < text.size() && text::isDigit(text[at]))
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

/// Finds the tokens of a valid JSON text one after the other.
class TokenCursor {
public:
    explicit TokenCursor(std::string_view bytes)
        : bytes_(bytes),
          at_(bytes.starts_with(text::byteOrderMark) ? text::byteOrderMark.size() : 0) {}

    /// The next token that is neither a comma nor a colon.
    JsonRange next() {
        const std::size_t begin = bytes_.find_first_not_of(" \t\r\n,:", at_);
        at_ = endOf(begin);
        return {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(at_)};
    }

private:
    std::size_t endOf(std::size_t begin) const {
        if (bytes_[begin] == '"') {
            std::size_t at = begin + 1;
            while (bytes_[at] != '"')
                at += bytes_[at] == '\\' ? 2 : 1;
            return at + 1;
        }
        if (std::string_view("{}[]").find(bytes_[begin]) != std::string_view::npos)
            return begin + 1;
        return std::min(bytes_.find_first_of(" \t\r\n,]}", begin), bytes_.size());
    }

    std::string_view bytes_;
    std::size_t at_;
};

}  // namespace

struct JsonValue::Members {
    Object object;
    std::vector<JsonMember> written;
};

/// Builds values from the events of the JSON reader. The reader keeps no call stack, and neither
/// does this: a text that nests too deeply is refused before values are nested in each other.
class JsonBuilder {
public:
    JsonBuilder(std::string_view bytes, JsonOptions options) : bytes_(bytes) {
        if (options.positions && bytes.size() <= std::numeric_limits<std::uint32_t>::max())
            tokens_.emplace(bytes);
    }

    JsonValue::Parsed result() && { return std::move(result_); }

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
            result_ = errorAt(bytes_, place_ - 1, outOfRange);
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
        levels_.back().nameRange = nextToken();
        return true;
    }
    bool end_object() {
        JsonValue::Members& members = levels_.back().members;
        for (JsonMember& member : members.written)
            member.isReplaced =
                members.object.find(member.name)->second.range_ != member.valueRange;
        return close(std::make_shared<const JsonValue::Members>(std::move(members)));
    }
    bool end_array() {
        return close(std::make_shared<const JsonValue::List>(std::move(levels_.back().list)));
    }
    bool parse_error(std::size_t position, const std::string& /*token*/,
                     const nlohmann::json::exception& exception) {
        constexpr int numberOverflow = 406;
        const std::size_t offset = position == 0 ? 0 : position - 1;
        result_ = errorAt(bytes_, offset,
                          exception.id == numberOverflow ? outOfRange
                          : offset >= bytes_.size()      ? "the text ends too early"
                                                         : "not valid JSON");
        return false;
    }

private:
    struct Level {
        bool isObject = false;
        std::uint32_t begin = 0;
        JsonValue::List list{};
        JsonValue::Members members{};
        std::string name{};  ///< of the next member
        JsonRange nameRange{};
    };

    // Members' names are views of the names in the object, which moves with its level.
    static_assert(std::is_nothrow_move_constructible_v<Level>);

    JsonRange nextToken() { return tokens_ ? tokens_->next() : JsonRange(); }

    bool addNumber(std::string decimal) { return add(JsonValue::Number{std::move(decimal)}); }

    bool open(bool isObject) {
        if (levels_.size() == JsonValue::maximumDepth) {
            result_.error = text::format("nested deeper than %d levels", JsonValue::maximumDepth);
            return false;
        }
        Level& level = levels_.emplace_back();
        level.isObject = isObject;
        level.begin = nextToken().begin;
        return count();
    }

    template <class Content>
    bool close(Content content) {
        const std::uint32_t begin = levels_.back().begin;
        levels_.pop_back();
        return place(std::move(content), {begin, nextToken().end});
    }

    template <class Content>
    bool add(Content content) {
        return count() && place(std::move(content), nextToken());
    }

    bool count() {
        if (++count_ > JsonValue::maximumValues) {
            result_.error = text::format("more than %d values", JsonValue::maximumValues);
            return false;
        }
        return true;
    }

    template <class Content>
    bool place(Content content, JsonRange range) {
        JsonValue& value = levels_.empty() ? result_.value.emplace() : nextValue(range);
        value.value_ = std::move(content);
        value.range_ = range;
        return true;
    }

    /// The item or member of the innermost list or object that comes next.
    JsonValue& nextValue(JsonRange range) {
        Level& level = levels_.back();
        if (!level.isObject)
            return level.list.emplace_back();
        auto& [name, value] = *level.members.object.try_emplace(std::move(level.name)).first;
        if (tokens_)
            level.members.written.push_back({name, level.nameRange, range, false});
        return value;
    }

    std::string_view bytes_;
    std::size_t place_ = 0;  ///< where the search for the next decimal number begins
    std::vector<Level> levels_;
    std::size_t count_ = 0;
    std::optional<TokenCursor> tokens_;
    JsonValue::Parsed result_;
};

JsonValue::Parsed JsonValue::parse(OptionalText bytes, JsonOptions options) noexcept {
    try {
        if (const std::size_t valid = text::validUtf8Prefix(*bytes); valid < bytes->size())
            return errorAt(*bytes, valid, "invalid UTF-8");
        // The reader takes a NUL byte for the end of the text and ignores what follows.
        if (const std::size_t nul = bytes->find('\0'); nul != std::string_view::npos)
            return errorAt(*bytes, nul, "not valid JSON");
        JsonBuilder builder(*bytes, options);
        const bool isWhole = nlohmann::json::sax_parse(withoutDecimals(*bytes), &builder);
        Parsed parsed = std::move(builder).result();
        if (!isWhole) {
            // A value that was complete before text behind it turned out to be wrong.
            parsed.value.reset();
        }
        return parsed;
    } catch (...) {
        return {std::nullopt, std::string(outOfMemory), {}};
    }
}

std::optional<bool> JsonValue::boolean() const {
    const bool* value = std::get_if<bool>(&value_);
    return value ? std::optional(*value) : std::nullopt;
}

const std::string* JsonValue::number() const& {
    const Number* value = std::get_if<Number>(&value_);
    return value ? &value->decimal : nullptr;
}

std::shared_ptr<const JsonValue::List> JsonValue::list() const {
    const auto* value = std::get_if<std::shared_ptr<const List>>(&value_);
    return value ? *value : nullptr;
}

std::shared_ptr<const JsonValue::Object> JsonValue::object() const {
    const auto* value = std::get_if<std::shared_ptr<const Members>>(&value_);
    return value ? std::shared_ptr<const Object>(*value, &(*value)->object) : nullptr;
}

std::optional<JsonRange> JsonValue::range() const {
    return range_ == JsonRange() ? std::nullopt : std::optional(range_);
}

std::shared_ptr<const std::vector<JsonMember>> JsonValue::members() const {
    const auto* value = std::get_if<std::shared_ptr<const Members>>(&value_);
    if (!value || !range())
        return nullptr;
    return {*value, &(*value)->written};
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
