// SPDX-License-Identifier: MIT
//
// The service against a real server: nginx on the loopback interface, with a folder and a free port
// of its own.
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <gtest/gtest.h>

#include "files/TemporaryFolder.h"
#include "net/FaultServer.h"
#include "net/Getting.h"

namespace yg::testing {
namespace {

using namespace std::chrono_literals;
using files::TemporaryFolder;

constexpr std::string_view list =
    R"({"md5Value":"1f0c","urlConfigList":[{"urlKey":"news","urlValue":"http://127.0.0.1/n"}]})";

std::string configuration(const std::string& folder, int port) {
    std::string temporary;
    for (const char* kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
        temporary += "    " + std::string(kind) + "_temp_path " + folder + "/" + kind + ";\n";
    return (::geteuid() == 0 ? "user root root;\n" : "") + std::string(R"(daemon off;
worker_processes 1;
pid )") + folder +
           R"(/pid;
events { worker_connections 1024; }
http {
    access_log off;
)" + temporary +
           R"(    server {
        listen 127.0.0.1:)" +
           std::to_string(port) + R"( backlog=1024;
        root )" +
           folder + R"(/root;
        gzip on;
        gzip_min_length 1;
        gzip_types text/plain;
        default_type text/plain;
        location = /gone { return 404 '{"md5Value":"2"}'; }
        location = /empty { return 204; }
        location = /moved { return 302 /list; }
        location = /loop { return 302 /loop; }
    }
}
)";
}

/// nginx from its start to its end.
class Nginx {
public:
    Nginx() {
        std::filesystem::create_directory(folder_ / "root");
        files::put(folder_ / "root/list", list);
        // The test of the process: the port is free when it is chosen, but not ours until then.
        files::put(folder_ / "root/mark", folder_.path());
        for (int attempt = 0; attempt < 5; ++attempt) {
            const HeldPort held = holdPort();
            ::close(held.socket);
            port_ = held.port;
            start();
            if (answers())
                return;
            stop();
        }
        throw std::runtime_error("nginx does not start: " +
                                 files::contentOf(folder_ / "error.log"));
    }
    ~Nginx() { stop(); }
    Nginx(const Nginx&) = delete;
    Nginx& operator=(const Nginx&) = delete;

    std::string url(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(port_) + path;
    }
    const TemporaryFolder& folder() const { return folder_; }

private:
    void start() {
        files::put(folder_ / "nginx.conf", configuration(folder_.path(), port_));
        const std::string path = folder_.path();
        const std::string file = folder_ / "nginx.conf";
        const std::string errors = folder_ / "error.log";
        const pid_t parent = ::getpid();
        process_ = ::fork();
        if (process_ == 0) {
            // It must not outlive a test that crashes.
            ::prctl(PR_SET_PDEATHSIG, SIGTERM);
            if (::getppid() != parent)
                ::_exit(1);
            ::execl(YG_NGINX, "nginx", "-p", path.c_str(), "-e", errors.c_str(), "-c", file.c_str(),
                    nullptr);
            ::_exit(1);
        }
    }

    bool answers() {
        for (int i = 0; i < 500; ++i) {
            int state = 0;
            if (::waitpid(process_, &state, WNOHANG) != 0) {
                process_ = -1;
                return false;
            }
            if (bodyOf(url("/mark")) == folder_.path())
                return true;
            std::this_thread::sleep_for(10ms);
        }
        return false;
    }

    void stop() {
        if (process_ > 0) {
            ::kill(process_, SIGTERM);
            ::waitpid(process_, nullptr, 0);
            process_ = -1;
        }
    }

    const TemporaryFolder folder_;
    int port_ = 0;
    pid_t process_ = -1;
};

TEST(RealServer, GivesItsAnswersWhole) {
    const Nginx nginx;
    EXPECT_EQ(bodyOf(nginx.url("/list")), list);
    EXPECT_EQ(bodyOf(nginx.url("/moved")), list);
    EXPECT_EQ(bodyOf(nginx.url("/gone")), "{\"md5Value\":\"2\"}");
    EXPECT_EQ(bodyOf(nginx.url("/empty")), "");
    EXPECT_EQ(bodyOf(nginx.url("/loop")), std::nullopt);
    const Body page = bodyOf(nginx.url("/no-such-file"));
    ASSERT_TRUE(page);
    EXPECT_NE(page->find("404"), std::string::npos);

    std::string large;
    for (int i = 0; large.size() < 5'000'000; ++i)
        large += std::to_string(i) + "\n";
    files::put(nginx.folder() / "root/large", large);
    files::put(nginx.folder() / "root/nothing", "");
    EXPECT_EQ(bodyOf(nginx.url("/large")), large);
    EXPECT_EQ(bodyOf(nginx.url("/nothing")), "");
}

TEST(RealServer, ServesAThousandRequestsAtATime) {
    const Nginx nginx;
    std::atomic<int> all = 0;
    std::atomic<int> right = 0;
    net::HttpGetService service;
    for (int i = 0; i < 1000; ++i) {
        service.get(nginx.url("/list"), [&](const Body& body, const auto&...) {
            right += body == list ? 1 : 0;
            ++all;
        });
    }
    for (int i = 0; i < 1500 && all < 1000; ++i)
        std::this_thread::sleep_for(10ms);
    EXPECT_EQ(right, 1000);
    service.stop();
}

}  // namespace
}  // namespace yg::testing
