// SPDX-License-Identifier: MIT
//
// Bytes as a root whose report is written and read back: around the model it is that of an empty
// root, and the model says what the inspection says.
#include "ygconfig/report/Report.h"

#include <memory>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "YGConfigManager/inspection/Inspection.h"
#include "YGConfigManager/inspection/RootContents.h"

#include "RootOfBytes.h"
#include "Target.h"
#include "ygconfig/json/Json.h"

namespace {

using namespace yg;
using nlohmann::json;
using yg::fuzz::EmptyFolder;
using yg::fuzz::filesIn;
using yg::fuzz::require;

template <class Write>
std::string written(Write write) {
    std::string whole;
    const tool::Sink append = [&](std::string_view piece) { whole += piece; };
    tool::Output output(append);
    write(output);
    output.flush();
    return whole;
}

std::string pageOf(const Inspection& inspection, tool::PageKind kind) {
    return written([&](tool::Output& output) {
        tool::writePage([&] { tool::writeModel({"root", inspection}, output); }, kind, output);
    });
}

std::shared_ptr<const Inspection> inspect(InspectionOptions options) {
    static const EmptyFolder folder;
    options.keepsContents = true;
    std::string error;
    auto inspection = Inspection::open(folder.path(), error, options);
    require(inspection != nullptr, "a folder can be inspected");
    return inspection;
}

/// What stands around the model.
struct Around {
    std::string before;
    std::string behind;
};

Around aroundEmptyRoot(tool::PageKind kind) {
    const std::string page = pageOf(*inspect({}), kind);
    const std::string_view start = R"(id="model">)";
    const std::size_t begin = page.find(start) + start.size();
    return {page.substr(0, begin), page.substr(page.find('<', begin))};
}

std::string modelIn(const std::string& page, const Around& around) {
    require(page.starts_with(around.before) && page.ends_with(around.behind) &&
                page.size() > around.before.size() + around.behind.size(),
            "the page around the model is that of an empty root");
    return page.substr(around.before.size(),
                       page.size() - around.before.size() - around.behind.size());
}

json parsed(const std::string& model) {
    require(model.find('<') == std::string::npos, "a model has no markup");
    json value = json::parse(model, nullptr, false);
    require(!value.is_discarded(), "a model is JSON in UTF-8");
    return value;
}

/// A text as JSON has it, which replaces what is not UTF-8.
json textOf(const std::string& text) {
    return json::parse(
        written([&](tool::Output& output) { tool::JsonWriter(output).write(text); }));
}

void compareFindings(const json& model, const Inspection& inspection) {
    const json& findings = model.at("findings");
    require(findings.size() == inspection.findings().size(), "all findings are in the model");
    for (std::size_t i = 0; i < findings.size(); ++i) {
        const RootFinding& finding = inspection.findings()[i];
        const json& entry = findings[i];
        require(entry.at("rule") == std::string(finding.rule->name) &&
                    entry.at("message") == textOf(finding.message),
                "a finding in the model is that of the inspection");
        const json& at = entry.at("at");
        const json& source = model.at("sources").at(at.at(0).get<std::size_t>());
        require(source.at("name") == textOf(finding.file) && at.at(1) == finding.begin.line &&
                    at.at(2) == finding.begin.column,
                "a finding is where it was found");
        const auto line = inspection.line(finding.file, finding.begin.line);
        require(!line || !source.at("lines").is_array() ||
                    source.at("lines").at(finding.begin.line - 1) == textOf(*line),
                "the line of a finding is in the model");
    }
}

void compareNames(const json& model, const Inspection& inspection) {
    const auto events = inspection.contents()->events();
    require(model.at("events").is_null() == !events, "events are there if they were read");
    if (!events)
        return;
    std::size_t index = 0;
    for (const auto& [name, command] : events->commandDatas())
        require(model.at("events").at("commands").at(index++).at("commandName") == textOf(name),
                "a command has its name");
    require(model.at("events").at("commands").size() == index, "all commands are in the model");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Around file = aroundEmptyRoot(tool::PageKind::file);
    static const Around live = aroundEmptyRoot(tool::PageKind::live);
    const auto inspection = inspect(filesIn(fuzz::textOf(data, size)));
    const std::string model = modelIn(pageOf(*inspection, tool::PageKind::file), file);
    require(modelIn(pageOf(*inspection, tool::PageKind::live), live) == model,
            "a page that follows its root has the same model");
    const json value = parsed(model);
    compareFindings(value, *inspection);
    compareNames(value, *inspection);
    return 0;
}
