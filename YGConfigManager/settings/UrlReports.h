// SPDX-License-Identifier: MIT
//
// What diagnostics say of addresses and of the JSON of a request URL list. Internal.
#pragma once

#include <string_view>

#include "YGConfigManager/diagnostics/Reporter.h"
#include "YGConfigManager/settings/YGHttpReqUrlModel.h"

namespace yg {

/// Whether blanks stand before or behind the address.
bool hasBlanksAround(std::string_view address);

/// Reports what in the JSON of a list has no effect, by the rule `unreadable` when that is all of
/// it; nothing without a listener.
void reportUrlList(std::string_view json, const Rule& unreadable, const Reporter& reporter);

/// Whether two lists have the same keys and values in the same order.
bool haveSameEntries(const YGHttpReqUrlModel& left, const YGHttpReqUrlModel& right);

}  // namespace yg
