// SPDX-License-Identifier: MIT
#include <cstring>
#include <string>

#include "YGConfigManager/settings/YGWebPageUrlConfig.h"

#include "ygconfig/Commands.h"
#include "ygconfig/Display.h"
#include "ygconfig/Input.h"
#include "ygconfig/Json.h"
#include "ygconfig/NothingStored.h"
#include "ygconfig/Settings.h"

namespace yg::tool {

Answer findWebPage(const Session& session) {
    const Arguments& arguments = session.arguments;
    if (arguments.key.has_value() == arguments.replacement.has_value())
        return {"", ExitCode::unusable,
                arguments.key ? "ygconfig web-page: KEY and --replace exclude each other"
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
        return arguments.replacement ? withoutStore(arguments.file) : jsonAnswer(nullptr);
    if (!arguments.replacement)
        return jsonAnswer(config->getWebPageUrlByKey(arguments.key));
    Answer answer = jsonAnswer(config->replaceDataFromServer(table));
    answer.complaint = nothing.complaint();
    return answer;
}

}  // namespace yg::tool
