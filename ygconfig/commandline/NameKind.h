// SPDX-License-Identifier: MIT
//
// What a value on a command line names, so that shells complete it with the names of the root.
#pragma once

#include <string_view>

namespace yg::tool {

/// A new kind is a row in commands/Names.cpp too.
enum class NameKind {
    page,
    panel,    ///< of a page
    element,  ///< of a page
    pageTemplate,
    eventGroup,
    event,  ///< of an event group
    eventTemplate,
    command,
    colorKey,
    fontKey,
    image,
    server,  ///< of a type, if one is given
    address,
    settingsFile,
    settingsSection,  ///< of a settings file
    settingsItem,     ///< of a settings file's section
    webPageFile,
    webPage,  ///< of a table of web pages
    requestUrl,
    rule,
};

/// As in "ygconfig names KIND".
std::string_view wordOf(NameKind kind);

}  // namespace yg::tool
