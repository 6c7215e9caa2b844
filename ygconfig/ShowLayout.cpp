// SPDX-License-Identifier: MIT
#include <memory>

#include "ygconfig/Commands.h"
#include "ygconfig/Layout.h"
#include "ygconfig/LayoutView.h"
#include "ygconfig/UnreadableFiles.h"

namespace yg::tool {

Answer showLayout(const Session& session) {
    UnreadableFiles unreadable;
    const std::shared_ptr loader = loadLayout(session.arguments, &unreadable);
    loader->setDiagnosticsSink(nullptr);
    return {[loader, colour = session.colour](Output& output) {
                LayoutView(*loader, colour).layout(output);
            },
            ExitCode::answer, unreadable.complaint()};
}

}  // namespace yg::tool
