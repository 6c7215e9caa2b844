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
    explicit NothingStored(std::string_view delivered = "") : delivered_(delivered) {}

    void report(const Finding& finding) override;

    /// Leaves out what was reported so far, of what was stored before.
    void beginStoring() { reason_.clear(); }

    /// A line "ygconfig: nothing was stored: FILE: REASON", without the line feed; "" when all was.
    std::string complaint() const;

private:
    std::string reasonOf(const Finding& finding) const;

    const std::string delivered_;
    std::string fault_;   // of the settings file, which then takes no item
    std::string reason_;  // the first one
};

}  // namespace yg::tool
