#!/usr/bin/env python3
"""Measures correlations of ranks beside SciPy, on two columns of random numbers.

  rank_correlation.py --program FILE [--rounds N] [--cases N]

Both take turns on the same columns in memory. Medians over the rounds are compared, of the processor's seconds, which
whoever else works at the time spoils least, and the coefficients, which must be the same. Wants Debian's python3-scipy. Prints Markdown; its status is 1 when a goal is missed.
"""
import argparse
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

try:
    import numpy
    import scipy.stats
except ImportError:
    sys.exit("rank_correlation.py: SciPy is not installed: apt install python3-scipy")

GOAL = 1.0  # seconds for both coefficients
PEERS = {"spearman": [scipy.stats.spearmanr], "kendall": [scipy.stats.kendalltau],
         "both": [scipy.stats.spearmanr, scipy.stats.kendalltau]}


def columns(cases: int):
    random = numpy.random.default_rng(20)
    x = random.normal(size=cases)
    y = x / 2 + random.normal(size=cases)
    yield "continuous", x, y
    yield "a hundred values", numpy.floor(x * 10), numpy.floor(y * 10)
    yield "four values", numpy.digitize(x, [-1, 0, 1]).astype(float), numpy.digitize(y, [-1, 0, 1]).astype(float)
    yield "sorted", numpy.sort(x), numpy.sort(y)


def ours(program, file, kind):
    answer = subprocess.run([program, file, kind], check=True, capture_output=True, text=True)
    seconds, worked, *coefficients = map(float, answer.stdout.split())
    return seconds, worked, coefficients


def theirs(x, y, kind):
    start, start_of_work = time.perf_counter(), time.process_time()
    coefficients = [peer(x, y)[0] for peer in PEERS[kind]]
    return time.perf_counter() - start, time.process_time() - start_of_work, coefficients


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--program", type=pathlib.Path, required=True)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--cases", type=int, default=1_000_000)
    options = parser.parse_args()
    numpy.seterr(over="ignore")  # SciPy's own, in the variance of many tied pairs
    met = True
    print(f"SciPy {scipy.__version__}, {options.cases} cases, medians of {options.rounds} rounds, "
          f"load before: {os.getloadavg()[0]:.1f}\n")
    print("| columns | coefficients | seconds | of the processor | SciPy's seconds | of the processor | times as fast |\n"
          "|---|---|---|---|---|---|---|")
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder) / "columns"
        for name, x, y in columns(options.cases):
            numpy.concatenate([x, y]).tofile(file)
            for kind in PEERS:
                runs = [(ours(options.program, file, kind), theirs(x, y, kind)) for _ in range(options.rounds)]
                for (*_, own), (*_, peer) in runs:
                    if any(abs(a - b) > 1e-11 for a, b in zip(own, peer, strict=True)):
                        sys.exit(f"{name}, {kind}: {own} is not {peer}")
                seconds, worked, peer_seconds, peer_worked = (
                    statistics.median(run[side][clock] for run in runs) for side in (0, 1) for clock in (0, 1))
                met = met and seconds < GOAL
                print(f"| {name} | {kind} | {seconds:.3f} | {worked:.3f} | {peer_seconds:.3f} | {peer_worked:.3f} | "
                      f"{peer_worked / worked:.1f} |")
    print(f"\nBoth in under {GOAL:.0f} second: {'met' if met else 'NOT met'}")
    return 0 if met else 1


sys.exit(main())
