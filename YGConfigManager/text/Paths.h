// SPDX-License-Identifier: MIT
//
// Paths as plain text: nothing is looked up, expanded, decoded or resolved, so `~`, `%20`, `.` and,
// but for leadsOut(), `..` are characters like any other. Any thread may call.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace yg::text {

/// What follows the last slash, slashes at the end left out: "a/b/" gives "b". A path of slashes
/// alone gives "/", an empty path an empty text, an absent one nothing.
std::optional<std::string> lastPathComponent(std::optional<std::string_view> path);

/// The path inside the folder, with exactly one slash between the two, whatever slashes the folder
/// ends with or the path begins with. If one of them is empty, the other one as it stands.
std::string joinPath(std::string_view folder, std::string_view path);

/// Whether the text names a file inside a folder and cannot lead out of it: not empty, not "." or
/// "..", without a slash and without a NUL byte.
bool isPlainFileName(std::string_view name);

/// Whether a path, taken from a folder, leads out of it at some point, with its ".." and "." as a
/// system has them.
bool leadsOut(std::string_view path);

}  // namespace yg::text
