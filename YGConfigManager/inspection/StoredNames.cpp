// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/StoredNames.h"

#include <cstdint>
#include <set>
#include <tuple>
#include <utility>

#include "YGConfigManager/host/JsonValue.h"
#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/text/LineIndex.h"
#include "YGConfigManager/text/Numbers.h"

namespace yg {

namespace {

using Keys = std::set<std::tuple<std::string_view, std::string, std::string>>;

/// Adds names unless the same was added before.
class Collected {
public:
    void add(StoredName name) {
        if (known_.emplace(name.key()).second)
            names_.push_back(std::move(name));
    }
    StoredNames take() { return std::move(names_); }

private:
    StoredNames names_;
    Keys known_;
};

/// A type as it is found: "01" is 1.
std::string typeOf(const xml::Element& group) {
    return std::to_string(text::leadingInt32(group.attribute("type").value_or("")));
}

std::shared_ptr<const std::string> shared(std::string text) {
    return std::make_shared<const std::string>(std::move(text));
}

/// A member of an object that somebody holds; null when there is none.
const JsonValue* memberOf(const JsonValue& value, std::string_view name) {
    const auto object = value.object();
    if (!object)
        return nullptr;
    const auto found = object->find(name);
    return found == object->end() ? nullptr : &found->second;
}

/// A number counts as its decimal text.
const std::string* textOf(const JsonValue& value) {
    return value.text() ? value.text() : value.number();
}

/// The text in an element; its start tag when there is more in it.
Place placeOfContent(const xml::Element& element) {
    const bool isText = element.childCount() == 1 && !element.firstElementChild();
    return (isText ? element.firstChild().place() : element.tagPlace()).value_or(Place());
}

Place placeOf(const NameUse& use) {
    return use.element.valuePlace(use.row->name).value_or(Place());
}

}  // namespace

StoredNames serverNames(const std::vector<NameUse>& names, std::string_view path) {
    Collected collected;
    for (const NameUse& use : names) {
        if (use.row->names == Naming::serverType && use.file() == path)
            collected.add({serverTypeKind, {}, typeOf(use.element), placeOf(use)});
        if (use.row->names != Naming::server || use.file() != path)
            continue;
        const std::string type = typeOf(use.element.parent());
        const auto addresses = shared(std::string(use.element.attribute("addrs").value_or("")));
        const std::string_view value = use.value;
        const Place place = placeOf(use);
        forEachItem(value, [&](std::string_view name) {
            const auto offset = static_cast<std::size_t>(name.data() - value.data());
            collected.add(
                {"server", type, std::string(name),
                 use.element.valuePlace(use.row->name, offset, name.size()).value_or(place),
                 addresses});
        });
    }
    return collected.take();
}

StoredNames webPageNames(const std::vector<NameUse>& names, std::string_view path) {
    Collected collected;
    for (const NameUse& use : names) {
        if (use.row->names == Naming::webPage && use.file() == path)
            collected.add({"key",
                           {},
                           std::string(use.value),
                           placeOf(use),
                           shared(use.element.stringValue()),
                           placeOfContent(use.element)});
    }
    return collected.take();
}

std::optional<StoredNames> requestUrlNames(std::string_view bytes, std::string_view path) {
    const JsonValue::Parsed parsed = JsonValue::parse(bytes, {.positions = true});
    if (!parsed || !parsed.value->object())
        return std::nullopt;
    Collected collected;
    const text::LineIndex lines(bytes);
    const auto placeOf = [&](const JsonValue& value, std::uint32_t quotes) {
        const JsonRange range = value.range().value_or(JsonRange());
        return Place{std::string(path), lines.pointAt(bytes, range.begin + quotes),
                     lines.pointAt(bytes, range.end - quotes)};
    };
    const JsonValue* const list = memberOf(*parsed.value, "urlConfigList");
    const JsonList entries = list ? list->list() : nullptr;
    for (const JsonValue& entry : entries ? *entries : JsonValue::List()) {
        const JsonValue* const key = memberOf(entry, "urlKey");
        const JsonValue* const address = memberOf(entry, "urlValue");
        if (!key || !textOf(*key))
            continue;
        StoredName name{"key", {}, *textOf(*key), placeOf(*key, 0)};
        if (address && address->text()) {
            name.content = shared(*address->text());
            name.contentPlace = placeOf(*address, 1);
        }
        collected.add(std::move(name));
    }
    return collected.take();
}

StoredNames settingsNames(const xml::Document& document, std::string_view path) {
    Collected collected;
    for (const xml::Element& section : document.root().elements()) {
        for (const xml::Element& item : section.elements()) {
            Place place = item.tagPlace().value_or(Place());
            place.file = path;
            collected.add({"setting", std::string(section.name()), std::string(item.name()),
                           std::move(place)});
        }
    }
    return collected.take();
}

StoredNames missingFrom(const StoredNames& others, const StoredNames& names) {
    Keys known;
    std::set<std::string_view> types;
    for (const StoredName& name : others) {
        known.emplace(name.key());
        if (name.kind == serverTypeKind)
            types.insert(name.name);
    }
    StoredNames missing;
    for (const StoredName& name : names) {
        if (!known.contains(name.key()) && (name.kind != "server" || types.contains(name.group)))
            missing.push_back(name);
    }
    return missing;
}

std::string described(const StoredName& name) {
    if (name.kind == serverTypeKind)
        return "server type " + name.name;
    if (name.kind == "server")
        return "server '" + name.name + "' of type " + name.group;
    return std::string(name.kind) + " '" +
           (name.group.empty() ? name.name : name.group + "/" + name.name) + "'";
}

}  // namespace yg
