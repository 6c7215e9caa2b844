// SPDX-License-Identifier: MIT
#include "inspection/Corpus.h"

namespace yg::testing {

std::vector<Mistake> paletteMistakes() {
    constexpr std::string_view white = "storage/palette_white.xml";
    constexpr std::string_view black = "storage/palette_black.xml";
    constexpr std::string_view contrast = "contrast.json";
    return {
        {"missing-in-other-theme",
         Severity::warning,
         {{black, R"(KEY="NavTabs.mark")", R"(KEY="⟦NavTab.mark⟧")"}},
         "NavTabs.mark"},
        {"missing-in-other-theme",
         Severity::warning,
         {{white, R"(KEY="NavTabs.mark")", R"(KEY="⟦NavTab.mark⟧")"}},
         "NavTabs.mark"},
        {"name-in-one-theme",
         Severity::info,
         {{white, R"(NAME="veil")", R"(NAME="⟦mist⟧")"},
          {white, R"(VALUE="veil")", R"(VALUE="mist")"}}},
        {"unused-palette-color",
         Severity::info,
         {{white, R"(<COLOR NAME="veil")",
           R"(<COLOR NAME="⟦mist⟧" R="0" G="0" B="0"/><COLOR NAME="veil")"}}},
        {"unused-palette-font",
         Severity::info,
         {{white, R"(<FONT NAME="title")",
           R"(<FONT NAME="⟦heading⟧" HEIGHT="20" FACE="DejaVu Sans"/><FONT NAME="title")"}}},
        {"color-in-fractions",
         Severity::warning,
         {{white, R"(NAME="window" R="245" G="247" B="250")",
           R"(NAME="window" R="⟦0.96⟧" G="0.97" B="0.98")"}},
         "245"},
        {"uneven-strips",
         Severity::warning,
         {{white, R"(PATH="white/nav_news.png")", R"(PATH="⟦white/sort_asc.png⟧")"}}},
        {"unused-image-file", Severity::info, {{"images/white/old.png", "", "?"}}},
        {"unreadable-contrast-file", Severity::error, {{contrast, "", R"({"pairs": [⟦⟧)"}}},
        {"incomplete-contrast-pair",
         Severity::error,
         {{contrast, "",
           R"({"pairs": [⟦{"text": "Window.text", "ground": "Window.background"}⟧]})"}}},
        {"contrast-minimum-out-of-range",
         Severity::error,
         {{contrast, "",
           R"({"pairs": [{"text": "Window.text", "ground": "Window.background", "minimum": ⟦45⟧}]})"}}},
        {"unknown-contrast-key",
         Severity::error,
         {{contrast, "",
           R"({"pairs": [{"text": ⟦"Window.txt"⟧, "ground": "Window.background", "minimum": 4.5}]})"}},
         R"("Window.text")"},
        {"low-contrast",
         Severity::warning,
         {{contrast, "",
           R"({"pairs": [{"text": "Window.text", "ground": "Window.background", "minimum": 7}]})"},
          {white, R"(<COLOR NAME="text" R="31" G="42" B="55"/>)",
           R"(⟦<COLOR NAME="text" R="110" G="110" B="110"/>⟧)"}}},
        {"unreadable-image",
         Severity::error,
         {{white, R"(PATH="white/search.png")", R"(PATH="⟦white/Search.png⟧")"}},
         "white/search.png"},
        {"number-out-of-range", Severity::error, {{white, R"(A="0.72")", R"(A="⟦184⟧")"}}, "0.72"},
        {"odd-number", Severity::error, {{white, R"(HEIGHT="15")", R"(HEIGHT="⟦15pt⟧")"}}, "15"},
    };
}

}  // namespace yg::testing
