// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/UnsavedTexts.h"

#include <utility>

#include "YGConfigManager/text/Paths.h"

namespace yg::files {

namespace {

constinit thread_local const UnsavedTexts* current = nullptr;

}  // namespace

UnsavedTextsScope::UnsavedTextsScope(const UnsavedTexts& texts)
    : outer_(std::exchange(current, &texts)) {}

UnsavedTextsScope::~UnsavedTextsScope() {
    current = outer_;
}

const std::string* unsavedText(std::string_view path) {
    if (!current)
        return nullptr;
    const auto found = current->find(path);
    return found == current->end() ? nullptr : &found->second;
}

std::vector<std::string> unsavedNamesIn(std::string_view folder) {
    std::vector<std::string> names;
    if (!current)
        return names;
    const std::string above = std::string(folder) + '/';
    for (const auto& [path, text] : *current) {
        const std::string_view inFolder = path;
        if (path.starts_with(above) && text::isPlainFileName(inFolder.substr(above.size())))
            names.push_back(path.substr(above.size()));
    }
    return names;
}

}  // namespace yg::files
