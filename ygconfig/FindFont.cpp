// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"
#include "ygconfig/Palette.h"

namespace yg::tool {

Answer findFont(const Session& session) {
    const auto loader = loadPalette(session.arguments);
    return loader ? jsonAnswer(loader->getCustomFont(session.arguments.name)) : jsonAnswer(nullptr);
}

}  // namespace yg::tool
