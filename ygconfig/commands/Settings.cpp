// SPDX-License-Identifier: MIT
#include <memory>
#include <string>

#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGReadonlyAppConfigManager.h"

#include "ygconfig/commands/Commands.h"
#include "ygconfig/drawing/SettingsView.h"
#include "ygconfig/files/NothingStored.h"
#include "ygconfig/files/UnreadableFiles.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

void declareItem(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "FILE", arguments.file, "a settings file's name, such as app_config.xml");
    declareOperand(app, "SECTION", arguments.section, "the name of an element below the root");
    declareOperand(app, "ITEM", arguments.item, "the name of an element in the section");
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
                "a settings file's name; app_config.xml if not given");
}

Answer getSetting(const Session& session) {
    const Arguments& arguments = session.arguments;
    const auto store = YGReadonlyAppConfigManager::initWithFileName(arguments.file);
    if (!store)
        return jsonAnswer(nullptr);
    return jsonAnswer(store->getItemText(arguments.section, arguments.item));
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

Answer showSettings(const Session& session) {
    UnreadableFiles unreadable;
    const std::string file = session.arguments.key.value_or("app_config.xml");
    DroppedNodes dropped(unreadable);
    const auto store = YGReadonlyAppConfigManager::initWithFileName(file, &dropped);
    if (!store)
        return nothingShownWithoutPath(file);
    const auto path =
        session.arguments.withoutRoot(YGReadonlyAppConfigManager::getFilePath(file, false));
    return {SettingsView(session.colour).settings(store->docment(), dropped, path.value_or("")),
            ExitCode::answer, unreadable.complaint()};
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

    {"show settings", "the application's settings, as trees",
     "  ygconfig show settings --root examples/terminal\n", settingsLegend, declareFile,
     showSettings},
};

}  // namespace

std::span<const Command> settingsCommands() {
    return table;
}

}  // namespace yg::tool
