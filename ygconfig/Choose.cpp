// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <random>

#include "YGConfigManager/servers/YGServerAddrListTag.h"

#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"

namespace yg::tool {

void declareChoose(CLI::App& app, Arguments& arguments) {
    declareOperands(app, "ITEM…", arguments.items, "host:port or weight:host:port; none is fine");
    declareFlag(app, "--weighted", arguments.weighted, "the older choice, by weight");
}

Answer choose(const Session& session) {
    const Arguments& arguments = session.arguments;
    if (!arguments.weighted)
        return jsonAnswer(YGServerAddrListTag::changeIpByPercentNew(&arguments.items));
    // It draws from rand(), which programs seed, not the library.
    std::srand(std::random_device{}());
    return jsonAnswer(YGServerAddrListTag::changeIpByPercent(&arguments.items));
}

}  // namespace yg::tool
