// SPDX-License-Identifier: MIT
//
// Measuring against a peer in the same run: a benchmark is registered with the others that do the
// same work, runs are interleaved at random, and what counts is the ratio of the medians, because
// the speed of a machine drifts and its ratios do not.
#pragma once

#include <string>
#include <vector>

namespace yg::benchmarks {

/// A ratio of two benchmarks' processor time, or time by the clock, shown at the end of the run.
struct Comparison {
    std::string subject;    ///< the name of the benchmark that is judged
    std::string peer;       ///< the name of the one that it is measured against
    double goal = 0;        ///< the ratio to stay below; 0 for none
    bool wallTime = false;  ///< compare what passes on the clock, for work that waits for the disk
};

/// Adds a row to the table of ratios. Call while benchmarks are registered.
void compare(Comparison comparison);

/// Adds a row to the table of figures that are not times, such as bytes kept.
void note(std::string what, double figure, double goal);

const std::vector<Comparison>& comparisons();

struct Note {
    std::string what;
    double figure;
    double goal;
};
const std::vector<Note>& notes();

/// Bytes that the program holds from the allocator at this moment.
std::size_t bytesInUse();

/// How often the program has allocated so far.
std::size_t allocations();

/// The number that this program prints when it is run once more with these arguments.
double figureOfProgram(const std::string& arguments);

/// The most memory that this process has had, in bytes, once it has loaded the layout at a root,
/// if one is given. Has to be the first thing that it does.
double peakOfLayout(const std::string& root);

/// Ends the program with a message when what was measured did not do its work.
void require(bool holds, const char* what);

// One for each file of benchmarks.
void registerGraphics();
void registerInspection();
void registerLayoutLoading();
void registerLayoutLookup();
void registerNet();
void registerPalette();
void registerEventsAndServers();
void registerSettings();

}  // namespace yg::benchmarks
