// SPDX-License-Identifier: MIT
#include "ygconfig/Commands.h"
#include "ygconfig/Json.h"
#include "ygconfig/Settings.h"

namespace yg::tool {

Answer findRequestUrl(const Session& session) {
    std::string complaint;
    const auto manager = loadRequestUrls(session.arguments, complaint);
    Answer answer = jsonAnswer(manager->httpReqUrlStringWithUrlKey(session.arguments.name));
    answer.complaint = complaint;
    return answer;
}

}  // namespace yg::tool
