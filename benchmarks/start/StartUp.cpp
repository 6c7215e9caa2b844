// SPDX-License-Identifier: MIT
//
// What a start costs from exec to exit, in processor time: our loaders as a host starts them beside
// other classes that read the same files, each in a program of its own, started in turn. On the
// sample, and on a root of a megabyte of XML with 40 images and 500 settings.
//
//   yg_start_up [--runs N]
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "benchmarks/SkeletonGenerator.h"
#include "benchmarks/start/Files.h"

namespace {

namespace fs = std::filesystem;
using yg::benchmarks::startFiles;

struct Program {
    std::string name;
    std::vector<std::string> words;
    std::vector<double> milliseconds;
};

double milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

/// Runs it once and answers its processor time; ends this program when it fails.
double run(const Program& program) {
    std::vector<char*> pointers;
    for (const std::string& word : program.words)
        pointers.push_back(const_cast<char*>(word.c_str()));  // for exec, which changes nothing
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    ::posix_spawn_file_actions_init(&quiet);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&quiet, stream, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    int state = 1;
    rusage used{};
    if (::posix_spawn(&process, pointers[0], &quiet, nullptr, pointers.data(), environ) != 0 ||
        ::wait4(process, &state, 0, &used) != process || state != 0) {
        std::fprintf(stderr, "it fails: %s\n", program.name.c_str());
        std::exit(1);
    }
    ::posix_spawn_file_actions_destroy(&quiet);
    return milliseconds(used.ru_utime) + milliseconds(used.ru_stime);
}

double median(std::vector<double> all) {
    std::sort(all.begin(), all.end());
    return all[all.size() / 2];
}

class TemporaryFolder {
public:
    TemporaryFolder() : path_(fs::temp_directory_path() / "yg-start-XXXXXX") {
        if (!::mkdtemp(path_.data()))
            std::exit(1);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    fs::path operator/(const char* name) const { return fs::path(path_) / name; }

private:
    std::string path_;
};

/// The settings of a root as an INI file, which is what QSettings reads.
void writeIni(const fs::path& root, int sections, int items) {
    std::ofstream file(root / "storage/app_config.ini");
    for (int section = 0; section < sections; ++section) {
        file << "[section" << section << "]\n";
        for (int item = 0; item < items; ++item)
            file << "item" << item << "=value " << section << '\n';
    }
}

fs::path sample(const TemporaryFolder& folder) {
    const fs::path root = folder / "sample";
    fs::copy(YG_SAMPLE_FOLDER, root, fs::copy_options::recursive);
    std::ofstream(root / "host.json") << R"({"rightLevel": "free"})";
    writeIni(root, 6, 6);
    return root;
}

/// A megabyte of XML, with the sample's fonts, request URLs and web pages.
fs::path large(const TemporaryFolder& folder, const fs::path& sampleRoot) {
    constexpr std::size_t bytes = 1'000'000;
    constexpr int imageCount = 40;
    const fs::path root = folder / "large";
    yg::benchmarks::makeRoot(root, bytes);
    std::ofstream(root / "host.json") << R"({"rightLevel": "free"})";
    for (const char* name : {"web_page_urls.xml", "request_urls_json.txt"})
        fs::copy(sampleRoot / "storage" / name, root / "storage" / name);

    fs::create_directories(root / "images/white");
    fs::create_directories(root / "images/common");
    const std::vector<std::string> images = yg::benchmarks::startImages(sampleRoot);
    std::string bitmaps = "<BITMAPS>";
    for (int i = 0; i < imageCount; ++i) {
        const std::string name = "white/image" + std::to_string(i) + ".png";
        fs::copy(images[static_cast<std::size_t>(i) % images.size()], root / "images" / name);
        bitmaps += "<BITMAP NAME=\"image" + std::to_string(i) + "\" PATH=\"" + name + "\"/>";
    }
    bitmaps +=
        "</BITMAPS><FONTS><FONT NAME=\"a\" HEIGHT=\"12\" FACE=\"DejaVu Sans\"/>"
        "<FONT NAME=\"b\" HEIGHT=\"12\" FACE=\"DejaVu Sans Bold\"/>"
        "<FONT NAME=\"c\" HEIGHT=\"12\" FACE=\"文泉驿微米黑\"/></FONTS>";
    const fs::path palette = root / "storage/palette_white.xml";
    std::string text{std::istreambuf_iterator<char>(std::ifstream(palette).rdbuf()), {}};
    constexpr std::string_view begin = "<SWPALETTE>";
    text.insert(text.find(begin) + begin.size(), bitmaps);
    std::ofstream(palette) << text;

    std::ofstream settings(root / "storage/app_config.xml");
    settings << "<config>";
    for (int section = 0; section < 25; ++section) {
        settings << "<section" << section << ">";
        for (int item = 0; item < 20; ++item)
            settings << "<item" << item << " description=\"what it is for\">value " << section
                     << "</item" << item << ">";
        settings << "</section" << section << ">";
    }
    settings << "</config>";
    writeIni(root, 25, 20);
    return root;
}

void printRatio(const Program& one, const Program& other) {
    std::printf("%-64s %8.2f\n", (one.name + " / " + other.name).c_str(),
                median(one.milliseconds) / median(other.milliseconds));
}

}  // namespace

int main(int count, char** arguments) {
    int runs = 21;
    if (count == 3 && std::string_view(arguments[1]) == "--runs")
        runs = std::max(1, std::atoi(arguments[2]));
    const TemporaryFolder folder;
    const std::string sampleRoot = sample(folder);
    const std::string largeRoot = large(folder, sampleRoot);

    std::vector<Program> programs{{"start/nothing", {YG_START_NOTHING}, {}},
                                  {"start/ygconfig --version", {YG_TOOL, "--version"}, {}}};
    for (const auto& [name, root] : std::array<std::pair<std::string, std::string>, 2>{
             {{"sample", sampleRoot}, {"1MB", largeRoot}}}) {
        programs.push_back({"start/" + name + "/library", {YG_START_LIBRARY, root}, {}});
        programs.push_back({"start/" + name + "/qt", {YG_START_QT, root}, {}});
        programs.push_back({"start/" + name + "/qt with fonts", {YG_START_QT, root, "fonts"}, {}});
        programs.push_back(
            {"start/" + name + "/libxml2 and gdk-pixbuf", {YG_START_LIBXML2, root}, {}});
    }
    for (int i = -1; i < runs; ++i) {
        for (Program& program : programs) {
            const double time = run(program);
            if (i >= 0)
                program.milliseconds.push_back(time);
        }
    }
    for (Program& program : programs) {
        std::sort(program.milliseconds.begin(), program.milliseconds.end());
        std::printf("%-40s %8.2f ms, %.2f to %.2f\n", program.name.c_str(),
                    median(program.milliseconds), program.milliseconds.front(),
                    program.milliseconds.back());
    }
    std::printf("\n%-64s %8s  %s\n", "ratio of medians, processor time", "ratio", "goal");
    printRatio(programs[1], programs[0]);
    for (const std::size_t first : {std::size_t{2}, std::size_t{6}}) {
        for (std::size_t peer = 1; peer <= 3; ++peer)
            printRatio(programs[first], programs[first + peer]);
    }
    return 0;
}
