// SPDX-License-Identifier: MIT
//
// JSON of whatever the library holds, made from the records' descriptions: a record is an object
// with all of its fields, a list an array, a map an object, and what is absent is null. A new
// record needs nothing here but its Description.
#pragma once

#include <concepts>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "YGConfigManager/records/Description.h"
#include "YGConfigManager/records/RecordMap.h"

#include "ygconfig/Answer.h"

namespace yg::tool {

template <class Value>
concept Described = requires {
    Description<Value>::fields;
};

enum class JsonForm {
    lines,  ///< indented by two blanks for each level
    inHtml  ///< without white space, and without "<", so that it can stand in an HTML element
};

/// Writes values as UTF-8 text. What is not UTF-8 is replaced by U+FFFD. It needs no more memory
/// for more of it. Throws what the sink throws, and std::bad_alloc.
class JsonWriter {
public:
    /// The output must outlive the writer.
    explicit JsonWriter(Output& output, JsonForm form = JsonForm::lines)
        : output_(output), pending_(output.pending()), form_(form) {}

    template <class Value>
    void write(const std::optional<Value>& value) {
        writeIfThere(value);
    }

    template <class Value>
    void write(const std::shared_ptr<Value>& value) {
        writeIfThere(value);
    }

    template <class Value>
    void write(const std::vector<Value>& list) {
        begin('[');
        for (const Value& value : list)
            item(value);
        end(']');
    }

    template <class Value>
    void write(const RecordMap<Value>& map) {
        begin('{');
        for (const auto& [key, value] : map)
            member(key, value);
        end('}');
    }

    void write(std::nullptr_t) { pending_ += "null"; }
    void write(bool flag) { pending_ += flag ? "true" : "false"; }

    /// With the fewest digits that read back to the same number; an infinity is the text "inf" or
    /// "-inf".
    void write(float number);
    void write(double number);

    /// A record, a text or an integer; of a function what it writes, which is one value.
    template <class Value>
    void write(const Value& value) {
        if constexpr (Described<Value>)
            writeRecord(
                value, [](std::string_view, const auto& field) -> auto& { return field; });
        else if constexpr (std::is_integral_v<Value>)
            pending_ += std::to_string(value);
        else if constexpr (std::invocable<const Value&>)
            value();
        else
            writeText(value);
    }

    /// A record in which `shown(name, field)` stands for each field.
    template <class Record, class Shown>
    void writeRecord(const Record& record, const Shown& shown) {
        begin('{');
        forEachField(record, [&](std::string_view name, const auto& field) {
            member(name, shown(name, field));
        });
        end('}');
    }

    /// An object with the members that `members` writes by member().
    template <class Members>
    void object(const Members& members) {
        begin('{');
        members();
        end('}');
    }

    template <class Value>
    void member(std::string_view name, const Value& value) {
        beginItem();
        writeText(name);
        pending_ += form_ == JsonForm::lines ? ": " : ":";
        write(value);
    }

    /// A list in which `shown(item)` writes each item.
    template <class Items, class Shown>
    void list(const Items& items, const Shown& shown) {
        begin('[');
        for (const auto& item : items) {
            beginItem();
            shown(item);
        }
        end(']');
    }

    /// A value on its own in a list.
    template <class Value>
    void item(const Value& value) {
        beginItem();
        write(value);
    }

    /// Ends the text, with a line feed.
    void finish() { pending_ += '\n'; }

private:
    template <class Holder>
    void writeIfThere(const Holder& value) {
        if (value)
            write(*value);
        else
            write(nullptr);
    }

    void writeText(std::string_view text);
    void newLine();
    void begin(char bracket);
    void beginItem();
    void end(char bracket);

    Output& output_;
    std::string& pending_;  ///< the output's
    const JsonForm form_;
    std::size_t level_ = 0;
    bool isFirst_ = true;  ///< the next item is the first one of its list or object
};

/// Whether a value is written as null or false.
inline bool isNone(std::nullptr_t) {
    return true;
}
inline bool isNone(bool flag) {
    return !flag;
}
template <class Value>
bool isNone(const std::optional<Value>& value) {
    return !value;
}
template <class Value>
bool isNone(const std::shared_ptr<Value>& value) {
    return !value;
}
template <class Value>
bool isNone(const Value&) {
    return false;
}

/// The answer of a command: the text of a value, which it keeps, and whether it is null or false.
template <class Value>
Answer jsonAnswer(Value value) {
    const ExitCode exitCode = isNone(value) ? ExitCode::noAnswer : ExitCode::answer;
    return {[value = std::move(value)](Output& output) {
                JsonWriter writer(output);
                writer.write(value);
                writer.finish();
            },
            exitCode};
}

}  // namespace yg::tool
