#!/usr/bin/env python3
"""Checks the tree's own rules that no compiler knows: check_tree.py [ROOT]

- includes point one way: entry -> jobs -> run, results, errors -> platform, host; standalone sees host and
  platform; analysis sees platform; neither of the two sees the module;
- operating-system conditionals stand in platform/ and in the module's load hook only;
- every header has `#pragma once`.
Prints one line per finding; the status is 1 if there is any.
"""
import pathlib
import re
import sys

CODE = {".h", ".cpp"}
ALLOWED = {
    "entry": {"entry", "jobs", "run", "results", "errors", "platform", "host"},
    "jobs": {"jobs", "run", "results", "errors", "platform", "host"},
    "run": {"run", "platform", "host"},
    "results": {"results", "run", "platform", "host"},
    "errors": {"errors", "run", "platform", "host"},
    "host": {"host"},
    "platform": {"platform"},
    "standalone": {"standalone", "host", "platform"},
    "analysis": {"analysis", "platform"},
}
MODULE = ("entry", "jobs", "run", "results", "errors")
# What every room of the module speaks, and the manager whose members live in all of them.
VOCABULARY = {
    "entry/record/geno_job_settings.h",
    "entry/record/genomic_parser_exception.h",
    "entry/record/texts.h",
    "jobs/geno_stat_algo_manager.h",
}
STANDALONE = {
    "language": {"language"},
    "syntax": {"syntax"},
    "output": {"output", "syntax"},
    "statistics": {"statistics"},
    "data": {"data", "syntax"},
}
# The rooms of the standalone host may ask for the running session.
SESSION_DOORS = {"standalone/services/current.h", "standalone/session/command_context.h"}


def findings(root: pathlib.Path):
    for path in sorted(root.rglob("*")):
        name = path.relative_to(root).as_posix()
        room = name.split("/")[0]
        if path.suffix not in CODE or room not in ALLOWED:
            continue
        text = path.read_text(encoding="utf-8")
        if path.suffix == ".h" and "#pragma once" not in text:
            yield f"{name}:1: no #pragma once"
        for number, line in enumerate(text.splitlines(), 1):
            if room != "platform" and name != "entry/load_hook.cpp" and re.match(r"\s*#\s*(if|ifdef|ifndef|elif)\b", line):
                yield f"{name}:{number}: conditionals belong to platform/"
            match = re.match(r'\s*#\s*include\s+"([^"]+)"', line)
            if not match:
                continue
            target = match.group(1)
            target_room = target.split("/")[0]
            if room in MODULE and target in VOCABULARY:
                continue
            if target_room not in ALLOWED[room]:
                yield f"{name}:{number}: {room}/ does not see {target}"
            elif room == target_room == "standalone" and target not in SESSION_DOORS:
                inner, wanted = name.split("/")[1], target.split("/")[1]
                if wanted != "language" and wanted not in STANDALONE.get(inner, {wanted}):
                    yield f"{name}:{number}: standalone/{inner}/ does not see {target}"


def main() -> int:
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
    found = list(findings(root))
    print("\n".join(found) if found else "tree: no finding")
    return 1 if found else 0


sys.exit(main())
