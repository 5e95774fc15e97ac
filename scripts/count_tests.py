#!/usr/bin/env python3
"""Counts what ctest ran: count_tests.py CTEST_XML prints "passed failed skipped" and, on standard error, what the
failed cases said. A file that is missing counts as one failure.
"""
import argparse
import pathlib
import sys
import xml.etree.ElementTree as ElementTree

LINES_OF_A_CASE = 60


def verdict(case: ElementTree.Element) -> str:
    if case.get("status") == "run":
        return "failed" if case.find("failure") is not None else "passed"
    reason = case.find("skipped")
    chosen = reason is not None and reason.get("message", "").startswith("SKIP_")
    # A program that is missing is not run either.
    return "skipped" if chosen or case.get("status") == "disabled" else "failed"


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("junit", type=pathlib.Path, metavar="CTEST_XML")
    junit = parser.parse_args().junit
    counts = {"passed": 0, "failed": 0, "skipped": 0}
    if not junit.exists():
        counts["failed"] = 1
    else:
        for case in ElementTree.parse(junit).getroot().iter("testcase"):
            counts[verdict(case)] += 1
            if verdict(case) == "failed":
                output = (case.findtext("system-out") or "").splitlines()
                print(f"--- failed: {case.get('name')}", *output[-LINES_OF_A_CASE:], sep="\n", file=sys.stderr)
    print(*counts.values())


main()
