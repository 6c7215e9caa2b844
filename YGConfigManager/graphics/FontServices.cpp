// SPDX-License-Identifier: MIT
#include "YGConfigManager/graphics/FontServices.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <mutex>
#include <new>
#include <span>
#include <tuple>

#include <fontconfig/fontconfig.h>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/process/ForkMutex.h"
#include "YGConfigManager/text/Utf8.h"

#if defined(__SANITIZE_ADDRESS__)
#define YG_CHECKS_LEAKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define YG_CHECKS_LEAKS 1
#endif
#endif
#if defined(YG_CHECKS_LEAKS)
#include <sanitizer/lsan_interface.h>
#endif

namespace yg {

namespace {

/// For fontconfig, which has locks of its own that the child of a fork could find taken, and for
/// what all services have found.
constinit ForkMutex fontconfig;

// Those of shared(), once they are made, and what they are made from. Under the lock.
constinit FontServices* ofProcess = nullptr;
constinit bool isConfigurationShared = false;

struct FontconfigDeleter {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
    void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
    void operator()(FcObjectSet* set) const { FcObjectSetDestroy(set); }
};
template <class T>
using Owned = std::unique_ptr<T, FontconfigDeleter>;

/// Fontconfig answers null or false when memory does not suffice, and would go on with less than
/// was asked.
template <class T>
T* made(T* object) {
    return object ? object : throw std::bad_alloc();
}

void require(FcBool isDone) {
    made(isDone == FcTrue ? &isDone : nullptr);
}

const FcChar8* bytesOf(const std::string& text) {
    return reinterpret_cast<const FcChar8*>(text.c_str());
}

std::optional<std::string> textAt(const FcPattern* pattern, const char* property, int index = 0) {
    FcChar8* text = nullptr;
    if (FcPatternGetString(pattern, property, index, &text) != FcResultMatch)
        return std::nullopt;
    return reinterpret_cast<const char*>(text);
}

double numberAt(const FcPattern* pattern, const char* property, double otherwise) {
    double number = 0;
    return FcPatternGetDouble(pattern, property, 0, &number) == FcResultMatch ? number : otherwise;
}

/// Only these formats can be measured.
bool isOpenType(const FcPattern* pattern) {
    const std::optional<std::string> format = textAt(pattern, FC_FONTFORMAT);
    return format == "TrueType" || format == "CFF";
}

/// How far a face is from the regular upright one.
double distanceFromRegular(const FcPattern* pattern) {
    return std::abs(numberAt(pattern, FC_WEIGHT, FC_WEIGHT_REGULAR) - FC_WEIGHT_REGULAR) +
           std::abs(numberAt(pattern, FC_SLANT, FC_SLANT_ROMAN) - FC_SLANT_ROMAN) +
           std::abs(numberAt(pattern, FC_WIDTH, FC_WIDTH_NORMAL) - FC_WIDTH_NORMAL);
}

/// A name as fontconfig compares it: letter case and blanks do not count.
std::string folded(const std::string& name) {
    const std::unique_ptr<FcChar8, decltype(&std::free)> lower(FcStrDowncase(bytesOf(name)),
                                                               std::free);
    std::string text = lower ? reinterpret_cast<const char*>(lower.get()) : name;
    std::erase(text, ' ');
    return text;
}

/// The face's own spelling of the name by which it was found.
std::string spellingOf(const FcPattern* pattern, const char* property, const std::string& name) {
    const std::string wanted = folded(name);
    for (int i = 0;; ++i) {
        std::optional<std::string> spelling = textAt(pattern, property, i);
        if (!spelling)
            return name;
        if (folded(*spelling) == wanted)
            return *std::move(spelling);
    }
}

/// A name by which a face is found again.
std::string fullNameOf(const FcPattern* pattern) {
    for (const char* property : {FC_FULLNAME, FC_POSTSCRIPT_NAME, FC_FAMILY}) {
        if (std::optional<std::string> name = textAt(pattern, property))
            return *std::move(name);
    }
    return FontServices::nameOfNoFace;
}

/// What is asked of fontconfig: families, the first one preferred, and a style.
struct FaceLike {
    std::vector<std::string> families;
    int slant = FC_SLANT_ROMAN;
    double weight = FC_WEIGHT_REGULAR;
    double width = FC_WIDTH_NORMAL;

    Owned<FcPattern> pattern(FcConfig* configuration) const {
        Owned<FcPattern> pattern(made(FcPatternCreate()));
        for (const std::string& family : families)
            require(FcPatternAddString(pattern.get(), FC_FAMILY, bytesOf(family)));
        require(FcPatternAddInteger(pattern.get(), FC_SLANT, slant));
        require(FcPatternAddDouble(pattern.get(), FC_WEIGHT, weight));
        require(FcPatternAddDouble(pattern.get(), FC_WIDTH, width));
        require(FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue));
        require(FcConfigSubstitute(configuration, pattern.get(), FcMatchPattern));
        FcDefaultSubstitute(pattern.get());
        return pattern;
    }
};

/// So many spellings of names are remembered.
constexpr std::size_t maxNames = 1024;

/// How many characters a face remembers the replacement of.
constexpr std::size_t maxCharacters = 8192;

/// A longer name is unknown. Blanks do not count, so a name of any length could match.
constexpr std::size_t longestName = 1024;

}  // namespace

/// The faces that can be measured, by their names. Fontconfig goes through all fonts for each list
/// that it makes; here that is done once.
class FontNames {
public:
    /// Without a configuration there are none.
    explicit FontNames(FcConfig* configuration) {
        if (!configuration)
            return;
        // Listing answers only what is there, where matching always answers something.
        const Owned<FcPattern> wanted(FcPatternCreate());
        FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
        FcPatternAddBool(wanted.get(), FC_VARIABLE, FcFalse);
        const Owned<FcObjectSet> asked(FcObjectSetBuild(FC_FILE, FC_INDEX, FC_FAMILY, FC_FULLNAME,
                                                        FC_POSTSCRIPT_NAME, FC_WEIGHT, FC_SLANT,
                                                        FC_WIDTH, FC_FONTFORMAT, nullptr));
        set_.reset(FcFontList(configuration, wanted.get(), asked.get()));
        if (!set_)
            return;
        // Listing has no order of its own; equally near faces come by their files.
        std::vector<std::tuple<double, std::optional<std::string>, int, FcPattern*>> sorted;
        for (FcPattern* const face :
             std::span(set_->fonts, static_cast<std::size_t>(set_->nfont))) {
            if (isOpenType(face)) {
                int index = 0;
                FcPatternGetInteger(face, FC_INDEX, 0, &index);
                sorted.emplace_back(distanceFromRegular(face), textAt(face, FC_FILE), index, face);
            }
        }
        std::sort(sorted.begin(), sorted.end());
        for (const auto& [distance, file, index, face] : sorted) {
            for (const char* property : properties)
                add(property, face);
        }
    }

    /// The kinds of names, in the order in which they are looked at.
    static constexpr std::array<const char*, 3> properties = {FC_POSTSCRIPT_NAME, FC_FULLNAME,
                                                              FC_FAMILY};

    /// The faces that have this name, the nearest to regular upright first.
    std::span<FcPattern* const> faces(const char* property, const std::string& name) const {
        const auto found = faces_.find(keyOf(property, name));
        return found == faces_.end() ? std::span<FcPattern* const>() : found->second;
    }

private:
    static std::string keyOf(const char* property, const std::string& name) {
        return std::string(property) + '=' + folded(name);
    }

    void add(const char* property, FcPattern* face) {
        for (int i = 0;; ++i) {
            const std::optional<std::string> name = textAt(face, property, i);
            if (!name)
                return;
            std::vector<FcPattern*>& faces = faces_[keyOf(property, *name)];
            if (faces.empty() || faces.back() != face)
                faces.push_back(face);
        }
    }

    Owned<FcFontSet> set_;
    std::unordered_map<std::string, std::vector<FcPattern*>> faces_;
};

/// Sorting takes longer than all else here, and most faces never need to be stood in for.
class FontFallbacks {
public:
    explicit FontFallbacks(FaceLike like) : like_(std::move(like)) {}

    /// The faces in their order. Only under the services' lock.
    std::span<FcPattern* const> faces(FcConfig* configuration) {
        if (!isSorted_ && configuration) {
            FcResult result;
            set_.reset(made(FcFontSort(configuration, like_.pattern(configuration).get(), FcTrue,
                                       nullptr, &result)));
        }
        isSorted_ = true;
        if (!set_)
            return {};
        return {set_->fonts, static_cast<std::size_t>(set_->nfont)};
    }

    /// The replacement file for each character, null for those that no face has. Use under the
    /// lock.
    std::unordered_map<char32_t, std::shared_ptr<const FontFile>> files;

private:
    const FaceLike like_;
    bool isSorted_ = false;
    Owned<FcFontSet> set_;
};

FontServices& FontServices::shared() {
    const std::lock_guard lock(fontconfig);
    if (!ofProcess) {
#if defined(YG_CHECKS_LEAKS)
        // Fontconfig refers to parts of its configuration by distances, which hide them from the
        // leak checker.
        const __lsan::ScopedDisabler livesToTheEnd;
#endif
        // Nothing tells whether the process has a configuration without making it one.
        ofProcess = new FontServices(isConfigurationShared ? FcConfigReference(nullptr)
                                                           : FcInitLoadConfigAndFonts());
    }
    return *ofProcess;
}

bool FontServices::shareFontconfig() noexcept {
    const std::lock_guard lock(fontconfig);
    isConfigurationShared = isConfigurationShared || !ofProcess;
    return isConfigurationShared;
}

FontServices::FontServices(_FcConfig* configuration)
    : configuration_(configuration), names_(std::make_unique<const FontNames>(configuration)) {}

FontServices::FontServices(const std::vector<std::string>& fontFiles, std::size_t maxBytes)
    : configuration_(FcConfigCreate()), maxBytes_(maxBytes) {
    for (const std::string& file : fontFiles)
        FcConfigAppFontAddFile(configuration_, bytesOf(file));
    names_ = std::make_unique<const FontNames>(configuration_);
}

FontServices::~FontServices() {
    const std::lock_guard lock(fontconfig);
    facesByName_.clear();
    systemFace_.reset();
    fallbacks_.clear();
    names_.reset();
    if (configuration_)
        FcConfigDestroy(configuration_);
}

std::optional<Font> FontServices::named(std::string_view face, double size) {
    if (face.empty() || face.size() > longestName || face.find('\0') != std::string_view::npos ||
        !text::isValidUtf8(face))
        return std::nullopt;
    const std::lock_guard lock(fontconfig);
    std::shared_ptr<const FontFace> found = faceNamed(std::string(face));
    if (!found)
        return std::nullopt;
    return Font(std::move(found), sizeOrDefault(size));
}

Font FontServices::system(double size) {
    const std::lock_guard lock(fontconfig);
    if (!systemFace_)
        systemFace_ = findSystemFace();
    return {systemFace_, sizeOrDefault(size)};
}

double FontServices::widthOf(const Font& font, const std::optional<std::string_view>& text) {
    if (!text)
        return 0;
    return font.face_ ? font.face_->widthOf(*text, font.pointSize_)
                      : FontFace::widthByRule(*text, font.pointSize_);
}

std::shared_ptr<const FontFile> FontServices::fallback(FontFallbacks& fallbacks,
                                                       char32_t character) {
    const std::lock_guard lock(fontconfig);
    const auto known = fallbacks.files.find(character);
    if (known != fallbacks.files.end())
        return known->second;
    std::shared_ptr<const FontFile> file;
    for (const FcPattern* face : fallbacks.faces(configuration_)) {
        FcCharSet* characters = nullptr;
        if (FcPatternGetCharSet(face, FC_CHARSET, 0, &characters) == FcResultMatch &&
            FcCharSetHasChar(characters, character) != FcFalse && (file = openFile(face)))
            break;
    }
    if (fallbacks.files.size() >= maxCharacters)
        fallbacks.files.clear();
    fallbacks.files.emplace(character, file);
    return file;
}

std::shared_ptr<const FontFace> FontServices::faceNamed(const std::string& name) {
    if (const auto known = facesByName_.find(name); known != facesByName_.end())
        return known->second;
    std::shared_ptr<const FontFace> face = findFace(name);
    if (face) {
        if (facesByName_.size() >= maxNames)
            facesByName_.clear();
        facesByName_.emplace(name, face);
    }
    return face;
}

std::shared_ptr<const FontFace> FontServices::findFace(const std::string& name) {
    std::shared_ptr<const FontFace> found;
    for (const char* property : FontNames::properties) {
        std::shared_ptr<const FontFace> face = findFaceBy(property, name);
        // A name that is spelled just so goes before one that differs in case or blanks.
        if (face && face->name() == name)
            return face;
        if (!found)
            found = std::move(face);
    }
    return found;
}

std::shared_ptr<const FontFace> FontServices::findFaceBy(const char* property,
                                                         const std::string& name) {
    for (const FcPattern* face : names_->faces(property, name)) {
        if (auto file = openFile(face)) {
            return std::make_shared<FontFace>(spellingOf(face, property, name), std::move(file),
                                              fallbacksOf(face), *this);
        }
    }
    return nullptr;
}

std::shared_ptr<FontFallbacks> FontServices::fallbacksOf(const _FcPattern* face) {
    std::shared_ptr<FontFallbacks>& known = fallbacks_[face];
    if (!known) {
        FaceLike like{{textAt(face, FC_FAMILY).value_or("")}};
        FcPatternGetInteger(face, FC_SLANT, 0, &like.slant);
        like.weight = numberAt(face, FC_WEIGHT, like.weight);
        like.width = numberAt(face, FC_WIDTH, like.width);
        known = std::make_shared<FontFallbacks>(std::move(like));
    }
    return known;
}

std::shared_ptr<const FontFace> FontServices::findSystemFace() {
    FaceLike like{{"system-ui", "sans-serif"}};
    Owned<FcPattern> best;
    if (configuration_) {
        FcResult result = FcResultMatch;
        best.reset(FcFontMatch(configuration_, like.pattern(configuration_).get(), &result));
        require(best || result != FcResultOutOfMemory ? FcTrue : FcFalse);
    }
    const auto fallbacks = std::make_shared<FontFallbacks>(std::move(like));
    const auto faceOf = [&](const FcPattern* face) -> std::shared_ptr<const FontFace> {
        auto file = isOpenType(face) ? openFile(face) : nullptr;
        return file
                   ? std::make_shared<FontFace>(fullNameOf(face), std::move(file), fallbacks, *this)
                   : nullptr;
    };
    if (best) {
        if (auto face = faceOf(best.get()))
            return face;
        for (const FcPattern* other : fallbacks->faces(configuration_)) {
            if (auto face = faceOf(other))
                return face;
        }
    }
    return std::make_shared<FontFace>(nameOfNoFace, nullptr, fallbacks, *this);
}

std::shared_ptr<const FontFile> FontServices::openFile(const _FcPattern* pattern) {
    const std::optional<std::string> path = textAt(pattern, FC_FILE);
    if (!path)
        return nullptr;
    int index = 0;
    FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
    const std::pair key(*path, index);
    if (const auto known = faces_.find(key); known != faces_.end())
        return known->second;
    return faces_.emplace(key, openFace(*path, index)).first->second;
}

std::shared_ptr<const FontFile> FontServices::openFace(const std::string& path, int index) {
    if (const auto known = contents_.find(path); known != contents_.end())
        return FontFile::open(known->second, index);
    const std::size_t limit = std::min(files::largestFileRead, maxBytes_ - openBytes_);
    const std::shared_ptr<const FontContent> content = FontContent::read(path, limit);
    if (!content)
        return nullptr;
    auto face = FontFile::open(content, index);
    if (face) {
        contents_.emplace(path, content);
        openBytes_ += content->bytes().size();
    }
    return face;
}

}  // namespace yg
