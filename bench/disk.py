#!/usr/bin/env python3
"""Times the library and the other programs on long signals whose files are on a disk, and prints a
table with the worst round beside the median.

usage: disk.py PROGRAMS FOLDER [--rounds N]"""

import statistics

import compare
from tables import print_table


def median_and_worst(values):
    return f"{statistics.median(values) * 1000:.0f} | {max(values) * 1000:.0f}"


def rows_of(work, figures):
    for name, each in figures.items():
        yield (f"| {work.name}, {work.direction} | {name} | {median_and_worst(each.processor)} | "
               f"{median_and_worst(each.wall)} |")


def main():
    parser = compare.options_of_all()
    parser.set_defaults(rounds=24)
    options = parser.parse_args()
    options.only = "large"
    programs = compare.programs_in(options.programs)
    compare.make_folder(options.files)
    works = [work for work in compare.works() if work.name == options.only]
    measured = [(work, compare.measured_work(work, options, programs)) for work in works]
    print_table(f"Long signals on a disk ({compare.file_system(options.files)}), {options.rounds} rounds:",
                "| Work | Program | Processor time, ms | worst | Wall time, ms | worst |",
                (row for each in measured for row in rows_of(*each)))


if __name__ == "__main__":
    main()
