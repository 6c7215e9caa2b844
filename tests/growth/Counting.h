// SPDX-License-Identifier: MIT
//
// Work counted by instructions, which no load of the machine changes. The program runs under
// valgrind's callgrind (main.cpp); everything that a piece of work calls is counted, the libraries
// below included.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace yg::testing {

/// The instructions that the work takes on the thread that calls.
std::uint64_t instructionsOf(const std::function<void()>& work);

/// The folder of this run, which is removed after it.
const std::string& runFolder();

/// Writes a file into the folder of this run, answers its path.
std::string writeFile(std::string_view name, std::string_view bytes);

/// What one run of a piece of work came to.
struct Measured {
    std::size_t bytes = 0;  ///< of its input
    std::uint64_t instructions = 0;
    std::string refusal;  ///< why the input was refused; empty when it was accepted

    double perByte() const {
        return static_cast<double>(instructions) / static_cast<double>(bytes);
    }
};

/// Work on an input that is made: how large it is, and what is done with it, which answers a
/// refusal or "".
struct Work {
    std::size_t bytes = 0;
    std::function<std::string()> run;
};

/// Makes the work for an input of about so many bytes; the making is not counted.
using MakeWork = std::function<Work(std::size_t bytes)>;

/// One run. What is set up at the first use of anything counts with it.
Measured measure(const MakeWork& make, std::size_t bytes);

/// Checks that eight times as much input takes at most eight times the instructions, give or take a
/// quarter. Sorting and the lookups of a tree stay below that (log 8n / log n), and work that grows
/// with the square shows as soon as it makes up a fortieth of the instructions for the small input.
void expectLinear(const Measured& small, const Measured& large);

/// Checks that a file takes at most five times the instructions of another one, byte for byte;
/// seven times when it is read with positions and a sink, for findings cost more than what they are
/// about.
void expectInProportion(const Measured& file, const Measured& plain, bool isReported);

}  // namespace yg::testing
