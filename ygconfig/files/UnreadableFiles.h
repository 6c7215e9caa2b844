// SPDX-License-Identifier: MIT
//
// Which files and downloads could not be read, also because the root element has another name,
// which file could not be written, and why, for people: the library's log says why, but not which.
#pragma once

#include <string>

#include "ygconfig/files/FileSink.h"

namespace yg::tool {

class UnreadableFiles final : public FileSink {
public:
    UnreadableFiles();

    /// A line "ygconfig: FILE: Line N, column N: REASON" for each file, without the last line feed;
    /// "" if all could be read and written.
    std::string complaint() const;
};

}  // namespace yg::tool
