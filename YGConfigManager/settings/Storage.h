// SPDX-License-Identifier: MIT
//
// Where the files of this folder lie and how they are written. Internal. Any thread may call.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/files/AtomicWrite.h"

namespace yg {

/// The host's path of a file in the user's storage, to be written if `isNeedWrite`; unchanged.
std::optional<std::string> storagePath(std::optional<std::string_view> fileName, bool isNeedWrite);

/// Writes a file durably and atomically; false as well when there is no path, and for more bytes
/// than a file that is read may have.
files::FileWriting writeStoredFile(const std::optional<std::string>& path, std::string_view bytes);

}  // namespace yg
