// SPDX-License-Identifier: MIT
#include <memory>

#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"
#include "ygconfig/Layout.h"

namespace yg {

/// The loader as if it were a record.
template <>
struct Description<YGStyleConfigLoad> {
    static constexpr std::tuple fields{
        Field{"defaultStyleName", &YGStyleConfigLoad::defaultStyleName},
        Field{"styleInfos", &YGStyleConfigLoad::styleInfos},
        Field{"tabStyleInfos", &YGStyleConfigLoad::tabStyleInfos},
        Field{"magicPanelInfos", &YGStyleConfigLoad::magicPanelInfos},
        Field{"scrollPanelDict", &YGStyleConfigLoad::scrollPanelDict},
    };
};

namespace tool {

Answer dumpLayout(const Session& session) {
    return jsonAnswer(std::shared_ptr(loadLayout(session.arguments)));
}

}  // namespace tool

}  // namespace yg
