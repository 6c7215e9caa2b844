// SPDX-License-Identifier: MIT
#include <cstring>
#include <string>

#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "ygconfig/commands/Commands.h"
#include "ygconfig/drawing/Display.h"
#include "ygconfig/drawing/SettingsView.h"
#include "ygconfig/files/Input.h"
#include "ygconfig/files/NothingStored.h"
#include "ygconfig/files/UnreadableFiles.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

void declareWebPage(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "FILE", arguments.file, "a table's name, such as web_page_urls.xml");
    declareText(app, "[KEY]", "", arguments.key, "the key of an address");
    declareText(app, "--replace", "TABLE", arguments.replacement,
                "the path of a new table, - for standard input; instead of a key");
}

void declareFile(CLI::App& app, Arguments& arguments) {
    declareText(app, "[FILE]", "", arguments.key, "a table's name; web_page_urls.xml if not given");
}

Answer findWebPage(const Session& session) {
    const Arguments& arguments = session.arguments;
    if (arguments.key.has_value() == arguments.replacement.has_value())
        return {"", ExitCode::unusable,
                arguments.key ? "ygconfig web-page: KEY and --replace cannot be combined"
                              : "ygconfig web-page: KEY or --replace is required"};
    std::string table;
    if (arguments.replacement) {
        if (const int error = readInput(*arguments.replacement, table); error != 0)
            return {"", ExitCode::unusable,
                    "ygconfig web-page: \"" + printable(*arguments.replacement) +
                        "\": " + std::strerror(error)};
    }
    NothingStored nothing(arguments.replacement == "-" ? "standard input"
                                                       : arguments.replacement.value_or(""));
    const auto config = YGWebPageUrlConfig::initWithFileName(arguments.file, &nothing);
    if (!config)
        return arguments.replacement ? nothingStoredWithoutPath(arguments.file)
                                     : jsonAnswer(nullptr);
    if (!arguments.replacement)
        return jsonAnswer(config->getWebPageUrlByKey(arguments.key));
    Answer answer = jsonAnswer(config->replaceDataFromServer(table));
    answer.complaint = nothing.complaint();
    return answer;
}

Answer showWebPages(const Session& session) {
    UnreadableFiles unreadable;
    const std::string file = session.arguments.key.value_or("web_page_urls.xml");
    DroppedNodes dropped(unreadable);
    const auto table = YGWebPageUrlConfig::initWithFileName(file, &dropped);
    if (!table)
        return nothingShownWithoutPath(file);
    const auto path = session.arguments.withoutRoot(YGWebPageUrlConfig::getFilePath(file, false));
    return {SettingsView(session.colour).webPages(table->docment(), dropped, path.value_or("")),
            ExitCode::answer, unreadable.complaint()};
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

    {"show web-pages", "the addresses of web pages by key",
     "  ygconfig show web-pages --root examples/terminal\n", urlsLegend, declareFile, showWebPages},
};

}  // namespace

std::span<const Command> webPageCommands() {
    return table;
}

}  // namespace yg::tool
