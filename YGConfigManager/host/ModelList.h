// SPDX-License-Identifier: MIT
//
// The list field of a model (JsonModel.h): first the JSON list as it stands, later the models made
// of it. What json() and items() point at lives as long as somebody holds it: keep the answer while
// going through it. One thread at a time may change it, as any value.
#pragma once

#include <memory>
#include <utility>
#include <variant>
#include <vector>

#include "YGConfigManager/host/JsonValue.h"

namespace yg {

/// Absent, a list of JSON values, or a list of models of class Item.
template <class Item>
class ModelList {
public:
    /// Converted models.
    using Items = std::vector<std::shared_ptr<Item>>;

    /// Absent.
    ModelList() = default;

    /// The JSON list as it stands; null makes it absent.
    ModelList(JsonList json) : value_(std::move(json)) {}

    /// A list of models; null makes it absent.
    ModelList(std::shared_ptr<const Items> items) : value_(std::move(items)) {}

    /// Whether there is neither.
    bool isAbsent() const { return !json() && !items(); }

    /// The list as it stood in the JSON text; null once it was converted, and when it is absent.
    JsonList json() const {
        const JsonList* list = std::get_if<JsonList>(&value_);
        return list ? *list : nullptr;
    }

    /// The models; null as long as the list was not converted, and when it is absent.
    std::shared_ptr<const Items> items() const {
        const auto* list = std::get_if<std::shared_ptr<const Items>>(&value_);
        return list ? *list : nullptr;
    }

private:
    std::variant<JsonList, std::shared_ptr<const Items>> value_;
};

}  // namespace yg
