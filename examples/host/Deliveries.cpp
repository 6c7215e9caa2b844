// SPDX-License-Identifier: MIT
#include "Deliveries.h"

#include <fstream>
#include <iostream>
#include <iterator>

#include "YGConfigManager/diagnostics/Rule.h"
#include "YGConfigManager/inspection/Inspection.h"

namespace terminal {

bool readDelivery(const std::string& path, yg::Delivery& delivery) {
    std::ifstream file(path, std::ios::binary);
    delivery.name = path;
    delivery.bytes.assign(std::istreambuf_iterator<char>(file), {});
    if (file && !delivery.bytes.empty())
        return true;
    std::cerr << path << " cannot be read, or is empty.\n";
    return false;
}

bool checkDelivery(const yg::Delivery& delivery, const std::string& root) {
    std::string error;
    const auto tried = yg::Inspection::ofDelivery(delivery, root, error);
    if (!tried) {
        std::cerr << error << '\n';
        return false;
    }
    // An error says that the delivery is refused, or that something would be lost by it.
    bool isGood = true;
    for (const yg::RootFinding& finding : tried->findings()) {
        if (finding.rule->severity != yg::Severity::error)
            continue;
        isGood = false;
        std::cout << finding.file << ':' << finding.begin.line << ": " << finding.message << '\n';
    }
    return isGood;
}

bool takeServers(const Configuration& configuration, const yg::Delivery& delivery,
                 const std::string& digest) {
    // The loader's groups are replaced: one thread at a time may use it, the main thread here.
    if (!configuration.servers->reloadServerConfigWithData(delivery.bytes, digest)) {
        std::cerr << "The servers stay as they were.\n";
        return false;
    }
    std::cout << "digest: " << configuration.servers->configMd5().value_or("(none)") << '\n';
    for (const auto& server : configuration.servers->serversOfType(1))
        std::cout << server->serverName().value_or("") << '\n';
    return true;
}

bool takeWebPages(const Configuration& configuration, const yg::Delivery& delivery) {
    // False also when the new table is in place and could not be written; the next start then
    // begins with the old one.
    if (!configuration.webPages->replaceDataFromServer(delivery.bytes)) {
        std::cerr << "The web pages stay as they were, or could not be written.\n";
        return false;
    }
    std::cout << "web pages: " << configuration.webPages->keys().size() << '\n';
    return true;
}

}  // namespace terminal
