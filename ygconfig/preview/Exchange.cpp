// SPDX-License-Identifier: MIT
#include "ygconfig/preview/Exchange.h"

#include <dlfcn.h>
#include <filesystem>

namespace yg::tool {

namespace {

/// Beside the tool as it is built, or in a folder of its own where it is installed.
void* openModule() {
    if (void* const module = dlopen(YG_SERVER_FILE, RTLD_NOW | RTLD_LOCAL))
        return module;
    std::error_code ignored;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", ignored);
    const auto installed = program.parent_path() / YG_SERVER_FROM_BIN;
    return dlopen(installed.c_str(), RTLD_NOW | RTLD_LOCAL);
}

}  // namespace

ExchangeFunction* openExchange(std::string& error) {
    void* const module = openModule();
    void* const found = module ? dlsym(module, "ygconfigExchange") : nullptr;
    if (!found) {
        const char* const reason = dlerror();
        error = reason ? reason : YG_SERVER_FILE;
    }
    return reinterpret_cast<ExchangeFunction*>(found);
}

}  // namespace yg::tool
