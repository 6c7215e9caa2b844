// SPDX-License-Identifier: MIT
#include <algorithm>

#include "ygconfig/diff/DiffReport.h"
#include "ygconfig/json/Json.h"

namespace yg::tool {

namespace {

void writeSide(JsonWriter& writer, const Difference& difference,
               const std::optional<ChangeSide>& side) {
    if (!side)
        return writer.write(nullptr);
    writer.object([&] {
        writer.member("path", [&] {
            writer.list(difference.pathOf(*side), [&](const NamedThing& thing) {
                writer.object([&] {
                    writer.member("subject", nameOf(thing.subject));
                    writer.member("name", thing.name);
                });
            });
        });
        writer.member("value", side->value);
        const Place& place = side->place;
        writer.member("file", place.file.empty() ? std::nullopt : std::optional(place.file));
        writer.member("line", std::max<std::uint32_t>(place.begin.line, 1));
        writer.member("column", std::max<std::uint32_t>(place.begin.column, 1));
    });
}

}  // namespace

std::size_t countOf(const Difference& difference, ChangeKind kind) {
    return static_cast<std::size_t>(std::ranges::count(difference.changes(), kind, &Change::kind));
}

void writeJson(const Difference& difference, Output& output) {
    JsonWriter writer(output);
    writer.object([&] {
        writer.member("changes", [&] {
            writer.list(difference.changes(), [&](const Change& change) {
                writer.object([&] {
                    writer.member("kind", nameOf(change.kind));
                    writer.member("subject", nameOf(change.subject));
                    writer.member(
                        "field", change.field.empty() ? std::nullopt : std::optional(change.field));
                    writer.member("old", [&] { writeSide(writer, difference, change.before); });
                    writer.member("new", [&] { writeSide(writer, difference, change.after); });
                    writer.member("shownIn", change.shownIn);
                });
                output.passOn();
            });
        });
        writer.member("summary", [&] {
            writer.object([&] {
                for (const ChangeKind kind : {ChangeKind::added, ChangeKind::removed,
                                              ChangeKind::changed, ChangeKind::moved})
                    writer.member(nameOf(kind), countOf(difference, kind));
            });
        });
    });
    writer.finish();
}

}  // namespace yg::tool
