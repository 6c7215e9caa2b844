// SPDX-License-Identifier: MIT
#include "ygconfig/diff/GitState.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

#include "ygconfig/files/Input.h"

namespace yg::tool {

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};

/// Holds back the signals that end a run, so that what is temporary is removed before it ends.
class SignalsHeldBack {
public:
    SignalsHeldBack() {
        sigset_t ending;
        ::sigemptyset(&ending);
        for (const int signal : endingSignals)
            ::sigaddset(&ending, signal);
        ::sigprocmask(SIG_BLOCK, &ending, &before_);
    }
    ~SignalsHeldBack() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }
    SignalsHeldBack(const SignalsHeldBack&) = delete;
    SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

private:
    sigset_t before_;
};

std::string firstLine(std::string_view text) {
    return std::string(text.substr(0, text.find('\n')));
}

}  // namespace

class GitState::TemporaryFolder {
public:
    TemporaryFolder() {
        std::error_code error;
        const std::filesystem::path parent = std::filesystem::temp_directory_path(error);
        path_ = (error ? "/tmp" : parent.string()) + "/ygconfig-diff-XXXXXX";
        isMade_ = ::mkdtemp(path_.data()) != nullptr;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        if (isMade_)
            std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    explicit operator bool() const { return isMade_; }
    std::string at(std::string_view name) const { return path_ + "/" + std::string(name); }

private:
    const SignalsHeldBack signals_;  // until the folder is removed
    std::string path_;
    bool isMade_ = false;
};

namespace {

/// Runs git, with an index of our own, in a folder.
class Git {
public:
    /// Keeps its files in the folder.
    explicit Git(std::string scratch) : scratch_(std::move(scratch)) {}

    /// What git prints; its exit status is 0 then. Otherwise absent, and `error` says why.
    std::optional<std::string> run(const std::string& folder, std::vector<std::string> words,
                                   const std::string& input, std::string& error) const {
        // What a repository's settings would run does not run.
        std::vector<std::string> all{"git", "-C", folder.empty() ? "." : folder, "-c",
                                     "core.fsmonitor=false"};
        all.insert(all.end(), words.begin(), words.end());
        const int status = spawn(all, input);
        std::string output;
        if (status < 0) {
            error = std::string("git cannot be run: ") + std::strerror(-status);
            return std::nullopt;
        }
        if (status != 0) {
            readInput(scratch_ + "/errors", output);
            constexpr std::string_view prefix = "fatal: ";
            error = firstLine(output);
            if (error.starts_with(prefix))
                error.erase(0, prefix.size());
            return std::nullopt;
        }
        if (const int failure = readInput(scratch_ + "/output", output); failure != 0) {
            error = std::strerror(failure);
            return std::nullopt;
        }
        return output;
    }

private:
    /// The exit status; a signal's number and 128; less than 0 for an error of the system.
    int spawn(const std::vector<std::string>& words, const std::string& input) const {
        std::vector<std::string> environment;
        for (char** entry = environ; *entry; ++entry) {
            if (!std::string_view(*entry).starts_with("GIT_INDEX_FILE="))
                environment.emplace_back(*entry);
        }
        environment.push_back("GIT_INDEX_FILE=" + scratch_ + "/index");
        environment.emplace_back("GIT_OPTIONAL_LOCKS=0");
        environment.emplace_back("GIT_TERMINAL_PROMPT=0");

        posix_spawn_file_actions_t files;
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawn_file_actions_addopen(&files, STDIN_FILENO, input.c_str(), O_RDONLY, 0);
        const std::string output = scratch_ + "/output";
        const std::string errors = scratch_ + "/errors";
        constexpr int flags = O_WRONLY | O_CREAT | O_TRUNC;
        ::posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output.c_str(), flags, 0600);
        ::posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(), flags, 0600);
        posix_spawnattr_t attributes;
        ::posix_spawnattr_init(&attributes);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        // It may be ended at once.
        sigset_t held;
        ::sigprocmask(SIG_UNBLOCK, nullptr, &held);
        for (const int signal : endingSignals)
            ::sigdelset(&held, signal);
        ::posix_spawnattr_setsigmask(&attributes, &held);
        sigset_t ignored;
        ::sigemptyset(&ignored);
        ::sigaddset(&ignored, SIGPIPE);
        ::posix_spawnattr_setsigdefault(&attributes, &ignored);

        pid_t child = 0;
        const int failure =
            ::posix_spawnp(&child, "git", &files, &attributes, pointersTo(words).data(),
                           pointersTo(environment).data());
        ::posix_spawnattr_destroy(&attributes);
        ::posix_spawn_file_actions_destroy(&files);
        if (failure != 0)
            return -failure;
        int status = 0;
        while (::waitpid(child, &status, 0) == -1) {
            if (errno != EINTR)
                return -errno;
        }
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    static std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
        std::vector<char*> pointers;
        pointers.reserve(texts.size() + 1);
        for (const std::string& text : texts)
            pointers.push_back(const_cast<char*>(text.c_str()));
        pointers.push_back(nullptr);
        return pointers;
    }

    const std::string scratch_;
};

}  // namespace

GitState::GitState(std::unique_ptr<TemporaryFolder> folder)
    : folder_(std::move(folder)), path_(folder_->at("root")) {}

GitState::~GitState() = default;

std::unique_ptr<GitState> GitState::of(const std::string& root, const std::string& revision,
                                       std::string& error) {
    if (revision.empty() || revision.front() == '-' || revision.find('\0') != std::string::npos) {
        error = "\"" + revision + "\" is not a revision";
        return nullptr;
    }
    auto folder = std::make_unique<TemporaryFolder>();
    if (!*folder) {
        error = std::string("no temporary folder can be made: ") + std::strerror(errno);
        return nullptr;
    }
    const Git git(folder->at("."));
    const auto line = [](std::string text) {
        if (text.ends_with('\n'))
            text.pop_back();
        return text;
    };
    const std::string none = "/dev/null";
    // "examples/terminal/" of a root below the top, "" of the top itself.
    auto prefix = git.run(root, {"rev-parse", "--show-prefix"}, none, error);
    const auto top =
        prefix ? git.run(root, {"rev-parse", "--show-toplevel"}, none, error) : std::nullopt;
    if (!top) {
        error = "\"" + root + "\": " + error;
        return nullptr;
    }
    prefix = line(*prefix);
    const auto tree = git.run(root, {"rev-parse", "--verify", revision + "^{tree}"}, none, error);
    if (!tree) {
        error = "git knows no revision \"" + revision + "\"";
        return nullptr;
    }
    // With the whole tree the rules for files of each folder hold.
    const std::string files = folder->at("files");
    auto isDone = git.run(line(*top), {"read-tree", line(*tree)}, none, error);
    if (isDone)
        isDone = git.run(line(*top), {"--literal-pathspecs", "ls-files", "-z", "--", *prefix}, none,
                         error);
    if (isDone && isDone->empty()) {
        error = "revision \"" + revision + "\" does not have the folder \"" +
                (prefix->empty() ? "." : *prefix) + "\"";
        return nullptr;
    }
    std::error_code failure;
    if (isDone) {
        std::filesystem::rename(folder->at("output"), files, failure);
        isDone = git.run(line(*top),
                         {"checkout-index", "-z", "--stdin", "--prefix=" + folder->at("state/")},
                         files, error);
    }
    if (isDone && !failure)
        std::filesystem::rename(folder->at("state/" + *prefix), folder->at("root"), failure);
    if (!isDone || failure) {
        error = "revision \"" + revision + "\": " + (isDone ? failure.message() : error);
        return nullptr;
    }
    return std::unique_ptr<GitState>(new GitState(std::move(folder)));
}

}  // namespace yg::tool
