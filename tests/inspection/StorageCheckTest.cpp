// SPDX-License-Identifier: MIT
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

std::string withAddresses(const std::string& addrs) {
    return R"(<application><server type="1"><e key="1" name="East" addrs=")" + addrs +
           R"("/></server></application>)";
}

/// What is found about the addresses of an entry, without the file.
std::vector<std::string> addressLines(const std::string& addrs) {
    std::vector<std::string> lines;
    const std::string file = "storage/skeleton_v1.xml:";
    for (const std::string& line : linesOf({{"storage/skeleton_v1.xml", withAddresses(addrs)}})) {
        if (line.starts_with(file) && !line.ends_with("address-weight 1"))
            lines.push_back(line.substr(file.size()));
    }
    return lines;
}

// ---- Addresses ----

TEST(ServersCheck, FindsAddressesThatACommaJoins) {
    EXPECT_THAT(addressLines("192.0.2.1:1,192.0.2.2:2"),
                ElementsAre("1:61 error odd-address-weight 192.0.2.1:1,192.0.2.2:2"
                            " -> 192.0.2.1:1;192.0.2.2:2"));
    EXPECT_THAT(addressLines("a:1；b:2"),
                ElementsAre("1:61 error odd-address-weight a:1；b:2 -> a:1;b:2"));
    EXPECT_THAT(addressLines("a:1 b:2"),
                ElementsAre("1:61 error odd-address-weight a:1 b:2 -> a:1;b:2"));
}

TEST(ServersCheck, FindsAFirstPartThatIsNeitherHostNorWeight) {
    EXPECT_THAT(addressLines("http://east.example.com:80"),
                ElementsAre("1:61 error odd-address-weight http://east.example.com:80"
                            " -> east.example.com:80"));
    EXPECT_THAT(addressLines("x:east:80"), ElementsAre("1:61 error odd-address-weight x:east:80"));
    EXPECT_THAT(addressLines("a:1;x:east:80"),
                ElementsAre("1:65 error odd-address-weight x:east:80"));
}

TEST(ServersCheck, FindsBlanksAndFullWidthCharactersInHosts) {
    EXPECT_THAT(addressLines("a:1; b:2"), ElementsAre("1:65 error odd-server-host  b:2 -> b:2"));
    EXPECT_THAT(addressLines("192．0．2．1:9211"),
                ElementsAre("1:61 error odd-server-host 192．0．2．1:9211 -> 192.0.2.1:9211"));
}

TEST(ServersCheck, LeavesOrdinaryAddressesAlone) {
    for (const char* const addrs : {"192.0.2.1:9211", "1:192.0.2.1:9211", "1:a:1;1:b:2",
                                    "a_b-c.example.com:1", "服务器.example:1", "a:1;a:1"})
        EXPECT_THAT(addressLines(addrs), IsEmpty()) << addrs;
}

TEST(ServersCheck, SaysWhatTheLoadersFindingsProbablyMean) {
    EXPECT_THAT(addressLines("a:1;192.0.2.1：9211"),
                ElementsAre("1:65 error address-without-port 192.0.2.1：9211 -> 192.0.2.1:9211"));
    EXPECT_THAT(addressLines("a:1 "), ElementsAre("1:63 error odd-server-port 1  -> 1"));
    EXPECT_THAT(addressLines("a：1，b：2"),
                ElementsAre("1:61 error server-entry-without-address a：1，b：2 -> a:1;b:2"));
    EXPECT_THAT(
        addressLines("40:a:1,40:b:2"),
        ElementsAre("1:61 error address-with-too-many-parts 40:a:1,40:b:2 -> 40:a:1;40:b:2"));
    EXPECT_THAT(addressLines("a:99999"), ElementsAre("1:63 error odd-server-port 99999"));
}

TEST(ServersCheck, SaysHowAnOddAddressIsRead) {
    const files::TemporaryFolder folder;
    folder.write("storage/skeleton_v1.xml", withAddresses("a:1,b:2"));
    std::vector<std::string> messages;
    const auto inspection = inspected(folder.path());
    for (const RootFinding& finding : inspection->findings()) {
        if (finding.rule->name == "odd-address-weight")
            messages.push_back(finding.message);
    }
    EXPECT_THAT(messages, ElementsAre("'a:1,b:2': of three parts the first is a weight, which has "
                                      "no effect; the host is read as '1,b' and the port as '2'."));
}

TEST(ServersCheck, ReportsSoManyOddAddressesOfOneEntry) {
    std::string addrs;
    for (int i = 0; i < 5'000; ++i)
        addrs += "x:a:1;";
    EXPECT_THAT(
        linesOf({{"storage/skeleton_v1.xml", withAddresses(addrs + "a:1")}}, "odd-address-weight"),
        SizeIs(100));
}

// ---- The four files ----

constexpr const char* oneType =
    R"(<application><server type="1"><e key="1" name="East" addrs="a:1"/></server></application>)";

TEST(ServersCheck, FindsATypeThatSomeFilesDoNotHave) {
    const Files files{
        {"storage/skeleton_v1.xml", oneType},
        {"storage/skeleton_gray_v1.xml", oneType},
        {"storage/skeleton_l2_v1.xml",
         "<application>\n<server type='1'><e key='1' name='East' addrs='a:1'/></server>\n"
         "<server type='7'><e key='1' name='Deep' addrs='a:1'/></server></application>"}};
    EXPECT_THAT(linesOf(files, "server-type-in-some-files"),
                ElementsAre("storage/skeleton_l2_v1.xml:3:15 warning server-type-in-some-files 7"
                            " (storage/skeleton_v1.xml:1:1) (storage/skeleton_gray_v1.xml:1:1)"));
    // Its servers follow from it.
    EXPECT_THAT(linesOf(files, "server-in-some-files"), IsEmpty());
}

TEST(ServersCheck, FindsAServerThatSomeFilesDoNotHave) {
    const Files files{{"storage/skeleton_v1.xml", oneType},
                      {"storage/skeleton_l2_v1.xml",
                       "<application><server type='1'>"
                       "<e key='1' name='East;West' addrs='a:1'/></server></application>"}};
    EXPECT_THAT(linesOf(files, "server-in-some-files"),
                ElementsAre("storage/skeleton_l2_v1.xml:1:53 info server-in-some-files West"
                            " (storage/skeleton_v1.xml:1:1)"));
}

TEST(ServersCheck, ComparesNoFileThatIsMissingOrCannotBeRead) {
    for (const char* const other : {"<application>", "<servers/>"}) {
        const Files files{{"storage/skeleton_v1.xml", oneType},
                          {"storage/skeleton_l2_v1.xml", other}};
        EXPECT_THAT(linesOf(files, "server-type-in-some-files"), IsEmpty()) << other;
    }
    EXPECT_THAT(linesOf({{"storage/skeleton_v1.xml", oneType}}, "server-type-in-some-files"),
                IsEmpty());
}

TEST(ServersCheck, ReportsAHundredServersThatSomeFilesDoNotHave) {
    std::string names = "East";
    for (int at = 0; at < 150; ++at)
        names += ";West" + std::to_string(at);
    const auto file = [](const std::string& servers, const std::string& more) {
        return "<application><server type='1'><e key='1' name='" + servers +
               "' addrs='a:1'/></server>" + more + "</application>";
    };
    const Files files{{"storage/skeleton_v1.xml", file(names, "")},
                      {"storage/skeleton_l2_v1.xml", file("East", "<server type='2'/>")}};
    EXPECT_THAT(linesOf(files, "server-in-some-files"), SizeIs(100));
    EXPECT_THAT(linesOf(files, "server-type-in-some-files"), SizeIs(1));
}

TEST(ServersCheck, TakesTypesAsTheyAreFoundAndEntriesInAnyOrder) {
    const Files files{{"storage/skeleton_v1.xml",
                       "<application><server type='1'><e key='1' name='a' addrs='a:1'/>"
                       "<e key='2' name='b' addrs='a:1'/></server></application>"},
                      {"storage/skeleton_l2_v1.xml",
                       "<application><server type='01'><e key='1' name='b;a' addrs='c:1'/></server>"
                       "</application>"}};
    EXPECT_THAT(linesOf(files, "server-type-in-some-files"), IsEmpty());
    EXPECT_THAT(linesOf(files, "server-in-some-files"), IsEmpty());
}

TEST(ServersCheck, FindsADigestInAShippedFile) {
    EXPECT_THAT(
        linesOf({{"storage/skeleton_v1.xml", "<application md5='ab'/>"}}, "digest-in-shipped-file"),
        ElementsAre("storage/skeleton_v1.xml:1:19 warning digest-in-shipped-file ab"));
    EXPECT_THAT(
        linesOf({{"user/skeleton_v1.xml", "<application md5='ab'/>"}}, "digest-in-shipped-file"),
        IsEmpty());
}

// ---- Copies of the user's ----

TEST(SettingsCheck, FindsItemsThatTheUsersCopyHides) {
    const Files files{{"storage/app_config.xml",
                       "<config>\n<chart><grid>1</grid><zoom>1</zoom></chart>\n"
                       "<start><page/></start></config>"},
                      {"user/app_config.xml", "<config><chart><grid>2</grid></chart></config>"}};
    EXPECT_THAT(linesOf(files, "missing-in-user-copy"),
                ElementsAre("user/app_config.xml:1:1 info missing-in-user-copy chart/zoom"
                            " (storage/app_config.xml:2:22)",
                            "user/app_config.xml:1:1 info missing-in-user-copy start/page"
                            " (storage/app_config.xml:3:8)"));
}

TEST(SettingsCheck, FindsKeysThatTheUsersCopyHides) {
    EXPECT_THAT(linesOf({{"storage/web_page_urls.xml",
                          "<urls><url key='a'>https://a.example/</url>\n<url key='b'/></urls>"},
                         {"user/web_page_urls.xml", "<urls><url key='a'/></urls>"}},
                        "missing-in-user-copy"),
                ElementsAre("user/web_page_urls.xml:1:1 info missing-in-user-copy b"
                            " (storage/web_page_urls.xml:2:11)"));
    EXPECT_THAT(
        linesOf({{"storage/request_urls_json.txt",
                  R"({"md5Value": "1", "urlConfigList": [{"urlKey": "q", "urlValue": "x:y"}]})"},
                 {"user/request_urls_json.txt", R"({"md5Value": "2", "urlConfigList": []})"}},
                "missing-in-user-copy"),
        ElementsAre("user/request_urls_json.txt:1:1 info missing-in-user-copy q"
                    " (storage/request_urls_json.txt:1:48)"));
}

TEST(SettingsCheck, LeavesWhatOnlyTheUserHasAlone) {
    EXPECT_THAT(linesOf({{"storage/app_config.xml", "<config/>"},
                         {"user/app_config.xml", "<config><a><b/></a></config>"},
                         {"storage/web_page_urls.xml", "<urls/>"},
                         {"user/web_page_urls.xml", "<urls><url key='a'/></urls>"}},
                        "missing-in-user-copy"),
                IsEmpty());
}

TEST(SettingsCheck, ComparesNoCopyThatCannotBeRead) {
    for (const char* const copy : {"<config>", "<settings/>"})
        EXPECT_THAT(linesOf({{"storage/app_config.xml", "<config><a><b/></a></config>"},
                             {"user/app_config.xml", copy}},
                            "missing-in-user-copy"),
                    IsEmpty());
}

TEST(SettingsCheck, ReportsSoMuchThatACopyHides) {
    std::string items;
    for (int i = 0; i < 250; ++i)
        items += "<i" + std::to_string(i) + "/>";
    const files::TemporaryFolder folder;
    folder.write("storage/app_config.xml", "<config><a>" + items + "</a></config>");
    folder.write("user/app_config.xml", "<config/>");
    std::vector<std::string> messages;
    const auto inspection = inspected(folder.path());
    for (const RootFinding& finding : inspection->findings()) {
        if (finding.rule->name == "missing-in-user-copy")
            messages.push_back(finding.message);
    }
    EXPECT_THAT(messages, SizeIs(100));
    EXPECT_THAT(messages, Contains(HasSubstr("Setting 'a/i99' and 150 more:")));
}

// ---- Addresses of pages ----

std::vector<std::string> pageLines(const std::string& address) {
    std::vector<std::string> lines;
    const std::string file = "storage/web_page_urls.xml:";
    for (const std::string& line : linesOf(
             {{"storage/web_page_urls.xml", "<urls><url key='a'>" + address + "</url></urls>"}})) {
        if (line.starts_with(file))
            lines.push_back(line.substr(file.size()));
    }
    return lines;
}

TEST(SettingsCheck, FindsAddressesWithoutAScheme) {
    EXPECT_THAT(pageLines("www.example.com/help"),
                ElementsAre("1:20 warning address-without-scheme www.example.com/help"));
    EXPECT_THAT(pageLines("localhost:8080/"),
                ElementsAre("1:20 warning address-without-scheme localhost:8080/"));
    EXPECT_THAT(
        linesOf(
            {{"storage/request_urls_json.txt",
              R"({"md5Value": "1", "urlConfigList": [{"urlKey": "q", "urlValue": "/quote"}]})"}},
            "address-without-scheme"),
        ElementsAre("storage/request_urls_json.txt:1:66 warning address-without-scheme /quote"));
}

TEST(SettingsCheck, FindsFullWidthCharactersBeforeTheEndOfTheHost) {
    EXPECT_THAT(pageLines("https：//a.example/"),
                ElementsAre("1:20 warning full-width-in-address https：//a.example/"
                            " -> https://a.example/"));
    EXPECT_THAT(pageLines("https://a．example/?x=1&amp;y=2"),
                ElementsAre("1:20 warning full-width-in-address https://a．example/?x=1&y=2"));
}

TEST(SettingsCheck, LeavesOrdinaryAddressesAlone) {
    for (const char* const address :
         {"", "https://a.example/", "https://a.example/?q=上证，指数", "about:blank",
          "mailto:help@example.com", "app-page:news", "https://例子.example/"})
        EXPECT_THAT(pageLines(address), IsEmpty()) << address;
}

// ---- Web pages in place of files ----

TEST(SettingsCheck, FindsAWebPageInPlaceOfAFileOnce) {
    const std::string signIn = "<!DOCTYPE html>\n<html><head><meta charset=utf-8></head></html>";
    for (const char* const name :
         {"storage/web_page_urls.xml", "storage/app_config.xml", "storage/skeleton_v1.xml",
          "storage/request_urls_json.txt", "storage/palette_white.xml", "user/web_page_urls.xml",
          "user/request_urls_json.txt", "user/skeleton_v1.xml"}) {
        std::vector<std::string> lines;
        for (const std::string& line : linesOf({{name, signIn}})) {
            if (line.starts_with(name))
                lines.push_back(line);
        }
        EXPECT_THAT(lines, ElementsAre(std::string(name) + ":1:1 error html-in-place-of-file"));
    }
}

TEST(SettingsCheck, FindsAWebPageThatIsWellFormed) {
    EXPECT_THAT(linesOf({{"storage/web_page_urls.xml",
                          "<?xml version='1.0'?>\n<!-- x -->\n<HTML><body/></HTML>"}},
                        "html-in-place-of-file"),
                ElementsAre("storage/web_page_urls.xml:3:1 error html-in-place-of-file"));
    // The shipped table says what the user's copy is.
    EXPECT_THAT(linesOf({{"storage/pages.xml", "<urls/>"}, {"user/pages.xml", "<html/>"}},
                        "html-in-place-of-file"),
                ElementsAre("user/pages.xml:1:1 error html-in-place-of-file"));
}

TEST(SettingsCheck, TakesNothingElseForAWebPage) {
    for (const char* const bytes : {"<urls><url key='html'>about:blank</url></urls>", "<htmlx/>",
                                    "<!-- <html> --><urls/>", "<urls>", ""})
        EXPECT_THAT(linesOf({{"storage/web_page_urls.xml", bytes}}, "html-in-place-of-file"),
                    IsEmpty())
            << bytes;
}

// ---- Which files count ----

TEST(StorageFiles, AreInspectedInBothFoldersAndOnce) {
    const Files files{{"storage/palette_white.xml", "<ROOT a='1'/>"},
                      {"storage/skeleton_v1.xml", "<application a='1'/>"},
                      {"storage/app_config.xml", "<config a='1'/>"},
                      {"storage/web_page_urls.xml", "<urls a='1'/>"},
                      {"storage/request_urls_json.txt", R"({"a": 1, "md5Value": "1"})"},
                      {"storage/trade_pages.xml", "<urls a='1'/>"},
                      {"user/palette_white.xml", "<ROOT a='1'/>"},
                      {"user/skeleton_v1.xml", "<application a='1'/>"},
                      {"user/app_config.xml", "<config a='1'/>"},
                      {"user/web_page_urls.xml", "<urls a='1'/>"},
                      {"user/request_urls_json.txt", R"({"a": 1, "md5Value": "1"})"},
                      {"user/trade_pages.xml", "<urls a='1'/>"}};
    std::vector<std::string> found;
    for (const std::string& line : linesOf(files)) {
        if (line.find(" error unknown-attribute ") != std::string::npos ||
            line.find(" error unknown-member ") != std::string::npos)
            found.push_back(line.substr(0, line.find(':')));
    }
    std::vector<std::string> names;
    for (const auto& [name, bytes] : files)
        names.push_back(name);
    EXPECT_EQ(found, names);
}

TEST(StorageFiles, OfTheUsersThatNoTerminalReadsAreLeftAlone) {
    const Files files{{"user/notes.txt", "{"},
                      {"user/backup.xml", "<config"},
                      {"user/palette_old.xml", "<ROOT"},
                      {"user/layout.xml", "<windows/>"}};
    EXPECT_THAT(linesOf(files), Not(Contains(HasSubstr("user/"))));
}

TEST(StorageFiles, AreMissingOnlyFromTheShippedFolder) {
    const auto lines = linesOf(Files{{"config/events.xml", "<event_list/>"}});
    EXPECT_THAT(lines, Contains("storage/skeleton_v1.xml:1:1 warning missing-file"));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("user/"))));
}

// ---- Rules ----

TEST(StorageRules, FindNothingButNamesOfOneRightLevelInTheSample) {
    std::vector<std::string> found;
    for (const std::string& line : linesOf(*inspected(YG_SAMPLE_FOLDER))) {
        if (line.find("storage/") == 0 && line.find("address-weight") == std::string::npos)
            found.push_back(line.substr(0, line.find(" (")));
    }
    EXPECT_THAT(
        found,
        ElementsAre("storage/skeleton_l2_v1.xml:11:31 info server-in-some-files 港股行情(实时)",
                    "storage/skeleton_l2_v1.xml:37:31 info server-in-some-files 上海逐笔",
                    "storage/skeleton_l2_v1.xml:37:36 info server-in-some-files 深圳逐笔",
                    "storage/skeleton_l2_v1.xml:39:31 info server-in-some-files 十档盘口",
                    "storage/skeleton_l2_v1.xml:40:31 info server-in-some-files 委托队列",
                    "storage/skeleton_v1.xml:15:31 info server-in-some-files 港股行情(延时)",
                    "storage/skeleton_v1.xml:43:31 info server-in-some-files 深度行情试用"));
}

}  // namespace
}  // namespace yg::testing
