// SPDX-License-Identifier: MIT
#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "YGConfigManager/inspection/Explanation.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "ygconfig/commandline/Suggestion.h"
#include "ygconfig/commands/Commands.h"
#include "ygconfig/commands/Names.h"
#include "ygconfig/drawing/Display.h"
#include "ygconfig/drawing/LayoutView.h"
#include "ygconfig/files/PageFaults.h"
#include "ygconfig/json/Json.h"

namespace yg {

/// The loader as if it were a record.
template <>
struct Description<YGStyleConfigLoad> {
    static constexpr std::tuple fields{
        Field{"defaultStyleName", &YGStyleConfigLoad::defaultStyleName},
        Field{"styleInfos", &YGStyleConfigLoad::styleInfos},
        Field{"tabStyleInfos", &YGStyleConfigLoad::tabStyleInfos},
        Field{"magicPanelInfos", &YGStyleConfigLoad::magicPanelInfos},
        Field{"scrollPanelDict", &YGStyleConfigLoad::scrollPanelDict},
    };
};

namespace tool {

namespace {

void declareLayout(CLI::App& app, Arguments& arguments) {
    declareText(app, "--style", "PATH", arguments.style,
                "the main style file; ROOT/config/custompage_template.xml if not given", anyFile);
    declareText(app, "--tab", "PATH", arguments.tab,
                "the tab style file; ROOT/config/tab_styles.xml if not given", anyFile);
    declareText(app, "--magic", "PATH", arguments.magic,
                "the magic panel file; ROOT/config/magic_panels.xml if not given", anyFile);
}

void declareStyle(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "NAME", arguments.name,
                   "a style's name, or a custom page: TEMPLATE-MEMBER-MEMBER…",
                   named({NameKind::page}));
    declareLayout(app, arguments);
}

/// A loader that has read the files of the root folder, or those of the options; never null.
std::shared_ptr<YGStyleConfigLoad> loadLayout(const Arguments& arguments, DiagnosticsSink* sink) {
    const auto path = [&](const std::optional<std::string>& given, std::string_view otherwise) {
        return given ? *given : arguments.inRoot(otherwise);
    };
    auto loader = std::make_shared<YGStyleConfigLoad>(sink);
    loader->initWithStyleConfigPath(path(arguments.style, "config/custompage_template.xml"),
                                    path(arguments.tab, "config/tab_styles.xml"),
                                    path(arguments.magic, "config/magic_panels.xml"));
    return loader;
}

Answer dumpLayout(const Session& session) {
    return jsonAnswer(loadLayout(session.arguments, session.unreadable));
}

Answer dumpStyle(const Session& session) {
    const std::string& name = session.arguments.name;
    PageFaults faults(name, *session.unreadable);
    const auto loader = loadLayout(session.arguments, &faults);
    Answer answer = jsonAnswer(loader->loadStyleConfigInfoWithName(name));
    answer.complaint = faults.complaint(*loader, answer.exitCode == ExitCode::answer);
    return answer;
}

Answer showLayout(const Session& session) {
    const auto loader = loadLayout(session.arguments, session.unreadable);
    return {[loader, paint = session.paint()](Output& output) {
        LayoutView(*loader, paint).layout(output);
    }};
}

/// What stands beside the name of a style.
std::string noteOn(const YGStyleConfigLoad& loader, const std::string& name) {
    if (loader.styleInfos() && loader.styleInfos()->contains(name))
        return loader.defaultStyleName() == name ? "default" : "";
    return "custom page of template " + printable(name.substr(0, name.find('-')));
}

Answer showStyle(const Session& session) {
    const std::string& name = session.arguments.name;
    // The sink must live as long as the loader.
    const auto faults = std::make_shared<PageFaults>(name, *session.unreadable);
    const auto loader = loadLayout(session.arguments, faults.get());
    const auto style = loader->loadStyleConfigInfoWithName(name);
    std::string complaint = faults->complaint(*loader, static_cast<bool>(style));
    if (!style)
        return {"", ExitCode::noAnswer, std::move(complaint)};
    return {[faults, loader, style, note = noteOn(*loader, name), paint = session.paint()](
                Output& output) { LayoutView(*loader, paint).style(*style, note, output); },
            ExitCode::answer, std::move(complaint)};
}

constexpr Command table[] = {
    {"dump layout", "all styles, tab styles and magic panels, as JSON",
     "  ygconfig dump layout --root examples/terminal\n"
     "  ygconfig dump layout --style draft/custompage_template.xml\n",
     "", declareLayout, dumpLayout},

    {"dump style", "one style, stored or custom, as JSON; null if there is none",
     "  ygconfig dump style 行情报价 --root examples/terminal\n"
     "  ygconfig dump style quote-SH990001-depth --root examples/terminal\n"
     "  ygconfig dump style --root examples/terminal -- -a-name-with-a-dash\n",
     "", declareStyle, dumpStyle},

    {"show", "draws what the library holds, for people",
     "  ygconfig show --root examples/terminal\n"
     "  ygconfig show style 市场总览 --root examples/terminal\n"
     "  ygconfig show events --root examples/terminal | less\n",
     "Without a subcommand it does the same as 'show layout'.\n", declareLayout, showLayout, true,
     true},

    {"show layout", "all styles, tab styles and magic panels, as trees",
     "  ygconfig show layout --root examples/terminal | less\n", layoutLegend, declareLayout,
     showLayout, true, true},

    {"show style", "one style, stored or custom, as a tree with all that is in it",
     "  ygconfig show style 行情报价 --root examples/terminal\n"
     "  ygconfig show style quote-SH990001-depth --root examples/terminal\n",
     layoutLegend, declareStyle, showStyle, true, true},
};

/// Adds the names of the pages that a template can build.
void addPages(const TemplateSignature& made, NameList& names) {
    constexpr std::uint64_t most = 1000;
    NameList pages;
    if (made.pages <= most)
        pages.push_back(made.name);
    for (const TemplateSignature::Slot& slot : made.slots) {
        NameList longer;
        for (const std::string& page : pages) {
            for (const std::string& argument : *slot.arguments)
                longer.push_back(page + "-" + argument);
        }
        pages = std::move(longer);
    }
    names.insert(names.end(), pages.begin(), pages.end());
}

/// Calls `visit` with each panel once, in the order of the document.
template <class Visit>
void forEachPanel(const std::shared_ptr<PanelList>& panels, std::set<const void*>& visited,
                  const Visit& visit) {
    if (!panels)
        return;
    for (const auto& panel : *panels) {
        if (!visited.insert(panel.get()).second)
            continue;
        visit(*panel);
        forEachPanel(panel->panePanes(), visited, visit);
    }
}

template <class Visit>
void forEachPanelOf(const Session& session, NameGroups page, const Visit& visit) {
    if (page.empty())
        return;
    const auto loader = loadLayout(session.arguments, session.unreadable);
    std::set<const void*> visited;
    if (const auto style = loader->loadStyleConfigInfoWithName(page.front()))
        forEachPanel(style->stylePanes(), visited, visit);
}

}  // namespace

NameList pageNames(const Session& session, NameGroups) {
    NameList names;
    if (const auto styles = loadLayout(session.arguments, session.unreadable)->styleInfos())
        names = namesIn(*styles);
    for (const TemplateSignature& made : Explainer(session.arguments.root).templates())
        addPages(made, names);
    return names;
}

NameList templateNames(const Session& session, NameGroups) {
    NameList names;
    for (const TemplateSignature& made : Explainer(session.arguments.root).templates())
        names.push_back(made.name);
    return names;
}

NameList panelNames(const Session& session, NameGroups page) {
    NameList names;
    forEachPanelOf(session, page, [&](const PanelConfigInfo& panel) {
        names.push_back(panel.panelName().value_or(""));
    });
    return names;
}

NameList elementNames(const Session& session, NameGroups page) {
    NameList names;
    forEachPanelOf(session, page, [&](const PanelConfigInfo& panel) {
        if (!panel.paneElements())
            return;
        for (const auto& element : *panel.paneElements()) {
            const auto& uuid = element->elementUuid();
            names.push_back(uuid ? *uuid : element->elementName().value_or(""));
        }
    });
    return names;
}

std::span<const Command> layoutCommands() {
    return table;
}

}  // namespace tool

}  // namespace yg
