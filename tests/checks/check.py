#!/usr/bin/env python3
# SPDX-FileCopyrightText: The Lumenboard developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks the source tree. Usage: check.py [CHECK...]  A check yields one line per complaint."""

import os
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import tomllib
import xml.etree.ElementTree as ElementTree
from fnmatch import fnmatch
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
CHECKS = {}


def check(function):
    CHECKS[function.__name__.replace("_", "-")] = function
    return function


def files(*folders, suffixes=None):
    """Files below these folders. Does not ask git, since a release has no repository."""
    for folder in folders:
        for path, below, names in os.walk(ROOT / folder):
            below[:] = [each for each in below if each not in (".git", "build", ".cache", "__pycache__")
                        and not Path(path, each, "CMakeCache.txt").exists()]
            for name in names:
                if name != ".git" and not name.endswith(".user") and (not suffixes or Path(name).suffix in suffixes):
                    yield Path(path, name).relative_to(ROOT)


def run(*command, **options):
    """The output of a command; empty if the command succeeds."""
    if not shutil.which(command[0]):
        return f"{command[0]} is not installed; scripts/bootstrap installs it"
    result = subprocess.run(command, cwd=ROOT, text=True, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, check=False, **options)
    return "" if result.returncode == 0 else result.stdout.strip() or f"{command[0]} failed"


@check
def format():
    sources = sorted(files("src", "tools", "tests", "benchmarks", suffixes={".cpp", ".h"}))
    yield run("clang-format", "--dry-run", "-Werror", *map(str, sources))


@check
def qml_syntax():
    sources = sorted(files("qml", "tests", suffixes={".qml", ".js"}))
    yield run("qmllint", *map(str, sources), env={**os.environ, "QT_SELECT": "5"})


def messages(path):
    """Each message of a translation file with its state and its German text."""
    for context in ElementTree.parse(path).getroot().iter("context"):
        for message in context.iter("message"):
            translation = message.find("translation")
            key = (context.findtext("name"), message.findtext("source"), message.findtext("comment"))
            yield key, (translation.get("type", "finished"), translation.text or "")


@check
def translations():
    lines = (ROOT / "scripts/i18n").read_text().splitlines()
    command = shlex.split(next(line for line in lines if line.startswith("lupdate ")))
    committed = ROOT / command[-1]
    with tempfile.TemporaryDirectory() as folder:
        fresh = shutil.copy(committed, folder)
        yield run(*command[:-1], fresh, env={**os.environ, "QT_SELECT": "5"})
        wanted = dict(messages(fresh))
    present = dict(messages(committed))
    for key in wanted.keys() ^ present.keys():
        yield f"{key[:2]} is {'missing' if key in wanted else 'obsolete'}; run scripts/i18n"
    for key, (state, text) in present.items():
        if state != "finished" or not text:
            yield f"{key[:2]} is {state}: {text!r}"
        if sorted(re.findall("%[0-9n]", key[1])) != sorted(re.findall("%[0-9n]", text)):
            yield f"{key[:2]} has other place holders than {text!r}"


# A property or an assignment of text that a person sees, and its value.
VISIBLE = r"\b(?:Accessible\.(?:name|description)|text|title|heading|placeholderText|message|property string \w+)\"?\s*(?::|\+?=)\s*(\{[^}]*\}|[^=\n].*)"
STRING = r'"(?:\\.|[^"\\])*"'


def located(path, pattern, text):
    """Each match of the pattern in a file's text, with its place."""
    for found in re.finditer(pattern, text):
        line = 1 + text.count("\n", 0, found.start())
        yield f"{path}:{line}", found


@check
def qml_texts():
    sources = {path: re.sub(r"(?<!:)//.*", "", (ROOT / path).read_text())
               for path in sorted(files("qml", suffixes={".qml"}))}
    for path, text in sources.items():
        # These two show their text as it is; everything else derives from them.
        is_base = path.name in ("StyledText.qml", "PlainLabel.qml") and "textFormat: Text.PlainText" in text
        for place, _ in located(path, r"\b(?:Text|Label|TextArea|TextEdit) \{|\btextFormat\b", text):
            if not is_base:
                yield f"{place}: markup would be interpreted; use StyledText or PlainLabel"
        for place, found in located(path, r"\bconsole\.(?!warn\b)\w+", text):
            yield f"{place}: {found[0]}"
        for place, found in located(path, VISIBLE, text):
            # Ignore date formats, escapes and single letters: none of them is a word.
            rest = re.sub(r"(qsTr|toLocale\w+|formatDateTime)\([^)]*\)", "", found[1])
            if any(re.search(r"[^\W\d_]{2}", re.sub(r"\\u?\w*", "", each)) for each in re.findall(STRING, rest)):
                yield f"{place}: untranslated: {found[1]}"
            if re.search(r"\b(?:statusText|responseText|errorString)\b", rest):
                yield f"{place}: a text for the log: {found[1]}"


# Calls that show their arguments to a person; the first one of an exception or a failure is logged instead.
SHOWS = {r"\bnew Notification|\bshow(?:Fatal)?Error|\bbelow|[.>]set(?:Title|Message|Text)?": 0,
         r"\b(?:Attendance\w*)?Exception|\bFailure::temporary|\bFailure |\bsetFailure": 1}
# A text of the program, or of Qt, that no translation touches.
UNTRANSLATED = r"(?:QStringLiteral|QLatin1String|QString::from\w+)\(W\)|\bN\b|" \
    r"\b(?:errorString|errorText|networkError|qt_error_string|what|logText)\(|\bfailure(?:\.|->)text\b"


def skeleton(path):
    """C++ without comments, where W is a text with words, N one to be translated, T a translated one, O any other."""
    text = re.sub(rf"({STRING}|'.')|//.*|/\*(?s:.*?)\*/", lambda found: found[1] or "", (ROOT / path).read_text())
    text = re.sub(rf"{STRING}(?:\s*{STRING})*", lambda found: "W" if re.search(r"[^\W\d_]{2}", re.sub(
        r"\\.|qrc:.*", "", found[0])) else "O", text)
    text = re.sub(r"\bQT_TR\w*_NOOP\([WO, ]*\)", "N", re.sub(r"\s+", " ", text))
    return re.sub(r"\b(?:tr|translate)\([\w, ]*\)", "T", text)


def arguments(text, start):
    """The arguments of the call, or the content of the braces, that open before @start."""
    depth, found = 0, [""]
    for c in text[start:]:
        depth += (c in "({[") - (c in ")}]")
        if depth < 0:
            break
        found = [*found, ""] if c == "," and depth == 0 else [*found[:-1], found[-1] + c]
    return found


@check
def notices():
    """Follows what is shown back through variables, parameters and results, by their names."""
    units = {}
    for path in sorted(files("src", suffixes={".cpp", ".h"})):
        units[path.with_suffix("")] = units.get(path.with_suffix(""), "") + skeleton(path)

    def passed(pattern, first, last=None, among=None):
        return [(unit, value) for unit, text in (among or units).items() for call in re.finditer(rf"(?:{pattern})[({{]", text)
                for value in arguments(text, call.end())[first:last]]

    qml = "".join((ROOT / path).read_text() for path in files("qml", suffixes={".qml"}))
    shown = re.findall(r"\.(\w+)", " ".join(re.findall(VISIBLE, qml)))
    waiting = [(unit, name) for unit, text in units.items() for name in re.findall(r"\(QString (\w+) READ", text) if name in shown]
    waiting += [each for pattern, first in SHOWS.items() for each in passed(pattern, first)]
    seen = set()
    while waiting:
        unit, value = waiting.pop()
        if re.search(UNTRANSLATED, value):
            yield f"{unit}: a person would read an untranslated text: {value.strip()}"
        for name in set(re.findall(r"\b[a-z]\w+\b", value)) - {each for where, each in seen if where == unit}:
            seen.add((unit, name))
            own = {unit: units[unit]}
            if re.search(rf"\b(?:QString|constexpr auto) &?{name}\b", own[unit]):
                waiting += [(unit, each) for each in re.findall(rf"\b{name} \+?= ([^;{{}}]*)", own[unit])]
            for function, before in re.findall(rf"\b(\w+)\(([^(){{}};]*)\bQString &?{name}\b[^;{{}}]*\{{", own[unit]):
                at = before.count(",")
                waiting += passed(rf"[.>:]{function}", at, at + 1) + passed(rf"\b{function}", at, at + 1, own)
            for each, text in units.items():
                owner = r"(?:\w+::)?" if each == unit else r"\w+::"
                for found in re.finditer(rf"\bQString {owner}{name}\([^;{{}}]*\{{", text):
                    results = re.findall(r"\breturn ([^;]*);", ",".join(arguments(text, found.end())))
                    waiting += [(each, result) for result in results]


@check
def resources():
    listed = {f"qml/{each.text}" for each in ElementTree.parse(ROOT / "qml/qml.qrc").iter("file")}
    present = {str(each) for each in files("qml")} - {"qml/qml.qrc", "qml/CMakeLists.txt"}
    yield from (f"{each} is not in qml.qrc" for each in present - listed)  # rcc reports the reverse
    for each in sorted(present):
        folder, name = os.path.split(each)
        qmldir = ROOT / folder / "qmldir"
        if each.endswith(".qml") and not re.search(rf"\b{name}$", qmldir.read_text(), re.M):
            yield f"{each} is not in its qmldir"


@check
def licences():
    tags = (b"SPDX-FileCopyrightText: ", b"SPDX-License-Identifier: ")
    annotations = tomllib.loads((ROOT / "REUSE.toml").read_text())["annotations"]
    patterns = [path for each in annotations for path in each["path"]]
    for path in files("."):
        if path.name == "LICENSE" or path.parts[0] == "LICENSES":
            continue
        head = (ROOT / path).read_bytes()[:1000]
        if not all(tag in head for tag in tags) and not any(fnmatch(str(path), each) for each in patterns):
            yield f"{path} names no licence and is not in REUSE.toml"
    used = {each["SPDX-License-Identifier"] for each in annotations}
    yield from (f"LICENSES has no {each}" for each in used if not (ROOT / f"LICENSES/{each}.txt").exists())


@check
def file_length():
    for path in files("src", "qml", "tools", "tests"):
        content = (ROOT / path).read_bytes()
        if b"\0" not in content and content.count(b"\n") > 400:
            yield f"{path} has {content.count(bytes([10]))} lines, more than 400"


# The layers of src, lowest first. A file includes files of lower layers and of its own folder only.
LAYERS = [{"base", "supervision"}, {"config"}, {"net"}, {"remoteconfig", "schedule", "notifications"}, {"api", "spool"},
          {"attendance", "presence"}, {"reader", "status"}, {"app"}]
# These include each other: an event knows its location, a location its events.
MUTUAL = {"schedule/event", "schedule/eventaudience", "schedule/eventdata", "schedule/eventlocation",
          "schedule/scheduleindex"}


def includes():
    """Pairs of units, each a header with its source, of which the first includes the second."""
    for path in sorted(files("src", suffixes={".cpp", ".h"})):
        unit = path.relative_to("src").with_suffix("").as_posix()
        for target in re.findall(r'#include "(\w+/\w+)\.h"', (ROOT / path).read_text(encoding="utf-8")):
            if target != unit:
                yield unit, target


@check
def arrows():
    """Prints which folder includes which. Complains of an include of a higher layer and of cycles."""
    layer = {folder: number for number, folders in enumerate(LAYERS) for folder in folders}
    drawn = {}
    uses = {}
    for unit, target in includes():
        source, destination = unit.split("/")[0], target.split("/")[0]
        if not {unit, target} <= MUTUAL:
            uses.setdefault(unit, set()).add(target)
        if source == destination:
            continue
        drawn.setdefault(source, set()).add(destination)
        if source not in layer or destination not in layer:
            yield f"{source} -> {destination}: a folder without a layer, see LAYERS"
        elif layer[source] <= layer[destination]:
            yield f"{unit} includes {target}, which is not in a lower layer"
    for source in sorted(drawn, key=lambda folder: layer.get(folder, 0)):
        print(f"{source} -> {', '.join(sorted(drawn[source]))}")

    def reach(unit):
        seen, waiting = set(), [unit]
        while waiting:
            for target in uses.get(waiting.pop(), ()):
                if target not in seen:
                    seen.add(target)
                    waiting.append(target)
        return seen

    for unit in sorted(uses):
        if unit in reach(unit):
            yield f"{unit} includes itself through others"


@check
def requests():
    for path in sorted(files("src", suffixes={".cpp", ".h"})):
        text = (ROOT / path).read_text(encoding="utf-8")
        for place, found in located(path, r"\w*[mM]anager\)?(?:\.|->)(?:get|post|put|head|sendCustomRequest)\(", text):
            if path.as_posix() != "src/net/http.cpp":
                yield f"{place}: {found[0]}...): a request goes through net/http.h, with its limits"


@check
def faults():
    """Each test that the table of faults names must exist."""
    tests = "".join((ROOT / path).read_text(encoding="utf-8")
                    for path in files("tests", suffixes={".cpp", ".qml", ".py"}))
    for name in re.findall(r"`(\w+)`", (ROOT / "docs/faults.md").read_text(encoding="utf-8")):
        if not re.search(rf"(void|function|def) {name}\(", tests):
            yield f"docs/faults.md: there is no test {name}"


if __name__ == "__main__":
    complaints = [line for name in sys.argv[1:] or CHECKS for line in CHECKS[name]() if line]
    print(*complaints, sep="\n")
    sys.exit(1 if complaints else 0)
