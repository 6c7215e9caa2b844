// SPDX-License-Identifier: MIT
//
// Bytes as a JSON model: what is written reads back as the same model and the same text.
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "YGConfigManager/host/JsonModel.h"
#include "YGConfigManager/text/Utf8.h"

#include "Target.h"

namespace {

using yg::fuzz::require;
using yg::fuzz::textOf;

struct Entry {
    std::optional<std::string> key;
    std::optional<std::string> url;

    static constexpr auto modelFields() {
        return std::tuple{yg::ModelField{"key", &Entry::key}, yg::ModelField{"url", &Entry::url}};
    }
};

struct Book {
    std::optional<std::string> title;
    std::optional<std::string> 页;
    yg::ModelList<Entry> entries;

    static constexpr auto modelFields() {
        return std::tuple{yg::ModelField{"title", &Book::title}, yg::ModelField{"页", &Book::页},
                          yg::ModelField{"entries", &Book::entries}};
    }
};

void expectReadsBack(const Book& book) {
    const std::string text = yg::modelToJSONString(book);
    require(yg::text::isValidUtf8(text), "a model is written in UTF-8");
    const std::shared_ptr<Book> again = yg::modelWithJSON<Book>(text);
    require(again != nullptr, "what is written can be read");
    require(yg::modelToJSONString(*again) == text, "writing again gives the same text");
    require(again->title == book.title && again->页 == book.页, "texts read back");
    require(again->entries.isAbsent() == book.entries.isAbsent(), "absent is not empty");
}

/// Each member of an object, read by itself from where it stands, is the value in the object.
void expectPositions(std::string_view bytes) {
    const yg::JsonValue value = *yg::JsonValue::parse(bytes, {.positions = true}).value;
    const auto object = value.object();
    if (!object)
        return;
    std::size_t counting = 0;
    for (const yg::JsonMember& member : *value.members()) {
        const auto read = [&](yg::JsonRange range) {
            const auto part = bytes.substr(range.begin, range.end - range.begin);
            const yg::JsonValue::Parsed parsed = yg::JsonValue::parse(part);
            require(static_cast<bool>(parsed), "a range is a value");
            std::string text;
            parsed.value->appendTo(text);
            return text;
        };
        std::string expected;
        yg::appendJsonText(expected, member.name);
        require(read(member.nameRange) == expected, "a name's range is the name");
        const std::string text = read(member.valueRange);
        if (member.isReplaced)
            continue;
        ++counting;
        expected.clear();
        object->at(std::string(member.name)).appendTo(expected);
        require(text == expected, "a value's range is the value");
    }
    require(counting == object->size(), "of each name one member counts");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = textOf(data, size);
    const yg::JsonValue::Parsed parsed = yg::JsonValue::parse(bytes);
    require(parsed || parsed.error.find_first_of("\r\n") == std::string::npos,
            "an error is one line");
    if (parsed) {
        std::string text;
        parsed.value->appendTo(text);
        const yg::JsonValue::Parsed again = yg::JsonValue::parse(text);
        require(static_cast<bool>(again), "a value that is written can be read");
        std::string second;
        again.value->appendTo(second);
        require(second == text, "writing a value again gives the same text");
        expectPositions(bytes);
    }

    const std::shared_ptr<Book> book = yg::modelWithJSON<Book>(bytes);
    require((book != nullptr) == (parsed && parsed.value->object() != nullptr),
            "one object is a model, and nothing else");
    if (!book)
        return 0;
    expectReadsBack(*book);

    const yg::JsonList list = book->entries.json();
    const auto items = yg::modelArrayWithClass<Entry>(list);
    require((items == nullptr) == (list == nullptr), "an absent list stays absent");
    if (!items)
        return 0;
    require(items->size() <= list->size(), "what is not an object is left out");
    book->entries =
        yg::ModelList<Entry>(std::make_shared<const std::vector<std::shared_ptr<Entry>>>(*items));
    expectReadsBack(*book);
    return 0;
}
