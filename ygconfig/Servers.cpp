// SPDX-License-Identifier: MIT
#include "ygconfig/Servers.h"

namespace yg::tool {

void declareServers(CLI::App& app, Arguments& arguments) {
    declareFlag(app, "--gray", arguments.gray, "as a user of the grey-release group");
}

void declareDelivery(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "DATA", arguments.data, "the file that is delivered");
    declareOperand(app, "MD5", arguments.md5, "the digest that comes with it; any text");
    declareServers(app, arguments);
}

std::shared_ptr<YGServerCfgLoader> loadServers(const Arguments& arguments, DiagnosticsSink* sink) {
    return YGServerCfgLoader::initWithIsGray(arguments.gray, sink);
}

std::optional<std::string> withoutRoot(const Arguments& arguments,
                                       const std::optional<std::string>& path) {
    const std::string folder = arguments.inRoot("");
    if (!path || path->compare(0, folder.size(), folder) != 0)
        return path;
    return path->substr(folder.size());
}

}  // namespace yg::tool
