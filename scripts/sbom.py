# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Prints the bill of materials (CycloneDX 1.5, JSON) of the Debian packages in the arguments.

Components are the packages, all that apt would install with them on a bare machine, and the fonts that we carry.
Debug symbols are left out.
"""

import datetime
import hashlib
import json
import os
import re
import subprocess
import sys
import uuid
from pathlib import Path
from urllib.parse import quote

FONTS = [
    ("Maven Pro", "OFL-1.1", "MavenPro-*.ttf"),
    ("Font Awesome 5 Free", "OFL-1.1", "fa-*.ttf"),
]


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def field(package, name):
    """A field of a package file, empty if it has none."""
    return output("dpkg-deb", "-f", package, name)


def sha256(path):
    return {"alg": "SHA-256", "content": hashlib.sha256(Path(path).read_bytes()).hexdigest()}


def licensed(licence):
    return [{"license": {"id": licence}}]


def debian_package(kind, name, version, arch, **more):
    reference = f"pkg:deb/debian/{name}@{quote(version, safe='~')}?arch={arch}"
    return {"type": kind, "bom-ref": reference, "name": name, "version": version, "purl": reference, **more}


def own_package(path):
    about = (field(path, each) for each in ("Package", "Version", "Architecture"))
    return debian_package("application", *about, licenses=licensed("GPL-3.0-or-later"), hashes=[sha256(path)])


def needed_packages(paths):
    """By name, what apt takes from Debian if nothing is installed yet."""
    arch = next((arch for path in paths if (arch := field(path, "Architecture")) != "all"), "amd64")
    plan = output(
        "apt-get", "install", "--simulate", "--no-install-recommends",
        "-o", "Dir::State::status=/dev/null", "-o", f"APT::Architecture={arch}",
        *(str(Path(path).resolve()) for path in paths))
    found = re.findall(r"^Inst (\S+) \((\S+) (?!local-deb).*\[(\w+)\]\)", plan, re.MULTILINE)
    return {name: debian_package("library", name, version, arch) for name, version, arch in found}


def dependencies(path):
    """The names in Depends, all alternatives."""
    return sorted(set(re.findall(r"[a-z0-9][a-z0-9+.-]+(?=[ ,|]|$)", re.sub(r"\([^)]*\)", "", field(path, "Depends")))))


def font(name, licence, pattern):
    files = sorted(Path("fonts").glob(pattern))
    return {
        "type": "data",
        "bom-ref": f"font:{quote(name)}",
        "name": name,
        "licenses": licensed(licence),
        "components": [{"type": "file", "name": file.name, "hashes": [sha256(file)]} for file in files],
    }


def main(paths):
    own = [own_package(path) for path in paths]
    needed = needed_packages(paths)
    known = {**needed, **{each["name"]: each for each in own}}
    fonts = [font(*each) for each in FONTS]
    components = sorted([*own, *needed.values(), *fonts], key=lambda each: each["bom-ref"])
    built = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
    document = {
        "bomFormat": "CycloneDX",
        "specVersion": "1.5",
        "serialNumber": uuid.uuid5(uuid.NAMESPACE_URL, json.dumps(components)).urn,
        "version": 1,
        "metadata": {
            "timestamp": built.isoformat(),
            "component": {"type": "application", "bom-ref": "lumenboard", "name": "lumenboard",
                          "version": own[0]["version"], "licenses": licensed("GPL-3.0-or-later")},
        },
        "components": components,
        "dependencies": [
            {"ref": "lumenboard", "dependsOn": [each["bom-ref"] for each in (*own, *fonts)]},
            *({"ref": each["bom-ref"],
               "dependsOn": [known[name]["bom-ref"] for name in dependencies(path) if name in known]}
              for each, path in zip(own, paths)),
        ],
    }
    json.dump(document, sys.stdout, indent=2)
    print()


main([path for path in sys.argv[1:] if "-dbgsym_" not in path])
