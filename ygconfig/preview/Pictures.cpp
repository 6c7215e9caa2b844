// SPDX-License-Identifier: MIT
#include "ygconfig/preview/Pictures.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include "YGConfigManager/inspection/Inspection.h"

#include "ygconfig/Answer.h"
#include "ygconfig/json/Json.h"
#include "ygconfig/report/Report.h"

namespace yg::tool {

namespace {

struct Fault {
    std::string message;
    std::string file = {};  ///< "" for the root as a whole
    TextPoint place = {};
    std::optional<std::string> text = {};
};

bool saysUnread(const Rule& rule) {
    constexpr std::string_view names[] = {"unreadable-file", "unreadable-url-list",
                                          "wrong-encoding", "lookalike-character",
                                          "html-in-place-of-file"};
    return std::ranges::find(names, rule.name) != std::end(names);
}

std::vector<Fault> faultsIn(const Inspection& inspection) {
    std::vector<Fault> faults;
    for (const RootFinding& finding : inspection.findings()) {
        if (saysUnread(*finding.rule))
            faults.push_back({finding.message, finding.file, finding.begin,
                              inspection.line(finding.file, finding.begin.line)});
    }
    return faults;
}

template <class Write>
std::string written(Write write) {
    std::string text;
    const Sink sink = [&](std::string_view piece) { text += piece; };
    Output output(sink);
    write(output);
    output.flush();
    return text;
}

/// The model with what is broken as its first member.
std::string with(const std::vector<Fault>& faults, const std::string& model) {
    if (faults.empty())
        return model;
    std::string made = written([&](Output& output) {
        JsonWriter json(output, JsonForm::inHtml);
        json.object([&] {
            json.member("broken", [&] {
                json.list(faults, [&](const Fault& fault) {
                    json.object([&] {
                        json.member("message", fault.message);
                        if (fault.file.empty())
                            return;
                        json.member("file", fault.file);
                        json.member("line", fault.place.line);
                        json.member("column", fault.place.column);
                        if (fault.text)
                            json.member("text", *fault.text);
                    });
                });
            });
        });
    });
    made.back() = ',';
    return made.append(model, 1);
}

}  // namespace

std::optional<std::string> Pictures::next(std::string& error) {
    InspectionOptions options;
    options.keepsContents = true;
    const auto inspection = Inspection::open(root_, error, options);
    if (!inspection)
        return model_.empty() ? std::nullopt : std::optional(with({{error}}, model_));
    const std::vector<Fault> faults = faultsIn(*inspection);
    std::set<std::string> unread;
    for (const Fault& fault : faults)
        unread.insert(fault.file);
    if (model_.empty() || std::ranges::includes(unread_, unread)) {
        model_ = written([&](Output& output) { writeModel({root_, *inspection}, output); });
        unread_ = std::move(unread);
    }
    return with(faults, model_);
}

}  // namespace yg::tool
