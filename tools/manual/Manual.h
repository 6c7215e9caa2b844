// SPDX-License-Identifier: MIT
//
// The manual pages of ygconfig and its completion in shells, made from what the commands declare.
// They know no command: all that they write comes from the usages given.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "generated/GeneratedFiles.h"
#include "ygconfig/commandline/Usage.h"

namespace yg::manual {

using Usages = std::vector<tool::CommandUsage>;

/// ygconfig.1, and one page for each first word of a command with all commands that begin with it.
std::vector<GeneratedFile> pages(const Usages& usages);

std::string bashCompletion(const Usages& usages);
std::string zshCompletion(const Usages& usages);
std::string fishCompletion(const Usages& usages);

/// All of these files.
std::vector<GeneratedFile> manual(const Usages& usages);

/// The folders that hold nothing but these files.
inline constexpr std::string_view generatedFolders[] = {"docs/man", "completions"};

}  // namespace yg::manual
