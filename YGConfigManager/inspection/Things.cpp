// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Things.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstring>
#include <new>
#include <numeric>
#include <span>
#include <tuple>
#include <type_traits>

#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/inspection/PageNames.h"
#include "YGConfigManager/inspection/PaletteFiles.h"
#include "YGConfigManager/inspection/StoredNames.h"
#include "YGConfigManager/layout/LayoutEntries.h"
#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/servers/ServerGroup.h"
#include "YGConfigManager/settings/YGHttpReqUrlModel.h"
#include "YGConfigManager/text/Numbers.h"

namespace yg {

namespace {

// ---- Values as text, different for different values ----

template <class Number>
std::string textOfNumber(Number number) {
    char text[64];
    const auto end = std::to_chars(std::begin(text), std::end(text), number);
    return {std::begin(text), end.ptr};
}

std::optional<std::string> textOf(const std::optional<std::string>& text) {
    return text;
}
std::optional<std::string> textOf(const std::string& text) {
    return text;
}
template <class Number>
requires std::is_arithmetic_v<Number> std::optional<std::string> textOf(Number number) {
    if constexpr (std::same_as<Number, bool>)
        return number ? "true" : "false";
    else
        return textOfNumber(number);
}

/// No name in such a list has a ";".
std::optional<std::string> textOf(const std::shared_ptr<std::vector<std::string>>& names) {
    if (!names)
        return std::nullopt;
    std::string text;
    for (const std::string& name : *names)
        text.append(&name == &names->front() ? "" : ";").append(name);
    return text;
}

/// "#FF8000", behind it the alpha when it is not 1. A component that is not a whole part of 255 is
/// written in full.
std::string textOf(const Color& color) {
    std::string hexadecimal = "#";
    std::string full;
    bool isWhole = true;
    forEachField(color, [&](std::string_view name, double component) {
        if (name == "alpha")
            return;
        full.append(full.empty() ? "" : ", ").append(name).append(" ");
        full += textOfNumber(component);
        // Palettes compute in floats.
        const double whole = std::round(component * 255);
        isWhole = isWhole && static_cast<double>(static_cast<float>(whole) / 255.0F) == component;
        const auto byte = static_cast<unsigned>(whole);
        hexadecimal += "0123456789ABCDEF"[byte / 16 % 16];
        hexadecimal += "0123456789ABCDEF"[byte % 16];
    });
    std::string text = isWhole ? hexadecimal : full;
    if (color.alpha != 1)
        text.append(", alpha ").append(textOfNumber(static_cast<float>(color.alpha)));
    return text;
}

/// "WenQuanYi Micro Hei, 12 points".
std::string textOf(const Font& font) {
    return font.faceName() + ", " + textOfNumber(font.pointSize()) + " points";
}

template <class Value>
concept IsText = requires(const Value& value) {
    { textOf(value) } -> std::convertible_to<std::optional<std::string>>;
};

// ---- Values as bytes, different for different values ----

void addNumber(std::string& key, std::uint64_t number) {
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    key.append(bytes, sizeof bytes);
}

void addText(std::string& key, std::string_view text) {
    addNumber(key, text.size());
    key += text;
}

template <class Number>
requires std::is_arithmetic_v<Number>
void addValue(std::string& key, Number number) {
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    key.append(bytes, sizeof bytes);
}

void addValue(std::string& key, const std::optional<std::string>& text) {
    key += text ? '1' : '0';
    addText(key, text ? std::string_view(*text) : "");
}

void addValue(std::string& key, const std::shared_ptr<std::vector<std::string>>& names) {
    addValue(key, textOf(names));
}

// ---- The fields of a record ----

template <class Record>
void visitFieldsOf(const void* of, const FieldVisit& visit) {
    const auto& record = *static_cast<const Record*>(of);
    const auto visitOne = [&](const auto& field) {
        const auto& value = std::invoke(field.getter, record);
        if constexpr (IsText<std::remove_cvref_t<decltype(value)>>)
            visit({field.name, field.attribute.name, textOf(value), field.attribute.defines});
    };
    std::apply([&](const auto&... field) { (visitOne(field), ...); }, Description<Record>::fields);
}

template <class Record>
void addFieldsOf(const void* of, Held& held) {
    const auto& record = *static_cast<const Record*>(of);
    const auto addOne = [&](const auto& field) {
        const auto& value = std::invoke(field.getter, record);
        if constexpr (IsText<std::remove_cvref_t<decltype(value)>>)
            addValue(field.attribute.defines ? held.name : held.fields, value);
    };
    std::apply([&](const auto&... field) { (addOne(field), ...); }, Description<Record>::fields);
}

template <class Record>
constexpr RecordFields fieldsOfRecord{&visitFieldsOf<Record>, &addFieldsOf<Record>};

/// The value of the field that defines the record's name; "" without one.
template <class Record>
std::string_view ownNameOf(const Record& record) {
    std::string_view name;
    const auto look = [&](const auto& field) {
        if constexpr (std::same_as<std::remove_cvref_t<decltype(std::invoke(field.getter, record))>,
                                   std::optional<std::string>>) {
            const std::optional<std::string>& value = std::invoke(field.getter, record);
            if (field.attribute.defines && value)
                name = *value;
        }
    };
    std::apply([&](const auto&... field) { (look(field), ...); }, Description<Record>::fields);
    return name;
}

/// What the items of a map are, by the field that holds it.
Subject subjectOfMap(std::string_view field) {
    static constexpr std::pair<std::string_view, Subject> maps[] = {
        {"commandDatas", Subject::command},         {"eventTemplateDatas", Subject::eventTemplate},
        {"elementEventDatas", Subject::eventGroup}, {"customColors", Subject::color},
        {"keyColorNames", Subject::colorKey},       {"customFonts", Subject::font},
        {"keyFontNames", Subject::fontKey},         {"customImages", Subject::image},
    };
    const auto* const found =
        std::ranges::find(maps, field, &std::pair<std::string_view, Subject>::first);
    return found == std::end(maps) ? Subject::root : found->second;
}

Subject subjectOf(const PanelConfigInfo&) {
    return Subject::panel;
}
Subject subjectOf(const ElementConfigInfo&) {
    return Subject::element;
}
Subject subjectOf(const YGHttpUrlConfigModel&) {
    return Subject::requestUrl;
}

/// By what a list's item is matched: elements by their uuid, or else the kind of view.
template <class Record>
std::string_view nameInList(const Record& record) {
    return ownNameOf(record);
}
std::string_view nameInList(const ElementConfigInfo& element) {
    const std::string_view uuid = ownNameOf(element);
    return uuid.empty() && element.elementName() ? std::string_view(*element.elementName()) : uuid;
}

constexpr std::uint64_t orderBegin = 0xcbf29ce484222325U;

std::uint64_t mixed(std::uint64_t order, std::uint64_t more) {
    order = (order ^ more) * 0x9E3779B97F4A7C15U;
    return order ^ (order >> 29);
}

std::uint64_t mixed(std::uint64_t order, std::string_view text) {
    for (const char c : text)
        order = (order ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    return mixed(order, text.size());
}

std::uint64_t sumOfPixels(const Image& image) {
    std::uint64_t sum = orderBegin;
    for (std::size_t y = 0; y < image.pixelHeight(); ++y) {
        const auto row = image.row(y);
        for (std::size_t at = 0; at < row.size(); at += 4) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, row.data() + at, sizeof pixel);
            sum = mixed(sum, pixel);
        }
    }
    return sum;
}

bool isSamePicture(const Image& one, const Image& other) {
    if (one.pixelWidth() != other.pixelWidth() || one.pixelHeight() != other.pixelHeight())
        return false;
    for (std::size_t y = 0; y < one.pixelHeight(); ++y) {
        if (!std::ranges::equal(one.row(y), other.row(y)))
            return false;
    }
    return true;
}

}  // namespace

std::uint32_t Interning::ofPixels(const Image& image, std::uint64_t sum) {
    auto& alike = images_[sum];
    for (const auto& [known, number] : alike) {
        if (isSamePicture(known, image))
            return number;
    }
    alike.emplace_back(image, ++imageCount_);
    return imageCount_;
}

std::vector<ThingField> fieldsOf(const Thing& thing) {
    std::vector<ThingField> fields;
    if (thing.fields)
        thing.fields->visit(thing.record,
                            [&](const ThingField& field) { fields.push_back(field); });
    fields.insert(fields.end(), thing.further.begin(), thing.further.end());
    return fields;
}

/// Makes the things of a root.
class Things::Making {
public:
    Making(Things& things)
        : things_(things), loaded_(things.loaded_), findings_(things.findings_) {}

    Thing& root() {
        Thing& root = add();
        addReusePanels(root);
        addMagicPanels(root);
        addPages(root);
        fill(root, *loaded_.events);
        addPalettes(root);
        addServers(root);
        addSettings(root);
        addWebPages(root);
        addRequestUrls(root);
        addHost(root);
        while (!pending_.empty()) {
            auto [thing, work] = std::move(pending_.back());
            pending_.pop_back();
            (this->*work)(*thing);
        }
        return root;
    }

private:
    using Work = void (Making::*)(Thing&);

    Thing& add() { return things_.things_.emplace_back(); }

    /// The text for as long as the things live.
    std::string_view kept(std::string text) { return things_.texts_.emplace_back(std::move(text)); }

    // ---- Records by their descriptions ----

    /// The one thing of a record, which is filled later, since panels may be nested deeply.
    template <class Record>
    Thing& thingOf(const Record& record) {
        Thing*& known = things_.byRecord_[&record];
        if (known) {
            known->isShared = true;
            return *known;
        }
        known = &add();
        known->record = &record;
        known->fields = &fieldsOfRecord<Record>;
        known->isRead =
            !std::same_as<Record, YGHttpReqUrlModel> && !std::same_as<Record, YGHttpUrlConfigModel>;
        pending_.emplace_back(known, &Making::fillRecord<Record>);
        return *known;
    }

    template <class Record>
    void fillRecord(Thing& thing) {
        fill(thing, *static_cast<const Record*>(thing.record));
    }

    /// The lists of a record, and its other fields unless the thing has them.
    template <class Record>
    void fill(Thing& thing, const Record& record) {
        forEachField(record, [&](std::string_view name, const auto& value) {
            using Value = std::remove_cvref_t<decltype(value)>;
            if constexpr (!IsText<Value>)
                addList(thing, name, value);
        });
    }

    /// A list of records.
    template <class Record>
    void addList(Thing& thing, std::string_view field,
                 const std::shared_ptr<std::vector<std::shared_ptr<Record>>>& records) {
        addRecords(thing, field, records.get());
    }
    template <class Record>
    void addList(Thing& thing, std::string_view field,
                 const std::shared_ptr<const std::vector<std::shared_ptr<Record>>>& records) {
        addRecords(thing, field, records.get());
    }
    template <class Record>
    void addRecords(Thing& thing, std::string_view field,
                    const std::vector<std::shared_ptr<Record>>* records) {
        ItemList& list = thing.lists.emplace_back(ItemList{field});
        list.isAbsent = !records;
        if (!records)
            return;
        for (const auto& record : *records) {
            if (record)
                list.items.push_back({subjectOf(*record), nameInList(*record), &thingOf(*record)});
        }
    }

    /// A map of records, or of maps of them.
    template <class Value>
    void addList(Thing& thing, std::string_view field, const RecordMap<Value>& map) {
        addMap(thing, field, subjectOfMap(field), map);
    }
    template <class Record>
    void addMap(Thing& thing, std::string_view field, Subject subject,
                const RecordMap<std::shared_ptr<Record>>& map) {
        ItemList list{field};
        for (const auto& [name, record] : map)
            list.items.push_back({subject, name, &thingOf(*record)});
        thing.lists.push_back(std::move(list));
    }
    void addMap(Thing& thing, std::string_view field, Subject subject,
                const EventGroupMap& groups) {
        ItemList list{field};
        for (const auto& [name, events] : groups) {
            Thing& group = add();
            addMap(group, "events", Subject::event, events);
            group.element = definitions_.find(subject, name);
            list.items.push_back({subject, name, &group});
        }
        thing.lists.push_back(std::move(list));
    }

    // ---- The layout ----

    template <class Map>
    void addMap(Thing& thing, std::string_view field, Subject subject,
                const std::shared_ptr<const Map>& map) {
        if (map)
            addMap(thing, field, subject, *map);
        else
            thing.lists.push_back({.field = field, .isAbsent = true});
    }

    void addReusePanels(Thing& root) {
        addMap(root, "reusePanelInfos", Subject::reusePanel, loaded_.layout->reusePanelInfos());
        for (const Item& item : root.lists.back().items)
            define(item, "");
    }

    void addMagicPanels(Thing& root) {
        ItemList groups{"magicPanelInfos"};
        const MagicPanelMap* const infos = loaded_.layout->magicPanelInfos().get();
        if (!infos)
            throw std::bad_alloc();
        for (const auto& [name, members] : *infos) {
            Thing& group = add();
            addMap(group, "members", Subject::magicPanel, members);
            for (const Item& item : group.lists.back().items)
                define(item, name);
            std::string found;
            std::string stored;
            for (const SlotMember& member : loaded_.layout->slotMembers(name))
                found.append(member.name).append(";");
            for (const Item& item : group.lists.back().items)
                stored.append(item.name).append(";");
            group.further.push_back(
                {"slotMembers", "", found == stored ? std::nullopt : std::optional(found)});
            group.element = definitions_.find(Subject::magicGroup, name);
            groups.items.push_back({Subject::magicGroup, name, &group});
        }
        root.lists.push_back(std::move(groups));
    }

    void define(const Item& item, std::string_view group) {
        Thing& thing = *things_.byRecord_.at(item.thing->record);
        thing.definition.clear();
        addText(thing.definition, group);
        addText(thing.definition, nameOf(item.subject));
        addText(thing.definition, item.name);
    }

    void addPages(Thing& root) {
        const YGStyleConfigLoad& layout = *loaded_.layout;
        root.further.push_back({"defaultStyleName", "", layout.defaultStyleName()});
        for (const NameUse& use : findings_.names()) {
            if (use.row->name == defaultStyle.name && use.value == layout.defaultStyleName())
                root.further.back().place =
                    use.element.attributePlace(use.row->name).value_or(Place());
        }
        addMap(root, "scrollPanelDict", Subject::scrollPanel, layout.scrollPanelDict());
        ItemList templates{"templates"};
        for (const PageTemplate& each : loaded_.templates) {
            Thing& thing = add();
            std::string groups;
            for (const auto& group : each.groups)
                groups.append(group ? *group : "").append(";");
            thing.further.push_back({"slots", "", std::move(groups)});
            const auto& styles = layout.styleInfos();
            if (const auto* const style = styles ? styles->find(each.name) : nullptr)
                thing.element = findings_.originOf(style->get());
            templates.items.push_back({Subject::pageTemplate, each.name, &thing});
        }
        root.lists.push_back(std::move(templates));
        addMap(root, "styleInfos", Subject::page, layout.styleInfos());
        addMap(root, "tabStyleInfos", Subject::tabPage, layout.tabStyleInfos());
        ItemList custom{"customPages"};
        custom.isOrdered = false;
        custom.isComplete = false;
        for (const Page& page : loaded_.pages) {
            if (page.source == Page::Source::custom)
                custom.items.push_back({Subject::customPage, page.name, &thingOf(*page.style)});
        }
        root.lists.push_back(std::move(custom));
    }

    // ---- Palettes ----

    void addPalettes(Thing& root) {
        ItemList palettes{"palettes"};
        for (const PaletteFile& file : paletteFilesOf(loaded_, findings_)) {
            palette_ = &file;
            Thing& thing = add();
            thing.record = &file.palette();
            thing.fields = &fieldsOfRecord<YGPaletteLoad>;
            thing.place = Place{file.path(), {}, {}};
            fill(thing, file.palette());
            std::string name(file.theme());
            name.append(file.isUsers() ? " theme of the user" : " theme");
            palettes.items.push_back({Subject::palette, kept(std::move(name)), &thing});
        }
        root.lists.push_back(std::move(palettes));
    }

    template <class Value>
    void addMap(Thing& thing, std::string_view field, Subject subject,
                const RecordMap<Value>& map) {
        ItemList list{field};
        for (const auto& [name, value] : map) {
            Thing& each = add();
            addValue(each, subject, name, value);
            list.items.push_back({subject, name, &each});
        }
        thing.lists.push_back(std::move(list));
    }

    void locate(Thing& thing, Naming kind, std::string_view name) {
        if (const NameUse* const* const use = palette_->defined(kind).find(name))
            thing.element = (*use)->element;
    }

    void addValue(Thing& thing, Subject, const std::string& name, const Color& color) {
        thing.further.push_back({"color", "", textOf(color)});
        locate(thing, Naming::color, name);
    }
    void addValue(Thing& thing, Subject, const std::string& name, const Font& font) {
        thing.record = &font;
        thing.fields = &fieldsOfRecord<Font>;
        locate(thing, Naming::font, name);
    }
    void addValue(Thing& thing, Subject, const std::string& name, const Image& image) {
        thing.record = &image;
        thing.fields = &fieldsOfRecord<Image>;
        const std::uint64_t sum = sumOfPixels(image);
        thing.pixels = things_.interning_.ofPixels(image, sum);
        thing.further.push_back({"pixels", "", "checksum " + textOfNumber(sum)});
        locate(thing, Naming::image, name);
    }
    /// A key: what it names, and what it answers.
    void addValue(Thing& thing, Subject subject, const std::string& key, const std::string& name) {
        const YGPaletteLoad& palette = palette_->palette();
        thing.further.push_back({"name", "VALUE", name});
        if (subject == Subject::colorKey) {
            thing.further.push_back({"color", "VALUE",
                                     palette.customColors().contains(name)
                                         ? textOf(palette.getCustomColor(key))
                                         : std::string(missingColor)});
            locate(thing, Naming::colorKey, key);
        } else {
            thing.further.push_back({"font", "VALUE",
                                     palette.customFonts().contains(name)
                                         ? textOf(palette.getCustomFont(key))
                                         : std::string(missingFont)});
            locate(thing, Naming::fontKey, key);
        }
    }

    // ---- Servers ----

    void addServers(Thing& root) {
        ItemList files{"servers"};
        for (const LoadedServers& each : loaded_.servers) {
            if (!each.servers)
                continue;
            const xml::Element top = loaded_.files.file(each.file).document().document.root();
            Thing& thing = add();
            thing.place = Place{loaded_.files.pathOf(each.file), {}, {}};
            ItemList groups{"groups"};
            forEachField(*each.servers, [&](std::string_view name, const auto& value) {
                using Value = std::remove_cvref_t<decltype(value)>;
                if constexpr (std::same_as<Value, YGServerCfgLoader::Group>) {
                    if (value)
                        groups.items.push_back({Subject::serverGroup,
                                                kept(textOfNumber(value->serverType())),
                                                &serverGroup(*value, top)});
                } else if (name != "configPath") {  // the file itself
                    thing.further.push_back({name, "", textOf(value)});
                }
            });
            thing.lists.push_back(std::move(groups));
            files.items.push_back({Subject::serverFile, each.file, &thing});
        }
        root.lists.push_back(std::move(files));
    }

    Thing& serverGroup(const YGServerAddrListTag& group, const xml::Element& top) {
        Thing& thing = add();
        thing.record = &group;
        thing.fields = &fieldsOfRecord<YGServerAddrListTag>;
        ItemList entries{"entries"};
        entries.isAbsent = !group.serverAddrList();
        const auto found = serverGroups(top, group.serverType());
        if (!found.empty()) {
            thing.element = xml::Element(found.front());
            std::vector<xml::Element> elements;
            for (const xml::Element& child : thing.element.elements())
                elements.push_back(child);
            const auto offers = serverOffers(thing.element);
            for (std::size_t at = 0; at < offers.size(); ++at)
                addEntry(entries, offers[at], at < elements.size() ? elements[at] : xml::Element());
        }
        thing.lists.push_back(std::move(entries));
        return thing;
    }

    /// An entry that gives servers. Each address has the share of the items that have it.
    void addEntry(ItemList& entries, const ServerOffer& offer, const xml::Element& element) {
        ItemList addresses{"addresses"};
        addresses.isOrdered = false;
        std::map<std::string, std::size_t> counts;
        std::size_t all = 0;
        for (const AddressOffer& address : offer.addresses) {
            if (!address.canBeChosen)
                continue;
            const AddressItem item(address.address);
            ++all;
            ++counts[std::string(item.host()) + ":" +
                     textOfNumber(text::leadingInt32(item.port()))];
        }
        if (all == 0)
            return;
        for (const auto& [address, count] : counts) {
            Thing& thing = add();
            const std::size_t divisor = std::gcd(count, all);
            thing.further.push_back(
                {"share", "addrs",
                 textOfNumber(count / divisor) + "/" + textOfNumber(all / divisor)});
            thing.element = element;
            addresses.items.push_back({Subject::serverAddress, kept(address), &thing});
        }
        Thing& thing = add();
        thing.element = element;
        thing.further.push_back(
            {"serverKey", "key", textOfNumber(text::leadingInt32(offer.key.value_or("")))});
        thing.further.push_back({"serverName", "name", offer.names, true});
        thing.lists.push_back(std::move(addresses));
        entries.items.push_back({Subject::serverEntry, kept(offer.names.value_or("")), &thing});
    }

    // ---- Settings, web pages, request URLs ----

    Thing& fileIn(ItemList& files, Subject subject, const std::string& file) {
        Thing& thing = add();
        thing.place = Place{loaded_.files.pathOf(file), {}, {}};
        files.items.push_back({subject, file, &thing});
        return thing;
    }

    void addSettings(Thing& root) {
        ItemList files{"settings"};
        for (const std::string& file : loaded_.settingsFiles) {
            Thing& thing = fileIn(files, Subject::settingsFile, file);
            thing.lists.push_back({.field = "items"});
            const SourceFile& source = loaded_.files.file(file);
            const xml::Document document = source.document().document;
            if (document.root().name() != "config")
                continue;
            for (const StoredName& name : settingsNames(document, thing.place.file)) {
                const auto around = source.elementsAt(name.place.begin);
                if (around.empty())
                    continue;
                Thing& item = add();
                item.element = around.back();
                item.further.push_back({"text", "", item.element.stringValue()});
                const auto description = item.element.attribute("description");
                item.further.push_back({"description", "description", std::nullopt});
                if (description)
                    item.further.back().value = *description;
                thing.lists.back().items.push_back(
                    {Subject::setting, kept(name.group + "/" + name.name), &item});
            }
        }
        root.lists.push_back(std::move(files));
    }

    void addWebPages(Thing& root) {
        ItemList files{"webPages"};
        for (const std::string& file : loaded_.webPageFiles) {
            ItemList pages{"urls"};
            Thing& thing = fileIn(files, Subject::webPageFile, file);
            for (const StoredName& name :
                 webPageNames(findings_.names(), loaded_.files.pathOf(file))) {
                Thing& page = add();
                page.place = name.place;
                page.further.push_back({"address", "", *name.content, false, name.contentPlace});
                pages.items.push_back({Subject::webPage, kept(name.name), &page});
            }
            thing.lists.push_back(std::move(pages));
        }
        root.lists.push_back(std::move(files));
    }

    void addRequestUrls(Thing& root) {
        ItemList files{"requestUrls"};
        for (const std::string& file : loaded_.requestUrlFiles) {
            const std::string& bytes = loaded_.files.file(file).bytes();
            const auto model = YGHttpReqUrlModel::modelWithJSON(bytes);
            if (!model)
                continue;
            things_.requestUrls_.push_back(model);
            Thing& thing = thingOf(*model);
            thing.place = Place{loaded_.files.pathOf(file), {}, {}};
            std::map<std::string, StoredName, std::less<>> places;
            const auto names = requestUrlNames(bytes, thing.place.file);
            for (const StoredName& name : names ? *names : StoredNames())
                places.emplace(name.name, name);
            const auto urls = model->urlConfigs();
            for (const auto& url : urls ? *urls : YGHttpReqUrlModel::List::Items()) {
                const auto place = places.find(url->urlKey().value_or(""));
                if (place != places.end())
                    thingOf(*url).place = place->second.place;
            }
            files.items.push_back({Subject::requestUrlFile, file, &thing});
        }
        root.lists.push_back(std::move(files));
    }

    // ---- The host ----

    void addHost(Thing& root) {
        const StandAloneHost::Opened opened = StandAloneHost::open(loaded_.host->root());
        const Place place{loaded_.files.pathOf("host.json"), {}, {}};
        root.further.push_back({"rightLevel", "",
                                opened ? opened.host->getUserRightDescription() : std::nullopt,
                                false, place});
        root.further.push_back({"configServer", "",
                                opened ? opened.host->configServer() : std::nullopt, false, place});
        ItemList lists{wildcardMapping};
        lists.isOrdered = false;
        const auto mapping = loaded_.host->getMappingDicForKey(wildcardMapping);
        lists.isAbsent = !mapping;
        for (const auto& [name, values] : mapping ? *mapping : MappingDic()) {
            Thing& thing = add();
            thing.place = place;
            std::string text;
            for (const std::string& value : values)
                text.append(value).append(";");
            thing.further.push_back({"values", "", std::move(text)});
            lists.items.push_back({Subject::wildcardList, kept(name), &thing});
        }
        root.lists.push_back(std::move(lists));
    }

    /// The elements that define groups of things, which have no record of their own.
    class Definitions {
    public:
        explicit Definitions(const Gathering& findings) {
            for (const NameUse& use : findings.names()) {
                const Naming kind = use.row->names;
                if (use.row->defines && (kind == Naming::magicGroup || kind == Naming::eventGroup ||
                                         kind == Naming::eventTemplate))
                    elements_[{kind, std::string(use.value)}] = use.element;
            }
        }

        xml::Element find(Subject subject, const std::string& name) const {
            const auto found =
                elements_.find({subject == Subject::magicGroup   ? Naming::magicGroup
                                : subject == Subject::eventGroup ? Naming::eventGroup
                                                                 : Naming::eventTemplate,
                                name});
            return found == elements_.end() ? xml::Element() : found->second;
        }

    private:
        std::map<std::pair<Naming, std::string>, xml::Element> elements_;
    };

    Things& things_;
    const Loaded& loaded_;
    const Gathering& findings_;
    const Definitions definitions_{findings_};
    const PaletteFile* palette_ = nullptr;
    std::vector<std::pair<Thing*, Work>> pending_;
};

Things::Things(const Loaded& loaded, const Gathering& findings, Interning& interning)
    : loaded_(loaded), findings_(findings), interning_(interning) {
    Making making(*this);
    root_ = &making.root();
    number(*root_);
}

/// From the inside to the outside, without a stack of calls, for panels may be nested deeply.
void Things::number(Thing& top) {
    struct Step {
        Thing* thing;
        std::size_t list = 0;
        std::size_t item = 0;
    };
    std::vector<Step> steps{{&top}};
    while (!steps.empty()) {
        Step& step = steps.back();
        Thing& thing = *step.thing;
        if (step.list < thing.lists.size()) {
            const ItemList& list = thing.lists[step.list];
            if (step.item == list.items.size()) {
                ++step.list;
                step.item = 0;
            } else if (const Item& item = list.items[step.item++]; item.thing->id == 0) {
                steps.push_back({const_cast<Thing*>(item.thing)});
            }
            continue;
        }
        steps.pop_back();
        Held held{"fields ", ""};
        addNumber(held.fields, thing.pixels);
        if (thing.fields)
            thing.fields->add(thing.record, held);
        for (const ThingField& field : thing.further)
            addValue(field.isName ? held.name : held.fields, field.value);
        std::uint64_t order = mixed(mixed(orderBegin, held.fields), held.name);
        thing.fieldsId = interning_(held.fields);
        std::string key;
        key = "body ";
        addNumber(key, thing.fieldsId);
        for (const ItemList& list : thing.lists) {
            addText(key, list.field);
            addNumber(key, list.isAbsent ? 1 : 0);
            addNumber(key, list.items.size());
            for (const Item& item : list.items) {
                addNumber(key, static_cast<std::uint64_t>(item.subject));
                addText(key, item.name);
                addNumber(key, item.thing->id);
                order = mixed(order, item.thing->order);
                thing.size += item.thing->size;
            }
        }
        thing.bodyId = interning_(key);
        key = "whole ";
        addNumber(key, thing.bodyId);
        thing.id = interning_(key + held.name);
        thing.order = order;
    }
}

xml::Element Things::elementOf(const Thing& thing) const {
    return thing.isRead && !thing.element ? findings_.originOf(thing.record) : thing.element;
}

Place Things::belowRoot(Place place) const {
    place.file = loaded_.files.nameOf(place.file);
    return place;
}

Place Things::placeOf(const Thing& thing) const {
    if (!thing.place.file.empty())
        return belowRoot(thing.place);
    return belowRoot(elementOf(thing).tagPlace().value_or(Place()));
}

Place Things::placeOf(const Thing& thing, const ThingField& field) const {
    if (!field.place.file.empty())
        return belowRoot(field.place);
    if (!field.attribute.empty()) {
        if (auto place = elementOf(thing).attributePlace(field.attribute))
            return belowRoot(std::move(*place));
    }
    return placeOf(thing);
}

}  // namespace yg
