// SPDX-License-Identifier: MIT
#include "manual/Manual.h"

namespace yg::manual {

std::vector<GeneratedFile> manual(const Usages& usages) {
    std::vector<GeneratedFile> files = pages(usages);
    files.push_back({"completions/ygconfig.bash", bashCompletion(usages)});
    files.push_back({"completions/_ygconfig", zshCompletion(usages)});
    files.push_back({"completions/ygconfig.fish", fishCompletion(usages)});
    return files;
}

}  // namespace yg::manual
