#!/usr/bin/env python3
"""Sessions whose launcher misbehaves, whose results are no files, and whose temporary folder fails.

soak_launchers.py PROGRAMS SOURCE SECONDS SEED. Each session ends as the contract has it: the hostile job with its
message, or cancelled when it hangs, the next job as usual; no process and no file stay.
"""
import collections
import json
import os
import signal
import subprocess
import sys
import time

sys.dont_write_bytecode = True  # the tree stays as it is

from place import campaign, check, wait_until

HEAD = """#!/bin/sh
document=$(printf %s "$2" | base64 -d)
csv=${document#*'"CSV_Path":"'}
csv=${csv%%'"'*}
result() { printf 'a,b,c\\n1,2,3\\n' >"$1"; }
case "$document" in *plain.fastq*) result "$csv"; exit 0 ;; esac
"""
STARTED = ': >"$HOME/started"\n'
RESULTS, NO_RESULTS, FAILED = 100, 101, 200

# What the launcher does, and the number of the message that must come of it; none: it hangs and is cancelled.
WAYS = {
    "no result": ("exit 0", NO_RESULTS),
    "a folder": ('mkdir "$csv"; sleep 1', NO_RESULTS),
    "a pipe": ('mkfifo "$csv"', NO_RESULTS),
    "a link to a device": ('ln -s /dev/zero "$csv"', NO_RESULTS),
    "a link to nothing": ('ln -s missing "$csv"', NO_RESULTS),
    "a large result": ('result "$csv"; seq -f "%.0f,1,2" 200000 >>"$csv"', RESULTS),
    "closed streams": ('exec <&- >&- 2>&-; result "$csv"', RESULTS),
    "gigabytes": ("head -c 1500000000 /dev/zero; head -c 1500000000 /dev/zero >&2; exit 3", FAILED + 3),
    "no folder": ('rm -r "$(dirname "$csv")"', NO_RESULTS),
    "hangs": (STARTED + "exec sleep 600", None),
    "forks": ("i=0; while [ $i -lt 200 ]; do sleep 600 & i=$((i + 1)); done\n" + STARTED + "wait", None),
    "leaves its group": ("setsid sh -c 'sleep 600 & sleep 600' &\n" + STARTED + "wait", None),
    "ignores signals": ("trap '' INT TERM HUP QUIT; " + STARTED + "while :; do sleep 1; done", None),
    "stops": (STARTED + "kill -STOP $$", None),
}
if os.geteuid() == 0:
    WAYS["a device"] = ('mknod "$csv" c 1 5', NO_RESULTS)
DEADLY = (signal.SIGHUP, signal.SIGINT, signal.SIGABRT, signal.SIGKILL, signal.SIGSEGV, signal.SIGPIPE, signal.SIGTERM)


def start(place, program, syntax):
    (place.folder / "events").unlink(missing_ok=True)
    (place.folder / "jobs.syntax").write_text(syntax)
    return subprocess.Popen([program, "run", "jobs.syntax", "--home", place.home, "--events", "events"],
                            cwd=place.folder, env=place.environment, stdin=subprocess.DEVNULL,
                            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def messages(place):
    """The numbers of the end messages by job; 0 of a cancelled one."""
    found = {}
    for line in (place.folder / "events").read_text().splitlines():
        event = json.loads(line)
        if "message" in event:
            number = event["message"].partition("MESSAGE=")[2].partition(".")[0]
            found.setdefault(event["jobName"], []).append(int(number or 0))
    return found


def job(name):
    return f"GENOSTAT /JOB NAME='{name}' FILE='{name}.fastq'.\n"


def play_launcher(place, program, way, expected, dice):
    launcher = place.home / "statisticspython3.sh"
    launcher.write_text(HEAD + way + "\n")
    launcher.chmod(0o755)
    started = place.home / "started"
    started.unlink(missing_ok=True)
    session = start(place, program, job("hostile") + job("plain"))
    if expected is None:
        wait_until(started.exists, 60, "the launcher's start")
        time.sleep(dice.uniform(0, 0.2))
        session.send_signal(signal.SIGINT)
        wait_until(lambda: session.poll() is not None, 30, "the end of a cancelled session")
        check(session.returncode == 130, f"status {session.returncode}")
    else:
        wait_until(lambda: session.poll() is not None, 120, "the end of the session")
        check(session.returncode in (0, 1), f"status {session.returncode}")
        ends = messages(place)
        check(ends.get("hostile") == [expected], f"end messages {ends}, not {expected}")
        check("rm -r" in way or ends.get("plain") == [RESULTS], f"end messages {ends}")
    place.check_no_process(2)
    place.check_tmp_is_empty()


def chosen_way(dice):
    name = dice.choice([*WAYS, "exit code", "signal"])
    if name == "exit code":
        code = dice.randrange(1, 256)
        return name, f'result "$csv"; exit {code}', FAILED + code
    if name == "signal":
        number = dice.choice(DEADLY)
        return name, f'result "$csv"; kill -{int(number)} $$; sleep 600', FAILED + 128 + number
    return name, *WAYS[name]


class Mounted:
    """The temporary folder as a file system without room, or one that is only read; true where it can be had."""

    def __init__(self, place, option):
        self.folder, self.option = place.tmp, option

    def __enter__(self):
        call = ["mount", "-t", "tmpfs", "-o", self.option, "tmpfs", self.folder]
        self.mounted = subprocess.run(call, capture_output=True).returncode == 0
        if self.mounted:
            subprocess.run(["dd", "if=/dev/zero", f"of={self.folder}/filler", "bs=4k"], capture_output=True)
        return self.mounted

    def __exit__(self, *_):
        if self.mounted:
            subprocess.run(["umount", self.folder], check=True)


def play_folder(place, program):
    """A folder that cannot be written is refused in words, before a job is taken."""
    session = subprocess.run([program, "qc", "plain.fastq"], cwd=place.folder, env=place.environment, timeout=60,
                             stdin=subprocess.DEVNULL, capture_output=True, text=True)
    check(session.returncode == 1 and "error: " in session.stderr, f"{session.returncode}: {session.stderr}")
    place.check_no_process(2)


def play(place, programs, source, dice, time_left):
    program = programs / "genostat"
    for name in ("hostile", "plain"):
        (place.folder / f"{name}.fastq").write_text("@r\nACGT\n+\nIIII\n")
    counts = collections.Counter()
    for option, name in (("size=256k", "full folder"), ("ro", "read-only folder")):
        with Mounted(place, option) as mounted:
            if mounted:
                play_folder(place, program)
            counts[name] += mounted
    place.tmp.rename(place.folder / "away")
    play_folder(place, program)
    counts["missing folder"] += 1
    (place.folder / "away").rename(place.tmp)
    while time_left():
        name, way, expected = chosen_way(dice)
        try:
            play_launcher(place, program, way, expected, dice)
        except AssertionError as finding:
            raise type(finding)(f"{name}: {finding}") from finding
        counts[name] += 1
    return f"{counts.total()} sessions: " + ", ".join(f"{count} {name}" for name, count in sorted(counts.items())) + (
        "" if counts["full folder"] else " (only root can mount it)")


if __name__ == "__main__":
    sys.exit(campaign(play))
