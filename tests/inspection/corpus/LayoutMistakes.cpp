// SPDX-License-Identifier: MIT
#include "inspection/Corpus.h"

namespace yg::testing {

std::vector<Mistake> layoutMistakes() {
    constexpr std::string_view styles = "config/custompage_template.xml";
    constexpr std::string_view soft = "soft_optimize/custompage_template.xml";
    constexpr std::string_view tabs = "config/tab_styles.xml";
    constexpr std::string_view magic = "config/magic_panels.xml";
    constexpr std::string_view softMagic = "soft_optimize/magic_panels.xml";
    constexpr std::string_view reuse = "base_optimize/reuse_panels.xml";
    constexpr std::string_view host = "host.json";
    constexpr std::string_view single = R"(<style name="single")";
    constexpr std::string_view alertBox = "<!-- Price alerts in short form. -->";
    return {
        // Styles.
        {"style-without-name",
         Severity::error,
         {{styles, R"(<style name="涨跌排行" layer="0" focus="rank_up">)",
           R"(⟦<style layer="0" focus="rank_up">⟧)"}}},
        {"style-without-name",
         Severity::error,
         {{styles, R"(<style name="single" layer="0" focus="single_main">)",
           R"(⟦<style name="" layer="0" focus="single_main">⟧)"}}},
        {"duplicate-style",
         Severity::error,
         {{styles, single, R"(<style name="⟦系统设置⟧" layer="2"/><style name="single")"}}},
        {"overridden-style",
         Severity::info,
         {{soft, R"(<style name="board")",
           R"(<style name="⟦财经日历⟧" layer="0"/><style name="board")"}}},
        {"style-element-name",
         Severity::error,
         {{styles, R"(<style name="single" layer="0" focus="single_main">)",
           R"(<⟦sytle⟧ name="single" layer="0" focus="single_main">)"},
          {styles, R"(</style>

    <style name="quote")",
           R"(</sytle>

    <style name="quote")"}},
         "style"},
        {"style-element-name",
         Severity::error,
         {{styles, R"(<style name="看板" layer="0" focus="kanban_top">)",
           R"(<⟦page⟧ name="看板" layer="0" focus="kanban_top">)"},
          {styles, R"(</style>

</styles>)",
           R"(</page>

</styles>)"}},
         "style"},
        {"ignored-default-style",
         Severity::error,
         {{tabs, "<styles>", R"(<styles ⟦default_style="分时标签"⟧>)"}}},
        {"overridden-default-style",
         Severity::info,
         {{soft, R"(default_style="行情报价")", R"(default_style="⟦自选股⟧")"}}},
        {"soft-optimize-dropped", Severity::error, {{styles, "", "⟦<styles/>⟧"}}},
        // Panels and elements.
        {"misplaced-element",
         Severity::error,
         {{styles, R"(<panel name="kanban_top" fix_size="40">)",
           R"(⟦<element name="StatusBar"/>⟧<panel name="kanban_top" fix_size="40">)"}}},
        {"element-without-name",
         Severity::error,
         {{styles,
           R"(<element name="NavTabs" param="盘前,盘中,盘后,夜盘" uuid="us.sessions" event="nav_tabs"
                                 event_dispatch_dest="us.trend"/>)",
           R"(⟦<element param="盘前,盘中,盘后,夜盘" uuid="us.sessions" event="nav_tabs"
                                 event_dispatch_dest="us.trend"/>⟧)"}}},
        {"rtline-view-left-out",
         Severity::info,
         {{styles, R"(<panel name="hk_brokers" split_scale="0.3" max_size="260">)",
           R"(⟦<panel name="rtline_view" split_scale="0.3" max_size="260">⟧)"}}},
        // Magic and reuse panels.
        {"missing-name",
         Severity::error,
         {{reuse,
           R"(<reuse_panel name="tick_tape" split_scale="0.45" min_size="160" vertical="true" is_border_radius="true">)",
           R"(⟦<reuse_panel split_scale="0.45" min_size="160" vertical="true" is_border_radius="true">⟧)"}}},
        {"missing-name",
         Severity::error,
         {{styles, R"(<reuse_panel name="status_strip"/>)", "⟦<reuse_panel/>⟧"}}},
        {"missing-name",
         Severity::error,
         {{styles, R"(<magic_panels name="side"/>)", "⟦<magic_panels/>⟧"}}},
        {"missing-name",
         Severity::error,
         {{magic, R"(<magic_panels name="lists">)", "⟦<magic_panels>⟧"}}},
        {"missing-name",
         Severity::error,
         {{magic, R"(<magic_panel name="ticks">)", "⟦<magic_panel>⟧"}}},
        {"duplicate-name",
         Severity::error,
         {{reuse, alertBox, R"(<reuse_panel name="⟦indicator_bar⟧" fix_size="30"/>)"}}},
        {"duplicate-name",
         Severity::error,
         {{magic, R"(<magic_panel name="fiveday">)", R"(<magic_panel name="⟦trend⟧">)"}}},
        {"replaced-group",
         Severity::info,
         {{softMagic, R"(<magic_panels name="快讯">)",
           R"(<magic_panels name="⟦side⟧"><magic_panel name="x"><panel name="x"/></magic_panel></magic_panels>
    <magic_panels name="快讯">)"}}},
        {"unexpected-element-name",
         Severity::error,
         {{reuse, R"(<reuse_panel name="quick_trade")", R"(<⟦panel⟧ name="quick_trade")"},
          {reuse, R"(</reuse_panel>

</reuse_panels>)",
           R"(</panel>

</reuse_panels>)"}},
         "reuse_panel"},
        // With the panels inside it, which only a proper element keeps.
        {"unexpected-element-name",
         Severity::error,
         {{reuse, R"(<reuse_panel name="quick_trade")", R"(<⟦reusepanel⟧ name="quick_trade")"},
          {reuse, R"(</reuse_panel>

</reuse_panels>)",
           R"(</reusepanel>

</reuse_panels>)"}},
         "reuse_panel"},
        {"unexpected-element-name",
         Severity::error,
         {{magic, R"(<magic_panel name="ticks">)", R"(<⟦magic_panels⟧ name="ticks">)"},
          {magic, R"(</magic_panel>
        <magic_panel name="flow">)",
           R"(</magic_panels>
        <magic_panel name="flow">)"}},
         "magic_panel"},
        {"unexpected-element-name",
         Severity::error,
         {{magic, R"(<magic_panels name="chart">)", R"(<⟦magic_panel⟧ name="chart">)"},
          {magic, R"(</magic_panels>

    <!-- Narrow)",
           R"(</magic_panel>

    <!-- Narrow)"}},
         "magic_panels"},
        {"member-without-panel",
         Severity::error,
         {{magic, R"(<magic_panel name="fiveday">)",
           R"(⟦<magic_panel name="week"/>⟧<magic_panel name="fiveday">)"}}},
        {"second-panel",
         Severity::error,
         {{magic, R"(<magic_panel name="fiveday">)",
           R"(<magic_panel name="fiveday"><panel name="week_view"/>)"},
          {magic,
           R"(<panel name="fiveday_view" split_scale="0.7" min_size="320" is_border_radius="true">)",
           R"(⟦<panel name="fiveday_view" split_scale="0.7" min_size="320" is_border_radius="true">⟧)"}}},
        {"comment-before-panel",
         Severity::error,
         {{magic, R"(<magic_panel name="trend">)",
           R"(<magic_panel name="trend">⟦<!-- One day. -->⟧)"}}},
        {"unknown-magic-group",
         Severity::error,
         {{styles, R"(<magic_panels name="news"/>)", R"(<magic_panels name="⟦new⟧"/>)"}},
         "news"},
        {"unknown-magic-group",
         Severity::error,
         {{styles, R"(<magic_panels name="news"/>)", R"(<magic_panels name="⟦快讯⟧"/>)"}}},
        {"empty-magic-group",
         Severity::error,
         {{magic, R"(<magic_panels name="side">)",
           R"(<magic_panels name="⟦pairs⟧"/><magic_panels name="side">)"},
          {styles, R"(<magic_panels name="news"/>)", R"(<magic_panels name="pairs"/>)"}}},
        {"misplaced-reuse-panel",
         Severity::error,
         {{styles, R"(<panel name="kanban_top" fix_size="40">)",
           R"(⟦<reuse_panel name="nav_bar"/>⟧<panel name="kanban_top" fix_size="40">)"}}},
        {"unknown-reuse-panel",
         Severity::error,
         {{styles, R"(<reuse_panel name="status_strip"/>)",
           R"(<reuse_panel name="⟦status-strip⟧"/>)"}},
         "status_strip"},
        {"unknown-reuse-panel",
         Severity::error,
         {{reuse, R"(<panel name="nav_pages" split_scale="0.6">)",
           R"(<reuse_panel name="⟦alert_box⟧"/><panel name="nav_pages" split_scale="0.6">)"}}},
        {"broken-pattern", Severity::error, {{host, R"("SH990001")", R"(⟦"SH&1"⟧, "SH990001")"}}},
        // Names of the layout.
        {"unknown-default-style",
         Severity::error,
         {{soft, R"(default_style="行情报价")", R"(default_style="⟦行情报介⟧")"}},
         "行情报价"},
        {"unknown-focus",
         Severity::error,
         {{styles, R"(focus="index_row")", R"(focus="⟦index_raw⟧")"}},
         "index_row"},
        {"unknown-expand-panel",
         Severity::error,
         {{styles, R"(switch_expand_panel="hs_chart")", R"(switch_expand_panel="⟦hs_chrat⟧")"}},
         "hs_chart"},
        {"unknown-dispatch-element",
         Severity::error,
         {{styles, R"("index.domestic;index.global")", R"("index.domestic;⟦index.globe⟧")"}},
         "index.global"},
        {"missing-on-some-pages",
         Severity::info,
         {{reuse, R"(uuid="alert.box" event="alert_list")",
           R"(uuid="alert.box" event="alert_list" event_dispatch_src="⟦watch.list⟧")"}}},
        // What stands once.
        {"duplicate-uuid",
         Severity::warning,
         {{styles, R"(uuid="overview.flow")", R"(uuid="⟦overview.breadth⟧")"}}},
        {"second-first-responder",
         Severity::warning,
         {{styles, R"(uuid="index.global" event="index_card")",
           R"(uuid="index.global" event="index_card" is_first_responder="⟦true⟧")"}}},
        // Sizes.
        {"min-above-max",
         Severity::error,
         {{styles, R"(min_size="280" max_size="460")", R"(min_size="⟦480⟧" max_size="460")"}}},
        {"fixed-size-out-of-bounds",
         Severity::warning,
         {{reuse, R"(fix_size="220" min_size="160" max_size="300")",
           R"(fix_size="⟦320⟧" min_size="160" max_size="300")"}}},
        {"share-without-space",
         Severity::warning,
         {{styles, R"(name="overview_left" split_scale="0.68")",
           R"(name="overview_left" split_scale="⟦0⟧")"}}},
        {"shares-above-whole",
         Severity::warning,
         {{styles, R"(name="overview_right" split_scale="0.32")",
           R"(name="overview_right" split_scale="⟦0.42⟧")"}}},
        // Custom pages.
        {"wildcard-in-two-lists",
         Severity::error,
         {{host, R"("BK9003")", R"("BK9003", ⟦"XA2601"⟧)"}}},
        {"wildcard-without-pattern",
         Severity::warning,
         {{host, R"("SECTOR")", R"(⟦"SECTORS"⟧)"}},
         R"("SECTOR")"},
        {"wildcard-with-dash", Severity::error, {{host, R"("SH990002")", R"(⟦"SH-990002"⟧)"}}},
        {"template-with-dash",
         Severity::info,
         {{styles, single,
           R"(<style name="⟦my-quote⟧"><magic_panels name="chart"/></style><style name="single")"}}},
        {"member-with-dash",
         Severity::warning,
         {{magic, R"(<magic_panel name="fiveday">)", R"(<magic_panel name="⟦five-day⟧">)"}}},
        {"style-hides-custom-page",
         Severity::info,
         {{styles, single, R"(<style name="⟦single-trend⟧"/><style name="single")"}}},
        {"unused-magic-group",
         Severity::info,
         {{magic, R"(<magic_panels name="side">)",
           R"(<magic_panels name="⟦pairs⟧"><magic_panel name="x"><panel name="x"/></magic_panel></magic_panels>
    <magic_panels name="side">)"}}},
        {"unused-reuse-panel",
         Severity::info,
         {{reuse, alertBox, R"(<reuse_panel name="⟦side_bar⟧" fix_size="30"/>)"}}},
    };
}

}  // namespace yg::testing
