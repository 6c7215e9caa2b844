// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/host/JsonModel.h"

namespace {

using yg::JsonList;
using yg::modelArrayWithClass;
using yg::ModelField;
using yg::ModelList;
using yg::modelToJSONString;
using yg::modelWithJSON;

/// One entry of a list.
class EntryModel {
public:
    static constexpr auto modelFields() {
        return std::tuple{ModelField{"urlKey", &EntryModel::urlKey_},
                          ModelField{"urlValue", &EntryModel::urlValue_}};
    }

    const std::optional<std::string>& urlKey() const { return urlKey_; }
    const std::optional<std::string>& urlValue() const { return urlValue_; }

private:
    std::optional<std::string> urlKey_;
    std::optional<std::string> urlValue_;
};

/// A list with a digest.
class BookModel {
public:
    static constexpr auto modelFields() {
        return std::tuple{ModelField{"md5Value", &BookModel::md5Value_},
                          ModelField{"urlConfigList", &BookModel::urlConfigList_}};
    }

    const std::optional<std::string>& md5Value() const { return md5Value_; }
    const ModelList<EntryModel>& urlConfigList() const { return urlConfigList_; }
    void setUrlConfigList(ModelList<EntryModel> list) { urlConfigList_ = std::move(list); }

private:
    std::optional<std::string> md5Value_;
    ModelList<EntryModel> urlConfigList_;
};

/// A model read and its list converted, as the manager of such lists does it.
std::shared_ptr<BookModel> bookOf(std::string_view bytes) {
    auto book = modelWithJSON<BookModel>(bytes);
    if (book)
        book->setUrlConfigList(modelArrayWithClass<EntryModel>(book->urlConfigList().json()));
    return book;
}

TEST(JsonModel, AListIsReadConvertedAndWritten) {
    const std::string bytes =
        R"({"md5Value":"5f","urlConfigList":[{"urlKey":"新闻","urlValue":"http://a/"},)"
        R"({"urlKey":"k","urlValue":""}]})";
    const auto book = modelWithJSON<BookModel>(bytes);
    ASSERT_NE(book, nullptr);
    EXPECT_EQ(book->md5Value(), "5f");
    ASSERT_NE(book->urlConfigList().json(), nullptr);
    EXPECT_EQ(book->urlConfigList().json()->size(), 2U);
    EXPECT_EQ(book->urlConfigList().items(), nullptr);
    EXPECT_EQ(modelToJSONString(*book), bytes);

    book->setUrlConfigList(modelArrayWithClass<EntryModel>(book->urlConfigList().json()));
    EXPECT_EQ(book->urlConfigList().json(), nullptr);
    const auto items = book->urlConfigList().items();
    ASSERT_NE(items, nullptr);
    ASSERT_EQ(items->size(), 2U);
    EXPECT_EQ((*items)[0]->urlKey(), "新闻");
    EXPECT_EQ((*items)[0]->urlValue(), "http://a/");
    EXPECT_EQ((*items)[1]->urlKey(), "k");
    EXPECT_EQ((*items)[1]->urlValue(), "");
    EXPECT_EQ(modelToJSONString(*book), bytes);
}

TEST(JsonModel, OnlyOneJsonObjectIsAModel) {
    for (const std::string_view bytes :
         {"", " ", "[]", "[{}]", "\"a\"", "1", "null", "true", "{", "{}{}", "{} x", "{}\xff",
          "{/**/}", "{\"a\":1,}", "{\"a\":NaN}", "{\"md5Value\":\"\xff\"}", "<html></html>"}) {
        EXPECT_EQ(modelWithJSON<BookModel>(bytes), nullptr) << bytes;
    }
    EXPECT_EQ(modelWithJSON<BookModel>(std::string_view("{}\0x", 4)), nullptr);
    EXPECT_NE(modelWithJSON<BookModel>("{}"), nullptr);
    EXPECT_NE(modelWithJSON<BookModel>("\xef\xbb\xbf{}\r\n"), nullptr);
}

TEST(JsonModel, DeepNestingIsNoModel) {
    EXPECT_EQ(modelWithJSON<BookModel>(std::string(100'000, '[')), nullptr);
    EXPECT_EQ(modelWithJSON<BookModel>("{\"urlConfigList\":" + std::string(100'000, '[') +
                                       std::string(100'000, ']') + "}"),
              nullptr);
}

TEST(JsonModel, FillsATextFieldFromTextsAndNumbersOnly) {
    struct Row {
        std::string_view value;
        std::optional<std::string> text;
    };
    for (const Row& row : {
             Row{"\"a b\"", "a b"},
             Row{"\"\"", ""},
             Row{"\"null\"", "null"},
             Row{"\"\\u884c\"", "行"},
             Row{"12", "12"},
             Row{"-0.50", "-0.5"},
             Row{"1e3", "1000"},
             Row{"20240131235959123456789", "20240131235959123456789"},
             Row{"null", std::nullopt},
             Row{"true", std::nullopt},
             Row{"false", std::nullopt},
             Row{"[\"a\"]", std::nullopt},
             Row{"{\"a\":\"b\"}", std::nullopt},
         }) {
        const auto book = modelWithJSON<BookModel>("{\"md5Value\":" + std::string(row.value) + "}");
        ASSERT_NE(book, nullptr) << row.value;
        EXPECT_EQ(book->md5Value(), row.text) << row.value;
    }
}

TEST(JsonModel, FillsAListFieldFromListsOnly) {
    for (const std::string_view value : {"null", "true", "1", "\"[]\"", "{\"0\":{}}"}) {
        const auto book =
            modelWithJSON<BookModel>("{\"urlConfigList\":" + std::string(value) + "}");
        ASSERT_NE(book, nullptr) << value;
        EXPECT_TRUE(book->urlConfigList().isAbsent()) << value;
    }
}

TEST(JsonModel, AListFieldKeepsItsItemsAsTheyStand) {
    const auto book =
        modelWithJSON<BookModel>(R"({"urlConfigList":[1,"a",null,[true],{"b":2.5}]})");
    ASSERT_NE(book, nullptr);
    EXPECT_EQ(modelToJSONString(*book), R"({"urlConfigList":[1,"a",null,[true],{"b":2.5}]})");
}

TEST(JsonModel, IgnoresOtherMembersAndMatchesNamesExactly) {
    const auto book = modelWithJSON<BookModel>(
        R"({"MD5Value":"a","md5value":"b"," md5Value":"c","other":[{}],"urlconfiglist":[]})");
    ASSERT_NE(book, nullptr);
    EXPECT_EQ(book->md5Value(), std::nullopt);
    EXPECT_TRUE(book->urlConfigList().isAbsent());
}

TEST(JsonModel, OfMembersWithOneNameTheLastCounts) {
    EXPECT_EQ(modelWithJSON<BookModel>(R"({"md5Value":"a","md5Value":"b"})")->md5Value(), "b");
    EXPECT_EQ(modelWithJSON<BookModel>(R"({"md5Value":"a","md5Value":null})")->md5Value(),
              std::nullopt);
}

TEST(JsonModel, TheConversionSkipsItemsThatAreNoObjects) {
    const auto book = bookOf(
        R"({"urlConfigList":[null,{"urlKey":"a"},"b",[{"urlKey":"c"}],7,{},{"urlKey":"d"}]})");
    const auto items = book->urlConfigList().items();
    ASSERT_NE(items, nullptr);
    ASSERT_EQ(items->size(), 3U);
    EXPECT_EQ((*items)[0]->urlKey(), "a");
    EXPECT_EQ((*items)[1]->urlKey(), std::nullopt);
    EXPECT_EQ((*items)[2]->urlKey(), "d");
}

TEST(JsonModel, TheConversionKeepsAbsentAndEmptyApart) {
    EXPECT_EQ(modelArrayWithClass<EntryModel>(nullptr), nullptr);
    EXPECT_TRUE(bookOf("{}")->urlConfigList().isAbsent());
    const auto empty = bookOf(R"({"urlConfigList":[]})");
    EXPECT_FALSE(empty->urlConfigList().isAbsent());
    ASSERT_NE(empty->urlConfigList().items(), nullptr);
    EXPECT_TRUE(empty->urlConfigList().items()->empty());
}

TEST(JsonModel, EachConversionMakesNewModels) {
    const auto book = modelWithJSON<BookModel>(R"({"urlConfigList":[{"urlKey":"a"}]})");
    const JsonList list = book->urlConfigList().json();
    EXPECT_NE(modelArrayWithClass<EntryModel>(list)->at(0),
              modelArrayWithClass<EntryModel>(list)->at(0));
}

TEST(JsonModel, WritesPresentFieldsOnly) {
    EXPECT_EQ(modelToJSONString(BookModel()), "{}");
    EXPECT_EQ(modelToJSONString(*bookOf("{\"md5Value\":\"\"}")), R"({"md5Value":""})");
    EXPECT_EQ(modelToJSONString(*bookOf("{\"urlConfigList\":[]}")), R"({"urlConfigList":[]})");
    EXPECT_EQ(modelToJSONString(*bookOf(R"({"urlConfigList":[{"urlValue":"v"},{}]})")),
              R"({"urlConfigList":[{"urlValue":"v"},{}]})");
}

TEST(JsonModel, WritesTextsSoThatTheyReadBack) {
    const auto book = bookOf(R"({"md5Value":"\"\\\n\u0001 行情 😀"})");
    EXPECT_EQ(modelToJSONString(*book), R"({"md5Value":"\"\\\n\u0001 行情 😀"})");
    EXPECT_EQ(bookOf(modelToJSONString(*book))->md5Value(), book->md5Value());
}

TEST(JsonModel, WritesANumberOfATextFieldAsText) {
    EXPECT_EQ(modelToJSONString(*bookOf(R"({"md5Value":1.0})")), R"({"md5Value":"1"})");
}

TEST(JsonModel, LeavesOutItemsThatAreNull) {
    BookModel book;
    auto items = std::make_shared<ModelList<EntryModel>::Items>();
    items->push_back(nullptr);
    items->push_back(std::make_shared<EntryModel>());
    book.setUrlConfigList(ModelList<EntryModel>(std::move(items)));
    EXPECT_EQ(modelToJSONString(book), R"({"urlConfigList":[{}]})");
}

}  // namespace
