// SPDX-License-Identifier: MIT
//
// An older state of a folder that is in a git repository, as files. The program git does the work;
// nothing of the repository changes.
#pragma once

#include <memory>
#include <string>

namespace yg::tool {

/// A folder with the state of a root in one revision; removed with it, also when the run is ended
/// by a signal meanwhile.
class GitState {
public:
    /// What git would write for the revision, a commit or a tree, into a new folder. Null, with one
    /// line in `error`, when git is missing or the folder is in no repository, the revision is not
    /// known or does not have the folder, or the files cannot be written.
    static std::unique_ptr<GitState> of(const std::string& root, const std::string& revision,
                                        std::string& error);

    ~GitState();
    GitState(const GitState&) = delete;
    GitState& operator=(const GitState&) = delete;

    const std::string& path() const { return path_; }

private:
    class TemporaryFolder;

    explicit GitState(std::unique_ptr<TemporaryFolder> folder);

    std::unique_ptr<TemporaryFolder> folder_;
    std::string path_;
};

}  // namespace yg::tool
