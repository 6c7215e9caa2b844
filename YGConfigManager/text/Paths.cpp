// SPDX-License-Identifier: MIT
#include "YGConfigManager/text/Paths.h"

#include <algorithm>

namespace yg::text {

std::optional<std::string> lastPathComponent(std::optional<std::string_view> path) {
    if (!path)
        return std::nullopt;
    const std::size_t last = path->find_last_not_of('/');
    if (last == std::string_view::npos)
        return std::string(path->substr(0, 1));
    const std::string_view trimmed = path->substr(0, last + 1);
    return std::string(trimmed.substr(trimmed.find_last_of('/') + 1));
}

std::string joinPath(std::string_view folder, std::string_view path) {
    if (folder.empty() || path.empty())
        return std::string(folder.empty() ? path : folder);
    folder = folder.substr(0, folder.find_last_not_of('/') + 1);
    path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
    std::string joined;
    joined.reserve(folder.size() + 1 + path.size());
    joined += folder;
    joined += '/';
    joined += path;
    return joined;
}

bool isPlainFileName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

bool leadsOut(std::string_view path) {
    int depth = 0;
    while (!path.empty() && depth >= 0) {
        const std::string_view part = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(part.size() + 1, path.size()));
        depth += part == ".." ? -1 : part.empty() || part == "." ? 0 : 1;
    }
    return depth < 0;
}

}  // namespace yg::text
