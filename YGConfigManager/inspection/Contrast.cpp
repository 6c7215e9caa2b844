// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Contrast.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/inspection/FileFaults.h"
#include "YGConfigManager/inspection/PaletteFiles.h"
#include "YGConfigManager/records/JsonEntry.h"
#include "YGConfigManager/text/Format.h"
#include "YGConfigManager/text/Nearest.h"

namespace yg {

/// The whole contrast.json.
struct ContrastPairs {
    struct Pair;
    ModelList<Pair> pairs;
};

/// One pair of it.
struct ContrastPairs::Pair {
    std::optional<std::string> text;
    std::optional<std::string> ground;
    std::optional<double> minimum;
    std::optional<std::string> over;
};

template <>
struct Description<ContrastPairs> {
    static constexpr std::tuple fields{
        Field{"pairs", &ContrastPairs::pairs, &ContrastPairs::pairs,
              AttributeInfo{.name = "pairs", .isRequired = true}},
    };
};

template <>
struct Description<ContrastPairs::Pair> {
    using Pair = ContrastPairs::Pair;
    static constexpr std::tuple fields{
        Field{"text", &Pair::text, &Pair::text, AttributeInfo{.name = "text", .isRequired = true}},
        Field{"ground", &Pair::ground, &Pair::ground,
              AttributeInfo{.name = "ground", .isRequired = true}},
        Field{"minimum", &Pair::minimum, &Pair::minimum,
              AttributeInfo{.name = "minimum", .isRequired = true}},
        Field{"over", &Pair::over, &Pair::over, AttributeInfo{.name = "over"}},
    };
};

namespace {

constexpr double leastRatio = 1;
constexpr double mostRatio = 21;

/// What the last digits of a double may differ by.
constexpr double tolerance = 1e-9;

double linear(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

/// What is behind all windows, as far as anybody knows.
Color behindAll(const PaletteFile& file) {
    return file.isDark() ? Color{0, 0, 0, 1} : Color{1, 1, 1, 1};
}

/// Two digits behind the point, rounded down so that too little never looks enough.
std::string ratioText(double ratio) {
    const std::string text = std::to_string(static_cast<long>(ratio * 100 + tolerance));
    return text.substr(0, text.size() - 2) + "." + text.substr(text.size() - 2) + ":1";
}

class ContrastCheck {
public:
    ContrastCheck(const std::vector<PaletteFile>& files, const SourceFiles& sources,
                  Gathering& findings)
        : files_(files), sources_(sources), findings_(findings) {}

    void check(JsonEntry& entry) {
        ContrastPairs::Pair pair;
        entry.read(pair);
        for (const std::string_view required : {"text", "ground", "minimum"}) {
            if (!entry.has(required))
                return entry.report("incomplete-contrast-pair"_rule, {}, required);
        }
        if (pair.minimum && !(*pair.minimum >= leastRatio && *pair.minimum <= mostRatio))
            return entry.report("contrast-minimum-out-of-range"_rule, "minimum");
        bool isKnown = pair.text && pair.ground && pair.minimum;
        for (const auto& [member, key] :
             {std::pair{"text", &pair.text}, std::pair{"ground", &pair.ground},
              std::pair{"over", &pair.over}}) {
            if (*key && !isKey(**key)) {
                reportUnknown(entry, member, **key);
                isKnown = false;
            }
        }
        // Each pair has its own place.
        entry.define(std::to_string(places_.size()), places_);
        for (const PaletteFile& file : files_) {
            if (isKnown)
                check(file, pair);
        }
    }

private:
    /// Where a theme could not be read it may have the key.
    bool isKey(std::string_view key) const {
        return themesOf(files_).empty() ||
               std::ranges::any_of(files_, [&](const PaletteFile& file) {
                   return file.defined(Naming::colorKey).contains(key);
               });
    }

    void reportUnknown(JsonEntry& entry, std::string_view member, std::string_view key) {
        if (!keys_) {
            std::vector<std::string> all;
            for (const PaletteFile& file : files_) {
                for (const auto& [name, use] : file.defined(Naming::colorKey))
                    all.push_back(name);
            }
            keys_ = std::make_unique<text::KnownWords>(all);
        }
        std::string value;
        detail::require(appendJsonText(value, key));
        const std::size_t before = findings_.found().size();
        entry.report("unknown-contrast-key"_rule, member, value);
        if (findings_.found().size() == before)
            return;
        Details details{.message = text::format("%@: neither palette has a colour of this key, so "
                                                "the pair is not checked.",
                                                value)};
        if (const std::string_view nearest = keys_->nearest(key); !nearest.empty()) {
            details.suggestion.emplace();
            detail::require(appendJsonText(*details.suggestion, nearest));
        }
        findings_.explain(before, std::move(details));
    }

    /// In one palette. A key that only the other theme has is found by itself, and so is one
    /// without a colour.
    void check(const PaletteFile& file, const ContrastPairs::Pair& pair) {
        const NameUse* const text = file.colorOf(*pair.text);
        const NameUse* const ground = file.colorOf(*pair.ground);
        if (!text || !ground || (pair.over && !file.colorOf(*pair.over)))
            return;
        Color below = behindAll(file);
        if (pair.over)
            below = drawnOver(file.palette().getCustomColor(*pair.over), below);
        below = drawnOver(file.palette().getCustomColor(*pair.ground), below);
        const Color shown = drawnOver(file.palette().getCustomColor(*pair.text), below);
        const double ratio = contrastRatio(shown, below);
        const bool isEnough = ratio + tolerance >= *pair.minimum;
        const Place& place = *places_.find(std::to_string(places_.size() - 1));
        findings_.measured({file.name(), *pair.text, *pair.ground, pair.over, *pair.minimum, ratio,
                            ratioText(ratio), isEnough,
                            RootPlace{sources_.nameOf(place.file), place.begin, place.end, ""}});
        if (isEnough)
            return;
        Details details;
        details.value = *pair.text + " on " + *pair.ground;
        if (pair.over)
            details.value += " over " + *pair.over;
        details.message = "colour '" + std::string(text->value) + "': " + details.value +
                          " has a contrast of " + ratioText(ratio) + ", below " +
                          ratioText(*pair.minimum) + ".";
        details.related = {
            {ground->element.tagPlace().value_or(Place()), "the colour of the ground"},
            {place, "the pair"}};
        findings_.onElement("low-contrast"_rule, text->element, std::move(details));
    }

    const std::vector<PaletteFile>& files_;
    const SourceFiles& sources_;
    Gathering& findings_;
    RecordMap<Place> places_;  ///< of each pair, by its number
    std::unique_ptr<text::KnownWords> keys_;
};

}  // namespace

Color drawnOver(const Color& upper, const Color& lower) {
    const double share = lower.alpha * (1 - upper.alpha);
    const double alpha = upper.alpha + share;
    if (!(alpha > 0))
        return {0, 0, 0, 0};
    const auto mixed = [&](double above, double below) {
        return (above * upper.alpha + below * share) / alpha;
    };
    return {mixed(upper.red, lower.red), mixed(upper.green, lower.green),
            mixed(upper.blue, lower.blue), alpha};
}

double relativeLuminance(const Color& color) {
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

double contrastRatio(const Color& one, const Color& other) {
    const auto [darker, lighter] = std::minmax({relativeLuminance(one), relativeLuminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

void checkContrast(const std::vector<PaletteFile>& files, const Loaded& loaded,
                   Gathering& findings) {
    const std::string path = loaded.files.pathOf("contrast.json");
    const SourceFile& file = loaded.files.file("contrast.json");
    if (!file.isRead()) {
        if (files::fileExists(path))
            findings.onFile("unreadable-contrast-file"_rule, path);
        return;
    }
    const Rule& unreadable = "unreadable-contrast-file"_rule;
    auto fault = encodingFaultOfJson(file.bytes());
    if (!fault)
        fault = jsonFault(file.bytes(), unreadable);
    if (fault)
        return findings.add(foundOf(std::move(*fault), path));
    ContrastCheck check(files, loaded.files, findings);
    readingJson(Reporter(&findings), {file.bytes(), path}, unreadable, [&](JsonEntry& whole) {
        ContrastPairs read;
        whole.read(read);
        if (!whole.has("pairs"))
            return whole.report("incomplete-contrast-pair"_rule, {}, "pairs");
        if (const JsonList list = read.pairs.json())
            whole.forEachObject("pairs", *list, [&](JsonEntry& pair) { check.check(pair); });
    });
}

}  // namespace yg
