#!/usr/bin/env python3
"""Makes the example reads: examples/control.fastq and examples/treated.fastq.gz.

  make_examples.py           writes both files
  make_examples.py --check   compares the files that are there with what would be written; status 1 if they differ

The reads imitate two sequencing runs of one experiment. The control run is clean; the treated one is
richer in G and C, loses quality towards its ends, holds more copies of the same fragments and more adapter.
Only the compressed form may depend on the zlib at hand, so --check compares what is inside.
"""
import gzip
import pathlib
import random
import sys

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "examples"
ADAPTER = "AGATCGGAAGAGCACACGTCTGAACTCCAGTCAC"
READS = 250
SHORTEST, LONGEST = 75, 100


def fragment(rng, gc):
    """A stretch of a genome with that share of G and C."""
    return "".join(rng.choice("GC") if rng.random() < gc else rng.choice("AT") for _ in range(LONGEST))


def qualities(rng, length, start, loss):
    """Phred values that wander around a level, which falls by `loss` over the read."""
    values = []
    value = start
    for position in range(length):
        level = start - loss * position / LONGEST
        value += 0.4 * (level - value) + 4 * (rng.random() - 0.5)
        dip = 15 if rng.random() < 0.02 else 0
        values.append(max(2, min(40, int(value - dip))))
    return values


def run(seed, flow_cell, gc, start, loss, copies, adapters):
    """One run as FASTQ bytes: shares of copied fragments and of reads that end in adapter are given."""
    rng = random.Random(seed)
    fragments = []
    lines = []
    for number in range(READS):
        if fragments and rng.random() < copies:
            bases = fragments[int(rng.random() * len(fragments))]
        else:
            bases = fragment(rng, gc)
            fragments.append(bases)
        if rng.random() < adapters:
            insert = 40 + int(rng.random() * 40)
            bases = (bases[:insert] + ADAPTER + "G" * LONGEST)[:LONGEST]
        # Most reads have full length, the others lost their ends.
        length = LONGEST if rng.random() < 0.7 else SHORTEST + int(rng.random() * (LONGEST - SHORTEST))
        phred = qualities(rng, length, start, loss)
        read = "".join("N" if q == 2 else base for base, q in zip(bases, phred))
        tile = 1101 + number * 4 // READS
        x, y = 1000 + int(rng.random() * 30000), 1000 + number * 50
        lines.append(f"@GS0001:12:{flow_cell}:1:{tile}:{x}:{y} 1:N:0:ACGTACGT\n{read}\n+\n")
        lines.append("".join(chr(33 + q) for q in phred) + "\n")
    return "".join(lines).encode("ascii")


def main():
    control = run(101, "HCTRL0001", gc=0.41, start=37, loss=3, copies=0.04, adapters=0.01)
    treated = run(202, "HTREA0002", gc=0.55, start=35, loss=14, copies=0.25, adapters=0.08)
    plain, packed = FOLDER / "control.fastq", FOLDER / "treated.fastq.gz"
    if sys.argv[1:] == ["--check"]:
        same = plain.read_bytes() == control and gzip.decompress(packed.read_bytes()) == treated
        print("the examples are " + ("as made" if same else "NOT what this script makes"))
        return 0 if same else 1
    if sys.argv[1:]:
        print(__doc__, file=sys.stderr)
        return 2
    FOLDER.mkdir(exist_ok=True)
    plain.write_bytes(control)
    packed.write_bytes(gzip.compress(treated, compresslevel=9, mtime=0))
    return 0


sys.exit(main())
