#!/usr/bin/env python3
"""Makes the example reads: examples/control.fastq, examples/treated.fastq.gz and the twelve files of examples/cohort.

  make_examples.py           writes the files
  make_examples.py --check   compares the files that are there with what would be written; status 1 if they differ

The reads imitate two sequencing runs of one experiment. The control run is clean; the treated one is
richer in G and C, loses quality towards its ends, holds more copies of the same fragments and more adapter.
The cohort has six samples of each kind, short reads with binned qualities that suffered unevenly, so that statistics
have something to find.
Only the compressed form may depend on the zlib at hand, so --check compares what is inside.
"""
import gzip
import pathlib
import random
import sys

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "examples"
ADAPTER = "AGATCGGAAGAGCACACGTCTGAACTCCAGTCAC"
READS = 250
COHORT_READS, COHORT_LENGTH = 1100, 50
BINS = (2, 12, 23, 37)  # as the younger sequencers round them
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


def cohort_sample(rng, flow_cell, gc, start, loss, copies, adapters):
    """One sample of the cohort as FASTQ bytes."""
    fragments = []
    lines = []
    for number in range(COHORT_READS + int(rng.random() * 100)):
        if fragments and rng.random() < copies:
            # Copies have few originals, as those of a real amplification.
            bases = fragments[int(rng.random() ** 3 * len(fragments))]
        else:
            bases = fragment(rng, gc)[:COHORT_LENGTH]
            fragments.append(bases)
        if rng.random() < adapters:
            bases = (bases[:15 + int(rng.random() * 25)] + ADAPTER)[:COHORT_LENGTH]
        levels = [start - loss * position / COHORT_LENGTH + 16 * (rng.random() - 0.5) for position in range(len(bases))]
        phred = [min(BINS, key=lambda value: abs(value - level)) for level in levels]
        lines.append(f"@GS0001:13:{flow_cell}:1:{1101 + number % 4}:{1000 + number * 7}:{1000 + number * 11}\n{bases}\n+\n")
        lines.append("".join(chr(33 + q) for q in phred) + "\n")
    return "".join(lines).encode("ascii")


def cohort():
    """The samples of the cohort: name and FASTQ bytes."""
    rng = random.Random(303)
    for kind, gc, start, loss, copies, adapters in (
        ("control", 0.42, 37, 4, 0.05, 0.01), ("treated", 0.50, 36, 14, 0.25, 0.05)
    ):
        for number in range(1, 7):
            strain = rng.random()  # how much the sample has suffered
            yield f"{kind}_{number}", cohort_sample(
                rng, f"H{kind[:4].upper()}{number:04}", gc + 0.06 * (rng.random() - 0.5), start - 3 * strain,
                loss * (0.5 + strain), copies * (0.5 + strain), adapters * 2 * strain * strain)


def main():
    control = run(101, "HCTRL0001", gc=0.41, start=37, loss=3, copies=0.04, adapters=0.01)
    treated = run(202, "HTREA0002", gc=0.55, start=35, loss=14, copies=0.25, adapters=0.08)
    packed = {FOLDER / "treated.fastq.gz": treated}
    packed |= {FOLDER / "cohort" / f"{name}.fastq.gz": reads for name, reads in cohort()}
    plain = FOLDER / "control.fastq"
    if sys.argv[1:] == ["--check"]:
        same = plain.read_bytes() == control and all(
            gzip.decompress(path.read_bytes()) == reads for path, reads in packed.items())
        print("the examples are " + ("as made" if same else "NOT what this script makes"))
        return 0 if same else 1
    if sys.argv[1:]:
        print(__doc__, file=sys.stderr)
        return 2
    (FOLDER / "cohort").mkdir(parents=True, exist_ok=True)
    plain.write_bytes(control)
    for path, reads in packed.items():
        path.write_bytes(gzip.compress(reads, compresslevel=9, mtime=0))
    return 0


sys.exit(main())
