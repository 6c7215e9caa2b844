// SPDX-License-Identifier: MIT
//
// The example application, run as a whole on a copy of the sample terminal.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Program.h"
#include "files/TemporaryFolder.h"
#include "settings/LoopbackServer.h"

namespace yg {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using yg::testing::LoopbackServer;
using yg::testing::Program;

class ExampleHost : public ::testing::Test {
protected:
    ExampleHost() {
        std::filesystem::copy(YG_SAMPLE_FOLDER, root, std::filesystem::copy_options::recursive);
    }

    /// What a run with these words prints, the line of the version aside.
    std::string run(std::vector<std::string> words, int status = 0, int stream = STDOUT_FILENO) {
        words.insert(words.begin(), {YG_EXAMPLE_HOST, root});
        Program program(std::move(words), stream);
        if (stream == STDOUT_FILENO) {
            EXPECT_THAT(program.line().value_or(""), ::testing::StartsWith("YGConfigManager "));
        }
        std::string printed = program.all();
        const int state = program.wait();
        EXPECT_TRUE(WIFEXITED(state));
        EXPECT_EQ(WEXITSTATUS(state), status) << printed;
        return printed;
    }

    std::string contentOf(const std::string& name) const {
        std::ifstream file(root + "/" + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    bool exists(const std::string& name) const {
        return std::filesystem::exists(root + "/" + name);
    }

    const files::TemporaryFolder folder;
    const std::string root = folder / "root";
};

TEST_F(ExampleHost, LoadsEverythingThatTheSampleHolds) {
    EXPECT_THAT(run({}),
                HasSubstr("pages: 26\ncommands: 56\ntheme: dark\ncolours: 73\n"
                          "quote servers: 5\nweb pages: 20\nrequest URLs: 40\n行情报价\n"));
    EXPECT_FALSE(exists("user"));
}

TEST_F(ExampleHost, BuildsACustomPageFromTheListsOfItsHost) {
    EXPECT_THAT(run({"quote-SH990001-depth"}), HasSubstr("SH990001_view\n"));
    EXPECT_EQ(run({"no such page"}, 1), "");
}

TEST_F(ExampleHost, LoadsTheServersOfTheRightLevelThatHasLoggedIn) {
    EXPECT_THAT(run({"--login", "l2"}), HasSubstr("港股行情(实时)\n"));
    EXPECT_THAT(run({"--login", "free"}), Not(HasSubstr("港股行情(实时)\n")));
}

TEST_F(ExampleHost, DrawsAgainWhenTheThemeHasChangedAndKeepsIt) {
    EXPECT_EQ(run({"--switch-theme"}), "window: 20 24 29\nwindow: 245 247 250\ntheme: light\n");
    EXPECT_THAT(contentOf("user/app_config.xml"), HasSubstr(">white</theme>"));
    EXPECT_EQ(run({"--switch-theme"}), "window: 245 247 250\nwindow: 20 24 29\ntheme: dark\n");
}

TEST_F(ExampleHost, EndsWhenTheOtherThemeCannotBeRead) {
    std::filesystem::remove(root + "/storage/palette_white.xml");
    EXPECT_EQ(run({"--switch-theme"}, 1), "window: 20 24 29\n");
    EXPECT_FALSE(exists("user"));
}

TEST_F(ExampleHost, KeepsASettingBesideWhatIsThere) {
    EXPECT_EQ(run({"--set", "start", "last_page", "交易"}),
              "page: \nrestore_windows: true\ncheck_updates: true\nlast_page: 交易\n");
    EXPECT_THAT(run({"--set", "start", "page", "自选股"}), HasSubstr("last_page: 交易\n"));
    EXPECT_THAT(run({"--set", "start", "no name", "x"}, 1), HasSubstr("page: 自选股\n"));
}

TEST_F(ExampleHost, TakesServersThatLoseNothing) {
    std::string servers = contentOf("storage/skeleton_v1.xml");
    servers.replace(servers.find("192.0.2.14:9211"), 15, "192.0.2.16:9211");
    folder.write("new.xml", servers);
    EXPECT_EQ(run({"--deliver-servers", folder / "new.xml", "second"}),
              "digest: second\n上海行情\n深圳行情\n北京行情\n港股行情(延时)\n美股行情\n");
    EXPECT_THAT(contentOf("user/skeleton_v1.xml"),
                AllOf(HasSubstr("192.0.2.16:9211"), HasSubstr("md5=\"second\"")));
}

TEST_F(ExampleHost, RefusesServersThatLoseSome) {
    folder.write("new.xml",
                 "<application><server type=\"1\" name=\"行情服务器\">"
                 "<addr key=\"101\" name=\"上海行情\" addrs=\"192.0.2.11:9211\"/>"
                 "</server></application>");
    EXPECT_THAT(
        run({"--deliver-servers", folder / "new.xml", "second"}, 1),
        HasSubstr("Server '北京行情' of type 1: the present file has this, the delivery has "
                  "not.\n"));
    EXPECT_FALSE(exists("user"));
    EXPECT_THAT(run({"--deliver-servers", folder / "none.xml", "second"}, 1, STDERR_FILENO),
                EndsWith("none.xml cannot be read, or is empty.\n"));
}

TEST_F(ExampleHost, TakesWebPagesAndRefusesWhatIsNone) {
    std::string pages = contentOf("storage/web_page_urls.xml");
    pages.replace(pages.rfind("</urls>"), 7,
                  "<url key=\"new\">https://new.example.com/</url></urls>");
    folder.write("new.xml", pages);
    EXPECT_EQ(run({"--deliver-web-pages", folder / "new.xml"}), "web pages: 21\n");
    EXPECT_THAT(contentOf("user/web_page_urls.xml"), HasSubstr("https://new.example.com/"));
    folder.write("broken.xml", "<urls>");
    EXPECT_NE(run({"--deliver-web-pages", folder / "broken.xml"}, 1), "");
}

TEST_F(ExampleHost, GetsANewListOfRequestUrlsOnce) {
    const LoopbackServer server(
        "200 OK",
        R"({"md5Value":"second", "urlConfigList":[{"urlKey":"k","urlValue":"https://k.example.com/"}]})");
    EXPECT_EQ(run({"--refresh-urls", server.authority()}),
              "download: a new list\ndigest: second\n");
    EXPECT_THAT(contentOf("user/request_urls_json.txt"), HasSubstr("\"second\""));
    EXPECT_EQ(run({"--refresh-urls", server.authority()}),
              "download: the list that is there\ndigest: second\n");
}

TEST_F(ExampleHost, SaysWhyNoListOfRequestUrlsCame) {
    const LoopbackServer server("200 OK", "<html>");
    EXPECT_EQ(run({"--refresh-urls", server.authority()}, 1),
              "download: nothing\ndigest: d3c6f85632bcc5cd4a2f85d392244155\n");
    EXPECT_THAT(run({"--refresh-urls", server.authority()}, 1, STDERR_FILENO),
                Not(::testing::IsEmpty()));
}

}  // namespace
}  // namespace yg
