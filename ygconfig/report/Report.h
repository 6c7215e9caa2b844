// SPDX-License-Identifier: MIT
//
// The report: one HTML page that shows all that a root holds. It is complete in itself and asks
// nothing of any other place. Throws std::bad_alloc and what the sink throws.
#pragma once

#include <functional>
#include <string_view>

#include "YGConfigManager/inspection/Inspection.h"

#include "ygconfig/Answer.h"

namespace yg::tool {

/// The inspection must keep its contents. `root` is how the page calls the root.
struct ReportOf {
    std::string_view root;
    const Inspection& inspection;
};

/// The model alone, as JSON without "<".
void writeModel(const ReportOf& report, Output& output);

/// A page in a file, or one that asks the server that it came from for changes.
enum class PageKind { file, live };

/// The page around a model, which `model` writes. What stands before and behind it is the same for
/// every root.
void writePage(const std::function<void()>& model, PageKind kind, Output& output);

}  // namespace yg::tool
