// SPDX-License-Identifier: MIT
//
// Documents of a format, made at random from its description: half of them in order, half with
// something wrong.
#pragma once

#include <map>
#include <random>
#include <regex>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/formats/Format.h"

namespace yg::testing {

class Documents {
public:
    Documents(const FormatInfo& format, unsigned seed)
        : format_(format), elements_(elementsOf(format)), random_(seed) {}

    std::string next() {
        faults_ = chance(0.6) ? 0.04 : 0;
        text_.clear();
        element(format_.root, 0);
        return text_;
    }

    /// Values for attributes, many of them odd for one kind or another.
    static std::vector<std::string> allValues() {
        return {"a",      "c",           "d",       "e",   "f",   "3",    "6",
                "4",      "5",           "8",       "b",   "",    "true", "false",
                "TRUE",   "1",           "7",       "0",   "-1",  "+5",   " 2",
                "2 ",     "1.5",         ".5",      "5.",  "1e2", "300",  "1e39",
                "1e-400", "99999999999", "a;b",     "a;",  "h:1", ":1",   "h:0",
                "::1",    "w:h:7;h:9",   "h:70000", "a'b", " a",  "a b"};
    }

private:
    bool chance(double share) { return std::bernoulli_distribution(share)(random_); }

    const auto& oneOf(const auto& list) {
        return list[std::uniform_int_distribution<std::size_t>(0, std::size(list) - 1)(random_)];
    }

    bool isFault() { return chance(faults_); }

    void element(const ElementInfo& element, int depth) {
        std::string name(shownName(element));
        if (isFault())
            name = "strange";
        else if (element.name.empty() && chance(0.3))
            name = oneOf(std::vector<std::string>{"one", "two", "three", "four", "five"});
        text_ += '<' + name;
        attributes(element);
        text_ += '>';
        content(element, depth);
        text_ += "</" + name + '>';
    }

    void attributes(const ElementInfo& element) {
        for (const AttributeInfo& row : element.attributes) {
            const bool isNeeded = row.isRequired || row.isExpected;
            if (isNeeded ? isFault() : chance(0.6))
                continue;
            auto& values = valuesOf_[&row];
            if (values.empty())
                values = valuesOf(element, row);
            write(row.name, oneOf(isFault() ? allValues_ : values));
        }
        if (isFault())
            write("strange", "a");
    }

    void write(std::string_view name, const std::string& value) {
        text_ += ' ' + std::string(name) + "=\"" + value + '"';
    }

    /// Those that are in order.
    static std::vector<std::string> valuesOf(const ElementInfo& element, const AttributeInfo& row) {
        for (const ValueInfo& limit : element.values) {
            if (limit.attribute != row.name || limit.facet != "pattern")
                continue;
            std::vector<std::string> fitting;
            const std::regex pattern{std::string(limit.value)};
            for (const std::string& value : allValues()) {
                if (std::regex_match(value, pattern))
                    fitting.push_back(value);
            }
            return fitting;
        }
        switch (row.kind) {
            case AttributeKind::flag:
                return {"true", "false"};
            case AttributeKind::integer:
            case AttributeKind::wholeNumber:
                return {"1", "7", "0", "-1", "+5", " 2", "2147483647", "-2147483648", "007"};
            case AttributeKind::decimal:
                return {"1", "1.0", ".5", "1.", " 1", "1e-400", "+1"};
            default:
                return {"a", "b", "c", "d", "e", "f", " a", "a b", "a;b"};
        }
    }

    void content(const ElementInfo& element, int depth) {
        if (isFault())
            text_ += "stray";
        if (isFault())
            this->element(*oneOf(elements_), depth + 1);
        if (element.holds == Content::text)
            text_ += isFault() ? " value" : chance(0.7) ? "value" : "";
        // The comment makes it an element with content.
        text_ += "<!-- -->";
        if (element.content.empty() || depth > 5)
            return;
        const int count = element.holds == Content::element && !isFault()
                              ? 1
                              : std::uniform_int_distribution<int>(depth < 2 ? 1 : 0, 3)(random_);
        for (int at = 0; at < count; ++at)
            this->element(*oneOf(element.content), depth + 1);
    }

    const FormatInfo& format_;
    std::vector<const ElementInfo*> elements_;
    const std::vector<std::string> allValues_ = allValues();
    std::map<const AttributeInfo*, std::vector<std::string>> valuesOf_;
    std::mt19937 random_;
    double faults_ = 0;
    std::string text_;
};

}  // namespace yg::testing
