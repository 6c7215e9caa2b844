// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"
#include "ygconfig/Settings.h"

namespace yg::tool {

Answer dumpRequestUrls(const Session&) {
    return jsonAnswer(loadRequestUrls()->urlModel());
}

}  // namespace yg::tool
