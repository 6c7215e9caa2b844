// SPDX-License-Identifier: MIT
//
// Tries a delivery on a root, of which nothing changes. Internal. Throws std::bad_alloc.
#pragma once

#include <string>

#include "YGConfigManager/inspection/Delivery.h"
#include "YGConfigManager/inspection/Gathering.h"

namespace yg {

/// Has the library take the delivery, with a temporary folder for what it writes, and reports what
/// it refuses, what it drops, and how the names of the delivery differ from those of the file that
/// it replaces. False, with one line in `error`, when that cannot be done.
bool tryDelivery(const Delivery& delivery, const std::string& root, Gathering& findings,
                 std::string& error);

}  // namespace yg
