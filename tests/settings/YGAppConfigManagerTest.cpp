// SPDX-License-Identifier: MIT
#include <cerrno>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <unistd.h>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"

#include "settings/SettingsFixture.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using yg::testing::ScopedFileLayer;

constexpr std::string_view name = "app.xml";
constexpr std::string_view declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

/// A settings file as the store writes it.
constexpr std::string_view stored = R"(<?xml version="1.0" encoding="UTF-8"?>
<!-- settings -->
<config>
    <login>
        <!-- who was here last -->
        <user description="last user">li</user>
        <remember>true</remember>
    </login>
    <view>
        <theme description="">black</theme>
    </view>
</config>
)";

class AppConfig : public yg::testing::StorageTest {
protected:
    std::shared_ptr<YGAppConfigManager> open(std::string_view xml) {
        put(name, xml);
        return YGAppConfigManager::initWithFileName(name);
    }

    std::string content() const { return contentOf(name); }

    /// The stored file with one text replaced.
    static std::string with(std::string_view before, std::string_view after) {
        std::string text(stored);
        return text.replace(text.find(before), before.size(), after);
    }
};

// ---- Construction ----------------------------------------------------------------------------

TEST_F(AppConfig, WithoutAFileNameYieldsNoStore) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    EXPECT_EQ(YGAppConfigManager::init(), nullptr);
    EXPECT_EQ(YGReadonlyAppConfigManager::init(), nullptr);
#pragma GCC diagnostic pop
    EXPECT_EQ(YGAppConfigManager::initWithFileName(std::nullopt), nullptr);
    EXPECT_EQ(YGAppConfigManager::initWithFileName(""), nullptr);
    EXPECT_EQ(YGReadonlyAppConfigManager::initWithFileName(""), nullptr);
    EXPECT_THAT(host->questions(), IsEmpty());
}

TEST_F(AppConfig, WithoutAPathYieldsNoStore) {
    for (const auto& none : {std::optional<std::string>(), std::optional<std::string>("")}) {
        host->paths.insert_or_assign(std::string(name), none);
        EXPECT_EQ(YGAppConfigManager::initWithFileName(name), nullptr);
        EXPECT_EQ(YGReadonlyAppConfigManager::initWithFileName(name), nullptr);
    }
}

TEST_F(AppConfig, AsksTheHostForThePathToReadAndThePathToWrite) {
    const auto store = open(stored);
    EXPECT_EQ(store->fileName(), name);
    EXPECT_THAT(host->questions(), ElementsAre("getStorageFilePath(1, (null), app.xml, 0)"));
    host->clear();
    store->setConfigItem("login", "user", std::nullopt, "wang");
    EXPECT_THAT(host->questions(), ElementsAre("getStorageFilePath(1, (null), app.xml, 1)"));
    EXPECT_EQ(YGAppConfigManager::getFilePath("x", false), folder / "x");
    EXPECT_THAT(host->log(), IsEmpty());
}

// ---- Reading ---------------------------------------------------------------------------------

TEST_F(AppConfig, ReadsTheWholeTextOfTheFirstItem) {
    const auto store = open(
        "<config><a><x> 1 <!-- c -->2<b>3</b><![CDATA[<4>]]></x><x>5</x><blank> </blank></a>text"
        "<a><x>6</x><y>7</y><y>8</y></a><c><e></e></c></config>");
    EXPECT_EQ(store->getItemText("a", "x"), " 1 23<4>");
    EXPECT_EQ(store->getItemText("a", "y"), "7");
    EXPECT_EQ(store->getItemText("a", "blank"), " ");
    EXPECT_EQ(store->getItemText("c", "e"), "");
}

TEST_F(AppConfig, AnItemThatIsNotThereReadsAsNone) {
    const auto store = open(stored);
    EXPECT_EQ(store->getItemText("login", "theme"), std::nullopt);
    EXPECT_EQ(store->getItemText("none", "user"), std::nullopt);
    EXPECT_EQ(store->getItemText("config", "login"), std::nullopt);
    EXPECT_EQ(store->getItemText("Login", "user"), std::nullopt);
}

TEST_F(AppConfig, AnAbsentOrEmptyNameReadsAsNone) {
    const auto store = open(stored);
    for (const std::optional<std::string_view>& none :
         {std::optional<std::string_view>(), std::optional<std::string_view>("")}) {
        EXPECT_EQ(store->getItemText(none, "user"), std::nullopt);
        EXPECT_EQ(store->getItemText("login", none), std::nullopt);
    }
}

TEST_F(AppConfig, ReadsNothingUnderAnotherRoot) {
    EXPECT_EQ(open("<settings><a><b>1</b></a></settings>")->getItemText("a", "b"), std::nullopt);
}

// What a query makes of a name is what counts, also where the name is none.
TEST_F(AppConfig, PutsNamesIntoTheQueryAsTheyStand) {
    const auto store = open(
        "<config><a><x>1</x><x>2</x><y>3</y></a><p:a><p:x>4</p:x></p:a><行情><字体>5</字体></行情>"
        "<a.b-c_1><x2>6</x2></a.b-c_1></config>");
    const auto read = [&](std::string_view section, std::string_view item) {
        return store->getItemText(section, item).value_or("none");
    };
    EXPECT_EQ(read("p:a", "p:x"), "4");
    EXPECT_EQ(read("行情", "字体"), "5");
    EXPECT_EQ(read("a.b-c_1", "x2"), "6");
    EXPECT_EQ(read("a", "x[2]"), "2");
    EXPECT_EQ(read("*", "y"), "3");
    EXPECT_EQ(read("a/x", ".."), "123");
    EXPECT_EQ(read(" a ", " x "), "1");
    EXPECT_EQ(read("a | config", "x"), "123");
    for (const std::string_view odd :
         {"a'b", "\"", "a b", "x[", "x]", "1a", "-", "@", "$v", "x(", "\xff", "a\xff", "</x>"}) {
        EXPECT_EQ(read("a", odd), "none") << odd;
        EXPECT_EQ(read(odd, "x"), "none") << odd;
    }
    EXPECT_EQ(read("a", std::string_view("x\0", 2)), "none");
    EXPECT_EQ(read(std::string_view("\0a", 2), "x"), "none");
}

TEST_F(AppConfig, NeverReadsTheFileAgain) {
    const auto store = open(stored);
    put(name, "<config><login><user>other</user></login></config>");
    EXPECT_EQ(store->getItemText("login", "user"), "li");
}

// ---- Writing ---------------------------------------------------------------------------------

TEST_F(AppConfig, ANewItemIsTheLastOfItsSection) {
    const auto store = open(stored);
    EXPECT_TRUE(store->setConfigItem("login", "count", "how often", "7"));
    EXPECT_EQ(store->getItemText("login", "count"), "7");
    EXPECT_EQ(content(), with("        <remember>true</remember>\n",
                              "        <remember>true</remember>\n"
                              "        <count description=\"how often\">7</count>\n"));
}

TEST_F(AppConfig, ANewSectionIsTheLastOfTheRoot) {
    const auto store = open(with("</config>\n", "</config>\n<!-- end -->\n"));
    EXPECT_TRUE(store->setConfigItem("sound", "on", std::nullopt, "false"));
    EXPECT_EQ(store->getItemText("sound", "on"), "false");
    EXPECT_EQ(content(), with("</config>\n",
                              "    <sound>\n        <on>false</on>\n    </sound>\n"
                              "</config>\n<!-- end -->\n"));
}

TEST_F(AppConfig, OverwritingKeepsTheDescription) {
    const auto store = open(stored);
    EXPECT_TRUE(store->setConfigItem("login", "user", "another description", "wang"));
    EXPECT_EQ(store->getItemText("login", "user"), "wang");
    EXPECT_EQ(content(), with(">li<", ">wang<"));
    EXPECT_TRUE(store->setConfigItem("login", "remember", "new", "false"));
    EXPECT_THAT(content(), HasSubstr("<remember>false</remember>"));
}

TEST_F(AppConfig, AnEmptyTextIsStoredAndReadBack) {
    const auto store = open(stored);
    EXPECT_TRUE(store->setConfigItem("login", "user", std::nullopt, ""));
    EXPECT_TRUE(store->setConfigItem("login", "new", std::nullopt, ""));
    EXPECT_EQ(store->getItemText("login", "user"), "");
    EXPECT_EQ(store->getItemText("login", "new"), "");
    EXPECT_THAT(content(), HasSubstr("<user description=\"last user\"></user>"));
    EXPECT_EQ(YGAppConfigManager::initWithFileName(name)->getItemText("login", "new"), "");
}

TEST_F(AppConfig, WithoutARootElementAWriteIsLostAndStillTrue) {
    const auto store = YGAppConfigManager::initWithFileName(name);
    ASSERT_NE(store, nullptr);
    EXPECT_EQ(store->getItemText("a", "b"), std::nullopt);
    EXPECT_TRUE(store->setConfigItem("a", "b", "d", "1"));
    EXPECT_EQ(store->getItemText("a", "b"), std::nullopt);
    EXPECT_FALSE(store->docment().root());
    EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(AppConfig, TheReadonlyStoreReadsAndNeverWrites) {
    static_assert(std::is_base_of_v<YGAppConfigManager, YGReadonlyAppConfigManager>);
    put(name, stored);
    const std::shared_ptr<YGAppConfigManager> store =
        YGReadonlyAppConfigManager::initWithFileName(name);
    EXPECT_EQ(store->getItemText("login", "user"), "li");
    EXPECT_FALSE(store->setConfigItem("login", "user", std::nullopt, "wang"));
    EXPECT_FALSE(store->setConfigItem("new", "item", std::nullopt, "1"));
    EXPECT_EQ(store->getItemText("login", "user"), "li");
    EXPECT_EQ(store->docment().serialise(xml::Form::pretty), stored);
    EXPECT_EQ(content(), stored);
}

TEST_F(AppConfig, AnAbsentOrEmptyNameOrAbsentTextIsNotStored) {
    const auto store = open(stored);
    host->clear();
    EXPECT_FALSE(store->setConfigItem(std::nullopt, "b", "d", "1"));
    EXPECT_FALSE(store->setConfigItem("", "b", "d", "1"));
    EXPECT_FALSE(store->setConfigItem("a", std::nullopt, "d", "1"));
    EXPECT_FALSE(store->setConfigItem("a", "", "d", "1"));
    EXPECT_FALSE(store->setConfigItem("a", "b", "d", std::nullopt));
    EXPECT_THAT(host->questions(), IsEmpty());
    EXPECT_EQ(content(), stored);
}

TEST_F(AppConfig, ANameThatIsNoElementNameIsRefusedAndTheFileStays) {
    const auto store = open(stored);
    for (const std::string_view odd :
         {"a b", "1a", "a'b", "<a>", "-", "a/b", "\xff", "x\xff", "login/none"}) {
        EXPECT_FALSE(store->setConfigItem("login", odd, "d", "1")) << odd;
        EXPECT_FALSE(store->setConfigItem("new", odd, "d", "1")) << odd;
        EXPECT_FALSE(store->setConfigItem(odd, "item", "d", "1")) << odd;
    }
    EXPECT_FALSE(store->setConfigItem("login", "user/text()", "d", "1"));
    EXPECT_FALSE(store->setConfigItem("login/user/text()", "new", "d", "1"));
    EXPECT_EQ(store->docment().serialise(xml::Form::pretty), stored);
    EXPECT_EQ(content(), stored);
}

TEST_F(AppConfig, NamesThatAreQueriesChangeWhatTheyFind) {
    const auto store = open("<config><a><x>1</x><x>2</x></a><b><x>3</x></b></config>");
    EXPECT_TRUE(store->setConfigItem("a", "x[2]", std::nullopt, "4"));
    EXPECT_TRUE(store->setConfigItem("*", "x", std::nullopt, "5"));
    EXPECT_EQ(store->getItemText("a", "x"), "5");
    EXPECT_EQ(store->getItemText("a", "x[2]"), "4");
    EXPECT_TRUE(store->setConfigItem("a", ".", std::nullopt, "all"));
    EXPECT_EQ(store->getItemText("a", "x"), std::nullopt);
    EXPECT_EQ(store->getItemText("b", ".."), "all3");
}

TEST_F(AppConfig, ANewItemGoesIntoTheFirstSectionOfTheName) {
    const auto store = open("<config><a/><a><x>1</x></a></config>");
    EXPECT_TRUE(store->setConfigItem("a", "y", "", "2"));
    EXPECT_TRUE(store->setConfigItem("a", "x", "", "3"));
    EXPECT_EQ(content(), std::string(declaration) +
                             "<config>\n    <a>\n        <y>2</y>\n    </a>\n"
                             "    <a>\n        <x>3</x>\n    </a>\n</config>\n");
}

TEST_F(AppConfig, UnderAnotherRootAWriteIsSavedWhereItCannotBeReadAgain) {
    const auto store = open("<settings/>");
    EXPECT_TRUE(store->setConfigItem("a", "b", "", "1"));
    EXPECT_EQ(store->getItemText("a", "b"), std::nullopt);
    EXPECT_THAT(content(), HasSubstr("<settings>\n    <a>\n        <b>1</b>\n    </a>\n"));
}

TEST_F(AppConfig, EveryTextReadsBackAfterARestart) {
    const auto store = open(stored);
    const std::string_view texts[] = {
        " ", "a\r\nb\tc", "&amp; <b> ]]> \"'", "中文", "\r", "<!-- -->", "\n\n", "😀", "a\u00A0"};
    for (const std::string_view text : texts) {
        EXPECT_TRUE(store->setConfigItem("login", "user", std::nullopt, text));
        EXPECT_EQ(store->getItemText("login", "user"), text);
        EXPECT_EQ(YGAppConfigManager::initWithFileName(name)->getItemText("login", "user"), text);
    }
}

// Written out they would make the whole file unreadable.
TEST_F(AppConfig, CharactersThatXmlCannotHoldAreLeftOut) {
    const auto store = open(stored);
    EXPECT_TRUE(store->setConfigItem("login", "user", std::nullopt,
                                     "a\x01\xff\uFFFF\x1f"
                                     "b"));
    EXPECT_TRUE(store->setConfigItem("login", "new", "d\x02", std::string_view("\0c", 2)));
    const auto next = YGAppConfigManager::initWithFileName(name);
    for (const auto& each : {store, next}) {
        EXPECT_EQ(each->getItemText("login", "user"), "ab");
        EXPECT_EQ(each->getItemText("login", "new"), "c");
    }
    EXPECT_THAT(content(), HasSubstr("<new description=\"d\">"));
}

TEST_F(AppConfig, CommentsUnknownElementsAndAttributesSurviveEveryWrite) {
    const std::string text = std::string(declaration) +
                             "<!DOCTYPE config>\n<!-- top -->\n<?app x?>\n<config version=\"2\">\n"
                             "    <!-- a -->\n    <a extra=\"1\">\n"
                             "        <x description=\"d\" unit=\"s\">1</x>\n"
                             "        <tree>\n            <leaf>deep</leaf>\n        </tree>\n"
                             "        <c><![CDATA[<raw>]]></c>\n    </a>\n</config>\n"
                             "<!-- bottom -->\n";
    const auto store = open(text);
    for (const std::string_view value : {"2", "", " ", "1"})
        EXPECT_TRUE(store->setConfigItem("a", "x", "other", value));
    EXPECT_EQ(content(), text);
}

TEST_F(AppConfig, ChangingOneItemManyTimesTakesNoMoreMemory) {
    const auto store = open(stored);
    const auto changes = [&] {
        for (int i = 0; i < 50; ++i) {
            store->setConfigItem("login", "user", "", i % 2 == 0 ? "" : "x");
            store->setConfigItem("login/user", ".", "", i % 2 == 0 ? "" : "x");
        }
    };
    ScopedFileLayer disk;
    disk->errorOf = [](std::string_view) { return EIO; };
    changes();
    EXPECT_EQ(store->getItemText("login", "user"), "x");
    EXPECT_EQ(store->docment().serialise(xml::Form::pretty), with(">li<", ">x<"));
}

TEST_F(AppConfig, IsReadWhileAnItemIsSaved) {
    const auto store = open(stored);
    int reads = 0;
    {
        ScopedFileLayer disk;
        disk->after = [&](std::string_view call) {
            if (call != "sync")
                return;
            std::thread([&] {
                EXPECT_EQ(store->getItemText("login", "user"), "li");
                EXPECT_EQ(store->docment().serialise(xml::Form::pretty), stored);
                ++reads;
            }).join();
        };
        EXPECT_TRUE(store->setConfigItem("login", "user", "", "wang"));
    }
    EXPECT_GT(reads, 0);
    EXPECT_EQ(store->getItemText("login", "user"), "wang");
}

TEST_F(AppConfig, KeepsModeAndLinkOfTheFile) {
    const auto store = open(stored);
    ASSERT_EQ(::rename((folder / name).c_str(), (folder / "real").c_str()), 0);
    ASSERT_EQ(::chmod((folder / "real").c_str(), 0600), 0);
    ASSERT_EQ(::symlink("real", (folder / name).c_str()), 0);
    EXPECT_TRUE(store->setConfigItem("login", "user", "", "wang"));
    EXPECT_EQ(contentOf("real"), with(">li<", ">wang<"));
    EXPECT_EQ(files::modeOf(folder / "real"), 0600u);
    EXPECT_THAT(folder.names(), ElementsAre(name, "real"));
    EXPECT_TRUE(S_ISLNK([&] {
        struct stat state {};
        ::lstat((folder / name).c_str(), &state);
        return state.st_mode;
    }()));
}

TEST_F(AppConfig, ReadsTheShippedFileAndWritesTheUsersOwn) {
    put("shipped.xml", stored);
    host->paths["app.xml"] = folder / "shipped.xml";
    const auto store = YGAppConfigManager::initWithFileName(name);
    host->paths["app.xml"] = folder / "own.xml";
    EXPECT_TRUE(store->setConfigItem("login", "user", "", "wang"));
    EXPECT_EQ(contentOf("shipped.xml"), stored);
    EXPECT_EQ(contentOf("own.xml"), with(">li<", ">wang<"));
}

// ---- Saving ----------------------------------------------------------------------------------

TEST_F(AppConfig, SavesAnyDocumentUnderAnyName) {
    const auto store = open(stored);
    const auto other = xml::Document::parseText("<x><y/></x>").document;
    store->saveAppConfigFile(&other, "other.xml");
    EXPECT_EQ(contentOf("other.xml"), std::string(declaration) + "<x>\n    <y></y>\n</x>\n");
    EXPECT_EQ(content(), stored);
}

TEST_F(AppConfig, SavesNothingWithoutDocumentPathOrRoot) {
    const auto store = open(stored);
    const xml::Document empty;
    const xml::Document document = store->docment();
    host->clear();
    store->saveAppConfigFile(nullptr, name);
    EXPECT_THAT(host->questions(), IsEmpty());
    store->saveAppConfigFile(&empty, "empty.xml");
    store->saveAppConfigFile(&document, "");
    store->saveAppConfigFile(&document, std::nullopt);
    host->paths["none.xml"] = "";
    store->saveAppConfigFile(&document, "none.xml");
    EXPECT_THAT(folder.names(), ElementsAre(name));
    EXPECT_EQ(content(), stored);
}

TEST_F(AppConfig, HandsOutACopyOfTheDocument) {
    const auto store = open(stored);
    const xml::Document copy = store->docment();
    EXPECT_TRUE(xml::Element(copy.query("config/login/user").front()).setContent("changed"));
    EXPECT_EQ(store->getItemText("login", "user"), "li");
    store->setConfigItem("login", "remember", "", "false");
    EXPECT_EQ(content(), with(">true<", ">false<"));
}

// ---- Enumeration -----------------------------------------------------------------------------

TEST_F(AppConfig, NamesItsSectionsAndItemsInTheOrderOfTheFileEachOnce) {
    put("s.xml", "<config><b><z>1</z><a/><z>2</z></b><a/><b><c>3</c></b></config>");
    const auto store = YGAppConfigManager::initWithFileName("s.xml");
    EXPECT_THAT(store->sectionNames(), ElementsAre("b", "a"));
    EXPECT_THAT(store->itemNames("b"), ElementsAre("z", "a", "c"));
    EXPECT_THAT(store->itemNames("a"), IsEmpty());
    EXPECT_THAT(store->itemNames("other"), IsEmpty());
    EXPECT_THAT(store->itemNames(std::nullopt), IsEmpty());
    EXPECT_TRUE(store->setConfigItem("new", "item", std::nullopt, "text"));
    EXPECT_THAT(store->sectionNames(), ElementsAre("b", "a", "new"));
    EXPECT_THAT(store->itemNames("new"), ElementsAre("item"));
}

TEST_F(AppConfig, WithoutAFileNamesNothing) {
    const auto store = YGAppConfigManager::initWithFileName("none.xml");
    EXPECT_THAT(store->sectionNames(), IsEmpty());
    EXPECT_THAT(store->itemNames("a"), IsEmpty());
}

}  // namespace
}  // namespace yg
