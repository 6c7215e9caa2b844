// SPDX-License-Identifier: MIT
#include "ygconfig/preview/Preview.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <exception>
#include <optional>
#include <string_view>
#include <sys/signalfd.h>
#include <thread>
#include <utility>

#include "ygconfig/preview/Descriptor.h"
#include "ygconfig/preview/LocalServer.h"
#include "ygconfig/preview/Pictures.h"
#include "ygconfig/preview/RootWatch.h"
#include "ygconfig/report/Report.h"

namespace yg::tool {

namespace {

/// Readable once SIGINT or SIGTERM has arrived, which no longer end the process.
Descriptor endingSignals() {
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGINT);
    ::sigaddset(&signals, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return Descriptor(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

/// The page's text around the model.
struct Frame {
    std::string before;
    std::string behind;
};

Frame liveFrame() {
    Frame frame;
    std::string* part = &frame.before;
    const Sink sink = [&](std::string_view piece) { *part += piece; };
    Output output(sink);
    writePage(
        [&] {
            output.flush();
            part = &frame.behind;
        },
        PageKind::live, output);
    output.flush();
    return frame;
}

}  // namespace

struct Preview::Parts {
    explicit Parts(const std::string& root) : watch(root), pictures(root) {}

    /// Shows the root as it is now unless nothing is different; false with the reason when there is
    /// nothing to show.
    bool draw(std::string& error) {
        std::optional<std::string> model = pictures.next(error);
        if (model && (!shown || *model != shown->model)) {
            shown = std::make_shared<ShownPage>(
                ShownPage{frame.before, frame.behind, *std::move(model)});
            server->show(shown);
        }
        return shown != nullptr;
    }

    /// Follows the root until the bell rings.
    void follow(const Bell& ending, const std::function<void(const std::string&)>& complain) {
        bool hasComplained = false;
        const auto complainOnce = [&] {
            if (!watch.complaint().empty() && !std::exchange(hasComplained, true))
                complain(watch.complaint());
        };
        for (complainOnce(); watch.wait(ending.number()); complainOnce()) {
            try {
                watch.renew();
                std::string error;
                draw(error);
            } catch (const std::exception&) {
                // Without memory the page stays, until the next change.
            }
        }
    }

    const Descriptor signals = endingSignals();
    const Frame frame = liveFrame();
    RootWatch watch;
    Pictures pictures;
    std::unique_ptr<LocalServer> server;
    std::shared_ptr<const ShownPage> shown;
};

std::unique_ptr<Preview> Preview::open(const std::string& root, std::uint16_t port,
                                       Failure& failure) {
    auto parts = std::make_unique<Parts>(root);
    if (!parts->signals) {
        failure = {std::strerror(errno), ExitCode::failed};
        return nullptr;
    }
    parts->server = LocalServer::open(port, failure.reason);
    if (!parts->server) {
        failure.exitCode = ExitCode::failed;
        return nullptr;
    }
    parts->watch.renew();
    if (!parts->draw(failure.reason)) {
        failure.exitCode = ExitCode::unusable;
        return nullptr;
    }
    return std::unique_ptr<Preview>(new Preview(std::move(parts)));
}

Preview::Preview(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

Preview::~Preview() = default;

std::string Preview::address() const {
    return "http://127.0.0.1:" + std::to_string(parts_->server->port()) + "/";
}

void Preview::serve(const std::function<void(const std::string&)>& complain) {
    const Bell ending;
    std::thread follower([&] { parts_->follow(ending, complain); });
    const auto end = [&] {
        ending.ring();
        follower.join();
    };
    try {
        parts_->server->serve(parts_->signals.number());
    } catch (...) {
        end();
        throw;
    }
    end();
}

}  // namespace yg::tool
