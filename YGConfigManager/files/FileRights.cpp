// SPDX-License-Identifier: MIT
#include "YGConfigManager/files/FileRights.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "YGConfigManager/files/Place.h"

namespace yg::files {

namespace {

/// No extended attribute is larger.
constexpr std::size_t maxListSize = 65'536;

constexpr unsigned groupShift = 3;

/// Whether the error says that the user may not do that, or that the file system cannot.
bool isRefusal(int error) {
    return error == EPERM || error == EACCES || error == EINVAL || error == ENOTSUP ||
           error == ENOSYS;
}

/// Whether the error means that the file has no access list.
bool saysNoList(int error) {
    return error == ENODATA || error == ENOTSUP || error == ENOSYS;
}

/// The rights, of 0 to 7, that all have who are named in the list: owner, users, groups and others,
/// as the mask leaves them. None for what is not such a list.
mode_t rightsOfAll(std::string_view list) {
    // A version in four bytes, then entries of eight: what it is about in two, the rights in two,
    // the number of the user or group in four. The lowest byte comes first.
    constexpr std::size_t headerSize = 4;
    constexpr std::size_t entrySize = 8;
    constexpr std::size_t rightsInEntry = 2;
    constexpr char version = 2;
    if (list.size() <= headerSize || list.front() != version ||
        (list.size() - headerSize) % entrySize != 0)
        return 0;
    mode_t rights = S_IRWXO;
    // The mask is an entry itself, so this takes in what it leaves.
    for (std::size_t entry = headerSize; entry < list.size(); entry += entrySize)
        rights &= static_cast<std::uint8_t>(list[entry + rightsInEntry]);
    return rights;
}

/// The same for a file without a list.
mode_t rightsOfAll(mode_t mode) {
    return mode & (mode >> groupShift) & (mode >> (2 * groupShift));
}

struct Kept {
    bool user = true;
    bool group = true;
};

/// Gives the file its owner and group as far as that is permitted. False if a call failed.
bool giveOwner(int file, const FileRights& rights, Kept& kept, FileLayer& layer) {
    const auto give = [&](uid_t user) {
        return uninterrupted([&] { return layer.changeOwner(file, user, rights.group); }) == 0;
    };
    if (give(rights.user))
        return true;
    constexpr auto sameUser = static_cast<uid_t>(-1);
    struct stat state;
    if (!isRefusal(errno) || (!give(sameUser) && !isRefusal(errno)) ||
        layer.status(file, "", state) != 0)
        return false;
    kept = {state.st_uid == rights.user, state.st_gid == rights.group};
    return true;
}

}  // namespace

bool readAccessList(const std::string& path, FileRights& rights, FileLayer& layer) {
    std::string& list = rights.accessList;
    list.resize(maxListSize);
    const ssize_t size =
        uninterrupted([&] { return layer.readAccessList(path.c_str(), list.data(), list.size()); });
    list.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return size >= 0 || saysNoList(errno);
}

bool giveRights(int file, const FileRights& rights, FileLayer& layer) {
    Kept kept;
    if (!giveOwner(file, rights, kept, layer))
        return false;
    const std::string& list = rights.accessList;
    const bool canHaveList = kept.user && kept.group && !list.empty();
    const bool hasList =
        canHaveList &&
        uninterrupted([&] { return layer.setAccessList(file, list.data(), list.size()); }) == 0;
    if (canHaveList && !hasList && !isRefusal(errno))
        return false;
    const bool isBare = hasList ||
                        uninterrupted([&] { return layer.removeAccessList(file); }) == 0 ||
                        saysNoList(errno);
    if (!isBare && !isRefusal(errno))
        return false;

    mode_t group = (rights.mode & S_IRWXG) >> groupShift;
    mode_t others = rights.mode & S_IRWXO;
    const mode_t owner = (rights.mode & S_IRWXU) >> (2 * groupShift);
    if (!kept.group || (!list.empty() && !hasList)) {
        group = others = list.empty() ? rightsOfAll(rights.mode) : rightsOfAll(list);
    } else if (!kept.user) {
        group &= owner;
        others &= owner;
    }
    // An inherited list that stays gives nothing without the group's rights, which are its mask.
    const mode_t ofGroup = isBare ? group << groupShift : 0;
    const mode_t mode = (rights.mode & S_IRWXU) | ofGroup | others;
    return uninterrupted([&] { return layer.changeMode(file, mode); }) == 0;
}

}  // namespace yg::files
