// SPDX-License-Identifier: MIT
//
// The loaders of XML files.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/host/Host.h"

#include "growth/Counting.h"

namespace yg::testing {

/// Answers the paths that a test sets, and keeps the last line of the log.
class GrowthHost final : public Host {
public:
    std::optional<std::string> storagePath, softPath, basePath;
    std::shared_ptr<const MappingDic> mapping;
    std::string lastLine;

    std::optional<std::string> getStorageFilePath(std::int64_t, std::optional<std::string_view>,
                                                  std::optional<std::string_view>, bool) override {
        return storagePath;
    }
    std::optional<std::string> getUserRightDescription() override { return std::nullopt; }
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        return softPath;
    }
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        return basePath;
    }
    std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view) override {
        return mapping;
    }
    std::optional<std::string> getDefualtFolderPath(std::int64_t) override;
    void writeLog(LogChannel, std::string_view message) override { lastLine = message; }
};

/// The host in use, without any path.
GrowthHost& newHost();

/// Takes every finding and keeps none.
class CountingSink final : public DiagnosticsSink {
public:
    std::size_t valueBytes = 0;
    void report(const Finding& finding) override { valueBytes += finding.value.size(); }
};

struct Loader {
    std::string_view name;
    std::string_view open;   ///< what stands before the content
    std::string_view close;  ///< and after it
    /// Loads the file at the path; answers what is said when it is refused, otherwise "".
    std::string (*load)(const std::string& path);
    bool hasPositions = false;  ///< whether its parse keeps them
};

/// The reader of XML, alone and with positions, and each loader without and with a listener.
std::span<const Loader> loaders();

/// A loader's work on a file of content that is made.
MakeWork plainFileWork(std::string (*load)(const std::string& path),
                       std::function<std::string(std::size_t bytes)> make);

/// The same with a declaration in single quotes, which has libxml2 judge the file: so two files of
/// different sizes are read in the same way, and in the slower one.
MakeWork fileWork(std::string (*load)(const std::string& path),
                  std::function<std::string(std::size_t bytes)> make);

/// What it takes to load a plain layout, without a listener or with one.
const Measured& plainLayoutLoad(bool hasPositions);

// ---- What loads a file. ----

/// Styles, magic panels and reuse panels together; an empty path is none.
std::string loadLayout(const std::string& styles, const std::string& magicPanels,
                       const std::string& reusePanels);
std::string loadStyles(const std::string& path);
std::string loadStylesReported(const std::string& path);
std::string loadSoftStyles(const std::string& path);
std::string loadSoftStylesReported(const std::string& path);
std::string loadTabStyles(const std::string& path);
std::string loadMagicPanels(const std::string& path);
std::string loadMagicPanelsReported(const std::string& path);
std::string loadSoftMagicPanelsReported(const std::string& path);
std::string loadReusePanels(const std::string& path);
std::string loadEvents(const std::string& path);
std::string loadEventsReported(const std::string& path);
std::string loadPalette(const std::string& path);
std::string loadPaletteReported(const std::string& path);
std::string loadServers(const std::string& path);
std::string loadServersReported(const std::string& path);
std::string deliverServers(const std::string& path);
std::string loadSettings(const std::string& path);
std::string loadSettingsReported(const std::string& path);
std::string loadWebPages(const std::string& path);
std::string loadWebPagesReported(const std::string& path);
std::string replaceWebPages(const std::string& path);

}  // namespace yg::testing
