// SPDX-License-Identifier: MIT
//
// `ygconfig names`, and what the declarations say about values.
#include <algorithm>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/TemporaryFolder.h"
#include "tool/ToolRun.h"
#include "ygconfig/commandline/Usage.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using yg::files::TemporaryFolder;
using yg::testing::runTool;
using yg::testing::ToolRun;

using Lines = std::vector<std::string>;

Lines namesIn(const std::string& root, Lines words) {
    words.insert(words.begin(), "names");
    words.insert(words.end(), {"--root", root});
    const ToolRun run = runTool(words);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    Lines lines;
    std::istringstream text(run.output);
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

Lines namesIn(const TemporaryFolder& root, const Lines& words) {
    return namesIn(root.path(), words);
}

const std::string sample = "examples/terminal";

TEST(Names, OfPagesAreStylesAndWhatTemplatesCanBuild) {
    const TemporaryFolder root;
    root.write("soft_optimize/custompage_template.xml", "<styles/>");
    root.write(
        "config/custompage_template.xml",
        "<styles><style name='a'><magic_panels name='g'/></style><style name='b'/></styles>");
    root.write("config/magic_panels.xml",
               "<magic><magic_panels name='g'><magic_panel name='m'><panel/></magic_panel>"
               "<magic_panel name='n'><panel/></magic_panel></magic_panels></magic>");
    EXPECT_THAT(namesIn(root, {"page"}), ElementsAre("a", "b", "a-m", "a-n"));
    EXPECT_THAT(namesIn(root, {"template"}), ElementsAre("a"));
}

TEST(Names, OfTemplatesThatBuildMoreThan1000PagesAreLeftOut) {
    const TemporaryFolder root;
    root.write("soft_optimize/custompage_template.xml", "<styles/>");
    const auto write = [&](int slots) {
        std::string style = "<styles><style name='a'>";
        for (int i = 0; i < slots; ++i)
            style += "<magic_panels name='g'/>";
        root.write("config/custompage_template.xml", style + "</style></styles>");
    };
    std::string members;
    for (char name = 'a'; name < 'k'; ++name)
        members += std::string("<magic_panel name='") + name + "'><panel/></magic_panel>";
    root.write("config/magic_panels.xml",
               "<magic><magic_panels name='g'>" + members + "</magic_panels></magic>");
    write(3);
    EXPECT_EQ(namesIn(root, {"page"}).size(), 1001);
    write(4);
    EXPECT_THAT(namesIn(root, {"page"}), ElementsAre("a"));
}

TEST(Names, OfAPageAreItsPanelsAndElements) {
    const TemporaryFolder root;
    root.write(
        "config/custompage_template.xml",
        "<styles><style name='a'><panel name='p'><panel name='q'><element name='e' uuid='u'/>"
        "<element name='f'/></panel></panel></style></styles>");
    EXPECT_THAT(namesIn(root, {"panel", "a"}), ElementsAre("p", "q"));
    EXPECT_THAT(namesIn(root, {"element", "a"}), ElementsAre("u", "f"));
    EXPECT_THAT(namesIn(root, {"panel", "b"}), IsEmpty());
    EXPECT_THAT(namesIn(root, {"panel"}), IsEmpty());
}

TEST(Names, OfEventsAreThoseOfTheirGroup) {
    EXPECT_THAT(namesIn(sample, {"event-group"}), Contains("watch_list"));
    EXPECT_THAT(namesIn(sample, {"event", "watch_list"}), Contains("select"));
    EXPECT_THAT(namesIn(sample, {"event", "none"}), IsEmpty());
    EXPECT_THAT(namesIn(sample, {"event"}), IsEmpty());
    EXPECT_THAT(namesIn(sample, {"command"}), Contains("open_index_page"));
    EXPECT_THAT(namesIn(sample, {"event-template"}), Not(IsEmpty()));
}

TEST(Names, OfPalettesAreThoseOfBothThemes) {
    EXPECT_THAT(namesIn(sample, {"color-key"}), Contains("QuoteGrid.名称"));
    EXPECT_THAT(namesIn(sample, {"font-key"}), Contains("QuoteGrid.名称"));
    EXPECT_THAT(namesIn(sample, {"image"}), Contains("logo"));
}

TEST(Names, OfServersAreThoseOfTheirType) {
    EXPECT_THAT(namesIn(sample, {"server"}), Contains("上海行情"));
    EXPECT_THAT(namesIn(sample, {"server", "1"}), Contains("上海行情"));
    EXPECT_THAT(namesIn(sample, {"server", "99"}), IsEmpty());
    EXPECT_THAT(namesIn(sample, {"address"}), Contains("192.0.2.14:9211"));
}

TEST(Names, OfStoredFilesAndTheirContent) {
    EXPECT_THAT(namesIn(sample, {"settings-file"}), ElementsAre("app_config.xml"));
    EXPECT_THAT(namesIn(sample, {"settings-section", "app_config.xml"}), Contains("appearance"));
    EXPECT_THAT(namesIn(sample, {"settings-item", "app_config.xml", "appearance"}),
                Contains("theme"));
    EXPECT_THAT(namesIn(sample, {"settings-item", "app_config.xml"}), IsEmpty());
    EXPECT_THAT(namesIn(sample, {"settings-item", "app_config.xml", "none"}), IsEmpty());
    EXPECT_THAT(namesIn(sample, {"settings-section", "../x"}), IsEmpty());
    EXPECT_THAT(namesIn(sample, {"web-page-file"}), ElementsAre("web_page_urls.xml"));
    EXPECT_THAT(namesIn(sample, {"web-page", "web_page_urls.xml"}), Contains("help_center"));
    EXPECT_THAT(namesIn(sample, {"request-url"}), Contains("quote_snapshot"));
    EXPECT_THAT(namesIn(sample, {"rule"}), Contains("unknown-attribute"));
}

TEST(Names, AreListedOnceWithoutThoseThatNoLineCanHold) {
    const TemporaryFolder root;
    root.write("config/events.xml",
               "<event_list><command_event><command name='a'/><command name='a&#10;b'/>"
               "<command name='c&#x202e;d'/><command name='two words'/><command name=''/>"
               "<command name='$(touch x)'/><command name='-x'/></command_event></event_list>");
    const Lines names = namesIn(root, {"command"});
    EXPECT_THAT(names, ElementsAre("a", "two words", "$(touch x)", "-x"));
}

TEST(Names, OfARootThatCannotBeUsedAreNone) {
    const TemporaryFolder root;
    EXPECT_THAT(namesIn(root.at("none"), {"page"}), IsEmpty());
    root.write("host.json", "[");
    EXPECT_THAT(namesIn(root, {"page"}), IsEmpty());
}

TEST(Names, SayNothingAboutFilesThatCannotBeRead) {
    const TemporaryFolder root;
    for (const auto& usage : yg::tool::usages()) {
        if (usage.command->words != "names")
            continue;
        std::istringstream kinds(usage.operands.front().values);
        std::string kind;
        kinds >> kind;
        EXPECT_EQ(kind, "choice");
        while (kinds >> kind) {
            EXPECT_THAT(std::string(usage.command->notes),
                        testing::ContainsRegex("[ \n]" + kind + "[, \n]"));
            if (kind == "rule")
                continue;
            EXPECT_THAT(namesIn(root, {kind, "1", "x"}), IsEmpty()) << kind;
        }
    }
}

TEST(Names, OfAnUnknownKindAreRefused) {
    const ToolRun run = runTool({"names", "pages"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, testing::StartsWith("ygconfig names: KIND: 'pages' is not page, "));
}

// ---- Declarations ----

TEST(Usages, NameTheValuesOfOptionsAndOperands) {
    const auto usages = yg::tool::usages();
    const auto of = [&](std::string_view words) {
        return *std::ranges::find_if(
            usages, [&](const auto& usage) { return usage.command->words == words; });
    };
    const auto lint = of("lint");
    const auto failOn = std::ranges::find_if(
        lint.options, [](const auto& each) { return each.names.front() == "--fail-on"; });
    ASSERT_NE(failOn, lint.options.end());
    EXPECT_EQ(failOn->values, "choice error warning info never");
    EXPECT_EQ(failOn->valueName, "SEVERITY");

    const auto event = of("event");
    ASSERT_EQ(event.operands.size(), 2);
    EXPECT_EQ(event.operands[0].name, "GROUP");
    EXPECT_EQ(event.operands[0].values, "name event-group");
    EXPECT_EQ(event.operands[1].values, "name event");
    EXPECT_TRUE(event.operands[1].isRequired);
    EXPECT_FALSE(event.operands[1].isRepeated);

    const auto panel = of("explain panel");
    EXPECT_TRUE(panel.operands[0].isRepeated);
    EXPECT_EQ(panel.operands[0].values, "name page panel");
    EXPECT_THAT(of("dump").below, Contains("layout"));
    EXPECT_FALSE(of("dump settings").operands[0].isRequired);
}

}  // namespace
