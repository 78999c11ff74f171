#!/usr/bin/env python3
"""Writes hplc_run.cdl, the text form of the sample ANDI file: a 20-minute HPLC run of eleven
phenolic compounds, as a UV detector would have seen it. Then

    ncgen -k classic -o hplc_run.cdf hplc_run.cdl

makes the file itself. The signal is a sum of tailing peaks (a Gaussian front, a wider Gaussian
back) on a baseline that drifts with the gradient and carries noise."""

import math
import random

INTERVAL = 0.2  # seconds
POINTS = 6000

# name, retention time in seconds, height in mAU, width (sigma) in seconds, tailing, amount in mg/L
PEAKS = [
    ("Gallic acid", 148.3, 212.6, 3.1, 1.25, 25.08),
    ("Protocatechuic acid", 231.9, 148.2, 3.6, 1.20, 24.61),
    ("Catechin", 322.4, 74.9, 4.0, 1.18, 49.37),
    ("Chlorogenic acid", 389.0, 187.3, 4.2, 1.15, 50.22),
    ("Caffeic acid", 441.7, 301.8, 4.4, 1.12, 24.95),
    ("Epicatechin", 497.2, 66.1, 4.6, 1.14, 50.90),
    ("p-Coumaric acid", 583.5, 366.4, 4.7, 1.10, 25.13),
    ("Ferulic acid", 654.8, 289.5, 4.9, 1.10, 24.70),
    ("Rutin", 742.1, 121.7, 5.0, 1.16, 51.44),
    ("Quercetin", 921.6, 158.8, 5.4, 1.22, 25.36),
    ("Kaempferol", 1034.9, 173.4, 5.7, 1.19, 24.88),
]


def peak_at(time, retention, height, sigma, tailing):
    width = sigma if time < retention else sigma * tailing
    return height * math.exp(-0.5 * ((time - retention) / width) ** 2)


def signal():
    noise = random.Random(20051012)
    values = []
    for i in range(POINTS):
        time = i * INTERVAL
        drift = 0.4 + 6.5 / (1.0 + math.exp(-(time - 640.0) / 160.0))
        wave = 0.15 * math.sin(time / 47.0)
        peaks = sum(peak_at(time, *peak[1:5]) for peak in PEAKS)
        values.append(drift + wave + peaks + noise.gauss(0.0, 0.06))
    return values


def number(value):
    text = "%.9g" % value
    return (text if "." in text or "e" in text else text + ".") + "f"


def row(values, per_line=8):
    values = list(values)
    lines = [", ".join(values[i : i + per_line]) for i in range(0, len(values), per_line)]
    return ",\n    ".join(lines)


def main():
    values = signal()
    areas = [p[2] * p[3] * (1.0 + p[4]) / 2.0 * math.sqrt(2.0 * math.pi) for p in PEAKS]
    columns = {
        "peak_retention_time": [p[1] for p in PEAKS],
        "peak_amount": [p[5] for p in PEAKS],
        "peak_start_time": [p[1] - 3.5 * p[3] for p in PEAKS],
        "peak_end_time": [p[1] + 3.5 * p[3] * p[4] for p in PEAKS],
        "peak_area": areas,
        "peak_area_percent": [100.0 * area / sum(areas) for area in areas],
        "peak_height": [p[2] for p in PEAKS],
    }
    scalars = {
        "detector_maximum_value": max(values),
        "detector_minimum_value": min(values),
        "actual_run_time_length": POINTS * INTERVAL,
        "actual_delay_time": 0.0,
        "actual_sampling_interval": INTERVAL,
    }
    attributes = {
        "dataset_completeness": "C1+C2",
        "aia_template_revision": "1.0",
        "netcdf_revision": "2.3",
        "languages": "English only",
        "dataset_date_time_stamp": "20051012094512+0200",
        "injection_date_time_stamp": "20051012083437+0200",
        "experiment_title": "Phenolic acids and flavonoids, gradient A",
        "operator_name": "A. Lindqvist",
        "separation_experiment_type": "liquid chromatography",
        "source_file_reference": "hplc_run",
        "sample_name": "Mixed standard 25",
        "sample_id": "STD-25",
        "detector_unit": "mAU",
        "detection_method_name": "UV 280 nm",
        "detector_name": "UV",
        "retention_unit": "seconds",
    }
    with open("hplc_run.cdl", "w", encoding="ascii") as out:
        print("netcdf hplc_run {\ndimensions:", file=out)
        for width in (2, 4, 8, 16, 32, 64, 128, 255):
            print(f"\t_{width}_byte_string = {width} ;", file=out)
        print(f"\tpoint_number = {POINTS} ;\n\tpeak_number = {len(PEAKS)} ;", file=out)
        print("\terror_number = 1 ;\nvariables:", file=out)
        for name in scalars:
            print(f"\tfloat {name} ;", file=out)
        print("\tfloat ordinate_values(point_number) ;", file=out)
        print('\t\tordinate_values:uniform_sampling_flag = "Y" ;', file=out)
        print('\t\tordinate_values:autosampler_position = "2-17" ;', file=out)
        for name in columns:
            print(f"\tfloat {name}(peak_number) ;", file=out)
        print("\tchar peak_name(peak_number, _32_byte_string) ;\n", file=out)
        for name, text in attributes.items():
            print(f'\t:{name} = "{text}" ;', file=out)
        print("data:\n", file=out)
        for name, value in scalars.items():
            print(f" {name} = {number(value)} ;", file=out)
        print(f" ordinate_values =\n    {row(map(number, values))} ;", file=out)
        for name, column in columns.items():
            print(f" {name} =\n    {row(map(number, column))} ;", file=out)
        names = row((f'"{peak[0]}"' for peak in PEAKS), 1)
        print(f" peak_name =\n    {names} ;\n}}", file=out)


main()
