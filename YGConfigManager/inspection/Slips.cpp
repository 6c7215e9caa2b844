// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Slips.h"

#include <map>
#include <string>
#include <utility>

namespace yg {

void joinSlips(std::vector<Found>& found, CauseIndexes& causes, Suggestions& suggestions) {
    using Name = std::pair<NameScope, std::string>;
    std::map<Name, std::size_t> unused;
    std::map<Name, std::vector<std::size_t>> unknown;
    for (std::size_t at = 0; at < found.size(); ++at) {
        const Finding& finding = found[at].finding;
        NameScope scope = scopeOf(finding);
        if (scope.kind == Naming::nothing || causes[at])
            continue;
        Name name(std::move(scope), finding.value);
        if (isReference(finding))
            unknown[std::move(name)].push_back(at);
        else
            unused.try_emplace(std::move(name), at);
    }
    for (const auto& [name, references] : unknown) {
        const auto& [scope, value] = name;
        const auto meant = suggestions.nearestName(found[references.front()]);
        if (!meant)
            continue;
        std::size_t cause = references.front();
        const NameUse* const definition =
            references.size() > 1 ? suggestions.onlyUnused(scope, *meant) : nullptr;
        if (definition) {
            cause = found.size();
            const Place place =
                definition->element.valuePlace(definition->row->name).value_or(Place());
            std::string message = std::string("'").append(*meant).append("' is not used, but '");
            message.append(value).append("', which does not exist, is named ");
            message.append(std::to_string(references.size())).append(" times.");
            found.push_back({{found[references.front()].finding.rule,
                              place,
                              place,
                              std::string(definition->element.name()),
                              std::string(definition->row->name),
                              *meant,
                              {}},
                             value,
                             std::move(message)});
            causes.emplace_back();
            for (const std::size_t reference : references)
                causes[reference] = cause;
        }
        const auto known = unused.find({scope, *meant});
        if (known != unused.end() && !causes[known->second])
            causes[known->second] = cause;
    }
}

}  // namespace yg
