#!/usr/bin/env python3
"""Checks the tree's own rules that no compiler knows: check_tree.py [ROOT]

- includes point down the table below, and nowhere else; a room is the longest of its paths that fits;
- operating-system conditionals stand in platform/ and in the module's load hook only;
- every header has `#pragma once`.
Prints one line per finding; the status is 1 if there is any.
"""
import argparse
import pathlib
import re
import sys

CODE = {".h", ".cpp", ".inl"}
# Each floor sees those below it that its line names; a room sees itself.
ROOMS = {
    # the module
    "entry": "jobs run results errors entry/record host platform",
    "jobs": "run results errors entry/record host platform",
    "run": "entry/record host platform",
    "results": "entry/record host platform",
    "errors": "entry/record common/json host platform",
    "entry/record": "common/json host platform",
    "host": "",
    # the operating system
    "platform": "",
    "platform/posix": "platform",
    "platform/windows": "platform",
    # the floor of both programs
    "common/cli": "common/files common/text platform",
    "common/files": "common/text platform",
    "common/quality": "common/text",
    "common/text": "platform",
    "common/json": "",
    # the standalone host; its floors see all that is below them
    "standalone/console": "standalone/procedures standalone/session standalone/services standalone/data"
    " standalone/output standalone/syntax standalone/statistics standalone/language common platform host",
    "standalone/procedures": "standalone/session standalone/services standalone/data standalone/output"
    " standalone/syntax standalone/statistics standalone/language common platform host",
    # A session is a client of the module: it calls the exported class.
    "standalone/session": "standalone/services standalone/data standalone/output standalone/syntax"
    " standalone/language common platform host jobs",
    "standalone/services": "standalone/data standalone/output standalone/syntax standalone/language common platform"
    " host",
    "standalone/data": "standalone/syntax standalone/language common platform",
    "standalone/output": "standalone/syntax standalone/language common platform",
    "standalone/syntax": "standalone/language common platform",
    "standalone/statistics": "common",
    "standalone/language": "common platform",
    # the analyser
    "analysis": "analysis/request analysis/report analysis/metrics analysis/simd analysis/fastq common platform",
    "analysis/report": "analysis/request analysis/metrics analysis/simd analysis/fastq common platform",
    "analysis/metrics": "analysis/request analysis/simd analysis/fastq common platform",
    "analysis/simd": "analysis/fastq common platform",
    "analysis/fastq": "common platform",
    "analysis/request": "common platform",
}
TOPS = {room.split("/")[0] for room in ROOMS}
LOAD_HOOK = "entry/load_hook.cpp"


def room_of(name: str) -> str:
    parts = name.split("/")[:-1]
    while parts and "/".join(parts) not in ROOMS:
        parts.pop()
    return "/".join(parts)


def sees(room: str, other: str) -> bool:
    below = ROOMS[room].split()
    return other == room or any(other == name or other.startswith(name + "/") and name == "common" for name in below)


def findings(root: pathlib.Path):
    for path in sorted(root.rglob("*")):
        name = path.relative_to(root).as_posix()
        if path.suffix not in CODE or name.split("/")[0] not in TOPS or "node_modules" in name:
            continue
        room = room_of(name)
        if not room:
            yield f"{name}:1: stands in no room of the table"
            continue
        text = path.read_text(encoding="utf-8")
        if path.suffix == ".h" and "#pragma once" not in text:
            yield f"{name}:1: no #pragma once"
        for number, line in enumerate(text.splitlines(), 1):
            conditional = re.match(r"\s*#\s*(if|ifdef|ifndef|elif)\b", line)
            if conditional and not room.startswith("platform") and name != LOAD_HOOK:
                yield f"{name}:{number}: conditionals belong to platform/"
            match = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
            if match and not sees(room, room_of(match.group(1))):
                yield f"{name}:{number}: {room}/ does not see {match.group(1)}"


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("root", nargs="?", type=pathlib.Path, default=".", metavar="ROOT")
    root = pathlib.Path(parser.parse_args().root)
    found = list(findings(root))
    print("\n".join(found) if found else "tree: no finding")
    return 1 if found else 0


sys.exit(main())
