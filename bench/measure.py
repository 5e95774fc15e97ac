"""Runs one command: measure.py SECONDS COMMAND... prints its status, wall and processor seconds, and peak KiB.

A program of its own because Linux counts what a process held before it became another program: its parent
must be small. Whoever takes longer than SECONDS is ended.
"""
import os
import signal
import sys
import time

nowhere = os.open(os.devnull, os.O_RDWR)
streams = [(os.POSIX_SPAWN_DUP2, nowhere, stream) for stream in (0, 1, 2)]
start = time.perf_counter()
child = os.posix_spawn(sys.argv[2], sys.argv[2:], os.environ, file_actions=streams)
# Some programs never end on input that they were not made for.
signal.signal(signal.SIGALRM, lambda *_: os.kill(child, signal.SIGKILL))
signal.alarm(int(sys.argv[1]))
_, status, usage = os.wait4(child, 0)
elapsed = time.perf_counter() - start
print(os.waitstatus_to_exitcode(status), elapsed, usage.ru_utime + usage.ru_stime, usage.ru_maxrss)
