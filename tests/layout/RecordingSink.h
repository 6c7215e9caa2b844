// SPDX-License-Identifier: MIT
//
// A diagnostics sink for tests: it keeps all that it is told.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/text/Replace.h"

namespace yg::testing {

/// A finding as text. `at` is the place of the attribute, else of the node, else, for a text, of
/// the element that holds it: "config/styles.xml:2:10", "" when there is none.
struct Reported {
    std::string rule;
    std::string node;  ///< "panel", "#text", "" without a node
    std::string attribute;
    std::string value;
    std::string at;

    friend bool operator==(const Reported&, const Reported&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Reported& reported) {
        return out << '{' << reported.rule << "} {" << reported.node << "} {" << reported.attribute
                   << "} {" << reported.value << "} {" << reported.at << '}';
    }
};

class RecordingSink : public DiagnosticsSink {
public:
    /// `root` is left out of the paths in what is kept.
    explicit RecordingSink(std::string root) : root_(std::move(root) + '/') {}

    void report(const Finding& finding) override {
        found.push_back({std::string(finding.rule.name), nodeText(finding.node), finding.attribute,
                         below(finding.value), placeOf(finding)});
        handlings.push_back(finding.rule.handling);
        nodes.push_back(finding.node);
    }

    void usedElement(const xml::Element& element) override { usedElements.push_back(element); }

    void usedAttribute(const xml::Element& element, std::string_view attribute) override {
        usedAttributes.emplace_back(element, attribute);
    }

    void readingFile(std::string_view path) override { filesRead.push_back(below(path)); }

    /// What was reported, in order; beside it the handling and the node of each.
    std::vector<Reported> found;
    std::vector<Handling> handlings;
    std::vector<xml::Node> nodes;

    std::vector<xml::Element> usedElements;
    std::vector<std::pair<xml::Element, std::string>> usedAttributes;
    std::vector<std::string> filesRead;

private:
    static std::string nodeText(const xml::Node& node) {
        if (!node)
            return "";
        return node.isElement() ? std::string(node.name()) : "#text";
    }

    std::string placeOf(const Finding& finding) const {
        const xml::Element element(finding.node.isElement() ? finding.node : finding.node.parent());
        const std::optional<Place> place =
            finding.attribute.empty() ? element.place() : element.attributePlace(finding.attribute);
        if (!place)
            return "";
        return below(place->file) + ':' + std::to_string(place->begin.line) + ':' +
               std::to_string(place->begin.column);
    }

    std::string below(std::string_view text) const { return text::replaceAll(text, root_, ""); }

    std::string root_;
};

}  // namespace yg::testing
