"""A place of its own for the sessions of a campaign: folders, an environment, and what is left of them."""
import os
import pathlib
import random
import resource
import signal
import sys
import tempfile
import time


class Finding(AssertionError):
    pass


def check(condition, what):
    if not condition:
        raise Finding(what)


def wait_until(condition, seconds, what):
    end = time.monotonic() + seconds
    while not condition():
        check(time.monotonic() < end, f"not within {seconds:.0f} s: {what}")
        time.sleep(0.005)


class Place:
    """Processes are known by a variable in their environment, which they hand on whatever they do."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        for name in ("tmp", "out", "home"):
            (self.folder / name).mkdir()
        self.tmp, self.out, self.home = self.folder / "tmp", self.folder / "out", self.folder / "home"
        self.mark = f"GENOSTAT_SOAK={self.folder.name}"
        self.environment = {
            "PATH": "/usr/bin:/bin", "TMPDIR": str(self.tmp), "HOME": str(self.home), "TERM": "xterm",
            "LC_ALL": "C.UTF-8", "LANGUAGE": "en", "GENOSTAT_SOAK": self.folder.name,
            "UBSAN_OPTIONS": "print_stacktrace=1:halt_on_error=1"}

    def processes(self):
        found = {}
        for entry in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                if self.mark.encode() in (entry / "environ").read_bytes().split(b"\0"):
                    found[int(entry.name)] = (entry / "cmdline").read_bytes().replace(b"\0", b" ")
            except OSError:
                continue
        return found

    def check_no_process(self, seconds):
        wait_until(lambda: not self.processes(), seconds, f"no process left of {self.processes()}")

    def files(self, folder):
        return {str(path.relative_to(folder)): path for path in sorted(folder.rglob("*")) if not path.is_dir()}

    def check_tmp_is_empty(self):
        left = [str(path) for path in self.tmp.rglob("*")]
        check(not left, f"left in the temporary folder: {left}")

    def end_all(self):
        """Of what a finding leaves behind."""
        for process in self.processes():
            try:
                os.kill(process, signal.SIGKILL)
            except ProcessLookupError:
                continue


def campaign(play):
    """Runs play(place, programs, source, dice, time_left), which returns its counts as a text.

    The arguments are PROGRAMS SOURCE SECONDS SEED; the status is 1 when it finds something.
    """
    programs, source = (pathlib.Path(path).resolve() for path in sys.argv[1:3])
    end = time.monotonic() + float(sys.argv[3])
    seed = int(sys.argv[4])
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    # A shell without job control has its background ignore some, and sessions heed that.
    for number in (signal.SIGINT, signal.SIGQUIT, signal.SIGHUP, signal.SIGTERM):
        signal.signal(number, signal.default_int_handler if number == signal.SIGINT else signal.SIG_DFL)
    with tempfile.TemporaryDirectory(prefix="soak") as folder:
        place = Place(folder)
        try:
            print(play(place, programs, source, random.Random(seed), lambda: time.monotonic() < end), flush=True)
            return 0
        except Finding as finding:
            print(f"FINDING (seed {seed}): {finding}", file=sys.stderr, flush=True)
            return 1
        finally:
            place.end_all()
