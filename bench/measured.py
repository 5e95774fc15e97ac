"""One command, run again and again by measure.py, and what it took."""
import pathlib
import statistics
import subprocess
import sys
from dataclasses import dataclass, field

MEGABYTE = 1e6
PATIENCE = 300  # seconds for one run


@dataclass
class Measured:
    """One command on one input, with what every round gave."""
    label: str
    command: list  # its first part is None for a program that is not there
    megabytes: float  # of text
    slow: bool = False  # one round says enough
    failure: str = ""
    seconds: list = field(default_factory=list)
    processor: list = field(default_factory=list)
    peak: list = field(default_factory=list)  # MB of memory

    def missing(self) -> bool:
        return self.command[0] is None

    def due(self, number: int) -> bool:
        return not self.failure and (number == 0 or not self.slow)

    def median(self) -> float:
        return statistics.median(self.seconds)

    def run(self, *launcher) -> None:
        """Once; `launcher` is a command that starts another one."""
        helper = [sys.executable, "-I", "-S", pathlib.Path(__file__).with_name("measure.py"), PATIENCE, *launcher]
        answer = subprocess.run([str(part) for part in helper + self.command], check=True, capture_output=True, text=True)
        status, seconds, processor, peak = map(float, answer.stdout.split())
        if status != 0:
            self.failure = "no end" if seconds >= PATIENCE else f"status {status:.0f}"
            return
        self.seconds.append(seconds)
        self.processor.append(processor)
        self.peak.append(peak * 1024 / MEGABYTE)
