// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"

#include <algorithm>

#include "ygconfig/Events.h"
#include "ygconfig/EventsView.h"
#include "ygconfig/Layout.h"
#include "ygconfig/LayoutView.h"
#include "ygconfig/Palette.h"
#include "ygconfig/PaletteView.h"
#include "ygconfig/Servers.h"
#include "ygconfig/ServersView.h"
#include "ygconfig/Settings.h"
#include "ygconfig/SettingsView.h"

namespace yg::tool {

namespace {

constexpr Group groupTable[] = {
    {"", "looks into the configuration of a terminal",
     "ygconfig show layout --root examples/terminal\n"
     "ygconfig dump style 行情报价 --root examples/terminal\n"
     "ygconfig event watch_list select --root examples/terminal\n",
     "Exit status: 0 answered, 1 the answer is null or false, 2 the command line, the root folder\n"
     "or host.json cannot be used, 3 the answer cannot be made or written.\n",
     ""},

    {"dump", "prints what the library holds, as JSON",
     "ygconfig dump layout --root examples/terminal\n"
     "ygconfig dump style quote-kline-depth --root examples/terminal\n"
     "ygconfig dump servers --root examples/terminal --right l2 --gray\n",
     "", ""},

    {"show", "draws what the library holds, for people",
     "ygconfig show --root examples/terminal\n"
     "ygconfig show style 市场总览 --root examples/terminal\n"
     "ygconfig show events --root examples/terminal | less\n",
     "Without a further word it is 'show layout'.\n", "show layout"},

    {"settings", "reads and changes the application's settings",
     "ygconfig settings get app_config.xml appearance theme --root examples/terminal\n"
     "ygconfig settings set app_config.xml appearance theme white --root examples/terminal\n",
     "", ""},

    {"servers", "changes the servers that the library keeps",
     "ygconfig servers deliver new.xml 900150983cd24fb0d6963f7d28e17f72 --root examples/terminal\n",
     "", ""},
};

constexpr std::string_view rightLevelNotes =
    "The right level chooses the file: skeleton_v1.xml for \"free\" or none, skeleton_l2_v1.xml "
    "for\n"
    "any other, each with _gray before _v1 for --gray; ROOT/user goes before ROOT/storage.\n"
    "Several addresses of one server are chosen from anew in each run.\n";

constexpr std::string_view paletteNotes =
    "The palette is palette_white.xml for style 0 and palette_black.xml for style 1; ROOT/user "
    "goes\n"
    "before ROOT/storage. For any other style, and without its file, the answer is null.\n";

constexpr std::string_view imageNotes =
    "The answer is the size of what was written, in points and in pixels; null, with nothing "
    "written,\n"
    "when there is no such image. With --group and --index it is one piece of a strip of COUNT "
    "pieces,\n"
    "numbered from 0 at the left; the aspect ratio stays with --width as with --height.\n";

constexpr std::string_view deliveryNotes =
    "It is false for what is no XML, and nothing is written then. Otherwise the file is written "
    "to\n"
    "ROOT/user under the name for the right level and --gray, with MD5 as md5 of its root; what\n"
    "stands in ROOT/storage stays. Whenever nothing was stored, also when the answer is true, a "
    "line\n"
    "on standard error says why. A DATA file that cannot be read is an error (exit status 2).\n";

constexpr std::string_view settingsNotes =
    "It is written to ROOT/user, with all that is in FILE; what stands in ROOT/storage stays. A "
    "new\n"
    "item needs a FILE with a root element: without one the text is lost, and the answer is true.\n"
    "False are names that no XML element can have, and --readonly. Whenever nothing was stored, "
    "also\n"
    "when the answer is true, a line on standard error says why.\n"
    "\n"
    "Several of these commands at the same time lose nothing to each other, nor to an application "
    "that\n"
    "opens FILE with OtherWriters::merged. An application that opens it otherwise does not see "
    "what "
    "is\n"
    "stored here while it runs, and undoes it when it next stores something itself.\n";

constexpr std::string_view webPageNotes =
    "Without an address the answer is \"about:blank\", and a line on standard error says why.\n"
    "--replace is true once the new table is written to ROOT/user; otherwise it is false, and a "
    "line\n"
    "on standard error says why.\n"
    "Each \"&\" of the new table stands for itself, also in \"&amp;\".\n";

constexpr std::string_view requestUrlNotes =
    "--refresh downloads http://SERVER/mac/mac_free_free_request_urls_json.txt from the "
    "configServer\n"
    "of host.json and waits for the end. A list with another digest is written to ROOT/user and\n"
    "answers; after any failure the list that was stored does. Nothing is downloaded without it.\n"
    "A line on standard error says why a list could not be had or not be stored.\n";

constexpr std::string_view chooseNotes =
    "Each item that says host:port or weight:host:port has the same chance, whatever its weight, "
    "and\n"
    "the others have none. The answer is host:port, \"\" when no item has both.\n"
    "With --weighted the first part of an item is its weight and the second its host; the answer "
    "is\n"
    "a host without port, or the first item as it stands when the weights add up to 0. The "
    "chances\n"
    "are not the percentages.\n";

/// For a command that takes nothing of its own.
void declareNothing(CLI::App&, Arguments&) {}

constexpr Command commandTable[] = {
    {"dump layout", "all styles, tab styles and magic panels, as JSON",
     "ygconfig dump layout --root examples/terminal\n"
     "ygconfig dump layout --style draft/custompage_template.xml\n",
     "", declareLayout, dumpLayout},

    {"dump style", "one style, stored or custom, as JSON; null if there is none",
     "ygconfig dump style 行情报价 --root examples/terminal\n"
     "ygconfig dump style quote-SH990001-depth --root examples/terminal\n"
     "ygconfig dump style --root examples/terminal -- -a-name-with-a-dash\n",
     "", declareStyle, dumpStyle},

    {"dump events", "all commands, event templates and event groups, as JSON",
     "ygconfig dump events --root examples/terminal\n"
     "ygconfig dump events --events draft/events.xml\n",
     "", declareEvents, dumpEvents},

    {"dump palette", "the colours, fonts and images of a theme, as JSON; null if there is none",
     "ygconfig dump palette --palette-style 1 --root examples/terminal\n", paletteNotes,
     declarePalette, dumpPalette},

    {"dump servers", "the servers with the addresses chosen for them, as JSON",
     "ygconfig dump servers --root examples/terminal\n"
     "ygconfig dump servers --root examples/terminal --right l2 --gray\n",
     rightLevelNotes, declareServers, dumpServers},

    {"dump request-urls", "the stored list of request URLs, as JSON; null if there is none",
     "ygconfig dump request-urls --root examples/terminal\n", "", declareNothing, dumpRequestUrls},

    {"show layout", "all styles, tab styles and magic panels, as trees",
     "ygconfig show layout --root examples/terminal | less\n", layoutLegend, declareLayout,
     showLayout},

    {"show style", "one style, stored or custom, as a tree with all that is in it",
     "ygconfig show style 行情报价 --root examples/terminal\n"
     "ygconfig show style quote-SH990001-depth --root examples/terminal\n",
     layoutLegend, declareStyle, showStyle},

    {"show events", "all event groups, event templates and commands, as trees",
     "ygconfig show events --root examples/terminal | less\n", eventsLegend, declareEvents,
     showEvents},

    {"show palette", "the colours, fonts and images of both themes, side by side",
     "ygconfig show palette --root examples/terminal | less -R\n", paletteLegend, declareNothing,
     showPalette},

    {"show servers", "the servers of each type and the chances of their addresses, as trees",
     "ygconfig show servers --root examples/terminal\n"
     "ygconfig show servers --root examples/terminal --right l2 --gray\n",
     serversLegend, declareServers, showServers},

    {"show settings", "the application's settings, as trees",
     "ygconfig show settings --root examples/terminal\n", settingsLegend, declareSettingsFile,
     showSettings},

    {"show web-pages", "the addresses of web pages by key",
     "ygconfig show web-pages --root examples/terminal\n", urlsLegend, declareWebPageFile,
     showWebPages},

    {"show request-urls", "the addresses of HTTP services by key",
     "ygconfig show request-urls --root examples/terminal\n"
     "ygconfig show request-urls --root examples/terminal --refresh\n",
     urlsLegend, declareRefresh, showRequestUrls},

    {"command", "one command of the event file, as JSON; null if there is none",
     "ygconfig command open_index_page --root examples/terminal\n", "", declareCommandName,
     findCommand},

    {"event", "one event of an event group, as JSON; null if there is none",
     "ygconfig event watch_list select --root examples/terminal\n",
     "Neither templates nor other groups are looked at.\n", declareEventName, findEvent},

    {"color", "the colour of an application key, as JSON; red if there is none",
     "ygconfig color QuoteGrid.名称 --palette-style 1 --root examples/terminal\n", paletteNotes,
     declarePaletteKey, findColor},

    {"font", "the font of an application key, as JSON; the system font if there is none",
     "ygconfig font QuoteGrid.名称 --palette-style 1 --root examples/terminal\n", paletteNotes,
     declarePaletteKey, findFont},

    {"image", "writes an image of a theme, a piece of it or a scaled one, as PNG",
     "ygconfig image logo -o logo.png --root examples/terminal\n"
     "ygconfig image NavTabs.自选 --group 4 --index 1 --width 40 -o star.png --root "
     "examples/terminal\n",
     imageNotes, declareImage, writeImage},

    {"settings get", "the text of a settings item, as a JSON string; null if there is none",
     "ygconfig settings get app_config.xml appearance theme --root examples/terminal\n", "",
     declareItem, getSetting},

    {"settings set", "stores the text of a settings item; true or false",
     "ygconfig settings set app_config.xml appearance theme white --root examples/terminal\n"
     "ygconfig settings set app_config.xml chart grid true --description 'lines behind charts'\n",
     settingsNotes, declareItemText, setSetting},

    {"web-page", "the address of a web page, as a JSON string; or replaces all, true or false",
     "ygconfig web-page web_page_urls.xml help_center --root examples/terminal\n"
     "ygconfig web-page web_page_urls.xml --replace new.xml --root examples/terminal\n",
     webPageNotes, declareWebPage, findWebPage},

    {"request-url", "the address of an HTTP service, as a JSON string; null if there is none",
     "ygconfig request-url quote_snapshot --root examples/terminal\n"
     "ygconfig request-url quote_snapshot --refresh --root examples/terminal\n",
     requestUrlNotes, declareRequestUrl, findRequestUrl},

    {"servers deliver", "applies a server file and keeps it as the user's own; true or false",
     "ygconfig servers deliver new.xml 900150983cd24fb0d6963f7d28e17f72 --root examples/terminal\n",
     deliveryNotes, declareDelivery, deliverServers},

    {"choose", "one address out of several, as a JSON string",
     "ygconfig choose 192.0.2.1:9211 192.0.2.2:9211\n"
     "ygconfig choose --weighted 70:192.0.2.1:9211 30:192.0.2.2:9211\n",
     chooseNotes, declareChoose, choose},
};

template <class Row>
const Row* rowNamed(std::span<const Row> table, std::string_view words) {
    const auto row = std::find_if(table.begin(), table.end(),
                                  [&](const Row& each) { return each.words == words; });
    return row == table.end() ? nullptr : &*row;
}

}  // namespace

std::span<const Command> commands() {
    return commandTable;
}

std::span<const Group> groups() {
    return groupTable;
}

const Command* commandNamed(std::string_view words) {
    return rowNamed(commands(), words);
}

const Group* groupNamed(std::string_view words) {
    return rowNamed(groups(), words);
}

}  // namespace yg::tool
