// SPDX-License-Identifier: MIT
//
// Mistakes as authors make them: each case changes one place of the sample, and exactly one finding
// comes of it, at the text marked ⟦ ⟧. Every rule has a case.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/text/LineIndex.h"

#include "inspection/Corpus.h"
#include "inspection/Inspected.h"

namespace yg::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::string_view opening = "⟦";
constexpr std::string_view closing = "⟧";

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The sample with one change.
class ChangedSample {
public:
    explicit ChangedSample(const Mistake& mistake) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(YG_SAMPLE_FOLDER)) {
            if (entry.is_regular_file())
                folder_.write(std::filesystem::relative(entry.path(), YG_SAMPLE_FOLDER).string(),
                              bytesOf(entry.path()));
        }
        for (const Change& change : mistake.changes)
            apply(change);
        if (mistake.delivered)
            deliver(*mistake.delivered, std::string(mistake.changes.front().file));
    }

    /// Of the folder, or of what is delivered for it.
    std::shared_ptr<const Inspection> inspection() const {
        if (!delivery_)
            return inspected(path());
        std::string error;
        auto inspection = Inspection::ofDelivery(*delivery_, path(), error);
        return inspection ? inspection : throw std::runtime_error(error);
    }

    const std::string& path() const { return folder_.path(); }

    /// "FILE:LINE:COLUMN-LINE:COLUMN" of what was marked, that of the whole file without a mark.
    const std::string& marked() const { return marked_; }

private:
    void apply(const Change& change) {
        const std::string file(change.file);
        if (change.isFileRemoved) {
            std::filesystem::remove_all(folder_.at(file));
            marked_ = file + ":1:1-1:1";
            return;
        }
        std::string text = change.was.empty() ? "" : bytesOf(folder_.at(file));
        const std::size_t from = text.find(change.was);
        if (from == std::string::npos)
            throw std::runtime_error("not in " + file + ": " + std::string(change.was));
        text.replace(from, change.was.size(), change.is);
        const std::size_t begin = text.find(opening);
        if (begin != std::string::npos) {
            text.erase(begin, opening.size());
            const std::size_t end = text.find(closing);
            text.erase(end, closing.size());
            const auto at = [&](std::size_t offset) {
                const TextPoint point = text::pointAt(text, offset);
                return std::to_string(point.line) + ":" + std::to_string(point.column);
            };
            marked_ = file + ":" + at(begin) + "-" + at(end);
        } else if (marked_.empty()) {
            marked_ = file + ":1:1-1:1";
        }
        folder_.write(file, text);
    }

    void deliver(Delivery::Kind kind, const std::string& file) {
        delivery_.emplace();
        delivery_->kind = kind;
        delivery_->name = "delivered";
        delivery_->bytes = bytesOf(folder_.at(file));
        folder_.write(file, bytesOf(YG_SAMPLE_FOLDER "/" + file));
        marked_.replace(0, file.size(), delivery_->name);
    }

    files::TemporaryFolder folder_;
    std::string marked_;
    std::optional<Delivery> delivery_;
};

std::string_view nameOf(Severity severity) {
    return severity == Severity::error     ? "error"
           : severity == Severity::warning ? "warning"
                                           : "info";
}

/// "FILE:LINE:COLUMN-LINE:COLUMN SEVERITY RULE"
std::string whereAndWhat(const RootFinding& finding) {
    const auto at = [](const TextPoint& point) {
        return std::to_string(point.line) + ":" + std::to_string(point.column);
    };
    return finding.file + ":" + at(finding.begin) + "-" + at(finding.end) + " " +
           std::string(nameOf(finding.rule->severity)) + " " + std::string(finding.rule->name);
}

class Mistakes : public ::testing::TestWithParam<Mistake> {};

TEST_P(Mistakes, GiveOneFindingAtTheTextConcerned) {
    const Mistake& mistake = GetParam();
    const ChangedSample sample(mistake);
    const auto inspection = sample.inspection();
    const std::string expected = sample.marked() + " " + std::string(nameOf(mistake.severity)) +
                                 " " + std::string(mistake.rule);
    std::vector<std::string> all;
    std::vector<std::string> faults;
    std::string suggestion;
    for (const RootFinding& finding : inspection->findings()) {
        const std::string line = whereAndWhat(finding);
        all.push_back(line);
        if (line == expected && finding.suggestion)
            suggestion = *finding.suggestion;
        if (finding.rule->severity != Severity::info)
            faults.push_back(line);
    }
    EXPECT_EQ(suggestion, mistake.suggestion);
    if (mistake.severity == Severity::info) {
        EXPECT_THAT(all, Contains(expected));
        EXPECT_THAT(faults, IsEmpty());
    } else {
        EXPECT_THAT(faults, ElementsAre(expected));
    }
}

INSTANTIATE_TEST_SUITE_P(Corpus, Mistakes, ::testing::ValuesIn(mistakes()),
                         [](const ::testing::TestParamInfo<Mistake>& each) {
                             std::string name = std::to_string(each.index);
                             for (const char character : each.param.rule)
                                 name += character == '-' ? '_' : character;
                             return name;
                         });

/// What no file can show: rules about calls, and about limits that no small file reaches.
const std::set<std::string_view> aboutCalls{
    // Layout and events.
    // Of a page that a call asks for; in files they are "unknown-page".
    "unknown-template",
    "argument-count",
    "slot-left",
    // More than a sample can ask for.
    "expansion-limit",
    "include-limit",
    // What follows from a file that is missing or cannot be read.
    "no-templates",
    // What follows from the name of the element around.
    "misplaced-panel",
    "misplaced-magic-panels",
    // Made by the tool from a baseline.
    "stale-baseline-entry",
    // A file that cannot be written.
    "unsaved-file",
    // Calls of the palette for a style or a folder that there is not.
    "no-palette-path",
    "no-image-folder",
    // Limits that only very large files reach.
    "too-many-image-pixels",
    "too-many-image-bytes",
    "too-many-servers",
    // Settings that are stored.
    "lost-setting",
    "no-element-name",
    "unreadable-setting",
    // Look-ups.
    "unknown-web-page",
    "unknown-url-key",
    // Said as "refused-delivery" of what is tried.
    "failed-download",
};

TEST(Corpus, HasACaseForEachRule) {
    std::set<std::string_view> shown;
    for (const Mistake& mistake : mistakes())
        shown.insert(mistake.rule);
    std::vector<std::string_view> missing;
    for (const Rule& rule : rules()) {
        if (!shown.contains(rule.name) && !aboutCalls.contains(rule.name))
            missing.push_back(rule.name);
    }
    EXPECT_THAT(missing, IsEmpty());
}

TEST(Corpus, TheSampleHasNoMistake) {
    const auto inspection = inspected(YG_SAMPLE_FOLDER);
    for (const RootFinding& finding : inspection->findings())
        EXPECT_EQ(finding.rule->severity, Severity::info) << whereAndWhat(finding);
}

}  // namespace
}  // namespace yg::testing
