// SPDX-License-Identifier: MIT
//
// Files that the login server delivers while the application runs: tried first, then taken.
#pragma once

#include <string>

#include "YGConfigManager/inspection/Delivery.h"

#include "Configuration.h"

namespace terminal {

/// A file as it was delivered: its name, for what is printed, and its bytes. False, with a line on
/// standard error, when it cannot be read.
bool readDelivery(const std::string& path, yg::Delivery& delivery);

/// Tries a delivery on the present files, of which none changes. Prints what is wrong with it, and
/// answers whether it can be taken.
bool checkDelivery(const yg::Delivery& delivery, const std::string& root);

/// Takes new servers, `digest` being what the server calls this version, and prints the quote
/// servers that count from now on.
bool takeServers(const Configuration& configuration, const yg::Delivery& delivery,
                 const std::string& digest);

/// Takes a new table of web pages and prints how many it has.
bool takeWebPages(const Configuration& configuration, const yg::Delivery& delivery);

}  // namespace terminal
