// SPDX-License-Identifier: MIT
//
// Counts in a settings file for ever: WriterProgram ROOT. Each value that is safe is acknowledged
// as a line on standard output; whoever reads it ends the program as roughly as it likes.
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"

#include "crash/Counting.h"

int main(int count, char** arguments) {
    if (count != 2) {
        return 2;
    }
    yg::setHost(std::make_shared<yg::StandAloneHost>(arguments[1]));
    const auto store = yg::YGAppConfigManager::initWithFileName("settings.xml");
    if (!store) {
        return 1;
    }
    const auto known = store->getItemText("counting", "value");
    for (long number = known ? std::atol(known->c_str()) + 1 : 1;; ++number) {
        store->setConfigItem("counting", "value", std::nullopt, yg::testing::textOf(number));
        const std::string line = std::to_string(number) + "\n";
        if (::write(STDOUT_FILENO, line.data(), line.size()) < 0) {
            return 0;
        }
    }
}
