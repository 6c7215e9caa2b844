// SPDX-License-Identifier: MIT
//
// Files that are broken, huge or cannot be written, for settings, web pages and request URLs alike.
#include <cerrno>
#include <cstddef>
#include <ctime>
#include <functional>
#include <pthread.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "LargeInput.h"
#include "settings/SettingsFixture.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using yg::testing::KeptRequests;
using yg::testing::largeInput;
using yg::testing::ScopedFileLayer;

constexpr std::string_view settingsName = "app.xml";
constexpr std::string_view pagesName = "pages.xml";
constexpr std::string_view urlsName = "request_urls_json.txt";

constexpr std::string_view settings =
    "<config><login><user description=\"d\">li</user></login></config>";
constexpr std::string_view pages = "<urls><url key=\"news\">http://n/</url></urls>";
constexpr std::string_view urls =
    R"({"md5Value":"one","urlConfigList":[{"urlKey":"k","urlValue":"old"}]})";
constexpr std::string_view newPages = "<urls><url key='news'>new</url></urls>";
constexpr std::string_view newUrls =
    R"({"md5Value":"two","urlConfigList":[{"urlKey":"k","urlValue":"new"}]})";

class SettingsBadInput : public yg::testing::StorageTest {
protected:
    SettingsBadInput() { host->server = "127.0.0.1:1"; }
    KeptRequests transport;
};

/// Every beginning of a file, and files of other kinds.
std::vector<std::string> damagedForms(std::string_view whole) {
    std::vector<std::string> forms = {"",
                                      " \r\n",
                                      "plain text",
                                      "\xff\xfe",
                                      std::string("\0\0\0\0", 4),
                                      "\x7f"
                                      "ELF\x02\x01\x01",
                                      "<!-- comment -->",
                                      "<?xml version=\"1.0\"?>",
                                      std::string(whole) + "x",
                                      std::string(whole) + std::string(whole),
                                      std::string(whole) + std::string(1, '\0')};
    for (std::size_t size = 1; size < whole.size(); ++size)
        forms.emplace_back(whole.substr(0, size));
    return forms;
}

// ---- Damaged files ---------------------------------------------------------------------------

TEST_F(SettingsBadInput, ADamagedSettingsFileReadsAsEmptyAndIsNeverOverwritten) {
    std::vector<std::string> forms = damagedForms(settings);
    forms.emplace_back("{\"config\":{}}");
    for (const std::string& form : forms) {
        put(settingsName, form);
        const auto store = YGAppConfigManager::initWithFileName(settingsName);
        ASSERT_NE(store, nullptr);
        EXPECT_EQ(store->getItemText("login", "user"), std::nullopt) << form;
        EXPECT_TRUE(store->setConfigItem("login", "user", "", "wang"));
        EXPECT_EQ(store->getItemText("login", "user"), std::nullopt) << form;
        EXPECT_EQ(contentOf(settingsName), form);
    }
    EXPECT_THAT(host->log(), IsEmpty());
    EXPECT_THAT(folder.names(), ElementsAre(settingsName));
}

TEST_F(SettingsBadInput, ADamagedWebPageTableIsBlankAndCanBeReplaced) {
    for (const std::string& form : damagedForms(pages)) {
        put(pagesName, form);
        const auto table = YGWebPageUrlConfig::initWithFileName(pagesName);
        ASSERT_NE(table, nullptr);
        EXPECT_EQ(table->getWebPageUrlByKey("news"), "about:blank") << form;
        EXPECT_EQ(contentOf(pagesName), form);
        EXPECT_TRUE(table->replaceDataFromServer(newPages));
        EXPECT_EQ(table->getWebPageUrlByKey("news"), "new");
    }
}

TEST_F(SettingsBadInput, ADamagedUrlListIsNoneAndCanBeDownloaded) {
    std::vector<std::string> forms = damagedForms(urls);
    forms.emplace_back("<config/>");
    for (const std::string& form : forms) {
        put(urlsName, form);
        const auto manager = transport.init();
        EXPECT_EQ(manager->urlModel(), nullptr) << form;
        EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), std::nullopt);
        EXPECT_EQ(contentOf(urlsName), form);
        transport.answer(std::string(newUrls));
        EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), "new");
    }
}

TEST_F(SettingsBadInput, AFolderInPlaceOfAFileIsAMissingFile) {
    for (const std::string_view name : {settingsName, pagesName, urlsName})
        ASSERT_EQ(::mkdir((folder / name).c_str(), 0700), 0);
    const auto store = YGAppConfigManager::initWithFileName(settingsName);
    EXPECT_TRUE(store->setConfigItem("a", "b", "", "1"));
    const auto table = YGWebPageUrlConfig::initWithFileName(pagesName);
    EXPECT_FALSE(table->replaceDataFromServer(newPages));
    EXPECT_EQ(table->getWebPageUrlByKey("news"), "new");
    const auto manager = transport.init();
    transport.answer(std::string(newUrls));
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), "new");
    EXPECT_THAT(folder.names(), ElementsAre(settingsName, pagesName, urlsName));
    EXPECT_THAT(folder.names(urlsName), IsEmpty());
}

// ---- Huge files ------------------------------------------------------------------------------

TEST_F(SettingsBadInput, AHugeSettingsFileIsReadAndWritten) {
    std::string xml = "<config>";
    std::size_t sections = 0;
    for (; xml.size() < largeInput; ++sections) {
        xml += "<s" + std::to_string(sections) + ">";
        for (int item = 0; item < 1000; ++item)
            xml += "<i" + std::to_string(item) + " description=\"number\">7</i" +
                   std::to_string(item) + ">\n";
        xml += "</s" + std::to_string(sections) + ">\n";
    }
    put(settingsName, xml + "</config>");
    const auto store = YGAppConfigManager::initWithFileName(settingsName);
    const std::string last = "s" + std::to_string(sections - 1);
    EXPECT_EQ(store->getItemText(last, "i999"), "7");
    EXPECT_TRUE(store->setConfigItem(last, "i999", "", "changed"));
    EXPECT_EQ(store->getItemText(last, "i999"), "changed");
    EXPECT_EQ(YGAppConfigManager::initWithFileName(settingsName)->getItemText(last, "i999"),
              "changed");
}

// A text has ten million bytes in a file at the most. A longer one would make the file unreadable.
TEST_F(SettingsBadInput, ATextThatCouldNotBeReadAgainIsRefused) {
    put(settingsName, settings);
    const auto store = YGAppConfigManager::initWithFileName(settingsName);
    const std::string longest(9'900'000, 'x');
    EXPECT_TRUE(store->setConfigItem("login", "user", "", longest));
    const std::string written = contentOf(settingsName);
    const std::string escaped(2'500'001, '<');
    EXPECT_FALSE(store->setConfigItem("login", "user", "", escaped));
    EXPECT_FALSE(store->setConfigItem("login", "new", "", escaped));
    EXPECT_FALSE(store->setConfigItem("login", "new", std::string(10'000'001, 'x'), "1"));
    EXPECT_FALSE(store->setConfigItem("new", "new", "", std::string(10'000'001, 'x')));
    EXPECT_TRUE(store->getItemText("login", "user") == longest);
    EXPECT_EQ(store->docment().query("//new").size(), 0u);
    EXPECT_TRUE(contentOf(settingsName) == written);
    const auto next = YGAppConfigManager::initWithFileName(settingsName);
    EXPECT_TRUE(next->getItemText("login", "user") == longest);
}

std::string repeated(std::string_view text, std::size_t times) {
    std::string all;
    for (std::size_t i = 0; i < times; ++i)
        all += text;
    return all;
}

// The file with such a name would be unreadable at the next start.
TEST_F(SettingsBadInput, ANameThatCouldNotBeReadAgainIsRefused) {
    put(settingsName, settings);
    const auto store = YGAppConfigManager::initWithFileName(settingsName);
    for (const std::string& name : {std::string(50'100, 'n'), repeated("\xE9\xA1\xB5", 20'000),
                                    repeated("p", 30'000) + ':' + repeated("n", 30'000)}) {
        EXPECT_FALSE(store->setConfigItem("login", name, "", "1"));
        EXPECT_FALSE(store->setConfigItem(name, "item", "", "1"));
        EXPECT_EQ(store->getItemText("login", name), std::nullopt);
        EXPECT_EQ(contentOf(settingsName), settings);
    }
    const std::string longest(49'990, 'n');
    EXPECT_TRUE(store->setConfigItem(longest, longest, "d", "1"));
    EXPECT_EQ(YGAppConfigManager::initWithFileName(settingsName)->getItemText(longest, longest),
              "1");
}

TEST_F(SettingsBadInput, OneItemMoreThanCouldBeReadAgainIsRefused) {
    std::string xml = "<config><s>";
    for (int item = 0; item < 99'985; ++item)
        xml += "<i" + std::to_string(item) + ">7</i" + std::to_string(item) + ">";
    put(settingsName, xml + "</s></config>");
    const auto store = YGAppConfigManager::initWithFileName(settingsName);
    int stored = 0;
    while (stored < 40 && store->setConfigItem("s", "more" + std::to_string(stored), "", "1"))
        ++stored;
    EXPECT_GT(stored, 0);
    EXPECT_LT(stored, 40);
    EXPECT_EQ(store->getItemText("s", "more" + std::to_string(stored)), std::nullopt);
    EXPECT_TRUE(store->setConfigItem("s", "i7", "", "changed"));
    const auto next = YGAppConfigManager::initWithFileName(settingsName);
    EXPECT_EQ(next->getItemText("s", "i7"), "changed");
    EXPECT_EQ(next->getItemText("s", "more" + std::to_string(stored - 1)), "1");
    EXPECT_EQ(next->getItemText("s", "more" + std::to_string(stored)), std::nullopt);
}

// Documents that an application makes have no limits, but files have.
TEST_F(SettingsBadInput, ADocumentThatCouldNotBeReadAgainIsNotWritten) {
    put(settingsName, settings);
    const auto store = YGAppConfigManager::initWithFileName(settingsName);
    const auto expectNotWritten = [&](const std::function<void(xml::Element)>& change) {
        const xml::Document document = store->docment();
        change(document.root());
        store->saveAppConfigFile(&document, settingsName);
        EXPECT_EQ(contentOf(settingsName), settings);
    };
    expectNotWritten([](xml::Element at) {
        for (int level = 0; level < 300; ++level)
            at = xml::Element(at.appendChild(xml::Element::create("deep")));
    });
    expectNotWritten([](xml::Element root) {
        for (int i = 0; i < 257; ++i)
            root.setAttribute("a" + std::to_string(i), "");
    });
    expectNotWritten(
        [](xml::Element root) { root.setAttribute("a", std::string(10'000'001, 'x')); });
    expectNotWritten([](xml::Element root) { root.setAttribute(std::string(50'100, 'n'), ""); });
    expectNotWritten([](xml::Element root) { root.setContent(std::string(2'500'001, '<')); });
    expectNotWritten([](xml::Element root) { root.rename(std::string(50'100, 'n')); });
    expectNotWritten([](xml::Element root) {
        for (int i = 0; i < 100'100; ++i)
            root.appendChild(xml::Element::create("n" + std::to_string(i)));
    });
    const xml::Document document = store->docment();
    document.root().setAttribute("a", "1");
    store->saveAppConfigFile(&document, settingsName);
    EXPECT_THAT(contentOf(settingsName), ::testing::HasSubstr("<config a=\"1\">"));
}

/// A name that selects an item and asks every element of the file about every other on the way,
/// four times over: nobody waits for the end of that.
constexpr std::string_view endless = "*[count(//*[count(//*[count(//*[count(//*)>1])>1])>1])>1]";

/// Runs `hang` on a thread that does not come back, and once it is at work `meanwhile` until the
/// thread has had a while more, both in a process of their own. That process ends in time unless
/// `meanwhile` waits for the thread.
void expectNoWaiting(const std::function<void()>& hang, const std::function<void()>& meanwhile) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        alarm(60);
        std::thread thread(hang);
        clockid_t clock{};
        if (pthread_getcpuclockid(thread.native_handle(), &clock) != 0)
            _exit(1);
        timespec spent{};
        while (spent.tv_sec == 0 && spent.tv_nsec < 200'000'000) {
            meanwhile();
            clock_gettime(clock, &spent);
        }
        _exit(0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(SettingsBadInput, NobodyWaitsForANameThatIsALongQuery) {
    std::string xml = "<config><s>";
    for (int item = 0; item < 500; ++item)
        xml += "<i" + std::to_string(item) + "/>";
    put(settingsName, xml + "</s></config>");
    const auto store = YGAppConfigManager::initWithFileName(settingsName);
    const auto use = [&] {
        if (!store->setConfigItem("s", "i1", "", "1") || store->getItemText("s", "i1") != "1" ||
            store->docment().root().name() != "config" || store->getItemText("s/.", "i1") != "1")
            _exit(2);
    };
    expectNoWaiting([&] { store->getItemText(endless, "i"); }, use);
    expectNoWaiting([&] { store->setConfigItem(endless, "i", "", "1"); }, use);
}

TEST_F(SettingsBadInput, NobodyWaitsForAWebPageKeyThatIsALongQuery) {
    std::string xml = "<urls>";
    for (int key = 0; key < 500; ++key)
        xml += "<url key='k" + std::to_string(key) + "'>a</url>";
    xml += "</urls>";
    put(pagesName, xml);
    const auto table = YGWebPageUrlConfig::initWithFileName(pagesName);
    const std::string key = "' or //" + std::string(endless) + " or 'x'='";
    expectNoWaiting(
        [&] { table->getWebPageUrlByKey(key); },
        [&] {
            if (table->getWebPageUrlByKey("k1") != "a" || !table->replaceDataFromServer(xml))
                _exit(2);
        });
}

TEST_F(SettingsBadInput, AnItemThatALongNameStoresIsNotLostToOthers) {
    put(settingsName, "<config><s><a/></s></config>");
    const auto store = YGAppConfigManager::initWithFileName(settingsName);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (int round = 0; round < 20; ++round) {
                const std::string name = "t" + std::to_string(thread) + "r" + std::to_string(round);
                EXPECT_TRUE(store->setConfigItem(thread % 2 ? "s" : "s[1]", name, "", name));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const auto next = YGAppConfigManager::initWithFileName(settingsName);
    for (int thread = 0; thread < 4; ++thread) {
        for (int round = 0; round < 20; ++round) {
            const std::string name = "t" + std::to_string(thread) + "r" + std::to_string(round);
            EXPECT_EQ(store->getItemText("s", name), name);
            EXPECT_EQ(next->getItemText("s", name), name);
        }
    }
}

TEST_F(SettingsBadInput, ATableThatCouldNotBeReadAgainIsNotWritten) {
    put(pagesName, pages);
    const auto table = YGWebPageUrlConfig::initWithFileName(pagesName);
    const std::string address(2'600'000, '>');
    EXPECT_FALSE(table->replaceDataFromServer("<urls><url key='k'>" + address + "</url></urls>"));
    EXPECT_TRUE(table->getWebPageUrlByKey("k") == address);
    EXPECT_EQ(contentOf(pagesName), pages);
}

TEST_F(SettingsBadInput, AHugeWebPageTableIsReadAndReplaced) {
    std::string xml = "<urls>";
    std::size_t keys = 0;
    while (xml.size() < largeInput)
        xml +=
            "<url key='k" + std::to_string(keys++) + "'>http://pages.example.com/?a=1&b=2</url>\n";
    xml += "</urls>";
    put(pagesName, pages);
    const auto table = YGWebPageUrlConfig::initWithFileName(pagesName);
    EXPECT_TRUE(table->replaceDataFromServer(xml));
    const std::string last = "k" + std::to_string(keys - 1);
    EXPECT_EQ(table->getWebPageUrlByKey(last), "http://pages.example.com/?a=1&b=2");
    EXPECT_EQ(YGWebPageUrlConfig::initWithFileName(pagesName)->getWebPageUrlByKey(last),
              "http://pages.example.com/?a=1&b=2");
    xml.resize(xml.size() - 1);
    EXPECT_FALSE(table->replaceDataFromServer(xml));
    EXPECT_EQ(table->getWebPageUrlByKey(last), "http://pages.example.com/?a=1&b=2");
}

TEST_F(SettingsBadInput, AHugeUrlListIsReadOrRefusedAsAWhole) {
    std::string json = R"({"md5Value":"big","urlConfigList":[)";
    std::size_t keys = 0;
    while (keys < 80'000)
        json += "{\"urlKey\":\"k" + std::to_string(keys++) + "\",\"urlValue\":\"http://x/\"},\n";
    const std::string pad(largeInput - json.size(), ' ');
    put(urlsName, json + pad + R"({"urlKey":"last","urlValue":"v"}]})");
    const auto manager = transport.init();
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("last"), "v");
    // More values than any list has.
    json = R"({"md5Value":"big","urlConfigList":[0)";
    while (json.size() < largeInput)
        json += ",0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";
    transport.answer(json + "]}");
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("last"), "v");
}

TEST_F(SettingsBadInput, DeepNestingIsRefused) {
    std::string json = R"({"md5Value":"deep","urlConfigList":)" + std::string(100'000, '[');
    put(urlsName, json);
    EXPECT_EQ(transport.init()->urlModel(), nullptr);
    std::string xml;
    for (int i = 0; i < 100'000; ++i)
        xml += "<config>";
    put(settingsName, xml);
    EXPECT_FALSE(YGAppConfigManager::initWithFileName(settingsName)->docment().root());
}

TEST_F(SettingsBadInput, AHugeQueryInANameIsRefused) {
    put(settingsName, settings);
    put(pagesName, pages);
    const std::string deep = std::string(100'000, '(') + "'";
    EXPECT_EQ(YGAppConfigManager::initWithFileName(settingsName)->getItemText("login", deep),
              std::nullopt);
    EXPECT_EQ(YGWebPageUrlConfig::initWithFileName(pagesName)->getWebPageUrlByKey("' or " + deep),
              "about:blank");
}

// ---- Disks that are full or fail -------------------------------------------------------------

/// The calls that a write makes, each to be made to fail.
constexpr std::string_view calls[] = {"openFolder", "openNew", "write",
                                      "changeMode", "sync",    "rename"};

class SettingsOnABadDisk : public SettingsBadInput,
                           public ::testing::WithParamInterface<std::string_view> {
protected:
    SettingsOnABadDisk() {
        disk->errorOf = [](std::string_view call) {
            return call == GetParam() ? (call == "write" ? ENOSPC : EROFS) : 0;
        };
        disk->largestWrite = 7;
        put(settingsName, settings);
        put(pagesName, pages);
        put(urlsName, urls);
    }
    ScopedFileLayer disk;
};

TEST_P(SettingsOnABadDisk, AChangedItemCountsInMemoryAndTheFileIsTheLastCompleteOne) {
    const auto store = YGAppConfigManager::initWithFileName(settingsName);
    EXPECT_TRUE(store->setConfigItem("login", "user", "", "wang"));
    EXPECT_TRUE(store->setConfigItem("login", "new", "", "1"));
    EXPECT_EQ(store->getItemText("login", "user"), "wang");
    EXPECT_EQ(contentOf(settingsName), settings);
    EXPECT_THAT(folder.names(), ElementsAre(settingsName, pagesName, urlsName));
    // With the disk in order again the next write brings all changes.
    disk->errorOf = [](std::string_view) { return 0; };
    EXPECT_TRUE(store->setConfigItem("login", "user", "", "zhao"));
    EXPECT_THAT(contentOf(settingsName), HasSubstr("zhao"));
    EXPECT_THAT(contentOf(settingsName), HasSubstr("<new>1</new>"));
}

TEST_P(SettingsOnABadDisk, AReplacedTableCountsInMemoryAndIsFalse) {
    const auto table = YGWebPageUrlConfig::initWithFileName(pagesName);
    EXPECT_FALSE(table->replaceDataFromServer(newPages));
    EXPECT_EQ(table->getWebPageUrlByKey("news"), "new");
    EXPECT_EQ(contentOf(pagesName), pages);
    EXPECT_THAT(folder.names(), ElementsAre(settingsName, pagesName, urlsName));
}

TEST_P(SettingsOnABadDisk, ADownloadedListCountsInMemory) {
    const auto manager = transport.init();
    transport.answer(std::string(newUrls));
    EXPECT_EQ(manager->httpReqUrlStringWithUrlKey("k"), "new");
    EXPECT_EQ(contentOf(urlsName), urls);
    EXPECT_THAT(folder.names(), ElementsAre(settingsName, pagesName, urlsName));
}

INSTANTIATE_TEST_SUITE_P(EachCall, SettingsOnABadDisk, ::testing::ValuesIn(calls),
                         [](const auto& each) { return std::string(each.param); });

/// A process that dies at any step of a write leaves the old file or the new one.
TEST_F(SettingsBadInput, AWriteThatIsCutAtAnyStepLeavesTheOldFileOrTheNewOne) {
    put(settingsName, settings);
    std::vector<std::string> found;
    {
        ScopedFileLayer disk;
        disk->largestWrite = 16;
        disk->after = [&](std::string_view) { found.push_back(contentOf(settingsName)); };
        const auto store = YGAppConfigManager::initWithFileName(settingsName);
        EXPECT_TRUE(store->setConfigItem("login", "user", "", "wang"));
    }
    const std::string last = contentOf(settingsName);
    EXPECT_THAT(last, HasSubstr("wang"));
    EXPECT_GT(found.size(), 10u);
    for (const std::string& each : found)
        EXPECT_TRUE(each == settings || each == last) << each;
}

}  // namespace
}  // namespace yg
