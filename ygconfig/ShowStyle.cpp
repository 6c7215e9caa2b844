// SPDX-License-Identifier: MIT
#include <memory>
#include <vector>

#include "ygconfig/Commands.h"
#include "ygconfig/Display.h"
#include "ygconfig/Layout.h"
#include "ygconfig/LayoutView.h"
#include "ygconfig/Suggestion.h"

namespace yg::tool {

namespace {

Answer noStyle(const YGStyleConfigLoad& loader, const std::string& name) {
    std::vector<std::string> known;
    if (loader.styleInfos()) {
        for (const auto& [styleName, style] : *loader.styleInfos())
            known.push_back(styleName);
    }
    return {"", ExitCode::noAnswer,
            "ygconfig: no style '" + printable(name) + "'" + suggestion(name, known)};
}

/// What stands beside the name of a style.
std::string noteOn(const YGStyleConfigLoad& loader, const std::string& name) {
    if (loader.styleInfos() && loader.styleInfos()->contains(name))
        return loader.defaultStyleName() == name ? "default" : "";
    return "custom page of template " + printable(name.substr(0, name.find('-')));
}

}  // namespace

Answer showStyle(const Session& session) {
    const std::string& name = session.arguments.name;
    const std::shared_ptr loader = loadLayout(session.arguments);
    const auto style = loader->loadStyleConfigInfoWithName(name);
    if (!style)
        return noStyle(*loader, name);
    return {[loader, style, note = noteOn(*loader, name), colour = session.colour](Output& output) {
        LayoutView(*loader, colour).style(*style, note, output);
    }};
}

}  // namespace yg::tool
