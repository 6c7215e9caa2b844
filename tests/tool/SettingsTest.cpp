// SPDX-License-Identifier: MIT
//
// Whole runs on settings, web pages and request URLs.
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/TemporaryFolder.h"
#include "settings/LoopbackServer.h"
#include "tool/ToolRun.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using yg::files::TemporaryFolder;
using yg::testing::LoopbackServer;
using yg::testing::OutputTo;
using yg::testing::runTool;
using yg::testing::ToolRun;

const std::string settingsFile = "storage/app.xml";
const std::string pagesFile = "storage/pages.xml";
const std::string urlsFile = "storage/request_urls_json.txt";

constexpr std::string_view settings =
    "<config><!-- c --><a><x description=\"d\">1</x><empty/></a></config>";
constexpr std::string_view pages =
    "<urls><url key='k'>http://x/?a=1&amp;b=2</url><url key='空'/><url "
    "key='k'>no</url><url/></urls>";
constexpr std::string_view urls =
    R"({"md5Value":"one","urlConfigList":[{"urlKey":"k","urlValue":"old"},{"urlKey":"n"}]})";
constexpr std::string_view newUrls =
    R"({ "md5Value":"two", "urlConfigList":[{"urlKey":"k","urlValue":"new"}] })";

ToolRun runOn(const TemporaryFolder& root, std::vector<std::string> words) {
    words.insert(words.begin(), {"--root", root.path()});
    return runTool(words);
}

/// Expects an answer on standard output alone.
void expectAnswer(const TemporaryFolder& root, const std::vector<std::string>& words,
                  const std::string& output) {
    const ToolRun run = runOn(root, words);
    EXPECT_EQ(run.output, output + "\n") << testing::PrintToString(words);
    EXPECT_EQ(run.status, output == "null" || output == "false" ? 1 : 0);
}

void expectRefused(const TemporaryFolder& root, const std::vector<std::string>& words,
                   const std::string& line) {
    const ToolRun run = runOn(root, words);
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, line + "\n");
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// ---- settings --------------------------------------------------------------------------------

TEST(SettingsGet, AnswersTheTextOrNull) {
    const TemporaryFolder root;
    root.write(settingsFile, settings);
    expectAnswer(root, {"settings", "get", "app.xml", "a", "x"}, "\"1\"");
    expectAnswer(root, {"settings", "get", "app.xml", "a", "empty"}, "\"\"");
    expectAnswer(root, {"settings", "get", "app.xml", "a", "none"}, "null");
    expectAnswer(root, {"settings", "get", "app.xml", "", "x"}, "null");
    expectAnswer(root, {"settings", "get", "none.xml", "a", "x"}, "null");
    expectAnswer(root, {"settings", "get", "", "a", "x"}, "null");
    expectAnswer(root, {"settings", "get", "../app.xml", "a", "x"}, "null");
}

TEST(SettingsSet, StoresInTheUsersOwnFileAndKeepsTheRest) {
    const TemporaryFolder root;
    root.write(settingsFile, settings);
    expectAnswer(root, {"settings", "set", "app.xml", "a", "x", "2", "--description", "e"}, "true");
    expectAnswer(root, {"settings", "set", "app.xml", "b", "y", "", "--description", "why"},
                 "true");
    expectAnswer(root, {"settings", "get", "app.xml", "a", "x"}, "\"2\"");
    expectAnswer(root, {"settings", "get", "app.xml", "b", "y"}, "\"\"");
    EXPECT_EQ(contentOf(root.at(settingsFile)), settings);
    EXPECT_EQ(contentOf(root.at("user/app.xml")), R"(<?xml version="1.0" encoding="UTF-8"?>
<config>
    <!-- c -->
    <a>
        <x description="d">2</x>
        <empty></empty>
    </a>
    <b>
        <y description="why"></y>
    </b>
</config>
)");
}

TEST(SettingsSet, KeepsTextsAsTheyAre) {
    const TemporaryFolder root;
    root.write(settingsFile, settings);
    for (const std::string text : {"[a,b]", "{}", " a  b ", "<&>\\", "%%", "中文", "a=b"}) {
        expectAnswer(root, {"settings", "set", "app.xml", "a", "x", text}, "true");
        const ToolRun run = runOn(root, {"settings", "get", "app.xml", "a", "x"});
        EXPECT_EQ(run.output, text == "<&>\\" ? "\"<&>\\\\\"\n" : "\"" + text + "\"\n");
    }
    expectAnswer(root, {"settings", "set", "--", "app.xml", "a", "x", "--readonly"}, "true");
    expectAnswer(root, {"settings", "get", "app.xml", "a", "x"}, "\"--readonly\"");
}

TEST(SettingsSet, IsFalseForTheReadonlyStoreAndForImpossibleNames) {
    const TemporaryFolder root;
    root.write(settingsFile, settings);
    expectAnswer(root, {"settings", "set", "app.xml", "a", "x", "2", "--readonly"}, "false");
    expectAnswer(root, {"settings", "set", "app.xml", "a", "1 2", "2"}, "false");
    expectAnswer(root, {"settings", "set", "app.xml", "", "x", "2"}, "false");
    expectAnswer(root, {"settings", "set", "", "a", "x", "2"}, "null");
    EXPECT_FALSE(std::filesystem::exists(root.at("user")));
}

// The library's own answer: the text is lost, and no file comes into being.
TEST(SettingsSet, IsTrueWithoutAFile) {
    const TemporaryFolder root;
    expectAnswer(root, {"settings", "set", "app.xml", "a", "x", "2"}, "true");
    expectAnswer(root, {"settings", "get", "app.xml", "a", "x"}, "null");
    EXPECT_FALSE(std::filesystem::exists(root.at("user/app.xml")));
}

TEST(ShowSettings, DrawsSectionsItemsTextsAndDescriptions) {
    const TemporaryFolder root;
    root.write(settingsFile, "<config>t<a><x description='d'>1</x><x>2</x></a><b/></config>");
    EXPECT_EQ(runOn(root, {"show", "settings", "app.xml"}).output,
              "Settings  1  storage/app.xml\n\n"
              "a\n├─ x  \"1\"  d\n└─ x  \"2\"  skipped\n\n"
              "b  empty\n");
    EXPECT_EQ(runOn(root, {"show", "settings"}).output,
              "Settings  0  user/app_config.xml  missing or damaged; nothing can be stored\n");
    root.write("storage/app_config.xml", "<settings/>");
    EXPECT_THAT(runOn(root, {"show", "settings"}).output,
                HasSubstr("the root is not named config"));
    const ToolRun run = runOn(root, {"show", "settings", "a/b"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "ygconfig: there is no path for 'a/b'\n");
}

TEST(DumpSettings, HasTheItemsThatCountBySection) {
    const TemporaryFolder root;
    root.write("storage/app.xml",
               "<config><a><x description='d'>1</x><x>2</x></a><b/><a><y>3</y></a></config>");
    expectAnswer(root, {"dump", "settings", "app.xml"}, R"({
  "a": {
    "x": {
      "text": "1",
      "description": "d"
    },
    "y": {
      "text": "3",
      "description": null
    }
  },
  "b": {}
})");
    expectAnswer(root, {"settings", "get", "app.xml", "a", "y"}, "\"3\"");
    expectAnswer(root, {"dump", "settings"}, "{}");
    root.write("storage/app_config.xml", "<settings><a><x>1</x></a></settings>");
    expectAnswer(root, {"dump", "settings"}, "{}");
    expectAnswer(root, {"dump", "settings", "a/b"}, "null");
}

// ---- web-page --------------------------------------------------------------------------------

TEST(WebPage, AnswersTheAddressOrAboutBlank) {
    const TemporaryFolder root;
    root.write(pagesFile, pages);
    expectAnswer(root, {"web-page", "pages.xml", "k"}, "\"http://x/?a=1&b=2\"");
    expectAnswer(root, {"web-page", "pages.xml", "空"}, "\"\"");
    expectAnswer(root, {"web-page", "pages.xml", ""}, "\"about:blank\"");
    expectAnswer(root, {"web-page", "none.xml", "k"}, "\"about:blank\"");
    expectAnswer(root, {"web-page", "", "k"}, "null");
    EXPECT_EQ(runOn(root, {"web-page", "pages.xml", "it's"}).errors,
              "-[YGWebPageUrlConfig getWebPageUrlByKey:] L68 获取不到3 Key: [it's]\n"
              "ygconfig: no web page 'it's'\n");
}

TEST(WebPage, IsReplacedByAFileOrByStandardInput) {
    const TemporaryFolder root;
    root.write(pagesFile, pages);
    root.write("new.xml", "<urls><url key='k'>?a=1&b=2</url></urls>");
    expectAnswer(root, {"web-page", "pages.xml", "--replace", root.at("new.xml")}, "true");
    expectAnswer(root, {"web-page", "pages.xml", "k"}, "\"?a=1&b=2\"");
    EXPECT_EQ(contentOf(root.at(pagesFile)), pages);
    const ToolRun run = runTool({"web-page", "pages.xml", "--replace=-", "--root", root.path()},
                                {.input = "<urls><url key='k'>piped</url></urls>"});
    EXPECT_EQ(run.output, "true\n");
    expectAnswer(root, {"web-page", "pages.xml", "k"}, "\"piped\"");
    root.write("new.xml", "<urls>");
    expectAnswer(root, {"web-page", "pages.xml", "--replace", root.at("new.xml")}, "false");
    expectAnswer(root, {"web-page", "", "--replace", root.at("new.xml")}, "null");
    expectAnswer(root, {"web-page", "pages.xml", "k"}, "\"piped\"");
}

TEST(WebPage, NeedsAKeyOrAReplacementThatCanBeRead) {
    const TemporaryFolder root;
    expectRefused(root, {"web-page", "pages.xml"},
                  "ygconfig web-page: KEY or --replace is required");
    expectRefused(root, {"web-page", "pages.xml", "k", "--replace", "x"},
                  "ygconfig web-page: KEY and --replace cannot be combined");
    expectRefused(root, {"web-page", "pages.xml", "--replace", root.at("none")},
                  "ygconfig web-page: \"" + root.at("none") + "\": No such file or directory");
    expectRefused(root, {"web-page"}, "ygconfig web-page: FILE is required");
}

TEST(ShowWebPages, DrawsALineForEachAddress) {
    const TemporaryFolder root;
    root.write(pagesFile, pages);
    EXPECT_EQ(runOn(root, {"show", "web-pages", "pages.xml"}).output,
              "Web pages  2  storage/pages.xml\n\n"
              "k         http://x/?a=1&b=2\n"
              "空        \"\"\n"
              "k         no  skipped\n"
              "(no key)  \"\"  skipped\n");
    EXPECT_EQ(runOn(root, {"show", "web-pages"}).output,
              "Web pages  0  user/web_page_urls.xml  missing or damaged\n");
}

TEST(DumpWebPages, HasTheAddressesThatCountByKey) {
    const TemporaryFolder root;
    root.write(pagesFile, pages);
    expectAnswer(root, {"dump", "web-pages", "pages.xml"}, R"({
  "k": "http://x/?a=1&b=2",
  "空": ""
})");
    expectAnswer(root, {"dump", "web-pages"}, "{}");
    root.write("storage/web_page_urls.xml", "<pages><url key='k'>x</url></pages>");
    expectAnswer(root, {"dump", "web-pages"}, "{}");
    expectAnswer(root, {"dump", "web-pages", "a/b"}, "null");
}

// ---- request-url -----------------------------------------------------------------------------

TEST(RequestUrl, AnswersTheStoredAddressOrNull) {
    const TemporaryFolder root;
    root.write(urlsFile, urls);
    root.write("host.json", R"({"configServer": "127.0.0.1:1"})");
    expectAnswer(root, {"request-url", "k"}, "\"old\"");
    expectAnswer(root, {"request-url", "n"}, "null");
    expectAnswer(root, {"request-url", "none"}, "null");
    EXPECT_EQ(runOn(root, {"request-url", "k"}).errors,
              "-[YGHttpReqUrlMgr readUrlModelFromFile] L71 filePath: " + root.at(urlsFile) +
                  "\n-[YGHttpReqUrlMgr readUrlModelFromFile] L91 _urlModel.Md5: one\n");
}

TEST(RequestUrl, IsAskedForAfterTheDownloadWithRefresh) {
    const TemporaryFolder root;
    root.write(urlsFile, urls);
    const LoopbackServer server("200 OK", newUrls);
    root.write("host.json", "{\"configServer\": \"" + server.authority() + "\"}");
    expectAnswer(root, {"request-url", "k"}, "\"old\"");
    EXPECT_EQ(server.requests().size(), 0u);
    const ToolRun run = runOn(root, {"request-url", "k", "--refresh"});
    EXPECT_EQ(run.output, "\"new\"\n");
    EXPECT_THAT(run.errors, HasSubstr(" L110 newMd5Value : [two]; oldMd5Value : [one]\n"));
    EXPECT_THAT(run.errors, Not(HasSubstr("waiting")));
    EXPECT_EQ(contentOf(root.at("user/request_urls_json.txt")), newUrls);
    expectAnswer(root, {"request-url", "k"}, "\"new\"");
}

TEST(RequestUrl, IsTheStoredOneWhenTheDownloadFails) {
    const TemporaryFolder root;
    root.write(urlsFile, urls);
    root.write("host.json", R"({"configServer": "127.0.0.1:1"})");
    expectAnswer(root, {"request-url", "k", "--refresh"}, "\"old\"");
    root.write("host.json", "{}");
    const ToolRun run = runOn(root, {"request-url", "k", "--refresh"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "\"old\"\n");
    EXPECT_THAT(run.errors,
                HasSubstr("\nygconfig: host.json names no configServer to download from\n"));
}

TEST(RequestUrl, SaysThatItWaitsWhenARefreshTakesLongerThanASecond) {
    const TemporaryFolder root;
    const LoopbackServer server("200 OK", newUrls, 1'500);
    root.write("host.json", "{\"configServer\": \"" + server.authority() + "\"}");
    const ToolRun run = runOn(root, {"request-url", "k", "--refresh"});
    EXPECT_EQ(run.output, "\"new\"\n");
    EXPECT_THAT(run.errors, HasSubstr("ygconfig: waiting for " + server.authority() + ", 1 s\n"));
}

TEST(DumpRequestUrls, WritesTheStoredListOrNull) {
    const TemporaryFolder root;
    expectAnswer(root, {"dump", "request-urls"}, "null");
    root.write(urlsFile, urls);
    expectAnswer(root, {"dump", "request-urls"}, R"({
  "md5Value": "one",
  "urlConfigList": [
    {
      "urlKey": "k",
      "urlValue": "old"
    },
    {
      "urlKey": "n",
      "urlValue": null
    }
  ]
})");
    root.write(urlsFile, "{\"urlConfigList\":[]}");
    expectAnswer(root, {"dump", "request-urls"},
                 "{\n  \"md5Value\": null,\n  \"urlConfigList\": []\n}");
    root.write(urlsFile, "{}");
    expectAnswer(root, {"dump", "request-urls"},
                 "{\n  \"md5Value\": null,\n  \"urlConfigList\": null\n}");
    root.write(urlsFile, "[]");
    expectAnswer(root, {"dump", "request-urls"}, "null");
}

TEST(ShowRequestUrls, DrawsALineForEachAddress) {
    const TemporaryFolder root;
    EXPECT_EQ(runOn(root, {"show", "request-urls"}).output,
              "Request URLs  0  user/request_urls_json.txt  missing or damaged\n");
    root.write(urlsFile, urls);
    EXPECT_EQ(runOn(root, {"show", "request-urls"}).output,
              "Request URLs  2  storage/request_urls_json.txt  md5 one\n\n"
              "k  old\n"
              "n  (no address)\n");
}

}  // namespace
