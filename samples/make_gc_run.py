#!/usr/bin/env python3
"""Writes the sample pair gc_run.sli and gc_run.rpt: a 20-minute gas chromatogram of nine alkanes, as
a flame ionisation detector would have seen it, in stored counts of which 1,000 make a millivolt."""

import math
import random
import struct

INTERVAL_MS = 250
POINTS = 4800
SCALE = 0.001

# name, retention time in minutes, height in counts, width (sigma) in minutes, amount in ug/mL
PEAKS = [
    ("Hexane", 2.41, 84200, 0.022, 10.3),
    ("Heptane", 3.66, 91300, 0.024, 10.1),
    ("Octane", 5.27, 96800, 0.027, 10.2),
    ("Nonane", 7.05, 99500, 0.029, 9.9),
    ("Decane", 8.87, 101700, 0.031, 10.0),
    ("Undecane", 10.64, 100900, 0.033, 10.1),
    ("Dodecane", 12.35, 98700, 0.034, 9.8),
    ("Tridecane", 14.02, 95100, 0.036, 10.0),
    ("Tetradecane", 15.61, 90600, 0.038, 9.7),
]


def signal():
    noise = random.Random(20040114)
    values = []
    for i in range(POINTS):
        minute = i * INTERVAL_MS / 60000
        value = 1200 + 900 / (1 + math.exp(-(minute - 11) / 1.6)) + noise.gauss(0, 18)
        for _, retention, height, sigma, _ in PEAKS:
            value += height * math.exp(-0.5 * ((minute - retention) / sigma) ** 2)
        values.append(value)
    return values


def put(image, offset, form, *values):
    struct.pack_into("<" + form, image, offset, *values)


def slice_file(values):
    image = bytearray(2048)
    put(image, 0, "Iff", len(values), min(values), max(values))
    put(image, 12, "h", INTERVAL_MS)
    put(image, 14, "21s", b"Alkanes C6-C14")
    put(image, 35, "11s", b"14.01.2004")
    put(image, 46, "6s", b"09:05")
    put(image, 53, "hh", 1, 7)
    put(image, 69, "18s", b"M. Okafor")
    put(image, 112, "H", 1536)
    put(image, 1806, "10s", b"mV")
    put(image, 1816, "dH", SCALE, 2)
    return bytes(image) + struct.pack(f"<{len(values)}f", *values)


def report_file():
    count = len(PEAKS)
    image = bytearray(352 + 2 * count + 114 * count)
    put(image, 0, "H", 8213)
    put(image, 135, "ii", 288, 64 + 116 * count)
    put(image, 288, "11s6s", b"14.01.2004", b"09:05")
    put(image, 348, "hh", count, count)
    # mV times seconds under a Gaussian
    areas = [p[2] * SCALE * p[3] * 60 * math.sqrt(2 * math.pi) for p in PEAKS]
    for i, (name, retention, height, sigma, amount) in enumerate(PEAKS):
        at = 352 + 2 * count + 114 * i
        start, end = retention - 3.5 * sigma, retention + 3.5 * sigma
        percent = 100 * areas[i] / sum(areas)
        put(image, at, "H", i + 1)
        put(image, at + 4, "fff", retention, areas[i], height * SCALE)
        put(image, at + 16, "fff", start, end, percent)
        put(image, at + 32, "18s", name.encode())
        put(image, at + 50, "ff", start, end)
        put(image, at + 62, "f", percent)
        put(image, at + 78, "f", amount)
    return bytes(image)


with open("gc_run.sli", "wb") as out:
    out.write(slice_file(signal()))
with open("gc_run.rpt", "wb") as out:
    out.write(report_file())
