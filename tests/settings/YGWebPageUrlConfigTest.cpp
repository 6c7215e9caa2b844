// SPDX-License-Identifier: MIT
#include <cerrno>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "settings/SettingsFixture.h"

namespace yg {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using yg::testing::ScopedFileLayer;

constexpr std::string_view name = "pages.xml";

class WebPages : public yg::testing::StorageTest {
protected:
    std::shared_ptr<YGWebPageUrlConfig> open(std::string_view xml) {
        put(name, xml);
        return YGWebPageUrlConfig::initWithFileName(name);
    }

    /// The line that a lookup logs for this key.
    static std::string message(int number, int line, std::string_view key) {
        return "-[YGWebPageUrlConfig getWebPageUrlByKey:] L" + std::to_string(line) + " 获取不到" +
               std::to_string(number) + " Key: [" + std::string(key) + "]";
    }

    /// Expects the fallback and one message.
    void expectBlank(const YGWebPageUrlConfig& table, std::optional<std::string_view> key,
                     const std::string& expected) {
        host->clear();
        EXPECT_EQ(table.getWebPageUrlByKey(key), "about:blank");
        EXPECT_THAT(host->businessLog(), ElementsAre(expected));
        EXPECT_THAT(host->runtimeLog(), IsEmpty());
    }
};

TEST_F(WebPages, WithoutAFileNameOrAPathYieldNoTable) {
    EXPECT_EQ(YGWebPageUrlConfig::initWithFileName(std::nullopt), nullptr);
    EXPECT_EQ(YGWebPageUrlConfig::initWithFileName(""), nullptr);
    EXPECT_THAT(host->questions(), IsEmpty());
    host->paths.insert_or_assign(std::string(name), "");
    EXPECT_EQ(YGWebPageUrlConfig::initWithFileName(name), nullptr);
    host->paths.insert_or_assign(std::string(name), std::nullopt);
    EXPECT_EQ(YGWebPageUrlConfig::initWithFileName(name), nullptr);
}

TEST_F(WebPages, AMissingFileGivesATableInWhichEveryKeyIsBlank) {
    const auto table = YGWebPageUrlConfig::initWithFileName(name);
    ASSERT_NE(table, nullptr);
    EXPECT_THAT(host->log(), IsEmpty());
    EXPECT_THAT(host->questions(), ElementsAre("getStorageFilePath(1, (null), pages.xml, 0)"));
    expectBlank(*table, "news", message(3, 68, "news"));
}

TEST_F(WebPages, FindTheAddressOfAKey) {
    const auto table = open(
        "<urls><!-- c --><url key='news'> http://n/?a=1&amp;b=2 </url><link key='l'>no</link>"
        "<url key='帮助' other='x'>h<b>i</b><![CDATA[&]]></url><url>none</url></urls>");
    EXPECT_EQ(table->fileName(), name);
    EXPECT_EQ(table->getWebPageUrlByKey("news"), " http://n/?a=1&b=2 ");
    EXPECT_EQ(table->getWebPageUrlByKey("帮助"), "hi&");
    EXPECT_EQ(table->getWebPageUrlByKey("l"), "about:blank");
}

TEST_F(WebPages, TheFirstAddressOfAKeyWins) {
    const auto table = open("<urls><url key='k'>first</url><url key='k'>second</url></urls>");
    EXPECT_EQ(table->getWebPageUrlByKey("k"), "first");
}

TEST_F(WebPages, AKeyWithAnApostropheIsBlank) {
    const auto table = open("<urls><url key=\"it's\">x</url></urls>");
    expectBlank(*table, "it's", message(3, 68, "it's"));
    expectBlank(*table, "'", message(3, 68, "'"));
}

// The key is put into the query as it is.
TEST_F(WebPages, AKeyThatCompletesTheQueryIsEvaluated) {
    const auto table = open("<urls><url key='a'>1</url><url key='b'>2</url></urls>");
    EXPECT_EQ(table->getWebPageUrlByKey("none' or @key='b"), "2");
}

TEST_F(WebPages, AKeyWithoutTextIsEmptyAndNotBlank) {
    const auto table = open("<urls><url key='a'></url><url key='b'/></urls>");
    EXPECT_EQ(table->getWebPageUrlByKey("a"), "");
    EXPECT_EQ(table->getWebPageUrlByKey("b"), "");
    EXPECT_THAT(host->log(), IsEmpty());
}

TEST_F(WebPages, SayWhereALookupFailed) {
    const auto table = open("<urls><url key=''>x</url></urls>");
    expectBlank(*table, std::nullopt, message(1, 54, "(null)"));
    expectBlank(*table, "", message(1, 54, ""));
    expectBlank(*table, "\xff", message(2, 59, "\xff"));
    expectBlank(*table, "none", message(3, 68, "none"));
    expectBlank(*table, std::string_view("a\0b", 3), message(3, 68, std::string("a\0b", 3)));
    expectBlank(*table, " ", message(3, 68, " "));
    expectBlank(*table, "\"]", message(3, 68, "\"]"));
}

TEST_F(WebPages, AnotherRootHasNoAddresses) {
    expectBlank(*open("<pages><urls><url key='a'>1</url></urls></pages>"), "a",
                message(3, 68, "a"));
}

// ---- Replacing -------------------------------------------------------------------------------

constexpr std::string_view old = "<urls><url key='a'>old</url></urls>";

TEST_F(WebPages, AReplacementIsInstalledAndSaved) {
    const auto table = open(old);
    host->clear();
    EXPECT_TRUE(table->replaceDataFromServer("<urls><url key='a'>new</url></urls>"));
    EXPECT_EQ(table->getWebPageUrlByKey("a"), "new");
    EXPECT_EQ(contentOf(name),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<urls>\n    <url key=\"a\">new</url>\n</urls>\n");
    EXPECT_THAT(host->questions(), ElementsAre("getStorageFilePath(1, (null), pages.xml, 1)"));
    EXPECT_THAT(host->log(), IsEmpty());
}

TEST_F(WebPages, ARawAmpersandInAReplacementStandsForItself) {
    const auto table = open(old);
    EXPECT_TRUE(table->replaceDataFromServer("<urls><url key='k'>h://x/?a=1&b=2</url></urls>"));
    EXPECT_EQ(table->getWebPageUrlByKey("k"), "h://x/?a=1&b=2");
    EXPECT_EQ(YGWebPageUrlConfig::initWithFileName(name)->getWebPageUrlByKey("k"),
              "h://x/?a=1&b=2");
}

TEST_F(WebPages, AnEscapedAmpersandInAReplacementIsEscapedAgain) {
    const auto table = open(old);
    EXPECT_TRUE(table->replaceDataFromServer("<urls><url key='k'>?a&amp;b&lt;&#38;</url></urls>"));
    EXPECT_EQ(table->getWebPageUrlByKey("k"), "?a&amp;b&lt;&#38;");
}

TEST_F(WebPages, AReplacementThatIsNoXmlChangesNothing) {
    const auto table = open(old);
    host->clear();
    for (const std::string_view text : {"", "no xml", "<urls>", "<urls/><urls/>", "{\"urls\":[]}",
                                        "<urls><url key='a'>a < b</url></urls>", "<urls \xff/>"})
        EXPECT_FALSE(table->replaceDataFromServer(text)) << text;
    EXPECT_FALSE(table->replaceDataFromServer(std::nullopt));
    EXPECT_EQ(table->getWebPageUrlByKey("a"), "old");
    EXPECT_EQ(contentOf(name), old);
    EXPECT_THAT(host->log(), IsEmpty());
    EXPECT_THAT(host->questions(), IsEmpty());
}

TEST_F(WebPages, AReplacementStaysWhenItCannotBeWritten) {
    const auto table = open(old);
    {
        ScopedFileLayer disk;
        disk->errorOf = [](std::string_view call) { return call == "write" ? ENOSPC : 0; };
        EXPECT_FALSE(table->replaceDataFromServer("<urls><url key='a'>new</url></urls>"));
    }
    EXPECT_EQ(table->getWebPageUrlByKey("a"), "new");
    EXPECT_EQ(contentOf(name), old);
    EXPECT_THAT(folder.names(), ElementsAre(name));
    host->paths.insert_or_assign(std::string(name), std::nullopt);
    EXPECT_FALSE(table->replaceDataFromServer("<urls><url key='a'>newer</url></urls>"));
    EXPECT_EQ(table->getWebPageUrlByKey("a"), "newer");
}

TEST_F(WebPages, LookupsGoOnWhileAReplacementIsWritten) {
    const auto table = open(old);
    std::vector<std::string> seen;
    ScopedFileLayer disk;
    disk->after = [&](std::string_view) { seen.push_back(table->getWebPageUrlByKey("a")); };
    EXPECT_TRUE(table->replaceDataFromServer("<urls><url key='a'>new</url></urls>"));
    EXPECT_THAT(seen, ::testing::AllOf(::testing::Not(IsEmpty()), ::testing::Each("new")));
}

// The one that began first is written last, and would otherwise stay in the file.
TEST_F(WebPages, TheFileEndsAsTheTableWhenReplacementsMeet) {
    const auto table = open(old);
    ScopedFileLayer disk;
    bool isFirst = true;
    disk->after = [&](std::string_view) {
        if (std::exchange(isFirst, false)) {
            EXPECT_TRUE(table->replaceDataFromServer("<urls><url key='a'>later</url></urls>"));
        }
    };
    EXPECT_TRUE(table->replaceDataFromServer("<urls><url key='a'>new</url></urls>"));
    EXPECT_EQ(table->getWebPageUrlByKey("a"), "later");
    EXPECT_EQ(YGWebPageUrlConfig::initWithFileName(name)->getWebPageUrlByKey("a"), "later");
}

TEST_F(WebPages, ReplaceSubstringIgnoresCaseOnceItAgrees) {
    const auto replaced = [](std::optional<std::string_view> text, std::string_view target,
                             std::string_view replacement) {
        return YGWebPageUrlConfig::replaceSubstring(text, target, replacement);
    };
    EXPECT_EQ(replaced(std::nullopt, "a", "b"), std::nullopt);
    EXPECT_EQ(replaced("", "a", "b"), "");
    EXPECT_EQ(replaced("aAa", "a", "b"), "bbb");
    EXPECT_EQ(replaced("AAA", "a", "b"), "AAA");
    EXPECT_EQ(replaced("é É", "é", "e"), "e e");
    EXPECT_EQ(replaced("a&b&amp;", "&", "&amp;"), "a&amp;b&amp;amp;");
    EXPECT_EQ(replaced("abc", "", "x"), "abc");
    // Compared at each place, the target would take 10 to the power of 13 steps.
    const std::string text(10'000'000, 'a');
    EXPECT_EQ(replaced(text, std::string(5'000'000, 'a') + 'b', "x"), text);
}

// A change in what was handed out was seen by some look-ups and not by others.
TEST_F(WebPages, HandOutACopyOfTheTable) {
    const auto table = open("<urls><url key='k'>1</url></urls>");
    const xml::Document copy = table->docment();
    EXPECT_TRUE(xml::Element(copy.query("urls/url").front()).setContent("changed"));
    EXPECT_EQ(table->getWebPageUrlByKey("k"), "1");
    EXPECT_EQ(table->getWebPageUrlByKey("' or @key='k"), "1");
    EXPECT_EQ(table->docment().serialise(xml::Form::plain), "<urls><url key=\"k\">1</url></urls>");
    EXPECT_EQ(YGWebPageUrlConfig::getFilePath("x", true), folder / "x");
}

TEST_F(WebPages, NameTheKeysThatCanBeFoundInTheOrderOfTheFile) {
    const auto table = open(
        "<urls><url key='b'>1</url><url key='a'/><url key='b'>2</url>"
        "<url key=\"it's\">3</url><url key=''>4</url><url>5</url></urls>");
    EXPECT_THAT(table->keys(), ElementsAre("b", "a"));
    EXPECT_TRUE(table->replaceDataFromServer("<urls><url key='c'>6</url></urls>"));
    EXPECT_THAT(table->keys(), ElementsAre("c"));
}

}  // namespace
}  // namespace yg
