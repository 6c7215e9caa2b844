// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"
#include "ygconfig/Palette.h"

namespace yg::tool {

Answer dumpPalette(const Session& session) {
    return jsonAnswer(loadPalette(session.arguments));
}

}  // namespace yg::tool
