// SPDX-License-Identifier: MIT
//
// What the report's page is drawn from, as JSON: one value for each subject, by a source of its
// own. The scripts of page/ read it; docs/report.md says what they make of it. Throws
// std::bad_alloc and what the sink throws.
//
// A place is "at": [file, line, column] or, of an element's start tag, [file, line, column, line,
// column], where file is an index in the model's "files"; null when nothing is known.
#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "YGConfigManager/inspection/Inspection.h"
#include "YGConfigManager/inspection/RootContents.h"

#include "ygconfig/json/Json.h"

namespace yg::tool {

/// Writes places, and numbers the files that they are in.
class ModelPlaces {
public:
    explicit ModelPlaces(const Inspection& inspection) : inspection_(inspection) {}

    /// The member "at" of what is being written.
    void writeAt(JsonWriter& json, const std::optional<RootPlace>& place);

    /// The start tag in which a name is defined; of several the last, or the last in `file` if one
    /// is given.
    std::optional<RootPlace> definition(Naming kind, std::string_view name,
                                        std::optional<std::string_view> file = std::nullopt) const;

    /// The same as the library knows it; null when nothing is known. Lives as long as the
    /// inspection.
    const NamePlace* definitionOf(Naming kind, std::string_view name,
                                  std::optional<std::string_view> file = std::nullopt) const;

    std::size_t numberOf(const std::string& file);

    /// In the order of their numbers.
    const std::vector<std::string>& files() const { return files_; }

private:
    const Inspection& inspection_;
    std::vector<std::string> files_;
    std::map<std::string, std::size_t, std::less<>> numbers_;
};

/// What is written: an inspection that keeps its contents.
struct ModelSource {
    explicit ModelSource(const Inspection& of)
        : inspection(of), contents(*of.contents()), places(of) {}

    const Inspection& inspection;
    const RootContents& contents;
    ModelPlaces places;
};

/// The fields of a record that differ from those of a new one, as members, but for lists of further
/// records. The page takes the others from the new record, which the model has once.
template <class Record>
void writeFields(JsonWriter& json, const Record& record) {
    const Record made;
    const auto write = [&](std::string_view name, const auto& value, const auto& usual) {
        if constexpr (std::equality_comparable<decltype(value)> &&
                      !requires { value.use_count(); }) {
            if (value != usual)
                json.member(name, value);
        }
    };
    std::apply(
        [&](const auto&... field) {
            (write(field.name, std::invoke(field.getter, record), std::invoke(field.getter, made)),
             ...);
        },
        Description<Record>::fields);
}

/// Each writes one value. Panels and elements are listed once, however many pages share them.
void writeLayout(JsonWriter& json, ModelSource& source);
void writePalettes(JsonWriter& json, ModelSource& source);
void writeEvents(JsonWriter& json, ModelSource& source);
void writeServers(JsonWriter& json, ModelSource& source);
void writeSettings(JsonWriter& json, ModelSource& source);
void writeWebPages(JsonWriter& json, ModelSource& source);
void writeRequestUrls(JsonWriter& json, ModelSource& source);
void writeFindings(JsonWriter& json, ModelSource& source);

/// One of the findings.
void writeFinding(JsonWriter& json, ModelSource& source, const RootFinding& finding);

}  // namespace yg::tool
