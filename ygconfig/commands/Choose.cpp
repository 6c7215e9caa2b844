// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <random>

#include "YGConfigManager/servers/YGServerAddrListTag.h"

#include "ygconfig/commands/Commands.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

void declareChoose(CLI::App& app, Arguments& arguments) {
    declareOperands(app, "ITEM", arguments.items, "host:port or weight:host:port");
    declareFlag(app, "--weighted", arguments.weighted, "the older way of choosing, by weight");
}

Answer choose(const Session& session) {
    const Arguments& arguments = session.arguments;
    if (!arguments.weighted)
        return jsonAnswer(YGServerAddrListTag::changeIpByPercentNew(&arguments.items));
    // It draws from rand(), which programs seed, not the library.
    std::srand(std::random_device{}());
    return jsonAnswer(YGServerAddrListTag::changeIpByPercent(&arguments.items));
}

constexpr std::string_view chooseNotes =
    "All items of the form host:port or weight:host:port have the same chance, whatever their "
    "weight;\n"
    "other items are never chosen. The answer is host:port, or \"\" if there is no such item.\n"
    "With --weighted the first part of an item is its weight and the second its host; the answer "
    "is\n"
    "a host without port, or the first item as it stands when the weights add up to 0. The "
    "chances\n"
    "are not the percentages.\n";

constexpr Command table[] = {
    {"choose", "one address out of several, as a JSON string",
     "  ygconfig choose 192.0.2.1:9211 192.0.2.2:9211\n"
     "  ygconfig choose --weighted 70:192.0.2.1:9211 30:192.0.2.2:9211\n",
     chooseNotes, declareChoose, choose},
};

}  // namespace

std::span<const Command> chooseCommands() {
    return table;
}

}  // namespace yg::tool
