// SPDX-License-Identifier: MIT
//
// From the bytes of the six layout files to all pages, and to the trees that custom pages are built
// from, beside the same walk over libxml2's tree and over pugixml's own lenient parser.
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/resource.h>

#include <benchmark/benchmark.h>

#include "YGConfigManager/diagnostics/DiagnosticsSink.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"

#include "benchmarks/BenchmarkHost.h"
#include "benchmarks/Checksum.h"
#include "benchmarks/Comparison.h"
#include "benchmarks/PeerLayout.h"

namespace yg::benchmarks {

namespace {

/// A generated layout that goes with the program, or that of the sample for no bytes.
class TemporarySkeleton {
public:
    explicit TemporarySkeleton(std::size_t bytes) {
        if (bytes == 0) {
            skeleton_.root = YG_SAMPLE_FOLDER;
            for (const std::string& path :
                 {skeleton_.stylePath(), skeleton_.tabPath(), skeleton_.magicPath(),
                  skeleton_.softStylePath(), skeleton_.softMagicPath(), skeleton_.reusePath()})
                skeleton_.bytes += std::filesystem::file_size(path);
            return;
        }
        std::string name = std::filesystem::temp_directory_path() / "yg-benchmark-XXXXXX";
        require(mkdtemp(name.data()) != nullptr, "no temporary folder");
        isTemporary_ = true;
        skeleton_ = makeSkeleton(name, bytes);
    }
    ~TemporarySkeleton() {
        std::error_code ignored;
        if (isTemporary_)
            std::filesystem::remove_all(skeleton_.root, ignored);
    }
    TemporarySkeleton(const TemporarySkeleton&) = delete;
    TemporarySkeleton& operator=(const TemporarySkeleton&) = delete;
    const Skeleton& operator*() const { return skeleton_; }

private:
    Skeleton skeleton_;
    bool isTemporary_ = false;
};

/// Listens as an inspection does.
class Listener final : public DiagnosticsSink {
public:
    void report(const Finding&) override {}
    bool wantsUsed() const override { return false; }
};

std::shared_ptr<YGStyleConfigLoad> loadWithLibrary(const Skeleton& skeleton,
                                                   DiagnosticsSink* sink) {
    setHost(std::make_shared<BenchmarkHost>(skeleton.root));
    auto loader = std::make_shared<YGStyleConfigLoad>(sink);
    loader->initWithStyleConfigPath(skeleton.stylePath(), skeleton.tabPath(), skeleton.magicPath());
    return loader;
}

std::shared_ptr<YGStyleConfigLoad> loadWithoutPlaces(const Skeleton& skeleton) {
    return loadWithLibrary(skeleton, nullptr);
}

/// A loader keeps its listener, so it does not leave this.
std::size_t loadWithPlaces(const Skeleton& skeleton) {
    Listener listener;
    return loadWithLibrary(skeleton, &listener)->styleInfos()->size();
}

void checkAnswers(const Skeleton& skeleton) {
    const auto library = loadWithoutPlaces(skeleton);
    require(library->styleInfos() && !library->styleInfos()->empty(), "no pages");
    for (const PeerLayout& peer : {loadWithLibxml2(skeleton), loadWithPugixml(skeleton)}) {
        require(checksum(*library->styleInfos()) == checksum(*peer.styleInfos), "pages differ");
        require(checksum(*library->tabStyleInfos()) == checksum(*peer.tabStyleInfos),
                "tab pages differ");
        require(checksum(*library->magicPanelInfos()) == checksum(*peer.magicPanelInfos),
                "magic panels differ");
    }
}

void noteMemory(const Skeleton& skeleton, const std::string& name, bool isLarge) {
    const auto bytes = static_cast<double>(skeleton.bytes);
    const std::size_t before = bytesInUse();
    const auto loader = loadWithoutPlaces(skeleton);
    note(name + " bytes kept for each byte read",
         static_cast<double>(bytesInUse() - before) / bytes, isLarge ? 5.0 : 0);
    // Of a program that does nothing else, beyond that of one that does nothing. Of a small layout
    // that is mostly code.
    const std::string load = "--peak-of-layout '" + skeleton.root.string() + "'";
    const double peak = figureOfProgram(load) - figureOfProgram("--peak-of-layout");
    note(name + " peak of memory, bytes for each byte read", peak / bytes, isLarge ? 6.0 : 0);
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
        double placesGoal;
    };
    const Size sizes[] = {{"sample", 0, 0, 0, 0},
                          {"1MB", 1'000'000, 0.25, 1.0, 2},
                          {"5MB", 5'000'000, 0.25, 1.0, 2},
                          {"20MB", 20'000'000, 0, 0, 2}};
    for (const Size& size : sizes) {
        const auto skeleton = std::make_shared<TemporarySkeleton>(size.bytes);
        // The sample also has what the peers do not know, at a place or two.
        if (size.bytes != 0)
            checkAnswers(**skeleton);
        const std::string name = "layout/load/" + size.name;
        noteMemory(**skeleton, name, size.bytes >= 5'000'000);
        add(name, skeleton, loadWithoutPlaces);
        add(name + "/places", skeleton, loadWithPlaces);
        add(name + "/libxml2", skeleton, loadWithLibxml2);
        add(name + "/pugixml", skeleton, loadWithPugixml);
        compare({name, name + "/libxml2", size.libxml2Goal});
        compare({name, name + "/pugixml", size.pugixmlGoal});
        compare({name + "/places", name, size.placesGoal});
    }
    compare({"layout/load/20MB", "layout/load/1MB", 21});
    compare({"layout/load/20MB/places", "layout/load/1MB/places", 21});
    // What a processor's caches hold takes less time for each byte, of the peers too.
    compare({"layout/load/20MB/pugixml", "layout/load/1MB/pugixml", 0});
    compare({"layout/load/20MB/libxml2", "layout/load/1MB/libxml2", 0});
}

double peakOfLayout(const std::string& root) {
    Skeleton skeleton;
    skeleton.root = root;
    if (!root.empty())
        require(loadWithoutPlaces(skeleton)->styleInfos() != nullptr, "no pages");
    struct rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024;
}

}  // namespace yg::benchmarks
