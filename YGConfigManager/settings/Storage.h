// SPDX-License-Identifier: MIT
//
// Where the files of this folder lie and how they are written, with the system calls behind a seam
// so that tests can let them fail. Internal. Any thread may call.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/files/AtomicWrite.h"
#include "YGConfigManager/files/FileLayer.h"

namespace yg {

/// The host's path of a file in the user's storage, to be written if `isNeedWrite`; unchanged.
std::optional<std::string> storagePath(std::optional<std::string_view> fileName, bool isNeedWrite);

/// Writes a file durably and atomically; false as well when there is no path, and for more bytes
/// than a file that is read may have.
files::FileWriting writeStoredFile(const std::optional<std::string>& path, std::string_view bytes);

/// Puts system calls in use for the whole process; null brings the system's back. Answers those
/// that they replace, null for the system's. They must outlive their use.
files::FileLayer* setFileLayer(files::FileLayer* layer);

}  // namespace yg
