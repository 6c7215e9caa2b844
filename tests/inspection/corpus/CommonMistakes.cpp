// SPDX-License-Identifier: MIT
#include "inspection/Corpus.h"

namespace yg::testing {

std::vector<Mistake> commonMistakes() {
    constexpr std::string_view styles = "config/custompage_template.xml";
    return {
        {"unknown-attribute",
         Severity::error,
         {{styles, R"(name="overview_left" split_scale="0.68")",
           R"(name="overview_left" ⟦split_scal⟧="0.68")"}},
         "split_scale"},
        {"unknown-element",
         Severity::error,
         {{styles, R"(<element name="IndexCard" param="港股指数,海外指数")",
           R"(<⟦elemnt⟧ name="IndexCard" param="港股指数,海外指数")"}},
         "element"},
        {"stray-text",
         Severity::error,
         {{styles, R"(<reuse_panel name="nav_bar"/>)", R"(<reuse_panel name="nav_bar"/>⟦>⟧)"}}},
        {"odd-flag",
         Severity::error,
         {{styles, R"(<panel name="page" vertical="true">)",
           R"(<panel name="page" vertical="⟦True⟧">)"}},
         "true"},
        {"odd-number",
         Severity::error,
         {{styles, R"(fix_size="132")", R"(fix_size="⟦132px⟧")"}},
         "132"},
        {"number-out-of-range",
         Severity::error,
         {{"storage/palette_white.xml", R"(R="255")", R"(R="⟦256⟧")"}},
         "255"},
        {"empty-list",
         Severity::warning,
         {{styles, R"(event_dispatch_dest="overview.trend" is_first_responder="true")",
           R"(⟦event_dispatch_dest=""⟧ is_first_responder="true")"}}},
        {"unread-content",
         Severity::error,
         {{styles, R"(event_dispatch_dest="overview.trend" is_first_responder="true"/>)",
           R"(event_dispatch_dest="overview.trend" is_first_responder="true">⟦<panel name="x"/>⟧</element>)"}}},
        {"unreadable-file",
         Severity::error,
         {{styles, R"(<reuse_panel name="nav_bar"/>
            <panel)",
           R"(<reuse_panel name="nav_bar"
            ⟦⟧<panel)"}}},
        {"missing-attribute",
         Severity::warning,
         {{"storage/palette_white.xml", R"(<COLOR NAME="panel" R="255" G="255" B="255"/>)",
           R"(⟦<COLOR NAME="panel" R="255" G="255"/>⟧)"}}},
    };
}

}  // namespace yg::testing
