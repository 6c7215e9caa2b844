// SPDX-License-Identifier: MIT
//
// Files that are made from tables, committed, and compared with the tables by a test.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace yg {

struct GeneratedFile {
    std::string path;  ///< "schemas/events.rng"
    std::string text;
};

/// The main function of a program that writes files below the folder that its words name. With
/// --check it changes nothing, prints the files that would change, and fails if there are any.
/// Other files in `folders` are removed, but for those of `kept`.
int writeGenerated(std::span<char* const> words, const std::vector<GeneratedFile>& files,
                   std::span<const std::string_view> folders,
                   std::span<const std::string_view> kept = {});

}  // namespace yg
