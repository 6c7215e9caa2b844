// SPDX-License-Identifier: MIT
#include "inspection/Corpus.h"

namespace yg::testing {

std::vector<Mistake> settingsMistakes() {
    constexpr std::string_view pages = "storage/web_page_urls.xml";
    return {
        {"missing-in-user-copy",
         Severity::info,
         {{"user/web_page_urls.xml", "",
           R"(⟦<urls>⟧<url key="privacy">about:blank</url></urls>)"}}},
        {"address-without-scheme",
         Severity::warning,
         {{pages, "https://help.terminal.example.com/shortcuts",
           "⟦help.terminal.example.com/shortcuts⟧"}}},
        {"full-width-in-address",
         Severity::warning,
         {{pages, "https://help.terminal.example.com/shortcuts",
           "⟦https：//help.terminal.example.com/shortcuts⟧"}},
         "https://help.terminal.example.com/shortcuts"},
        {"html-in-place-of-file",
         Severity::error,
         {{pages, "", "⟦<html>⟧<head><title>Sign in</title></head><body/></html>"}}},
    };
}

}  // namespace yg::testing
