// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Layout.h"
#include "ygconfig/LayoutView.h"

namespace yg::tool {

Answer showLayout(const Session& session) {
    const auto loader = loadLayout(session.arguments);
    return {LayoutView(*loader, session.colour).layout()};
}

}  // namespace yg::tool
