#!/usr/bin/env python3
"""Measures how fast `genostat run` imports and describes text files, beside R and wc -l, on one processor.

  import_speed.py --programs FOLDER --data FOLDER [--rounds N] [--quick]

All programs of one input run in turn, so that all see the same machine; medians over the rounds are compared. Times
are of whole processes with warm file caches, output thrown away. Speeds are per second of the processor, which nothing
here has to wait for: then it matters less what else the machine does. Prints Markdown.
"""
import argparse
import os
import pathlib
import random
import shutil
import statistics
import sys
import time
from dataclasses import dataclass

from measured import MEGABYTE, Measured

GOAL = 300  # MB/s of text, imported and described
# Rows are made once and repeated in other orders: making each would take minutes, and no reader gains by it.
BLOCK = 20_000

MEASURES = ("%.2f", 0, 100), ("%.1f", 0, 1000), ("%.0f", 0, 100), ("%.0f", 1000, 10_000_000), ("%.6f", -3, 3)
VERDICTS = ("pass", "pass", "pass", "warn", "fail", "")


def measures(source, count):
    """Numbers as measuring gives them: 5.4 characters on average."""
    return [MEASURES[i % 5][0] % source.uniform(*MEASURES[i % 5][1:]) for i in range(count)]


def full_precision(source, count):
    """Numbers as programs write them that lose nothing: 18 characters."""
    return [repr(source.gauss(0, 1)) for _ in range(count)]


def mixed(source, count):
    """Like the results of a quality-control job: a name, verdicts, numbers."""
    verdicts = [source.choice(VERDICTS) for _ in range(11)]
    return [f'"sample, {source.randrange(10**6)}"', *verdicts, *measures(source, count - 12)]


def late_texts(source, count):
    """The last column proves to be text when half of it was read as numbers: the file is read twice."""
    return [*measures(source, count - 1), "n/a" if source.random() < 0.2 else "1.5"]


@dataclass
class Input:
    name: str
    row: object
    cases: int
    columns: int
    path: pathlib.Path = None

    def make(self, folder: pathlib.Path) -> None:
        self.path = folder / (self.name.replace(" ", "_") + f"_{self.cases}.csv")
        if self.path.exists():
            return
        source = random.Random(20261121)
        rows = [",".join(self.row(source, self.columns)) for _ in range(min(BLOCK, self.cases))]
        unfinished = self.path.with_suffix(".part")
        with open(unfinished, "w", encoding="utf-8", newline="\n") as file:
            file.write(",".join(f"v{i}" for i in range(self.columns)) + "\n")
            for _ in range(self.cases // len(rows)):
                source.shuffle(rows)
                file.write("\n".join(rows) + "\n")
        unfinished.rename(self.path)

    def syntax(self, describe: bool) -> pathlib.Path:
        variables = "\n".join(f"v{i} AUTO" for i in range(self.columns))
        text = f"GET DATA /TYPE=TXT /FILE='{self.path.resolve()}' /DELIMITERS=',' /QUALIFIER='\"' /FIRSTCASE=2\n" \
               f"/VARIABLES=\n{variables}.\n" + ("DESCRIPTIVES ALL.\n" if describe else "")
        file = self.path.with_suffix(".described.syntax" if describe else ".syntax")
        file.write_text(text, encoding="utf-8")
        return file


OURS, IMPORT, PEER = "genostat, GET DATA and DESCRIPTIVES", "genostat, GET DATA", "R, read.csv, mean, sd and range"


def commands(genostat, one: Input):
    size = one.path.stat().st_size / MEGABYTE
    runs = [Measured(OURS, [genostat, "run", one.syntax(True)], size),
            Measured(IMPORT, [genostat, "run", one.syntax(False)], size),
            Measured("wc -l", [shutil.which("wc"), "-l", one.path], size)]
    if shutil.which("Rscript"):
        code = f"d <- read.csv('{one.path.resolve()}'); d <- d[sapply(d, is.numeric)]; " \
               "print(sapply(d, function(x) c(mean(x), sd(x), range(x))))"
        runs.append(Measured(PEER, [shutil.which("Rscript"), "--vanilla", "-e", code], size, slow=True))
    return runs


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--programs", type=pathlib.Path, required=True, help="folder of the built programs")
    parser.add_argument("--data", type=pathlib.Path, required=True, help="folder of the inputs")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--quick", action="store_true", help="small inputs, to try the comparison itself")
    options = parser.parse_args()

    part = 10 if options.quick else 1
    inputs = [Input("20 measures", measures, 1_000_000 // part, 20),
              Input("20 full precision", full_precision, 200_000 // part, 20),
              Input("27 mixed", mixed, 100_000 // part, 27),
              Input("read twice", late_texts, 200_000 // part, 20)]
    folder = options.data / "import"
    folder.mkdir(parents=True, exist_ok=True)
    load = os.getloadavg()[0]
    lines, goals = [], []
    for one in inputs:
        one.make(folder)
        size = one.path.stat().st_size / MEGABYTE
        runs = commands(options.programs / "genostat", one)
        one.path.read_bytes()  # into the system's cache
        for number in range(options.rounds):
            turn = number % len(runs)
            for measured in runs[turn:] + runs[:turn]:
                if measured.due(number):
                    measured.run(shutil.which("taskset"), "-c", max(os.sched_getaffinity(0)))
        for run in runs:
            if run.failure:
                lines.append(f"| {one.name}, {size:.0f} MB | {run.label} | {run.failure} | | | |")
                continue
            median = statistics.median(run.processor)
            lines.append(f"| {one.name}, {size:.0f} MB | {run.label} | {median:.3f} ({min(run.processor):.3f} to "
                         f"{max(run.processor):.3f}) | {size / median:,.0f} | {statistics.median(run.seconds):.3f} | "
                         f"{max(run.peak):.0f} |")
        medians = {run.label: statistics.median(run.processor) for run in runs if run.processor}
        if one is inputs[0] and OURS in medians:
            speed = size / medians[OURS]
            goals.append(f"| {one.name}: MB/s imported and described | ≥ {GOAL} | {speed:.0f} | "
                         f"{'met' if speed >= GOAL else 'NOT met'} |")
        if OURS in medians and PEER in medians:
            goals.append(f"| {one.name}: times as fast as R | | {medians[PEER] / medians[OURS]:.1f} | |")
    print(f"{time.strftime('%Y-%m-%d')}, one processor, medians of {options.rounds} rounds (R: one), load before: {load:.1f}.\n")
    print("| input | program | processor seconds (least to most) | MB/s | seconds | peak MB |\n|---|---|---|---|---|---|")
    print("\n".join(lines))
    print("\n| compared | goal | measured | |\n|---|---|---|---|")
    print("\n".join(goals))
    return 0


sys.exit(main())
