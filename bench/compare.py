#!/usr/bin/env python3
"""Measures genostat-analysis beside the programs that Debian packages, and judges the ratios.

  compare.py --programs FOLDER --data FOLDER [--rounds N] [--quick] [--only WORD] [--program FILE]

All programs of one input run in turn, so that all see the same machine; medians over the rounds are compared. Times
are of whole processes with warm file caches, output thrown away. Prints Markdown.
"""
import argparse
import os
import pathlib
import platform
import re
import shutil
import statistics
import subprocess
import sys
import time

from inputs import SMALL_FILES, Inputs
from measured import MEGABYTE, Measured

OURS = "genostat-analysis"
# What a goal of 500 MB/s for long reads was set beside: fastp with one worker on short reads.
LONG_READ_RATIO = 500 / 161


def warm(path) -> None:
    for file in sorted(path.rglob("*")) if path.is_dir() else [path]:
        if file.is_file():
            with open(file, "rb", buffering=0) as source:
                while source.read(1 << 20):
                    pass


class Comparison:
    def __init__(self, program, inputs: Inputs, only: str):
        self.program = program
        self.groups = {}
        self.inputs = inputs
        self._describe(only)

    def _ours(self, threads, megabytes, *paths):
        name = f"{OURS}, {threads} thread" + ("s" if threads > 1 else "")
        return Measured(name, [self.program, "qc", "--threads", threads, *paths], megabytes)

    @staticmethod
    def _peer(label, program, options, megabytes, slow=False):
        return Measured(label, [shutil.which(program), *options], megabytes, slow)

    def _describe(self, only: str) -> None:
        """What runs: groups of commands by input."""
        groups = {}
        for name, path in self.inputs.plain.items():
            size = path.stat().st_size / MEGABYTE
            runs = [self._ours(1, size, path), self._ours(2, size, path),
                    self._peer("fastp, 1 worker", "fastp", self._fastp(path), size),
                    self._peer("seqtk fqchk", "seqtk", ["fqchk", "-q0", path], size),
                    self._peer("seqkit stats -a", "seqkit", ["stats", "-a", "-j1", path], size),
                    self._peer("wc -l", "wc", ["-l", path], size), self._peer("cat", "cat", [path], size)]
            # The packaged version stands still on long reads, out of the memory that it allows itself.
            if name != "long":
                runs.append(self._peer("fastqc", "fastqc", ["-q", "-o", self.inputs.folder, path], size, slow=True))
            groups["plain, " + name] = [path, runs]
        for kind, paths in (("gzip", self.inputs.gzip), ("bgzf", self.inputs.bgzf)):
            for name, path in paths.items():
                size = self.inputs.plain[name].stat().st_size / MEGABYTE
                if path is None:
                    continue
                runs = [self._ours(1, size, path), self._ours(2, size, path),
                        self._peer("fastp, 1 worker", "fastp", self._fastp(path), size),
                        self._peer("igzip -d", "igzip", ["-d", "-c", path], size)]
                if kind == "bgzf":
                    runs.append(self._peer("bgzip -d -@2", "bgzip", ["-d", "-c", "-@2", path], size))
                groups[f"{kind}, {name}"] = [path, runs]
        small, tiny = self.inputs.small, self.inputs.tiny
        size = sum(file.stat().st_size for file in small.iterdir()) / MEGABYTE
        groups[f"{SMALL_FILES} small files"] = [small, [self._ours(1, size, small), self._ours(2, size, small)]]
        one = tiny / "sample_00.fastq"
        groups["files of one read"] = [tiny, [
            Measured(f"{OURS}, {SMALL_FILES} files", [self.program, "qc", "--threads", 1, tiny], 0),
            Measured(f"{OURS}, 1 file", [self.program, "qc", "--threads", 1, one], 0)]]
        self.groups = {name: group for name, group in groups.items() if only in name}

    @staticmethod
    def _fastp(path):
        """Quality control only: neither trimming nor filtering, no output of reads."""
        return ["-i", path, "-A", "-G", "-Q", "-L", "-w", "1", "-j", os.devnull, "-h", os.devnull]

    def run(self, rounds: int) -> None:
        for name, (path, runs) in self.groups.items():
            print(f"running: {name}", file=sys.stderr, flush=True)
            warm(path)
            present = [one for one in runs if not one.missing()]
            for number in range(rounds):
                # Each begins a round once, so that none always runs after the same other.
                turn = number % len(present)
                for measured in present[turn:] + present[:turn]:
                    if measured.due(number):
                        measured.run()

    def find(self, group: str, label: str):
        """The median seconds, or None."""
        for measured in self.groups.get(group, [None, []])[1]:
            if measured.label == label and measured.seconds and not measured.failure:
                return measured.median()
        return None

    def table(self):
        yield "| input | program | seconds (least to most) | MB/s | processor seconds | peak MB |"
        yield "|---|---|---|---|---|---|"
        for name, (_, runs) in self.groups.items():
            for one in runs:
                if one.missing() or one.failure:
                    yield f"| {name} | {one.label} | {one.failure or 'not installed'} | | | |"
                    continue
                spread = f" ({min(one.seconds):.3f} to {max(one.seconds):.3f})" if len(one.seconds) > 1 else ""
                speed = f"{one.megabytes / one.median():,.0f}" if one.megabytes else ""
                yield (f"| {name} | {one.label} | {one.median():.3f}{spread} | {speed} | "
                       f"{statistics.median(one.processor):.3f} | {max(one.peak):.0f} |")

    def goals(self):
        """(what is compared, the goal's words, the figure or None, whether it is met)."""
        one, two = f"{OURS}, 1 thread", f"{OURS}, 2 threads"

        def ratio(what, group, above, below, limit, at_least):
            top, bottom = self.find(group, above), self.find(group, below)
            figure = top / bottom if top and bottom else None
            sign = "≥" if at_least else "≤"
            met = figure is not None and (figure >= limit if at_least else figure <= limit)
            return f"{group}: {what}", f"{sign} {limit:.2f}", figure, met

        for levels in ("4 levels", "40 levels"):
            plain = "plain, " + levels
            yield ratio("times as fast as fastp, one thread each", plain, "fastp, 1 worker", one, 9, True)
            yield ratio("time of one thread / wc -l", plain, one, "wc -l", 5, False)
            yield ratio("two threads against one", plain, one, two, 1.8, True)
        for levels in ("4 levels", "40 levels"):
            yield ratio("time of two threads / igzip -d", "gzip, " + levels, two, "igzip -d", 1.1, False)
        for levels in ("4 levels", "40 levels"):
            yield ratio("time of two threads / bgzip -d -@2", "bgzf, " + levels, two, "bgzip -d -@2", 1, False)
        yield self._long_reads(one)
        yield ratio("two threads against one", f"{SMALL_FILES} small files", one, two, 1.8, True)
        yield self._start_up()
        for threads, label in ((1, one), (2, two)):
            yield self._memory(threads, label)

    def _long_reads(self, label):
        what = "plain, long: MB/s of one thread / MB/s of fastp on plain, 4 levels"
        ours, peer = self.find("plain, long", label), self.find("plain, 4 levels", "fastp, 1 worker")
        if not ours or not peer:
            return what, f"≥ {LONG_READ_RATIO:.2f}", None, False
        sizes = {name: path.stat().st_size for name, path in self.inputs.plain.items()}
        figure = (sizes["long"] / ours) / (sizes["4 levels"] / peer)
        return what, f"≥ {LONG_READ_RATIO:.2f}", figure, figure >= LONG_READ_RATIO

    def _start_up(self):
        many = self.find("files of one read", f"{OURS}, {SMALL_FILES} files")
        one = self.find("files of one read", f"{OURS}, 1 file")
        figure = 1000 * (many - one) / (SMALL_FILES - 1) if many and one else None
        return "files of one read: milliseconds per further file", "≤ 1.00", figure, figure is not None and figure <= 1

    def _memory(self, threads, label):
        peaks = [max(run.peak) for _, runs in self.groups.values() for run in runs if run.label == label and run.peak]
        limit = 64 + 48 * threads
        figure = max(peaks) if peaks else None
        return f"all inputs: peak MB, {label}", f"≤ {limit}", figure, figure is not None and figure <= limit


def machine():
    model = re.search(r"model name\s*:\s*(.*)", pathlib.Path("/proc/cpuinfo").read_text())
    memory = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    processors = len(os.sched_getaffinity(0))
    return f"{model[1] if model else platform.machine()}, {processors} processors, {memory:.0f} GiB, Linux {platform.release()}"


def versions():
    for package in ("fastp", "fastqc", "seqkit", "seqtk", "isal", "tabix", "coreutils"):
        found = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", package], capture_output=True, text=True)
        if found.returncode == 0 and found.stdout:
            yield f"{package} {found.stdout}"


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--programs", type=pathlib.Path, required=True, help="folder of the built programs")
    parser.add_argument("--data", type=pathlib.Path, required=True, help="folder of the inputs")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--quick", action="store_true", help="small inputs, to try the comparison itself")
    parser.add_argument("--only", default="", help="only inputs whose name holds this")
    parser.add_argument("--program", type=pathlib.Path, help="another build of the analyser")
    options = parser.parse_args()

    data = options.data / ("quick" if options.quick else "full")
    inputs = Inputs(data, options.programs / "make_reads", options.quick)
    comparison = Comparison(options.program or options.programs / OURS, inputs, options.only)
    # Whoever else works at the time spoils the figures of several threads first.
    load = os.getloadavg()[0]
    comparison.run(options.rounds)
    print(f"{time.strftime('%Y-%m-%d')}, {machine()}; {', '.join(versions())}; medians of {options.rounds} rounds; "
          f"load before: {load:.1f}.\n")
    print("\n".join(comparison.table()))
    print("\n| compared | goal | measured | |\n|---|---|---|---|")
    for what, goal, figure, met in comparison.goals():
        if options.only and figure is None:
            continue
        verdict = "not measured" if figure is None else "met" if met else "NOT met"
        print(f"| {what} | {goal} | {'' if figure is None else f'{figure:.2f}'} | {verdict} |")
    return 0


sys.exit(main())
