// SPDX-License-Identifier: MIT
//
// Fills model objects from JSON text and writes them as JSON text.
//
// A model class has a default constructor and names its fields once, in a table; a text field is a
// std::optional<std::string>, a list field a ModelList of the class of its items:
//
//   class Entry {
//   public:
//       static constexpr auto modelFields() { return std::tuple{ModelField{"key", &Entry::key_}}; }
//   private:
//       std::optional<std::string> key_;
//   };
//
//   class Book {
//   public:
//       static constexpr auto modelFields() {
//           return std::tuple{ModelField{"title", &Book::title_},
//                             ModelField{"entries", &Book::entries_}};
//       }
//       …
//       std::optional<std::string> title_;
//       ModelList<Entry> entries_;
//   };
//
//   auto book = modelWithJSON<Book>(bytes);           // entries is a list of JSON values
//   book->setEntries(modelArrayWithClass<Entry>(book->entries().json()));  // now of Entry objects
//   modelToJSONString(*book);                         // {"title":"…","entries":[{"key":"…"},…]}
//
// Any thread may call, on models that no other thread changes meanwhile. Nothing is thrown, unless
// by a model's own constructor: what memory does not suffice for is null or, as text, empty.
#pragma once

#include <concepts>
#include <cstddef>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/host/ModelList.h"
#include "YGConfigManager/text/OptionalText.h"

namespace yg {

/// One row of a model's table: the member's exact name in JSON and the field that it fills.
template <class Model, class Value>
struct ModelField {
    std::string_view name;  ///< the exact name of the member
    Value Model::*field;    ///< what it fills
};

template <class Model, class Value>
ModelField(std::string_view, Value Model::*) -> ModelField<Model, Value>;

// What a model class has to have, each under a name of its own for the compiler's messages.

/// It has a table of its fields that anybody may read: a public, static, constexpr modelFields().
template <class Model>
concept ModelNamesItsFields = requires {
    Model::modelFields();
};

/// A new one can be made from nothing.
template <class Model>
concept ModelHasDefaultConstructor = std::default_initializable<Model>;

namespace detail {

template <class Value>
constexpr bool isReadField = false;
template <>
inline constexpr bool isReadField<std::optional<std::string>> = true;
template <>
inline constexpr bool isReadField<std::optional<double>> = true;
template <ModelNamesItsFields Item>
constexpr bool isReadField<ModelList<Item>> = true;

template <class Value>
constexpr bool isWrittenField = isReadField<Value> && !std::same_as<Value, std::optional<double>>;

template <class Model, class... Values>
constexpr bool areReadFields(const std::tuple<ModelField<Model, Values>...>&) {
    return (isReadField<Values> && ...);
}

template <class Model, class... Values>
constexpr bool areWrittenFields(const std::tuple<ModelField<Model, Values>...>&) {
    return (isWrittenField<Values> && ...);
}

}  // namespace detail

/// Its fields are all std::optional<std::string>, std::optional<double> or a ModelList of models.
template <class Model>
concept ModelFieldsCanBeRead = detail::areReadFields(Model::modelFields());

/// Its fields are all std::optional<std::string> or a ModelList of models.
template <class Model>
concept ModelFieldsCanBeWritten = detail::areWrittenFields(Model::modelFields());

/// A class whose objects are filled from JSON.
template <class Model>
concept ReadableModel =
    ModelNamesItsFields<Model> && ModelHasDefaultConstructor<Model> && ModelFieldsCanBeRead<Model>;

/// A class whose objects are written as JSON.
template <class Model>
concept WritableModel = ModelNamesItsFields<Model> && ModelFieldsCanBeWritten<Model>;

namespace detail {

/// Does `work`, whose answer is empty when memory does not suffice.
template <class Work>
auto orNothing(Work work) -> decltype(work()) {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return {};
    }
}

/// Throws std::bad_alloc where a step of some work was left out for want of memory.
inline void require(bool isDone) {
    if (!isDone)
        throw std::bad_alloc();
}

// What follows throws std::bad_alloc, so that nothing is left out of a whole.

/// Text field: a text as it stands, a number in decimal, anything else leaves it absent.
YG_EXPORT void readModelField(const JsonValue& value, std::optional<std::string>& field);

/// Number field: a number, anything else leaves it absent.
YG_EXPORT void readModelField(const JsonValue& value, std::optional<double>& field);

/// List field: a list as it stands, anything else leaves it absent.
template <class Item>
void readModelField(const JsonValue& value, ModelList<Item>& field) {
    field = ModelList<Item>(value.list());
}

template <class Model>
std::shared_ptr<Model> modelWithObject(const JsonValue::Object& object) {
    auto model = std::make_shared<Model>();
    const auto read = [&](const auto& row) {
        if (const auto member = object.find(row.name); member != object.end())
            readModelField(member->second, (*model).*row.field);
    };
    std::apply([&](const auto&... rows) { (read(rows), ...); }, Model::modelFields());
    return model;
}

template <class Model>
std::shared_ptr<const std::vector<std::shared_ptr<Model>>> modelsOf(const JsonValue::List& list) {
    auto models = std::make_shared<std::vector<std::shared_ptr<Model>>>();
    for (const JsonValue& value : list) {
        if (const auto object = value.object())
            models->push_back(modelWithObject<Model>(*object));
    }
    return models;
}

template <class Model>
void appendModel(std::string& out, const Model& model);

/// Appends the field's value, and answers false without a change when the field is absent.
YG_EXPORT bool appendModelField(std::string& out, const std::optional<std::string>& field);

template <class Item>
bool appendModelField(std::string& out, const ModelList<Item>& field) {
    if (field.isAbsent())
        return false;
    const char* separator = "";
    out += '[';
    if (const JsonList json = field.json()) {
        for (const JsonValue& value : *json) {
            out += separator;
            require(value.appendTo(out));
            separator = ",";
        }
    } else {
        for (const std::shared_ptr<Item>& item : *field.items()) {
            if (item) {
                out += separator;
                appendModel(out, *item);
                separator = ",";
            }
        }
    }
    out += ']';
    return true;
}

template <class Model>
void appendModel(std::string& out, const Model& model) {
    const char* separator = "";
    const auto append = [&](const auto& row) {
        const std::size_t start = out.size();
        out += separator;
        require(appendJsonText(out, row.name));
        out += ':';
        if (appendModelField(out, model.*row.field))
            separator = ",";
        else
            out.resize(start);
    };
    out += '{';
    std::apply([&](const auto&... rows) { (append(rows), ...); }, Model::modelFields());
    out += '}';
}

}  // namespace detail

/// A new model filled from the top-level JSON object in `bytes`; null when they are anything else
/// than one JSON object (JsonValue::parse says how strictly). Members without a field are ignored,
/// fields without a member stay absent.
template <ReadableModel Model>
std::shared_ptr<Model> modelWithJSON(OptionalText bytes) {
    const JsonValue::Parsed parsed = JsonValue::parse(bytes);
    const auto object = parsed ? parsed.value->object() : nullptr;
    return detail::orNothing(
        [&] { return object ? detail::modelWithObject<Model>(*object) : nullptr; });
}

/// A list of new models, one for each object in `list`, in its order; items that are not objects
/// are skipped. An absent list (null) stays absent, an empty one empty.
template <ReadableModel Model>
std::shared_ptr<const std::vector<std::shared_ptr<Model>>> modelArrayWithClass(
    const JsonList& list) {
    return detail::orNothing([&] { return list ? detail::modelsOf<Model>(*list) : nullptr; });
}

/// The model as JSON object text: its fields in the order of its table, absent ones left out,
/// models in lists as objects, UTF-8 as it stands, no added white space.
template <WritableModel Model>
std::string modelToJSONString(const Model& model) {
    return detail::orNothing([&] {
        std::string out;
        detail::appendModel(out, model);
        return out;
    });
}

}  // namespace yg
