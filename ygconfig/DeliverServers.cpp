// SPDX-License-Identifier: MIT
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "ygconfig/Commands.h"
#include "ygconfig/Display.h"
#include "ygconfig/Json.h"
#include "ygconfig/Servers.h"

namespace yg::tool {

namespace {

/// More than any configuration; what never ends, such as a device, ends here.
constexpr std::size_t mostBytes = std::size_t{1} << 30;

/// Reads a file whole; 0, or the error number.
int readFile(const std::string& path, std::string& bytes) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rbe"),
                                                               std::fclose);
    if (!file)
        return errno;
    char buffer[64 * 1024];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, file.get())) {
        bytes.append(buffer, count);
        if (bytes.size() > mostBytes)
            return EFBIG;
    }
    return std::ferror(file.get()) != 0 ? errno : 0;
}

}  // namespace

Answer deliverServers(const Session& session) {
    const Arguments& arguments = session.arguments;
    std::string bytes;
    if (const int error = readFile(arguments.data, bytes); error != 0)
        return {"", ExitCode::unusable,
                "ygconfig servers deliver: \"" + printable(arguments.data) +
                    "\": " + std::strerror(error)};
    const auto loader = loadServers(arguments);
    if (!loader)
        return jsonAnswer(Json());
    return jsonAnswer(loader->reloadServerConfigWithData(bytes, arguments.md5));
}

}  // namespace yg::tool
