"""What the scripts that measure whole programs share."""

import os
import subprocess
import sys
import time


def measure(command, environment=None):
    """Seconds of a process, and the largest resident size of it in bytes."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, env=environment)
    _, status, usage = os.wait4(process.pid, 0)
    seconds = time.perf_counter() - start
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{' '.join(command)}: exit code {process.returncode}")
    return seconds, usage.ru_maxrss * 1024


def time_text(seconds):
    return f"{seconds:.2f} s" if seconds >= 1 else f"{seconds * 1e3:.0f} ms"


def size_text(size):
    return f"{size / 1e6:.0f} MB"
