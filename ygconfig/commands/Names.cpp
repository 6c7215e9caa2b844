// SPDX-License-Identifier: MIT
#include "ygconfig/commands/Names.h"

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

#include "YGConfigManager/inspection/RootContents.h"

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

struct Source {
    NameKind kind;
    std::string_view word;
    NameList (*list)(const Session& session, NameGroups groups);
};

constexpr Source sources[] = {
    {NameKind::page, "page", pageNames},
    {NameKind::panel, "panel", panelNames},
    {NameKind::element, "element", elementNames},
    {NameKind::pageTemplate, "template", templateNames},
    {NameKind::eventGroup, "event-group", eventGroupNames},
    {NameKind::event, "event", eventNames},
    {NameKind::eventTemplate, "event-template", eventTemplateNames},
    {NameKind::command, "command", commandNames},
    {NameKind::colorKey, "color-key", colorKeyNames},
    {NameKind::fontKey, "font-key", fontKeyNames},
    {NameKind::image, "image", imageNames},
    {NameKind::server, "server", serverNames},
    {NameKind::address, "address", addressNames},
    {NameKind::settingsFile, "settings-file", settingsFileNames},
    {NameKind::settingsSection, "settings-section", settingsSectionNames},
    {NameKind::settingsItem, "settings-item", settingsItemNames},
    {NameKind::webPageFile, "web-page-file", webPageFileNames},
    {NameKind::webPage, "web-page", webPageNames},
    {NameKind::requestUrl, "request-url", requestUrlNames},
    {NameKind::rule, "rule", ruleNames},
};

void declareNames(CLI::App& app, Arguments& arguments) {
    std::vector<std::string_view> kinds;
    for (const Source& source : sources)
        kinds.push_back(source.word);
    declareChoice(app, "KIND", "", arguments.name, kinds, "what to list")->required();
    declareOperands(app, "GROUP", arguments.items, "what the names belong to");
}

Answer listNames(const Session& session) {
    const Arguments& arguments = session.arguments;
    const Source* const source = std::ranges::find(sources, arguments.name, &Source::word);
    std::string text;
    std::set<std::string, std::less<>> known;
    for (const std::string& name : source->list(session, arguments.items)) {
        if (!name.empty() && printable(name) == name && known.insert(name).second)
            text.append(name).append("\n");
    }
    return {text};
}

constexpr std::string_view namesNotes =
    "KIND is page, template, event-group, event-template, command, color-key, font-key, image,\n"
    "server, address, settings-file, web-page-file, request-url or rule, or with a GROUP:\n"
    "  panel PAGE, element PAGE         those of a page\n"
    "  event EVENT-GROUP                those of an event group\n"
    "  server TYPE                      those of a type\n"
    "  settings-section FILE            those of a settings file\n"
    "  settings-item FILE SECTION       those of a section\n"
    "  web-page FILE                    the keys of a table of web pages\n"
    "Names that are empty or have control characters are left out. A root that cannot be used has\n"
    "no names. Nothing is logged; shells ask for names with this command.\n";

constexpr Command table[] = {
    {"names", "lists names of a root, one a line, for completion in shells",
     "  ygconfig names page --root examples/terminal\n"
     "  ygconfig names event watch_list --root examples/terminal\n"
     "  ygconfig names settings-item app_config.xml appearance --root examples/terminal\n",
     namesNotes, declareNames, listNames, true, false, true},
};

}  // namespace

NameList storedFileNames(const Session& session,
                         std::span<const std::string> (RootContents::*listed)() const) {
    InspectionOptions options;
    options.keepsContents = true;
    std::string error;
    const auto inspection = Inspection::open(session.arguments.root, error, options);
    if (!inspection || !inspection->contents())
        return {};
    NameList names;
    for (const std::string& file : (inspection->contents()->*listed)())
        names.push_back(file.substr(file.rfind('/') + 1));
    return names;
}

std::string_view wordOf(NameKind kind) {
    return std::ranges::find(sources, kind, &Source::kind)->word;
}

std::span<const Command> namesCommands() {
    return table;
}

}  // namespace yg::tool
