// SPDX-License-Identifier: MIT
//
// The names that a root gives, one function for each kind, beside the commands that look them up.
// Each loads the files that it needs, as those commands do. `groups` are what the names belong to;
// without the ones that a kind needs, or without the file, there are none.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "ygconfig/commands/Commands.h"

namespace yg {
class RootContents;
}

namespace yg::tool {

using NameList = std::vector<std::string>;
using NameGroups = std::span<const std::string>;

/// The names of files of storage/ and user/.
NameList storedFileNames(const Session& session,
                         std::span<const std::string> (RootContents::*listed)() const);

/// Styles, then the custom pages that they can build; of a template that can build more than 1000
/// none.
NameList pageNames(const Session& session, NameGroups groups);
NameList panelNames(const Session& session, NameGroups page);
NameList elementNames(const Session& session, NameGroups page);  ///< the uuid, else the name
NameList templateNames(const Session& session, NameGroups groups);

NameList eventGroupNames(const Session& session, NameGroups groups);
NameList eventNames(const Session& session, NameGroups group);
NameList eventTemplateNames(const Session& session, NameGroups groups);
NameList commandNames(const Session& session, NameGroups groups);

/// Those of both themes.
NameList colorKeyNames(const Session& session, NameGroups groups);
NameList fontKeyNames(const Session& session, NameGroups groups);
NameList imageNames(const Session& session, NameGroups groups);

/// Those for the user's right level, in the grey release and outside of it.
NameList serverNames(const Session& session, NameGroups type);
NameList addressNames(const Session& session, NameGroups groups);

NameList settingsFileNames(const Session& session, NameGroups groups);
NameList settingsSectionNames(const Session& session, NameGroups file);
NameList settingsItemNames(const Session& session, NameGroups fileAndSection);

NameList webPageFileNames(const Session& session, NameGroups groups);
NameList webPageNames(const Session& session, NameGroups file);

NameList requestUrlNames(const Session& session, NameGroups groups);

NameList ruleNames(const Session& session, NameGroups groups);

}  // namespace yg::tool
