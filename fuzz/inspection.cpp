// SPDX-License-Identifier: MIT
//
// Bytes as a root of several small files, inspected as a whole, with explanations of some of the
// names in it, and compared with itself and with an empty root.
#include "YGConfigManager/inspection/Inspection.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "YGConfigManager/files/UnsavedTexts.h"
#include "YGConfigManager/host/Host.h"
#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/inspection/Difference.h"
#include "YGConfigManager/inspection/Explanation.h"
#include "YGConfigManager/inspection/InspectionHost.h"
#include "YGConfigManager/text/Utf8.h"

#include "RootOfBytes.h"
#include "Target.h"

namespace {

using namespace yg;
using yg::fuzz::EmptyFolder;
using yg::fuzz::filesIn;
using yg::fuzz::require;

std::string shown(const RootFinding& finding) {
    const auto point = [](const TextPoint& at) {
        return std::to_string(at.line) + ':' + std::to_string(at.column) + ' ';
    };
    return finding.file + ' ' + point(finding.begin) + point(finding.end) +
           std::string(finding.rule->name) + ' ' + finding.message + ' ' + finding.readAs + ' ' +
           finding.value.value_or("-") + ' ' + finding.suggestion.value_or("-") + ' ' +
           std::to_string(finding.related.size()) + ' ' +
           std::to_string(finding.consequences.size());
}

/// A part of a line, by columns from 1.
std::string_view columnsOf(std::string_view line, std::uint32_t begin, std::uint32_t end) {
    const auto offsetOf = [&](std::uint32_t column) {
        std::size_t offset = 0;
        for (std::uint32_t at = 1; at < column && offset < line.size(); ++at)
            offset += text::firstCharacter(line.substr(offset)).size;
        return offset;
    };
    const std::size_t from = offsetOf(begin);
    return line.substr(from, offsetOf(end) - from);
}

/// Files with zeros may be no text.
void lookAt(const Inspection& inspection, const RootFinding& finding, bool hasZeros) {
    require(!finding.file.empty() && !finding.message.empty(),
            "a finding has a file and a message");
    require(finding.begin.line > 0 && finding.begin.column > 0 && finding.begin <= finding.end,
            "a finding is at a place that can be shown");
    require(finding.message.find('\n') == std::string::npos || finding.value,
            "a message is one line");
    inspection.pathOf(finding);
    const auto line = inspection.line(finding.file, finding.begin.line);
    require(!finding.suggestion || !line || finding.begin.line != finding.end.line ||
                columnsOf(*line, finding.begin.column, finding.end.column) != *finding.suggestion,
            "a suggestion is another text than the one that it replaces");
    require(line || finding.begin == TextPoint{1, 1} || hasZeros,
            "the line of a finding can be shown");
}

void lookAt(const Explanation& explanation) {
    require(explanation.from.has_value() != explanation.substitute.has_value(),
            "an answer has a place, and a substitute has none");
    for (const ExplanationStep& step : explanation.steps)
        require(
            !step.place.message.empty() && step.place.begin.line > 0 && step.place.begin.column > 0,
            "a step says something about a place");
}

/// Some of the names in the root, a few of each kind, and one that is hardly there.
void explainNames(const std::string& root, const Inspection& inspection) {
    constexpr std::size_t most = 3;
    const Explainer explainer(root);
    std::map<Naming, std::size_t> asked;
    const auto explain = [&](Naming kind, const std::string& name) {
        switch (kind) {
            case Naming::style:
                lookAt(explainer.panel(name, "main"));
                return lookAt(explainer.style(name));
            case Naming::command:
                return lookAt(explainer.command(name));
            case Naming::eventGroup:
                return lookAt(explainer.event(name, "select"));
            case Naming::colorKey:
                return lookAt(explainer.color(name, 0));
            case Naming::fontKey:
                return lookAt(explainer.font(name, 1));
            case Naming::image:
                return lookAt(explainer.image(name, 0));
            case Naming::server:
                return lookAt(explainer.server(std::nullopt, name, false));
            case Naming::webPage:
                return lookAt(explainer.webPage("web_page_urls.xml", name));
            default:
                return;
        }
    };
    for (const NamePlace& name : inspection.names()) {
        if (asked[name.kind]++ < most)
            explain(name.kind, name.name);
    }
    lookAt(explainer.style("quote-SH01-depth"));
    lookAt(explainer.requestUrl("quote"));
    for (const TemplateSignature& signature : explainer.templates())
        require(signature.place.begin.line > 0, "a template is at a place");
}

std::size_t differences(const std::string& before, const std::string& after) {
    std::string error;
    const auto difference = Difference::between(before, after, error);
    require(difference != nullptr, "two folders can be compared");
    return difference->changes().size();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const EmptyFolder folder;
    static const EmptyFolder empty;
    const InspectionOptions options = filesIn(fuzz::textOf(data, size));
    std::string error;
    const auto one = Inspection::open(folder.path(), error, options);
    const auto other = Inspection::open(folder.path(), error, options);
    require(one && other, "a folder can be inspected");
    require(std::ranges::equal(one->findings(), other->findings(), {}, shown, shown),
            "two inspections of the same files find the same");
    for (const RootFinding& finding : one->findings())
        lookAt(*one, finding, std::find(data, data + size, 0) != data + size);
    for (const NamePlace& name : one->names())
        require(name.begin.line > 0 && name.begin <= name.end, "a name is at a place");
    files::UnsavedTexts unsaved;
    for (const auto& [name, text] : options.unsaved)
        unsaved.emplace(folder.path() + "/" + name, text);
    const files::UnsavedTextsScope scope(unsaved);
    const HostOfThread host(std::make_shared<InspectionHost>(folder.path()));
    explainNames(folder.path(), *one);
    require(differences(folder.path(), folder.path()) == 0, "a root does not differ from itself");
    require(differences(folder.path(), empty.path()) == differences(empty.path(), folder.path()),
            "a difference is the same the other way round");
    return 0;
}
