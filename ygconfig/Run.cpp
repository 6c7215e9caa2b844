// SPDX-License-Identifier: MIT
#include "ygconfig/Run.h"

#include <memory>
#include <utility>

#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/StandAloneHost.h"

#include "ygconfig/drawing/Display.h"

namespace yg::tool {

namespace {

/// Installs a host while it lives.
class HostScope {
public:
    explicit HostScope(std::shared_ptr<Host> host) { setHost(std::move(host)); }
    ~HostScope() { setHost(nullptr); }
    HostScope(const HostScope&) = delete;
    HostScope& operator=(const HostScope&) = delete;
};

}  // namespace

Answer run(const CommandLine& line, bool colour) {
    if (!line.command)
        return line.answer;
    if (!line.command->needsHost)
        return line.command->run({line.arguments, colour});
    const StandAloneHost::Opened opened = StandAloneHost::open(line.arguments.root);
    if (!opened)
        return {"", ExitCode::unusable, "ygconfig: " + printable(opened.error)};
    if (line.arguments.right)
        opened.host->overrideUserRight(line.arguments.right);
    const HostScope scope(opened.host);
    Answer answer = line.command->run({line.arguments, colour});
    // The loaders behind the text may ask the host while it is written.
    return {[host = opened.host, text = std::move(answer.output)](Output& output) {
                const HostScope whileWriting(host);
                text.writeTo(output);
            },
            answer.exitCode, std::move(answer.complaint)};
}

}  // namespace yg::tool
