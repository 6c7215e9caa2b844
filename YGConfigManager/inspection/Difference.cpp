// SPDX-License-Identifier: MIT
#include "YGConfigManager/inspection/Difference.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iterator>
#include <new>
#include <system_error>
#include <utility>

#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/host/HostOfThread.h"
#include "YGConfigManager/inspection/Comparison.h"
#include "YGConfigManager/inspection/Things.h"

namespace yg {

namespace {

constexpr std::string_view subjectNames[] = {
    "root",
    "wildcard list",
    "reuse panel",
    "magic group",
    "magic panel",
    "template",
    "page",
    "tab page",
    "custom page",
    "scroll panel",
    "panel",
    "element",
    "command",
    "event template",
    "event group",
    "event",
    "palette",
    "colour",
    "colour key",
    "font",
    "font key",
    "image",
    "server file",
    "server group",
    "server entry",
    "server address",
    "settings file",
    "setting",
    "web page file",
    "web page",
    "request url file",
    "request url",
};

/// A root as it is while two are compared.
struct Side {
    explicit Side(std::string root) : host(std::make_shared<InspectionHost>(std::move(root))) {}

    std::shared_ptr<InspectionHost> host;
    Gathering findings;
    std::optional<Loaded> loaded;
    std::optional<Things> things;

    void open(Interning& interning) {
        const HostOfThread hostOfThread(host);
        loaded.emplace(load(host, findings));
        things.emplace(*loaded, findings, interning);
        throwIfOutOfMemory(*host, findings);
    }
};

}  // namespace

struct Difference::Content {
    Paths paths;
    std::vector<Change> changes;
};

std::string_view nameOf(Subject subject) {
    const auto index = static_cast<std::size_t>(subject);
    return index < std::size(subjectNames) ? subjectNames[index] : "";
}

std::string_view nameOf(ChangeKind kind) {
    constexpr std::string_view names[] = {"added", "removed", "changed", "moved"};
    const auto index = static_cast<std::size_t>(kind);
    return index < std::size(names) ? names[index] : "";
}

bool hasPanels(Subject subject) {
    switch (subject) {
        case Subject::reusePanel:
        case Subject::magicPanel:
        case Subject::page:
        case Subject::tabPage:
        case Subject::customPage:
        case Subject::scrollPanel:
            return true;
        default:
            return false;
    }
}

Difference::Difference(std::unique_ptr<Content> content) : content_(std::move(content)) {}

Difference::~Difference() = default;

std::shared_ptr<const Difference> Difference::between(OptionalText oldRoot, OptionalText newRoot,
                                                      std::string& error) {
    try {
        const std::string before(*oldRoot);
        const std::string after(*newRoot);
        for (const std::string& root : {before, after}) {
            error = whyNoRoot(root);
            if (!error.empty())
                return nullptr;
        }
        auto content = std::make_unique<Content>();
        Interning interning;
        Side one(before);
        Side other(after);
        one.open(interning);
        other.open(interning);
        content->changes = changesBetween(*one.things, *other.things, content->paths);
        return std::shared_ptr<const Difference>(new Difference(std::move(content)));
    } catch (const std::bad_alloc&) {
        error = outOfMemory;
    } catch (const std::exception& failure) {
        error = failure.what();
    }
    return nullptr;
}

std::span<const Change> Difference::changes() const {
    return content_->changes;
}

std::vector<NamedThing> Difference::pathOf(const ChangeSide& side) const {
    return content_->paths.namesOf(side.path);
}

}  // namespace yg
