// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/RootContents.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"
#include "YGConfigManager/inspection/StoredNames.h"
#include "YGConfigManager/inspection/Templates.h"
#include "YGConfigManager/inspection/Trace.h"
#include "YGConfigManager/palette/PaletteAttributes.h"
#include "YGConfigManager/text/Paths.h"

namespace yg {

namespace {

bool isUsers(std::string_view file) {
    return file.starts_with(userFolder) && file.substr(userFolder.size()).starts_with('/');
}

InspectionHost::Storage storageOf(RootContents::Storage storage) {
    switch (storage) {
        case RootContents::Storage::shipped:
            return InspectionHost::Storage::shipped;
        case RootContents::Storage::user:
            return InspectionHost::Storage::user;
        case RootContents::Storage::asUsed:
            break;
    }
    return InspectionHost::Storage::asUsed;
}

std::optional<RootPlace> tagPlaceOf(const Loaded& loaded, const xml::Element& element) {
    const auto place = element ? element.tagPlace() : std::nullopt;
    if (!place)
        return std::nullopt;
    return RootPlace{loaded.files.nameOf(place->file), place->begin, place->end, ""};
}

/// What the host shows as long as it lives.
class Seeing {
public:
    Seeing(InspectionHost& host, InspectionHost::Storage storage) : host_(host) {
        host_.see(storage);
    }
    ~Seeing() { host_.see(InspectionHost::Storage::asUsed); }
    Seeing(const Seeing&) = delete;
    Seeing& operator=(const Seeing&) = delete;

private:
    InspectionHost& host_;
};

}  // namespace

RootContents::RootContents(std::unique_ptr<Gathering> gathering, std::unique_ptr<Loaded> loaded)
    : gathering_(std::move(gathering)), loaded_(std::move(loaded)) {
    // Pages that are built from now on repeat what the files gave.
    gathering_->takeOnlyAboutSlots(true);
    for (const LoadedPalette& each : loaded_->palettes)
        palettes_.push_back({each.file, each.style, isUsers(each.file), each.palette});
    for (const LoadedServers& each : loaded_->servers)
        servers_.push_back({each.file, each.right, each.isGray, isUsers(each.file), each.servers});
}

RootContents::~RootContents() = default;

const YGStyleConfigLoad& RootContents::layout() const {
    return *loaded_->layout;
}

std::shared_ptr<const YGEventLoader> RootContents::events() const {
    return loaded_->events;
}

std::span<const RootContents::Palette> RootContents::palettes() const {
    return palettes_;
}

std::span<const RootContents::Servers> RootContents::servers() const {
    return servers_;
}

std::span<const ContrastPair> RootContents::contrasts() const {
    return gathering_->contrasts();
}

std::optional<std::string> RootContents::imageFile(std::string_view path) const {
    try {
        const auto folder = loaded_->host->getDefualtFolderPath(imageFolderKind);
        if (folder && !folder->empty() && !text::leadsOut(path))
            return text::joinPath(*folder, path);
    } catch (const std::bad_alloc&) {
        // As without a folder.
    }
    return std::nullopt;
}

std::span<const std::string> RootContents::settingsFiles() const {
    return loaded_->settingsFiles;
}

std::span<const std::string> RootContents::webPageFiles() const {
    return loaded_->webPageFiles;
}

std::span<const std::string> RootContents::requestUrlFiles() const {
    return loaded_->requestUrlFiles;
}

std::map<std::string, RootPlace> RootContents::requestUrlPlaces(const std::string& file) const {
    try {
        std::map<std::string, RootPlace> places;
        const auto names = requestUrlNames(loaded_->files.file(file).bytes(), file);
        for (const StoredName& name : names.value_or(StoredNames())) {
            RootPlace place{file, name.place.begin, name.place.end, ""};
            if (name.content) {
                place.begin = std::min(place.begin, name.contentPlace.begin);
                place.end = std::max(place.end, name.contentPlace.end);
            }
            places.emplace(name.name, std::move(place));
        }
        return places;
    } catch (const std::bad_alloc&) {
        return {};
    }
}

std::vector<TemplateSignature> RootContents::templates() const {
    return guarded(explaining, [&] {
        const HostOfThread hostOfThread(loaded_->host);
        return signaturesOf(*loaded_->layout, [&](const xml::Element& element) {
            return tagPlaceOf(*loaded_, element).value_or(RootPlace());
        });
    });
}

std::optional<RootPlace> RootContents::placeOf(const void* record) const {
    try {
        return tagPlaceOf(*loaded_, gathering_->originOf(record));
    } catch (const std::bad_alloc&) {
        // As of a record that was made from no element.
        return std::nullopt;
    }
}

void RootContents::asTerminal(Storage storage, const std::function<void()>& work) const {
    const HostOfThread hostOfThread(loaded_->host);
    const Seeing seeing(*loaded_->host, storageOf(storage));
    work();
}

}  // namespace yg
