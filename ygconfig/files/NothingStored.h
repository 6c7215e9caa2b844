// SPDX-License-Identifier: MIT
//
// Why a command that stores something has stored nothing. Its answer does not always say so.
#pragma once

#include <string>
#include <string_view>

#include "ygconfig/files/FileSink.h"

namespace yg::tool {

class NothingStored final : public FileSink {
public:
    /// `delivered` is what people call the text that is to be stored, if a text is.
    explicit NothingStored(std::string_view delivered = "");

    /// Leaves out what was reported so far, of what was stored before.
    void beginStoring() { faults_.clear(); }

    /// A line "ygconfig: nothing was stored: FILE: REASON", without the line feed; "" when all was.
    std::string complaint() const;

private:
    std::string reasonOf(const Fault& fault) const;

    const std::string delivered_;
};

}  // namespace yg::tool
