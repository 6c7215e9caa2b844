// SPDX-License-Identifier: MIT
//
// Event files and server files, from bytes to records, beside the same steps
// over libxml2's tree and over pugixml's own lenient parser; and an event by its group and name,
// beside two look-ups in a hash map of absl's.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <absl/container/flat_hash_map.h>
#include <absl/strings/string_view.h>
#include <benchmark/benchmark.h>

#include "YGConfigManager/events/EventAttributes.h"
#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/servers/AddressChoice.h"
#include "YGConfigManager/servers/RandomSource.h"
#include "YGConfigManager/servers/ServerAttributes.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/text/Numbers.h"

#include "benchmarks/BenchmarkHost.h"
#include "benchmarks/Checksum.h"
#include "benchmarks/Comparison.h"
#include "benchmarks/PeerTrees.h"

namespace yg::benchmarks {

namespace {

/// A stand-alone root with one event file and one server file, removed with it, or the sample's for
/// no bytes.
class Root {
public:
    explicit Root(std::size_t bytes) : bytes_(bytes) {
        if (bytes == 0) {
            folder_ = YG_SAMPLE_FOLDER;
            return;
        }
        std::string name = std::filesystem::temp_directory_path() / "yg-benchmark-XXXXXX";
        require(mkdtemp(name.data()) != nullptr, "no temporary folder");
        folder_ = name;
        std::filesystem::create_directory(folder_ / "config");
        std::filesystem::create_directory(folder_ / "storage");
        write(eventPath(), events(bytes));
        write(serverPath(), servers(bytes));
    }
    ~Root() {
        std::error_code ignored;
        if (bytes_ != 0)
            std::filesystem::remove_all(folder_, ignored);
    }
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    std::string path() const { return folder_; }
    std::string eventPath() const { return folder_ / "config/events.xml"; }
    std::string serverPath() const { return folder_ / "storage/skeleton_v1.xml"; }

private:
    static void write(const std::string& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }

    /// Commands, templates of twenty events, and groups that include a template, override some of
    /// it and add their own.
    static std::string events(std::size_t bytes) {
        std::mt19937 random(5);
        std::string text =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<event_list>\n    <command_event>\n";
        for (int i = 0; i < 1000; ++i)
            text += "        <command name=\"打开_" + std::to_string(i) +
                    "\" change_style=\"页面_" + std::to_string(i % 124) +
                    "\" dispatch=\"code\"/>\n";
        text += "    </command_event>\n";
        for (int i = 0; i < 40; ++i) {
            text += "    <event_template name=\"template_" + std::to_string(i) + "\">\n";
            for (int e = 0; e < 20; ++e)
                text += "        <event name=\"event_" + std::to_string(e) + "\" command=\"打开_" +
                        std::to_string(random() % 1000) + "\" disptch=\"code\"/>\n";
            text += "    </event_template>\n";
        }
        for (int i = 0; text.size() < bytes; ++i) {
            text += "    <element_event name=\"行情列表_" + std::to_string(i) +
                    "\">\n        <template src=\"template_" + std::to_string(random() % 40) +
                    "\"/>\n";
            for (std::size_t e = 0, count = 2 + random() % 6; e < count; ++e)
                text += "        <event name=\"event_" + std::to_string(random() % 40) +
                        "\" command=\"打开_" + std::to_string(random() % 1000) +
                        "\" dispatch=\"code;market\" addtion_data=\"双击\"/>\n";
            text += "    </element_event>\n";
        }
        return text + "</event_list>\n";
    }

    /// Groups of all loaded types and of others.
    static std::string servers(std::size_t bytes) {
        std::mt19937 random(6);
        std::string text =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<application md5=\"0123456789abcdef\">\n";
        const auto address = [&random] {
            return std::to_string(10 * (1 + random() % 9)) + ":198.51.100." +
                   std::to_string(random() % 256) + ":" + std::to_string(9000 + random() % 1000);
        };
        for (int type = 1; type <= 9; ++type) {
            text += "    <server type=\"" + std::to_string(type) +
                    "\" name=\"行情服务器\" domain=\"example.com\">\n";
            for (int i = 0; text.size() < bytes / 9 * type; ++i)
                text += "        <addr key=\"" + std::to_string(i) + "\" name=\"上海行情_" +
                        std::to_string(i) + ";深圳行情_" + std::to_string(i) + "\" addrs=\"" +
                        address() + ";" + address() + ";" + address() + "\"/>\n";
            text += "    </server>\n";
        }
        return text + "</application>\n";
    }

    std::size_t bytes_;
    std::filesystem::path folder_;
};

/// The tables of an event file.
struct PeerEvents {
    CommandMap commands;
    EventGroupMap templates;
    EventGroupMap groups;
};

template <class Library>
PeerEvents loadEvents(const std::string& path) {
    using Node = typename Library::Node;
    const auto tree = Library::parse(path);
    const Node root = Library::root(tree);
    PeerEvents events;

    const auto include = [&](Node entry, EventMap& into) {
        EventInclude source;
        readAttributesOf<Library>(entry, attributesOf<EventInclude>, source);
        if (!source.source || source.source->empty())
            return;
        if (const EventMap* found = events.templates.find(*source.source)) {
            for (const auto& [name, event] : *found)
                into.set(name, event);
        }
    };
    const auto define = [](Node entry, const auto& table, EventMap& into) {
        auto event = std::make_shared<YGEventData>();
        readAttributesOf<Library>(entry, table, *event);
        const std::string name = *event->eventName();
        into.set(name, std::move(event));
    };
    const auto forEachSection = [&](std::string_view name, auto visit) {
        Library::forEachElement(root, [&](Node section) {
            if (Library::name(section) == name)
                visit(section);
        });
    };

    forEachSection("command_event", [&](Node section) {
        Library::forEachElement(section, [&](Node entry) {
            auto command = std::make_shared<YGCommandData>();
            readAttributesOf<Library>(entry, attributesOf<YGCommandData>, *command);
            const std::string name = *command->commandName();
            events.commands.set(name, std::move(command));
        });
    });
    forEachSection("event_template", [&](Node section) {
        EventMap read;
        Library::forEachElement(section, [&](Node entry) {
            if (Library::attribute(entry, "name"))
                define(entry, templateEventAttributes, read);
            include(entry, read);
        });
        events.templates.set(Library::attribute(section, "name"), std::move(read));
    });
    forEachSection("element_event", [&](Node section) {
        EventMap read;
        Library::forEachElement(section, [&](Node entry) {
            if (Library::name(entry) == "event")
                define(entry, attributesOf<YGEventData>, read);
            else
                include(entry, read);
        });
        events.groups.set(Library::attribute(section, "name"), std::move(read));
    });
    return events;
}

using ServerGroups = std::vector<std::shared_ptr<YGServerAddrListTag>>;

/// The types in the order in which the loader builds their groups.
constexpr std::uint64_t serverTypes[] = {1, 3, 4, 2, 5, 7, 8};

template <class Library>
ServerGroups loadServers(const std::string& path, RandomSource& random = systemRandomSource()) {
    using Node = typename Library::Node;
    const auto tree = Library::parse(path);
    ServerGroups groups;
    for (const std::uint64_t type : serverTypes) {
        auto servers = std::make_shared<ServerAddrList>();
        auto group = std::make_shared<YGServerAddrListTag>();
        bool isFound = false;
        Library::forEachElement(Library::root(tree), [&](Node section) {
            const char* const own = Library::attribute(section, "type");
            if (isFound || !own || own != std::to_string(type))
                return;
            isFound = true;
            readAttributesOf<Library>(section, attributesOf<YGServerAddrListTag>, *group);
            Library::forEachElement(section, [&](Node element) {
                ServerEntry entry;
                readAttributesOf<Library>(element, attributesOf<ServerEntry>, entry);
                AddressChoice choice;
                forEachItem(*entry.addrs,
                            [&](std::string_view item) { choice.add(AddressItem(item)); });
                forEachItem(*entry.names, [&](std::string_view name) {
                    const AddressItem& address = choice.draw(random);
                    servers->push_back(YGServerAddrTag::initWithServerAddrInfo(
                        name, address.host(),
                        static_cast<std::uint64_t>(text::leadingInt32(address.port())),
                        *entry.key));
                });
            });
        });
        group->setServerAddrList(std::move(servers));
        groups.push_back(std::move(group));
    }
    return groups;
}

std::shared_ptr<YGServerCfgLoader> loadServersWithLibrary(const Root& root,
                                                          RandomSource* random = nullptr) {
    setHost(std::make_shared<BenchmarkHost>(root.path()));
    return YGServerCfgLoader::initWithIsGray(false, nullptr, random);
}

/// The same numbers for every load.
class CountingSource final : public RandomSource {
public:
    std::uint32_t uniform() override { return next_ += 0x61C88647; }
    int legacy() override { return 0; }

private:
    std::uint32_t next_ = 0;
};

void checkAnswers(const Root& root) {
    const auto events = YGEventLoader::initWithEventConfigPath(root.eventPath());
    for (const PeerEvents& peer :
         {loadEvents<Libxml2>(root.eventPath()), loadEvents<Pugixml>(root.eventPath())}) {
        require(checksum(events->commandDatas()) == checksum(peer.commands), "commands differ");
        require(checksum(events->eventTemplateDatas()) == checksum(peer.templates),
                "event templates differ");
        require(checksum(events->elementEventDatas()) == checksum(peer.groups),
                "event groups differ");
    }

    const auto serversOf = [](const ServerGroups& groups) {
        Summer summer;
        for (const auto& group : groups)
            summer.add(*group->serverAddrList());
        return summer.sum;
    };
    CountingSource numbers;
    const auto loader = loadServersWithLibrary(root, &numbers);
    ServerGroups groups;
    for (const std::uint64_t type : serverTypes)
        groups.push_back(loader->listTagWithServerType(type));
    const std::uint64_t servers = serversOf(groups);
    CountingSource forLibxml2;
    CountingSource forPugixml;
    require(servers == serversOf(loadServers<Libxml2>(root.serverPath(), forLibxml2)) &&
                servers == serversOf(loadServers<Pugixml>(root.serverPath(), forPugixml)),
            "servers differ");
}

template <class Load>
void add(const std::string& name, const std::shared_ptr<Root>& root, Load load) {
    benchmark::RegisterBenchmark(name.c_str(), [root, load](benchmark::State& state) {
        for (auto unused : state)
            benchmark::DoNotOptimize(load(*root));
    })->Unit(benchmark::kMillisecond);
}

void addLookup(const Root& root) {
    using Peer =
        absl::flat_hash_map<std::string,
                            absl::flat_hash_map<std::string, std::shared_ptr<YGEventData>>>;
    const auto loader = YGEventLoader::initWithEventConfigPath(root.eventPath());
    auto names = std::make_shared<std::vector<std::pair<std::string, std::string>>>();
    auto peer = std::make_shared<Peer>();
    for (const auto& [group, events] : loader->elementEventDatas()) {
        for (const auto& [name, event] : events) {
            (*peer)[group].emplace(name, event);
            if (names->size() < 1000)
                names->emplace_back(group, name);
        }
    }

    benchmark::RegisterBenchmark("events/lookup", [loader, names](benchmark::State& state) {
        std::size_t next = 0;
        const std::size_t before = allocations();
        for (auto unused : state) {
            const auto& [group, name] = (*names)[next];
            benchmark::DoNotOptimize(loader->eventByName(group, name));
            next = next + 1 < names->size() ? next + 1 : 0;
        }
        require(allocations() - before <= 1, "looking up an event allocates");
    });
    benchmark::RegisterBenchmark("events/lookup/flat_hash_map", [peer,
                                                                 names](benchmark::State& state) {
        const auto view = [](const std::string& text) {
            return absl::string_view(text.data(), text.size());
        };
        std::size_t next = 0;
        for (auto unused : state) {
            const auto& [groupName, name] = (*names)[next];
            std::shared_ptr<YGEventData> event;
            if (const auto group = peer->find(view(groupName)); group != peer->end()) {
                if (const auto found = group->second.find(view(name)); found != group->second.end())
                    event = found->second;
            }
            benchmark::DoNotOptimize(event);
            next = next + 1 < names->size() ? next + 1 : 0;
        }
    });
    compare({"events/lookup", "events/lookup/flat_hash_map", 1.3});
}

}  // namespace

void registerEventsAndServers() {
    struct Size {
        std::string name;
        std::size_t bytes;
        double eventsGoal;
        double serversGoal;
    };
    const Size sizes[] = {
        {"sample", 0, 0, 0}, {"1MB", 1'000'000, 1.2, 1.4}, {"5MB", 5'000'000, 1.2, 1.4}};
    for (const Size& size : sizes) {
        const auto root = std::make_shared<Root>(size.bytes);
        checkAnswers(*root);
        const std::string events = "events/load/" + size.name;
        const std::string servers = "servers/load/" + size.name;
        add(events, root,
            [](const Root& in) { return YGEventLoader::initWithEventConfigPath(in.eventPath()); });
        add(events + "/libxml2", root,
            [](const Root& in) { return loadEvents<Libxml2>(in.eventPath()); });
        add(events + "/pugixml", root,
            [](const Root& in) { return loadEvents<Pugixml>(in.eventPath()); });
        add(servers, root, [](const Root& in) { return loadServersWithLibrary(in); });
        add(servers + "/libxml2", root,
            [](const Root& in) { return loadServers<Libxml2>(in.serverPath()); });
        add(servers + "/pugixml", root,
            [](const Root& in) { return loadServers<Pugixml>(in.serverPath()); });
        compare({events, events + "/libxml2"});
        compare({events, events + "/pugixml", size.eventsGoal});
        compare({servers, servers + "/libxml2"});
        compare({servers, servers + "/pugixml", size.serversGoal});
        if (size.bytes == 1'000'000)
            addLookup(*root);
    }
}

}  // namespace yg::benchmarks
