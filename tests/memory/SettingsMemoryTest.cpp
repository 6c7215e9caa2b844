// SPDX-License-Identifier: MIT
//
// Settings, web pages and request URLs when memory runs out: the fallback, no lock left behind, and
// a stored file that is the old one or the new one.
#include <cstddef>
#include <filesystem>

#include "YGConfigManager/net/HttpGet.h"
#include "YGConfigManager/settings/Transport.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "files/TemporaryFolder.h"
#include "memory/MemoryTest.h"

#if YG_OWN_ALLOCATION

namespace yg {
namespace {

const std::string& text = testing::longText;

class SettingsMemory : public testing::MemoryTest {
protected:
    SettingsMemory() {
        put("app.xml", "<config><a><b description='d'>" + text + "</b></a></config>");
        put("pages.xml", "<urls><url key='k'>" + text + "</url></urls>");
        put("request_urls_json.txt", urls("old"));
    }

    static std::string urls(std::string_view name) {
        return R"({"md5Value":")" + std::string(name) + text +
               R"(","urlConfigList":[{"urlKey":"k","urlValue":")" + text + R"("}]})";
    }
    std::string contentOf(std::string_view name) const { return files::contentOf(root.at(name)); }
};

template <class Answer>
std::string whole(const Answer& answer) {
    return testing::wholeText(answer);
}

TEST_F(SettingsMemory, AStoreIsReadOrThereIsNone) {
    const auto textOf = [](const auto& store) {
        return store ? store->docment().serialise(xml::Form::plain) +
                           whole(store->getItemText("a", "b"))
                     : "null";
    };
    const Operation operation{[] { return YGAppConfigManager::initWithFileName("app.xml"); },
                              textOf, "null"};
    everyAllocationOfTheFirstCallFails(operation);
    everyAllocationFails(operation);
    everyAllocationFails(Operation{
        [] { return YGReadonlyAppConfigManager::initWithFileName("app.xml"); }, textOf, "null"});
}

TEST_F(SettingsMemory, AnItemReadsAsNone) {
    const auto store = YGAppConfigManager::initWithFileName("app.xml");
    for (const std::string_view item : {"b", "b[1]"})
        everyAllocationFails(Operation{[&] { return store->getItemText("a", item); },
                                       whole<std::optional<std::string>>, "-"});
}

TEST_F(SettingsMemory, AnItemIsStoredOrNothingChanges) {
    const std::string fileBefore = contentOf("app.xml");
    std::shared_ptr<YGAppConfigManager> store;
    const auto prepare = [&] {
        put("app.xml", fileBefore);
        store = YGAppConfigManager::initWithFileName("app.xml", &testing::silentSink);
    };
    prepare();
    const std::string stored = text + "new";
    const std::string before = "0" + store->docment().serialise(xml::Form::plain);
    for (const auto& [sectionName, itemName] :
         {std::pair("a", "b"), {"a", "c"}, {"new", "c"}, {"*", "b"}}) {
        const auto set = [&, section = sectionName, item = itemName] {
            return store->setConfigItem(section, item, text, stored);
        };
        const auto textOf = [&, section = sectionName, item = itemName](bool isChanged) {
            const std::string document = store->docment().serialise(xml::Form::plain);
            const std::string file = contentOf("app.xml");
            EXPECT_TRUE(file == fileBefore || file == store->docment().serialise(xml::Form::pretty))
                << file;
            EXPECT_EQ(store->getItemText(section, item) == stored, isChanged);
            prepare();
            return (isChanged ? "1" : "0") + document;
        };
        everyAllocationFails(Operation{set, textOf, before, prepare});
    }
}

// Whatever fails, the file keeps what another store has written, and what this one has acknowledged
// is in it at the latest with its next save.
TEST_F(SettingsMemory, AStoreThatMergesLosesNothing) {
    const std::string fileBefore = contentOf("app.xml");
    std::shared_ptr<YGAppConfigManager> store;
    const auto open = [&] {
        return YGAppConfigManager::initWithFileName("app.xml", &testing::silentSink,
                                                    OtherWriters::merged);
    };
    const auto prepare = [&] {
        put("app.xml", fileBefore);
        store = open();
        EXPECT_TRUE(open()->setConfigItem("a", "other", "", text));
    };
    const std::string stored = text + "new";
    for (const auto& [sectionName, itemName] :
         {std::pair("a", "b"), {"a", "c"}, {"new", "c"}, {"*", "b"}}) {
        const auto set = [&, section = sectionName, item = itemName] {
            return store->setConfigItem(section, item, text, stored);
        };
        const auto textOf = [&, section = sectionName, item = itemName](bool isChanged) {
            EXPECT_EQ(open()->getItemText("a", "other"), text);
            EXPECT_EQ(store->getItemText(section, item) == stored, isChanged);
            EXPECT_TRUE(store->setConfigItem("a", "after", "", text));
            const auto next = open();
            EXPECT_EQ(next->getItemText("a", "other"), text);
            EXPECT_EQ(next->getItemText("a", "after"), text);
            EXPECT_EQ(next->getItemText(section, item) == stored, isChanged);
            prepare();
            return isChanged ? "stored" : "not stored";
        };
        everyAllocationFails(Operation{set, textOf, "not stored", prepare});
    }
}

// A change that cannot be saved is kept for the next save, once, however often it is made.
TEST_F(SettingsMemory, ChangesThatCannotBeSavedTakeTheMemoryOfOne) {
    const auto store =
        YGAppConfigManager::initWithFileName("app.xml", nullptr, OtherWriters::merged);
    ASSERT_TRUE(std::filesystem::remove(root.at("app.xml")));
    std::filesystem::create_directory(root.at("app.xml"));
    const auto change = [&](const std::string& item) {
        EXPECT_TRUE(store->setConfigItem("a", item, "", text));
    };
    change("b");
    change("c");
    const std::ptrdiff_t before = testing::liveAllocations();
    for (int i = 0; i < 20; ++i) {
        change("b");
        change("c");
    }
    EXPECT_EQ(testing::liveAllocations(), before);
}

TEST_F(SettingsMemory, ADocumentIsHandedOutAndSavedOrNot) {
    const auto store = YGAppConfigManager::initWithFileName("app.xml");
    everyAllocationFails(Operation{
        [&] { return store->docment(); },
        [](const xml::Document& document) { return document.serialise(xml::Form::plain); }, ""});
    const xml::Document document = store->docment();
    const auto prepare = [&] { put("copy.xml", "old"); };
    const auto file = [&] {
        std::string content = contentOf("copy.xml");
        prepare();
        return content;
    };
    everyAllocationFails(Operation{[&] { store->saveAppConfigFile(&document, "copy.xml"); }, file,
                                   "old", prepare, testing::Allocators::operatorNew, false});
}

TEST_F(SettingsMemory, ATableOfWebPagesIsReadOrThereIsNone) {
    const Operation operation{
        [] { return YGWebPageUrlConfig::initWithFileName("pages.xml"); },
        [](const auto& table) { return table ? table->getWebPageUrlByKey("k") : "null"; }, "null"};
    everyAllocationOfTheFirstCallFails(operation);
    everyAllocationFails(operation);
}

TEST_F(SettingsMemory, ATableIsHandedOutOrNot) {
    const auto table = YGWebPageUrlConfig::initWithFileName("pages.xml");
    everyAllocationFails(Operation{
        [&] { return table->docment(); },
        [](const xml::Document& document) { return document.serialise(xml::Form::plain); }, ""});
}

TEST_F(SettingsMemory, AWebPageIsBlankWithAMessageOfItsOwn) {
    struct Log final : Host {
        std::optional<std::string> getStorageFilePath(std::int64_t, std::optional<std::string_view>,
                                                      std::optional<std::string_view>,
                                                      bool) override {
            return path;
        }
        std::optional<std::string> getUserRightDescription() override { return {}; }
        std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t,
                                                                 std::string_view) override {
            return {};
        }
        std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t,
                                                                 std::string_view) override {
            return {};
        }
        std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view) override {
            return {};
        }
        std::optional<std::string> getDefualtFolderPath(std::int64_t) override { return {}; }
        void writeLog(LogChannel, std::string_view message) override {
            const testing::PausedFailures paused;
            last = message;
        }
        std::string path;
        std::string last;
    };
    const testing::ScopedHost<Log> log;
    log->path = root.at("pages.xml");
    const auto table = YGWebPageUrlConfig::initWithFileName("pages.xml");
    for (const std::string_view key : {"k", "x' or @key='k"}) {
        const auto textOf = [&](const std::string& answer) {
            if (answer == "about:blank") {
                EXPECT_EQ(log->last,
                          "-[YGWebPageUrlConfig getWebPageUrlByKey:] L77 获取不到4 Key: [" +
                              std::string(key) + "]");
            }
            return answer;
        };
        for (std::size_t number = 1;; ++number) {
            bool hasFailed = false;
            const std::string answer = [&] {
                const testing::FailingAllocations failing(number, testing::Failures::one,
                                                          testing::Allocators::operatorNew);
                std::string page = table->getWebPageUrlByKey(key);
                hasFailed = failing.hasFailed();
                return page;
            }();
            EXPECT_TRUE(textOf(answer) == "about:blank" || answer == text);
            if (!hasFailed) {
                EXPECT_EQ(answer, text);
                break;
            }
        }
    }
}

TEST_F(SettingsMemory, ATableIsReplacedAndWrittenOrNot) {
    const std::string fileBefore = contentOf("pages.xml");
    const std::string delivered = "<urls><url key='k'>new&" + text + "</url></urls>";
    std::shared_ptr<YGWebPageUrlConfig> table;
    const auto prepare = [&] {
        put("pages.xml", fileBefore);
        table = YGWebPageUrlConfig::initWithFileName("pages.xml", &testing::silentSink);
    };
    const auto textOf = [&](bool isReplaced) {
        const std::string file = contentOf("pages.xml");
        const std::string page = table->getWebPageUrlByKey("k");
        const std::string newFile = table->docment().serialise(xml::Form::pretty);
        EXPECT_TRUE(isReplaced ? file == newFile : file == fileBefore) << file;
        EXPECT_TRUE(page == text || page == "new&" + text);
        prepare();
        return isReplaced ? "replaced by " + page : "not replaced";
    };
    everyAllocationFails(Operation{[&] { return table->replaceDataFromServer(delivered); }, textOf,
                                   "not replaced", prepare, testing::Allocators::operatorNew,
                                   false});
}

TEST_F(SettingsMemory, AReplacedTextIsWholeOrAbsent) {
    const std::string source = text + "&";
    for (const std::string_view target : {"x", "&"})
        everyAllocationFails(
            Operation{[&] { return YGWebPageUrlConfig::replaceSubstring(source, target, "ab"); },
                      whole<std::optional<std::string>>, "-"});
}

/// Takes requests in the place of the network; without failures of its own.
class HeldRequests : public RequestUrlsOver {
public:
    HeldRequests()
        : RequestUrlsOver{[this](const std::string& url, net::GetCompletion completion) {
              const testing::PausedFailures paused;
              requests_.emplace_back(url, std::move(completion));
          }} {}
    HeldRequests(const HeldRequests&) = delete;
    HeldRequests& operator=(const HeldRequests&) = delete;

    std::size_t count() const { return requests_.size(); }
    std::string url() const { return requests_.empty() ? "" : requests_.front().first; }
    net::GetCompletion take() {
        net::GetCompletion completion = std::move(requests_.front().second);
        requests_.clear();
        requests_.shrink_to_fit();
        return completion;
    }

private:
    std::vector<std::pair<std::string, net::GetCompletion>> requests_;
};

TEST_F(SettingsMemory, AListOfAddressesIsReadOrStaysAsItIs) {
    put("request_urls_json.txt", urls("new"));
    const Operation first{
        [] { return YGHttpReqUrlMgr::init(); },
        [](const auto& manager) { return manager ? whole(manager->urlModel()) : "null"; }, "null"};
    everyAllocationFails(first);
    everyAllocationOfTheFirstCallFails(first);

    std::shared_ptr<YGHttpReqUrlMgr> manager;
    const auto prepare = [&] {
        put("request_urls_json.txt", urls("old"));
        manager = YGHttpReqUrlMgr::init();
        put("request_urls_json.txt", urls("new"));
    };
    prepare();
    const std::string before = whole(manager->urlModel());
    const auto textOf = [&] {
        const std::string list = whole(manager->urlModel());
        prepare();
        return list;
    };
    everyAllocationFails(
        Operation{[&] { manager->readUrlModelFromFile(); }, textOf, before, prepare});
}

TEST_F(SettingsMemory, AnAddressIsFoundOrAbsent) {
    const auto manager = YGHttpReqUrlMgr::init();
    everyAllocationFails(Operation{[&] { return manager->httpReqUrlStringWithUrlKey("k"); },
                                   whole<std::optional<std::string>>, "-"});
    everyAllocationFails(Operation{[&] { return manager->urlModel()->description(); },
                                   whole<std::string>, "", [] {}, testing::Allocators::operatorNew,
                                   false});
    const std::string json = urls("old");
    everyAllocationFails(Operation{[&] { return YGHttpReqUrlModel::modelWithJSON(json); },
                                   whole<std::shared_ptr<YGHttpReqUrlModel>>, "null"});
}

TEST_F(SettingsMemory, ARequestIsStartedOrItsEndIsToldAtOnce) {
    HeldRequests requests;
    host->server = "server" + text;
    const auto manager = requests.make();
    int endings = 0;
    const auto count = [&](const auto&...) { ++endings; };
    const auto textOf = [&] {
        std::string outcome;
        if (endings == 1 && requests.count() == 0)
            outcome = "ended";
        else if (endings == 0 && requests.count() == 1)
            outcome = requests.url();
        if (requests.count() > 0)
            requests.take();
        endings = 0;
        return outcome;
    };
    const std::string url = "http://a/" + text;
    everyAllocationFails(Operation{[&] { manager->requestUrl(url, count); }, textOf, "ended"});
    everyAllocationFails(Operation{[&] { manager->updateHttpReqUrls(count); }, textOf, "ended"});
}

TEST_F(SettingsMemory, ADownloadIsTakenAndStoredOrChangesNothing) {
    HeldRequests requests;
    std::shared_ptr<YGHttpReqUrlMgr> manager;
    int endings = 0;
    net::GetCompletion completion;
    const std::optional<std::string> body = urls("new");
    const auto prepare = [&] {
        put("request_urls_json.txt", urls("old"));
        host->server = std::nullopt;
        manager = requests.init(&testing::silentSink);
        host->server = "server";
        endings = 0;
        manager->updateHttpReqUrls([&] { ++endings; });
        completion = requests.take();
    };
    prepare();
    const std::string before = whole(manager->urlModel());
    const auto textOf = [&] {
        EXPECT_EQ(endings, 1);
        const std::string list = whole(manager->urlModel());
        const std::string file = contentOf("request_urls_json.txt");
        EXPECT_TRUE(file == urls("old") || (file == urls("new") && list != before)) << file;
        prepare();
        return list;
    };
    everyAllocationFails(Operation{[&] {
                                       std::optional<std::string> arrived;
                                       {
                                           const testing::PausedFailures paused;
                                           arrived = body;
                                       }
                                       completion(std::move(arrived), std::nullopt, std::nullopt);
                                   },
                                   textOf, before, prepare});
}

}  // namespace
}  // namespace yg

#endif
