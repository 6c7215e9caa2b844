// SPDX-License-Identifier: MIT
//
// Where the files of this folder lie, how they are written, and what is odd about an address in
// them. Internal. Any thread may call.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/files/AtomicWrite.h"

namespace yg {

/// The host's path of a file in the user's storage, to be written if `isNeedWrite`; unchanged.
std::optional<std::string> storagePath(std::optional<std::string_view> fileName, bool isNeedWrite);

/// Why a file is not written whose bytes its reader would refuse.
inline constexpr std::string_view couldNotBeReadAgain = "it could not be read again";

/// Writes a file durably and atomically. Also fails if the path is absent or empty, with an error
/// that names the file by `fileName`, and if there are more bytes than readWholeFile() would read.
files::FileWriting writeStoredFile(std::string_view fileName,
                                   const std::optional<std::string>& path, std::string_view bytes);

/// Whether blanks stand before or behind the address.
bool hasBlanksAround(std::string_view address);

}  // namespace yg
