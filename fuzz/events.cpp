// SPDX-License-Identifier: MIT
//
// Bytes as an event configuration: loaded without and with a listener, which must be the same, and
// everything in it looked up.
#include <memory>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

#include "YGConfigManager/events/YGEventLoader.h"

#include "Loaders.h"
#include "Target.h"

namespace {

using namespace yg;
using yg::fuzz::LoggingHost;
using yg::fuzz::LookingSink;
using yg::fuzz::require;
using yg::fuzz::shown;

/// A file in memory; the path names it for as long as the process lives.
const std::string& pathOfFileWith(const std::uint8_t* data, std::size_t size) {
    static const int file = ::memfd_create("events", MFD_CLOEXEC);
    static const std::string path = "/proc/self/fd/" + std::to_string(file);
    require(
        ::ftruncate(file, 0) == 0 && ::pwrite(file, data, size, 0) == static_cast<ssize_t>(size),
        "the file in memory is written");
    return path;
}

void lookUpAll(const YGEventLoader& loader) {
    for (const auto& [name, command] : loader.commandDatas()) {
        require(command->commandName() == name, "a command stands under its name");
        require(loader.commandByName(name) == (name.empty() ? nullptr : command),
                "a command with a name is found");
        require(!loader.commandByName(name + "\x01"), "another name finds nothing");
    }
    for (const auto& [name, events] : loader.eventTemplateDatas()) {
        require(!name.empty() && !events.empty(), "a template has a name and an event");
        for (const auto& [event, record] : events)
            require(!event.empty() && record->eventName() == event,
                    "an event of a template stands under its name");
    }
    for (const auto& [group, events] : loader.elementEventDatas()) {
        require(!group.empty(), "a group has a name");
        for (const auto& [event, record] : events) {
            require(record->eventName() == event, "an event stands under its name");
            require(loader.eventByName(group, event) == (event.empty() ? nullptr : record),
                    "an event with a name is found");
        }
        require(!loader.eventByName(group, ""), "no event is found without a name");
        require(!loader.eventByName(group, std::nullopt), "no event is found without a name");
        require(!loader.eventByName(group, "\x01"), "another name finds nothing");
    }
    require(!loader.commandByName("") && !loader.eventByName("", "a"), "an empty name is none");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto host = std::make_shared<LoggingHost>();
    static const std::shared_ptr<Host> before = setHost(host);
    static_cast<void>(before);
    const std::string& path = pathOfFileWith(data, size);

    host->log.clear();
    const auto silent = YGEventLoader::initWithEventConfigPath(path);
    const std::string log = host->log;
    lookUpAll(*silent);

    host->log.clear();
    LookingSink sink;
    const auto observed = YGEventLoader::initWithEventConfigPath(path, &sink);
    require(shown(*observed) == shown(*silent), "a listener changes no answer");
    require(host->log == log, "a listener changes no log line");
    return 0;
}
