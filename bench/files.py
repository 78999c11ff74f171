"""Makes the files that the programs are timed on: runs and pairs of any size, field by field.

usage: files.py STEM POINTS PEAKS [CHANNELS]

With CHANNELS it makes a run, else a pair."""

import array
import math
import struct
import sys

MILLION = 1_000_000


def signal(points):
    """Peaks on a drifting baseline with some noise; a stretch of a million points, repeated."""
    stretch = array.array("f")
    noise = 1
    for i in range(min(points, MILLION)):
        noise = noise * 1103515245 + 12345 & 0x7FFFFFFF
        x = (i % 5000 - 2500) / 200
        stretch.append(100 * math.exp(-x * x) + i * 1e-5 + noise * 1e-10)
    samples = array.array("f")
    while len(samples) < points:
        samples.extend(stretch[: points - len(samples)])
    return samples


def field(record, offset, layout, value):
    struct.pack_into("<" + layout, record, offset, value)


def write_pair(stem, points, peaks):
    samples = signal(points)
    head = bytearray(2048)
    for offset, layout, value in (
            (0, "I", points), (4, "f", min(samples)), (8, "f", max(samples)), (12, "h", 100),
            (14, "21s", b"Bench sample"), (35, "11s", b"12.10.2005"), (46, "6s", b"09:15"),
            (69, "18s", b"J. Lindqvist"), (112, "H", 0x0600), (1806, "10s", b"mAU"),
            (1816, "d", 1.0)):
        field(head, offset, layout, value)
    with open(stem + ".sli", "wb") as slice_file:
        slice_file.write(head)
        samples.tofile(slice_file)

    report = bytearray(352 + 2 * peaks + 114 * peaks)
    for offset, layout, value in (
            (0, "H", 0x2015), (135, "i", 288), (139, "i", len(report) - 288),
            (288, "11s", b"12.10.2005"), (299, "6s", b"09:15"), (348, "h", peaks),
            (350, "h", peaks)):
        field(report, offset, layout, value)
    for i in range(peaks):
        record = 352 + 2 * peaks + 114 * i
        field(report, record, "H", i + 1)
        field(report, record + 32, "18s", b"Peak %d" % i)
        for offset in (4, 8, 12, 16, 20, 24, 50, 54, 62, 78):
            field(report, record + offset, "f", i + offset / 10)
    with open(stem + ".rpt", "wb") as report_file:
        report_file.write(report)


def write_run(stem, points, peaks, channels):
    samples = signal(points)
    head = bytearray(308)
    for offset, layout, value in (
            (0, "f", 5.03), (70 + 104, "64s", b"J. Lindqvist"), (70 + 168, "d", 38637.4),
            (70 + 204, "30s", b"Bench sample"), (306, "h", channels)):
        field(head, offset, layout, value)
    channel = bytearray(110)
    for offset, layout, value in (
            (52, "i", points), (56, "h", 100), (58, "d", 0.5), (66, "20s", b"mAU"),
            (102, "f", min(samples)), (106, "f", max(samples))):
        field(channel, offset, layout, value)
    results = bytearray(6 + 24 * peaks + 2)
    field(results, 2, "h", peaks)
    for i in range(peaks):
        for column in range(6):
            field(results, 6 + 24 * i + 4 * column, "f", i + column / 10)
    with open(stem + ".run", "wb") as run_file:
        run_file.write(head)
        for _ in range(channels):
            run_file.write(channel)
            samples.tofile(run_file)
        for _ in range(channels):
            run_file.write(results)
        run_file.write(bytes(2 + 256 + 1620))  # no annotations, an empty time table


if __name__ == "__main__":
    numbers = [int(word) for word in sys.argv[2:]]
    (write_pair if len(numbers) == 2 else write_run)(sys.argv[1], *numbers)
