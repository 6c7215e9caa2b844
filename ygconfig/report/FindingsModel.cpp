// SPDX-License-Identifier: MIT
#include "ygconfig/lint/LintReport.h"
#include "ygconfig/report/Model.h"

namespace yg::tool {

namespace {

void writePlaces(JsonWriter& json, ModelSource& source, const std::vector<RootPlace>& places) {
    json.list(places, [&](const RootPlace& place) {
        json.object([&] {
            json.member("message", place.message);
            source.places.writeAt(json, place);
        });
    });
}

}  // namespace

void writeFinding(JsonWriter& json, ModelSource& source, const RootFinding& finding) {
    json.object([&] {
        json.member("rule", finding.rule->name);
        json.member("severity", nameOf(finding.rule->severity));
        json.member("message", finding.message);
        if (!finding.readAs.empty())
            json.member("readAs", finding.readAs);
        if (finding.suggestion)
            json.member("suggestion", *finding.suggestion);
        if (!finding.related.empty())
            json.member("related", [&] { writePlaces(json, source, finding.related); });
        if (!finding.consequences.empty())
            json.member("consequences", [&] { writePlaces(json, source, finding.consequences); });
        source.places.writeAt(json, RootPlace{finding.file, finding.begin, finding.end, ""});
    });
}

void writeFindings(JsonWriter& json, ModelSource& source) {
    json.list(source.inspection.findings(),
              [&](const RootFinding& finding) { writeFinding(json, source, finding); });
}

}  // namespace yg::tool
