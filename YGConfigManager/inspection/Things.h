// SPDX-License-Identifier: MIT
//
// What a root holds, as things of one form, so that two roots can be compared by one set of rules.
// A thing has the fields of its record, by the record's description, and lists of further things.
// Internal. Throws std::bad_alloc.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "YGConfigManager/graphics/Image.h"
#include "YGConfigManager/inspection/Difference.h"
#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"
#include "YGConfigManager/records/RecordMap.h"
#include "YGConfigManager/settings/YGHttpReqUrlModel.h"

namespace yg {

struct Thing;

/// A thing where it is listed, under the name that it has there.
struct Item {
    Subject subject;
    std::string_view name;
    const Thing* thing;
};

struct ItemList {
    std::string_view field;
    std::vector<Item> items = {};
    bool isAbsent = false;   ///< null, which is not the same as empty
    bool isOrdered = true;   ///< another order is a difference
    bool isComplete = true;  ///< otherwise what is on one side only does not count
};

struct ThingField {
    std::string_view name;
    std::string_view attribute;  ///< that it is read from; "" for none
    std::optional<std::string> value;
    bool isName = false;  ///< defines the name of the record
    Place place = {};     ///< instead of that of the attribute
};

using FieldVisit = std::function<void(const ThingField& field)>;

/// What a thing holds, as bytes that are equal for equal values.
struct Held {
    std::string fields;  ///< but the name
    std::string name;
};

struct RecordFields {
    void (*visit)(const void* record, const FieldVisit& visit);
    void (*add)(const void* record, Held& held);
};

struct Thing {
    /// How the fields of the record are read, without those that are lists of things.
    const RecordFields* fields = nullptr;
    const void* record = nullptr;
    bool isRead = false;  ///< from the element that was read into the record
    std::vector<ThingField> further = {};
    std::vector<ItemList> lists = {};
    xml::Element element = {};    ///< that it was read from, unless the record tells
    Place place = {};             ///< instead of that of an element
    std::string definition = {};  ///< of a panel that pages share: what tells it from others
    std::uint32_t pixels = 0;     ///< of an image, by Interning::ofPixels
    bool isShared = false;        ///< listed more than once

    // Numbers of what it holds, the same on both sides for the same.
    std::uint32_t fieldsId = 0;  ///< its fields but the name
    std::uint32_t bodyId = 0;    ///< all but the name
    std::uint32_t id = 0;        ///< all; 0 as long as it is not known
    std::uint64_t order = 0;     ///< for an order that depends on nothing else
    std::size_t size = 1;        ///< with all things in it, as often as they are listed
};

/// Gives equal texts equal numbers, from 1.
class Interning {
public:
    std::uint32_t operator()(const std::string& text) {
        if (const std::uint32_t* const known = numbers_.find(text))
            return *known;
        const auto number = static_cast<std::uint32_t>(numbers_.size() + 1);
        numbers_.set(text, number);
        return number;
    }

    /// Gives equal pixels equal numbers. `sum` is their checksum.
    std::uint32_t ofPixels(const Image& image, std::uint64_t sum);

private:
    RecordMap<std::uint32_t> numbers_;
    std::unordered_map<std::uint64_t, std::vector<std::pair<Image, std::uint32_t>>> images_;
    std::uint32_t imageCount_ = 0;
};

class Things {
public:
    /// All that is in a root. What is given must outlive it.
    Things(const Loaded& loaded, const Gathering& findings, Interning& interning);
    Things(const Things&) = delete;
    Things& operator=(const Things&) = delete;

    const Thing& root() const { return *root_; }

    /// Where a thing is, and where a field of it is; the file below the root.
    Place placeOf(const Thing& thing) const;
    Place placeOf(const Thing& thing, const ThingField& field) const;

private:
    class Making;

    xml::Element elementOf(const Thing& thing) const;
    Place belowRoot(Place place) const;
    void number(Thing& top);

    const Loaded& loaded_;
    const Gathering& findings_;
    Interning& interning_;
    std::deque<Thing> things_;
    std::deque<std::string> texts_;
    std::unordered_map<const void*, Thing*> byRecord_;
    std::vector<std::shared_ptr<const YGHttpReqUrlModel>> requestUrls_;
    Thing* root_ = nullptr;
};

/// All fields of a thing, the record's first.
std::vector<ThingField> fieldsOf(const Thing& thing);

}  // namespace yg
