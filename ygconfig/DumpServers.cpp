// SPDX-License-Identifier: MIT
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"
#include "ygconfig/Servers.h"

namespace yg::tool {

Answer dumpServers(const Session& session) {
    const auto loader = loadServers(session.arguments);
    if (!loader)
        return jsonAnswer(nullptr);
    return {[loader, path = withoutRoot(session.arguments, loader->configPath())](Output& output) {
        JsonWriter writer(output);
        writer.writeRecord(
            *loader, [&](std::string_view name, const auto& field) -> auto& {
                if constexpr (std::is_convertible_v<decltype(field), std::optional<std::string>>)
                    return name == "configPath" ? path : field;
                else
                    return field;
            });
        writer.finish();
    }};
}

}  // namespace yg::tool
