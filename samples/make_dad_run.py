#!/usr/bin/env python3
"""Writes the sample run dad_run.run: 15 minutes of three wavelengths of a diode-array detector, and
dad_run1.cdl to dad_run3.cdl, the text form of the ANDI files that it becomes as dad_run.run two hours
ahead of GMT. Everything is worked out with plain arithmetic, so that any machine writes the same."""

import random
import struct
from types import SimpleNamespace

INTERVAL_MS = 500
POINTS = 1800
VERSION = 5.03
START = 38637 + (9 * 3600 + 15 * 60 + 30) / 86400  # 12 October 2005, 09:15:30
STAMP, INJECTION = "20051012091530+0200", "12 Oct 2005  09:15 AM"
SAMPLE, OPERATOR, RACK, VIAL = "Herbal extract 7", "J. Lindqvist", 2, 31

# name, start, end: the first window that holds a retention time names the peak.
WINDOWS = [
    ("Gallic acid", 1.9, 2.5),
    ("Catechin", 4.0, 4.5),
    ("Caffeine", 4.3, 5.0),
    ("Epigallocatechin gallate (EGCG), main component", 6.0, 6.6),
    ("Rutin", 9.0, 9.6),
]
WINDOWS_2 = [("Phenolic acid", 1.0, 3.0), ("Flavonoid", 8.5, 12.0)]

# Per wavelength: scale factor, window table, clusters of peaks that touch each other. A peak is its
# start, apex and end as sample indexes, its height in stored counts and its amount.
CHANNELS = [
    (0.001, 0, [[(232, 262, 300, 41200, 1.25)],
                [(480, 508, 527, 88400, 4.5), (527, 550, 596, 62300, 3.75)],
                [(720, 755, 802, 120900, 8.0)],
                [(1080, 1116, 1160, 35100, 0.5)],
                [(1380, 1411, 1450, 9800, 0.0)]]),
    (0.0005, 1, [[(233, 262, 299, 20600, 1.25)],
                 [(1081, 1116, 1158, 60100, 0.5), (1158, 1190, 1240, 15400, 0.25)]]),
    (0.002, 0, [[(721, 755, 800, 33000, 8.0)]]),
]
UNIT = "mAU"
BASE, VALLEY = "B", "V"


def single(value):
    """The value as a 4-byte float holds it."""
    return struct.unpack("<f", struct.pack("<f", value))[0]


def minute(index):
    """The middle of the sampling interval behind a sample."""
    return single((index + 0.5) * INTERVAL_MS / 60000)


def signal(clusters, noise):
    values = []
    for i in range(POINTS):
        value = 500 + i / 4 + 400 * (sum(noise.random() for _ in range(4)) - 2)
        for start, apex, end, height, _ in (peak for cluster in clusters for peak in cluster):
            x = (i - apex) / (end - start) * 4
            shape = 1 / (1 + x * x / 4)
            value += height * shape * shape * shape * shape
        values.append(float(int(value)))
    return values


def name_of(retention, select):
    for name, start, end in WINDOWS_2 if select else WINDOWS:
        if single(start) <= retention <= single(end):
            return name[:31]
    return ""


def channel(scale, select, clusters, noise):
    samples = signal(clusters, noise)
    scaled = [single(sample * scale) for sample in samples]
    peaks, events = [], []
    for cluster in clusters:
        for i, (start, apex, end, height, amount) in enumerate(cluster):
            is_first, is_last = i == 0, i == len(cluster) - 1
            area = single(height * scale * (end - start) * INTERVAL_MS / 1000 * 0.3)
            peaks.append(SimpleNamespace(
                times=[minute(at) for at in (apex, start, end)], area=area,
                height=single(height * scale), amount=amount,
                name=name_of(minute(apex), select),
                baseline=(scaled[start], scaled[end]),
                codes=(BASE if is_first else VALLEY, BASE if is_last else VALLEY)))
            events += [(start, 1)] if is_first else []
            events += [(apex, 2), (end, 3 if is_last else 5)]
    return SimpleNamespace(scale=scale, select=select, samples=samples, scaled=scaled,
                           peaks=peaks, events=events)


def run_file(channels, filler):
    def reserved(size):
        return bytes(filler.randrange(256) for _ in range(size))

    def pack(form, *values):
        return struct.pack("<" + form, *values)

    def window(name, start, end):
        return pack("50sff", name.encode(), start, end) + reserved(620)

    out = pack("f", VERSION) + reserved(66)
    out += reserved(104) + pack("64sd", OPERATOR.encode(), START) + reserved(20)
    out += pack("hh", RACK, VIAL) + reserved(4) + pack("30s", SAMPLE.encode()) + reserved(2)
    out += pack("h", len(channels))
    for each in channels:
        out += reserved(52) + pack("ihd20s", POINTS, INTERVAL_MS, each.scale, UNIT.encode())
        out += reserved(16) + pack("ff", min(each.samples), max(each.samples))
        out += pack(f"{POINTS}f", *each.samples)
    for number, each in enumerate(channels):
        out += pack("hhh", each.select, len(each.peaks), len(each.events))
        for peak in each.peaks:
            out += pack("6f", *peak.times, peak.area, peak.height, peak.amount)
        for point, kind in each.events:
            out += pack("i", point) + reserved(12) + pack("i", kind)
        out += pack("h", number) + reserved(4 * number)
    out += pack("h", 2) + reserved(2 * 94) + reserved(256)
    out += reserved(1548) + pack("hBB", 3, len(WINDOWS), len(WINDOWS_2)) + reserved(68)
    out += reserved(3 * 1202)
    for each in WINDOWS + WINDOWS_2:
        out += window(*each)
    return out


def andi_text(number, each):
    def texts(values):
        return ", ".join(f'"{value}"' for value in values)

    def numbers(values):
        return ", ".join(repr(single(value)) for value in values)

    def times(index):
        return [peak.times[index] for peak in each.peaks]

    attributes = [
        ("dataset_completeness", "C1+C2"), ("aia_template_revision", "1.0"),
        ("netcdf_revision", "2.3"), ("languages", "English only"),
        ("injection_date_time_stamp", STAMP), ("HP_injection_time", INJECTION),
        ("experiment_title", SAMPLE), ("operator_name", OPERATOR),
        ("separation_experiment_type", "HPLC"), ("source_file_reference", "dad_run.run"),
        ("sample_name", SAMPLE), ("sample_id", ""), ("detector_unit", UNIT),
        ("detection_method_name", ""), ("detector_name", " "), ("retention_unit", "min"),
        ("error_log", "not implemented")]
    areas = [peak.area / 60 for peak in each.peaks]
    variables = [
        ("detector_maximum_value", "", [max(each.samples) * each.scale]),
        ("detector_minimum_value", "", [min(each.samples) * each.scale]),
        ("actual_run_time_length", "", [POINTS * INTERVAL_MS / 1000]),
        ("actual_delay_time", "", [0]),
        ("actual_sampling_interval", "", [INTERVAL_MS / 60000]),
        ("ordinate_values", "point_number", each.scaled),
        ("peak_retention_time", "peak_number", times(0)),
        ("peak_name", "_32_byte_string", [peak.name for peak in each.peaks]),
        ("peak_amount", "peak_number", [peak.amount for peak in each.peaks]),
        ("peak_start_time", "peak_number", times(1)),
        ("peak_end_time", "peak_number", times(2)),
        ("peak_area", "peak_number", areas),
        ("peak_area_percent", "peak_number", areas),
        ("peak_height", "peak_number", [peak.height for peak in each.peaks]),
        ("baseline_start_time", "peak_number", times(1)),
        ("baseline_start_value", "peak_number", [peak.baseline[0] for peak in each.peaks]),
        ("baseline_stop_time", "peak_number", times(2)),
        ("baseline_stop_value", "peak_number", [peak.baseline[1] for peak in each.peaks]),
        ("peak_start_detection_code", "_4_byte_string", [peak.codes[0] for peak in each.peaks]),
        ("peak_stop_detection_code", "_4_byte_string", [peak.codes[1] for peak in each.peaks])]

    lines = [f"netcdf dad_run{number} {{", "dimensions:"]
    lines += [f"\t_{size}_byte_string = {size} ;" for size in (2, 4, 8, 16, 32, 64, 128, 255)]
    lines += [f"\tpoint_number = {POINTS} ;", f"\tpeak_number = {len(each.peaks)} ;",
              "\terror_number = 1 ;", "variables:"]
    for name, dimension, _ in variables:
        if "string" in dimension:
            lines.append(f"\tchar {name}(peak_number, {dimension}) ;")
        else:
            lines.append(f"\tfloat {name}{f'({dimension})' if dimension else ''} ;")
        if name == "ordinate_values":
            lines.append(f'\t\t{name}:uniform_sampling_flag = "Y\\000" ;')
            lines.append(f'\t\t{name}:autosampler_position = "{RACK}-{VIAL}\\000" ;')
    lines += [f'\t:{name} = "{text}\\000" ;' for name, text in attributes] + ["data:"]
    for name, dimension, values in variables:
        shown = texts(values) if "string" in dimension else numbers(values)
        lines.append(f"\t{name} = {shown} ;")
    return "\n".join(lines) + "\n}\n"


noise = random.Random(20051012)
channels = [channel(*each, noise) for each in CHANNELS]
with open("dad_run.run", "wb") as out:
    out.write(run_file(channels, random.Random(7)))
for number, each in enumerate(channels, 1):
    with open(f"dad_run{number}.cdl", "w", encoding="ascii") as out:
        out.write(andi_text(number, each))
