// SPDX-License-Identifier: MIT
//
// Texts that count in place of files, for one thread: what an editor holds and has not saved.
// Internal.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace yg::files {

/// Whole files by their paths, spelt as they are read.
using UnsavedTexts = std::map<std::string, std::string, std::less<>>;

/// While it lives, reads of this thread take these texts, which must outlive it. Scopes end in the
/// reverse order of their beginning.
class UnsavedTextsScope {
public:
    explicit UnsavedTextsScope(const UnsavedTexts& texts);
    ~UnsavedTextsScope();
    UnsavedTextsScope(const UnsavedTextsScope&) = delete;
    UnsavedTextsScope& operator=(const UnsavedTextsScope&) = delete;

private:
    const UnsavedTexts* outer_;
};

/// The text that counts in place of the file; null when the file itself does.
const std::string* unsavedText(std::string_view path);

/// The names of the unsaved files in a folder.
std::vector<std::string> unsavedNamesIn(std::string_view folder);

}  // namespace yg::files
