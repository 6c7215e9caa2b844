// SPDX-License-Identifier: MIT
//
// From the bytes of the six layout files to all pages, and to the trees that custom pages are built
// from, beside the same walk over libxml2's tree and over pugixml's own lenient parser.
#include <cstdlib>
#include <filesystem>
#include <string>

#include <benchmark/benchmark.h>

#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "benchmarks/BenchmarkHost.h"
#include "benchmarks/Checksum.h"
#include "benchmarks/Comparison.h"
#include "benchmarks/PeerLayout.h"

namespace yg::benchmarks {

namespace {

/// A generated layout that goes with the program.
class TemporarySkeleton {
public:
    explicit TemporarySkeleton(std::size_t bytes) {
        std::string name = std::filesystem::temp_directory_path() / "yg-benchmark-XXXXXX";
        require(mkdtemp(name.data()) != nullptr, "no temporary folder");
        skeleton_ = makeSkeleton(name, bytes);
    }
    ~TemporarySkeleton() {
        std::error_code ignored;
        std::filesystem::remove_all(skeleton_.root, ignored);
    }
    TemporarySkeleton(const TemporarySkeleton&) = delete;
    TemporarySkeleton& operator=(const TemporarySkeleton&) = delete;
    const Skeleton& operator*() const { return skeleton_; }

private:
    Skeleton skeleton_;
};

std::shared_ptr<YGStyleConfigLoad> loadWithLibrary(const Skeleton& skeleton) {
    setHost(std::make_shared<BenchmarkHost>(skeleton.root));
    auto loader = std::make_shared<YGStyleConfigLoad>();
    loader->initWithStyleConfigPath(skeleton.stylePath(), skeleton.tabPath(), skeleton.magicPath());
    return loader;
}

void checkAnswers(const Skeleton& skeleton) {
    const auto library = loadWithLibrary(skeleton);
    require(library->styleInfos() && !library->styleInfos()->empty(), "no pages");
    for (const PeerLayout& peer : {loadWithLibxml2(skeleton), loadWithPugixml(skeleton)}) {
        require(checksum(*library->styleInfos()) == checksum(*peer.styleInfos), "pages differ");
        require(checksum(*library->tabStyleInfos()) == checksum(*peer.tabStyleInfos),
                "tab pages differ");
        require(checksum(*library->magicPanelInfos()) == checksum(*peer.magicPanelInfos),
                "magic panels differ");
    }
}

void noteMemory(const Skeleton& skeleton, const std::string& size) {
    const std::size_t before = bytesInUse();
    const auto loader = loadWithLibrary(skeleton);
    note("layout/load/" + size + " bytes kept for each byte read",
         static_cast<double>(bytesInUse() - before) / static_cast<double>(skeleton.bytes), 5.0);
}

template <class Load>
void add(const std::string& name, const std::shared_ptr<TemporarySkeleton>& skeleton, Load load) {
    benchmark::RegisterBenchmark(name.c_str(), [skeleton, load](benchmark::State& state) {
        for (auto unused : state)
            benchmark::DoNotOptimize(load(**skeleton));
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * (**skeleton).bytes));
    })->Unit(benchmark::kMillisecond);
}

}  // namespace

void registerLayoutLoading() {
    struct Size {
        std::string name;
        std::size_t bytes;
        double libxml2Goal;
        double pugixmlGoal;
    };
    const Size sizes[] = {
        {"60KB", 60'000, 0, 0}, {"1MB", 1'000'000, 0.65, 2.2}, {"20MB", 20'000'000, 0, 0}};
    for (const Size& size : sizes) {
        const auto skeleton = std::make_shared<TemporarySkeleton>(size.bytes);
        checkAnswers(**skeleton);
        noteMemory(**skeleton, size.name);
        const std::string name = "layout/load/" + size.name;
        add(name, skeleton, loadWithLibrary);
        add(name + "/libxml2", skeleton, loadWithLibxml2);
        add(name + "/pugixml", skeleton, loadWithPugixml);
        compare({name, name + "/libxml2", size.libxml2Goal});
        compare({name, name + "/pugixml", size.pugixmlGoal});
    }
    compare({"layout/load/20MB", "layout/load/1MB", 22});
}

}  // namespace yg::benchmarks
