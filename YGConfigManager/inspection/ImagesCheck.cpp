// SPDX-License-Identifier: MIT
//
// Image files: why one cannot be read, which one was probably meant, and those that no palette
// names.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/graphics/ImageFileReader.h"
#include "YGConfigManager/inspection/PaletteFiles.h"
#include "YGConfigManager/palette/PaletteAttributes.h"
#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/Nearest.h"
#include "YGConfigManager/text/Paths.h"

namespace yg {

namespace {

namespace fs = std::filesystem;

/// No more entries of a folder are looked at, nor of all folders in search of unused files.
constexpr std::size_t mostEntries = 10'000;

constexpr std::size_t mostUnused = 20;

/// The same for all letter cases of ASCII.
std::string folded(std::string_view text) {
    std::string small(text);
    for (char& character : small) {
        if (character >= 'A' && character <= 'Z')
            character = static_cast<char>(character - 'A' + 'a');
    }
    return small;
}

/// The names in a folder.
class FolderNames {
public:
    explicit FolderNames(const std::string& path) {
        std::error_code error;
        for (fs::directory_iterator entry(path, error), end;
             !error && entry != end && names_.size() < mostEntries; entry.increment(error))
            names_.insert(entry->path().filename().string());
        for (const std::string& name : names_)
            byForm_.try_emplace(folded(name), name);
    }

    /// The name itself, or the one that is the same but for letter case, or the nearest; "" when
    /// none is near.
    std::string_view like(std::string_view name) {
        if (const auto same = names_.find(name); same != names_.end())
            return *same;
        if (const auto form = byForm_.find(folded(name)); form != byForm_.end())
            return form->second;
        if (!words_)
            words_ = std::make_unique<text::KnownWords>(
                std::vector<std::string>(names_.begin(), names_.end()));
        return words_->nearest(name);
    }

private:
    std::set<std::string, std::less<>> names_;
    std::map<std::string, std::string, std::less<>> byForm_;
    std::unique_ptr<text::KnownWords> words_;
};

/// The image folder of a root.
class ImageFolder {
public:
    explicit ImageFolder(std::string path) : path_(std::move(path)) {}

    const std::string& path() const { return path_; }

    /// The path of a file that is there and that was probably meant by one that is not; absent when
    /// none is near.
    std::optional<std::string> meantBy(std::string_view path) {
        std::string wanted(path);
        std::ranges::replace(wanted, '\\', '/');
        const auto isBlank = [](char character) { return text::isWhiteSpace(character); };
        wanted.erase(wanted.begin(), std::ranges::find_if_not(wanted, isBlank));
        while (!wanted.empty() && isBlank(wanted.back()))
            wanted.pop_back();
        auto found = walk(wanted);
        constexpr std::string_view own = "images/";
        if (!found && wanted.starts_with(own))
            found = walk(std::string_view(wanted).substr(own.size()));
        return found;
    }

private:
    std::optional<std::string> walk(std::string_view wanted) {
        std::string found;
        while (!wanted.empty()) {
            const std::size_t slash = std::min(wanted.find('/'), wanted.size());
            const std::string_view part = wanted.substr(0, slash);
            wanted.remove_prefix(std::min(slash + 1, wanted.size()));
            if (part.empty() || part == ".")
                continue;
            const std::string folder = text::joinPath(path_, found);
            auto names = folders_.find(folder);
            if (names == folders_.end())
                names = folders_.try_emplace(folder, folder).first;
            const std::string_view like = names->second.like(part);
            if (part == ".." || like.empty())
                return std::nullopt;
            found = text::joinPath(found, like);
        }
        std::error_code ignored;
        return fs::is_regular_file(text::joinPath(path_, found), ignored) ? std::optional(found)
                                                                          : std::nullopt;
    }

    std::string path_;
    std::map<std::string, FolderNames> folders_;
};

/// What a file that is there is, in words, by its first bytes.
std::string_view contentOf(const std::string& path) {
    char bytes[12] = {};
    std::ifstream(path, std::ios::binary).read(bytes, sizeof bytes);
    const std::string_view head(bytes, sizeof bytes);
    if (head.starts_with("\x89PNG"))
        return "a damaged PNG file, or one that is too large";
    if (head.starts_with("\xFF\xD8\xFF"))
        return "a damaged JPEG file, or one that is too large";
    if (head.starts_with("GIF8"))
        return "a GIF file; PNG and JPEG are read";
    if (head.starts_with("BM"))
        return "a BMP file; PNG and JPEG are read";
    if (head.starts_with("RIFF") && head.substr(8) == "WEBP")
        return "a WebP file; PNG and JPEG are read";
    if (head.starts_with("<"))
        return "a text such as SVG or HTML; PNG and JPEG are read";
    return "neither PNG nor JPEG";
}

/// Why an image cannot be read.
Details explanation(std::string_view path, ImageFolder& folder) {
    Details details{.value = std::string(path)};
    const std::string subject = "PATH=\"" + std::string(path) + "\": ";
    const std::string whole = text::joinPath(folder.path(), path);
    std::error_code error;
    const fs::file_status status = fs::status(whole, error);
    if (path.empty()) {
        details.message = subject + "it names no file, so the image is missing.";
    } else if (fs::is_directory(status)) {
        details.message = subject + "it names a folder, so the image is missing.";
    } else if (!fs::exists(status)) {
        details.suggestion = folder.meantBy(path);
        const bool isSameButForCase =
            details.suggestion && folded(*details.suggestion) == folded(path);
        details.message = subject +
                          (isSameButForCase ? "the file's name has other letter case, which counts"
                                            : "there is no such file in images/") +
                          ", so the image is missing.";
    } else if (fs::is_regular_file(status)) {
        const std::uintmax_t size = fs::file_size(whole, error);
        details.message = subject + "the file is ";
        details.message += size > ImageFileReader::largestFile ? "larger than 64 MiB"
                           : size == 0                         ? "empty"
                                                               : contentOf(whole);
        details.message += ", so the image is missing.";
    }
    return details;
}

bool isImageFile(const fs::path& path) {
    const std::string extension = folded(path.extension().string());
    return extension == ".png" || extension == ".jpg" || extension == ".jpeg";
}

/// The image files in the folder and below, sorted; none when there are too many entries to look
/// at. Symbolic links to folders are not followed.
std::vector<std::string> imageFilesIn(const std::string& folder) {
    std::vector<std::string> files;
    std::size_t entries = 0;
    std::error_code error;
    for (fs::recursive_directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (++entries > mostEntries)
            return {};
        std::error_code ignored;
        if (entry->is_regular_file(ignored) && isImageFile(entry->path()))
            files.push_back(entry->path().string());
    }
    std::ranges::sort(files);
    return files;
}

/// Whether all that the palettes name is known: both themes were read, and no section is lost.
bool areComplete(const std::vector<PaletteFile>& files, const Gathering& findings) {
    return !themesOf(files).empty() &&
           std::ranges::none_of(findings.found(), [](const Found& found) {
               const std::string_view rule = found.finding.rule.name;
               return rule == "unknown-palette-section" || rule == "palette-root-name" ||
                      rule == "second-palette-section";
           });
}

void checkUnusedFiles(const std::vector<PaletteFile>& files, const ImageFolder& folder,
                      const std::set<std::string>& meant, Gathering& findings) {
    std::set<files::FileIdentity> named;
    for (const NameUse& use : findings.names()) {
        if (use.row->names != Naming::image)
            continue;
        const auto path = use.element.attribute("PATH");
        const auto file =
            path ? files::identityOf(text::joinPath(folder.path(), *path)) : std::nullopt;
        if (file)
            named.insert(*file);
    }
    // Who names none has another use for the folder.
    if (named.empty() || !areComplete(files, findings))
        return;
    std::vector<std::string> unused;
    for (std::string& path : imageFilesIn(folder.path())) {
        const auto file = files::identityOf(path);
        if (file && !named.contains(*file) && !meant.contains(path))
            unused.push_back(std::move(path));
    }
    const std::size_t count = std::min(unused.size(), mostUnused);
    for (std::size_t at = 0; at < count; ++at) {
        const std::string name = unused[at].substr(folder.path().size() + 1);
        Details details{.message = "images/" + name + ": no palette names this file."};
        if (name.find("@2x.") != std::string::npos || name.find("@3x.") != std::string::npos)
            details.message += " Variants for other resolutions are not looked for.";
        if (at + 1 == mostUnused && unused.size() > mostUnused)
            details.message += " There are " + std::to_string(unused.size() - mostUnused) +
                               " more that none names.";
        findings.onFile("unused-image-file"_rule, unused[at], std::move(details));
    }
}

}  // namespace

void checkImages(const std::vector<PaletteFile>& files, const Loaded& loaded, Gathering& findings) {
    const auto path = loaded.host->getDefualtFolderPath(imageFolderKind);
    if (!path)
        return;
    ImageFolder folder(*path);
    const auto isAboutImage = [](const Found& found) {
        return found.finding.rule.name == "unreadable-image";
    };
    std::error_code error;
    if (!std::filesystem::exists(*path, error) &&
        std::ranges::any_of(findings.found(), isAboutImage))
        return findings.onFile("missing-image-folder"_rule, *path);
    std::set<std::string> meant;
    for (std::size_t at = 0; at < findings.found().size(); ++at) {
        const Finding& finding = findings.found()[at].finding;
        if (!isAboutImage(findings.found()[at]) || finding.attribute != "PATH")
            continue;
        const auto around = loaded.files.file(loaded.files.nameOf(finding.place.file))
                                .elementsAt(finding.place.begin);
        const auto named = around.empty() ? std::nullopt : around.back().attribute("PATH");
        if (!named)
            continue;
        Details details = explanation(*named, folder);
        if (details.suggestion)
            meant.insert(text::joinPath(folder.path(), *details.suggestion));
        findings.explain(at, std::move(details));
    }
    checkUnusedFiles(files, folder, meant, findings);
}

}  // namespace yg
