"""A terminal that tests look at: a tmux server of its own with one window.

    with Terminal(folder, columns=60, rows=20) as terminal:
        terminal.type("genostat qc reads/")
        terminal.wait_for("Samples")

Nothing waits for a fixed time: every wait polls until what it waits for is there, and fails with the screen when
that takes too long.
"""
import os
import pathlib
import re
import shlex
import subprocess
import tempfile
import time

# A loaded machine may take its time; a test that passes does not.
DEADLINE = float(os.environ.get("GENOSTAT_TEST_DEADLINE", "60"))
POLL = 0.02


class TerminalError(AssertionError):
    pass


class Terminal:
    """A bash with the prompt "$ " in `folder`. `environment` is set beside the inherited one."""

    count = 0

    def __init__(self, folder, columns=80, rows=24, environment=None):
        Terminal.count += 1
        self.socket = f"genostat-{os.getpid()}-{Terminal.count}"
        self.columns, self.rows = columns, rows
        # Paths of sockets must be short.
        self.sockets = tempfile.TemporaryDirectory(prefix="tmux-")
        self.environment = dict(os.environ, TMUX_TMPDIR=self.sockets.name, LC_ALL="C.UTF-8")
        for name in ("TMUX", "COLUMNS", "LINES", "NO_COLOR", "PROMPT_COMMAND"):
            self.environment.pop(name, None)
        variables = {"PS1": "$ ", "HISTFILE": "", "LC_ALL": "C.UTF-8", **(environment or {})}
        # Set after whatever shell tmux starts commands with, which may have ideas of its own.
        settings = " ".join(shlex.quote(f"{name}={value}") for name, value in variables.items())
        self.tmux("new-session", "-d", "-x", str(columns), "-y", str(rows), "-c", str(folder),
                  f"exec env {settings} bash --norc --noprofile")
        try:
            self.tmux("set-option", "-g", "remain-on-exit", "on")
            self.wait_for(r"^\$ ?$")
        except BaseException:
            self.close()
            raise

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def tmux(self, *arguments):
        call = ["tmux", "-L", self.socket, "-f", "/dev/null", *arguments]
        done = subprocess.run(call, env=self.environment, capture_output=True, text=True, timeout=DEADLINE)
        if done.returncode != 0:
            raise TerminalError(f"{shlex.join(call)}: {done.stderr.strip()}")
        return done.stdout

    def close(self):
        subprocess.run(["tmux", "-L", self.socket, "kill-server"], env=self.environment, capture_output=True,
                       timeout=DEADLINE)
        self.sockets.cleanup()

    def type(self, text, enter=True):
        self.tmux("send-keys", "-l", "--", text)
        if enter:
            self.keys("Enter")

    def keys(self, *names):
        """Keys by tmux's names: "C-c", "Tab", "Up"."""
        self.tmux("send-keys", *names)

    def clear(self):
        """An empty screen with a prompt, and nothing above it."""
        self.keys("C-l")
        self.wait_until(lambda screen: re.fullmatch(r"\s*\$\s*", screen), "nothing but a prompt")
        self.tmux("clear-history")

    def resize(self, columns, rows):
        self.columns, self.rows = columns, rows
        self.tmux("resize-window", "-x", str(columns), "-y", str(rows))

    def screen(self, escapes=False):
        """What is seen, without the empty lines below; with `escapes` also its colours."""
        text = self.tmux("capture-pane", "-p", *(["-e"] if escapes else []))
        return text.rstrip("\n")

    def everything(self):
        """What was shown since the beginning, or since the screen was cleared; lines that the terminal broke are whole."""
        return self.tmux("capture-pane", "-p", "-J", "-S", "-").rstrip("\n")

    def wait_until(self, condition, wanted):
        """Polls until `condition` of the screen is true, and returns the screen."""
        end = time.monotonic() + DEADLINE
        while True:
            screen = self.screen()
            if condition(screen):
                return screen
            if time.monotonic() > end:
                raise TerminalError(f"not seen within {DEADLINE:.0f} s: {wanted}\n{framed(screen)}")
            time.sleep(POLL)

    def wait_for(self, pattern):
        return self.wait_until(lambda screen: re.search(pattern, screen, re.MULTILINE), pattern)

    def wait_without(self, pattern):
        return self.wait_until(lambda screen: not re.search(pattern, screen, re.MULTILINE), "no " + pattern)

    def run(self, command):
        """Runs a shell's command to its end, and returns its exit status."""
        self.type(command + '; echo "[status $?]"')
        return self.wait_for_status()

    def wait_for_status(self):
        screen = self.wait_for(r"^\[status \d+\]\n\$ ?\Z")
        return int(re.findall(r"^\[status (\d+)\]$", screen, re.MULTILINE)[-1])


def framed(screen):
    return "\n".join("  | " + line for line in screen.split("\n"))


def processes_naming(folder):
    """The processes that have this folder in their arguments, ids and command lines."""
    found = []
    for entry in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            command = (entry / "cmdline").read_bytes().replace(b"\0", b" ").decode("utf-8", "replace")
        except OSError:
            continue
        if str(folder) in command:
            found.append((int(entry.name), command))
    return found
