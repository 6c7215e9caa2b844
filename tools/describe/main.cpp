// SPDX-License-Identifier: MIT
//
// Writes the schemas, the pages on the file formats and those on the rules; see
// generated/GeneratedFiles.h for its words.
#include <cstddef>

#include "describe/Describe.h"

int main(int count, char** words) {
    return yg::writeGenerated({words, static_cast<std::size_t>(count)},
                              yg::describe::describe(yg::formats()), yg::describe::generatedFolders,
                              yg::describe::writtenSchemas);
}
