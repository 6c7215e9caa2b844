// SPDX-License-Identifier: MIT
//
// A diagnostics sink as a loader holds it: each call does nothing without a sink. Internal.
#pragma once

#include <string>
#include <string_view>

#include "YGConfigManager/diagnostics/CommonRules.h"
#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/files/ReadFile.h"
#include "YGConfigManager/host/Guarded.h"
#include "YGConfigManager/xml/Document.h"

namespace yg {

class Reporter {
public:
    explicit Reporter(DiagnosticsSink* sink) : sink_(sink) {}

    explicit operator bool() const { return sink_ != nullptr; }
    DiagnosticsSink* sink() const { return sink_; }

    /// How to parse what the findings are about.
    xml::ParseOptions parseOptions() const { return {.positions = sink_ != nullptr}; }

    void reading(std::string_view path) const {
        if (sink_)
            sink_->readingFile(path);
    }

    /// Reads a file that the findings are about. Throws std::bad_alloc.
    xml::ParseResult parseFile(std::string_view path) const {
        reading(path);
        return orOutOfMemory(xml::Document::parseFile(path, parseOptions()));
    }

    void report(const Rule& rule, const xml::Node& node, std::string_view attribute = {},
                std::string_view value = {}) const {
        if (sink_)
            sink_->report({rule, node, std::string(attribute), std::string(value)});
    }

    /// A file that was not written. The error names it, unless memory did not suffice for that.
    void unsaved(std::string_view fileName, std::string_view error) const {
        if (!sink_)
            return;
        const bool isNamed = !error.empty() && error != outOfMemory;
        report(rules::unsavedFile, {}, {},
               isNamed ? std::string(error) : files::describeFailure(fileName, outOfMemory));
    }

    void used(const xml::Element& element) const {
        if (sink_)
            sink_->usedElement(element);
    }

    void used(const xml::Element& element, std::string_view attribute) const {
        if (sink_)
            sink_->usedAttribute(element, attribute);
    }

    /// The attributes of an element whose reader knows no other than `known`, if any.
    void attributesBut(const xml::Element& element, std::string_view known) const {
        if (!sink_)
            return;
        for (const xml::Attribute attribute : element.attributes()) {
            if (attribute.name != known)
                report(rules::unknownAttribute, element, attribute.name, attribute.value);
        }
    }

    /// A node that is no element, where elements alone are read; comments and instructions are no
    /// content.
    void stray(const xml::Node& node) const {
        if (sink_ && node.kind() == xml::NodeKind::text)
            report(rules::strayText, node, {}, node.stringValue());
    }

    /// The content of an element that is read by its attributes alone.
    void unread(const xml::Element& element, const Rule& rule) const {
        if (!sink_)
            return;
        for (const xml::Node& child : element.children()) {
            if (child.isElement())
                report(rule, child, {}, child.name());
            else
                stray(child);
        }
    }

private:
    DiagnosticsSink* sink_;
};

}  // namespace yg
