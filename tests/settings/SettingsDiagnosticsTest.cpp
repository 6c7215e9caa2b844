// SPDX-License-Identifier: MIT
//
// What is reported about settings, web pages and request URLs.
#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "settings/SettingsFixture.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::testing::KeptRequests;
using yg::testing::RecordingSink;
using yg::testing::ScopedFileLayer;

constexpr std::string_view urlsName = "request_urls_json.txt";

class SettingsDiagnostics : public yg::testing::StorageTest {
protected:
    SettingsDiagnostics() { host->server = "127.0.0.1:1"; }

    std::shared_ptr<YGAppConfigManager> openSettings(std::string_view xml) {
        put("app.xml", xml);
        return YGAppConfigManager::initWithFileName("app.xml", &sink);
    }
    std::shared_ptr<YGWebPageUrlConfig> openPages(std::string_view xml) {
        put("pages.xml", xml);
        return YGWebPageUrlConfig::initWithFileName("pages.xml", &sink);
    }
    std::shared_ptr<YGHttpReqUrlMgr> openUrls(std::string_view json) {
        put(urlsName, json);
        return transport.init(&sink);
    }

    /// The findings since the last call. Everything in the files was accounted for.
    std::vector<std::string> findings() {
        EXPECT_THAT(sink.unaccounted(), IsEmpty());
        std::vector<std::string> lines = sink.lines();
        sink = RecordingSink();
        return lines;
    }
    std::vector<std::string> findingsInSettings(std::string_view xml) {
        openSettings(xml);
        return findings();
    }
    std::vector<std::string> findingsInPages(std::string_view xml) {
        openPages(xml);
        return findings();
    }
    std::vector<std::string> findingsInUrls(std::string_view json) {
        openUrls(json);
        return findings();
    }

    RecordingSink sink;
    KeptRequests transport;
};

// ---- Settings --------------------------------------------------------------------------------

TEST_F(SettingsDiagnostics, FilesInOrderHaveNoFindings) {
    const auto store = openSettings(
        "<config><!-- c -->\n<a><x description='d'>1</x><!-- c --><y/></a><b/></config>");
    EXPECT_THAT(sink.files, ElementsAre(folder / "app.xml"));
    store->setConfigItem("a", "x", "", "2");
    store->setConfigItem("a", "z", "d", "2");
    store->getItemText("a", "none");
    const auto table = openPages("<urls><url key='a'>http://x/?a=1&amp;b=2</url><!-- c --></urls>");
    table->getWebPageUrlByKey("a");
    table->replaceDataFromServer("<urls><url key='a'>http://x/?a=1&b=2</url></urls>");
    const auto manager =
        openUrls(R"({"md5Value":"m","urlConfigList":[{"urlKey":"k","urlValue":"http://x/"}]})");
    manager->httpReqUrlStringWithUrlKey("k");
    transport.answer(R"({"md5Value":"n","urlConfigList":[]})");
    EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(SettingsDiagnostics, NameFilesThatCannotBeRead) {
    const std::string missing = "No such file or directory";
    YGAppConfigManager::initWithFileName("none.xml", &sink);
    YGWebPageUrlConfig::initWithFileName("none.xml", &sink);
    transport.init(&sink);
    EXPECT_THAT(sink.files,
                ElementsAre(folder / "none.xml", folder / "none.xml", folder / urlsName));
    const std::string line = "unreadable-file =" + missing;
    EXPECT_EQ(sink.findings.front().place, (Place{folder / "none.xml", {}, {}}));
    EXPECT_EQ(sink.findings.back().place, (Place{folder / urlsName, {}, {}}));
    EXPECT_THAT(findings(), ElementsAre(line, line, "unreadable-url-list"));
    EXPECT_THAT(findingsInUrls("[]"), ElementsAre("unreadable-url-list =not a JSON object"));
    EXPECT_THAT(findingsInUrls("{"),
                ElementsAre(::testing::StartsWith("1: unreadable-url-list =line 1, column ")));
}

TEST_F(SettingsDiagnostics, EachErrorOfAFileHasItsPlace) {
    openSettings("<config>\n<a b=1/>\n<c/></d>\n</config>");
    ASSERT_GE(sink.findings.size(), 2);
    for (const Finding& finding : sink.findings) {
        EXPECT_EQ(finding.rule.name, "unreadable-file");
        EXPECT_EQ(finding.place.file, folder / "app.xml");
        EXPECT_GT(finding.place.begin.column, 0);
        EXPECT_THAT(finding.value, ::testing::Not(::testing::HasSubstr("Line")));
    }
    EXPECT_EQ(sink.findings.front().place.begin.line, 2);
    EXPECT_GT(sink.findings.back().place.begin.line, 2);
}

TEST_F(SettingsDiagnostics, ASettingsRootOfAnotherNameInWhichWritesAreLost) {
    const auto store = openSettings("<settings><a><b>1</b></a></settings>");
    store->setConfigItem("a", "b", "", "2");
    EXPECT_THAT(findings(), ElementsAre("1: settings-root-name =settings", "lost-setting =a/b"));
}

TEST_F(SettingsDiagnostics, AWriteWithoutARootIsLost) {
    YGAppConfigManager::initWithFileName("none.xml", &sink)->setConfigItem("a", "b", "", "2");
    EXPECT_THAT(sink.rules(), ElementsAre("unreadable-file", "lost-setting"));
}

TEST_F(SettingsDiagnostics, DuplicateItems) {
    EXPECT_THAT(
        findingsInSettings("<config><a><x/>\n<x/></a>\n<b><x/></b>\n<a><x/><y/></a></config>"),
        ElementsAre("2: duplicate-item =x", "4: duplicate-item =x"));
}

TEST_F(SettingsDiagnostics, DuplicatesNameTheDefinitionThatCounts) {
    openSettings("<config><a><x/>\n<x/></a>\n<a>\n<x/></a></config>");
    openPages("<urls><url key='a'/>\n<url key='a'/>\n<url key='a'/></urls>");
    openUrls(
        "{\"md5Value\":\"m\",\"urlConfigList\":[{\"urlKey\":\"k\",\"urlValue\":\"\"},\n"
        "{\"urlKey\":\"k\",\"urlValue\":\"\"},\n{\"urlKey\":\"k\",\"urlValue\":\"\"}]}");
    EXPECT_EQ(sink.findings.size(), 6);
    for (const Finding& finding : sink.findings) {
        ASSERT_EQ(finding.related.size(), 1);
        EXPECT_EQ(finding.related.front().place.begin.line, 1);
        EXPECT_EQ(finding.related.front().place.file, finding.place.file);
        EXPECT_GT(finding.place.begin.line, 1);
    }
}

TEST_F(SettingsDiagnostics, StrangersAmongSettings) {
    EXPECT_THAT(findingsInSettings("<config version='2'>text\n<a hidden='1'>more\n"
                                   "<x description='d' unit='s'>1<b>2</b></x></a></config>"),
                ElementsAre("1: unknown-attribute version=2", "1: stray-text =text\n",
                            "2: unknown-attribute hidden=1", "2: stray-text =more\n",
                            "3: unknown-attribute unit=s", "3: element-in-text =b"));
}

TEST_F(SettingsDiagnostics, NamesThatAreNoElementNames) {
    const auto store = openSettings("<config><a><x>1</x></a></config>");
    store->getItemText("a", "x y");
    store->getItemText("1", "x");
    store->setConfigItem("a", "<x>", "", "1");
    store->setConfigItem("", "x", "", "1");
    EXPECT_THAT(findings(), ElementsAre("no-element-name =x y", "no-element-name =1",
                                        "no-element-name =<x>", "no-element-name"));
}

TEST_F(SettingsDiagnostics, FilesThatCannotBeWritten) {
    const auto store = openSettings("<config/>");
    const auto table = openPages("<urls/>");
    const auto manager = openUrls("{\"md5Value\":\"m\"}");
    ScopedFileLayer disk;
    disk->errorOf = [](std::string_view call) { return call == "write" ? ENOSPC : 0; };
    store->setConfigItem("a", "x", "", "1");
    table->replaceDataFromServer("<urls/>");
    transport.answer("{\"md5Value\":\"n\"}");
    const std::string cause = ": No space left on device";
    EXPECT_THAT(findings(), ElementsAre("unsaved-file =" + (folder / "app.xml") + cause,
                                        "unsaved-file =" + (folder / "pages.xml") + cause,
                                        "unsaved-file =" + (folder / urlsName) + cause));
}

TEST_F(SettingsDiagnostics, FilesWithoutAPathToWriteTo) {
    const auto store = openSettings("<config/>");
    const auto table = openPages("<urls/>");
    const auto manager = openUrls("{\"md5Value\":\"m\"}");
    for (const auto& path : {std::optional<std::string>(), std::optional<std::string>("")}) {
        for (const std::string_view name :
             {std::string_view("app.xml"), std::string_view("pages.xml"), urlsName})
            host->paths[std::string(name)] = path;
        store->setConfigItem("a", "x", "", "1");
        EXPECT_FALSE(table->replaceDataFromServer("<urls/>"));
        manager->updateHttpReqUrls();
        transport.answer("{\"md5Value\":\"n\"}");
        const std::string cause = ": there is no path to write to";
        EXPECT_THAT(findings(),
                    ElementsAre("unsaved-file =app.xml" + cause, "unsaved-file =pages.xml" + cause,
                                "unsaved-file =" + std::string(urlsName) + cause));
    }
}

TEST_F(SettingsDiagnostics, WhatCouldNotBeReadAgain) {
    const auto store = openSettings("<config/>");
    const auto table = openPages("<urls/>");
    const std::string longest(2'600'000, '>');
    EXPECT_FALSE(store->setConfigItem("a", "x", "", longest));
    EXPECT_FALSE(table->replaceDataFromServer("<urls><url key='k'>" + longest + "</url></urls>"));
    EXPECT_THAT(findings(), ElementsAre("unreadable-setting =a/x",
                                        "unsaved-file =pages.xml: it could not be read again"));
}

TEST_F(SettingsDiagnostics, DocumentsThatCannotBeSaved) {
    const auto store = openSettings("<config/>");
    const xml::Document document = store->docment();
    host->paths["none.xml"] = std::nullopt;
    store->saveAppConfigFile(&document, "none.xml");
    {
        ScopedFileLayer disk;
        disk->errorOf = [](std::string_view call) { return call == "sync" ? EIO : 0; };
        store->saveAppConfigFile(&document, "app.xml");
    }
    document.root().setAttribute("a", std::string(10'000'001, 'x'));
    store->saveAppConfigFile(&document, "app.xml");
    const xml::Document empty;
    store->saveAppConfigFile(&empty, "app.xml");
    EXPECT_THAT(findings(),
                ElementsAre("unsaved-file =none.xml: there is no path to write to",
                            "unsaved-file =" + (folder / "app.xml") + ": Input/output error",
                            "unsaved-file =app.xml: it could not be read again"));
}

// A sink may ask the store that reports to it.
TEST_F(SettingsDiagnostics, NothingIsReportedUnderALock) {
    class AskingSink : public DiagnosticsSink {
    public:
        void report(const Finding&) override {
            EXPECT_EQ(store->getItemText("a", "x"), "1");
            EXPECT_EQ(table->getWebPageUrlByKey("a"), "1");
            ++reports;
        }
        std::shared_ptr<YGAppConfigManager> store;
        std::shared_ptr<YGWebPageUrlConfig> table;
        int reports = 0;
    } asking;
    put("app.xml", "<config><a><x>1</x></a></config>");
    put("pages.xml", "<urls><url key='a'>1</url></urls>");
    asking.store = YGAppConfigManager::initWithFileName("app.xml", &asking);
    asking.table = YGWebPageUrlConfig::initWithFileName("pages.xml", &asking);
    asking.store->getItemText("a", "1");
    asking.store->setConfigItem("a", "1", "", "1");
    asking.table->getWebPageUrlByKey("none");
    asking.table->replaceDataFromServer("no xml");
    EXPECT_EQ(asking.reports, 4);
}

// ---- Web pages -------------------------------------------------------------------------------

TEST_F(SettingsDiagnostics, ATableRootOfAnotherName) {
    EXPECT_THAT(findingsInPages("<pages><url key='a'>1</url></pages>"),
                ElementsAre("1: web-page-root-name =pages"));
}

TEST_F(SettingsDiagnostics, KeysThatAreNeverFound) {
    EXPECT_THAT(
        findingsInPages("<urls><url>1</url>\n<url key=''>1</url>\n<url key=\"it's\">1</url>\n"
                        "<url key='a'/>\n<url key='a'/></urls>"),
        ElementsAre("1: web-page-without-key", "2: web-page-without-key",
                    "3: key-with-apostrophe key=it's", "5: duplicate-web-page key=a"));
}

TEST_F(SettingsDiagnostics, StrangersInATable) {
    EXPECT_THAT(
        findingsInPages("<urls x='1'>text\n<link/>\n<url key='a' b='2'>1<c/></url></urls>"),
        ElementsAre("1: unknown-attribute x=1", "1: stray-text =text\n", "2: unknown-element =link",
                    "3: unknown-attribute b=2", "3: element-in-text =c"));
}

TEST_F(SettingsDiagnostics, BlanksAroundAnAddress) {
    EXPECT_THAT(findingsInPages("<urls><url key='a'> h</url><url key='b'>h\n</url>"
                                "<url key='c'>h h</url></urls>"),
                ElementsAre("1: blanks-around-address = h", "1: blanks-around-address =h\n"));
    EXPECT_THAT(findingsInUrls(R"({"md5Value":"m","urlConfigList":[)"
                               R"({"urlKey":" a","urlValue":"h\t"}]})"),
                ElementsAre("1: blanks-around-address urlConfigList[0].urlValue=h\t"));
}

TEST_F(SettingsDiagnostics, KeysThatAreNotInATable) {
    const auto table = openPages("<urls/>");
    table->getWebPageUrlByKey("a");
    table->getWebPageUrlByKey("it's");
    EXPECT_THAT(findings(), ElementsAre("unknown-web-page =a", "unknown-web-page =it's"));
}

TEST_F(SettingsDiagnostics, TablesFromAServer) {
    const auto table = openPages("<urls/>");
    table->replaceDataFromServer("<urls>\n<url key='a'>?a&amp;b</url><url/></urls>");
    EXPECT_EQ(sink.findings.back().place.begin.column, 28u + 4);
    EXPECT_THAT(findings(), ElementsAre("2: escaped-twice =?a&amp;b", "2: web-page-without-key"));
    table->replaceDataFromServer("<urls>");
    EXPECT_THAT(sink.rules(), ElementsAre("unreadable-web-pages"));
}

// ---- Downloads -------------------------------------------------------------------------------

TEST_F(SettingsDiagnostics, OfADownloadNameItAndThoseOfTheFileTheFile) {
    const std::string url = "http://127.0.0.1:1/mac/mac_free_free_request_urls_json.txt";
    const auto manager = openUrls("[]");
    EXPECT_THAT(sink.files, ElementsAre(folder / urlsName));
    EXPECT_THAT(findings(), ElementsAre("unreadable-url-list =not a JSON object"));
    transport.answer("[]");
    EXPECT_THAT(sink.files, ElementsAre(url));
    EXPECT_THAT(findings(), ElementsAre("failed-download =not a JSON object"));
    manager->updateHttpReqUrls();
    transport.answer("{\"x\":1}");
    EXPECT_THAT(sink.files, ElementsAre(url));
    EXPECT_THAT(findings(),
                ElementsAre("1: list-without-digest md5Value=", "1: unknown-member x=1"));
    manager->readUrlModelFromFile();
    EXPECT_THAT(sink.files, ElementsAre(folder / urlsName));
    findings();
    manager->updateHttpReqUrls();
    transport.answer(std::nullopt, "nobody is there");
    EXPECT_THAT(sink.files, ElementsAre(url));
    EXPECT_THAT(findings(), ElementsAre("failed-download =nobody is there"));
    EXPECT_EQ(manager->urlModel(), nullptr);
}

// ---- Request URLs ----------------------------------------------------------------------------

TEST_F(SettingsDiagnostics, MembersOfTheWrongTypeAndOfOtherNames) {
    EXPECT_THAT(findingsInUrls(R"({"md5Value":7,"md5":"x","urlConfigList":[null,)"
                               R"({"urlKey":1,"urlValue":true,"url":[1]},"text"]})"),
                ElementsAre("1: number-for-text md5Value=7",
                            "1: member-of-wrong-type urlConfigList[0]=null",
                            "1: number-for-text urlConfigList[1].urlKey=1",
                            "1: member-of-wrong-type urlConfigList[1].urlValue=true",
                            "1: unknown-member urlConfigList[1].url=[1]",
                            "1: member-of-wrong-type urlConfigList[2]=\"text\"",
                            "1: unknown-member md5=\"x\""));
    EXPECT_THAT(findingsInUrls(R"({"md5Value":"m","urlConfigList":{}})"),
                ElementsAre("1: member-of-wrong-type urlConfigList={}"));
}

TEST_F(SettingsDiagnostics, MembersThatLoseToALaterOneOfTheirName) {
    const auto manager = openUrls(
        "{\"md5Value\":1,\"md5Value\":\"m\",\n\"urlConfigList\":[],\"urlConfigList\":[\n"
        "{\"urlKey\":\"a\",\"urlValue\":\"h\",\n\"urlKey\":\"b\"}],\"x\":1,\n\"x\":2}");
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("b"), "h");
    EXPECT_THAT(findings(),
                ElementsAre("3: replaced-member urlConfigList[0].urlKey=\"a\"",
                            "1: replaced-member md5Value=1", "2: replaced-member urlConfigList=[]",
                            "4: unknown-member x=1", "5: unknown-member x=2"));
}

TEST_F(SettingsDiagnostics, OfAMemberShowItsValueAndReachOverItsName) {
    const std::string list = "{\"md5Value\":\"m\",\n \"表\": [1,\n2] , \"other\": {}}";
    openUrls(list);
    ASSERT_EQ(sink.findings.size(), 2);
    const Finding& first = sink.findings.front();
    EXPECT_EQ(first.place, (Place{folder / urlsName, {2, 7}, {3, 3}}));
    EXPECT_EQ(first.extent, (Place{folder / urlsName, {2, 2}, {3, 3}}));
    const Finding& second = sink.findings.back();
    EXPECT_EQ(second.place, (Place{folder / urlsName, {3, 15}, {3, 17}}));
    EXPECT_EQ(second.extent, (Place{folder / urlsName, {3, 6}, {3, 17}}));
}

TEST_F(SettingsDiagnostics, EntriesWithoutKeyOrValueAndDuplicateKeys) {
    EXPECT_THAT(
        findingsInUrls(R"({"md5Value":"m","urlConfigList":[{"urlValue":"h"},)"
                       R"({"urlKey":"a"},{"urlKey":"a","urlValue":"h"},{}]})"),
        ElementsAre(
            "1: url-without-key urlConfigList[0]=", "1: url-without-value urlConfigList[1]=a",
            "1: duplicate-url-key urlConfigList[2]=a",
            "1: url-without-key urlConfigList[3]=", "1: url-without-value urlConfigList[3]="));
}

TEST_F(SettingsDiagnostics, ListsWithoutADigest) {
    EXPECT_THAT(findingsInUrls("{}"), ElementsAre("1: list-without-digest md5Value="));
    EXPECT_THAT(findingsInUrls("{\"md5Value\":\"\"}"),
                ElementsAre("1: list-without-digest md5Value="));
    const auto manager = openUrls("{\"md5Value\":\"m\"}");
    transport.answer("{\"md5Value\":null}");
    EXPECT_THAT(findings(), ElementsAre("1: member-of-wrong-type md5Value=null",
                                        "1: list-without-digest md5Value="));
}

TEST_F(SettingsDiagnostics, AnEqualDigestWithOtherEntries) {
    constexpr const char* list =
        R"({"md5Value":"m","urlConfigList":[{"urlKey":"k","urlValue":"h"}]})";
    const auto manager = openUrls(list);
    transport.answer(list);
    EXPECT_THAT(findings(), IsEmpty());
    for (const char* other :
         {R"({"md5Value":"m"})", R"({"md5Value":"m","urlConfigList":[]})",
          R"({"md5Value":"m","urlConfigList":[{"urlKey":"k","urlValue":"i"}]})"}) {
        manager->updateHttpReqUrls();
        transport.answer(other);
        EXPECT_THAT(findings(), ElementsAre("same-digest-other-entries =m"));
    }
}

TEST_F(SettingsDiagnostics, KeysThatAreNotInAList) {
    const auto manager = openUrls("{\"md5Value\":\"m\"}");
    manager->httpReqUrlStringWithUrlKey("k");
    EXPECT_THAT(findings(), ElementsAre("unknown-url-key =k"));
}

}  // namespace
}  // namespace yg
