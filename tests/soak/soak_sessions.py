#!/usr/bin/env python3
"""Sessions of run, qc and shell that a signal ends at a random moment.

soak_sessions.py PROGRAMS SOURCE SECONDS SEED. Whatever the signal: the session ends, files under their final names are
whole, no process stays, and a terminal is as it was. Temporary folders and part files are gone at once, after SIGKILL
with the next session.
"""
import collections
import fcntl
import os
import pty
import shutil
import signal
import subprocess
import sys
import termios
import threading
import time

sys.dont_write_bytecode = True  # the tree stays as it is

from place import campaign, check, wait_until

SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT, signal.SIGKILL)
JOB = "GENOSTAT /JOB NAME='a' FILE='control.fastq' 'treated.fastq.gz' /DESCRIPTIVES VARIABLES=GC qc_score.\n"
READS = ["control.fastq", "treated.fastq.gz"]
ARGUMENTS = {
    "run": ["run", "job.syntax", "--html", "out/a.html", "--csv", "out/csv", "--output", "json", "--to", "out/a.json"],
    "qc": ["qc", *READS, "--html", "out/a.html", "--csv", "out/a.csv", "--fastqc-data", "out/fastqc"],
    "shell": ["shell", "--no-history", "--html", "out/a.html"],
}
INTERRUPTED = 130


class Session:
    def __init__(self, place, program, kind):
        self.place, self.kind = place, kind
        self.terminal = None
        self.log = open(place.folder / "log", "wb+")
        streams = {"stdin": subprocess.DEVNULL, "stdout": self.log, "stderr": self.log}
        setup = None
        if kind == "shell":
            self.terminal, line = pty.openpty()
            self.before = termios.tcgetattr(line)
            self.line = line
            streams = dict.fromkeys(streams, line)
            setup = lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0)
        self.process = subprocess.Popen([program, *ARGUMENTS[kind]], cwd=place.folder, env=place.environment,
                                        start_new_session=True, preexec_fn=setup, **streams)
        if self.terminal is not None:
            self.reader = threading.Thread(target=self.read_terminal)
            self.reader.start()

    def read_terminal(self):
        shown, typed = b"", False
        while not shown.endswith(b"[the end]"):
            shown += os.read(self.terminal, 65536)
            if not typed and b"genostat> " in shown:
                os.write(self.terminal, (JOB + "wait\nquit\n").encode())
                typed = True
        self.log.write(shown)

    def wait(self):
        wait_until(lambda: self.process.poll() is not None, 60, f"the end of the session: {self.text()}")
        return self.process.returncode

    def text(self):
        self.log.flush()
        return (self.place.folder / "log").read_text(errors="replace")[-2000:]

    def close(self):
        """Whether the terminal is as it was."""
        if self.terminal is None:
            return True
        after = termios.tcgetattr(self.line)
        termios.tcsetattr(self.line, termios.TCSANOW, self.before)
        os.write(self.line, b"[the end]")
        self.reader.join()
        os.close(self.line)
        os.close(self.terminal)
        return after == self.before


class Reference:
    """What an undisturbed session writes, and how long it takes."""

    def __init__(self, place, program, kind):
        runs = []
        for _ in range(2):
            begin = time.monotonic()
            undisturbed(place, program, kind)
            self.seconds = time.monotonic() - begin
            runs.append({name: path.read_bytes() for name, path in place.files(place.out).items()})
            empty(place)
        self.whole, other = runs
        check(self.whole and self.whole.keys() == other.keys(), f"{kind} writes always the same files: {other.keys()}")
        self.same = {name for name in other if self.whole[name] == other[name]}

    def check(self, place, parts_may_be):
        for name, path in place.files(place.out).items():
            if parts_may_be and name.endswith(".genostat-part"):
                continue
            check(name in self.whole, f"a file under no final name: {name}")
            content = path.read_bytes()
            expected = self.whole[name]
            check(content == expected if name in self.same else content[-16:] == expected[-16:], f"{name} is not whole")


def undisturbed(place, program, kind):
    session = Session(place, program, kind)
    status = session.wait()
    whole = session.close()
    check(status == 0 and whole, f"undisturbed {kind}: status {status}: {session.text()}")
    place.check_no_process(0)
    place.check_tmp_is_empty()


def empty(place):
    shutil.rmtree(place.out)
    place.out.mkdir()


def play_one(place, program, reference, kind, number, dice):
    """The moment of the signal is 0 when the session had ended before."""
    moment = dice.uniform(0, reference.seconds * 1.05)
    session = Session(place, program, kind)
    try:
        session.process.wait(moment)
        moment = 0
    except subprocess.TimeoutExpired:
        session.process.send_signal(number)
    if kind == "shell" and number == signal.SIGINT:
        # It drops what is typed; the shell goes on.
        time.sleep(0.2)
        session.process.terminate()
    status = session.wait()
    whole = session.close()
    # A signal that comes before the session is awake ends it by itself.
    check(status in (0, INTERRUPTED, -number), f"status {status}: {session.text()}")
    check(whole or number == signal.SIGKILL, "the terminal is not as it was")
    place.check_no_process(20 if number == signal.SIGKILL else 2)
    reference.check(place, True)
    # A cancelled analysis is killed as well. What that leaves is gone after the next session.
    left = any(name.endswith(".genostat-part") for name in place.files(place.out))
    if left or number == signal.SIGKILL:
        undisturbed(place, program, kind)
        reference.check(place, False)
    place.check_tmp_is_empty()
    empty(place)
    return moment


def play(place, programs, source, dice, time_left):
    program = programs / "genostat"
    for name in READS:
        shutil.copy(source / "examples" / name, place.folder)
    (place.folder / "job.syntax").write_text(JOB)
    references = {kind: Reference(place, program, kind) for kind in ARGUMENTS}
    ended = collections.Counter()
    late = 0
    while time_left():
        kind, number = dice.choice(list(ARGUMENTS)), dice.choice(SIGNALS)
        try:
            moment = play_one(place, program, references[kind], kind, number, dice)
        except AssertionError as finding:
            raise type(finding)(f"{kind}, {number.name}: {finding}") from finding
        late += moment == 0
        ended[number.name] += moment > 0
    return f"{ended.total()} sessions ended: " + ", ".join(f"{count} by {name}" for name, count in sorted(
        ended.items())) + f"; {late} ended by themselves before"


if __name__ == "__main__":
    sys.exit(campaign(play))
