// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Layout.h"
#include "ygconfig/LayoutView.h"
#include "ygconfig/UnreadableFiles.h"

namespace yg::tool {

Answer showLayout(const Session& session) {
    UnreadableFiles unreadable;
    const auto loader = loadLayout(session.arguments, &unreadable);
    return {LayoutView(*loader, session.colour).layout(), ExitCode::answer, unreadable.complaint()};
}

}  // namespace yg::tool
