// SPDX-License-Identifier: MIT
#include "inspection/Corpus.h"

namespace yg::testing {

std::vector<Mistake> fileMistakes() {
    constexpr std::string_view styles = "config/custompage_template.xml";
    constexpr std::string_view host = "host.json";
    return {
        {"missing-file", Severity::warning, {{"config/tab_styles.xml", "", "", true}}},
        {"missing-file", Severity::warning, {{"storage/skeleton_gray_v1.xml", "", "", true}}},
        {"missing-image-folder", Severity::error, {{"images", "", "", true}}},
        {"byte-order-mark",
         Severity::info,
         {{"host.json", "{\n    \"rightLevel\"", "\xEF\xBB\xBF{\n    \"rightLevel\""}}},
        {"wrong-encoding",
         Severity::error,
         {{styles, R"(encoding="UTF-8")", R"(encoding="⟦GBK⟧")"}},
         "UTF-8"},
        {"lookalike-character",
         Severity::error,
         {{styles, R"(<style name="市场总览" layer)", R"(<style name=⟦“市场总览”⟧ layer)"}},
         R"("市场总览")"},
        {"lookalike-character",
         Severity::error,
         {{host, R"("rightLevel":)", R"("rightLevel"⟦：⟧)"}},
         ":"},
        {"hidden-character",
         Severity::warning,
         {{styles, R"(param="港股指数,海外指数")", "param=\"⟦港股指数,\u200b海外指数⟧\""}},
         "港股指数,海外指数"},
        {"name-with-blanks",
         Severity::error,
         {{styles, R"(uuid="index.global")", R"(uuid="⟦index.global ⟧")"}},
         "index.global"},
        {"odd-separator",
         Severity::error,
         {{styles, R"(event_dispatch_src="index.domestic;index.global")",
           R"(event_dispatch_src="⟦index.domestic,index.global⟧")"}},
         "index.domestic;index.global"},
        {"unknown-host-member",
         Severity::warning,
         {{host, R"("configServer")", R"("⟦configserver⟧")"}},
         "configServer"},
        {"host-member-of-wrong-type", Severity::error, {{host, R"("free")", R"(⟦2⟧)"}}, R"("2")"},
        {"odd-config-server",
         Severity::error,
         {{host, R"("127.0.0.1:8080")", R"("⟦http://127.0.0.1:8080/⟧")"}},
         "127.0.0.1:8080"},
        {"odd-right-level", Severity::error, {{host, R"("free")", R"("⟦Free⟧")"}}, "free"},
        {"unused-mapping",
         Severity::warning,
         {{host, R"("模版通配")", R"("⟦模板通配⟧")"}},
         "模版通配"},
    };
}

}  // namespace yg::testing
