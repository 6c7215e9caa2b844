// SPDX-License-Identifier: MIT
#include "growth/Counting.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <valgrind/callgrind.h>

#include <gtest/gtest.h>

namespace yg::testing {

namespace {

/// The number in the line "totals: N" of the newest counts that callgrind has written.
std::uint64_t writtenCount() {
    static int number = 0;
    const std::string path = runFolder() + "/counts." + std::to_string(++number);
    std::uint64_t count = 0;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("totals: "))
            count = std::stoull(line.substr(8));
    }
    std::filesystem::remove(path);
    return count;
}

}  // namespace

std::uint64_t instructionsOf(const std::function<void()>& work) {
    CALLGRIND_ZERO_STATS;
    CALLGRIND_TOGGLE_COLLECT;
    work();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS;
    const std::uint64_t count = writtenCount();
    EXPECT_GT(count, 0u) << "callgrind has counted nothing";
    return count;
}

const std::string& runFolder() {
    static const std::string folder = std::getenv("YG_GROWTH_FOLDER");
    return folder;
}

std::string writeFile(std::string_view name, std::string_view bytes) {
    const std::string path = runFolder() + "/" + std::string(name);
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
    return path;
}

Measured measure(const MakeWork& make, std::size_t bytes) {
    const Work work = make(bytes);
    Measured measured;
    measured.bytes = work.bytes;
    measured.instructions = instructionsOf([&] { measured.refusal = work.run(); });
    return measured;
}

void expectLinear(const Measured& small, const Measured& large) {
    const double growth = large.perByte() / small.perByte();
    std::printf("%zu: %.1f, %zu: %.1f instructions each, growth %.2f\n", small.bytes,
                small.perByte(), large.bytes, large.perByte(), growth);
    EXPECT_LE(growth, 1.25) << small.bytes << " take " << small.instructions
                            << " instructions, but " << large.bytes << " take "
                            << large.instructions;
}

void expectInProportion(const Measured& file, const Measured& plain, bool isReported) {
    const double proportion = file.perByte() / plain.perByte();
    std::printf("%.2f times a plain layout %s\n", proportion, file.refusal.c_str());
    // The goal is five times the time, or seven with a report. Two fifths more are room for what
    // instructions do not say of time: a plain layout waits for memory, other files do not.
    EXPECT_LE(proportion, isReported ? 9.8 : 7)
        << file.bytes << " bytes take " << file.perByte() << " instructions a byte, a plain layout "
        << plain.perByte();
}

}  // namespace yg::testing
