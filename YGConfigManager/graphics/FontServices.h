// SPDX-License-Identifier: MIT
//
// Which fonts there are. It has a configuration of fontconfig to itself, so that neither the host
// application nor the library disturbs the other, unless the host wants one for both. Any thread
// may call. Fonts must not outlive the services that made them; shared() is never destroyed.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "YGConfigManager/graphics/Font.h"
#include "YGConfigManager/graphics/FontFace.h"

struct _FcConfig;
struct _FcPattern;

namespace yg {

/// The names of all faces; made by FontServices.
class FontNames;

class FontServices {
public:
    /// The services on what the machine has installed, made at the first call: that reads
    /// fontconfig's configuration, which takes milliseconds with a cache and up to some tenths of a
    /// second without.
    static FontServices& shared();

    /// As Font::shareFontconfig.
    static bool shareFontconfig() noexcept;

    /// The files that are open have at most so many bytes together; each is in memory once. A face
    /// whose file would exceed that counts as not installed.
    static constexpr std::size_t maxOpenBytes = std::size_t{512} << 20;

    /// Services that know the fonts in these files and no others.
    explicit FontServices(const std::vector<std::string>& fontFiles,
                          std::size_t maxBytes = maxOpenBytes);

    FontServices(const FontServices&) = delete;
    FontServices& operator=(const FontServices&) = delete;
    ~FontServices();

    /// The name of the face that there is when there is none.
    static constexpr const char* nameOfNoFace = "sans-serif";

    static double sizeOrDefault(double size) { return size > 0 ? size : Font::defaultSize; }

    // As the operations of Font, but they throw std::bad_alloc.
    std::optional<Font> named(std::string_view face, double size);
    Font system(double size);
    static double widthOf(const Font& font, const std::optional<std::string_view>& text);

    /// The first of the faces that has the character; null when none has.
    std::shared_ptr<const FontFile> fallback(FontFallbacks& fallbacks, char32_t character);

private:
    explicit FontServices(_FcConfig* configuration);

    std::shared_ptr<const FontFace> faceNamed(const std::string& name);
    std::shared_ptr<const FontFace> findFace(const std::string& name);
    std::shared_ptr<const FontFace> findFaceBy(const char* property, const std::string& name);
    std::shared_ptr<FontFallbacks> fallbacksOf(const _FcPattern* face);
    std::shared_ptr<const FontFace> findSystemFace();
    std::shared_ptr<const FontFile> openFile(const _FcPattern* pattern);
    std::shared_ptr<const FontFile> openFace(const std::string& path, int index);

    _FcConfig* const configuration_;
    const std::size_t maxBytes_ = maxOpenBytes;

    // All below under the lock of all services, measuring without it.
    std::unique_ptr<const FontNames> names_;
    // Of each face of `names_`. They stay, since a font may be let go without the lock.
    std::unordered_map<const _FcPattern*, std::shared_ptr<FontFallbacks>> fallbacks_;
    std::unordered_map<std::string, std::shared_ptr<const FontFace>> facesByName_;
    std::map<std::pair<std::string, int>, std::shared_ptr<const FontFile>> faces_;
    std::map<std::string, std::shared_ptr<const FontContent>> contents_;
    std::size_t openBytes_ = 0;
    std::shared_ptr<const FontFace> systemFace_;
};

}  // namespace yg
