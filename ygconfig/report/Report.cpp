// SPDX-License-Identifier: MIT
#include "ygconfig/report/Report.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "YGConfigManager/version.h"

#include "ygconfig/report/Model.h"
#include "ygconfig/report/PageText.h"

namespace yg::tool {

namespace {

/// The lines of the files that places are in, so that the page can show them. What goes beyond is
/// left out; places name it then, and nothing more.
void writeSources(JsonWriter& json, ModelSource& source) {
    constexpr std::size_t maxBytes = std::size_t{8} * 1024 * 1024;
    std::size_t bytes = 0;
    json.list(source.places.files(), [&](const std::string& file) {
        json.object([&] {
            json.member("name", file);
            json.member("lines", [&] {
                std::vector<std::string> lines;
                for (std::uint32_t number = 1; bytes <= maxBytes; ++number) {
                    auto line = source.inspection.line(file, number);
                    if (!line)
                        break;
                    bytes += line->size() + 1;
                    lines.push_back(*std::move(line));
                }
                if (bytes > maxBytes)
                    json.write(nullptr);
                else
                    json.write(lines);
            });
        });
    });
}

/// Those whose projection equals the key. clang 14 cannot walk through what ranges::equal_range
/// answers with g++'s library.
template <class Key, class Projection>
std::span<const NamePlace> namesEqual(std::span<const NamePlace> names, const Key& key,
                                      Projection projection) {
    return {std::ranges::lower_bound(names, key, {}, projection),
            std::ranges::upper_bound(names, key, {}, projection)};
}

}  // namespace

void ModelPlaces::writeAt(JsonWriter& json, const std::optional<RootPlace>& place) {
    if (!place) {
        json.member("at", nullptr);
        return;
    }
    std::vector<std::size_t> numbers{numberOf(place->file), place->begin.line, place->begin.column};
    if (place->end > place->begin)
        numbers.insert(numbers.end(), {place->end.line, place->end.column});
    json.member("at", numbers);
}

std::optional<RootPlace> ModelPlaces::definition(Naming kind, std::string_view name,
                                                 std::optional<std::string_view> file) const {
    const NamePlace* const found = definitionOf(kind, name, file);
    if (!found)
        return std::nullopt;
    return RootPlace{found->file, found->tagBegin, found->tagEnd, ""};
}

const NamePlace* ModelPlaces::definitionOf(Naming kind, std::string_view name,
                                           std::optional<std::string_view> file) const {
    const auto key = [](const NamePlace& place) {
        return std::pair(place.kind, std::string_view(place.name));
    };
    const NamePlace* found = nullptr;
    const std::pair wanted(kind, name);
    const std::span<const NamePlace> equal = namesEqual(inspection_.names(), wanted, key);
    for (const NamePlace& place : equal) {
        if (place.defines && (!file || place.file == *file))
            found = &place;
    }
    return found;
}

std::size_t ModelPlaces::numberOf(const std::string& file) {
    const auto [found, isNew] = numbers_.try_emplace(file, files_.size());
    if (isNew)
        files_.push_back(file);
    return found->second;
}

void writeModel(const ReportOf& report, Output& output) {
    ModelSource source(report.inspection);
    JsonWriter json(output, JsonForm::inHtml);
    const auto subject = [&](void (*write)(JsonWriter&, ModelSource&)) {
        return [&json, &source, write] { write(json, source); };
    };
    json.object([&] {
        json.member("root", report.root);
        json.member("version", std::string_view(YGConfigManagerVersionString));
        json.member("layout", subject(writeLayout));
        json.member("palettes", subject(writePalettes));
        json.member("events", subject(writeEvents));
        json.member("servers", subject(writeServers));
        json.member("settings", subject(writeSettings));
        json.member("webPages", subject(writeWebPages));
        json.member("requestUrls", subject(writeRequestUrls));
        json.member("findings", subject(writeFindings));
        json.member("sources", subject(writeSources));
    });
}

void writePage(const std::function<void()>& model, PageKind kind, Output& output) {
    const bool isLive = kind == PageKind::live;
    for (const std::string_view piece : isLive ? liveBefore : fileBefore)
        output.add(piece);
    model();
    for (const std::string_view piece : isLive ? liveBehind : fileBehind)
        output.add(piece);
}

}  // namespace yg::tool
