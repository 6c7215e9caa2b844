// SPDX-License-Identifier: MIT
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "YGConfigManager/servers/YGServerCfgLoader.h"

#include "ygconfig/commands/Commands.h"
#include "ygconfig/commands/Names.h"
#include "ygconfig/drawing/Display.h"
#include "ygconfig/drawing/ServersView.h"
#include "ygconfig/files/Input.h"
#include "ygconfig/files/NothingStored.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

void declareServers(CLI::App& app, Arguments& arguments) {
    declareFlag(app, "--gray", arguments.gray, "as a user in the grey release");
}

void declareDelivery(CLI::App& app, Arguments& arguments) {
    declareOperand(app, "DATA", arguments.data, "the delivered file", anyFile);
    declareOperand(app, "MD5", arguments.md5, "the digest delivered with it; any text");
    declareServers(app, arguments);
}

/// A loader that has read the file for the user's right level; null when the host has no path for
/// it.
std::shared_ptr<YGServerCfgLoader> loadServers(const Arguments& arguments, DiagnosticsSink* sink) {
    return YGServerCfgLoader::initWithIsGray(arguments.gray, sink);
}

Answer dumpServers(const Session& session) {
    const auto loader = loadServers(session.arguments, session.unreadable);
    if (!loader)
        return jsonAnswer(nullptr);
    const auto path = session.arguments.withoutRoot(loader->configPath());
    return {[loader, path](Output& output) {
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

Answer showServers(const Session& session) {
    const auto loader = loadServers(session.arguments, session.unreadable);
    if (!loader)
        return {"", ExitCode::noAnswer, std::string(noServerPath)};
    const auto shownPath = session.arguments.withoutRoot(loader->configPath());
    return {ServersView(*loader, session.paint()).servers(shownPath.value_or(""))};
}

Answer deliverServers(const Session& session) {
    const Arguments& arguments = session.arguments;
    std::string bytes;
    if (const int error = readInput(arguments.data, bytes); error != 0)
        return {"", ExitCode::unusable,
                "ygconfig servers deliver: \"" + printable(arguments.data) +
                    "\": " + std::strerror(error)};
    NothingStored nothing(arguments.data == "-" ? "standard input" : arguments.data);
    const auto loader = loadServers(arguments, &nothing);
    if (!loader)
        return jsonAnswer(nullptr);
    Answer answer = jsonAnswer(loader->reloadServerConfigWithData(bytes, arguments.md5));
    answer.complaint = nothing.complaint();
    return answer;
}

constexpr std::string_view rightLevelNotes =
    "The right level selects the file: skeleton_v1.xml for \"free\" or none, skeleton_l2_v1.xml "
    "for\n"
    "any other; --gray adds _gray before _v1. A file in ROOT/user is used instead of the one in\n"
    "ROOT/storage. If a server has several addresses, each run chooses again.\n";

constexpr std::string_view deliveryNotes =
    "The answer is false for data that is not XML, and nothing is written. Otherwise the file is\n"
    "written to ROOT/user under the name for the right level and --gray, with MD5 as md5 of its "
    "root;\n"
    "ROOT/storage is not changed. Whenever nothing was stored, even if the answer is true, a line "
    "on\n"
    "standard error says why. A DATA file that cannot be read is an error (exit status 2).\n";

constexpr Command table[] = {
    {"dump servers", "the servers with the addresses chosen for them, as JSON",
     "  ygconfig dump servers --root examples/terminal\n"
     "  ygconfig dump servers --root examples/terminal --right l2 --gray\n",
     rightLevelNotes, declareServers, dumpServers},

    {"show servers", "the servers of each type and the chances of their addresses, as trees",
     "  ygconfig show servers --root examples/terminal\n"
     "  ygconfig show servers --root examples/terminal --right l2 --gray\n",
     serversLegend, declareServers, showServers, true, true},

    {"servers deliver", "applies a server file and keeps it as the user's own; true or false",
     "  ygconfig servers deliver new.xml 900150983cd24fb0d6963f7d28e17f72 --root "
     "examples/terminal\n",
     deliveryNotes, declareDelivery, deliverServers},
};

/// Calls `visit` with the loaders of both kinds of users.
template <class Visit>
void forEachLoader(const Session& session, const Visit& visit) {
    for (const bool isGray : {false, true}) {
        if (const auto loader = YGServerCfgLoader::initWithIsGray(isGray, session.unreadable))
            visit(*loader);
    }
}

}  // namespace

NameList serverNames(const Session& session, NameGroups type) {
    NameList names;
    const auto addNames = [&](std::string_view, const auto& value) {
        if constexpr (std::is_convertible_v<decltype(value), YGServerCfgLoader::Group>) {
            if (!value || !value->serverAddrList() ||
                (!type.empty() && type.front() != std::to_string(value->serverType())))
                return;
            for (const auto& server : *value->serverAddrList())
                names.push_back(server->serverName().value_or(""));
        }
    };
    forEachLoader(session, [&](const auto& loader) { forEachField(loader, addNames); });
    return names;
}

NameList addressNames(const Session& session, NameGroups) {
    NameList names;
    forEachLoader(session, [&](const YGServerCfgLoader& loader) {
        for (const auto& [type, offers] : loader.offers()) {
            for (const ServerOffer& offer : offers) {
                for (const AddressOffer& address : offer.addresses)
                    names.push_back(address.canBeChosen ? address.address : "");
            }
        }
    });
    return names;
}

std::span<const Command> serverCommands() {
    return table;
}

}  // namespace yg::tool
