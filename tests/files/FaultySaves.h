// SPDX-License-Identifier: MIT
//
// Saves a file with each of the system calls of the saving failed in turn, or the process ended at
// it. Whoever saves must leave the old content or the new one, and nothing beside it.
#pragma once

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Proof.h"
#include "files/ScopedFileLayer.h"
#include "files/TemporaryFolder.h"

namespace yg::testing {

/// One saving that is to be tried.
struct Saving {
    /// The file, which has the old content.
    std::string path;
    /// Saves the new content; answers what the operation does.
    std::function<bool()> save;
};

/// Makes a root ready for a saving.
using Prepare = std::function<Saving(const files::TemporaryFolder& root)>;

/// Whether the new content was put in place by the calls, and that brought to the disk.
inline bool isSafe(const files::ScriptedFileLayer& layer) {
    const auto rename = std::find(layer.happened.begin(), layer.happened.end(), "rename");
    return std::find(rename, layer.happened.end(), "sync") != layer.happened.end();
}

/// The names beside the file that begin as those of new files do.
inline int tempFilesBeside(const std::string& path) {
    int count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(path).parent_path()))
        count += entry.path().filename().string().starts_with(".yg-") ? 1 : 0;
    return count;
}

struct Contents {
    std::string before;
    std::string after;
    std::size_t calls;
};

/// What the file holds before and after a saving that nothing disturbs, and how many calls it
/// makes.
inline Contents contentsOf(const Prepare& prepare) {
    const files::TemporaryFolder root;
    const Saving saving = prepare(root);
    Contents contents{files::contentOf(saving.path), {}, 0};
    ScopedFileLayer layer;
    EXPECT_TRUE(saving.save());
    contents.after = files::contentOf(saving.path);
    contents.calls = layer->made.size();
    EXPECT_NE(contents.before, contents.after);
    EXPECT_GT(contents.calls, 15U);
    return contents;
}

/// Fails each call once by each error, in a proof, or by one of them. How many savings that was.
/// `answersLoss`: whether the answer says that the new content is not safe.
inline int failEveryCall(const Prepare& prepare, bool answersLoss) {
    constexpr std::array errors = {EIO, ENOSPC, EACCES, EMFILE, EROFS, EDQUOT, EINTR};
    const Contents contents = contentsOf(prepare);
    const auto errorsOfCall = static_cast<std::size_t>(repeats(1, int{errors.size()}));
    int savings = 0;
    for (std::size_t call = 0; call < contents.calls; ++call) {
        for (std::size_t which = 0; which < errorsOfCall; ++which, ++savings) {
            const int error = errors[(call + which) % errors.size()];
            const files::TemporaryFolder root;
            const Saving saving = prepare(root);
            ScopedFileLayer layer;
            std::string failed;
            layer->errorOf = [&](std::string_view name) {
                if (layer->made.size() != call + 1)
                    return 0;
                failed = name;
                return error;
            };
            const bool answer = saving.save();
            const bool isNew = std::count(layer->happened.begin(), layer->happened.end(), "rename");
            const std::string what = failed + " with error " + std::to_string(error);
            EXPECT_NE(failed, "") << call;
            EXPECT_TRUE(files::contentOf(saving.path) == (isNew ? contents.after : contents.before))
                << what;
            EXPECT_EQ(answer, isSafe(*layer.operator->()) || !answersLoss) << what;
            EXPECT_EQ(tempFilesBeside(saving.path), 0) << what;
            // The next one must succeed.
            layer->errorOf = [](std::string_view) { return 0; };
            saving.save();
            EXPECT_EQ(tempFilesBeside(saving.path), 0) << what;
        }
    }
    return savings;
}

/// Ends the process at each call. How many savings that was.
inline int endAtEveryCall(const Prepare& prepare) {
    const Contents contents = contentsOf(prepare);
    int savings = 0;
    for (std::size_t call = 0; call < contents.calls; ++call, ++savings) {
        const files::TemporaryFolder root;
        const Saving saving = prepare(root);
        const pid_t child = ::fork();
        if (child == 0) {
            ScopedFileLayer layer;
            bool isRenamed = false;
            layer->after = [&](std::string_view name) {
                isRenamed = isRenamed || name == "rename";
            };
            layer->errorOf = [&](std::string_view) {
                if (layer->made.size() == call + 1)
                    ::_exit(isRenamed ? 1 : 0);
                return 0;
            };
            saving.save();
            ::_exit(2);
        }
        int status = -1;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) < 2) << call;
        const bool isRenamed = WEXITSTATUS(status) == 1;
        EXPECT_TRUE(files::contentOf(saving.path) == (isRenamed ? contents.after : contents.before))
            << call;
        // The hidden file of a killed saving goes with a later one.
        const int left = tempFilesBeside(saving.path);
        EXPECT_LE(left, isRenamed ? 0 : 1) << call;
        if (left > 0) {
            files::ageTempFiles(std::filesystem::path(saving.path).parent_path());
            ScopedFileLayer layer;
            EXPECT_TRUE(saving.save());
            EXPECT_EQ(tempFilesBeside(saving.path), 0) << call;
        }
    }
    return savings;
}

}  // namespace yg::testing
