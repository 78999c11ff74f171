#!/usr/bin/env python3
"""Times the command on thousands of small files against the library called in a loop, a shell loop
over the command, and a program on netCDF in a loop; then the planning of an archive. Prints tables.

usage: batches.py PROGRAMS FILES [--rounds N] [--archive COUNT]

All programs write beside their sources, take turns, and are measured as whole processes, with those
that they wait for. The shell loop is given fewer files."""

import dataclasses
import shlex
import shutil
import statistics
import subprocess
import sys

import compare
import files
from process import run
from tables import aim_and_result, print_table, spread

BATCH_FILES = 5000
SHELL_FILES = 250
FOLDER_FILES = 1000  # of the archive
PLANNING_AIMS = {"seconds": 2.0, "memory": 100.0}
TWO_WORKERS_AIM = 1.8


@dataclasses.dataclass
class Batch:
    work: compare.Work
    target: str  # what --to says
    aim: float   # the command's processor time in relation to the library's


def batches():
    for name, direction, sample, channels, target, aim in (
            ("ANDI files", "to-pair", "hplc_run", 1, "pair", 2.5),
            ("pairs", "to-andi", "gc_run", 1, "andi", 2.0),
            ("runs", "run-to-andi", "dad_run", 3, "andi", 1.5)):
        yield Batch(compare.Work(name, direction, BATCH_FILES, sample=sample, channels=channels),
                    target, aim)


def lines_of(batch, folder, programs, command):
    """The command lines by name."""
    work = batch.work
    convert = [command, "convert", "--to", batch.target]
    file = f"{work.stem(folder)}-$i{compare.INPUTS[work.direction][0]}"
    loop = (f"i=0; while [ $i -lt {SHELL_FILES} ]; do {shlex.join(convert)} {file} || exit; "
            "i=$((i + 1)); done")
    lines = {"library in a loop": compare.line_of(programs["korlit"], work, folder),
             "command, 1 worker": [*convert, "--jobs", "1", str(folder)],
             "command, --quiet": [*convert, "--jobs", "1", "--quiet", str(folder)],
             "command, 2 workers": [*convert, "--jobs", "2", str(folder)],
             "shell loop": ["sh", "-c", loop]}
    if "netcdf" in programs and work.direction != "run-to-andi":  # it knows no runs
        lines["netcdf in a loop"] = compare.line_of(programs["netcdf"], work, folder)
    return lines


def measured_batch(batch, options, programs):
    """The figures by the names of the command lines; times are those of one file."""
    print(f"Measuring {batch.work.name}", file=sys.stderr)
    folder = options.files / batch.work.direction
    compare.make_folder(folder)
    compare.prepare(batch.work, folder, programs)
    lines = lines_of(batch, folder, programs, str((options.programs / "korlit").resolve()))
    figures = compare.take_turns(lines, options.rounds,
                                 lambda: compare.clear_outputs(batch.work, folder))
    for name, each in figures.items():
        count = SHELL_FILES if name == "shell loop" else BATCH_FILES
        each.processor = [seconds / count for seconds in each.processor]
        each.wall = [seconds / count for seconds in each.wall]
    shutil.rmtree(folder)
    return figures


def ratio(figures, kind, first, second):
    return (statistics.median(getattr(figures[first], kind)) /
            statistics.median(getattr(figures[second], kind)))


def row_of_aims(batch, figures):
    processor = ratio(figures, "processor", "command, 1 worker", "library in a loop")
    quiet = ratio(figures, "processor", "command, --quiet", "library in a loop")
    faster = ratio(figures, "wall", "command, 1 worker", "command, 2 workers")
    return (f"| {batch.work.name} | {aim_and_result(batch.aim, processor)} | {quiet:.2f} | "
            f"{aim_and_result(TWO_WORKERS_AIM, faster, lambda aim, result: result >= aim)} |")


def rows_of(batch, figures):
    for name, each in figures.items():
        yield (f"| {batch.work.name} | {name} | {spread(each.processor, 1000, '.3f')} | "
               f"{spread(each.wall, 1000, '.3f')} | "
               f"{statistics.median(each.memory) / files.MILLION:.1f} | "
               f"{ratio(figures, 'processor', name, 'library in a loop'):.2f} |")


def make_archive(folder, count, programs):
    """ANDI files of few points, in folders, one as long as the other."""
    folder.mkdir(parents=True)
    stem = folder / "first"
    subprocess.run([sys.executable, files.__file__, f"{stem}-0", "250", "1"], check=True)
    subprocess.run([programs["korlit"], "to-andi", stem, "1", *["0"] * 6], check=True)
    content = (folder / "first-0.cdf").read_bytes()
    for path in folder.iterdir():
        path.unlink()
    for i in range(count):
        target = folder / f"{i // FOLDER_FILES}" / f"{i}.cdf"
        target.parent.mkdir(exist_ok=True)
        target.write_bytes(content)


def rows_of_planning(options, programs):
    print("Measuring the planning of an archive", file=sys.stderr)
    folder = options.files / "archive"
    make_archive(folder, options.archive, programs)
    line = [str(options.programs / "korlit"), "convert", "--dry-run", "--recursive", "--to", "pair",
            str(folder)]
    times, walls, memory = zip(*(run(line) for _ in range(options.rounds)))
    shutil.rmtree(folder)
    seconds = aim_and_result(PLANNING_AIMS["seconds"], statistics.median(walls))
    megabytes = aim_and_result(PLANNING_AIMS["memory"], statistics.median(memory) / files.MILLION)
    yield f"| {options.archive:,} | {spread(times, 1, '.2f')} | {seconds} | {megabytes} |"


def main():
    parser = compare.options_of_all()
    parser.add_argument("--archive", type=int, default=100_000)
    options = parser.parse_args()
    programs = compare.programs_in(options.programs)
    measured = [(batch, measured_batch(batch, options, programs)) for batch in batches()]
    print_table(f"Batches of {BATCH_FILES:,} small files, what was aimed at and what came of it:",
                "| Files | processor time, 1 worker / library, aim | is | is with --quiet "
                "| wall time, 1 worker / 2 workers, aim | is |",
                (row_of_aims(*each) for each in measured))
    print_table(f"All figures of the batches, for one file; the shell loop was given {SHELL_FILES}:",
                "| Files | Program | Processor time, ms | Wall time, ms | Memory, MB "
                "| program / library |", (row for each in measured for row in rows_of(*each)))
    print_table("Planning an archive (`convert --dry-run`):",
                "| Files | Processor time, s | Wall time, s, aim | is | Memory, MB, aim | is |",
                rows_of_planning(options, programs))


if __name__ == "__main__":
    main()
