#!/usr/bin/env python3
"""Divides the time over the campaigns, runs as many at once as there are processors, and says what came of them.

campaigns.py MINUTES SEED CAMPAIGN... The programs are built already; logs go to build/soak.
"""
import concurrent.futures
import dataclasses
import os
import pathlib
import re
import subprocess
import sys
import time

SOURCE = pathlib.Path(__file__).resolve().parents[2]
LOGS = SOURCE / "build" / "soak"
# Added to what was asked for before a campaign counts as hanging.
PATIENCE = 300
ENVIRONMENT = dict(
    os.environ, UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1",
    TSAN_OPTIONS="halt_on_error=1:second_deadlock_stack=1",
    ASAN_OPTIONS="detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1:check_initialization_order=1")


@dataclasses.dataclass
class Shard:
    """A process of a campaign; `weight` is its share of the time, `call` gets seconds and seed."""
    campaign: str
    name: str
    weight: float
    call: object
    counts: str = ""
    seconds: float = 0
    failed: bool = False

    @property
    def log(self):
        return LOGS / f"{self.name}.log"

    def run(self, seconds, seed):
        begin = time.monotonic()
        with open(self.log, "wb") as log:
            try:
                done = subprocess.run([str(word) for word in self.call(max(1, int(seconds)), seed)], cwd=SOURCE,
                                      env=ENVIRONMENT, stdout=log, stderr=log, timeout=seconds + PATIENCE)
                self.failed = done.returncode != 0
            except subprocess.TimeoutExpired:
                log.write(b"FINDING: it does not end\n")
                self.failed = True
        self.seconds = time.monotonic() - begin
        lines = self.log.read_text(errors="replace").splitlines()
        self.counts = self.executions(lines) if self.campaign == "fuzz" else "".join(lines[-1:])
        return self

    @staticmethod
    def executions(lines):
        runs = [line.split()[1] for line in lines if line.startswith("stat::number_of_executed_units:")]
        return f"{int(runs[0]):,} inputs" if runs else ""


def built(preset, name):
    return SOURCE / "build" / preset / "bin" / name


def program(preset, name):
    return lambda seconds, seed: [built(preset, name), seconds, seed]


def script(name, offset=0):
    path = SOURCE / "tests" / "soak" / name
    return lambda seconds, seed: [sys.executable, path, built("linux-asan", "."), SOURCE, seconds, seed + offset]


def fuzzer(name):
    folder = SOURCE / "tests" / "fuzz"
    found = SOURCE / "build" / "fuzz" / "found" / name
    words = [f"-dict={folder}/{name}.dict"] if (folder / f"{name}.dict").exists() else []
    return lambda seconds, seed: [
        built("fuzz", f"fuzz_{name}"), f"-max_total_time={seconds}", f"-seed={seed}", "-timeout=10",
        "-print_final_stats=1", f"-artifact_prefix={LOGS}/{name}-", *words, found, folder / "corpus" / name]


def shards():
    targets = sorted(path.stem[len("fuzz_"):] for path in (SOURCE / "tests" / "fuzz").glob("fuzz_*.cpp"))
    return [
        Shard("jobs", "jobs-tsan", 3, program("linux-tsan", "soak_jobs")),
        Shard("jobs", "jobs-asan", 3, program("linux-asan", "soak_jobs")),
        Shard("faults", "faults", 2, program("linux-asan", "soak_faults")),
        Shard("faults", "calls", 1, program("linux-asan", "soak_calls")),
        Shard("launchers", "launchers", 2, script("soak_launchers.py")),
        Shard("sessions", "sessions-1", 3, script("soak_sessions.py")),
        Shard("sessions", "sessions-2", 3, script("soak_sessions.py", 1000)),
        *(Shard("fuzz", f"fuzz-{name}", 8 / len(targets), fuzzer(name)) for name in targets)]


def machine():
    info = pathlib.Path("/proc/cpuinfo").read_text()
    return f"{os.cpu_count()} cores, " + re.search(r"^model name\s*: (.*)$", info, re.MULTILINE)[1]


def table(done, minutes, seed):
    lines = [f"{machine()}; {minutes:g} minutes, seed {seed}.", "", "| campaign | time | what was done | findings |",
             "|---|---|---|---|"]
    for shard in done:
        finding = f"see `{shard.log.relative_to(SOURCE)}`" if shard.failed else "none"
        lines.append(f"| {shard.name} | {shard.seconds / 60:.1f} min | {shard.counts} | {finding} |")
    return "\n".join(lines)


def main():
    minutes, seed, wanted = float(sys.argv[1]), int(sys.argv[2]), sys.argv[3:]
    LOGS.mkdir(parents=True, exist_ok=True)
    chosen = sorted((shard for shard in shards() if shard.campaign in wanted), key=lambda shard: -shard.weight)
    lanes = max(1, min(os.cpu_count(), len(chosen)))
    second = 60 * minutes * lanes / sum(shard.weight for shard in chosen)
    with concurrent.futures.ThreadPoolExecutor(lanes) as pool:
        running = [pool.submit(shard.run, min(60 * minutes, second * shard.weight), seed) for shard in chosen]
        for job in concurrent.futures.as_completed(running):
            shard = job.result()
            print(f"soak: {shard.name}: {shard.counts}", flush=True)
            if shard.failed:
                print(f"soak: {shard.name} found something (log: {shard.log.relative_to(SOURCE)}); "
                      f"scripts/soak --seed {seed} {shard.campaign} repeats it", flush=True)
    print("\n" + table(chosen, minutes, seed))
    return 1 if any(shard.failed for shard in chosen) else 0


if __name__ == "__main__":
    sys.exit(main())
