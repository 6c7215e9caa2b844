// SPDX-License-Identifier: MIT
//
// A difference is right when the library's answers agree: roots of equal answers have none, and
// roots of other answers have one. Over the sample and generated roots with edits made at random.
#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "YGConfigManager/inspection/Difference.h"
#include "YGConfigManager/xml/Document.h"

#include "LargeInput.h"
#include "findings/Offsets.h"
#include "findings/Root.h"

namespace yg::testing {
namespace {

using ::testing::IsEmpty;
using ::testing::UnorderedElementsAreArray;

constexpr unsigned editedRoots = isSanitized ? 60 : 400;

std::string textOf(const Difference& difference, const std::optional<ChangeSide>& side) {
    if (!side)
        return "-";
    std::string text;
    for (const NamedThing& thing : difference.pathOf(*side))
        text.append(nameOf(thing.subject)).append(" ").append(thing.name).append("/");
    return text + " " + side->value.value_or("(none)") + " " + side->place.file + ":" +
           std::to_string(side->place.begin.line) + ":" + std::to_string(side->place.begin.column);
}

/// Each change as a line; mirrored as from the new root to the old one.
std::vector<std::string> linesOf(const Difference& difference, bool isMirrored = false) {
    std::vector<std::string> lines;
    for (const Change& change : difference.changes()) {
        ChangeKind kind = change.kind;
        if (isMirrored && kind == ChangeKind::added)
            kind = ChangeKind::removed;
        else if (isMirrored && kind == ChangeKind::removed)
            kind = ChangeKind::added;
        std::string before = textOf(difference, change.before);
        std::string after = textOf(difference, change.after);
        if (isMirrored)
            before.swap(after);
        lines.push_back(std::string(nameOf(kind)) + " " + std::string(nameOf(change.subject)) +
                        " " + change.field + " x" + std::to_string(change.shownIn) + "\n  " +
                        before + "\n  " + after);
    }
    return lines;
}

std::shared_ptr<const Difference> differenceOf(const Root& before, const Root& after) {
    std::string error;
    auto difference = Difference::between(before.path(), after.path(), error);
    EXPECT_TRUE(difference) << error;
    return difference;
}

void addElements(const xml::Element& element, std::vector<xml::Element>& found) {
    found.push_back(element);
    for (const xml::Node& child : element.children()) {
        if (child.isElement())
            addElements(xml::Element(child), found);
    }
}

std::vector<xml::Element> elementsOf(const std::string& text) {
    std::vector<xml::Element> found;
    const auto parsed = xml::Document::parseBytes(text, {.positions = true});
    if (parsed)
        addElements(parsed.document.root(), found);
    return found;
}

/// Changes files at random.
class Editor {
public:
    explicit Editor(unsigned seed) : random_(seed) {}

    /// Another value, an element less, one twice, or two in another order.
    RootFiles edited(RootFiles files) {
        for (unsigned left = 1 + below(3); left > 0; --left) {
            auto file = files.begin();
            std::advance(file, below(files.size()));
            // The answers have the servers of one file.
            if (file->first.ends_with(".png") || (file->first.starts_with("storage/skeleton_") &&
                                                  file->first != "storage/skeleton_v1.xml"))
                continue;
            if (file->first.ends_with(".txt"))
                editJson(file->second);
            else
                edit(file->second);
        }
        return files;
    }

    /// What nobody can see in a root: attributes the other way round, white space, comments between
    /// what is directly below the root.
    RootFiles rewritten(RootFiles files) {
        for (auto& [name, text] : files) {
            if (!name.ends_with(".xml"))
                continue;
            std::vector<std::pair<Range, std::string>> edits;
            const Offsets offsets(text);
            for (const xml::Element& element : elementsOf(text)) {
                std::vector<Range> ranges;
                for (const xml::Attribute attribute : element.attributes()) {
                    const Place place = *element.attributePlace(attribute.name);
                    ranges.push_back(offsets.of(place.begin, place.end));
                }
                for (std::size_t at = 0; at < ranges.size(); ++at) {
                    const Range& other = ranges[ranges.size() - 1 - at];
                    edits.emplace_back(
                        ranges[at], " \n" + text.substr(other.first, other.second - other.first));
                }
                if (element.parent() && !element.parent().parent()) {
                    const std::size_t end =
                        offsets.of(element.place()->begin, element.place()->end).second;
                    edits.emplace_back(Range{end, end}, " <!-- seen\nby nobody --> ");
                }
            }
            apply(text, std::move(edits));
        }
        return files;
    }

private:
    unsigned below(std::size_t count) {
        return count == 0 ? 0 : static_cast<unsigned>(random_() % count);
    }

    static void apply(std::string& text, std::vector<std::pair<Range, std::string>> edits) {
        std::ranges::stable_sort(edits, [](const auto& one, const auto& other) {
            return one.first.first > other.first.first;
        });
        for (const auto& [range, replacement] : edits)
            text.replace(range.first, range.second - range.first, replacement);
    }

    void editJson(std::string& text) {
        const std::size_t at = text.find('"', below(text.size()));
        if (at != std::string::npos)
            text.insert(at + 1, "7");
    }

    void edit(std::string& text) {
        const auto elements = elementsOf(text);
        if (elements.size() < 2)
            return;
        const xml::Element& element = elements[1 + below(elements.size() - 1)];
        const Offsets offsets(text);
        const Range range = offsets.of(element.place()->begin, element.place()->end);
        const std::string whole = text.substr(range.first, range.second - range.first);
        switch (below(6)) {
            case 0:
                return apply(text, {{range, ""}});
            case 1:
                return apply(text, {{range, whole + whole}});
            case 2: {
                const xml::Element next(element.nextSibling());
                if (!next)
                    return;
                const Range other = offsets.of(next.place()->begin, next.place()->end);
                return apply(text, {{range, text.substr(other.first, other.second - other.first)},
                                    {other, whole}});
            }
            default:
                break;
        }
        std::vector<std::string> names;
        for (const xml::Attribute attribute : element.attributes())
            names.emplace_back(attribute.name);
        if (names.empty())
            return;
        const std::vector<std::string> values{"a", "b", "c", "true", "3", "0.5", "", "a;b"};
        const Place place = *element.valuePlace(names[below(names.size())]);
        apply(text, {{offsets.of(place.begin, place.end), values[below(values.size())]}});
    }

    std::mt19937 random_;
};

/// What no look-up answers, so that it may differ while the answers do not.
bool isInNoAnswer(const Change& change) {
    return change.field == "description" || change.subject == Subject::pageTemplate ||
           change.field == "slotMembers";
}

void expectRightDifference(const RootFiles& before, const RootFiles& after) {
    Lookups lookups = lookupsOf(before);
    const Lookups others = lookupsOf(after);
    const auto append = [](auto& to, const auto& from) {
        to.insert(to.end(), from.begin(), from.end());
    };
    append(lookups.pages, others.pages);
    append(lookups.items, others.items);
    append(lookups.keys, others.keys);

    const Root one(before);
    const Root other(after);
    const auto forth = differenceOf(one, other);
    const auto back = differenceOf(other, one);
    ASSERT_TRUE(forth && back);
    EXPECT_THAT(linesOf(*back, true), UnorderedElementsAreArray(linesOf(*forth)));

    if (one.answers(lookups, nullptr) != other.answers(lookups, nullptr)) {
        EXPECT_FALSE(forth->changes().empty());
        return;
    }
    for (const Change& change : forth->changes())
        EXPECT_TRUE(isInNoAnswer(change)) << ::testing::PrintToString(linesOf(*forth));
}

class EditedRoots : public ::testing::TestWithParam<unsigned> {};

TEST_P(EditedRoots, DifferWhereAnswersDo) {
    constexpr unsigned together = 10;
    for (unsigned seed = GetParam() * together; seed < (GetParam() + 1) * together; ++seed) {
        SCOPED_TRACE("root " + std::to_string(seed));
        const RootFiles files = generatedRoot(seed);
        expectRightDifference(files, Editor(seed).edited(files));
        if (HasFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(Properties, EditedRoots, ::testing::Range(0U, editedRoots / 10));

TEST(Difference, OfTheSampleWithEditsIsRight) {
    const RootFiles sample = filesIn(YG_SAMPLE_FOLDER);
    for (unsigned seed = 0; seed < (isSanitized ? 3 : 20); ++seed) {
        SCOPED_TRACE("edit " + std::to_string(seed));
        expectRightDifference(sample, Editor(seed).edited(sample));
    }
}

TEST(Difference, IsNoneBetweenARootAndTheSameOneWrittenInAnotherWay) {
    std::vector<RootFiles> roots{filesIn(YG_SAMPLE_FOLDER)};
    for (unsigned seed = 0; seed < 50; ++seed)
        roots.push_back(generatedRoot(seed));
    for (const RootFiles& files : roots) {
        const RootFiles rewritten = Editor(0).rewritten(files);
        ASSERT_NE(rewritten, files);
        const Root root(files);
        EXPECT_THAT(linesOf(*differenceOf(root, Root(rewritten))), IsEmpty());
        EXPECT_THAT(linesOf(*differenceOf(root, root)), IsEmpty());
    }
}

TEST(Difference, OfUnrelatedRootsIsMirrored) {
    for (unsigned seed = 0; seed < (isSanitized ? 10 : 60); ++seed) {
        SCOPED_TRACE("root " + std::to_string(seed));
        expectRightDifference(generatedRoot(seed), generatedRoot(seed + 1000));
    }
}

}  // namespace
}  // namespace yg::testing
