// SPDX-License-Identifier: MIT
#include <filesystem>
#include <iterator>
#include <map>
#include <utility>

#include "YGConfigManager/diagnostics/Rule.h"
#include "YGConfigManager/version.h"

#include "ygconfig/json/Json.h"
#include "ygconfig/lint/Baseline.h"
#include "ygconfig/lint/LintReport.h"
#include "ygconfig/lint/SourceLines.h"

namespace yg::tool {

namespace {

constexpr std::string_view rootId = "ROOT";
constexpr std::string_view startId = "START";

std::string_view levelOf(Severity severity) {
    return severity == Severity::info ? "note" : nameOf(severity);
}

/// A path as a URI reference, byte by byte.
std::string uriOf(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::string_view plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/";
    std::string uri;
    for (const char each : path) {
        const auto byte = static_cast<unsigned char>(each);
        if (plain.find(each) != std::string_view::npos)
            uri += each;
        else
            uri.append({'%', digits[byte / 16], digits[byte % 16]});
    }
    return uri;
}

/// What a suggestion takes the place of: in one line, between two columns.
struct Replaced {
    std::uint32_t line;
    std::uint32_t begin;
    std::uint32_t end;
};

/// Where in `region` the faulty text stands, as an offset: the region itself, or a name or a value
/// in it, which is then bare of escapes. Absent when the region does not show it for certain.
std::optional<std::size_t> offsetOfFaulty(std::string_view region, std::string_view faulty,
                                          const RootFinding& finding) {
    constexpr std::string_view blanks = " \t";
    if (faulty.empty() || !finding.attribute)
        return region == faulty && !faulty.empty() ? std::optional<std::size_t>(0) : std::nullopt;
    if (region == faulty)
        return 0;
    const std::string_view name = *finding.attribute;
    const bool isName = faulty.data() == name.data();
    if (!region.starts_with(name))
        return std::nullopt;
    const std::size_t equals = region.find_first_not_of(blanks, name.size());
    if (equals == std::string_view::npos || region[equals] != '=')
        return std::nullopt;
    if (isName)
        return 0;
    const std::size_t quote = region.find_first_not_of(blanks, equals + 1);
    if (quote == std::string_view::npos || (region[quote] != '"' && region[quote] != '\'') ||
        region.substr(quote + 1, faulty.size()) != faulty ||
        region.substr(quote + 1 + faulty.size()) != region.substr(quote, 1))
        return std::nullopt;
    return quote + 1;
}

std::optional<Replaced> replacedBySuggestion(const RootFinding& finding, SourceLines& lines) {
    // A suggestion with one of these would have to be escaped first.
    if (!finding.suggestion ||
        finding.suggestion->find_first_of("<>&\"'\r\n") != std::string::npos ||
        finding.begin.line != finding.end.line || !lines.goTo(finding.file, finding.begin.line))
        return std::nullopt;
    const std::size_t begin = lines.offsetOf(finding.begin.column);
    const std::size_t end =
        offsetAfter(lines.text(), begin, finding.end.column - finding.begin.column);
    const std::string_view region = lines.text().substr(begin, end - begin);
    // Of an attribute that is not read the name is faulty, otherwise its value.
    const bool isName = finding.rule->name == "unknown-attribute";
    const std::optional<std::string>& faulty = isName ? finding.attribute : finding.value;
    if (!faulty)
        return std::nullopt;
    const auto offset = offsetOfFaulty(region, *faulty, finding);
    if (!offset)
        return std::nullopt;
    const auto charactersIn = [&](std::string_view text) {
        std::uint32_t count = 0;
        for (std::size_t at = 0; at < text.size(); at = offsetAfter(text, at, 1))
            ++count;
        return count;
    };
    const std::uint32_t column = finding.begin.column + charactersIn(region.substr(0, *offset));
    return Replaced{finding.begin.line, column, column + charactersIn(*faulty)};
}

class SarifForm {
public:
    SarifForm(const LintReport& report, Output& output)
        : report_(report), lines_(*report.inspection), writer_(output) {}

    void write() {
        writer_.object([&] {
            writer_.member("$schema",
                           "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/"
                           "sarif-schema-2.1.0.json");
            writer_.member("version", "2.1.0");
            writer_.member("runs", [&] {
                writer_.list(std::initializer_list<int>{0}, [&](int) {
                    writer_.object([&] {
                        tool();
                        roots();
                        writer_.member("columnKind", "unicodeCodePoints");
                        writer_.member("results", [&] {
                            writer_.list(report_.findings,
                                         [&](const RootFinding* finding) { result(*finding); });
                        });
                    });
                });
            });
        });
        writer_.finish();
    }

private:
    void message(std::string_view name, std::string_view text) {
        writer_.member(name, [&] { writer_.object([&] { writer_.member("text", text); }); });
    }

    void tool() {
        writer_.member("tool", [&] {
            writer_.object([&] {
                writer_.member("driver", [&] {
                    writer_.object([&] {
                        writer_.member("name", "ygconfig");
                        writer_.member("version", std::string_view(YGConfigManagerVersionString));
                        writer_.member("rules", [&] {
                            writer_.list(rules(), [&](const Rule& each) { rule(each); });
                        });
                    });
                });
            });
        });
    }

    void rule(const Rule& rule) {
        writer_.object([&] {
            writer_.member("id", rule.name);
            message("shortDescription", rule.meaning);
            message("fullDescription", rule.explanation);
            std::string help(rule.explanation);
            if (!rule.before.empty()) {
                help.append("\n\n").append(rule.file).append(", before:\n\n").append(rule.before);
                help.append("\n\nAfter:\n\n").append(rule.after);
            }
            message("help", help);
            writer_.member("defaultConfiguration", [&] {
                writer_.object([&] { writer_.member("level", levelOf(rule.severity)); });
            });
        });
    }

    /// The root below the folder that the run was started in, whose own place nobody needs.
    void roots() {
        const std::filesystem::path root =
            (std::filesystem::path(report_.root) / "").lexically_normal();
        const std::string uri = uriOf(root.string());
        // SARIF has no way to name a folder above.
        const std::string first = root.begin()->string();
        writer_.member("originalUriBaseIds", [&] {
            writer_.object([&] {
                writer_.member(rootId, [&] {
                    writer_.object([&] {
                        if (root.is_absolute()) {
                            writer_.member("uri", "file://" + uri);
                        } else if (first != "." && first != "..") {
                            writer_.member("uri", uri);
                            writer_.member("uriBaseId", startId);
                        }
                        message("description", "The root folder of the configuration.");
                    });
                });
                if (!root.is_absolute())
                    writer_.member(startId, [&] {
                        writer_.object([&] {
                            message("description", "The folder that ygconfig was started in.");
                        });
                    });
            });
        });
    }

    void artifact(const std::string& file) {
        writer_.member("artifactLocation", [&] {
            writer_.object([&] {
                writer_.member("uri", uriOf(file));
                writer_.member("uriBaseId", rootId);
            });
        });
    }

    void region(std::string_view name, const TextPoint& begin, const TextPoint& end) {
        writer_.member(name, [&] {
            writer_.object([&] {
                writer_.member("startLine", begin.line);
                writer_.member("startColumn", begin.column);
                writer_.member("endLine", end.line);
                writer_.member("endColumn", end.column);
            });
        });
    }

    void physicalLocation(const std::string& file, const TextPoint& begin, const TextPoint& end) {
        writer_.member("physicalLocation", [&] {
            writer_.object([&] {
                artifact(file);
                region("region", begin, end);
            });
        });
    }

    void result(const RootFinding& finding) {
        writer_.object([&] {
            writer_.member("ruleId", finding.rule->name);
            writer_.member("ruleIndex", std::distance(rules().data(), finding.rule));
            writer_.member("level", levelOf(finding.rule->severity));
            std::string text = finding.message;
            if (!finding.readAs.empty())
                text += "\nread as: " + finding.readAs;
            if (finding.suggestion)
                text += "\nnearest: " + *finding.suggestion;
            message("message", text);
            writer_.member("locations", [&] {
                writer_.list(std::initializer_list<int>{0}, [&](int) {
                    writer_.object(
                        [&] { physicalLocation(finding.file, finding.begin, finding.end); });
                });
            });
            if (!finding.related.empty())
                writer_.member("relatedLocations", [&] {
                    writer_.list(finding.related, [&](const RootPlace& place) {
                        writer_.object([&] {
                            physicalLocation(place.file, place.begin, place.end);
                            message("message", place.message);
                        });
                    });
                });
            const std::string fingerprint = fingerprintOf(finding);
            writer_.member("partialFingerprints", [&] {
                writer_.object([&] {
                    writer_.member("baselineKey/v1",
                                   fingerprint + ":" + std::to_string(++times_[fingerprint]));
                });
            });
            if (const auto replaced = replacedBySuggestion(finding, lines_))
                fix(finding, *replaced);
        });
    }

    void fix(const RootFinding& finding, const Replaced& replaced) {
        writer_.member("fixes", [&] {
            writer_.list(std::initializer_list<int>{0}, [&](int) {
                writer_.object([&] {
                    message("description", "Write '" + *finding.suggestion + "'.");
                    writer_.member("artifactChanges", [&] {
                        writer_.list(std::initializer_list<int>{0},
                                     [&](int) { change(finding, replaced); });
                    });
                });
            });
        });
    }

    void change(const RootFinding& finding, const Replaced& replaced) {
        writer_.object([&] {
            artifact(finding.file);
            writer_.member("replacements", [&] {
                writer_.list(std::initializer_list<int>{0}, [&](int) {
                    writer_.object([&] {
                        region("deletedRegion", {replaced.line, replaced.begin},
                               {replaced.line, replaced.end});
                        message("insertedContent", *finding.suggestion);
                    });
                });
            });
        });
    }

    const LintReport& report_;
    SourceLines lines_;
    JsonWriter writer_;
    std::map<std::string, std::size_t> times_;  ///< how often each fingerprint was written
};

}  // namespace

void writeSarif(const LintReport& report, Output& output) {
    SarifForm(report, output).write();
}

}  // namespace yg::tool
