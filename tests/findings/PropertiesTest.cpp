// SPDX-License-Identifier: MIT
//
// A finding is right when the library agrees: what is reported as dropped can be deleted without a
// change, and what is not reported counts. Over the sample, the seeds of the fuzz targets and
// generated roots.
#include <algorithm>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Document.h"

#include "diagnostics/RecordingSink.h"
#include "findings/Root.h"

namespace yg::testing {
namespace {

using ::testing::IsEmpty;

constexpr unsigned generatedRoots = 300;

/// What has to be excepted from "what is dropped can be deleted", by rule.
const std::set<std::string_view> notDeletable{
    // Without its root a file cannot be read, which is logged, and a palette is not made.
    "event-root-name", "palette-root-name", "settings-root-name", "web-page-root-name",
    "server-root-name",
    // A text or a comment that is a magic panel's first child is what custom pages show.
    "comment-before-panel"};

/// Attributes without an effect that could be seen, as "ELEMENT ATTRIBUTE"; "*" is any element.
const std::set<std::pair<std::string_view, std::string_view>> withoutVisibleEffect{
    // What a settings item is for; kept in the file and never answered.
    {"*", "description"}};

/// A range of bytes in a file.
using Range = std::pair<std::size_t, std::size_t>;

/// Where points of a text are in its bytes.
class Offsets {
public:
    explicit Offsets(std::string_view text) : text_(text) {
        for (std::size_t at = 0; at != std::string_view::npos;) {
            lines_.push_back(at);
            at = text.find('\n', at);
            at += at == std::string_view::npos ? 0 : 1;
        }
    }

    Range of(const Place& place) const { return {of(place.begin), of(place.end)}; }

private:
    std::size_t of(const TextPoint& point) const {
        std::size_t at = lines_.at(point.line - 1);
        if (point.line == 1 && text_.starts_with(text::byteOrderMark))
            at += text::byteOrderMark.size();
        for (std::uint32_t column = 1; column < point.column; ++column)
            at += text::firstCharacter(text_.substr(at)).size;
        return at;
    }

    std::string_view text_;
    std::vector<std::size_t> lines_;
};

/// A member or an item of a JSON list goes with one comma beside it.
Range withComma(const std::string& json, Range range) {
    const std::size_t behind = json.find_first_not_of(" \t\r\n", range.second);
    if (behind != std::string::npos && json[behind] == ',')
        return {range.first, behind + 1};
    const std::size_t before = json.find_last_not_of(" \t\r\n", range.first - 1);
    return json[before] == ',' ? Range{before, range.second} : range;
}

RootFiles withoutDropped(const RootFiles& files, const Root& root,
                         const std::vector<Finding>& findings) {
    std::map<std::string, std::set<Range>> dropped;
    for (const Finding& finding : findings) {
        const std::string name = root.nameOf(finding.extent.file);
        if (finding.rule.handling != Handling::dropped || finding.extent.begin.line == 0 ||
            notDeletable.contains(finding.rule.name) || !files.contains(name))
            continue;
        const std::string& text = files.find(name)->second;
        const Range range = Offsets(text).of(finding.extent);
        dropped[name].insert(text.starts_with("{") ? withComma(text, range) : range);
    }
    RootFiles left = files;
    for (const auto& [name, ranges] : dropped) {
        std::string& text = left[name];
        std::size_t end = text.size();
        // From the end on, so that the others stay where they are.
        std::vector<Range> disjoint;
        for (const Range& range : ranges) {
            if (!disjoint.empty() && range.first < disjoint.back().second)
                disjoint.back().second = std::max(disjoint.back().second, range.second);
            else
                disjoint.push_back(range);
        }
        for (auto range = disjoint.rbegin(); range != disjoint.rend(); ++range)
            text.erase(range->first, std::min(range->second, end) - range->first);
    }
    return left;
}

/// The subjects in which two answers differ.
std::vector<std::string> differences(const Answers& one, const Answers& other) {
    std::vector<std::string> subjects;
    for (const auto& [subject, text] : one) {
        if (other.at(subject) != text)
            subjects.push_back(subject);
    }
    return subjects;
}

struct AttributePlace {
    std::string file;
    std::string element;
    std::string attribute;
    std::string value;
    Place valuePlace;
    TextPoint begin;
};

void addAttributes(const std::string& file, const xml::Element& element,
                   const std::set<std::tuple<std::string, std::uint32_t, std::uint32_t>>& dropped,
                   std::vector<AttributePlace>& found) {
    const auto place = element.place();
    if (!element || dropped.contains({file, place->begin.line, place->begin.column}))
        return;
    for (const xml::Attribute attribute : element.attributes())
        found.push_back({file, std::string(element.name()), std::string(attribute.name),
                         std::string(attribute.value), *element.valuePlace(attribute.name),
                         element.attributePlace(attribute.name)->begin});
    for (const xml::Node& child : element.children())
        addAttributes(file, xml::Element(child), dropped, found);
}

/// The attributes that no finding is about, and that are not in something dropped.
std::vector<AttributePlace> silentAttributes(const RootFiles& files, const Root& root,
                                             const RecordingSink& sink) {
    std::set<std::tuple<std::string, std::uint32_t, std::uint32_t>> dropped;
    std::set<std::tuple<std::string, std::uint32_t, std::uint32_t>> reported;
    for (const Finding& finding : sink.findings) {
        const auto keyOf = [&](const Place& place) {
            return std::tuple(root.nameOf(place.file), place.begin.line, place.begin.column);
        };
        if (finding.rule.handling == Handling::dropped || finding.rule.name == "element-in-text")
            dropped.insert(keyOf(finding.extent));
        for (const RelatedPlace& related : finding.related) {
            if (finding.rule.handling == Handling::replaced)
                dropped.insert(keyOf(related.place));
        }
        reported.insert(keyOf(finding.place));
    }
    std::vector<AttributePlace> found;
    for (const std::string& file : sink.files) {
        const std::string name = root.nameOf(file);
        const auto text = files.find(name);
        const auto parsed = text == files.end()
                                ? xml::ParseResult()
                                : xml::Document::parseBytes(text->second, {.positions = true});
        if (parsed)
            addAttributes(name, parsed.document.root(), dropped, found);
    }
    std::erase_if(found, [&](const AttributePlace& each) {
        return reported.contains({each.file, each.begin.line, each.begin.column}) ||
               reported.contains(
                   {each.file, each.valuePlace.begin.line, each.valuePlace.begin.column}) ||
               dropped.contains({each.file, each.begin.line, each.begin.column});
    });
    return found;
}

/// Whether another value of the attribute changes any answer.
bool counts(const RootFiles& files, const Lookups& lookups, const Answers& answers,
            const AttributePlace& attribute) {
    for (const std::string& value :
         {attribute.value + "7", std::string("true"), std::string("3")}) {
        if (value == attribute.value)
            continue;
        RootFiles changed = files;
        std::string& text = changed[attribute.file];
        const Range range = Offsets(text).of(attribute.valuePlace);
        text.replace(range.first, range.second - range.first, value);
        if (Root(changed).answers(lookups, nullptr) != answers)
            return true;
    }
    return false;
}

/// Everything that is to hold of a root.
void expectRightFindings(const RootFiles& files, std::size_t mostAttributes) {
    const Lookups lookups = lookupsOf(files);
    const Root root(files);
    RecordingSink sink;
    const Answers answers = root.answers(lookups, &sink);
    EXPECT_THAT(differences(root.answers(lookups, nullptr), answers), IsEmpty());
    EXPECT_THAT(sink.unaccounted(), IsEmpty());

    const RootFiles left = withoutDropped(files, root, sink.findings);
    EXPECT_THAT(differences(Root(left).answers(lookups, nullptr), answers), IsEmpty());

    const auto silent = silentAttributes(files, root, sink);
    const std::size_t step = std::max<std::size_t>(1, silent.size() / mostAttributes);
    for (std::size_t at = 0; at < silent.size(); at += step) {
        const AttributePlace& each = silent[at];
        if (withoutVisibleEffect.contains({each.element, each.attribute}) ||
            withoutVisibleEffect.contains({"*", each.attribute}))
            continue;
        EXPECT_TRUE(counts(files, lookups, answers, each))
            << each.file << ':' << each.begin.line << ':' << each.begin.column << ": "
            << each.element << ' ' << each.attribute << "=\"" << each.value << '"';
    }
}

class GeneratedRoots : public ::testing::TestWithParam<unsigned> {};

TEST_P(GeneratedRoots, HaveRightFindings) {
    constexpr unsigned together = 10;
    for (unsigned seed = GetParam() * together; seed < (GetParam() + 1) * together; ++seed) {
        SCOPED_TRACE("root " + std::to_string(seed));
        expectRightFindings(generatedRoot(seed), 12);
        if (HasFailure()) {
            if (getenv("SHOW")) { const Root r(generatedRoot(seed)); RecordingSink sink; r.answers(lookupsOf(generatedRoot(seed)), &sink);
                for (auto& [n,t] : generatedRoot(seed)) std::cout << "FILE " << n << "\n" << t << "\n";
                for (auto& f : sink.findings) { std::cout << "F " << f.rule.name << " " << r.nameOf(f.place.file) << ":" << f.place.begin.line << ":" << f.place.begin.column << " ext " << f.extent.begin.line << ":" << f.extent.begin.column << "-" << f.extent.end.line << ":" << f.extent.end.column << " " << f.element << " " << f.attribute << "=" << f.value; for (auto& rr : f.related) std::cout << " REL " << r.nameOf(rr.place.file) << ":" << rr.place.begin.line << ":" << rr.place.begin.column; std::cout << "\n"; } }
            return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Properties, GeneratedRoots, ::testing::Range(0U, generatedRoots / 10));

TEST(Findings, OfTheSampleAreRight) {
    expectRightFindings(filesIn(YG_SAMPLE_FOLDER), 40);
}

}  // namespace
}  // namespace yg::testing
