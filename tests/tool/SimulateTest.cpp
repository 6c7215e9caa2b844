// SPDX-License-Identifier: MIT
//
// Whole runs of simulate servers.
#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "files/TemporaryFolder.h"
#include "tool/ToolRun.h"

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using yg::files::TemporaryFolder;
using yg::testing::runTool;
using yg::testing::ToolRun;

const std::string sample = "examples/terminal";

ToolRun simulate(std::vector<std::string> options, const std::string& root = sample) {
    options.insert(options.begin(), {"simulate", "servers", "--root", root});
    return runTool(options);
}

json simulated(std::vector<std::string> options, const std::string& root = sample) {
    options.insert(options.end(), {"--format", "json"});
    const ToolRun run = simulate(std::move(options), root);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    return json::parse(run.output);
}

/// A root whose one entry of type 1 has two names and these addresses.
void writeServers(const TemporaryFolder& root, const std::string& addrs) {
    root.write("storage/skeleton_v1.xml",
               "<application><server type='1' name='行情'><addr key='7x' name='甲;乙' addrs='" +
                   addrs + "'/><addr key='1' name='skipped' addrs='h'/></server></application>");
}

TEST(SimulateServers, WritesEachMember) {
    const TemporaryFolder root;
    writeServers(root, "40:a:1;b:2;;c:3;60:d:4");
    const ToolRun run =
        simulate({"--clients", "1000", "--reloads", "3", "--without", "b:2", "--format", "json"},
                 root.path());
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, "");
    json answer = json::parse(run.output);
    json entry = answer.at("groups").at(0).at("entries").at(0);
    answer["groups"][0].erase("entries");
    EXPECT_EQ(answer, json::parse(R"({"configPath": "storage/skeleton_v1.xml", "choice": "plain",
        "clients": 1000, "reloads": 3, "without": ["b:2"],
        "groups": [{"serverType": 1, "serverDescription": "行情"}]})"));
    EXPECT_DOUBLE_EQ(entry.at("chanceOfMoveByChange").get<double>(), 0.75);
    json now = entry.at("now");
    json without = entry.at("without");
    for (const char* member : {"now", "without", "chanceOfMoveByChange"})
        entry.erase(member);
    EXPECT_EQ(entry,
              json::parse(R"({"key": "7x", "name": "甲;乙", "servers": 2, "choices": 2000})"));

    EXPECT_EQ(now.at("addresses").size(), 4);
    EXPECT_EQ(now.at("addresses").at(1), json::parse(R"({"address": "b:2", "numbers": 1073741824,
        "ofNumbers": 4294967296, "share": 0.25, "expectedLoad": 500.0, "worstLoad": 545,
        "drawnLoad": null})"));
    now.erase("addresses");
    EXPECT_EQ(now, json::parse(R"({"chanceOfMove": 0.75, "chanceOfMoveOfClient": 0.9375,
        "chanceOfAnotherAfterReloads": 0.75, "chanceOfAnyMove": 0.984375, "expectedMoves": 2.25,
        "drawnWithAnother": null, "drawnMoves": null})"));

    std::vector<std::string> left;
    for (const json& address : without.at("addresses"))
        left.push_back(address.at("address"));
    EXPECT_THAT(left, ElementsAre("a:1", "c:3", "d:4"));
    EXPECT_EQ(without.at("addresses").at(0).at("numbers"), 1431655766);
}

TEST(SimulateServers, DrawsBarsAndWhereTheLoadGoes) {
    const TemporaryFolder root;
    writeServers(root, "a:1;b:2;c:3;a:1");
    EXPECT_EQ(simulate({"--clients", "600"}, root.path()).output,
              R"(Fleet  storage/skeleton_v1.xml  plain choice  600 clients  1 reload

行情       type 1
└─ 甲;乙   key 7x  2 servers  moved by a reload 62.5%  any of the servers 85.9%
   ├─ a:1  █████·····    50%  load 600  99% 640
   ├─ b:2  ███·······    25%  load 300  99% 335
   └─ c:3  ███·······    25%  load 300  99% 335
)");
    EXPECT_EQ(
        simulate({"--clients", "600", "--reloads", "2", "--without", "a:1"}, root.path()).output,
        R"(Fleet  storage/skeleton_v1.xml  plain choice  600 clients  2 reloads
       without a:1

行情       type 1
└─ 甲;乙   key 7x  2 servers  moved by a reload 62.5% → 50%
   │       any of the servers 85.9% → 75%  by any of 2 reloads 84.4% → 75%
   │       expected moves 1.25 → 1  moved by the change 75%
   ├─ a:1  ··········    50% →    0%  load 600 → 0  -600  99% 0  taken out
   ├─ b:2  █████·····    25% →   50%  load 300 → 600  +300  99% 640
   └─ c:3  █████·····    25% →   50%  load 300 → 600  +300  99% 640
)");
}

TEST(SimulateServers, SaysThatNoAddressIsLeft) {
    const std::vector<std::string> options{"--without", "192.0.2.43:9242"};
    EXPECT_THAT(simulate(options).output,
                HasSubstr("moved by the change 100%  no address is left"));
    const json entry = simulated(options).at("groups").at(3).at("entries").at(1);
    EXPECT_EQ(entry.at("without").at("addresses"), json::array());
    EXPECT_EQ(entry.at("chanceOfMoveByChange"), 1.0);
}

TEST(SimulateServers, LeavesEntriesWithoutTheAddressAsTheyAre) {
    const json all = simulated({"--without", "192.0.2.43:9242"});
    EXPECT_EQ(all.at("groups").size(), 7);
    const json entry = all.at("groups").at(0).at("entries").at(0);
    EXPECT_EQ(entry.at("without"), nullptr);
    EXPECT_EQ(entry.at("chanceOfMoveByChange"), nullptr);
}

TEST(SimulateServers, SharesByWeightThoseOfHosts) {
    const TemporaryFolder root;
    writeServers(root, "100:a:1;0:b:2");
    const json now =
        simulated({"--weighted"}, root.path()).at("groups").at(0).at("entries").at(0).at("now");
    // Both have the running total 100, so the one that comes first in the hash map has all numbers.
    ASSERT_EQ(now.at("addresses").size(), 2);
    const std::uint64_t first = now.at("addresses").at(0).at("numbers");
    const std::uint64_t second = now.at("addresses").at(1).at("numbers");
    EXPECT_EQ(now.at("addresses").at(0).at("address"), "a");
    EXPECT_EQ(first + second, now.at("addresses").at(0).at("ofNumbers"));
    EXPECT_EQ(now.at("chanceOfMove"), 0.0);
}

TEST(SimulateServers, ChoosesTheFileByRightLevelAndGreyRelease) {
    EXPECT_EQ(simulated({"--gray", "--right", "l2"}).at("configPath"),
              "storage/skeleton_l2_gray_v1.xml");
}

// How often which address is drawn is chance; that all clients draw is not.
TEST(SimulateServers, DrawsAFleetOnRequest) {
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{"--simulate"}, {"--simulate", "--weighted"}}) {
        std::vector<std::string> all{"--clients", "500", "--reloads", "4"};
        all.insert(all.end(), options.begin(), options.end());
        const json answer = simulated(all);
        for (const json& group : answer.at("groups")) {
            for (const json& entry : group.at("entries")) {
                const json& now = entry.at("now");
                std::uint64_t drawn = 0;
                for (const json& address : now.at("addresses"))
                    drawn += address.at("drawnLoad").get<std::uint64_t>();
                EXPECT_EQ(drawn, entry.at("choices"));
                EXPECT_LE(now.at("drawnWithAnother"), now.at("drawnMoves"));
                EXPECT_LE(now.at("drawnMoves"), entry.at("choices").get<std::uint64_t>() * 4);
            }
        }
    }
    EXPECT_THAT(simulate({"--simulate", "--clients", "10"}).output, HasSubstr("  drawn 10\n"));
    EXPECT_THAT(simulate({"--clients", "10"}).output, Not(HasSubstr("drawn")));
}

TEST(SimulateServers, TakesAMillionMillionClientsWithoutDrawing) {
    const json now = simulated({"--clients", "1000000000000", "--reloads", "1000000000000"})
                         .at("groups")
                         .at(0)
                         .at("entries")
                         .at(1)
                         .at("now");
    EXPECT_EQ(now.at("addresses").at(0).at("worstLoad"), 500001163174);
    EXPECT_EQ(now.at("expectedMoves"), 5e11);
}

void expectRefused(const std::vector<std::string>& options, const std::string& fault) {
    const ToolRun run = simulate(options);
    EXPECT_EQ(run.status, 2) << fault;
    EXPECT_EQ(run.output, "") << fault;
    EXPECT_EQ(run.errors, "ygconfig simulate servers: " + fault + "\n");
}

TEST(SimulateServers, RefusesBadNumbers) {
    for (const char* number :
         {"0", "-1", "1e3", "1000000000001", "99999999999999999999", "", "x"}) {
        expectRefused({"--clients", number}, "--clients: '" + std::string(number) +
                                                 "' is not a whole number from 1 to 1000000000000");
    }
    for (const char* number : {"-1", "2.0", "1000000000001"}) {
        expectRefused({"--reloads", number}, "--reloads: '" + std::string(number) +
                                                 "' is not a whole number from 0 to 1000000000000");
    }
    expectRefused({"--without", "a", "b"}, "unexpected 'b'");
    expectRefused({"--format", "xml"}, "--format: 'xml' is not text or json");
}

TEST(SimulateServers, DrawsTenMillionTimesAtMost) {
    const TemporaryFolder root;
    writeServers(root, "a:1");
    const auto statusOf = [&](const char* clients, const char* reloads) {
        return simulate({"--simulate", "--clients", clients, "--reloads", reloads}, root.path())
            .status;
    };
    // Two servers, each loaded once and then once again.
    EXPECT_EQ(statusOf("2500000", "1"), 0);
    EXPECT_EQ(statusOf("2500001", "1"), 2);
    EXPECT_EQ(statusOf("1000000000000", "1000000000000"), 2);
    expectRefused({"--simulate", "--clients", "1000000"},
                  "--simulate: the fleet would draw more than 10000000 addresses");
}

TEST(SimulateServers, FindsNothingWithoutServers) {
    const TemporaryFolder root;
    writeServers(root, "h;k");
    ToolRun run = simulate({}, root.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "ygconfig: no server in 'storage/skeleton_v1.xml'\n");
    run = simulate({"--format", "json"}, root.path());
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, "null\n");
    EXPECT_EQ(simulate({"--gray"}, root.path()).status, 1);
}

TEST(SimulateServers, FindsNothingForAnAddressThatIsNotThere) {
    const ToolRun run = simulate({"--without", "192.0.2.11:9212"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, "ygconfig: no address '192.0.2.11:9212'; nearest: '192.0.2.11:9211'\n");
}

}  // namespace
