// SPDX-License-Identifier: MIT
#include "inspection/Corpus.h"

namespace yg::testing {

std::vector<Mistake> serverMistakes() {
    constexpr std::string_view servers = "storage/skeleton_v1.xml";
    return {
        {"odd-address-weight",
         Severity::error,
         {{servers, R"("192.0.2.14:9211;192.0.2.15:9211")",
           R"("⟦192.0.2.14:9211,192.0.2.15:9211⟧")"}},
         "192.0.2.14:9211;192.0.2.15:9211"},
        {"odd-server-host",
         Severity::error,
         {{servers, R"("192.0.2.14:9211;192.0.2.15:9211")",
           R"("192.0.2.14:9211;⟦ 192.0.2.15:9211⟧")"}},
         "192.0.2.15:9211"},
        {"server-type-in-some-files",
         Severity::warning,
         {{"storage/skeleton_gray_v1.xml", R"(type="8")", R"(type="⟦8⟧")"},
          {servers, R"(<server type="8" name="国内期货服务器">
        <addr key="801" name="商品期货;金融期货" addrs="60:192.0.2.81:9281;40:192.0.2.82:9281"/>
        <addr key="802" name="期货历史" addrs="192.0.2.83:9282"/>
    </server>)",
           ""}}},
        {"server-in-some-files",
         Severity::info,
         {{servers, R"(name="北京行情")", R"(name="⟦北京⟧")"}}},
        {"digest-in-shipped-file",
         Severity::warning,
         {{servers, "<application>", R"(<application md5="⟦ab⟧">)"}}},
    };
}

}  // namespace yg::testing
