// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"

#include <algorithm>

#include "ygconfig/Events.h"
#include "ygconfig/EventsView.h"
#include "ygconfig/Layout.h"
#include "ygconfig/LayoutView.h"
#include "ygconfig/Servers.h"
#include "ygconfig/ServersView.h"

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

    {"servers", "changes the servers that the library keeps",
     "ygconfig servers deliver new.xml 900150983cd24fb0d6963f7d28e17f72 --root examples/terminal\n",
     "", ""},
};

constexpr std::string_view rightLevelNotes =
    "The right level chooses the file: skeleton_v1.xml for \"free\" or none, skeleton_l2_v1.xml "
    "for\n"
    "any other, each with _gray before _v1 for --gray; ROOT/user goes before ROOT/storage.\n"
    "Several addresses of one server are chosen from anew in each run.\n";

constexpr std::string_view deliveryNotes =
    "It is false for what is no XML, and nothing is written then. Otherwise the file is written "
    "to\n"
    "ROOT/user under the name for the right level and --gray, with MD5 as md5 of its root; what\n"
    "stands in ROOT/storage stays. A DATA file that cannot be read is an error (exit status 2).\n";

constexpr std::string_view chooseNotes =
    "Each item that says host:port or weight:host:port has the same chance, whatever its weight, "
    "and\n"
    "the others have none. The answer is host:port, \"\" when no item has both.\n"
    "With --weighted the first part of an item is its weight and the second its host; the answer "
    "is\n"
    "a host without port, or the first item as it stands when the weights add up to 0. The "
    "chances\n"
    "are not the percentages.\n";

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

    {"dump servers", "the servers with the addresses chosen for them, as JSON",
     "ygconfig dump servers --root examples/terminal\n"
     "ygconfig dump servers --root examples/terminal --right l2 --gray\n",
     rightLevelNotes, declareServers, dumpServers},

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

    {"show servers", "the servers of each type and the chances of their addresses, as trees",
     "ygconfig show servers --root examples/terminal\n"
     "ygconfig show servers --root examples/terminal --right l2 --gray\n",
     serversLegend, declareServers, showServers},

    {"command", "one command of the event file, as JSON; null if there is none",
     "ygconfig command open_index_page --root examples/terminal\n", "", declareCommandName,
     findCommand},

    {"event", "one event of an event group, as JSON; null if there is none",
     "ygconfig event watch_list select --root examples/terminal\n",
     "Neither templates nor other groups are looked at.\n", declareEventName, findEvent},

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
