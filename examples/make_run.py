#!/usr/bin/env python3
"""Makes reads to try things with: make_run.py FOLDER writes 24 samples, two of which are bad.

donor_07 loses its quality and runs into the adapter; donor_19 was amplified too much and holds reads of something
else. The others are clean.
"""
import gzip
import pathlib
import random
import sys

ADAPTER = "AGATCGGAAGAGCACACGTCTGAACTCCAGTCAC"
SAMPLES, READS, LENGTH = 24, 2500, 75


def sample(number):
    """One sample as FASTQ bytes."""
    rng = random.Random(number)
    worn, mixed = number == 7, number == 19
    originals = ["".join(rng.choices("GCAT", (32, 32, 18, 18), k=LENGTH)) for _ in range(25)]
    lines = []
    for read in range(READS):
        bases = "".join(rng.choices("GCAT", (21, 21, 29, 29), k=LENGTH))
        if mixed and rng.random() < 0.5:
            bases = rng.choice(originals)
        if worn and rng.random() < 0.3:
            bases = (bases[:rng.randrange(20, 50)] + ADAPTER + "G" * LENGTH)[:LENGTH]
        level = rng.gauss(36, 1)
        loss = rng.uniform(20, 34) if worn else rng.uniform(2, 5)
        phred = [max(2, min(40, int(level - loss * place / LENGTH))) for place in range(LENGTH)]
        lines.append(f"@GS0001:14:HRUN00001:1:{1101 + read * 4 // READS}:{1000 + read}:{2000 + read}\n{bases}\n+\n")
        lines.append("".join(chr(33 + value) for value in phred) + "\n")
    return "".join(lines).encode("ascii")


def main():
    if len(sys.argv) != 2 or sys.argv[1].startswith("-"):
        print(__doc__, file=sys.stderr)
        return 2
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for number in range(1, SAMPLES + 1):
        name = f"donor_{number:02}_S{number}_L001_R1_001.fastq.gz"
        (folder / name).write_bytes(gzip.compress(sample(number), compresslevel=1, mtime=0))
    return 0


sys.exit(main())
