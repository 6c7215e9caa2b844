// SPDX-License-Identifier: MIT
#include "ygconfig/Layout.h"

namespace yg::tool {

void declareLayout(CLI::App& app, Arguments& arguments) {
    declareText(app, "--style", "PATH", arguments.style,
                "the main style file; ROOT/config/custompage_template.xml if not given");
    declareText(app, "--tab", "PATH", arguments.tab,
                "the tab style file; ROOT/config/tab_styles.xml if not given");
    declareText(app, "--magic", "PATH", arguments.magic,
                "the magic panel file; ROOT/config/magic_panels.xml if not given");
}

void declareStyle(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "NAME", arguments.name,
                   "a style's name, or a custom page: TEMPLATE-MEMBER-MEMBER…");
    declareLayout(app, arguments);
}

std::unique_ptr<YGStyleConfigLoad> loadLayout(const Arguments& arguments, DiagnosticsSink* sink) {
    const auto path = [&](const std::optional<std::string>& given, std::string_view otherwise) {
        return given ? *given : arguments.inRoot(otherwise);
    };
    auto loader = std::make_unique<YGStyleConfigLoad>();
    loader->setDiagnosticsSink(sink);
    loader->initWithStyleConfigPath(path(arguments.style, "config/custompage_template.xml"),
                                    path(arguments.tab, "config/tab_styles.xml"),
                                    path(arguments.magic, "config/magic_panels.xml"));
    return loader;
}

}  // namespace yg::tool
