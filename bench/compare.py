#!/usr/bin/env python3
"""Times the library against other programs that do the same work, and the command on long signals,
and prints tables: what was aimed at and what came of it, and all figures.

usage: compare.py PROGRAMS FILES [--rounds N] [--only TEXT]

PROGRAMS is the folder of the built programs, FILES one for the inputs, which are made where they are
missing. The programs take turns. Processor time is user and system time together; what a program
takes to start and end without any work is taken off. Memory is the peak of the resident set."""

import argparse
import atexit
import itertools
import os
import shutil
import statistics
import subprocess
import sys
from dataclasses import dataclass, field
from pathlib import Path

import files
from process import run
from tables import aim_and_result, print_table, spread

SAMPLES = Path(__file__).resolve().parent.parent / "samples"
INPUTS = {"to-pair": [".cdf"], "to-andi": [".sli", ".rpt"], "run-to-andi": [".run"]}
OUTPUTS = {"to-pair": [".sli", ".rpt"], "to-andi": [".cdf"],
           "run-to-andi": [f"{channel}.cdf" for channel in range(1, 10)]}
unique = itertools.count()
PROGRAMS = ["korlit", "netcdf", "floor"]


@dataclass
class Aims:
    """What processor time may come to in relation to the programs', and memory to the signal's."""
    netcdf: float = None
    floor: float = None
    memory: float = None


@dataclass
class Work:
    name: str
    direction: str
    conversions: int
    points: int = 0
    peaks: int = 0
    channels: int = 1
    sample: str = ""
    peers: tuple = ("netcdf", "floor")
    aims: Aims = None
    numbers: list = field(default_factory=list)  # the rest of the programs' command line

    def stem(self, folder):
        return str(folder / f"{self.name.replace(' ', '-')}-{self.direction}")


def works():
    small, large = Aims(netcdf=0.65, floor=1.25), Aims(netcdf=0.65, floor=1.50, memory=2.05)
    yield Work("small", "to-pair", 2000, sample="hplc_run", aims=small)
    yield Work("small", "to-andi", 2000, sample="gc_run", aims=small)
    yield Work("small", "run-to-andi", 2000, channels=3, sample="dad_run", peers=("floor",))
    for direction in ("to-pair", "to-andi"):
        yield Work("570 peaks", direction, 1000, points=5000, peaks=570)
        yield Work("large", direction, 1, points=50 * files.MILLION, peaks=10, aims=large)
    yield Work("nine channels", "run-to-andi", 4, points=files.MILLION, peaks=10, channels=9,
               peers=("floor",), aims=Aims(floor=1.25))
    for direction in ("to-pair", "to-andi"):
        for points in (1, 2, 4, 8, 16):
            yield Work(f"{points} million", direction, 4, points=points * files.MILLION, peaks=10,
                       peers=())


def line_of(program, work, folder, conversions=None):
    """The command line of one of the programs; all conversions if no number is said."""
    return [program, work.direction, work.stem(folder),
            str(work.conversions if conversions is None else conversions),
            *(str(number) for number in work.numbers)]


def outputs(work, folder):
    for i in range(work.conversions):
        for extension in OUTPUTS[work.direction]:
            yield Path(f"{work.stem(folder)}-{i}{extension}")


def clear_outputs(work, folder):
    """Removes few files, and empties and moves many out of the way until all is done: a file system
    that has just lost thousands of files is slow to make new ones."""
    aside = folder / "aside"
    aside.mkdir(exist_ok=True)
    for path in outputs(work, folder):
        if path.exists() and work.conversions < 100:
            path.unlink()
        elif path.exists():
            os.truncate(path, 0)
            path.rename(aside / f"{next(unique)}")


def andi_variables(path):
    """Offset and size of the data of each variable of an ANDI file."""
    with open(path, "rb") as andi_file:
        head = memoryview(andi_file.read(1 << 16))
    place = 8
    sizes = {1: 1, 2: 1, 3: 2, 4: 4, 5: 4, 6: 8}

    def integer():
        nonlocal place
        place += 4
        return int.from_bytes(head[place - 4:place], "big")

    def padded(size):
        nonlocal place
        place += (size + 3) // 4 * 4
        return bytes(head[place - (size + 3) // 4 * 4:][:size])

    def skip_attributes():
        for _ in range((integer(), integer())[1]):
            padded(integer())
            padded(sizes[integer()] * integer())

    for _ in range((integer(), integer())[1]):
        padded(integer()), integer()
    skip_attributes()
    variables = {}
    for _ in range((integer(), integer())[1]):
        name = padded(integer()).decode()
        for _ in range(integer()):
            integer()
        skip_attributes()
        _, size, begin = integer(), integer(), integer()
        variables[name] = (begin, size)
    return variables


def make_first_input(work, folder, programs):
    stem = f"{work.stem(folder)}-0"
    if work.sample:
        for extension in INPUTS[work.direction]:
            shutil.copy(SAMPLES / (work.sample + extension), stem + extension)
    else:
        shape = [work.points, work.peaks]
        if work.direction == "run-to-andi":
            shape.append(work.channels)
        # In a process of its own: a child's peak memory starts with what its parent has.
        subprocess.run([sys.executable, files.__file__, stem, *map(str, shape)], check=True)
        if work.direction == "to-pair":
            subprocess.run([programs["korlit"], "to-andi", work.stem(folder), "1", *["0"] * 6],
                           check=True)


def prepare(work, folder, programs):
    """Makes the inputs, and works out what the programs are told by looking at one conversion."""
    first = f"{work.stem(folder)}-0"
    if not all(Path(first + extension).exists() for extension in INPUTS[work.direction]):
        make_first_input(work, folder, programs)
    for i in range(1, work.conversions):
        for extension in INPUTS[work.direction]:
            path = Path(f"{work.stem(folder)}-{i}{extension}")
            if not path.exists():
                shutil.copy(first + extension, path)
    clear_outputs(work, folder)
    subprocess.run([programs["korlit"], work.direction, work.stem(folder), "1", *["0"] * 6],
                   check=True)
    slice_data, channel_head, run_head = 2048, 110, 308
    if work.direction == "to-pair":
        signal_in, signal_size = andi_variables(first + ".cdf")["ordinate_values"]
        signal_out, signal_file = slice_data, first + ".sli"
        peak_bytes = os.path.getsize(first + ".rpt") - 352
    else:
        signal_file = first + OUTPUTS[work.direction][0]
        signal_out, signal_size = andi_variables(signal_file)["ordinate_values"]
        is_pair = work.direction == "to-andi"
        signal_in = slice_data if is_pair else run_head + channel_head
        peak_bytes = os.path.getsize(first + ".rpt") - 352 if is_pair else 0
    work.points, work.peaks = signal_size // 4, peak_bytes // 116
    work.numbers = [work.channels, work.points, work.peaks, signal_in, signal_out,
                    os.path.getsize(signal_file)]
    work.sizes = {path.name: path.stat().st_size for path in outputs(work, folder) if path.exists()}
    clear_outputs(work, folder)


@dataclass
class Figures:
    processor: list = field(default_factory=list)
    wall: list = field(default_factory=list)
    memory: list = field(default_factory=list)


def take_turns(lines, rounds, clear):
    """The figures of each of the command lines, by name; they take turns."""
    names = list(lines)
    figures = {name: Figures() for name in names}
    for turn in range(rounds):
        first = turn % len(names)
        for name in names[first:] + names[:first]:
            processor, wall, memory = run(lines[name])
            figures[name].processor.append(processor)
            figures[name].wall.append(wall)
            figures[name].memory.append(memory)
            clear()
    return figures


def measure(work, folder, programs, rounds):
    """The figures of each program; times are those of one conversion."""
    names = ["korlit", *work.peers]
    lines = {name: line_of(programs[name], work, folder) for name in names}
    figures = take_turns(lines, rounds, lambda: clear_outputs(work, folder))
    for name, each in figures.items():
        start_up = statistics.median(run(line_of(programs[name], work, folder, 0))[0] for _ in range(5))
        each.processor = [(seconds - start_up) / work.conversions for seconds in each.processor]
        each.wall = [seconds / work.conversions for seconds in each.wall]
    return figures


def rows_of(work, figures):
    own = statistics.median(figures["korlit"].processor)
    for name, each in figures.items():
        ratio = own / statistics.median(each.processor)
        memory = statistics.median(each.memory) / files.MILLION
        yield (f"| {work.name}, {work.direction} | {name} | {spread(each.processor, 1000, '.3f')} "
               f"| {spread(each.wall, 1000, '.3f')} | {memory:.1f} | "
               f"{'' if name == 'korlit' else f'{ratio:.2f}'} |")


def row_of_aims(work, figures):
    own = statistics.median(figures["korlit"].processor)
    ratios = {name: own / statistics.median(figures[name].processor) for name in work.peers}
    memory = statistics.median(figures["korlit"].memory) / (4 * max(work.points, 1))
    cells = (aim_and_result(work.aims.netcdf, ratios.get("netcdf")),
             aim_and_result(work.aims.floor, ratios.get("floor")),
             aim_and_result(work.aims.memory, memory))
    return f"| {work.name}, {work.direction} | {' | '.join(cells)} |"


COMMANDS = (("to-pair", ".cdf", ["convert", "--force", "--output-dir", "{folder}/converted"]),
            ("to-andi", ".sli", ["convert", "--force", "--output-dir", "{folder}/converted"]),
            ("to-pair", ".cdf", ["info"]), ("to-andi", ".sli", ["info"]),
            ("to-pair", ".cdf", ["plot", "-o", "{folder}/chart.svg"]))


def rows_of_command(command, folder, rounds):
    """What the command takes on the large work's inputs, which are there."""
    for direction, extension, words in COMMANDS:
        file = f"{folder}/large-{direction}-0{extension}"
        line = [command, *(word.format(folder=folder) for word in words), file]
        times, walls, memory = zip(*(run(line) for _ in range(rounds)))
        yield (f"| `{words[0]}`, {extension} | {spread(times, 1, '.2f')} | {spread(walls, 1, '.2f')} "
               f"| {statistics.median(memory) / files.MILLION:.1f} |")
    shutil.rmtree(folder / "converted", ignore_errors=True)


def measured_work(work, options, programs):
    print(f"Measuring {work.name}, {work.direction}", file=sys.stderr)
    work.peers = tuple(name for name in work.peers if name in programs)
    prepare(work, options.files, programs)
    return measure(work, options.files, programs, options.rounds)


def options_of_all():
    parser = argparse.ArgumentParser()
    parser.add_argument("programs", type=Path)
    parser.add_argument("files", type=Path)
    parser.add_argument("--rounds", type=int, default=7)
    return parser


def programs_in(folder):
    """The paths of the programs that are there: without netCDF one is missing."""
    paths = {name: (folder / f"{name}_program").resolve() for name in PROGRAMS}
    return {name: str(path) for name, path in paths.items() if path.exists()}


def make_folder(folder):
    folder.mkdir(parents=True, exist_ok=True)
    atexit.register(shutil.rmtree, folder / "aside", ignore_errors=True)


def file_system(folder):
    name = subprocess.run(["stat", "-f", "-c", "%T", folder], capture_output=True, text=True, check=True)
    return name.stdout.strip()


def main():
    parser = options_of_all()
    parser.add_argument("--only", default="")
    options = parser.parse_args()
    programs = programs_in(options.programs)
    make_folder(options.files)
    measured = [(work, measured_work(work, options, programs))
                for work in works() if options.only in f"{work.name}, {work.direction}"]
    print(f"Medians of {options.rounds} rounds; files in {file_system(options.files)}.\n")
    print_table("What was aimed at, and what came of it:",
                "| Work | netcdf, aim | is | floor, aim | is | memory / signal, aim | is |",
                (row_of_aims(*each) for each in measured if each[0].aims))
    print_table("All figures:", "| Work | Program | Processor time, ms | Wall time, ms | Memory, MB "
                "| korlit / program |", (row for each in measured for row in rows_of(*each)))
    if not options.only:
        print_table("The command on the large files:",
                    "| Command | Processor time, s | Wall time, s | Memory, MB |",
                    rows_of_command(str(options.programs / "korlit"), options.files, options.rounds))


if __name__ == "__main__":
    main()
