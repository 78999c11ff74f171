"""What a process takes."""

import os
import subprocess
import sys
import tempfile
import time


def run(command):
    """Processor time and wall time in seconds and peak memory in bytes of one process, with those
    that it waits for; the memory is that of the largest. The system counts the memory of whoever
    starts a process as that process's own: it is asked of a small one."""
    with tempfile.NamedTemporaryFile("r") as memory:
        begin = time.monotonic()
        process = subprocess.Popen(["time", "--format=%M", f"--output={memory.name}", *command],
                                   stdout=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.monotonic() - begin
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != 0:
            sys.exit(f"{' '.join(command)} failed")
        return (usage.ru_utime + usage.ru_stime, wall, int(memory.read()) * 1024)
