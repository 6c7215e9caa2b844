// SPDX-License-Identifier: MIT
//
// A settings file of 30 KB: what a durable change costs beside the bare system calls that make it
// durable, and beside what desktop applications use; what a read costs; and the look-up of a
// request URL.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include <QtCore/QSettings>
#include <QtCore/QString>
#include <benchmark/benchmark.h>
#include <glib.h>

#include "YGConfigManager/settings/YGAppConfigManager.h"
#include "YGConfigManager/settings/YGHttpReqUrlMgr.h"

#include "benchmarks/BenchmarkHost.h"
#include "benchmarks/Comparison.h"

namespace yg::benchmarks {

namespace {

constexpr int sections = 15;
constexpr int items = 20;
constexpr const char* section = "section7";
constexpr const char* item = "item13";

std::string sectionName(int number) {
    return "section" + std::to_string(number);
}
std::string itemName(int number) {
    return "item" + std::to_string(number);
}
std::string textOf(int sectionNumber, int itemNumber) {
    return "value " + std::to_string(sectionNumber * items + itemNumber);
}
constexpr const char* description = "what this item of the settings is meant for";

/// The same settings as each of the stores keeps them, in a folder that goes with the program.
class SettingsFolder {
public:
    SettingsFolder() : path_(std::filesystem::temp_directory_path() / "yg-benchmark-XXXXXX") {
        require(mkdtemp(path_.data()) != nullptr, "no temporary folder");
        std::filesystem::create_directory(path_ + "/storage");
        std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<config>\n";
        std::string ini;
        for (int i = 0; i < sections; ++i) {
            const std::string name = sectionName(i);
            xml.append("    <").append(name).append(">\n");
            ini.append("[").append(name).append("]\n");
            for (int k = 0; k < items; ++k)
                addItem(xml, ini, itemName(k), textOf(i, k));
            xml.append("    </").append(name).append(">\n");
        }
        xml += "</config>\n";
        std::ofstream(settings()) << xml;
        std::ofstream(ofQt()) << ini;
        std::ofstream(ofGLib()) << ini;
        std::string json = "{\"md5Value\":\"m\",\"urlConfigList\":[";
        for (int i = 0; i < 40; ++i) {
            json.append(i == 0 ? "" : ",").append(R"({"urlKey":"service_key_)");
            json.append(std::to_string(i));
            json.append(R"(","urlValue":"https://api.terminal.example.com/service/v1"})");
        }
        std::ofstream(path_ + "/storage/request_urls_json.txt") << json << "]}";
        bytes_ = xml;
    }
    SettingsFolder(const SettingsFolder&) = delete;
    SettingsFolder& operator=(const SettingsFolder&) = delete;
    ~SettingsFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::string& path() const { return path_; }
    const std::string& bytes() const { return bytes_; }
    std::string settings() const { return path_ + "/storage/app.xml"; }
    std::string ofQt() const { return path_ + "/qt.ini"; }
    std::string ofGLib() const { return path_ + "/glib.ini"; }

private:
    static void addItem(std::string& xml, std::string& ini, const std::string& name,
                        const std::string& text) {
        xml.append("        <").append(name).append(" description=\"").append(description);
        xml.append("\">").append(text).append("</").append(name).append(">\n");
        ini.append(name).append("=").append(text).append("\n");
        ini.append(name).append("_description=").append(description).append("\n");
    }

    std::string path_;
    std::string bytes_;
};

struct FreeKeyFile {
    void operator()(GKeyFile* file) const { g_key_file_free(file); }
};
using KeyFile = std::unique_ptr<GKeyFile, FreeKeyFile>;

/// What any durable replacement has to do, and nothing else.
void replaceBare(const std::string& folder, const std::string& bytes) {
    const std::string next = folder + "/bare.next";
    const int file = ::open(next.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    require(::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
                ::fsync(file) == 0 && ::close(file) == 0 &&
                ::rename(next.c_str(), (folder + "/bare.xml").c_str()) == 0,
            "the bare write");
    const int place = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(::fsync(place) == 0 && ::close(place) == 0, "the bare write's folder");
}

const char* textOfRound(std::size_t round) {
    return round % 2 == 0 ? "value 1" : "value 2";
}

void addWrites(const std::shared_ptr<SettingsFolder>& folder, const std::shared_ptr<Host>& host) {
    const auto store = YGAppConfigManager::initWithFileName("app.xml");
    require(store->getItemText(section, item).has_value(), "the settings are not there");
    benchmark::RegisterBenchmark(
        "settings/write",
        [store, host](benchmark::State& state) {
            setHost(host);
            std::size_t round = 0;
            for (auto unused : state)
                require(store->setConfigItem(section, item, std::nullopt, textOfRound(round++)),
                        "a change was not stored");
            const std::string last = textOfRound(round - 1);
            require(
                YGAppConfigManager::initWithFileName("app.xml")->getItemText(section, item) == last,
                "a change was not written");
        })
        ->UseRealTime()
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("settings/write/bare",
                                 [folder](benchmark::State& state) {
                                     for (auto unused : state)
                                         replaceBare(folder->path(), folder->bytes());
                                 })
        ->UseRealTime()
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark(
        "settings/write/QSettings",
        [folder](benchmark::State& state) {
            QSettings settings(QString::fromStdString(folder->ofQt()), QSettings::IniFormat);
            const QString key = QString::fromLatin1(section) + "/" + item;
            std::size_t round = 0;
            for (auto unused : state) {
                settings.setValue(key, QString::fromLatin1(textOfRound(round++)));
                settings.sync();
            }
            require(settings.status() == QSettings::NoError, "QSettings does not write");
        })
        ->UseRealTime()
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark(
        "settings/write/GKeyFile",
        [folder](benchmark::State& state) {
            const KeyFile file(g_key_file_new());
            require(g_key_file_load_from_file(file.get(), folder->ofGLib().c_str(),
                                              G_KEY_FILE_KEEP_COMMENTS, nullptr) != FALSE,
                    "GKeyFile does not read");
            std::size_t round = 0;
            for (auto unused : state) {
                g_key_file_set_string(file.get(), section, item, textOfRound(round++));
                require(
                    g_key_file_save_to_file(file.get(), folder->ofGLib().c_str(), nullptr) != FALSE,
                    "GKeyFile does not write");
            }
        })
        ->UseRealTime()
        ->Unit(benchmark::kMicrosecond);
    compare({"settings/write", "settings/write/bare", 1.2, true});
    compare({"settings/write", "settings/write/QSettings", 0, true});
    compare({"settings/write", "settings/write/GKeyFile", 0, true});
}

void addReads(const std::shared_ptr<SettingsFolder>& folder) {
    std::vector<std::pair<std::string, std::string>> names;
    for (int i = 0; i < sections; ++i) {
        for (int k = 0; k < items; ++k)
            names.emplace_back(sectionName(i), itemName(k));
    }
    const auto store = YGAppConfigManager::initWithFileName("app.xml");
    benchmark::RegisterBenchmark("settings/read", [store, names](benchmark::State& state) {
        std::size_t next = 0;
        for (auto unused : state) {
            benchmark::DoNotOptimize(store->getItemText(names[next].first, names[next].second));
            next = next + 1 < names.size() ? next + 1 : 0;
        }
    });
    benchmark::RegisterBenchmark(
        "settings/read/GKeyFile", [folder, names](benchmark::State& state) {
            const KeyFile file(g_key_file_new());
            require(g_key_file_load_from_file(file.get(), folder->ofGLib().c_str(),
                                              G_KEY_FILE_KEEP_COMMENTS, nullptr) != FALSE,
                    "GKeyFile does not read");
            std::size_t next = 0;
            for (auto unused : state) {
                char* const text = g_key_file_get_string(file.get(), names[next].first.c_str(),
                                                         names[next].second.c_str(), nullptr);
                benchmark::DoNotOptimize(text);
                g_free(text);
                next = next + 1 < names.size() ? next + 1 : 0;
            }
        });
    compare({"settings/read", "settings/read/GKeyFile", 1.0});

    using Time = std::chrono::steady_clock;
    constexpr int rounds = 100'000;
    const auto start = Time::now();
    for (int round = 0; round < rounds; ++round) {
        const auto& [sectionOf, itemOf] = names[static_cast<std::size_t>(round) % names.size()];
        benchmark::DoNotOptimize(store->getItemText(sectionOf, itemOf));
    }
    const std::chrono::duration<double, std::micro> time = Time::now() - start;
    note("an item read, microseconds", time.count() / rounds, 1.0);
}

void addUrlLookup() {
    const auto manager = YGHttpReqUrlMgr::make();
    manager->readUrlModelFromFile();
    require(manager->httpReqUrlStringWithUrlKey("service_key_39").has_value(), "no request URLs");
    for (const char* key : {"service_key_0", "service_key_39"}) {
        benchmark::RegisterBenchmark(
            (std::string("request_url/lookup/") + key).c_str(),
            [manager, key](benchmark::State& state) {
                for (auto unused : state)
                    benchmark::DoNotOptimize(manager->httpReqUrlStringWithUrlKey(key));
            });
    }
}

}  // namespace

void registerSettings() {
    const auto folder = std::make_shared<SettingsFolder>();
    const auto host = std::make_shared<BenchmarkHost>(folder->path());
    setHost(host);
    addWrites(folder, host);
    addReads(folder);
    addUrlLookup();
}

}  // namespace yg::benchmarks
