// SPDX-License-Identifier: MIT
//
// The file that `ygconfig report` writes: what is the same for every root, the model in it, and
// where it goes. tests/browser looks at the page as a reader does.
#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <openssl/evp.h>

#include "files/TemporaryFolder.h"
#include "tool/ToolRun.h"

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using yg::files::contentOf;
using yg::files::TemporaryFolder;
using yg::testing::OutputTo;
using yg::testing::runTool;
using yg::testing::ToolRun;

const std::string sample = YG_PROJECT_FOLDER "/examples/terminal";

ToolRun reportOf(const std::string& root) {
    return runTool({"report", "--root", root});
}

/// A page, cut at its model.
struct Page {
    std::string before;
    std::string model;
    std::string behind;
};

/// The model ends where a browser ends it, at the first end of a script element.
Page pageOf(const std::string& text) {
    const std::string_view start = R"(<script type="application/json" id="model">)";
    const std::size_t begin = text.find(start);
    if (begin == std::string::npos)
        return {text, "", ""};
    const std::size_t end = text.find("</script", begin);
    return {text.substr(0, begin + start.size()),
            text.substr(begin + start.size(), end - begin - start.size()), text.substr(end)};
}

Page pageOfRoot(const std::string& root) {
    return pageOf(reportOf(root).output);
}

/// What stands between two texts, all of it each time.
std::vector<std::string> between(const std::string& text, std::string_view left,
                                 std::string_view right) {
    std::vector<std::string> found;
    for (std::size_t at = text.find(left); at != std::string::npos; at = text.find(left, at)) {
        at += left.size();
        found.push_back(text.substr(at, text.find(right, at) - at));
    }
    return found;
}

/// As policies write it.
std::string digestOf(const std::string& text) {
    std::array<unsigned char, 32> digest{};
    EVP_Digest(text.data(), text.size(), digest.data(), nullptr, EVP_sha256(), nullptr);
    std::array<unsigned char, 45> base64{};
    EVP_EncodeBlock(base64.data(), digest.data(), static_cast<int>(digest.size()));
    return "'sha256-" + std::string(reinterpret_cast<const char*>(base64.data())) + "'";
}

/// A root with texts that would end the model, or begin something else, if they stood as they are.
void writeHostile(const TemporaryFolder& root) {
    const std::string name = "&lt;/script>&lt;script>x&lt;!--]]>&quot;'&#x202e;&#x2028;中";
    root.write("config/custompage_template.xml",
               "<styles default_style=\"" + name + "\"><style name=\"" + name +
                   "\"><panel name=\"" + name + "\"><element name=\"" + name + "\" param=\"" +
                   name + "\" event=\"" + name + "\"/></panel></style></styles>");
    root.write("config/events.xml", "<event_list><command_event><command name=\"" + name +
                                        "\"/></command_event><" + "!-- <script> --></event_list>");
    root.write("storage/skeleton_v1.xml", "<application><server type=\"" + name + "\" name=\"" +
                                              name + "\"><addr key=\"" + name + "\" name=\"" +
                                              name + "\" addrs=\"" + name +
                                              "\"/></server></application>");
    root.write("storage/app_config.xml",
               "<config><a><b description=\"" + name + "\">" + name + "</b></a></config>");
    root.write("storage/web_page_urls.xml",
               "<urls><url key=\"" + name + "\">javascript:" + name + "</url></urls>");
    root.write("storage/request_urls_json.txt",
               R"({"</script><!--": "\u003c/script>", "<b>": ["\u0001"]})");
    root.write("storage/palette_black.xml",
               "<P><COLORES><COLOR NAME=\"" + name + "\" R=\"1\"/></COLORES></P>");
    root.write("storage/<script>.xml", "<nothing/>");
}

TEST(Report, IsTheSameForEveryRootButForTheModel) {
    const TemporaryFolder empty;
    const TemporaryFolder hostile;
    writeHostile(hostile);
    const Page first = pageOfRoot(sample);
    ASSERT_THAT(first.before, StartsWith("<!DOCTYPE html>"));
    for (const std::string& root : {empty.path(), hostile.path()}) {
        const Page other = pageOfRoot(root);
        EXPECT_EQ(other.before, first.before);
        EXPECT_EQ(other.behind, first.behind);
        EXPECT_NE(other.model, first.model);
    }
}

TEST(Report, HasAModelThatIsJsonWithoutMarkup) {
    const TemporaryFolder hostile;
    writeHostile(hostile);
    for (const std::string& root : {sample, hostile.path()}) {
        const Page page = pageOfRoot(root);
        EXPECT_THAT(page.model, Not(HasSubstr("<")));
        EXPECT_THAT(page.model, Not(HasSubstr("\n")));
        const json model = json::parse(page.model);
        EXPECT_EQ(model.at("root"), root);
        EXPECT_THAT(page.behind, StartsWith("</script>\n<script type=\"module\">"));
    }
}

TEST(Report, KeepsEveryCharacterOfTheFiles) {
    const TemporaryFolder root;
    root.write("config/events.xml",
               "<event_list><command_event><command "
               "name=\"&lt;/script>&quot;&amp;&#x1f600;&#x2028;\\u003c中\"/>"
               "</command_event></event_list>");
    const json model = json::parse(pageOfRoot(root.path()).model);
    EXPECT_EQ(model.at("events").at("commands").at(0).at("commandName"),
              "</script>\"&\xF0\x9F\x98\x80\xE2\x80\xA8\\u003c中");
}

TEST(Report, HasTheSameBytesForTheSameRoot) {
    EXPECT_EQ(reportOf(sample).output, reportOf(sample).output);
}

TEST(Report, TellsAbsentFromEmpty) {
    const TemporaryFolder root;
    root.write("config/events.xml",
               "<event_list><command_event><command name='a'/><command name='b' "
               "change_style=''/></command_event></event_list>");
    const json commands = json::parse(pageOfRoot(root.path()).model).at("events").at("commands");
    EXPECT_FALSE(commands.at(0).contains("changeStyleName"));
    EXPECT_EQ(commands.at(1).at("changeStyleName"), "");
}

TEST(Report, HasTheFindingsOfLint) {
    const TemporaryFolder root;
    root.write("config/events.xml",
               "<event_list><command_event><command nam='a'/></command_event><x/></event_list>");
    const ToolRun lint = runTool({"lint", "--root", root.path(), "--format", "json"});
    const json expected = json::parse(lint.output).at("findings");
    const json model = json::parse(pageOfRoot(root.path()).model);
    ASSERT_EQ(model.at("findings").size(), expected.size());
    ASSERT_GT(expected.size(), 1U);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const json& finding = model.at("findings").at(i);
        EXPECT_EQ(finding.at("rule"), expected.at(i).at("rule"));
        EXPECT_EQ(finding.at("message"), expected.at(i).at("message"));
        const std::size_t file = finding.at("at").at(0);
        EXPECT_EQ(model.at("sources").at(file).at("name"), expected.at(i).at("file"));
    }
}

TEST(Report, AllowsItsOwnScriptAndStylesAndNothingElse) {
    const std::string page = reportOf(sample).output;
    const auto policies =
        between(page, R"(<meta http-equiv="Content-Security-Policy" content=")", "\"");
    ASSERT_EQ(policies.size(), 1U);
    const auto scripts = between(page, R"(<script type="module">)", "</script>");
    const auto styles = between(page, "<style>", "</style>");
    ASSERT_EQ(scripts.size(), 1U);
    ASSERT_EQ(styles.size(), 1U);
    EXPECT_EQ(policies.at(0), "default-src 'none'; script-src " + digestOf(scripts.at(0)) +
                                  "; style-src " + digestOf(styles.at(0)) +
                                  "; img-src data:; connect-src 'none'; base-uri 'none'; "
                                  "form-action 'none'");
}

TEST(Report, NamesNoOtherPlace) {
    const TemporaryFolder empty;
    const Page page = pageOfRoot(empty.path());
    for (std::string text : {page.before, page.behind}) {
        // The name of the SVG elements, which nobody asks for, and parts of the page itself.
        for (const std::string name : {"http://www.w3.org/2000/svg", "url(#", "url('#"}) {
            for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name))
                text.erase(at, name.size());
        }
        for (const char* address : {"://", "src=", "<link", "@import", "url("})
            EXPECT_THAT(text, Not(HasSubstr(address)));
    }
}

TEST(Report, GoesToTheFileOrToStandardOutput) {
    const TemporaryFolder folder;
    const ToolRun run = runTool({"report", "--root", sample, "-o", folder / "report.html"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "");
    const ToolRun printed = reportOf(sample);
    EXPECT_EQ(printed.status, 0);
    EXPECT_EQ(contentOf(folder / "report.html"), printed.output);
    EXPECT_THAT(folder.names(), ElementsAre("report.html"));
}

TEST(Report, ReplacesAFileAsAWhole) {
    const TemporaryFolder folder;
    folder.write("report.html", "old");
    // The disk is full before the page is written.
    const ToolRun full =
        runTool({"report", "--root", sample, "-o", folder / "report.html"}, {.fileSize = 4096});
    EXPECT_EQ(full.status, 3);
    EXPECT_THAT(full.errors, StartsWith("ygconfig report: " + folder.path()));
    EXPECT_EQ(contentOf(folder / "report.html"), "old");
    EXPECT_THAT(folder.names(), ElementsAre("report.html"));
}

TEST(Report, IsNotWrittenToAFolder) {
    const TemporaryFolder folder;
    for (const std::string& path : {folder.path(), folder / "none/report.html"}) {
        const ToolRun run = runTool({"report", "--root", sample, "-o", path});
        EXPECT_EQ(run.status, 3);
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(run.errors, StartsWith("ygconfig report: " + path + ": "));
    }
    EXPECT_THAT(folder.names(), ElementsAre());
}

TEST(Report, SaysThatTheRootOrTheOutputCannotBeUsed) {
    const TemporaryFolder folder;
    const ToolRun none = reportOf(folder / "none");
    EXPECT_EQ(none.status, 2);
    EXPECT_EQ(none.output, "");
    EXPECT_THAT(none.errors, HasSubstr(folder / "none"));
    EXPECT_EQ(runTool({"report", "--root", folder / "none", "-o", folder / "x"}).status, 2);
    EXPECT_THAT(folder.names(), ElementsAre());
    EXPECT_EQ(runTool({"report", "--root", sample}, {.outputTo = OutputTo::fullDisk}).status, 3);
}

TEST(Report, OfTheSampleIsSmall) {
    EXPECT_LT(reportOf(sample).output.size(), std::size_t{3} * 1000 * 1000);
}

}  // namespace
