// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Inspection.h"

#include <algorithm>
#include <exception>
#include <mutex>
#include <new>
#include <tuple>
#include <utility>

#include "YGConfigManager/files/UnsavedTexts.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/inspection/Checks.h"
#include "YGConfigManager/inspection/Consequences.h"
#include "YGConfigManager/inspection/Delivering.h"
#include "YGConfigManager/inspection/RootContents.h"
#include "YGConfigManager/inspection/Suggestions.h"
#include "YGConfigManager/inspection/Wording.h"
#include "YGConfigManager/text/Paths.h"

namespace yg {

struct Inspection::Content {
    std::vector<RootFinding> findings;
    std::unique_ptr<const RootContents> contents;
    files::UnsavedTexts unsaved;
    std::mutex reading;
    // Under the lock.
    std::optional<SourceFiles> files;
    std::vector<NameUse> uses;  ///< that names were not made of
    std::vector<NamePlace> names;
};

namespace {

/// A point that stands for the whole file is its beginning.
void setPoints(auto& to, const Place& place) {
    if (place.begin.line == 0)
        return;
    const auto known = [](TextPoint point) {
        return TextPoint{point.line, std::max<std::uint32_t>(point.column, 1)};
    };
    to.begin = known(place.begin);
    to.end = std::max(known(place.end), to.begin);
}

std::optional<std::string> unlessEmpty(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

/// "style[quote]", the name alone without one.
std::string shortForm(const xml::Element& element) {
    std::string form(element.name());
    for (const char* const attribute : {"name", "NAME", "key", "type"}) {
        if (const auto name = element.attribute(attribute))
            return form.append("[").append(*name).append("]");
    }
    return form;
}

RootPlace rootPlace(const SourceFiles& files, const Place& place, std::string message) {
    RootPlace made;
    made.file = files.nameOf(place.file);
    setPoints(made, place);
    made.message = std::move(message);
    return made;
}

RootFinding rootFinding(const Found& found, const Loaded& loaded, Suggestions& suggestions) {
    const Finding& finding = found.finding;
    RootFinding made;
    made.rule = &finding.rule;
    made.file = loaded.files.nameOf(finding.place.file);
    Remarks remarks = suggestions.remarksOn(found);
    setPoints(made, remarks.place);
    made.message = messageOf(found);
    if (!remarks.addition.empty())
        made.message += ' ' + remarks.addition;
    made.readAs = readAs(found);
    made.element = finding.element;
    made.attribute = unlessEmpty(finding.attribute);
    made.value = unlessEmpty(finding.value);
    made.suggestion = std::move(remarks.suggestion);
    made.extentBegin = made.begin;
    made.extentEnd = made.end;
    if (finding.extent.begin.line != 0) {
        made.extentBegin = finding.extent.begin;
        made.extentEnd = finding.extent.end;
    }
    for (const RelatedPlace& related : finding.related)
        made.related.push_back(
            rootPlace(loaded.files, related.place, std::string(related.meaning)));
    return made;
}

/// What is in an element that has no effect is lost with it: the keys of a misspelt section.
void addLostContent(RootFinding& made, const Finding& finding, const SourceFiles& files) {
    if (finding.rule.handling != Handling::dropped || !finding.attribute.empty() ||
        finding.element.empty() || finding.extent.begin.line == 0)
        return;
    const auto around = files.file(made.file).elementsAt(finding.extent.begin);
    if (around.empty() || around.back().place() != finding.extent)
        return;
    for (const xml::Element& child : around.back().elements())
        made.consequences.push_back(rootPlace(files, child.place().value_or(Place()),
                                              "This is lost with the element around it."));
}

std::vector<NamePlace> namePlaces(const std::vector<NameUse>& uses, const SourceFiles& files) {
    std::vector<NamePlace> places;
    for (const NameUse& use : uses) {
        const auto add = [&](std::size_t offset, std::size_t size) {
            const auto place = use.element.valuePlace(use.row->name, offset, size);
            if (!place)
                return;
            const Place tag = use.element.tagPlace().value_or(*place);
            places.push_back({use.row->names, std::string(use.value.substr(offset, size)),
                              use.row->defines, files.nameOf(place->file), place->begin, place->end,
                              tag.begin, tag.end});
        };
        if (use.row->kind != AttributeKind::nameList) {
            add(0, use.value.size());
            continue;
        }
        for (std::size_t at = 0; at <= use.value.size();) {
            const std::size_t end = std::min(use.value.find(';', at), use.value.size());
            if (end > at)
                add(at, end - at);
            at = end + 1;
        }
    }
    std::ranges::sort(places, {}, [](const NamePlace& place) {
        return std::tie(place.kind, place.name, place.file, place.begin);
    });
    return places;
}

}  // namespace

Inspection::Inspection(std::unique_ptr<Content> content) : content_(std::move(content)) {}

Inspection::~Inspection() = default;

std::shared_ptr<const Inspection> Inspection::open(OptionalText root, std::string& error,
                                                   const InspectionOptions& options) {
    return make(root, error, options, [](const auto& host, Gathering& findings) {
        auto loaded = std::make_unique<Loaded>(load(host, findings));
        for (const auto check : {checkFiles, checkHost, checkLayout, checkEvents, checkPalettes,
                                 checkServers, checkSettings, checkValues})
            check(*loaded, findings);
        return loaded;
    });
}

std::shared_ptr<const Inspection> Inspection::ofDelivery(const Delivery& delivery,
                                                         OptionalText root, std::string& error) {
    try {
        // Findings show the lines of the delivery.
        const InspectionOptions options{{{delivery.name, delivery.bytes}}};
        return make(root, error, options, [&](const auto& host, Gathering& findings) {
            std::unique_ptr<Loaded> loaded;
            if (tryDelivery(delivery, host->root(), findings, error))
                loaded = std::make_unique<Loaded>(host);
            return loaded;
        });
    } catch (const std::bad_alloc&) {
        error = outOfMemory;
        return nullptr;
    }
}

template <class Inspect>
std::shared_ptr<const Inspection> Inspection::make(OptionalText root, std::string& error,
                                                   const InspectionOptions& options,
                                                   Inspect&& inspect) {
    try {
        const std::string folder(*root);
        error = whyNoRoot(folder);
        if (!error.empty())
            return nullptr;
        auto content = std::make_unique<Content>();
        for (const auto& [name, text] : options.unsaved)
            content->unsaved.emplace(text::joinPath(folder, name), text);
        const files::UnsavedTextsScope unsaved(content->unsaved);
        const auto host = std::make_shared<InspectionHost>(folder);
        const HostOfThread hostOfThread(host);

        auto gathering = std::make_unique<Gathering>();
        Gathering& findings = *gathering;
        std::unique_ptr<Loaded> loaded = inspect(host, findings);
        if (!loaded)
            return nullptr;
        throwIfOutOfMemory(*host, findings);
        {
            Suggestions suggestions(findings.names(), *loaded);
            for (const Cause& cause :
                 withConsequences(findings.takeFound(), *loaded, suggestions)) {
                RootFinding made = rootFinding(cause.found, *loaded, suggestions);
                addLostContent(made, cause.found.finding, loaded->files);
                for (const Found& each : cause.consequences)
                    made.consequences.push_back(
                        rootPlace(loaded->files, each.finding.extent, messageOf(each)));
                content->findings.push_back(std::move(made));
            }
        }
        content->uses = findings.takeNames();
        content->files = std::exchange(loaded->files, SourceFiles(folder));
        if (options.keepsContents)
            content->contents.reset(new RootContents(std::move(gathering), std::move(loaded)));
        std::ranges::stable_sort(content->findings, {}, [](const RootFinding& finding) {
            return std::tuple(std::string_view(finding.file), finding.begin, finding.rule->name,
                              finding.end);
        });
        return std::shared_ptr<const Inspection>(new Inspection(std::move(content)));
    } catch (const std::bad_alloc&) {
        error = outOfMemory;
    } catch (const std::exception& failure) {
        error = failure.what();
    }
    return nullptr;
}

std::span<const RootFinding> Inspection::findings() const {
    return content_->findings;
}

std::span<const NamePlace> Inspection::names() const {
    const std::lock_guard lock(content_->reading);
    try {
        if (!content_->uses.empty())
            content_->names = namePlaces(content_->uses, *content_->files);
        content_->uses.clear();
    } catch (const std::bad_alloc&) {
        // The next call tries again.
    }
    return content_->names;
}

std::optional<std::string> Inspection::attributeBeside(const NamePlace& name,
                                                       OptionalText attribute) const {
    const std::lock_guard lock(content_->reading);
    const files::UnsavedTextsScope unsaved(content_->unsaved);
    try {
        const auto around = content_->files->file(name.file).elementsAt(name.begin);
        if (const auto value = around.empty() ? std::nullopt : around.back().attribute(*attribute))
            return std::string(*value);
    } catch (const std::bad_alloc&) {
        // As without the attribute.
    }
    return std::nullopt;
}

const RootContents* Inspection::contents() const {
    return content_->contents.get();
}

std::optional<std::string> Inspection::line(OptionalText file, std::uint32_t number) const {
    const std::lock_guard lock(content_->reading);
    const files::UnsavedTextsScope unsaved(content_->unsaved);
    const auto found = content_->files->file(*file).line(number);
    return found ? std::optional<std::string>(*found) : std::nullopt;
}

std::vector<std::string> Inspection::pathOf(const RootFinding& finding) const {
    const std::lock_guard lock(content_->reading);
    const files::UnsavedTextsScope unsaved(content_->unsaved);
    std::vector<std::string> path;
    for (const xml::Element& element :
         content_->files->file(finding.file).elementsAt(finding.begin))
        path.push_back(shortForm(element));
    return path;
}

}  // namespace yg
