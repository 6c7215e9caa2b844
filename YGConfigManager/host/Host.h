// SPDX-License-Identifier: MIT
//
// What the library requires of the application that loads it: file locations, the user's right
// level, mapping tables, a log and a main thread. An application derives from Host and installs its
// object with setHost() before it makes the first loader; without one, a StandAloneHost on the
// current folder answers.
//
// The library can be used until the process is gone, by threads that nobody waits for and by the
// destructors of static objects too. The child of a fork may use it as its parent could, but for a
// store of settings or a table of web pages that another thread of the parent may have been using,
// and for what another thread was changing or loading into: it makes objects of its own instead.
// A download of request URLs changes their list: while one may be under way in the parent, the
// child only looks addresses up in it.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "YGConfigManager/export.h"
#include "YGConfigManager/host/MainQueue.h"

namespace yg {

/// Which log a line belongs to: what the loaders do as they run, or the business log.
enum class LogChannel { runtime, business };

/// How much a log line matters: what happens, what is missing and has a substitute, or what could
/// not be done.
enum class LogSeverity { info, warning, error };

/// A mapping table: lists of texts by text.
using MappingDic = std::map<std::string, std::vector<std::string>, std::less<>>;

/// The services of the application.
///
/// Every operation is called synchronously on whichever thread needs the answer, several at a time:
/// implementations are safe from any thread. They must not throw; the library catches what they
/// throw all the same and takes it for an absent answer. Some loaders ask and log under a lock of
/// their own, so an implementation never calls back into a loader.
///
/// An absent or empty path means that there is no such file, and the file is treated as missing.
class YG_EXPORT Host {
public:
    Host() = default;
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    virtual ~Host();

    /// The full path of a file in the user's storage. `area` is always 1 and `subFolderPath` always
    /// absent; `fileName` is as the application gave it to the loader, absent or empty too.
    /// `isNeedWrite` is true when the file is about to be written: the path answered then can be
    /// written, and a later call without the flag answers the file that was written.
    virtual std::optional<std::string> getStorageFilePath(
        std::int64_t area, std::optional<std::string_view> subFolderPath,
        std::optional<std::string_view> fileName, bool isNeedWrite) = 0;

    /// The right level of the user who is logged in now. Absent and "" mean "free".
    virtual std::optional<std::string> getUserRightDescription() = 0;

    /// The full path of file `fileName` in the software's configuration folder. `kind` is always 0;
    /// `fileName` is a last path component.
    virtual std::optional<std::string> getSoftOptimizeConfigFilePath(std::int64_t kind,
                                                                     std::string_view fileName) = 0;

    /// The full path of file `fileName` in the base configuration folder. `kind` is always 0.
    virtual std::optional<std::string> getBaseOptimizeConfigFilePath(std::int64_t kind,
                                                                     std::string_view fileName) = 0;

    /// The mapping table `key`; null when there is none. The table must not change once answered:
    /// a host whose tables change answers another object.
    virtual std::shared_ptr<const MappingDic> getMappingDicForKey(std::string_view key) = 0;

    /// The full path of a folder (the name is spelt so in the interface). `kind` is always 4, the
    /// folder that holds the palette's images. Absent when there is none.
    virtual std::optional<std::string> getDefualtFolderPath(std::int64_t kind) = 0;

    /// The host name, or host name and port ("10.0.0.1:8080"), of the configuration download
    /// server. Absent, as by default: nothing is downloaded.
    virtual std::optional<std::string> configServer();

    /// Takes one finished log message, without time stamp and without line end. A message may hold
    /// line breaks of its own, and any byte that a configuration file may hold.
    virtual void writeLog(LogChannel channel, std::string_view message) = 0;

    /// The same with how much the message matters; the library calls this one. By default calls
    /// writeLog(channel, message).
    virtual void writeLogLine(LogChannel channel, LogSeverity severity, std::string_view message);

    /// The queue that brings tasks to the main thread. By default defaultMainQueue(), which
    /// the application drains. Null counts as the default.
    virtual std::shared_ptr<MainQueue> mainQueue();
};

/// Installs `host` for the whole process; null brings the default back: a StandAloneHost on the
/// current folder. Answers the host that it replaces, null for the default. Safe from any thread;
/// calls under way end on the host with which they began. The host is held until it is replaced, so
/// an application whose host has work to do at its end installs null before it exits.
YG_EXPORT std::shared_ptr<Host> setHost(std::shared_ptr<Host> host) noexcept;

/// A class of an application that implements every operation that Host asks for: each has exactly
/// the parameters that it has there, which `override` behind it has the compiler check.
template <class OwnHost>
concept ImplementsEveryOperation = std::derived_from<OwnHost, Host> && !std::is_abstract_v<OwnHost>;

/// std::make_shared for such a class, whose messages speak of the class and not of the standard
/// library when an operation is missing.
template <ImplementsEveryOperation OwnHost, class... Arguments>
requires std::constructible_from<OwnHost, Arguments...> std::shared_ptr<OwnHost> makeHost(
    Arguments&&... arguments) {
    return std::make_shared<OwnHost>(std::forward<Arguments>(arguments)...);
}

/// The host installed, or the default one, which is made at the first such call; never null. While
/// memory does not suffice for the default one, one without settings. Safe from any thread.
YG_EXPORT std::shared_ptr<Host> currentHost() noexcept;

}  // namespace yg
