// SPDX-License-Identifier: MIT
//
// Writes the manual pages and the completion of ygconfig; see generated/GeneratedFiles.h for its
// words.
#include <cstddef>

#include "manual/Manual.h"

int main(int count, char** words) {
    return yg::writeGenerated({words, static_cast<std::size_t>(count)},
                              yg::manual::manual(yg::tool::usages()), yg::manual::generatedFolders);
}
