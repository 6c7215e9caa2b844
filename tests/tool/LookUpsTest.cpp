// SPDX-License-Identifier: MIT
//
// What look-ups say on standard error when they find nothing: what is not there, and the nearest
// name. Standard output and the exit status are those of the answer.
#include <ostream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/TemporaryFolder.h"
#include "tool/ToolRun.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using yg::files::TemporaryFolder;
using yg::testing::runTool;
using yg::testing::ToolRun;

struct Miss {
    std::vector<std::string> words;
    std::string line;  ///< behind "ygconfig: "
    int status = 1;
};

void PrintTo(const Miss& miss, std::ostream* out) {
    *out << testing::PrintToString(miss.words);
}

class LookUp : public testing::TestWithParam<Miss> {};

TEST_P(LookUp, SaysWhatIsNotThereAndTheNearestName) {
    const Miss& miss = GetParam();
    std::vector<std::string> words{"--root", "examples/terminal"};
    words.insert(words.end(), miss.words.begin(), miss.words.end());
    const ToolRun run = runTool(words);
    EXPECT_EQ(run.status, miss.status);
    EXPECT_THAT("\n" + run.errors, EndsWith("\nygconfig: " + miss.line + "\n"));
    EXPECT_EQ(run.output == "null\n", miss.status == 1 && miss.words[0] != "show");
}

INSTANTIATE_TEST_SUITE_P(
    Events, LookUp,
    testing::Values(Miss{{"command", "show_wach"}, "no command 'show_wach'; nearest: 'show_watch'"},
                    Miss{{"command", "xyz"}, "no command 'xyz'"},
                    Miss{{"event", "watch_lst", "select"},
                         "no event group 'watch_lst'; nearest: 'watch_list'"},
                    Miss{{"event", "watch_list", "selekt"},
                         "no event 'selekt' in group 'watch_list'; nearest: 'select'"}));

INSTANTIATE_TEST_SUITE_P(
    Settings, LookUp,
    testing::Values(Miss{{"settings", "get", "app_config.xml", "appearence", "theme"},
                         "no section 'appearence'; nearest: 'appearance'"},
                    Miss{{"settings", "get", "app_config.xml", "appearance", "them"},
                         "no item 'them' in section 'appearance'; nearest: 'theme'"},
                    Miss{{"settings", "get", "a/b", "x", "y"}, "there is no path for 'a/b'"},
                    Miss{{"dump", "settings", "a/b"}, "there is no path for 'a/b'"},
                    Miss{{"dump", "web-pages", "a/b"}, "there is no path for 'a/b'"},
                    Miss{{"web-page", "a/b", "x"}, "there is no path for 'a/b'"},
                    Miss{{"web-page", "web_page_urls.xml", "help_centre"},
                         "no web page 'help_centre'; nearest: 'help_center'",
                         0},
                    Miss{{"request-url", "quote_snapshott"},
                         "no request URL 'quote_snapshott'; nearest: 'quote_snapshot'"}));

INSTANTIATE_TEST_SUITE_P(
    Palette, LookUp,
    testing::Values(
        Miss{
            {"color", "QuoteGrid.名"}, "no color key 'QuoteGrid.名'; nearest: 'QuoteGrid.名称'", 0},
        Miss{{"font", "QuoteGrid.名"}, "no font key 'QuoteGrid.名'; nearest: 'QuoteGrid.名称'", 0},
        Miss{{"color", "x", "--palette-style", "7"}, "no theme 7; 0 is light, 1 is dark"},
        Miss{{"dump", "palette", "--palette-style", "-1"}, "no theme -1; 0 is light, 1 is dark"},
        Miss{{"image", "lgo", "-o", "/dev/null"}, "no image 'lgo'; nearest: 'logo'"},
        Miss{{"image", "logo", "--group", "2", "--index", "2", "-o", "/dev/null"},
             "image 'logo' does not have this piece or size"}));

INSTANTIATE_TEST_SUITE_P(
    Style, LookUp,
    testing::Values(
        Miss{{"dump", "style", "行情报介"}, "no style '行情报介'; nearest: '行情报价'"},
        Miss{{"show", "style", "行情报介"}, "no style '行情报介'; nearest: '行情报价'"},
        Miss{{"dump", "style", "quote-SH"},
             "page 'quote-SH': template 'quote' has 2 slots, the name has 1 part for them"},
        Miss{{"show", "style", "quote-a-b-c"},
             "page 'quote-a-b-c': template 'quote' has 2 slots, the name has 3 parts for them"},
        Miss{{"dump", "style", "quot-SH990001-depth"},
             "page 'quot-SH990001-depth': no template 'quot'; nearest: 'quote'"},
        Miss{{"dump", "style", "quote-SH990001-deph"},
             "page 'quote-SH990001-deph': magic panels 'side' have no member 'deph'; "
             "nearest: 'depth'",
             0},
        Miss{{"show", "style", "quote-SH99001-depth"},
             "page 'quote-SH99001-depth': magic panels 'chart' have no member 'SH99001'; "
             "nearest: 'SH990001'",
             0}));

TEST(LookUps, SayNothingAboutWhatIsThere) {
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"command", "show_watch"},
             {"event", "watch_list", "select"},
             {"color", "QuoteGrid.名称"},
             {"font", "QuoteGrid.名称"},
             {"settings", "get", "app_config.xml", "login", "server"},
             {"web-page", "web_page_urls.xml", "help_center"},
             {"request-url", "quote_snapshot"},
             {"dump", "style", "quote-SH990001-depth"}}) {
        std::vector<std::string> all = words;
        all.insert(all.end(), {"--root", "examples/terminal"});
        EXPECT_THAT(runTool(all).errors, Not(HasSubstr("ygconfig:")))
            << testing::PrintToString(words);
    }
}

TEST(LookUps, NameTheColourOrFontThatAKeyNamesInVain) {
    const TemporaryFolder root;
    root.write("storage/palette_white.xml", R"(<ROOT><SWPALETTE>
        <COLORES><c NAME="rise"/></COLORES><FONTS><f NAME="small"/></FONTS>
        <APP_MAP><COLORES><k KEY="k" VALUE="risee"/></COLORES>
        <FONTS><k KEY="k" VALUE="smal"/></FONTS></APP_MAP></SWPALETTE></ROOT>)");
    EXPECT_THAT(runTool({"color", "k", "--root", root.path()}).errors,
                EndsWith("ygconfig: no color 'risee', which key 'k' names; nearest: 'rise'\n"));
    EXPECT_THAT(runTool({"font", "k", "--root", root.path()}).errors,
                EndsWith("ygconfig: no font 'smal', which key 'k' names; nearest: 'small'\n"));
}

TEST(LookUps, OfAPageSayWhyThereAreNoTemplates) {
    const TemporaryFolder root;
    root.write("config/custompage_template.xml",
               "<s><style name='t'><magic_panels name='g'/></style></s>");
    EXPECT_THAT(runTool({"dump", "style", "t-x", "--root", root.path()}).errors,
                EndsWith("ygconfig: page 't-x': no templates without " +
                         root.at("soft_optimize/custompage_template.xml") + "\n"));
}

TEST(LookUps, OfAPageNameTheFirstFaultsOnly) {
    const TemporaryFolder root;
    std::string slots;
    std::string page = "t";
    for (int i = 0; i < 1000; ++i) {
        slots += "<magic_panels name='g'/>";
        page += "-x";
    }
    root.write("config/custompage_template.xml", "<s><style name='t'>" + slots + "</style></s>");
    root.write("soft_optimize/custompage_template.xml", "<s/>");
    root.write("config/magic_panels.xml",
               "<m><magic_panels name='g'><magic_panel name='a'><panel/></magic_panel>"
               "</magic_panels></m>");
    const std::string errors = runTool({"dump", "style", page, "--root", root.path()}).errors;
    EXPECT_THAT(errors, HasSubstr("magic panels 'g' have no member 'x'"));
    EXPECT_LT(errors.size(), 40'000u);
}

}  // namespace
