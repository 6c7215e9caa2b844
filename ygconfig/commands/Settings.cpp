// SPDX-License-Identifier: MIT
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "YGConfigManager/inspection/RootContents.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"

#include "ygconfig/commandline/Suggestion.h"
#include "ygconfig/commands/Commands.h"
#include "ygconfig/commands/Names.h"
#include "ygconfig/drawing/SettingsView.h"
#include "ygconfig/files/DroppedNodes.h"
#include "ygconfig/files/NothingStored.h"
#include "ygconfig/json/Json.h"

namespace yg {

namespace tool {

struct SettingsItem {
    std::string text;
    std::optional<std::string> description;
};

}  // namespace tool

template <>
struct Description<tool::SettingsItem> {
    static constexpr std::tuple fields{
        Field{"text", &tool::SettingsItem::text},
        Field{"description", &tool::SettingsItem::description},
    };
};

namespace tool {

namespace {

void declareItem(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "FILE", arguments.file, "a settings file's name, such as app_config.xml",
                   named({NameKind::settingsFile}));
    declareOperand(app, "SECTION", arguments.section, "the name of an element below the root",
                   named({NameKind::settingsSection}));
    declareOperand(app, "ITEM", arguments.item, "the name of an element in the section",
                   named({NameKind::settingsItem}));
}

void declareItemText(CLI::App& app, Arguments& arguments) {
    declareItem(app, arguments);
    declareOperand(app, "TEXT", arguments.text, "the text to store; may be empty");
    declareText(app, "--description", "D", arguments.description,
                "what a new item is for; an existing item keeps its description");
    declareFlag(app, "--readonly", arguments.readonly, "use the store that never writes");
}

void declareFile(CLI::App& app, Arguments& arguments) {
    declareText(app, "[FILE]", "", arguments.key,
                "a settings file's name; app_config.xml if not given",
                named({NameKind::settingsFile}));
}

using Items = RecordMap<SettingsItem>;

/// A store that only reads, and what it holds.
struct Store {
    Store(const std::string& file, UnreadableFiles& unreadable)
        : dropped(unreadable),
          store(YGReadonlyAppConfigManager::initWithFileName(file, &dropped)) {}

    /// The items that count, by section; only when there is a store.
    RecordMap<Items> sections() const {
        RecordMap<Items> sections;
        const xml::Document file = store->docment();
        const xml::Element root = file.root();
        if (!root || dropped.contains(root))
            return sections;
        for (const xml::Element& child : root.elements()) {
            if (dropped.contains(child))
                continue;
            const std::string name(child.name());
            Items items = sections.contains(name) ? *sections.find(name) : Items();
            for (const xml::Element& grandchild : child.elements()) {
                if (dropped.contains(grandchild))
                    continue;
                SettingsItem item{grandchild.stringValue(), std::nullopt};
                if (const auto description = grandchild.attribute("description"))
                    item.description = *description;
                items.set(std::string(grandchild.name()), std::move(item));
            }
            sections.set(name, std::move(items));
        }
        return sections;
    }

    DroppedNodes dropped;
    std::shared_ptr<YGReadonlyAppConfigManager> store;  ///< null without a path
};

Answer getSetting(const Session& session) {
    const Arguments& arguments = session.arguments;
    const Store file(arguments.file, *session.unreadable);
    if (!file.store)
        return nothingFoundWithoutPath(arguments.file);
    Answer answer = jsonAnswer(file.store->getItemText(arguments.section, arguments.item));
    if (answer.exitCode == ExitCode::answer)
        return answer;
    const RecordMap<Items> sections = file.sections();
    const Items* const section = sections.find(arguments.section);
    answer.complaint = section ? nothingNamed("item", arguments.item, namesIn(*section),
                                              " in section " + inQuotes(arguments.section))
                               : nothingNamed("section", arguments.section, namesIn(sections));
    return answer;
}

Answer setSetting(const Session& session) {
    const Arguments& arguments = session.arguments;
    NothingStored nothing;
    std::shared_ptr<YGAppConfigManager> store;
    if (arguments.readonly)
        store = YGReadonlyAppConfigManager::initWithFileName(arguments.file);
    else
        store =
            YGAppConfigManager::initWithFileName(arguments.file, &nothing, OtherWriters::merged);
    if (!store)
        return nothingStoredWithoutPath(arguments.file);
    Answer answer = jsonAnswer(store->setConfigItem(arguments.section, arguments.item,
                                                    arguments.description, arguments.text));
    answer.complaint = arguments.readonly ? "ygconfig: nothing was stored: --readonly was given"
                                          : nothing.complaint();
    return answer;
}

std::string fileOf(const Arguments& arguments) {
    return arguments.key.value_or("app_config.xml");
}

Answer dumpSettings(const Session& session) {
    const std::string name = fileOf(session.arguments);
    const Store file(name, *session.unreadable);
    return file.store ? jsonAnswer(file.sections()) : nothingFoundWithoutPath(name);
}

Answer showSettings(const Session& session) {
    const std::string name = fileOf(session.arguments);
    const Store file(name, *session.unreadable);
    if (!file.store)
        return nothingShownWithoutPath(name);
    const auto path =
        session.arguments.withoutRoot(YGReadonlyAppConfigManager::getFilePath(name, false));
    return {SettingsView(session.paint())
                .settings(file.store->docment(), file.dropped, path.value_or(""))};
}

constexpr std::string_view settingsNotes =
    "The file is written to ROOT/user with everything else that FILE holds; ROOT/storage is not\n"
    "changed. A new item needs a FILE with a root element: without one the text is lost, and the\n"
    "answer is true. The answer is false for names that an XML element cannot have, and with\n"
    "--readonly. Whenever nothing was stored, even if the answer is true, a line on standard "
    "error\n"
    "says why.\n"
    "\n"
    "If several of these commands run at the same time, none undoes what another one stored. The "
    "same\n"
    "holds for an application that opens FILE with OtherWriters::merged. An application that opens "
    "it\n"
    "otherwise does not see what is stored here while it runs, and undoes it when it next stores\n"
    "something itself.\n";

constexpr Command table[] = {
    {"settings get", "the text of a settings item, as a JSON string; null if there is none",
     "  ygconfig settings get app_config.xml appearance theme --root examples/terminal\n", "",
     declareItem, getSetting},

    {"settings set", "stores the text of a settings item; true or false",
     "  ygconfig settings set app_config.xml appearance theme white --root examples/terminal\n"
     "  ygconfig settings set app_config.xml chart grid true --description 'lines behind charts'\n",
     settingsNotes, declareItemText, setSetting},

    {"dump settings", "the application's settings, as JSON",
     "  ygconfig dump settings --root examples/terminal\n",
     "One object: the sections in the order of the file, in each its items, and of each item its\n"
     "text and its description, null if it has none. Of several items of one name the first "
     "counts;\n"
     "sections of one name are one. Without a readable file it is empty.\n",
     declareFile, dumpSettings},

    {"show settings", "the application's settings, as trees",
     "  ygconfig show settings --root examples/terminal\n", settingsLegend, declareFile,
     showSettings, true, true},
};

}  // namespace

NameList settingsFileNames(const Session& session, NameGroups) {
    return storedFileNames(session, &RootContents::settingsFiles);
}

NameList settingsSectionNames(const Session& session, NameGroups file) {
    if (file.empty())
        return {};
    const Store store(file.front(), *session.unreadable);
    return store.store ? namesIn(store.sections()) : NameList();
}

NameList settingsItemNames(const Session& session, NameGroups fileAndSection) {
    if (fileAndSection.size() < 2)
        return {};
    const Store store(fileAndSection.front(), *session.unreadable);
    if (!store.store)
        return {};
    const RecordMap<Items> sections = store.sections();
    const Items* const items = sections.find(fileAndSection[1]);
    return items ? namesIn(*items) : NameList();
}

std::span<const Command> settingsCommands() {
    return table;
}

}  // namespace tool

}  // namespace yg
