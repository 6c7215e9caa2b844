// SPDX-License-Identifier: MIT
//
// The palette files of a root with the names in them, and the checks that go by these. Internal.
// Throws std::bad_alloc.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/inspection/Gathering.h"
#include "YGConfigManager/inspection/Loaded.h"
#include "YGConfigManager/records/RecordMap.h"

namespace yg {

/// One palette file that was read.
class PaletteFile {
public:
    /// Names or keys, each with the place that counts.
    using Names = RecordMap<const NameUse*>;

    PaletteFile(const LoadedPalette& loaded, std::string path)
        : loaded_(&loaded), path_(std::move(path)) {}

    const std::string& name() const { return loaded_->file; }  ///< below the root
    const std::string& path() const { return path_; }
    bool isDark() const { return loaded_->style != 0; }
    bool isUsers() const { return name().starts_with("user/"); }
    std::string_view theme() const { return isDark() ? "dark" : "light"; }
    const YGPaletteLoad& palette() const { return *loaded_->palette; }

    const Names& defined(Naming kind) const { return of(kind, defined_); }
    const Names& used(Naming kind) const { return of(kind, used_); }

    void add(const NameUse& use);

    /// The entry of the colour that a key shows; null when it shows none.
    const NameUse* colorOf(std::string_view key) const;

private:
    using ByKind = std::map<Naming, Names>;
    static const Names& of(Naming kind, const ByKind& names);

    const LoadedPalette* loaded_;
    std::string path_;
    ByKind defined_;
    ByKind used_;
};

/// All of them, the shipped ones first and the light one before the dark one. `loaded` and the
/// names that `findings` has must outlive them.
std::vector<PaletteFile> paletteFilesOf(const Loaded& loaded, const Gathering& findings);

/// The files that count together, as a light and a dark theme: the shipped ones, and those that a
/// user has, alone or beside a shipped one.
std::vector<std::pair<const PaletteFile*, const PaletteFile*>> themesOf(
    const std::vector<PaletteFile>& files);

void checkThemes(const std::vector<PaletteFile>& files, const Loaded& loaded, Gathering& findings);
void checkPaletteNames(const std::vector<PaletteFile>& files, Gathering& findings);
void checkPaletteNumbers(const std::vector<PaletteFile>& files, Gathering& findings);
void checkImages(const std::vector<PaletteFile>& files, const Loaded& loaded, Gathering& findings);
void checkContrast(const std::vector<PaletteFile>& files, const Loaded& loaded,
                   Gathering& findings);

}  // namespace yg
