#!/usr/bin/env python3
"""Runs a checker on each file that has changed since it last passed: checked.py MEMORY [--with FILE...] -- COMMAND...

Reads the names of the files, relative to the project's folder, from standard input, and appends each to COMMAND. A file
counts as changed when it, a project's header that it includes (however far away), a file named by --with or the command
itself has other contents. MEMORY is a folder; it keeps one empty file for each state that passed. Prints what COMMAND
said of those that failed; the status is 1 if there are any.
"""
import argparse
import concurrent.futures
import functools
import hashlib
import os
import pathlib
import re
import subprocess
import sys

INCLUDE = re.compile(rb'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


@functools.cache
def read(name: str) -> bytes:
    return pathlib.Path(name).read_bytes()


@functools.cache
def included(name: str) -> frozenset:
    found = (match.decode() for match in INCLUDE.findall(read(name)))
    return frozenset(header for header in found if os.path.exists(header))


def closure(name: str) -> list:
    seen, waiting = {name}, [name]
    while waiting:
        new = included(waiting.pop()) - seen
        seen |= new
        waiting += new
    return sorted(seen)


def state(name: str, common: bytes) -> str:
    digest = hashlib.sha256(common + name.encode())
    for part in closure(name):
        digest.update(part.encode() + b"\0" + read(part))
    return digest.hexdigest()


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("memory", type=pathlib.Path)
    parser.add_argument("--with", dest="others", nargs="+", default=[])
    parser.add_argument("command", nargs="+", metavar="COMMAND")
    arguments = parser.parse_args()
    command = arguments.command
    arguments.memory.mkdir(parents=True, exist_ok=True)
    version = subprocess.run([command[0], "--version"], capture_output=True, check=True).stdout
    common = version + "\0".join(command).encode() + b"".join(read(name) for name in arguments.others)

    def check(name: str) -> str:
        mark = arguments.memory / state(name, common)
        if mark.exists():
            return ""
        ran = subprocess.run([*command, name], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if ran.returncode == 0:
            mark.touch()
            return ""
        return ran.stdout or f"{name}: {command[0]} failed"

    names = sys.stdin.read().split()
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        findings = [text for text in pool.map(check, names) if text]
    print(*findings, sep="\n", end="\n" if findings else "")
    return 1 if findings else 0


sys.exit(main())
