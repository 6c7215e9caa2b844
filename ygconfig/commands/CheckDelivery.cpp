// SPDX-License-Identifier: MIT
#include <cstring>
#include <memory>
#include <string>

#include "YGConfigManager/inspection/Inspection.h"

#include "ygconfig/commands/Commands.h"
#include "ygconfig/drawing/Display.h"
#include "ygconfig/files/Input.h"

namespace yg::tool {

namespace {

void declareFile(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "FILE", arguments.data, "the file to be delivered, - for standard input",
                   anyFile);
    declareFormat(app, arguments);
}

void declareServers(CLI::App& app, Arguments& arguments) {
    declareFile(app, arguments);
    declareFlag(app, "--gray", arguments.gray, "for users in the grey release");
}

void declareWebPage(CLI::App& app, Arguments& arguments) {
    declareFile(app, arguments);
    declareText(app, "--table", "NAME", arguments.key,
                "the table that is replaced; web_page_urls.xml if not given",
                named({NameKind::webPageFile}));
}

Answer checkDelivery(const Session& session, Delivery::Kind kind) {
    const Arguments& arguments = session.arguments;
    Delivery delivery;
    delivery.kind = kind;
    delivery.name = arguments.data == "-" ? "standard input" : arguments.data;
    delivery.right = arguments.right;
    delivery.isGray = arguments.gray;
    if (arguments.key)
        delivery.table = *arguments.key;
    if (const int error = readInput(arguments.data, delivery.bytes); error != 0)
        return {"", ExitCode::unusable,
                "ygconfig check-delivery: \"" + printable(arguments.data) +
                    "\": " + std::strerror(error)};
    std::string error;
    const auto inspection = Inspection::ofDelivery(delivery, arguments.root, error);
    if (!inspection)
        return {"", ExitCode::unusable, "ygconfig: " + printable(error)};
    return findingsAnswer(session, inspection);
}

Answer checkServers(const Session& session) {
    return checkDelivery(session, Delivery::Kind::servers);
}

Answer checkWebPage(const Session& session) {
    return checkDelivery(session, Delivery::Kind::webPages);
}

Answer checkRequestUrls(const Session& session) {
    return checkDelivery(session, Delivery::Kind::requestUrls);
}

constexpr std::string_view notes =
    "The library takes FILE as it would from the server, but nothing below ROOT changes. Findings\n"
    "say what it refuses or drops, and which names are lost, changed or added.\n"
    "Exit status: 0 taken whole, 1 refused, or something is dropped or lost, 2 FILE, ROOT or\n"
    "host.json cannot be read.\n";

constexpr std::string_view serverNotes =
    "--right, or else the rightLevel of host.json, and --gray select the file that is replaced:\n"
    "skeleton_v1.xml for \"free\" or none, skeleton_l2_v1.xml for any other; --gray adds _gray\n"
    "before _v1.\n\n"
    "The library takes FILE as it would from the server, but nothing below ROOT changes. Findings\n"
    "say what it refuses or drops, and which names are lost, changed or added.\n"
    "Exit status: 0 taken whole, 1 refused, or something is dropped or lost, 2 FILE, ROOT or\n"
    "host.json cannot be read.\n";

constexpr Command table[] = {
    {"check-delivery", "tries what a server is to deliver, and changes nothing",
     "  ygconfig check-delivery servers new.xml --root examples/terminal\n"
     "  ygconfig check-delivery web-page new.xml --root examples/terminal\n"
     "  ygconfig check-delivery request-urls new.txt --root examples/terminal\n",
     "", nullptr, nullptr},

    {"check-delivery servers", "tries a server file",
     "  ygconfig check-delivery servers new.xml --root examples/terminal\n"
     "  ygconfig check-delivery servers new.xml --root examples/terminal --right l2 --gray\n",
     serverNotes, declareServers, checkServers, false},

    {"check-delivery web-page", "tries a table of web pages",
     "  ygconfig check-delivery web-page new.xml --root examples/terminal\n", notes, declareWebPage,
     checkWebPage, false},

    {"check-delivery request-urls", "tries a list of request URLs",
     "  ygconfig check-delivery request-urls new.txt --root examples/terminal\n", notes,
     declareFile, checkRequestUrls, false},
};

}  // namespace

std::span<const Command> checkDeliveryCommands() {
    return table;
}

}  // namespace yg::tool
