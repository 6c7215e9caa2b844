// SPDX-License-Identifier: MIT
#include "benchmarks/Comparison.h"

#include <atomic>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <new>
#include <utility>

namespace {

std::atomic<std::size_t> allocationCount{0};

}  // namespace

void* operator new(std::size_t size) {
    allocationCount.fetch_add(1, std::memory_order_relaxed);
    if (void* memory = std::malloc(size == 0 ? 1 : size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace yg::benchmarks {

namespace {

std::vector<Comparison>& allComparisons() {
    static std::vector<Comparison> all;
    return all;
}

std::vector<Note>& allNotes() {
    static std::vector<Note> all;
    return all;
}

}  // namespace

void compare(Comparison comparison) {
    allComparisons().push_back(std::move(comparison));
}

void note(std::string what, double figure, double goal) {
    allNotes().push_back({std::move(what), figure, goal});
}

const std::vector<Comparison>& comparisons() {
    return allComparisons();
}

const std::vector<Note>& notes() {
    return allNotes();
}

std::size_t bytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

std::size_t allocations() {
    return allocationCount.load(std::memory_order_relaxed);
}

double figureOfProgram(const std::string& arguments) {
    const std::string program = std::filesystem::read_symlink("/proc/self/exe");
    FILE* const output = popen(("'" + program + "' " + arguments).c_str(), "r");
    double figure = 0;
    const bool isRead = output && std::fscanf(output, "%lf", &figure) == 1;
    require(isRead && pclose(output) == 0, arguments.c_str());
    return figure;
}

void require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "benchmark without a result: %s\n", what);
    std::exit(1);
}

}  // namespace yg::benchmarks
