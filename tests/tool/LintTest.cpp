// SPDX-License-Identifier: MIT
//
// What `ygconfig lint` prints. The forms print findings made here, so that no rule and no wording
// matters; whole runs are on small roots.
#include <array>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <nlohmann/json.hpp>

#include "YGConfigManager/diagnostics/Rule.h"

#include "files/TemporaryFolder.h"
#include "tool/Golden.h"
#include "tool/TextOf.h"
#include "tool/ToolRun.h"
#include "ygconfig/lint/Baseline.h"
#include "ygconfig/lint/LintReport.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using yg::Inspection;
using yg::RootFinding;
using yg::ruleNamed;
using yg::Severity;
using yg::TextPoint;
using yg::files::contentOf;
using yg::files::TemporaryFolder;
using yg::testing::isGolden;
using yg::testing::OutputTo;
using yg::testing::runTool;
using yg::testing::ToolRun;
using yg::tool::baselineText;
using yg::tool::hideKnown;
using yg::tool::LintReport;
using yg::tool::Output;
using yg::tool::Paint;
using yg::tool::readBaseline;
using Json = nlohmann::json;

constexpr const char* events = "config/events.xml";

/// An error.
RootFinding finding(TextPoint begin, TextPoint end, std::string file = events) {
    RootFinding made;
    made.rule = ruleNamed("unknown-attribute");
    made.file = std::move(file);
    made.begin = begin;
    made.end = end;
    made.message = "This is wrong.";
    return made;
}

/// A finding that a suggestion is for.
RootFinding suggesting(std::string_view rule, TextPoint begin, TextPoint end, std::string attribute,
                       std::string value, std::string suggestion) {
    RootFinding made = finding(begin, end);
    made.rule = ruleNamed(rule);
    made.attribute = std::move(attribute);
    made.value = std::move(value);
    made.suggestion = std::move(suggestion);
    return made;
}

/// Findings in a root whose one file has this text, in the forms of the tool.
class Forms {
public:
    explicit Forms(std::string_view text, std::vector<RootFinding> findings)
        : findings_(std::move(findings)) {
        root_.write(events, text);
        std::string error;
        report_.root = "some/root";
        report_.inspection = Inspection::open(root_.path(), error);
        report_.failOn = Severity::error;
        for (const RootFinding& each : findings_)
            report_.findings.push_back(&each);
    }

    LintReport& report() { return report_; }

    std::string text(std::size_t width = 80, bool colour = false) const {
        return written(
            [&](Output& output) { yg::tool::writeText(report_, Paint(colour), width, output); });
    }
    std::string json() const {
        return written([&](Output& output) { writeJson(report_, output); });
    }
    Json sarifRun() const {
        return Json::parse(
            written([&](Output& output) { writeSarif(report_, output); }))["runs"][0];
    }
    std::string gitHub() const {
        return written([&](Output& output) { writeGitHub(report_, output); });
    }
    std::string jUnit() const {
        return written([&](Output& output) { writeJUnit(report_, output); });
    }

private:
    static std::string written(const yg::tool::Text& text) { return yg::testing::textOf(text); }

    TemporaryFolder root_;
    std::vector<RootFinding> findings_;
    LintReport report_;
};

std::string textOf(std::string_view file, RootFinding finding, std::size_t width = 80) {
    return Forms(file, {std::move(finding)}).text(width);
}

const std::string firstLine = "config/events.xml:1:9: error: This is wrong. [unknown-attribute]\n";

// ---- Text ----

TEST(LintText, MarksWhatIsWrongInItsLine) {
    EXPECT_EQ(textOf("<a><b c=''/></a>\n", finding({1, 7}, {1, 11})),
              "config/events.xml:1:7: error: This is wrong. [unknown-attribute]\n"
              "    1 | <a><b c=''/></a>\n"
              "      |       ^~~~\n"
              "1 error in 1 file\n");
}

TEST(LintText, MarksByTheColumnsThatCharactersTake) {
    EXPECT_EQ(textOf("<行情 b='报价'/>", finding({1, 5}, {1, 11})),
              "config/events.xml:1:5: error: This is wrong. [unknown-attribute]\n"
              "    1 | <行情 b='报价'/>\n"
              "      |       ^~~~~~~~\n"
              "1 error in 1 file\n");
    EXPECT_THAT(textOf("\t<a\tb=''/>", finding({1, 5}, {1, 9})),
                HasSubstr("    1 |     <a  b=''/>\n"
                          "      |         ^~~~\n"));
}

TEST(LintText, ShowsNoControlCharacters) {
    RootFinding wrong = finding({1, 9}, {1, 10}, "config/\x1b[31m.xml");
    wrong.message = "a\nb\x1b";
    wrong.suggestion = "\xE2\x80\xAE";
    const std::string text = Forms("", {wrong}).text();
    EXPECT_EQ(text.find('\x1b'), std::string::npos);
    EXPECT_EQ(text.find("\xE2\x80\xAE"), std::string::npos);
    EXPECT_THAT(text, StartsWith("config/\uFFFD[31m.xml:1:9: error: a\uFFFDb\uFFFD [unknown-"));
    EXPECT_THAT(textOf("<a b='\x01'/>", finding({1, 4}, {1, 9})),
                HasSubstr("    1 | <a b='\uFFFD'/>\n      |    ^~~~~\n"));
}

TEST(LintText, MarksAPlaceWithoutCharacters) {
    EXPECT_THAT(textOf("<a>", finding({1, 4}, {1, 4})), HasSubstr("1 | <a>\n      |    ^\n"));
    EXPECT_THAT(textOf("<a/>", finding({1, 2}, {1, 2})), HasSubstr("1 | <a/>\n      |  ^\n"));
}

TEST(LintText, MarksToTheEndOfTheLineWhatGoesOnInTheNext) {
    EXPECT_THAT(textOf("<a>\n <b>\n </b>\n</a>", finding({2, 2}, {3, 6})),
                HasSubstr("    2 |  <b>\n      |  ^~~\n"));
}

TEST(LintText, ShowsNoLineForAFileAsAWholeNorForOneThatIsNotThere) {
    EXPECT_EQ(textOf("<a/>", finding({1, 1}, {1, 1})),
              "config/events.xml:1:1: error: This is wrong. [unknown-attribute]\n"
              "1 error in 1 file\n");
    EXPECT_EQ(textOf("<a/>", finding({9, 1}, {9, 2})),
              "config/events.xml:9:1: error: This is wrong. [unknown-attribute]\n"
              "1 error in 1 file\n");
}

TEST(LintText, CutsALongLineAroundTheMark) {
    const std::string blanks(300, '.');
    EXPECT_EQ(textOf(blanks + "wrong" + blanks, finding({1, 301}, {1, 306}), 28),
              "config/events.xml:1:301: error: This is wrong. [unknown-attribute]\n"
              "    1 | ….....wrong........…\n"
              "      |       ^~~~~\n"
              "1 error in 1 file\n");
    EXPECT_THAT(textOf("<a>" + blanks, finding({1, 1}, {1, 4}), 28),
                HasSubstr("    1 | <a>................…\n      | ^~~\n"));
    EXPECT_THAT(textOf(blanks + "</a>", finding({1, 301}, {1, 305}), 28),
                HasSubstr("    1 | …...............</a>\n      |                 ^~~~\n"));
    EXPECT_THAT(textOf(blanks, finding({1, 3}, {1, 300}), 28),
                HasSubstr("    1 | ...................…\n"
                          "      |   ^~~~~~~~~~~~~~~~~~\n"));
}

TEST(LintText, NeverShowsMoreOfALineThanFits) {
    std::string line;
    for (int count = 0; count < 40; ++count)
        line += "报a\t价";
    for (std::uint32_t column = 1; column <= 160; column += 7) {
        const std::string text = textOf(line, finding({1, column}, {1, column + 5}), 40);
        const std::size_t begin = text.find("\n    1 | ") + 1;
        const std::string shown = text.substr(begin, text.find('\n', begin) - begin);
        std::size_t width = 0;
        for (const char each : shown)
            width += (static_cast<unsigned char>(each) & 0xC0) != 0x80 ? 1 : 0;
        for (const std::string wide : {"报", "价"}) {
            for (std::size_t at = shown.find(wide); at != std::string::npos;
                 at = shown.find(wide, at + 1))
                ++width;
        }
        EXPECT_LE(width, 40U) << shown;
        EXPECT_THAT(text, HasSubstr("^"));
    }
}

TEST(LintText, SaysWhatFollowsTheMessageInLinesThatFit) {
    RootFinding wrong = finding({1, 9}, {1, 10});
    wrong.readAs = "the number 12, for the text begins with it and nothing else counts here";
    wrong.suggestion = "split_scale";
    wrong.related.push_back({"config/a.xml", {3, 5}, {3, 6}, "the earlier definition"});
    wrong.consequences.resize(14);
    EXPECT_EQ(textOf("", wrong, 60),
              firstLine +
                  "        read as: the number 12, for the text begins with it\n"
                  "          and nothing else counts here\n"
                  "        nearest: split_scale\n"
                  "        config/a.xml:3:5: the earlier definition\n"
                  "        14 more follow from this\n"
                  "1 error in 1 file\n");
}

TEST(LintText, NeverFoldsTheFirstLine) {
    RootFinding wrong = finding({1, 9}, {1, 9});
    wrong.message = std::string(70, 'a') + " " + std::string(70, 'b');
    EXPECT_THAT(textOf("", wrong, 40), HasSubstr(wrong.message));
}

TEST(LintText, SumsUpInOneLine) {
    RootFinding warning = finding({1, 1}, {1, 1}, "a");
    warning.rule = ruleNamed("missing-attribute");
    RootFinding note = finding({1, 1}, {1, 1}, "b");
    note.rule = ruleNamed("overridden-style");
    Forms forms("", {warning, note, note, finding({1, 1}, {1, 1}, "c")});
    EXPECT_THAT(forms.text(), EndsWith("\n1 error, 1 warning, 2 infos in 3 files\n"));
    forms.report().hidden = 5;
    EXPECT_THAT(forms.text(), EndsWith(" in 3 files; 5 more in the baseline\n"));
    EXPECT_EQ(Forms("", {}).text(), "no findings\n");
}

TEST(LintText, IsTheSameWithoutItsColours) {
    const Forms forms("<a b=''/>", {finding({1, 4}, {1, 8})});
    std::string text = forms.text(80, true);
    EXPECT_THAT(text, HasSubstr("\x1b[1;31merror:\x1b[0m"));
    for (std::size_t at = text.find('\x1b'); at != std::string::npos; at = text.find('\x1b'))
        text.erase(at, text.find('m', at) - at + 1);
    EXPECT_EQ(text, forms.text());
}

// ---- JSON ----

TEST(LintJson, HasTheMembersOfAFinding) {
    RootFinding wrong =
        suggesting("unknown-attribute", {26, 45}, {26, 55}, "split_scal", "0.68", "split_scale");
    wrong.related.push_back({"host.json", {1, 2}, {1, 3}, "here"});
    wrong.consequences.resize(2);
    const Forms forms("", {wrong});
    EXPECT_EQ(Json::parse(forms.json()), Json::parse(R"({
        "findings": [{"rule": "unknown-attribute", "severity": "error", "file": "config/events.xml",
                      "line": 26, "column": 45, "endLine": 26, "endColumn": 55,
                      "message": "This is wrong.", "attribute": "split_scal", "value": "0.68",
                      "suggestion": "split_scale",
                      "related": [{"file": "host.json", "line": 1, "column": 2, "message": "here"}],
                      "consequences": 2}],
        "summary": {"error": 1, "warning": 0, "info": 0}})"));
}

TEST(LintJson, LeavesOutWhatIsAbsentButNotWhatIsEmpty) {
    RootFinding wrong = finding({1, 1}, {1, 1});
    wrong.value = "";
    const Json found = Json::parse(Forms("", {wrong}).json())["findings"][0];
    EXPECT_FALSE(found.contains("attribute"));
    EXPECT_FALSE(found.contains("suggestion"));
    EXPECT_EQ(found["value"], "");
    EXPECT_EQ(found["related"], Json::array());
}

TEST(LintJson, WritesTextAsItStandsAndOtherBytesAsReplacements) {
    RootFinding wrong = finding({1, 1}, {1, 1}, "images/\xB0\xA1\n.png");
    wrong.value = "行情";
    const std::string text = Forms("", {wrong}).json();
    EXPECT_THAT(text, HasSubstr("行情"));
    EXPECT_EQ(Json::parse(text)["findings"][0]["file"], "images/\uFFFD\uFFFD\n.png");
}

// ---- SARIF ----

/// The text that a run's only fix leaves of the line; "" without a fix.
std::string fixedLine(const std::string& line, const RootFinding& wrong) {
    const Json result = Forms(line, {wrong}).sarifRun()["results"][0];
    if (!result.contains("fixes"))
        return "";
    const Json change = result["fixes"][0]["artifactChanges"][0];
    EXPECT_EQ(change["artifactLocation"]["uri"], events);
    const Json replacement = change["replacements"][0];
    const Json region = replacement["deletedRegion"];
    EXPECT_EQ(region["startLine"], region["endLine"]);
    const auto begin = region["startColumn"].get<std::size_t>() - 1;
    const auto end = region["endColumn"].get<std::size_t>() - 1;
    return line.substr(0, begin) + replacement["insertedContent"]["text"].get<std::string>() +
           line.substr(end);
}

TEST(LintSarif, FixesTheValueAndNotTheAttribute) {
    // The place is the attribute as a whole.
    EXPECT_EQ(fixedLine("<a name='x' to='quoet'/>", suggesting("unknown-reuse-panel", {1, 13},
                                                               {1, 23}, "to", "quoet", "quote")),
              "<a name='x' to='quote'/>");
    EXPECT_EQ(fixedLine("<a to = \"to\"/>",
                        suggesting("unknown-reuse-panel", {1, 4}, {1, 13}, "to", "to", "two")),
              "<a to = \"two\"/>");
    // The place is the value, or a part of it.
    EXPECT_EQ(fixedLine("<a to='quoet'/>",
                        suggesting("unknown-reuse-panel", {1, 8}, {1, 13}, "to", "quoet", "quote")),
              "<a to='quote'/>");
}

TEST(LintSarif, FixesTheNameOfAnUnknownAttribute) {
    EXPECT_EQ(fixedLine("<a nmae='nmae'/>",
                        suggesting("unknown-attribute", {1, 4}, {1, 15}, "nmae", "nmae", "name")),
              "<a name='nmae'/>");
    EXPECT_EQ(fixedLine("<a nmae='x'/>",
                        suggesting("unknown-attribute", {1, 4}, {1, 8}, "nmae", "x", "name")),
              "<a name='x'/>");
}

TEST(LintSarif, FixesNothingWhereItIsNotCertainWhatIsReplaced) {
    const auto unsure = [](const std::string& line, const std::string& value,
                           const std::string& suggestion) {
        return fixedLine(line, suggesting("unknown-reuse-panel", {1, 4},
                                          {1, static_cast<std::uint32_t>(line.size() - 1)}, "to",
                                          value, suggestion));
    };
    EXPECT_EQ(unsure("<a to='x'/>", "x", "y"), "<a to='y'/>");  // the others differ from this
    EXPECT_EQ(unsure("<a to='&#120;'/>", "x", "y"), "");
    EXPECT_EQ(unsure("<a to='x;z'/>", "x", "y"), "");
    EXPECT_EQ(unsure("<a ot='x'/>", "x", "y"), "");
    EXPECT_EQ(unsure("<a to='x'/>", "x", "a&b"), "");
    EXPECT_EQ(fixedLine("<a to='x'/>", finding({1, 4}, {1, 10})), "");
    EXPECT_EQ(fixedLine("<a\n to='x'/>",
                        suggesting("unknown-reuse-panel", {1, 1}, {2, 7}, "to", "x", "y")),
              "");
}

TEST(LintSarif, CountsColumnsOfFixesInCodePoints) {
    const Json result =
        Forms("<行情 to='报价'/>",
              {suggesting("unknown-reuse-panel", {1, 5}, {1, 12}, "to", "报价", "行情")})
            .sarifRun()["results"][0];
    const Json region =
        result["fixes"][0]["artifactChanges"][0]["replacements"][0]["deletedRegion"];
    EXPECT_EQ(region["startColumn"], 9);
    EXPECT_EQ(region["endColumn"], 11);
}

TEST(LintSarif, NamesFilesByUrisBelowTheRoot) {
    Forms forms("", {finding({1, 1}, {1, 1}, "images/a b#\xB0%.png")});
    const auto roots = [&](const std::string& root) {
        forms.report().root = root;
        return forms.sarifRun()["originalUriBaseIds"]["ROOT"].value("uri", "");
    };
    const Json place = forms.sarifRun()["results"][0]["locations"][0]["physicalLocation"];
    EXPECT_EQ(place["artifactLocation"]["uri"], "images/a%20b%23%B0%25.png");
    EXPECT_EQ(place["artifactLocation"]["uriBaseId"], "ROOT");
    EXPECT_EQ(roots("some/root"), "some/root/");
    EXPECT_EQ(roots("./some//root/"), "some/root/");
    EXPECT_EQ(roots("."), "");
    EXPECT_EQ(roots("../other"), "");
    EXPECT_EQ(roots("/a b"), "file:///a%20b/");
}

TEST(LintSarif, TellsFindingsApartByWhatTheyAreAndNotByTheirLine) {
    RootFinding other = finding({5, 1}, {5, 2});
    other.value = "x";
    const Json results =
        Forms("", {finding({1, 1}, {1, 1}), finding({2, 1}, {2, 2}), other}).sarifRun()["results"];
    const auto print = [&](std::size_t at) {
        return results[at]["partialFingerprints"]["baselineKey/v1"].get<std::string>();
    };
    EXPECT_EQ(print(0).substr(0, 16), print(1).substr(0, 16));
    EXPECT_THAT(print(0), EndsWith(":1"));
    EXPECT_THAT(print(1), EndsWith(":2"));
    EXPECT_NE(print(0).substr(0, 16), print(2).substr(0, 16));
}

TEST(LintSarif, DescribesEachRule) {
    const Json run = Forms("", {finding({1, 1}, {1, 1})}).sarifRun();
    const Json& listed = run["tool"]["driver"]["rules"];
    ASSERT_EQ(listed.size(), yg::rules().size());
    EXPECT_EQ(listed[run["results"][0]["ruleIndex"].get<std::size_t>()]["id"], "unknown-attribute");
}

// ---- GitHub ----

TEST(LintGitHub, WritesACommandForEachFinding) {
    RootFinding note = finding({2, 3}, {4, 5});
    note.rule = ruleNamed("overridden-style");
    EXPECT_EQ(Forms("", {finding({1, 4}, {1, 8}), note}).gitHub(),
              "::error file=some/root/config/events.xml,line=1,col=4,endLine=1,endColumn=8,"
              "title=unknown-attribute::This is wrong.\n"
              "::notice file=some/root/config/events.xml,line=2,endLine=4,"
              "title=overridden-style::This is wrong.\n");
    EXPECT_EQ(Forms("", {}).gitHub(), "");
}

TEST(LintGitHub, EscapesWhatHasAMeaning) {
    RootFinding wrong = finding({1, 1}, {1, 1}, "a,b:c%\r\n\x1b.xml");
    wrong.message = "100%: a,b\r\n::error::c\x1b";
    wrong.suggestion = "x";
    EXPECT_EQ(Forms("", {wrong}).gitHub(),
              "::error file=some/root/a%2Cb%3Ac%25%0D%0A\uFFFD.xml,line=1,col=1,endLine=1,"
              "endColumn=1,title=unknown-attribute::100%25: a,b%0D%0A::error::c\uFFFD%0A"
              "nearest: x\n");
}

// ---- JUnit ----

TEST(LintJUnit, FailsWhatCountsAsAFailure) {
    RootFinding warning = finding({1, 1}, {1, 1});
    warning.rule = ruleNamed("missing-attribute");
    Forms forms("", {finding({1, 4}, {1, 8}), warning});
    EXPECT_EQ(forms.jUnit(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<testsuite name=\"ygconfig lint\" tests=\"2\" failures=\"1\" errors=\"0\" "
              "skipped=\"0\">\n"
              "  <testcase classname=\"config/events.xml\" name=\"1:4 unknown-attribute\">\n"
              "    <failure type=\"unknown-attribute\" message=\"This is wrong.\">"
              "config/events.xml:1:4: error: This is wrong.</failure>\n"
              "  </testcase>\n"
              "  <testcase classname=\"config/events.xml\" name=\"1:1 missing-attribute\">\n"
              "    <system-out>config/events.xml:1:1: warning: This is wrong.</system-out>\n"
              "  </testcase>\n"
              "</testsuite>\n");
    forms.report().failOn = Severity::warning;
    EXPECT_THAT(forms.jUnit(), HasSubstr("failures=\"2\""));
    forms.report().failOn = std::nullopt;
    EXPECT_THAT(forms.jUnit(), HasSubstr("failures=\"0\""));
}

TEST(LintJUnit, IsWellFormedWhateverTheBytes) {
    std::string bytes;
    for (int each = 0; each < 256; ++each)
        bytes += static_cast<char>(each);
    bytes += "\xEF\xBF\xBE\xEF\xBF\xBF\xED\xA0\x80\xF4\x90\x80\x80]]>--&<行情";
    RootFinding wrong = finding({1, 1}, {1, 1}, bytes);
    wrong.message = bytes;
    wrong.suggestion = bytes;
    const std::string text = Forms("", {wrong}).jUnit();
    xmlDoc* const document = xmlReadMemory(text.data(), static_cast<int>(text.size()), "", nullptr,
                                           XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    EXPECT_TRUE(document) << text;
    xmlFreeDoc(document);
}

TEST(LintJUnit, HasOneTestWhenNothingIsFound) {
    EXPECT_THAT(Forms("", {}).jUnit(), HasSubstr(" tests=\"1\" failures=\"0\""));
}

// ---- The baseline ----

/// In which findings have a path, "events/event[a]" say.
const std::string nested = "<events><event name='a'/><event name='b'/></events>";
constexpr TextPoint inA{1, 10};
constexpr TextPoint inB{1, 26};

std::string baselineOf(std::vector<RootFinding> findings, const std::string& text = nested) {
    return baselineText(Forms(text, std::move(findings)).report());
}

/// The lines of what is shown with a baseline.
std::vector<std::string> shownWith(const std::string& baseline, std::vector<RootFinding> findings,
                                   const std::string& text = nested) {
    std::string error;
    const auto entries = readBaseline(baseline, error);
    EXPECT_TRUE(entries) << error;
    Forms forms(text, std::move(findings));
    hideKnown(*entries, "lint_baseline.json", forms.report());
    std::vector<std::string> lines;
    for (const RootFinding* each : forms.report().findings)
        lines.push_back(yg::tool::placeOf(each->file, each->begin) + " " +
                        std::string(each->rule->name));
    return lines;
}

TEST(LintBaseline, HidesItsFindingsWhereverTheyStandNow) {
    RootFinding wrong = finding(inA, inA);
    wrong.value = "\xB0 \"x\"\n行情";
    const std::string baseline = baselineOf({wrong});
    EXPECT_THAT(baseline, HasSubstr("\"path\": \"events/event[a]\""));
    wrong.begin = {3, inA.column};
    wrong.end = {31, 1};
    wrong.message = "In other words.";
    EXPECT_THAT(shownWith(baseline, {wrong}, "<!--\n-->\n" + nested), ElementsAre());
}

TEST(LintBaseline, DistinguishesRuleFilePathAttributeAndValue) {
    RootFinding wrong = finding(inA, inA);
    wrong.attribute = "x";
    wrong.value = "y";
    const std::string baseline = baselineOf({wrong});
    const auto isHidden = [&](const auto& change) {
        RootFinding other = wrong;
        change(other);
        return shownWith(baseline, {other}).size() == 0;
    };
    EXPECT_TRUE(isHidden([](RootFinding&) {}));
    EXPECT_FALSE(isHidden([](RootFinding& it) { it.rule = ruleNamed("odd-flag"); }));
    EXPECT_FALSE(isHidden([](RootFinding& it) { it.file = "config/a.xml"; }));
    EXPECT_FALSE(isHidden([](RootFinding& it) { it.begin = inB; }));
    EXPECT_FALSE(isHidden([](RootFinding& it) { it.attribute.reset(); }));
    EXPECT_FALSE(isHidden([](RootFinding& it) { it.value = ""; }));
}

TEST(LintBaseline, CountsFindingsOfOneKey) {
    const RootFinding first = finding({1, 4}, {1, 8});
    const RootFinding second = finding({2, 4}, {2, 8});
    const std::string baseline = baselineOf({first, second}, "");
    EXPECT_EQ(baseline,
              "{\n  \"version\": 1,\n  \"findings\": [\n"
              "    {\"rule\": \"unknown-attribute\", \"file\": \"config/events.xml\", "
              "\"path\": \"\", \"count\": 2}\n  ]\n}\n");
    EXPECT_THAT(shownWith(baseline, {first, second}, ""), ElementsAre());
    EXPECT_THAT(shownWith(baseline, {first, second, finding({3, 4}, {3, 8})}, ""),
                ElementsAre("config/events.xml:3:4 unknown-attribute"));
}

TEST(LintBaseline, ReportsEntriesThatMatchNothingAnyMore) {
    const RootFinding wrong = finding({1, 4}, {1, 8});
    RootFinding other = finding({2, 4}, {2, 8});
    other.file = "storage/a.xml";
    const std::string baseline = baselineOf({wrong, wrong, other}, "");
    EXPECT_THAT(shownWith(baseline, {other}, ""),
                ElementsAre("lint_baseline.json:4:5 stale-baseline-entry"));
    EXPECT_THAT(shownWith(baseline, {wrong, other}, ""),
                ElementsAre("lint_baseline.json:4:5 stale-baseline-entry"));
    EXPECT_THAT(shownWith(baseline, {wrong, wrong}, ""),
                ElementsAre("lint_baseline.json:5:5 stale-baseline-entry"));
    // Two entries of one key count together; the last one is then too many.
    const std::string twice = R"({"version": 1, "findings": [
{"rule": "unknown-attribute", "file": "config/events.xml", "path": ""},
{"rule": "unknown-attribute", "file": "config/events.xml", "path": ""}]})";
    EXPECT_THAT(shownWith(twice, {wrong, wrong}, ""), ElementsAre());
    EXPECT_EQ(shownWith(twice, {wrong}, "").size(), 1U);
}

TEST(LintBaseline, OfNothingIsReadAsNothing) {
    EXPECT_THAT(shownWith(baselineOf({}), {}), ElementsAre());
}

TEST(LintBaseline, SaysWhereItDoesNotHaveItsForm) {
    const auto errorOf = [](std::string_view text) {
        std::string error;
        EXPECT_FALSE(readBaseline(text, error)) << text;
        return error;
    };
    EXPECT_EQ(errorOf("{\n 1"), "2:2: not valid JSON");
    EXPECT_EQ(errorOf(" []"), "1:2: not an object");
    EXPECT_EQ(errorOf("{}"), "1:1: 'version' is not 1");
    EXPECT_EQ(errorOf("{\"version\": 2}"), "1:13: 'version' is not 1");
    EXPECT_EQ(errorOf("{\"version\": 1}"), "1:1: 'findings' is not a list");
    EXPECT_EQ(errorOf("{\"version\": 1, \"findings\": {}}"), "1:28: 'findings' is not a list");
    EXPECT_EQ(errorOf("{\"version\": 1, \"findings\": [],\n\"a\": 1}"),
              "2:6: 'a' is not a member of a baseline");
    const auto errorOfEntry = [&](const std::string& entry) {
        return errorOf("{\"version\": 1, \"findings\": [\n" + entry + "]}");
    };
    EXPECT_EQ(errorOfEntry("1"), "2:1: not an object");
    EXPECT_EQ(errorOfEntry("{}"), "2:1: 'rule' is not a text");
    EXPECT_EQ(errorOfEntry(R"({"rule": "a", "file": "b", "path": 1})"),
              "2:36: 'path' is not a text");
    EXPECT_EQ(errorOfEntry(R"({"rule": "a", "file": "b", "path": "", "value": null})"),
              "2:49: 'value' is not a text");
    for (const std::string count : {"0", "-1", "1.5", "\"1\"", "99999999999999999999"})
        EXPECT_EQ(errorOfEntry(R"({"rule": "a", "file": "b", "path": "", "count": )" + count + "}"),
                  "2:49: 'count' is not a whole number from 1 on");
}

// ---- Whole runs ----

/// Has an error, in a file that has nothing else.
const std::string misspelt = "<event_list><comand_event/></event_list>\n";

ToolRun lint(const TemporaryFolder& root, std::vector<std::string> words = {}) {
    words.insert(words.begin(), {"lint", "--root", root.path()});
    return runTool(words);
}

Json jsonOf(const TemporaryFolder& root, std::vector<std::string> words = {}) {
    words.insert(words.end(), {"--format", "json"});
    return Json::parse(lint(root, words).output);
}

void expectRefused(const std::vector<std::string>& words, const std::string& line) {
    const ToolRun run = runTool(words);
    EXPECT_EQ(run.status, 2) << line;
    EXPECT_EQ(run.output, "") << line;
    EXPECT_EQ(run.errors, line + "\n");
}

TEST(Lint, PrintsTheSameBytesTwice) {
    for (const std::string format : {"text", "json", "sarif", "github", "junit"}) {
        const std::vector<std::string> words{"lint", "--root", "examples/terminal", "--format",
                                             format};
        EXPECT_EQ(runTool(words).output, runTool(words).output) << format;
    }
}

/// Every file of a folder with its content, and what the tool prints of it. Servers are left out,
/// for their addresses are chosen at random.
std::map<std::string, std::string> everythingOf(const std::string& root) {
    std::map<std::string, std::string> all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
        all[entry.path()] = entry.is_regular_file() ? contentOf(entry.path()) : "";
    for (const std::string what :
         {"layout", "events", "palette", "settings", "web-pages", "request-urls"}) {
        const ToolRun run = runTool({"dump", what, "--root", root});
        all["dump " + what] = run.output + run.errors;
    }
    return all;
}

TEST(Lint, ChangesNoFileAndNoAnswer) {
    const TemporaryFolder root;
    std::filesystem::copy(YG_PROJECT_FOLDER "/examples/terminal", root.path(),
                          std::filesystem::copy_options::recursive);
    root.write("config/magic_panels.xml", "<groups><magic_panels nam=\"chart\"/></groups>");
    root.write("user/app_config.xml", "<config><start><page>x</page></start></config>");
    const auto before = everythingOf(root.path());
    EXPECT_EQ(lint(root).status, 1);
    EXPECT_EQ(runTool({"check-delivery", "web-page", root.path() + "/storage/web_page_urls.xml",
                       "--root", root.path()})
                  .status,
              0);
    EXPECT_EQ(everythingOf(root.path()), before);
}

TEST(Lint, EndsWithTheStatusOfItsWorstFinding) {
    const TemporaryFolder root;
    root.write(events, misspelt);
    const Json summary = jsonOf(root)["summary"];
    EXPECT_GT(summary["error"], 0);
    EXPECT_EQ(lint(root).status, 1);
    EXPECT_EQ(lint(root, {"--fail-on", "error"}).status, 1);
    EXPECT_EQ(lint(root, {"--fail-on", "info"}).status, 1);
    EXPECT_EQ(lint(root, {"--fail-on", "never"}).status, 0);
    for (const std::string format : {"text", "json", "sarif", "github", "junit"})
        EXPECT_EQ(lint(root, {"--format", format}).status, 1) << format;
}

TEST(Lint, EndsWellWithFindingsBelowTheSeverityThatFails) {
    const std::string sample = "examples/terminal";
    EXPECT_EQ(runTool({"lint", "--root", sample}).status, 0);
    EXPECT_EQ(runTool({"lint", "--root", sample, "--fail-on", "warning"}).status, 0);
    EXPECT_EQ(runTool({"lint", "--root", sample, "--fail-on=info"}).status, 1);
}

TEST(Lint, RunsOnARootWhoseHostCannotBeUsed) {
    const TemporaryFolder root;
    root.write("host.json", "[");
    const ToolRun run = lint(root, {"--format", "json"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "");
    EXPECT_TRUE(Json::parse(run.output).contains("findings"));
}

TEST(Lint, RefusesWhatItDoesNotKnow) {
    const TemporaryFolder root;
    expectRefused({"lint", "--root", root.at("none")},
                  "ygconfig: root folder \"" + root.at("none") + "\": No such file or directory");
    expectRefused({"lint", "--format", "xml"},
                  "ygconfig lint: --format: 'xml' is not text, json, "
                  "sarif, github or junit");
    expectRefused({"lint", "--fail-on", ""},
                  "ygconfig lint: --fail-on: '' is not error, warning, info or never");
    expectRefused({"lint", "--color", "sometimes"},
                  "ygconfig lint: --color: 'sometimes' is not always, never or auto");
    expectRefused({"lint", "--rule", "unknown-atribute"},
                  "ygconfig lint: there is no rule 'unknown-atribute'; did you mean "
                  "'unknown-attribute'?");
    expectRefused({"lint", "--rules", "--format", "sarif"},
                  "ygconfig lint: --rules and --rule print text or json");
}

TEST(Lint, ExplainsRulesWithoutARoot) {
    EXPECT_TRUE(isGolden(runTool({"lint", "--help"}).output, "help-lint.txt"));
    EXPECT_TRUE(isGolden(runTool({"lint", "--root=none", "--rule", "unknown-attribute"}).output,
                         "lint-rule.txt"));
    EXPECT_TRUE(isGolden(runTool({"lint", "--rule=unknown-attribute", "--format=json"}).output,
                         "lint-rule.json"));
    const ToolRun list = runTool({"lint", "--rules"});
    EXPECT_EQ(list.status, 0);
    const Json listed =
        Json::parse(runTool({"lint", "--rules", "--format", "json"}).output)["rules"];
    ASSERT_EQ(listed.size(), yg::rules().size());
    std::size_t at = 0;
    for (const yg::Rule& rule : yg::rules()) {
        EXPECT_EQ(listed[at++]["rule"], rule.name);
        EXPECT_THAT(list.output, HasSubstr(" " + std::string(rule.name) + " "));
        EXPECT_EQ(runTool({"lint", "--rule", std::string(rule.name)}).status, 0);
    }
}

TEST(Lint, ColoursAreForTerminalsAndForWhoAsks) {
    const TemporaryFolder root;
    const auto isColoured = [&](std::vector<std::string> words,
                                std::vector<std::string> environment,
                                OutputTo to = OutputTo::memory) {
        words.insert(words.end(), {"--root", root.path()});
        return runTool(words, {.outputTo = to, .environment = std::move(environment)})
                   .output.find('\x1b') != std::string::npos;
    };
    for (const char* const command : {"lint", "show"}) {
        EXPECT_FALSE(isColoured({command}, {})) << command;
        EXPECT_TRUE(isColoured({command}, {}, OutputTo::terminal)) << command;
        EXPECT_TRUE(isColoured({command, "--color", "always"}, {"NO_COLOR=1"})) << command;
        EXPECT_TRUE(isColoured({"--color=always", command}, {})) << command;
        EXPECT_FALSE(isColoured({command, "--color=never"}, {}, OutputTo::terminal)) << command;
        EXPECT_TRUE(isColoured({command}, {"CLICOLOR_FORCE=1"})) << command;
        EXPECT_FALSE(isColoured({command}, {"NO_COLOR=1"}, OutputTo::terminal)) << command;
    }
    EXPECT_FALSE(isColoured({"lint", "--format=json", "--color=always"}, {}));
}

TEST(Lint, HidesWhatTheBaselineOfTheRootHas) {
    const TemporaryFolder root;
    root.write(events, misspelt);
    const ToolRun writing = lint(root, {"--write-baseline"});
    EXPECT_EQ(writing.status, 0);
    EXPECT_THAT(writing.output, StartsWith(root.at("lint_baseline.json") + ": "));
    const ToolRun clean = lint(root, {"--fail-on", "info"});
    EXPECT_EQ(clean.status, 0);
    EXPECT_THAT(clean.output, StartsWith("no findings; "));

    root.write(events, "\n\n" + misspelt);
    EXPECT_EQ(lint(root, {"--fail-on", "info"}).status, 0);
    root.write(events, "<event_list><other_event/></event_list>");
    EXPECT_EQ(lint(root).status, 1);
    EXPECT_THAT(lint(root).output, HasSubstr("[stale-baseline-entry]\n"));

    const std::string before = contentOf(root.at("lint_baseline.json"));
    lint(root, {"--write-baseline"});
    EXPECT_NE(contentOf(root.at("lint_baseline.json")), before);
    EXPECT_EQ(lint(root, {"--fail-on", "info"}).status, 0);
}

TEST(Lint, ReportsStaleEntriesInTheirFile) {
    const TemporaryFolder root;
    root.write("lint_baseline.json", R"({"version": 1, "findings": [
  {"rule": "gone", "file": "host.json", "path": ""}]})");
    const ToolRun run = lint(root, {"--fail-on", "never"});
    EXPECT_THAT(
        run.output,
        HasSubstr("lint_baseline.json:2:3: info: Remove this entry: 'gone' in host.json is "
                  "not found any more. [stale-baseline-entry]\n"
                  "    2 |   {\"rule\": \"gone\", \"file\": \"host.json\", \"path\": \"\"}]}\n"
                  "      |   ^~~~"));
    const TemporaryFolder inside;
    inside.makeFolder("root");
    inside.write("known.json", contentOf(root.at("lint_baseline.json")));
    EXPECT_THAT(
        runTool({"lint", "--root", "root", "--baseline", "known.json"}, {.folder = inside.path()})
            .output,
        StartsWith("../known.json:2:3: info: "));
}

TEST(Lint, WritesAndReadsTheBaselineThatIsNamed) {
    const TemporaryFolder root;
    root.write(events, misspelt);
    const std::string other = root.at("known.json");
    EXPECT_EQ(lint(root, {"--write-baseline", "--baseline", other}).status, 0);
    EXPECT_EQ(root.names(), (std::set<std::string>{"config", "known.json"}));
    EXPECT_EQ(lint(root).status, 1);
    EXPECT_EQ(lint(root, {"--baseline", other}).status, 0);
}

TEST(Lint, CannotRunWithABaselineThatCannotBeRead) {
    const TemporaryFolder root;
    const std::vector<std::string> words{"lint", "--root", root.path()};
    root.write("lint_baseline.json", "{\n  \"version\": }");
    expectRefused(words,
                  "ygconfig lint: " + root.at("lint_baseline.json") + ":2:14: not valid JSON");
    std::vector<std::string> named = words;
    named.insert(named.end(), {"--baseline", root.at("none.json")});
    expectRefused(named, "ygconfig lint: " + root.at("none.json") + ": No such file or directory");
    named.back() = root.path();
    expectRefused(named, "ygconfig lint: " + root.path() + ": Is a directory");
    // Writing it does not ask what it was.
    EXPECT_EQ(lint(root, {"--write-baseline"}).status, 0);
    EXPECT_EQ(lint(root).status, 0);
}

TEST(Lint, SaysWhyTheBaselineIsNotWritten) {
    const TemporaryFolder root;
    const ToolRun run = lint(root, {"--write-baseline", "--baseline", root.at("none/known.json")});
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors,
              "ygconfig lint: " + root.at("none/known.json") + ": No such file or directory\n");
}

// ---- Schemas ----

/// What `jsonschema` says of a text; empty when the schema accepts it.
std::string refusal(const std::string& schema, const std::string& text) {
    const TemporaryFolder folder;
    folder.write("text.json", text);
    const std::string command =
        "jsonschema -i '" + folder.at("text.json") + "' " YG_PROJECT_FOLDER "/" + schema + " 2>&1";
    std::array<char, 4096> part{};
    std::string said;
    FILE* const pipe = ::popen(command.c_str(), "r");
    while (std::fgets(part.data(), part.size(), pipe))
        said += part.data();
    return ::pclose(pipe) == 0 ? "" : "refused: " + said;
}

TEST(LintSchemas, AcceptWhatIsPrinted) {
    const TemporaryFolder root;
    root.write(events, misspelt + "\xB0\xA1");
    root.write("config/tab_styles.xml",
               "<styles><style name='a' default_stile='行情' b='1'/></styles>");
    root.write("host.json", "[");
    root.write("storage/\xB0\xA1 #%.xml", "<a/>");
    lint(root, {"--write-baseline"});
    EXPECT_EQ(
        refusal("schemas/lint_baseline.schema.json", contentOf(root.at("lint_baseline.json"))), "");
    ::unlink(root.at("lint_baseline.json").c_str());
    for (const std::string& folder : {root.path(), std::string("examples/terminal")}) {
        const auto printed = [&](const std::string& format) {
            return runTool({"lint", "--root", folder, "--format", format}).output;
        };
        EXPECT_EQ(refusal("schemas/lint.schema.json", printed("json")), "") << folder;
        EXPECT_EQ(refusal("tests/tool/sarif.schema.json", printed("sarif")), "") << folder;
    }
}

TEST(LintSchemas, RefuseOtherThings) {
    const std::string finding = R"({"findings": [{"rule": "a", "severity": "fatal", "file": "",
        "line": 1, "column": 1, "endLine": 1, "endColumn": 1, "message": "m", "related": [],
        "consequences": 0}], "summary": {"error": 1, "warning": 0, "info": 0}})";
    EXPECT_THAT(refusal("schemas/lint.schema.json", finding), HasSubstr("fatal"));
    EXPECT_NE(refusal("schemas/lint.schema.json", "{}"), "");
    EXPECT_NE(refusal("schemas/lint_baseline.schema.json", R"({"version": 2, "findings": []})"),
              "");
    EXPECT_NE(refusal("tests/tool/sarif.schema.json", R"({"version": "2.1.0"})"), "");
}

TEST(LintSchemas, AcceptFixesAndRelatedPlaces) {
    RootFinding wrong = suggesting("unknown-reuse-panel", {1, 8}, {1, 13}, "to", "quoet", "quote");
    wrong.related.push_back({"config/a b.xml", {1, 1}, {1, 2}, "here"});
    const Forms forms("<a to='quoet'/>", {wrong});
    const Json run = forms.sarifRun();
    ASSERT_TRUE(run["results"][0].contains("fixes"));
    ASSERT_TRUE(run["results"][0].contains("relatedLocations"));
    const Json whole{{"version", "2.1.0"}, {"runs", Json::array({run})}};
    EXPECT_EQ(refusal("tests/tool/sarif.schema.json", whole.dump()), "");
}

}  // namespace
