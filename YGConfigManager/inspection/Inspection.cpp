// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Inspection.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <system_error>
#include <tuple>
#include <utility>

#include "YGConfigManager/files/UnsavedTexts.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/inspection/Checks.h"
#include "YGConfigManager/inspection/Consequences.h"
#include "YGConfigManager/inspection/Suggestions.h"
#include "YGConfigManager/inspection/Wording.h"
#include "YGConfigManager/text/Paths.h"

namespace yg {

struct Inspection::Content {
    std::vector<RootFinding> findings;
    std::vector<NamePlace> names;
    std::optional<SourceFiles> files;
    files::UnsavedTexts unsaved;
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

RootFinding rootFinding(const Found& found, const Loaded& loaded, const KnownNames& known) {
    const Finding& finding = found.finding;
    RootFinding made;
    made.rule = &finding.rule;
    made.file = loaded.files.nameOf(finding.place.file);
    setPoints(made, finding.place);
    made.message = messageOf(found);
    made.readAs = readAs(found);
    made.element = finding.element;
    made.attribute = unlessEmpty(finding.attribute);
    made.value = unlessEmpty(finding.value);
    made.suggestion = suggestionFor(found, loaded, known);
    for (const RelatedPlace& related : finding.related) {
        RootPlace place;
        place.file = loaded.files.nameOf(related.place.file);
        setPoints(place, related.place);
        place.message = related.meaning;
        made.related.push_back(std::move(place));
    }
    if (finding.place.begin.line != 0) {
        for (const xml::Element& element : loaded.files.file(made.file).elementsAt(made.begin))
            made.path.push_back(shortForm(element));
    }
    return made;
}

std::vector<NamePlace> namePlaces(const std::vector<NameUse>& uses, const SourceFiles& files) {
    std::vector<NamePlace> places;
    for (const NameUse& use : uses) {
        const auto add = [&](std::size_t offset, std::size_t size) {
            const auto place = use.element.valuePlace(use.row->name, offset, size);
            if (place)
                places.push_back({use.row->names, use.value.substr(offset, size), use.row->defines,
                                  files.nameOf(place->file), place->begin, place->end});
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
    try {
        const std::string folder(*root);
        std::error_code failure;
        if (folder.find('\0') != std::string::npos ||
            !std::filesystem::is_directory(folder, failure)) {
            error =
                "root folder \"" + folder + "\": " +
                (failure ? failure : std::make_error_code(std::errc::not_a_directory)).message();
            return nullptr;
        }
        auto content = std::make_unique<Content>();
        for (const auto& [name, text] : options.unsaved)
            content->unsaved.emplace(text::joinPath(folder, name), text);
        const files::UnsavedTextsScope unsaved(content->unsaved);
        const auto host = std::make_shared<InspectionHost>(folder);
        const HostOfThread hostOfThread(host);

        Gathering findings;
        {
            const Loaded loaded = load(host, findings);
            for (const auto check : {checkFiles, checkHost, checkLayout, checkEvents, checkPalettes,
                                     checkServers, checkSettings, checkValues})
                check(loaded, findings);
            const auto consequences = countConsequences(findings.found(), loaded);
            const KnownNames known(findings.names());
            for (std::size_t at = 0; at < findings.found().size(); ++at) {
                content->findings.push_back(rootFinding(findings.found()[at], loaded, known));
                content->findings.back().consequences = consequences[at];
            }
            content->names = namePlaces(findings.names(), loaded.files);
        }
        std::ranges::stable_sort(content->findings, {}, [](const RootFinding& finding) {
            return std::tuple(std::string_view(finding.file), finding.begin, finding.rule->name,
                              finding.end);
        });
        content->files.emplace(folder);
        return std::shared_ptr<const Inspection>(new Inspection(std::move(content)));
    } catch (const std::bad_alloc&) {
        error = outOfMemory;
        return nullptr;
    }
}

std::span<const RootFinding> Inspection::findings() const {
    return content_->findings;
}

std::span<const NamePlace> Inspection::names() const {
    return content_->names;
}

std::optional<std::string> Inspection::line(OptionalText file, std::uint32_t number) const {
    const files::UnsavedTextsScope unsaved(content_->unsaved);
    const auto found = content_->files->file(*file).line(number);
    return found ? std::optional<std::string>(*found) : std::nullopt;
}

}  // namespace yg
