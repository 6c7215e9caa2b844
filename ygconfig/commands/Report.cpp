// SPDX-License-Identifier: MIT
#include "ygconfig/report/Report.h"

#include <string>

#include "ygconfig/commands/Commands.h"
#include "ygconfig/drawing/Display.h"
#include "ygconfig/files/WriteOutput.h"

namespace yg::tool {

namespace {

void declareReport(CLI::App& app, Arguments& arguments) {
    declareText(app, "-o", "FILE", arguments.output,
                "the file to write; standard output if not given", anyFile);
}

Answer report(const Session& session) {
    const Arguments& arguments = session.arguments;
    InspectionOptions options;
    options.keepsContents = true;
    std::string error;
    const auto inspection = Inspection::open(arguments.root, error, options);
    if (!inspection)
        return {"", ExitCode::unusable, "ygconfig: " + printable(error)};
    const auto write = [inspection, root = arguments.root](Output& output) {
        writePage([&] { writeModel({root, *inspection}, output); }, PageKind::file, output);
    };
    if (!arguments.output)
        return {Text(write)};
    std::string page;
    const Sink append = [&](std::string_view piece) { page += piece; };
    Output output(append);
    write(output);
    output.flush();
    error = writeOutput(*arguments.output, page);
    if (!error.empty())
        return {"", ExitCode::failed,
                "ygconfig report: " + printable(*arguments.output + ": " + error)};
    return {""};
}

constexpr std::string_view notes =
    "FILE is one HTML page that is complete in itself and asks for nothing from anywhere. It "
    "shows\n"
    "pages, custom pages, the palettes, events, servers, settings, web pages, request URLs and "
    "the\n"
    "findings of lint, each with its place in the files.\n"
    "Exit status: 0 written, 2 ROOT cannot be read, 3 FILE cannot be written.\n";

constexpr Command table[] = {
    {"report", "draws all that a root holds as one HTML page",
     "  ygconfig report --root examples/terminal -o report.html\n", notes, declareReport, report,
     false},
};

}  // namespace

std::span<const Command> reportCommands() {
    return table;
}

}  // namespace yg::tool
