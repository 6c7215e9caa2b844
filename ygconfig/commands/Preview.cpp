// SPDX-License-Identifier: MIT
#include "ygconfig/preview/Preview.h"

#include <cstdint>
#include <iostream>
#include <memory>
#include <string>

#include "ygconfig/commands/Commands.h"
#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

void declarePreview(CLI::App& app, Arguments& arguments) {
    declareNumber(app, "--port", "N", arguments.port,
                  "the port to serve on; one that is free if not given", std::uint16_t{1});
}

Answer preview(const Session& session) {
    const Arguments& arguments = session.arguments;
    Preview::Failure failure{};
    const std::shared_ptr<Preview> made =
        Preview::open(arguments.root, arguments.port.value_or(0), failure);
    if (!made) {
        const char* const who =
            failure.exitCode == ExitCode::unusable ? "ygconfig: " : "ygconfig preview: ";
        return {"", failure.exitCode, who + printable(failure.reason)};
    }
    return {[made](Output& output) {
        output.add(made->address() + "\n");
        output.flush();
        made->serve([](const std::string& line) {
            std::cerr << "ygconfig preview: " + line + "\n" << std::flush;
        });
    }};
}

constexpr std::string_view notes =
    "Prints the address of a page on this computer that shows what the report shows, and draws it\n"
    "again after each change of a file. While a file cannot be read the page stays, with the "
    "reason\n"
    "on top. No other computer and no other web page gets it. Ends on SIGINT (Ctrl-C) or SIGTERM.\n"
    "Exit status: 0 ended so, 2 ROOT cannot be read, 3 the port cannot be had.\n";

constexpr Command table[] = {
    {"preview", "shows the report in the browser while files are edited",
     "  ygconfig preview --root examples/terminal\n"
     "  ygconfig preview --root examples/terminal --port 8080\n",
     notes, declarePreview, preview, false},
};

}  // namespace

std::span<const Command> previewCommands() {
    return table;
}

}  // namespace yg::tool
