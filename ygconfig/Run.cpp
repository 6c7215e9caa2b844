// SPDX-License-Identifier: MIT
#include "ygconfig/Run.h"

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/StandAloneHost.h"

#include "ygconfig/Display.h"

namespace yg::tool {

Answer run(const CommandLine& line, bool colour) {
    if (!line.command)
        return line.answer;
    const StandAloneHost::Opened opened = StandAloneHost::open(line.arguments.root);
    if (!opened)
        return {"", ExitCode::unusable, "ygconfig: " + printable(opened.error)};
    if (line.arguments.right)
        opened.host->overrideUserRight(line.arguments.right);
    setHost(opened.host);
    Answer answer = line.command->run({line.arguments, colour});
    setHost(nullptr);
    return answer;
}

}  // namespace yg::tool
