#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks what scripts/sbom says of a package: the fields that SPDX 2.3 asks for, and that it is true.

    check_sbom.py DOCUMENT PREFIX
"""
import hashlib
import json
import re
import sys
from pathlib import Path

document = json.loads(Path(sys.argv[1]).read_text())
prefix = Path(sys.argv[2])
faults = []


def want(condition, what):
    if not condition:
        faults.append(what)


def want_fields(thing, name, fields):
    for field in fields:
        want(thing.get(field) not in (None, "", []), f"{name} has no {field}")


want_fields(document, "the document", ["spdxVersion", "dataLicense", "SPDXID", "name", "documentNamespace",
                                       "creationInfo", "packages", "files", "relationships"])
want(document["spdxVersion"] == "SPDX-2.3", "the version is not 2.3")
want(document["dataLicense"] == "CC0-1.0", "the licence of the document is not CC0-1.0")
want(document["SPDXID"] == "SPDXRef-DOCUMENT", "the document has another identifier")
want(re.fullmatch(r"[a-z]+://[^#\s]+", document["documentNamespace"]), "the name space is no URI")
want_fields(document["creationInfo"], "creationInfo", ["created", "creators"])
want(re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", document["creationInfo"]["created"]), "created is no time")
for creator in document["creationInfo"]["creators"]:
    want(re.match(r"(Tool|Person|Organization): \S", creator), f"a creator of no kind: {creator}")

identifiers = [document["SPDXID"]] + [thing["SPDXID"] for thing in document["packages"] + document["files"]]
want(len(set(identifiers)) == len(identifiers), "an identifier occurs twice")
for identifier in identifiers:
    want(re.fullmatch(r"SPDXRef-[A-Za-z0-9.-]+", identifier), f"no identifier: {identifier}")
for row in document["relationships"]:
    for end in ("spdxElementId", "relatedSpdxElement"):
        want(row[end] in identifiers, f"a relationship with something unknown: {row[end]}")
    want(row["relationshipType"] in ("DESCRIBES", "CONTAINS", "DYNAMIC_LINK", "STATIC_LINK"),
         f"a relationship of no kind: {row['relationshipType']}")

for package in document["packages"]:
    want_fields(package, package["name"], ["SPDXID", "name", "versionInfo", "downloadLocation", "supplier"])
    want(package.get("filesAnalyzed") in (True, False), f"{package['name']} does not say filesAnalyzed")

sums = []
for file in document["files"]:
    path = prefix / file["fileName"]
    for checksum in file["checksums"]:
        found = hashlib.new(checksum["algorithm"], path.read_bytes()).hexdigest()
        want(found == checksum["checksumValue"], f"{path} has another {checksum['algorithm']}")
        if checksum["algorithm"] == "SHA1":
            sums.append(found)
installed = sum(path.is_file() and not path.is_symlink() for path in prefix.rglob("*"))
want(installed == len(document["files"]) == len(sums), "not every file has a SHA1")

own = [package for package in document["packages"] if package["filesAnalyzed"]]
want([package["name"] for package in own] == ["YGConfigManager"], "the package itself is not described alone")
code = hashlib.sha1("".join(sorted(sums)).encode()).hexdigest()
want(own[0]["packageVerificationCode"]["packageVerificationCodeValue"] == code, "another verification code")
names = {package["name"] for package in document["packages"]}
for wanted in ("libxml2", "libcurl4", "libstdc++6", "libc6", "nlohmann-json3-dev"):
    want(any(name.startswith(wanted) for name in names), f"{wanted} is not listed")

for fault in faults:
    print(fault)
sys.exit(1 if faults else 0)
