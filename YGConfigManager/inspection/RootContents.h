// SPDX-License-Identifier: MIT
//
// What an inspection has loaded: the records themselves, with the place in the files that each was
// read from. Kept on request, InspectionOptions::keepsContents; see Inspection::contents.
//
// The loaders answer as those of a terminal do. One thread at a time uses them and what they
// answer, and they must not outlive the inspection.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/export.h"
#include "YGConfigManager/inspection/PaletteMeasures.h"
#include "YGConfigManager/inspection/RootFinding.h"
#include "YGConfigManager/inspection/TemplateSignature.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"

namespace yg {

class Gathering;
struct Loaded;

class YG_EXPORT RootContents {
public:
    /// Which files of the storage are seen: those that count for the user, those that are shipped,
    /// or the user's own.
    enum class Storage { asUsed, shipped, user };

    /// A palette file that was read.
    struct Palette {
        std::string file;   ///< below the root
        std::int8_t style;  ///< 0 the light theme, 1 the dark one
        bool isUsers;       ///< the user's own, which counts instead of the shipped one
        std::shared_ptr<const YGPaletteLoad> palette;  ///< never null
    };

    /// A server file that was read.
    struct Servers {
        std::string file;   ///< below the root
        std::string right;  ///< of the users that it is for: "free" or "l2"
        bool isGray;        ///< for users in the grey release
        bool isUsers;       ///< the user's own, which counts instead of the shipped one
        std::shared_ptr<const YGServerCfgLoader> servers;  ///< never null
    };

    ~RootContents();
    RootContents(const RootContents&) = delete;
    RootContents& operator=(const RootContents&) = delete;

    /// The pages and panels; empty where their files cannot be read.
    const YGStyleConfigLoad& layout() const;

    /// The templates of custom pages in the order in which they are looked for; empty when memory
    /// does not suffice.
    std::vector<TemplateSignature> templates() const;

    /// Never null; empty when the event file cannot be read.
    std::shared_ptr<const YGEventLoader> events() const;

    /// In the order of loading, the shipped ones first.
    std::span<const Palette> palettes() const;
    std::span<const Servers> servers() const;

    /// The pairs of contrast.json that could be measured, in its order, each in every palette.
    std::span<const ContrastPair> contrasts() const;

    /// The path of the file that the PATH of an image names; absent without a folder for
    /// images, for a path that leads out of it, and when memory does not suffice.
    std::optional<std::string> imageFile(std::string_view path) const;

    /// Names below the root, those of "storage" before those of "user".
    std::span<const std::string> settingsFiles() const;
    std::span<const std::string> webPageFiles() const;
    std::span<const std::string> requestUrlFiles() const;

    /// From the key to the address of the entries of a request URL list that count, by key; empty
    /// when it cannot be read or memory does not suffice.
    std::map<std::string, RootPlace> requestUrlPlaces(const std::string& file) const;

    /// The start tag of the element that a record was read from, without a message; absent for a
    /// record that was made from none, and when memory does not suffice.
    std::optional<RootPlace> placeOf(const void* record) const;

    /// Runs `work` with the root's host as that of the calling thread: for look-ups that ask the
    /// host, as those of custom pages do, and for loaders that one makes. What `work` throws comes
    /// out of it.
    void asTerminal(Storage storage, const std::function<void()>& work) const;

private:
    friend class Inspection;
    RootContents(std::unique_ptr<Gathering> gathering, std::unique_ptr<Loaded> loaded);

    std::unique_ptr<Gathering> gathering_;
    std::unique_ptr<Loaded> loaded_;
    std::vector<Palette> palettes_;
    std::vector<Servers> servers_;
};

}  // namespace yg
