// SPDX-License-Identifier: MIT
//
// A host on a generated layout that writes no log.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/host/Host.h"

namespace yg::benchmarks {

class BenchmarkHost : public Host {
public:
    explicit BenchmarkHost(std::string root) : root_(std::move(root)) {}

    MappingDic wildcards;

    std::optional<std::string> getStorageFilePath(std::int64_t, std::optional<std::string_view>,
                                                  std::optional<std::string_view> fileName,
                                                  bool) override {
        return root_ + "/storage/" + std::string(fileName.value_or(""));
    }
    std::optional<std::string> getUserRightDescription() override { return "free"; }
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view fileName) override {
        return root_ + "/soft_optimize/" + std::string(fileName);
    }
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view fileName) override {
        return root_ + "/base_optimize/" + std::string(fileName);
    }
    std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view) override {
        return std::make_shared<MappingDic>(wildcards);
    }
    std::optional<std::string> getDefualtFolderPath(std::int64_t) override { return std::nullopt; }
    std::optional<std::string> configServer() override { return std::nullopt; }
    void writeLog(LogChannel, std::string_view) override {}

private:
    std::string root_;
};

}  // namespace yg::benchmarks
