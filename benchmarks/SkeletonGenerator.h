// SPDX-License-Identifier: MIT
//
// Makes a realistic layout of a wanted size: the same files for the same size on every machine.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace yg::benchmarks {

/// The files of one layout, in the folders of a stand-alone root.
struct Skeleton {
    std::filesystem::path root;
    std::size_t bytes = 0;  ///< of all files together

    std::string stylePath() const { return root / "config/custompage_template.xml"; }
    std::string tabPath() const { return root / "config/tab_styles.xml"; }
    std::string magicPath() const { return root / "config/magic_panels.xml"; }
    std::string softStylePath() const { return root / "soft_optimize/custompage_template.xml"; }
    std::string softMagicPath() const { return root / "soft_optimize/magic_panels.xml"; }
    std::string reusePath() const { return root / "base_optimize/reuse_panels.xml"; }
};

/// Writes a layout of about `bytes` into the folder.
Skeleton makeSkeleton(const std::filesystem::path& root, std::size_t bytes);

/// One file of about so many bytes, of the kind that its name says: "styles", "magic panels",
/// "events", "palette", "servers" or "settings"; empty for any other name.
std::string makeFile(std::string_view kind, std::size_t bytes);

/// Writes a whole root of about `bytes`: a layout that takes two thirds of them, events, palettes,
/// servers, settings and web pages. Answers the bytes of all files.
std::size_t makeRoot(const std::filesystem::path& root, std::size_t bytes);

/// A palette of about `bytes`, of colours and keys.
std::string makePalette(std::size_t bytes);

}  // namespace yg::benchmarks
