// SPDX-License-Identifier: MIT
//
// A diagnostics sink for tests: it keeps all that it is told, as lines to compare, and can say what
// of a document nobody accounted for.
//
//   EXPECT_THAT(sink.lines(), ElementsAre("3: duplicate-command name=open"));
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"

namespace yg::testing {

class RecordingSink : public DiagnosticsSink {
public:
    struct Entry {
        const Rule* rule;
        xml::Node node;
        std::string attribute;
        std::string value;
    };

    void report(const Finding& finding) override {
        entries.push_back({&finding.rule, finding.node, finding.attribute, finding.value});
    }
    void usedElement(const xml::Element& element) override { elements_.push_back(element); }
    void usedAttribute(const xml::Element& element, std::string_view attribute) override {
        attributes_.emplace_back(element, std::string(attribute));
    }
    void readingFile(std::string_view path) override { files.emplace_back(path); }

    std::vector<Entry> entries;
    std::vector<std::string> files;

    /// The findings as "LINE: RULE ATTRIBUTE=VALUE", without what a finding does not have. Text
    /// nodes have no line of their own and show that of their element.
    std::vector<std::string> lines() const {
        std::vector<std::string> lines;
        for (const Entry& entry : entries) {
            std::string line;
            if (entry.node)
                line = std::to_string(lineOf(entry.node)) + ": ";
            line += entry.rule->name;
            if (!entry.attribute.empty() || !entry.value.empty())
                line += " " + entry.attribute + "=" + entry.value;
            lines.push_back(std::move(line));
        }
        return lines;
    }

    /// The names of the rules, in their order.
    std::vector<std::string> rules() const {
        std::vector<std::string> names;
        for (const Entry& entry : entries)
            names.emplace_back(entry.rule->name);
        return names;
    }

    /// What in the documents seen was neither used nor reported, nor stands in something dropped.
    std::vector<std::string> unaccounted() const {
        std::vector<xml::Element> roots;
        const auto addRootOf = [&](const xml::Node& node) {
            xml::Element top(node.isElement() ? node : xml::Node(node.parent()));
            while (top.parent())
                top = top.parent();
            if (top && std::find(roots.begin(), roots.end(), top) == roots.end())
                roots.push_back(top);
        };
        for (const xml::Element& element : elements_)
            addRootOf(element);
        for (const Entry& entry : entries) {
            if (entry.node)
                addRootOf(entry.node);
        }
        std::vector<std::string> missing;
        for (const xml::Element& root : roots)
            addUnaccounted(root, missing);
        return missing;
    }

private:
    static unsigned lineOf(const xml::Node& node) {
        const auto place = (node.isElement() ? node : xml::Node(node.parent())).place();
        return place ? place->begin.line : 0;
    }

    bool isReported(const xml::Node& node, std::optional<std::string_view> attribute) const {
        return std::any_of(entries.begin(), entries.end(), [&](const Entry& entry) {
            return entry.node == node && (!attribute || entry.attribute == *attribute);
        });
    }

    void addUnaccounted(const xml::Element& element, std::vector<std::string>& missing) const {
        const std::string name =
            std::to_string(lineOf(element)) + ": " + std::string(element.name());
        const bool isUsed =
            std::find(elements_.begin(), elements_.end(), element) != elements_.end();
        if (!isUsed) {
            if (!isReported(element, std::nullopt))
                missing.push_back(name);
            return;
        }
        for (const xml::Attribute attribute : element.attributes()) {
            const std::pair<xml::Element, std::string> used(element, attribute.name);
            if (std::find(attributes_.begin(), attributes_.end(), used) == attributes_.end() &&
                !isReported(element, attribute.name))
                missing.push_back(name + " " + std::string(attribute.name));
        }
        for (const xml::Node& child : element.children()) {
            if (child.isElement())
                addUnaccounted(xml::Element(child), missing);
            else if (child.kind() == xml::NodeKind::text && !isReported(child, std::nullopt))
                missing.push_back(name + " text");
        }
    }

    std::vector<xml::Element> elements_;
    std::vector<std::pair<xml::Element, std::string>> attributes_;
};

}  // namespace yg::testing
