// SPDX-License-Identifier: MIT
#include <string>
#include <utility>

#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"
#include "ygconfig/NothingStored.h"
#include "ygconfig/Settings.h"

namespace yg::tool {

Answer findRequestUrl(const Session& session) {
    NothingStored nothing;
    const auto manager = loadRequestUrls(&nothing);
    nothing.beginStoring();
    std::string complaint = refreshRequestUrls(*manager, session.arguments);
    if (complaint.empty())
        complaint = nothing.complaint();
    Answer answer = jsonAnswer(manager->httpReqUrlStringWithUrlKey(session.arguments.name));
    answer.complaint = std::move(complaint);
    return answer;
}

}  // namespace yg::tool
