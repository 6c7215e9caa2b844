// SPDX-License-Identifier: MIT
//
// A finding is right when the library agrees: what is reported as dropped can be deleted without a
// change, and what is not reported counts. Over the sample, the seeds of the fuzz targets and
// generated roots.
#include <algorithm>
#include <regex>
#include <set>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/inspection/Inspection.h"
#include "YGConfigManager/xml/Document.h"

#include "LargeInput.h"
#include "diagnostics/RecordingSink.h"
#include "findings/Offsets.h"
#include "findings/Root.h"

namespace yg::testing {
namespace {

using ::testing::IsEmpty;

constexpr unsigned generatedRoots = isSanitized ? 100 : 500;

/// What has to be excepted from "what is dropped can be deleted", by rule.
const std::set<std::string_view> notDeletable{
    // Without its root a file cannot be read, which is logged, and a palette is not made.
    "event-root-name", "palette-root-name", "settings-root-name", "web-page-root-name",
    "server-root-name",
    // A text or a comment that is a magic panel's first child is what custom pages show.
    "comment-before-panel",
    // A magic panel without a panel still hides a later one of its name from custom pages.
    "member-without-panel"};

/// Attributes without an effect that could be seen, as "ELEMENT ATTRIBUTE"; "*" is any element.
const std::set<std::pair<std::string_view, std::string_view>> withoutVisibleEffect{
    // What a settings item is for; kept in the file and never answered.
    {"*", "description"},
    // Another face may be unknown, and the system font the one that was named.
    {"*", "FACE"}};

/// JSON with the commas that it needs, and no others.
std::string withRightCommas(const std::string& json) {
    static const std::regex doubled(R"(,(\s*,)+)");
    static const std::regex leading(R"(([\[{]\s*),)");
    static const std::regex trailing(R"(,(\s*[\]}]))");
    return std::regex_replace(
        std::regex_replace(std::regex_replace(json, doubled, ","), leading, "$1"), trailing, "$1");
}

/// The files without what is reported as dropped. In the place of an element or a text a comment is
/// left, since some things depend on whether there is any content.
RootFiles withoutDropped(const RootFiles& files, std::span<const RootFinding> findings) {
    std::map<std::string, std::map<Range, bool>> dropped;  // and whether it is content
    for (const RootFinding& finding : findings) {
        const std::string& name = finding.file;
        if (finding.rule->handling != Handling::dropped ||
            finding.extentBegin == finding.extentEnd || notDeletable.contains(finding.rule->name) ||
            !files.contains(name))
            continue;
        const std::string& text = files.find(name)->second;
        const Range range = Offsets(text).of(finding.extentBegin, finding.extentEnd);
        // A template has a slot for each argument of a page, also where nothing is shown.
        if (text.substr(range.first, range.second - range.first).find("<magic_panels") !=
            std::string::npos)
            continue;
        dropped[name][range] = text[range.first] == '<' || finding.element == "#text";
    }
    RootFiles left = files;
    for (const auto& [name, ranges] : dropped) {
        std::string& text = left[name];
        std::vector<std::pair<Range, bool>> apart;
        for (const auto& [range, isContent] : ranges) {
            if (apart.empty() || range.first >= apart.back().first.second)
                apart.emplace_back(range, isContent);
        }
        // From the end on, so that the others stay where they are.
        for (auto each = apart.rbegin(); each != apart.rend(); ++each)
            text.replace(each->first.first, each->first.second - each->first.first,
                         each->second ? "<!-- -->" : "");
        if (!name.ends_with(".xml"))
            text = withRightCommas(text);
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
    Place place;
};

/// Elements by where they are: file, begin and end.
using Elements = std::set<std::tuple<std::string, TextPoint, TextPoint>>;

void addAttributes(const std::string& file, const xml::Element& element, const Elements& covered,
                   std::vector<AttributePlace>& found) {
    const auto place = element.place();
    if (!element || covered.contains({file, place->begin, place->end}))
        return;
    // A template that includes the earlier one of its name, which it replaces, and has nothing else
    // is the same as without it.
    const auto source = element.attribute("src");
    if (source && source == element.parent().attribute("name"))
        return;
    for (const xml::Attribute attribute : element.attributes())
        found.push_back({file, std::string(element.name()), std::string(attribute.name),
                         std::string(attribute.value), *element.valuePlace(attribute.name),
                         *element.attributePlace(attribute.name)});
    for (const xml::Node& child : element.children())
        addAttributes(file, xml::Element(child), covered, found);
}

/// Rules whose related places have no effect either: earlier includes, slots, a whole file.
const std::set<std::string_view> withoutEffectBeside{"repeated-include", "soft-optimize-dropped"};

/// The attributes that no finding is about, and that are not in something without effect.
std::vector<AttributePlace> silentAttributes(const RootFiles& files, const Root& root,
                                             std::span<const RootFinding> findings,
                                             const RecordingSink& sink) {
    Elements covered;
    std::set<std::string> coveredFiles;
    std::set<std::pair<std::string, TextPoint>> reported;
    const auto cover = [&](const std::string& file, const TextPoint& begin, const TextPoint& end) {
        covered.insert({file, begin, end});
        reported.insert({file, begin});
    };
    for (const RootFinding& finding : findings) {
        cover(finding.file, finding.extentBegin, finding.extentEnd);
        reported.insert({finding.file, finding.begin});
        if (finding.extentBegin == finding.extentEnd)
            coveredFiles.insert(finding.file);
        for (const RootPlace& related : finding.related) {
            const bool isWithoutEffect = finding.rule->handling == Handling::replaced ||
                                         withoutEffectBeside.contains(finding.rule->name);
            if (isWithoutEffect && related.begin == related.end)
                coveredFiles.insert(related.file);
            else if (isWithoutEffect)
                cover(related.file, related.begin, related.end);
        }
        for (const RootPlace& consequence : finding.consequences)
            cover(consequence.file, consequence.begin, consequence.end);
    }
    std::vector<AttributePlace> found;
    for (const std::string& file : sink.files) {
        const std::string name = root.nameOf(file);
        const auto text = files.find(name);
        const auto parsed = text == files.end()
                                ? xml::ParseResult()
                                : xml::Document::parseBytes(text->second, {.positions = true});
        if (parsed && !coveredFiles.contains(name))
            addAttributes(name, parsed.document.root(), covered, found);
    }
    std::erase_if(found, [&](const AttributePlace& each) {
        return reported.contains({each.file, each.place.begin}) ||
               reported.contains({each.file, each.valuePlace.begin});
    });
    return found;
}

/// Whether another value of the attribute changes any answer.
bool counts(const RootFiles& files, const Lookups& lookups, const AttributePlace& attribute) {
    for (const std::string& value :
         {attribute.value + "7", std::string("true"), std::string("3")}) {
        if (value == attribute.value)
            continue;
        RootFiles changed = files;
        std::string& text = changed[attribute.file];
        const Range range = Offsets(text).of(attribute.valuePlace.begin, attribute.valuePlace.end);
        text.replace(range.first, range.second - range.first, value);
        Lookups both = lookups;
        const Lookups more = lookupsOf(changed);
        both.items.insert(both.items.end(), more.items.begin(), more.items.end());
        both.keys.insert(both.keys.end(), more.keys.begin(), more.keys.end());
        if (Root(changed).answers(both, nullptr) != Root(files).answers(both, nullptr))
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

    std::string error;
    const auto inspection = Inspection::open(root.path(), error);
    ASSERT_TRUE(inspection) << error;
    const RootFiles left = withoutDropped(files, inspection->findings());
    EXPECT_THAT(differences(Root(left).answers(lookups, nullptr), answers), IsEmpty());

    const auto silent = silentAttributes(files, root, inspection->findings(), sink);
    const std::size_t step = std::max<std::size_t>(1, silent.size() / mostAttributes);
    for (std::size_t at = 0; at < silent.size(); at += step) {
        const AttributePlace& each = silent[at];
        if (withoutVisibleEffect.contains({each.element, each.attribute}) ||
            withoutVisibleEffect.contains({"*", each.attribute}))
            continue;
        EXPECT_TRUE(counts(files, lookups, each))
            << each.file << ':' << each.place.begin.line << ':' << each.place.begin.column << ": "
            << each.element << ' ' << each.attribute << "=\"" << each.value << '"';
    }
}

class GeneratedRoots : public ::testing::TestWithParam<unsigned> {};

TEST_P(GeneratedRoots, HaveRightFindings) {
    constexpr unsigned together = 10;
    for (unsigned seed = GetParam() * together; seed < (GetParam() + 1) * together; ++seed) {
        SCOPED_TRACE("root " + std::to_string(seed));
        expectRightFindings(generatedRoot(seed), 12);
        if (HasFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(Properties, GeneratedRoots, ::testing::Range(0U, generatedRoots / 10));

class SeedRoots : public ::testing::TestWithParam<std::string> {};

TEST_P(SeedRoots, HaveRightFindings) {
    for (const auto& [name, files] : seedRoots(std::string(YG_SEED_FOLDER) + "/" + GetParam())) {
        SCOPED_TRACE(name);
        expectRightFindings(files, 40);
    }
}

INSTANTIATE_TEST_SUITE_P(Properties, SeedRoots,
                         ::testing::Values("layout", "events", "palette", "servers", "settings",
                                           "web_pages", "request_urls"),
                         [](const auto& each) { return each.param; });

TEST(Findings, OfTheSampleAreRight) {
    expectRightFindings(filesIn(YG_SAMPLE_FOLDER), 40);
}

}  // namespace
}  // namespace yg::testing
