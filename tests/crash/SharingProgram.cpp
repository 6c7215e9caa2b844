// SPDX-License-Identifier: MIT
//
// An application that keeps a settings file open which others write too: SharingProgram ROOT
// SECTION NUMBER. For each byte on standard input it stores one item more, "i<NUMBER>", "i<NUMBER +
// 1>" and so on, and answers a line: the number when the item is safe, "-" when it is not.
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"

namespace {

class CountingSink final : public yg::DiagnosticsSink {
public:
    void report(const yg::Finding&) override { ++count; }
    int count = 0;
};

}  // namespace

int main(int count, char** arguments) {
    if (count != 4)
        return 2;
    yg::setHost(std::make_shared<yg::StandAloneHost>(arguments[1]));
    CountingSink findings;
    const auto store =
        yg::YGAppConfigManager::initWithFileName("shared.xml", &findings, yg::OtherWriters::merged);
    if (!store)
        return 1;
    char byte = 0;
    for (long number = std::atol(arguments[3]); ::read(STDIN_FILENO, &byte, 1) == 1; ++number) {
        const std::string text = std::to_string(number);
        findings.count = 0;
        const bool isSafe = store->setConfigItem(arguments[2], "i" + text, std::nullopt, text) &&
                            findings.count == 0;
        const std::string line = (isSafe ? text : "-") + "\n";
        if (::write(STDOUT_FILENO, line.data(), line.size()) < 0)
            return 0;
    }
    return 0;
}
