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
#include <map>
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
        reported_.add(finding.place);
        reported_.add(finding.extent);
        if (finding.rule.handling == Handling::dropped && finding.attribute.empty())
            dropped_.add(finding.extent);
    }
    void used(const Place& place) override { used_.add(place); }
    void readingFile(std::string_view path) override {
        files.push_back(below(path));
        std::ifstream file{std::string(path), std::ios::binary};
        texts_[std::string(path)] = std::string(std::istreambuf_iterator<char>(file), {});
    }

    /// A text that is read without a file, for unaccounted().
    void addText(std::string text) { texts_[""] = std::move(text); }

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
        for (const auto& [path, text] : texts_) {
            if (const auto parsed = xml::Document::parseBytes(text, {.positions = true}))
                addUnaccounted(path, parsed.document.root(), missing);
        }
        return missing;
    }

    /// "config/styles.xml:2:10", the path alone without a line.
    std::string textOf(const Place& place) const {
        std::string text = below(place.file);
        if (place.begin.line != 0)
            text +=
                ':' + std::to_string(place.begin.line) + ':' + std::to_string(place.begin.column);
        return text;
    }

private:
    /// Points by file.
    class Points {
    public:
        void add(const Place& place) { points_[place.file].insert(pointOf(place)); }
        bool contain(const Place& place) const {
            const auto file = points_.find(place.file);
            return file != points_.end() && file->second.contains(pointOf(place));
        }

    private:
        static std::pair<std::uint32_t, std::uint32_t> pointOf(const Place& place) {
            return {place.begin.line, place.begin.column};
        }
        std::map<std::string, std::set<std::pair<std::uint32_t, std::uint32_t>>> points_;
    };

    /// The files were parsed from their bytes here, so that places in them have no path.
    static Place placeOf(const std::string& path, const std::optional<Place>& place) {
        Place in = place.value_or(Place());
        in.file = path;
        return in;
    }

    bool isAccounted(const Place& place) const {
        return used_.contain(place) || reported_.contain(place);
    }

    void addUnaccounted(const std::string& path, const xml::Element& element,
                        std::vector<std::string>& missing) const {
        const Place place = placeOf(path, element.place());
        const std::string name =
            std::to_string(place.begin.line) + ": " + std::string(element.name());
        if (!isAccounted(place))
            missing.push_back(name);
        if (!used_.contain(place) || dropped_.contain(place))
            return;
        for (const xml::Attribute attribute : element.attributes()) {
            const Place at = placeOf(path, element.attributePlace(attribute.name));
            if (!isAccounted(at))
                missing.push_back(name + " " + std::string(attribute.name));
        }
        for (const xml::Node& child : element.children()) {
            if (child.isElement())
                addUnaccounted(path, xml::Element(child), missing);
            else if (child.kind() == xml::NodeKind::text &&
                     !isAccounted(placeOf(path, child.place())))
                missing.push_back(name + " #text");
        }
    }

    std::string below(std::string_view text) const {
        return root_.empty() ? std::string(text) : text::replaceAll(text, root_, "");
    }

    std::string root_;
    std::map<std::string, std::string> texts_;  ///< by path
    Points used_;
    Points reported_;
    Points dropped_;
};

}  // namespace yg::testing
