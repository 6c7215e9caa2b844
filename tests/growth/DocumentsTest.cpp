// SPDX-License-Identifier: MIT
//
// Every loader of XML with every construct: the work grows with the size of the file, and is at
// most five times that of a plain layout of the size (seven times with a sink), or the file is
// refused.
#include <ostream>
#include <vector>

#include <gtest/gtest.h>

#include "growth/Constructs.h"
#include "growth/Counting.h"
#include "growth/Loaders.h"

namespace yg::testing {

namespace {

struct Case {
    const Loader* loader;
    const Construct* construct;

    friend std::ostream& operator<<(std::ostream& out, const Case& one) {
        return out << one.loader->name << " with " << one.construct->name;
    }
};

bool isReader(const Loader& loader) {
    return loader.name.starts_with("xml");
}

std::vector<Case> cases() {
    std::vector<Case> all;
    for (const Loader& loader : loaders()) {
        for (const Construct& construct : constructs()) {
            if (construct.readers == Readers::all || isReader(loader))
                all.push_back({&loader, &construct});
        }
    }
    return all;
}

MakeWork workOf(const Case& one) {
    return fileWork(one.loader->load, [one](std::size_t bytes) {
        return documentOf(*one.construct, one.loader->open, one.loader->close, bytes);
    });
}

/// The reader itself is compared with what it takes itself.
const Measured& plainFor(const Loader& loader) {
    static const auto measured = [](std::size_t reader) {
        return measure(workOf({&loaders()[reader], constructs().data()}), 100'000);
    };
    static const Measured reader = measured(0);
    static const Measured readerWithPositions = measured(1);
    if (!isReader(loader))
        return plainLayoutLoad(loader.hasPositions);
    return loader.hasPositions ? readerWithPositions : reader;
}

void expectVerdict(const Construct& construct, const Measured& measured) {
    if (construct.verdict != Verdict::limited) {
        EXPECT_EQ(measured.refusal.empty(), construct.verdict == Verdict::accepted)
            << measured.refusal;
    }
    if (measured.refusal.find("Line ") != std::string::npos) {
        EXPECT_NE(measured.refusal.find(construct.refusal), std::string::npos) << measured.refusal;
    }
}

class DocumentGrowth : public ::testing::TestWithParam<Case> {};

TEST_P(DocumentGrowth, IsLinear) {
    const Case& one = GetParam();
    const std::size_t bytes = 6'000 * one.construct->scale;
    const Measured plain = plainFor(*one.loader);
    const Measured small = measure(workOf(one), bytes);
    const Measured large = measure(workOf(one), 8 * bytes);
    expectVerdict(*one.construct, small);
    expectVerdict(*one.construct, large);
    // A file may be beyond a limit when the smaller one is not.
    if (small.refusal.empty() == large.refusal.empty())
        expectLinear(small, large);
    expectInProportion(large, plain, one.loader->hasPositions);
}

class PlainGrowth : public ::testing::TestWithParam<Loader> {};

TEST_P(PlainGrowth, IsLinear) {
    const Loader& loader = GetParam();
    const MakeWork make = plainFileWork(loader.load, [&](std::size_t bytes) {
        return documentOf(constructs().front(), loader.open, loader.close, bytes);
    });
    const Measured small = measure(make, 6'000);
    const Measured large = measure(make, 48'000);
    expectLinear(small, large);
    const double proportion = large.perByte() / plainFor(loader).perByte();
    EXPECT_LT(proportion, 1.0) << "plain text has no shorter way";
}

INSTANTIATE_TEST_SUITE_P(files, PlainGrowth, ::testing::ValuesIn(loaders()),
                         [](const auto& which) { return std::string(which.param.name); });

INSTANTIATE_TEST_SUITE_P(files, DocumentGrowth, ::testing::ValuesIn(cases()),
                         [](const auto& which) {
                             return std::string(which.param.loader->name) + "_" +
                                    std::string(which.param.construct->name);
                         });

}  // namespace

}  // namespace yg::testing
