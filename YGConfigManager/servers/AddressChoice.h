// SPDX-License-Identifier: MIT
//
// The uniform choice among the addresses of a server entry, with the items read once however many
// choices follow. Internal; the texts must outlive what is made from them.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace yg {

/// The first parts of an address item between ":", and how many parts there are.
struct AddressParts {
    std::array<std::string_view, 3> part;
    std::size_t count = 0;
};

inline AddressParts splitAddressItem(std::string_view item) {
    AddressParts parts;
    for (bool more = true; more; ++parts.count) {
        const std::size_t colon = item.find(':');
        more = colon != std::string_view::npos;
        if (parts.count < parts.part.size())
            parts.part[parts.count] = item.substr(0, colon);
        if (more)
            item.remove_prefix(colon + 1);
    }
    return parts;
}

/// Calls `visit` with each piece of a text between ";", empty ones included.
template <class Visit>
void forEachItem(std::string_view text, Visit&& visit) {
    for (std::size_t end = text.find(';'); end != std::string_view::npos; end = text.find(';')) {
        visit(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    visit(text);
}

/// An address that can be chosen; neither text holds a ":".
struct Address {
    std::string_view host;
    std::string_view port;
};

class AddressChoice {
public:
    /// Takes host:port and weight:host:port; whatever has fewer parts is passed over.
    void add(std::string_view item);

    bool empty() const { return addresses_.empty(); }

    /// One of the addresses, each with the same chance. A single one needs no random number. There
    /// must be one.
    const Address& draw() const;

private:
    std::vector<Address> addresses_;
};

}  // namespace yg
