// SPDX-License-Identifier: MIT
//
// Looks for inputs that are slow for their size. An input grows: its middle is repeated to 2 KB and
// to 16 KB. What costs more for each byte, and what costs more for each byte of the larger file,
// counts as new to libFuzzer, so it climbs towards both. An input of which either is out of
// proportion is measured with larger files, three times each, before it stops the search.
//
// The first byte is the letter of a format (below); --format=NAME has the search stay with one. The
// rest is cut at lines "=====" into what a file begins with, what is repeated, and what it ends
// with; a byte 1 in the repeated part is replaced by the number of the repetition. Without
// such a line the rest is the file. Images stay as they are.
//
// Cost is processor time of this thread. A test must not fail because of time, so a replay of the
// seeds measures and never stops.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "YGConfigManager/events/YGEventLoader.h"
#include "YGConfigManager/graphics/Image.h"
#include "YGConfigManager/host/StandAloneHost.h"
#include "YGConfigManager/layout/YGStyleConfigLoad.h"
#include "YGConfigManager/palette/YGPaletteLoad.h"
#include "YGConfigManager/servers/YGServerCfgLoader.h"
#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"
#include "YGConfigManager/settings/YGWebPageUrlConfig.h"
#include "YGConfigManager/xml/Document.h"

#include "Loaders.h"
#include "StoredFile.h"
#include "Target.h"

// libFuzzer's own; missing from a replay.
extern "C" [[gnu::weak]] std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size,
                                                      std::size_t maximum);

namespace {

using namespace yg;
using yg::fuzz::LoggingHost;
using yg::fuzz::takeUntil;
using yg::fuzz::textOf;

/// Answers one file for whatever is asked.
class OneFileHost final : public LoggingHost {
public:
    explicit OneFileHost(const std::string& folder) : folder_(folder) {
        storagePath = folder + "/host.json";
    }
    std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        return storagePath;
    }
    std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t,
                                                             std::string_view) override {
        return storagePath;
    }
    std::optional<std::string> getDefualtFolderPath(std::int64_t) override { return folder_; }

private:
    std::string folder_;
};

const files::TemporaryFolder& folder() {
    static const files::TemporaryFolder one{yg::fuzz::quickParent()};
    return one;
}

OneFileHost& host() {
    static const auto one = [] {
        auto made = std::make_shared<OneFileHost>(folder().path());
        setHost(made);
        return made;
    }();
    return *one;
}

const std::string& filePath() {
    return *host().storagePath;
}

// ---- formats ----

void loadXml() {
    xml::Document::parseFile(filePath(), {.positions = true});
}

/// The file is all five at a time; it is parsed once.
void loadLayout() {
    YGStyleConfigLoad loader;
    loader.initWithStyleConfigPath(filePath(), filePath(), filePath());
    loader.loadStyleConfigInfoWithName("s-a");
}

void loadEvents() {
    YGEventLoader::initWithEventConfigPath(filePath());
}

void loadPalette() {
    YGPaletteLoad::initWithPaletteStyle(0);
}

void loadServers() {
    YGServerCfgLoader::initWithIsGray(false);
}

void loadSettings() {
    if (const auto store = YGAppConfigManager::initWithFileName("file"))
        store->getItemText("s", "i");
}

void loadWebPages() {
    if (const auto table = YGWebPageUrlConfig::initWithFileName("file"))
        table->getWebPageUrlByKey("k");
}

void loadRequestUrls() {
    const auto manager = YGHttpReqUrlMgr::make();
    manager->readUrlModelFromFile();
    manager->httpReqUrlStringWithUrlKey("k");
}

void loadHostJson() {
    StandAloneHost::open(folder().path());
}

void loadImage() {
    Image::fromFile(filePath());
}

struct Format {
    char letter;
    std::string_view name;
    void (*load)();
    /// Whether its pieces may be repeated; an image is measured by its pixels.
    bool grows = true;
};

constexpr Format formats[] = {
    {'x', "xml", loadXml},
    {'l', "layout", loadLayout},
    {'e', "events", loadEvents},
    {'p', "palette", loadPalette},
    {'s', "servers", loadServers},
    {'t', "settings", loadSettings},
    {'w', "web_pages", loadWebPages},
    {'u', "request_urls", loadRequestUrls},
    {'h', "host_json", loadHostJson},
    {'i', "image", loadImage, false},
};

/// The one of --format, null when the search goes through all.
const Format* chosen = nullptr;

const Format* formatOf(std::uint8_t letter) {
    const auto found = std::find_if(
        std::begin(formats), std::end(formats),
        [&](const Format& format) { return format.letter == static_cast<char>(letter); });
    const bool isWanted = found != std::end(formats) && (!chosen || chosen == &*found);
    return isWanted ? &*found : nullptr;
}

// ---- files ----

struct Input {
    std::string_view open, middle, close;

    std::string grownTo(std::size_t bytes) const {
        std::string file(open);
        for (std::size_t i = 0; file.size() + close.size() < bytes && !middle.empty(); ++i) {
            for (const char letter : middle) {
                if (letter == '\1')
                    file += std::to_string(i);
                else
                    file += letter;
            }
        }
        file += close;
        return file;
    }
};

Input inputOf(std::string_view text) {
    Input input;
    input.open = takeUntil(text, "=====\n");
    input.middle = takeUntil(text, "=====\n");
    input.close = text;
    return input;
}

std::size_t bigEndian(std::string_view bytes) {
    std::size_t value = 0;
    for (const char byte : bytes)
        value = value << 8 | static_cast<unsigned char>(byte);
    return value;
}

/// The bytes that the pixels take which an image file declares.
std::size_t pixelBytes(std::string_view file) {
    std::size_t width = 0;
    std::size_t height = 0;
    if (file.starts_with("\x89PNG") && file.size() >= 24) {
        width = bigEndian(file.substr(16, 4));
        height = bigEndian(file.substr(20, 4));
    }
    // The frame's header of a JPEG file, wherever it stands.
    for (std::size_t at = 2; file.starts_with("\xFF\xD8") && at + 9 <= file.size(); ++at) {
        const auto kind = static_cast<unsigned char>(file[at + 1]);
        if (file[at] != '\xFF' || kind < 0xC0 || kind > 0xCF)
            continue;
        height = std::max(height, bigEndian(file.substr(at + 5, 2)));
        width = std::max(width, bigEndian(file.substr(at + 7, 2)));
    }
    return height > 0 && width <= Image::maximumPixels / height ? width * height * 4 : 0;
}

// ---- cost ----

double processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

struct Cost {
    double seconds;
    double perByte;
};

/// The least of several loads: what else the machine does makes them longer only.
Cost costOf(const Format& format, const std::string& file, int times) {
    std::ofstream(filePath(), std::ios::binary | std::ios::trunc) << file;
    double least = HUGE_VAL;
    for (int i = 0; i < times; ++i) {
        host().log.clear();
        const double before = processorTime();
        format.load();
        least = std::min(least, processorTime() - before);
    }
    const std::size_t bytes = file.size() + (format.grows ? 0 : pixelBytes(file)) + 1;
    return {least, least / static_cast<double>(bytes)};
}

/// Seconds a byte of a plain layout, as this build loads it on this machine.
double plainCost() {
    static const double perByte = [] {
        const Input plain{"<styles>",
                          "<style name=\"page\1\" layer=\"1\">\n"
                          "    <panel name=\"left\" split_scale=\"0.25\" vertical=\"true\">\n"
                          "        <element name=\"List\" param=\"p\1\" event=\"select\"/>\n"
                          "    </panel>\n"
                          "</style>\n",
                          "</styles>"};
        return costOf(formats[1], plain.grownTo(100'000), 5).perByte;
    }();
    return perByte;
}

/// Five times the instructions of a plain layout are allowed; time and sanitizers are not that
/// exact.
constexpr double mostOfPlain = 20;

/// For each byte, how much more eight times the size may cost before it is measured again, and
/// before it stops the search.
constexpr double strangeGrowth = 1.6;
constexpr double tooMuchGrowth = 2;

/// What is measured to stop the search takes so long at least.
constexpr double longEnough = 0.2;

constexpr std::size_t smallest = 2'000;
constexpr std::size_t largest = 2'000'000;

constexpr std::size_t steps = 48;
[[gnu::section("__libfuzzer_extra_counters")]] std::array<std::uint8_t, 2 * steps> reached;

/// Steps from the first on are new to libFuzzer until they have been reached.
void climb(std::size_t ladder, double height) {
    const auto step = static_cast<std::size_t>(std::clamp(height, 0.0, double{steps - 1}));
    std::fill_n(reached.begin() + static_cast<std::ptrdiff_t>(ladder * steps), step, 1);
}

[[noreturn]] void stop(const Format& format, const char* what, double value, std::size_t bytes,
                       double seconds) {
    std::fprintf(stderr, "slow %s: %s %.1f at %zu bytes, which take %.3f s\n",
                 std::string(format.name).c_str(), what, value, bytes, seconds);
    std::abort();
}

bool isSearch() {
    return LLVMFuzzerMutate != nullptr;
}

void stopIfCostly(const Format& format, const std::string& file, Cost cost) {
    if (!isSearch() || cost.seconds < 0.01 || cost.perByte < mostOfPlain * plainCost())
        return;
    cost = costOf(format, file, 3);
    if (cost.perByte >= mostOfPlain * plainCost())
        stop(format, "times a plain layout:", cost.perByte / plainCost(), file.size(),
             cost.seconds);
}

/// Larger files, until the growth is clear.
void stopIfGrowing(const Format& format, const Input& input) {
    for (std::size_t bytes = smallest; isSearch() && 8 * bytes <= largest; bytes *= 8) {
        const std::string file = input.grownTo(8 * bytes);
        const Cost small = costOf(format, input.grownTo(bytes), 3);
        const Cost large = costOf(format, file, 3);
        const double growth = large.perByte / small.perByte;
        if (growth < strangeGrowth)
            return;
        if (growth >= tooMuchGrowth && large.seconds >= longEnough)
            stop(format, "a byte costs more in eight times the size:", growth, file.size(),
                 large.seconds);
    }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argumentCount, char*** arguments) {
    for (int i = 1; i < *argumentCount; ++i) {
        std::string_view argument = (*arguments)[i];
        if (!argument.starts_with("--format="))
            continue;
        argument.remove_prefix(std::strlen("--format="));
        const auto found =
            std::find_if(std::begin(formats), std::end(formats),
                         [&](const Format& format) { return format.name == argument; });
        yg::fuzz::require(found != std::end(formats), "--format= names a format");
        chosen = &*found;
    }
    return 0;
}

/// The letter stays.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maximum, unsigned) {
    if (chosen)
        data[0] = static_cast<std::uint8_t>(chosen->letter);
    return 1 + LLVMFuzzerMutate(data + 1, std::max<std::size_t>(size, 1) - 1, maximum - 1);
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Format* const format = size == 0 ? nullptr : formatOf(data[0]);
    if (!format)
        return 0;
    const std::string_view text = textOf(data + 1, size - 1);
    const Input input = format->grows ? inputOf(text) : Input{text, {}, {}};
    const std::string file = input.grownTo(8 * smallest);
    const Cost large = costOf(*format, file, 1);
    const double stepsADoubling = 4;
    climb(0, stepsADoubling * std::log2(1 + large.perByte / plainCost()));
    stopIfCostly(*format, file, large);
    if (input.middle.empty())
        return 0;
    const Cost small = costOf(*format, input.grownTo(smallest), 1);
    const double growth = large.perByte / small.perByte;
    climb(1, 2 * stepsADoubling * std::log2(std::max(1.0, growth)));
    if (growth >= strangeGrowth)
        stopIfGrowing(*format, input);
    return 0;
}
