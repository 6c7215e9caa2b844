// SPDX-License-Identifier: MIT
//
// Records as text, field by field from their descriptions, so that tests compare whole trees. A
// record that is met again is named by its number, which shows what is shared.
#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/records/Description.h"

namespace yg::testing {

inline std::string inQuotes(std::string_view text) {
    return std::string("\"").append(text).append("\"");
}

inline std::string textOf(const std::optional<std::string>& text) {
    return text ? inQuotes(*text) : "absent";
}

inline std::string textOf(bool flag) {
    return flag ? "true" : "false";
}

inline std::string textOf(std::int32_t number) {
    return std::to_string(number);
}

/// The shortest text that reads back, always with a point: "12.0".
inline std::string textOf(float number) {
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    const std::string text(digits.data(), end);
    const bool whole = std::isfinite(number) && text.find_first_of(".e") == std::string::npos;
    return whole ? text + ".0" : text;
}

inline std::string textOf(const std::shared_ptr<std::vector<std::string>>& names) {
    if (!names)
        return "absent";
    std::string text;
    for (const std::string& name : *names)
        text.append(text.empty() ? "[" : ", ").append(inQuotes(name));
    return text.empty() ? "[]" : text.append("]");
}

class RecordText {
public:
    /// Everything that a filled loader answers.
    static std::string of(const YGStyleConfigLoad& loader) {
        RecordText text;
        text.text_ = "default " + textOf(loader.defaultStyleName()) + "\n";
        text.addMap("styles", loader.styleInfos());
        text.addMap("tabs", loader.tabStyleInfos());
        text.addMap("magic panels", loader.magicPanelInfos());
        text.addMap("scroll panels", loader.scrollPanelDict());
        return std::move(text.text_);
    }

    /// One record with all below it; "null" for none.
    template <class Record>
    static std::string of(const std::shared_ptr<Record>& record) {
        RecordText text;
        text.add(record);
        return std::move(text.text_);
    }

private:
    template <class Map>
    void addMap(std::string_view title, const std::shared_ptr<Map>& map) {
        addLine(std::string(title) + (map ? "" : ": absent"));
        ++depth_;
        if (map) {
            for (const auto& [name, value] : *map)
                addNamed(name, value);
        }
        --depth_;
    }

    template <class Record>
    void addNamed(const std::string& name, const std::shared_ptr<Record>& record) {
        addLine(name + ":");
        add(record);
    }

    void addNamed(const std::string& name, const std::shared_ptr<const PanelMap>& members) {
        addMap(name, members);
    }

    template <class Record>
    void add(const std::shared_ptr<Record>& record) {
        if (!record) {
            addLine("null");
            return;
        }
        const auto [known, isNew] = numbers_.emplace(record.get(), numbers_.size());
        addLine(std::string("#") + std::to_string(known->second) + (isNew ? "" : " again"));
        if (!isNew)
            return;
        ++depth_;
        forEachField(*record, [&](std::string_view name, const auto& value) {
            addField(std::string(name), value);
        });
        --depth_;
    }

    template <class Value>
    void addField(const std::string& name, const Value& value) {
        addLine(name + " " + textOf(value));
    }

    void addField(const std::string& name, const std::shared_ptr<PanelList>& list) {
        addList(name, list);
    }

    void addField(const std::string& name, const std::shared_ptr<ElementList>& list) {
        addList(name, list);
    }

    template <class List>
    void addList(const std::string& name, const std::shared_ptr<List>& list) {
        addLine(name + (list ? "" : " absent"));
        ++depth_;
        if (list) {
            for (const auto& record : *list)
                add(record);
        }
        --depth_;
    }

    void addLine(const std::string& line) {
        text_.append(2 * depth_, ' ');
        text_ += line + '\n';
    }

    std::string text_;
    std::size_t depth_ = 0;
    std::map<const void*, std::size_t> numbers_;
};

/// Of a list of records only how many there are.
inline std::string textOf(const std::shared_ptr<PanelList>& list) {
    return list ? std::to_string(list->size()) + " panels" : "absent";
}

inline std::string textOf(const std::shared_ptr<ElementList>& list) {
    return list ? std::to_string(list->size()) + " elements" : "absent";
}

/// The fields of one record as text, in order.
template <class Record>
std::vector<std::pair<std::string, std::string>> fieldsOf(const Record& record) {
    std::vector<std::pair<std::string, std::string>> fields;
    forEachField(record, [&](std::string_view name, const auto& value) {
        fields.emplace_back(std::string(name), textOf(value));
    });
    return fields;
}

}  // namespace yg::testing
