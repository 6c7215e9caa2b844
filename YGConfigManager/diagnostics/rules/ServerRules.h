// SPDX-License-Identifier: MIT
//
// Rules of server files. Internal: a part of RuleTable.h.
#pragma once

#include "YGConfigManager/diagnostics/Rule.h"

namespace yg {

inline constexpr Rule serverRules[] = {
    // Documents and groups.
    {"unreadable-delivery", Handling::unresolved, Severity::error,
     "What was delivered is empty, is not well-formed XML or could not be read again once it is "
     "saved, so nothing changes.",
     "The login server sent something that cannot be used. The servers that were known before "
     "stay."},
    {"replaced-md5", Handling::replaced, Severity::warning,
     "The digest that came with the delivery takes the place of the document's own.",
     "The digest is what the next login compares; the one that was sent beside the document "
     "counts."},
    {"server-root-name", Handling::unresolved, Severity::error,
     "The root of a server configuration is named \"application\"; no group of this file is read.",
     "No server of the file is used. Name the root \"application\".", "storage/skeleton_v1.xml",
     R"(<servers>
    <server type="1"/>
</servers>)",
     R"(<application>
    <server type="1"/>
</application>)"},
    {"server-group-without-type", Handling::dropped, Severity::error,
     "A group needs a type to be found by.",
     "Groups are found by their type. Give it one of 1, 2, 3, 4, 5, 7 and 8.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server name="Quotes"/>
</application>)",
     R"(<application>
    <server type="1" name="Quotes"/>
</application>)"},
    {"server-type-never-loaded", Handling::dropped, Severity::error,
     "Groups of the types 1, 2, 3, 4, 5, 7 and 8 are loaded, no other.",
     "The terminal asks for the types 1, 2, 3, 4, 5, 7 and 8 only. Check the type.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="6"/>
</application>)",
     R"(<application>
    <server type="7"/>
</application>)"},
    {"second-server-group", Handling::dropped, Severity::error,
     "Only the first group of a type is read.", "Put all entries into the first group of the type.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="a"/>
    <server type="1" name="b"/>
</application>)",
     R"(<application>
    <server type="1" name="a"/>
    <server type="2" name="b"/>
</application>)"},
    // Entries.
    {"incomplete-server-entry", Handling::dropped, Severity::error,
     "An entry needs the attributes key, name and addrs; the one named here is missing.",
     "Add the missing attribute: key is a number, name lists the servers, addrs their addresses.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"server-entry-without-address", Handling::dropped, Severity::error,
     "None of the entry's addresses is host:port or weight:host:port, so it gives no server.",
     "Write at least one address as host:port.", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"server-without-name", Handling::kept, Severity::warning,
     "Between two \";\", or beside one at an end, stands an empty name, which makes a server.",
     "Delete the extra \";\".", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East;" addrs="192.0.2.1:9211"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"too-many-servers", Handling::dropped, Severity::error,
     "Beside the first of each entry, the names of a group give at most 250,000 servers and 16 MiB "
     "of names and hosts; these names give none.",
     "Each name of an entry makes a server. The limit keeps a small file from taking all memory."},
    // Addresses.
    {"empty-server-address", Handling::dropped, Severity::error,
     "Between two \";\", or beside one at an end, stands an empty address.",
     "Delete the extra \";\".", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211;"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"address-without-port", Handling::dropped, Severity::error,
     "An address is host:port or weight:host:port; without a port it is never chosen.",
     "It is never chosen. Add the port.", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211;192.0.2.2"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211;192.0.2.2:9211"/>
    </server>
</application>)"},
    {"address-with-too-many-parts", Handling::defaulted, Severity::error,
     "Of more than three parts the second is the host and the third the port; the others are "
     "ignored.",
     "Write host:port.", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="1:192.0.2.1:9211:x"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"ipv6-address", Handling::defaulted, Severity::error,
     "An address is cut at every \":\", so that an IPv6 address cannot be written; its parts give "
     "a wrong host and port.",
     "Write a host name that has the IPv6 address.", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="[2001:db8::1]:9211"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="east.example.com:9211"/>
    </server>
</application>)"},
    {"address-without-host", Handling::defaulted, Severity::error,
     "The host before the port is empty.", "Write the host before the port.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs=":9211"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"odd-server-port", Handling::defaulted, Severity::error,
     "A port is a plain number from 1 to 65535; of this one the number that it begins with is "
     "stored, 0 without one.",
     "Write digits only.", "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211x"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"address-weight", Handling::dropped, Severity::info,
     "Weights have no effect: each address of an entry has the same chance.",
     "Delete the number before the host. To make an address more likely, write it twice.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="3:192.0.2.1:9211;192.0.2.2:9211"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211;192.0.2.2:9211"/>
    </server>
</application>)"},
    // Found by inspections.
    {"odd-address-weight", Handling::defaulted, Severity::error,
     "Of three parts the first is a weight, which has no effect; this one is not a number, so that "
     "the host is probably lost.",
     "An address is host:port. Addresses are separated by \";\" alone: with a comma or a blank "
     "between them two addresses are read as one.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211,192.0.2.2:9211"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211;192.0.2.2:9211"/>
    </server>
</application>)"},
    {"odd-server-host", Handling::kept, Severity::error,
     "No host has blanks, commas or full-width characters; nothing is trimmed, so that they are "
     "part of it.",
     "Separate addresses by \";\" without blanks, and write them in plain ASCII characters.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211; 192.0.2.2:9211"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211;192.0.2.2:9211"/>
    </server>
</application>)"},
    {"server-type-in-some-files", Handling::kept, Severity::warning,
     "Not all shipped server files have this type.",
     "The right level and the grey release select one of the four files. Users of a file without "
     "the type have no such server. Add the group to the files that are named, or delete it.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes"/>
    <server type="2" name="Options"/>
</application>)",
     R"(<application>
    <server type="1" name="Quotes"/>
</application>)",
     "storage/skeleton_l2_v1.xml",
     R"(<application>
    <server type="1" name="Quotes"/>
</application>)"},
    {"server-in-some-files", Handling::kept, Severity::info,
     "Not all shipped server files have a server of this name.",
     "It may be meant, when a right level or the grey release has servers of its own. Otherwise "
     "the name is spelt in another way there, or missing.",
     "storage/skeleton_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East;West" addrs="192.0.2.1:9211"/>
    </server>
</application>)",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)",
     "storage/skeleton_l2_v1.xml",
     R"(<application>
    <server type="1" name="Quotes">
        <entry key="1" name="East" addrs="192.0.2.1:9211"/>
    </server>
</application>)"},
    {"digest-in-shipped-file", Handling::kept, Severity::warning,
     "A digest belongs to a delivery and is written when that is saved; a shipped file has none.",
     "The application compares the digest with that of the next delivery, and may leave out a "
     "newer one. The file was probably copied from a user's folder. Delete the attribute.",
     "storage/skeleton_v1.xml", R"(<application md5="900150983cd24fb0d6963f7d28e17f72"/>)",
     R"(<application/>)"},
};

}  // namespace yg
