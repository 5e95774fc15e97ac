#!/usr/bin/env python3
"""Counts test cases of one build folder: count_tests.py BUILD_FOLDER prints "passed failed skipped".

CTest runs one entry per test executable or script. An executable of GoogleTest leaves a report of its
own cases, which count one by one; any other entry counts as one. An executable that ends without a
report (it crashed, or timed out) counts as one failure, however many cases it ran before.
"""
import pathlib
import sys
import xml.etree.ElementTree as ElementTree


def main() -> None:
    build = pathlib.Path(sys.argv[1])
    junit = build / "ctest.xml"
    if not junit.exists():
        print(0, 1, 0)
        return
    reports = {path.stem: path for path in build.rglob("gtest_reports/*.xml")}
    passed = failed = skipped = 0
    for entry in ElementTree.parse(junit).getroot().iter("testcase"):
        ok = entry.get("status") == "run" and entry.find("failure") is None
        report = reports.get(entry.get("name"))
        cases = list(ElementTree.parse(report).getroot().iter("testcase")) if report else []
        bad = sum(case.find("failure") is not None for case in cases)
        omitted = sum(case.get("status") == "notrun" or case.get("result") == "skipped" for case in cases)
        if cases and (ok or bad):
            failed += bad
            skipped += omitted
            passed += len(cases) - bad - omitted
        elif ok:
            passed += 1
        elif entry.get("status") in ("notrun", "disabled"):
            skipped += 1
        else:
            failed += 1
    print(passed, failed, skipped)


main()
