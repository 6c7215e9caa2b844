// SPDX-License-Identifier: MIT
//
// A process that loads everything and then makes its first requests:
//
//   ROOT URL COUNT
//
// Prints which libraries for the network it has in memory before them, then the error of each of
// the COUNT requests, which as many threads make at once, then those libraries again.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <future>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "process/Uses.h"

namespace {

using namespace yg;
using namespace yg::testing;

void printLibraries() {
    std::set<std::string> found;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        for (const char* name : {"libcurl", "libssl", "libcrypto"}) {
            if (line.find(std::string("/") + name + ".so") != std::string::npos)
                found.insert(name);
        }
    }
    std::string all = "in memory:";
    for (const std::string& name : found)
        all += ' ' + name;
    std::puts(all.c_str());
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 4)
        return EXIT_FAILURE;
    const std::string root = arguments[1];
    const std::string url = arguments[2];
    useHost(root);
    loadLayout(*YGStyleConfigLoad::getShareInstance(), root);
    if (const int failing = firstFailing(allUses(root)); failing != 0)
        return failing;
    printLibraries();
    const auto manager = YGHttpReqUrlMgr::make();
    std::vector<std::promise<std::string>> errors(std::strtoul(arguments[3], nullptr, 10));
    std::vector<std::thread> threads;
    for (std::promise<std::string>& error : errors) {
        threads.emplace_back([&manager, &url, &error] {
            manager->requestUrl(
                url, [&error](const std::optional<std::string>&, const std::optional<HttpResponse>&,
                              const std::optional<std::string>& why) {
                    error.set_value(why.value_or("an answer"));
                });
        });
    }
    for (std::thread& one : threads)
        one.join();
    for (std::promise<std::string>& error : errors)
        std::puts(error.get_future().get().c_str());
    printLibraries();
    return EXIT_SUCCESS;
}
