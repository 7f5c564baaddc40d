# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Prints the bill of materials (CycloneDX 1.4, JSON) of the Debian packages in the arguments.

Components are the packages, what they depend on in the versions of this machine, and the fonts that we carry.
"""

import hashlib
import json
import re
import subprocess
import sys
from pathlib import Path

FONTS = [
    ("Maven Pro", "OFL-1.1", "MavenPro-*.ttf"),
    ("Font Awesome 5 Free", "OFL-1.1", "fa-*.ttf"),
]


def field(package, name):
    """A field of a package file, empty if it has none."""
    return subprocess.run(["dpkg-deb", "-f", package, name], check=True, capture_output=True, text=True).stdout.strip()


def purl(name, version, arch):
    return f"pkg:deb/debian/{name}@{version}?arch={arch}"


def sha256(path):
    return {"alg": "SHA-256", "content": hashlib.sha256(Path(path).read_bytes()).hexdigest()}


def installed(name):
    """Version and architecture of an installed package, or None: an alternative that was not taken."""
    result = subprocess.run(
        ["dpkg-query", "-W", "-f=${Version} ${Architecture} ${db:Status-Status}", name], capture_output=True, text=True
    )
    parts = result.stdout.split()
    return parts[:2] if result.returncode == 0 and parts[2:] == ["installed"] else None


def package_component(path):
    name, version, arch = (field(path, each) for each in ("Package", "Version", "Architecture"))
    return {
        "type": "application",
        "bom-ref": purl(name, version, arch),
        "name": name,
        "version": version,
        "purl": purl(name, version, arch),
        "licenses": [{"license": {"id": "GPL-3.0-or-later"}}],
        "hashes": [sha256(path)],
    }


def dependencies(path):
    """The names in Depends, all alternatives."""
    return sorted(set(re.findall(r"[a-z0-9][a-z0-9+.-]+(?=[ ,|]|$)", re.sub(r"\([^)]*\)", "", field(path, "Depends")))))


def library_component(name):
    found = installed(name)
    if not found:
        return None
    version, arch = found
    reference = purl(name, version, arch)
    return {"type": "library", "bom-ref": reference, "name": name, "version": version, "purl": reference}


def font_component(name, licence, pattern):
    files = sorted(Path("fonts").glob(pattern))
    return {
        "type": "data",
        "bom-ref": f"font:{name}",
        "name": name,
        "licenses": [{"license": {"id": licence}}],
        "components": [{"type": "file", "name": file.name, "hashes": [sha256(file)]} for file in files],
    }


def main(paths):
    components = {}
    graph = []
    for path in paths:
        own = package_component(path)
        components[own["bom-ref"]] = own
        needs = [component for name in dependencies(path) if (component := library_component(name))]
        components.update({each["bom-ref"]: each for each in needs})
        graph.append({"ref": own["bom-ref"], "dependsOn": [each["bom-ref"] for each in needs]})
    for font in FONTS:
        component = font_component(*font)
        components[component["bom-ref"]] = component
    json.dump(
        {
            "bomFormat": "CycloneDX",
            "specVersion": "1.4",
            "version": 1,
            "components": sorted(components.values(), key=lambda each: each["bom-ref"]),
            "dependencies": graph,
        },
        sys.stdout,
        indent=2,
    )
    print()


main(sys.argv[1:])
