"""What a process takes."""

import os
import subprocess
import sys
import time


def run(command):
    """Processor time and wall time in seconds and peak memory in bytes of one process, with those
    that it waits for; the memory is that of the largest."""
    begin = time.monotonic()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"{' '.join(command)} failed")
    return (usage.ru_utime + usage.ru_stime, time.monotonic() - begin, usage.ru_maxrss * 1024)
