// SPDX-License-Identifier: MIT
//
// A diagnostics sink for tests: it keeps what is reported, as lines to compare, and can say what of
// the files that were read nobody accounted for.
//
//   EXPECT_THAT(sink.lines(), ElementsAre("3: duplicate-command name=open"));
#pragma once

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/text/Replace.h"
#include "YGConfigManager/xml/Document.h"

namespace yg::testing {

/// A finding as text. `at` is "config/styles.xml:2:10", the path alone without a line.
struct Reported {
    std::string rule;
    std::string element;  ///< "panel", "#text", "" without one
    std::string attribute;
    std::string value;
    std::string at;

    friend bool operator==(const Reported&, const Reported&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Reported& reported) {
        return out << '{' << reported.rule << "} {" << reported.element << "} {"
                   << reported.attribute << "} {" << reported.value << "} {" << reported.at << '}';
    }
};

class RecordingSink : public DiagnosticsSink {
public:
    /// `root` is left out of the paths in what is kept.
    explicit RecordingSink(std::string root = "")
        : root_(root.empty() ? std::move(root) : std::move(root) + '/') {}

    void report(const Finding& finding) override {
        found.push_back({std::string(finding.rule.name), finding.element, finding.attribute,
                         below(finding.value), textOf(finding.place)});
        findings.push_back(finding);
        reported_.insert(pointOf(finding.place));
        reported_.insert(pointOf(finding.extent));
        if (finding.rule.handling == Handling::dropped && finding.attribute.empty())
            dropped_.insert(pointOf(finding.extent));
    }
    void used(const Place& place) override { used_.insert(pointOf(place)); }
    void readingFile(std::string_view path) override {
        files.push_back(below(path));
        std::ifstream file{std::string(path), std::ios::binary};
        addText(std::string(std::istreambuf_iterator<char>(file), {}));
    }

    /// A text that is read without a file, for unaccounted().
    void addText(std::string text) { texts_.push_back(std::move(text)); }

    /// What was reported, in order; beside it each finding itself.
    std::vector<Reported> found;
    std::vector<Finding> findings;

    std::vector<std::string> files;

    /// The findings as "LINE: RULE ATTRIBUTE=VALUE", without what a finding does not have.
    std::vector<std::string> lines() const {
        std::vector<std::string> lines;
        for (std::size_t at = 0; at < found.size(); ++at) {
            const Reported& each = found[at];
            const std::uint32_t number = findings[at].place.begin.line;
            std::string line = number == 0 ? "" : std::to_string(number) + ": ";
            line += each.rule;
            if (!each.attribute.empty() || !each.value.empty())
                line += " " + each.attribute + "=" + each.value;
            lines.push_back(std::move(line));
        }
        return lines;
    }

    /// The names of the rules, in their order.
    std::vector<std::string> rules() const {
        std::vector<std::string> names;
        for (const Reported& each : found)
            names.push_back(each.rule);
        return names;
    }

    /// The elements, attributes and texts of the files read that were neither used nor reported,
    /// and are not in something dropped: "LINE: ELEMENT", "LINE: ELEMENT ATTRIBUTE", "LINE: #text".
    std::vector<std::string> unaccounted() const {
        std::vector<std::string> missing;
        for (const std::string& text : texts_) {
            if (const auto parsed = xml::Document::parseBytes(text, {.positions = true}))
                addUnaccounted(parsed.document.root(), missing);
        }
        return missing;
    }

private:
    using Point = std::pair<std::uint32_t, std::uint32_t>;
    static Point pointOf(const Place& place) { return {place.begin.line, place.begin.column}; }

    static Place placeOf(const std::optional<Place>& place) { return place.value_or(Place()); }

    bool isAccounted(const Place& place) const {
        return used_.contains(pointOf(place)) || reported_.contains(pointOf(place));
    }

    void addUnaccounted(const xml::Element& element, std::vector<std::string>& missing) const {
        const Place place = placeOf(element.place());
        const std::string name =
            std::to_string(place.begin.line) + ": " + std::string(element.name());
        if (!isAccounted(place))
            missing.push_back(name);
        if (!used_.contains(pointOf(place)) || dropped_.contains(pointOf(place)))
            return;
        for (const xml::Attribute attribute : element.attributes()) {
            const Place at = placeOf(element.attributePlace(attribute.name));
            if (!isAccounted(at))
                missing.push_back(name + " " + std::string(attribute.name));
        }
        for (const xml::Node& child : element.children()) {
            if (child.isElement())
                addUnaccounted(xml::Element(child), missing);
            else if (child.kind() == xml::NodeKind::text && !isAccounted(placeOf(child.place())))
                missing.push_back(name + " #text");
        }
    }

    std::string textOf(const Place& place) const {
        std::string text = below(place.file);
        if (place.begin.line != 0)
            text +=
                ':' + std::to_string(place.begin.line) + ':' + std::to_string(place.begin.column);
        return text;
    }

    std::string below(std::string_view text) const {
        return root_.empty() ? std::string(text) : text::replaceAll(text, root_, "");
    }

    std::string root_;
    std::vector<std::string> texts_;
    std::set<Point> used_;
    std::set<Point> reported_;
    std::set<Point> dropped_;
};

}  // namespace yg::testing
