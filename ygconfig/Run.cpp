// SPDX-License-Identifier: MIT
#include "ygconfig/Run.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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

/// Another host without its log.
class QuietHost final : public Host {
public:
    explicit QuietHost(std::shared_ptr<Host> host) : host_(std::move(host)) {}

    std::optional<std::string> getStorageFilePath(std::int64_t area,
                                                  std::optional<std::string_view> subFolderPath,
                                                  std::optional<std::string_view> fileName,
                                                  bool isNeedWrite) override {
        return host_->getStorageFilePath(area, subFolderPath, fileName, isNeedWrite);
    }
    std::optional<std::string> getUserRightDescription() override {
        return host_->getUserRightDescription();
    }
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override {
        return host_->getSoftOptimizeConfigFilePath(kind, fileName);
    }
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t kind,
                                                             std::string_view fileName) override {
        return host_->getBaseOptimizeConfigFilePath(kind, fileName);
    }
    std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view key) override {
        return host_->getMappingDicForKey(key);
    }
    std::optional<std::string> getDefualtFolderPath(std::int64_t kind) override {
        return host_->getDefualtFolderPath(kind);
    }
    std::optional<std::string> configServer() override { return host_->configServer(); }
    void writeLog(LogChannel, std::string_view) override {}

private:
    const std::shared_ptr<Host> host_;
};

}  // namespace

Answer run(const CommandLine& line, const Display& display) {
    if (!line.command)
        return line.answer;
    const auto unreadable = std::make_shared<UnreadableFiles>();
    const Session session{line.arguments, display.colour, display.columns, unreadable.get()};
    if (!line.command->needsHost)
        return line.command->run(session);
    const StandAloneHost::Opened opened = StandAloneHost::open(line.arguments.root);
    if (!opened && line.command->isQuiet)
        return {};
    if (!opened)
        return {"", ExitCode::unusable, "ygconfig: " + printable(opened.error)};
    if (line.arguments.right)
        opened.host->overrideUserRight(line.arguments.right);
    std::shared_ptr<Host> host = opened.host;
    if (line.command->isQuiet || (line.command->draws && !line.arguments.log))
        host = std::make_shared<QuietHost>(std::move(host));
    const HostScope scope(host);
    Answer answer = line.command->run(session);
    if (line.command->isQuiet)
        return answer;
    std::string complaint = unreadable->complaint();
    addLine(complaint, answer.complaint);
    // The loaders behind the text may ask the host, and tell their listener, while it is written.
    return {[host, unreadable, text = std::move(answer.output)](Output& output) {
                const HostScope whileWriting(host);
                text.writeTo(output);
            },
            answer.exitCode, std::move(complaint)};
}

}  // namespace yg::tool
