// SPDX-License-Identifier: MIT
#include "ygconfig/files/FileSink.h"

#include <algorithm>

namespace yg::tool {

std::string FileSink::withFile(const Finding& finding) const {
    // Some loaders name the file themselves, because they come back to one that they have read.
    const bool namesFile = std::any_of(files_.begin(), files_.end(), [&](const std::string& file) {
        return !file.empty() && finding.value.compare(0, file.size(), file) == 0;
    });
    return namesFile ? finding.value : files_.back() + ": " + finding.value;
}

}  // namespace yg::tool
