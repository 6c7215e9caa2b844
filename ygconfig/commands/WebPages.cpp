// SPDX-License-Identifier: MIT
#include <cstring>
#include <string>

#include "YGConfigManager/inspection/RootContents.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "ygconfig/commandline/Suggestion.h"
#include "ygconfig/commands/Commands.h"
#include "ygconfig/commands/Names.h"
#include "ygconfig/drawing/Display.h"
#include "ygconfig/drawing/SettingsView.h"
#include "ygconfig/files/DroppedNodes.h"
#include "ygconfig/files/Input.h"
#include "ygconfig/files/NothingStored.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

void declareWebPage(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "FILE", arguments.file, "a table's name, such as web_page_urls.xml",
                   named({NameKind::webPageFile}));
    declareText(app, "[KEY]", "", arguments.key, "the key of an address",
                named({NameKind::webPage}));
    declareText(app, "--replace", "TABLE", arguments.replacement,
                "the path of a new table, - for standard input; instead of a key", anyFile);
}

void declareFile(CLI::App& app, Arguments& arguments) {
    declareText(app, "[FILE]", "", arguments.key, "a table's name; web_page_urls.xml if not given",
                named({NameKind::webPageFile}));
}

/// The addresses that count, by key.
RecordMap<std::string> addressesOf(const YGWebPageUrlConfig& table, const DroppedNodes& dropped) {
    RecordMap<std::string> addresses;
    const xml::Document file = table.docment();
    if (const xml::Element root = file.root(); root && !dropped.contains(root)) {
        for (const xml::Element& child : root.elements()) {
            if (!dropped.contains(child))
                addresses.set(child.attribute("key").value_or(""), child.stringValue());
        }
    }
    return addresses;
}

Answer lookUpWebPage(const Session& session) {
    const std::string& key = *session.arguments.key;
    DroppedNodes dropped(*session.unreadable);
    const auto table = YGWebPageUrlConfig::initWithFileName(session.arguments.file, &dropped);
    if (!table)
        return nothingFoundWithoutPath(session.arguments.file);
    const std::string address = table->getWebPageUrlByKey(key);
    Answer answer = jsonAnswer(address);
    // A key with an apostrophe may find an address without being one of the keys.
    const auto known = addressesOf(*table, dropped);
    if (address == "about:blank" && !known.contains(key))
        answer.complaint = nothingNamed("web page", key, namesIn(known));
    return answer;
}

Answer replaceWebPages(const Session& session) {
    const std::string& path = *session.arguments.replacement;
    std::string table;
    if (const int error = readInput(path, table); error != 0)
        return {"", ExitCode::unusable,
                "ygconfig web-page: \"" + printable(path) + "\": " + std::strerror(error)};
    NothingStored nothing(path == "-" ? "standard input" : path);
    const auto config = YGWebPageUrlConfig::initWithFileName(session.arguments.file, &nothing);
    if (!config)
        return nothingStoredWithoutPath(session.arguments.file);
    Answer answer = jsonAnswer(config->replaceDataFromServer(table));
    answer.complaint = nothing.complaint();
    return answer;
}

Answer findWebPage(const Session& session) {
    const Arguments& arguments = session.arguments;
    if (arguments.key.has_value() == arguments.replacement.has_value())
        return {"", ExitCode::unusable,
                arguments.key ? "ygconfig web-page: KEY and --replace cannot be combined"
                              : "ygconfig web-page: KEY or --replace is required"};
    return arguments.key ? lookUpWebPage(session) : replaceWebPages(session);
}

std::string fileOf(const Arguments& arguments) {
    return arguments.key.value_or("web_page_urls.xml");
}

Answer dumpWebPages(const Session& session) {
    const std::string file = fileOf(session.arguments);
    DroppedNodes dropped(*session.unreadable);
    const auto table = YGWebPageUrlConfig::initWithFileName(file, &dropped);
    return table ? jsonAnswer(addressesOf(*table, dropped)) : nothingFoundWithoutPath(file);
}

Answer showWebPages(const Session& session) {
    const std::string file = fileOf(session.arguments);
    DroppedNodes dropped(*session.unreadable);
    const auto table = YGWebPageUrlConfig::initWithFileName(file, &dropped);
    if (!table)
        return nothingShownWithoutPath(file);
    const auto path = session.arguments.withoutRoot(YGWebPageUrlConfig::getFilePath(file, false));
    return {SettingsView(session.paint()).webPages(table->docment(), dropped, path.value_or(""))};
}

constexpr std::string_view webPageNotes =
    "Without an address the answer is \"about:blank\", and a line on standard error says why.\n"
    "With --replace the answer is true once the new table is written to ROOT/user; otherwise it "
    "is\n"
    "false, and a line on standard error says why.\n"
    "Each \"&\" of the new table stands for itself, also in \"&amp;\".\n";

constexpr Command table[] = {
    {"web-page", "the address of a web page, as a JSON string; or replaces all, true or false",
     "  ygconfig web-page web_page_urls.xml help_center --root examples/terminal\n"
     "  ygconfig web-page web_page_urls.xml --replace new.xml --root examples/terminal\n",
     webPageNotes, declareWebPage, findWebPage},

    {"dump web-pages", "the addresses of web pages, as JSON",
     "  ygconfig dump web-pages --root examples/terminal\n",
     "One object: the keys in the order of the file, each with its address. Of several entries of "
     "a\n"
     "key the first counts. Without a readable table it is empty.\n",
     declareFile, dumpWebPages},

    {"show web-pages", "the addresses of web pages by key",
     "  ygconfig show web-pages --root examples/terminal\n", urlsLegend, declareFile, showWebPages,
     true, true},
};

}  // namespace

NameList webPageFileNames(const Session& session, NameGroups) {
    return storedFileNames(session, &RootContents::webPageFiles);
}

NameList webPageNames(const Session& session, NameGroups file) {
    if (file.empty())
        return {};
    DroppedNodes dropped(*session.unreadable);
    const auto pages = YGWebPageUrlConfig::initWithFileName(file.front(), &dropped);
    return pages ? namesIn(addressesOf(*pages, dropped)) : NameList();
}

std::span<const Command> webPageCommands() {
    return table;
}

}  // namespace yg::tool
