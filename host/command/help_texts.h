// What stands below the options in the help of each command.
#pragma once

namespace korlit::host {

constexpr const char* convertHelp =
    R"(Without --output-dir or --output the files are written beside their source, under
its name: an ANDI file becomes a pair (.sli, .rpt), a pair an ANDI file (.cdf), and
a run one ANDI file for each channel (1.cdf, 2.cdf, ...). Nothing that exists is
replaced unless --force or --update is given, and the files of one conversion come
to their place all or none, whenever the command is killed: the next one that
writes into a folder ends what was begun there.

No direction is guessed. Files that are named go by their content; what folders
hold goes one way, which --to names where there are files for both. A source of
the batch is never replaced, nor what a source was made from, as far as files tell,
nor a pair that an instrument wrote.

In folders, what is of a known kind by its content or its usual extension (.cdf,
.sli, .run) is taken, and is a failure if it can't be read. All else is ignored;
-v lists it. A run that lacks samples or channels that it announces is a failure
unless --allow-cut is given.

Each file is converted in a worker process: one that crashes costs its one file.
An interrupt or a hang-up ends the conversions that run and begins no new one;
--skip-existing takes the rest up again. --sync is for those who fear for the
power: without it the system may write the files to the disk some seconds later.

--manifest appends a JSON object a line: one for the batch and one for each file,
with the SHA-256 of its source and of what it became. korlit verify holds files
against it later, and korlit report makes a page of it. A source that changes while
it is converted is a failure then. --report writes the page at once.

A pair holds samples at equal distances. --resample brings others there along straight
lines between them, at the times that the file gives for them (raw_data_retention, or
scan_acquisition_time of a mass spectrometer, of whose spectra the total ion
chromatogram is kept); the line tells how far the signal is from the new samples at
most. The first sample starts the signal of a pair, which has no delay.

--json prints the keys source, kind, outputs, result (converted, skipped, failed,
planned), message, warnings, losses, seconds, points and peaks; source_bytes and
outputs_bytes have the bytes of paths that aren't UTF-8, in hexadecimal. With
--verify there are verdict (same data, other data), words, expected_changes (rule,
words, count) and unexpected_changes.

Examples:
  korlit convert run.cdf
  korlit convert -r archive --to pair --output-dir converted
  korlit convert -r archive --to andi --update --dry-run
  korlit convert -r archive --to andi --skip-existing     (take it up again)
  korlit convert run.sli --output exported.cdf
  korlit convert -r archive --to andi --manifest done.jsonl --report done.html
  find archive -name '*.cdf' -print0 | korlit convert -0 --files-from - --json

Exit status: 0 all were converted, 1 some failed or the output could not be
written, 2 wrong use, 130 interrupted.)";

constexpr const char* infoHelp =
    R"(Of folders, what is of a known kind by its content or its usual extension (.cdf, .sli,
.run) is shown, and the report of a pair with its slice file; hidden files are passed
over. A file that can't be read is told on standard error, and the others go on.

--json prints one object per file and line, with the keys file, kind (andi,
merivolta, dunvale), sample, operator, injection_date (ISO 8601), separation_type,
autosampler_position and channels. Each channel has detector_unit, points, total_ion
(of a mass spectrometer), uniform, sampling_interval_s (the middle one if they differ), delay_time_min, run_time_min, minimum and maximum in the
detector unit with minimum_time_min and maximum_time_min, and peaks, whose keys
are the columns of --peaks. A number that a file doesn't have, or that is none,
is null.

--jsonl prints the same, and for a file that can't be read an object with the keys
file and error.

--peaks prints a row for each peak and --signal one for each sample, with the
columns time_min and value in the detector unit; a run has the column channel
ahead of them. Times are minutes from injection, areas and heights stand as in an
ANDI file of the data. Numbers have a decimal point and all digits that a float
has. Times of samples that aren't uniform are those that the file
gives for them, or are left empty.

Examples:
  korlit info run.cdf
  korlit info --json *.sli | jq .sample
  korlit info --peaks run.cdf > peaks.csv
  korlit info --signal run.dat > signal.csv
  korlit info --signal --channel 2 run.dat | head
  korlit info - < run.cdf
  korlit info --from dunvale run.bin
  korlit info -r archive --jsonl | jq -r '[.file, .sample // .error] | @tsv'
  find . -name '*.cdf' -print0 | korlit info -0 --files-from - --jsonl

Exit status: 0 all were shown, 1 some can't be read or the output could not be
written, 2 wrong use, 130 interrupted.)";

constexpr const char* plotHelp =
    "A chart replaces a file of its name, but never one that is to be drawn. Each channel of a "
    "run\n"
    "has a panel of its own, more than four in columns; peaks have their names or, without one,\n"
    "their retention times. Several files are drawn over each other, each channel in one panel,\n"
    "without their peaks.\n"
    "\n"
    "With --output-dir each file has a chart of its own, run.svg after run.cdf; where files of "
    "one\n"
    "folder would share it, each keeps its extension, as in run.cdf.svg and run.sli.svg. A file\n"
    "that can't be drawn is told on standard error, and the others go on. Of folders, what is of "
    "a\n"
    "known kind by its content or its usual extension is drawn; hidden files are passed over.\n"
    "\n"
    "A baseline that the file has is red; dashed is one that is only drawn from start to end of a\n"
    "peak. Grey is where the signal has no values.\n"
    "\n"
    "Examples:\n"
    "  korlit plot run.cdf -o run.svg\n"
    "  korlit plot run.sli -o report.pdf --title \"Batch 25, second injection\"\n"
    "  korlit plot dad.run -o dad.png --width 1600 --from-time 2.5 --to-time 8\n"
    "  korlit plot monday.cdf tuesday.cdf -o both.pdf --paper a4 --ymax 250\n"
    "  korlit plot run.cdf --format png --scale 2 -o - > run.png\n"
    "  korlit plot -r archive --output-dir charts --format png\n"
    "\n"
    "Exit status: 0 all were drawn, 1 some failed or the output could not be written, 2 wrong "
    "use,\n"
    "130 interrupted.";

constexpr const char* checkHelp = R"(Each finding is a line "FILE: SEVERITY: words":
  error    a reader fails on it or reads something wrong
  warning  departs from the template and is read nevertheless
  loss     conforms, but a conversion to a Merivolta pair leaves it out
A file conforms if it has no error and no warning. Of folders, ANDI files are checked: what is one
by its content or ends in .cdf; hidden files are passed over.

--json prints the keys file, findings (each with severity, rule and message) and conforms. --jsonl
prints the same, and for a file that can't be read an object with the keys file and error.

The exit status is 0 if all files conform, 1 if one doesn't or can't be read or the output could not
be written, 2 for wrong use, 130 for an interrupt.

Examples:
  korlit check run.cdf
  korlit check -r archive --jsonl | jq -r 'select(.conforms != true).file'
  korlit check -q incoming/*.cdf || echo "not all of them conform"
  korlit check --json run.cdf | jq -r '.findings[].rule')";

constexpr const char* compareHelp =
    R"(Where one of the two can have been made of the other, it is held to what that
conversion makes of each value, to the last bit. A difference that a rule of the
conversion explains is expected, every other one is unexpected. The first line is
the verdict, "same data" or "other data". Then come what is unexpected, a line
each, and the rules with how many changes each explains; -v has a line for each.

Of a run of several channels the one is taken that fits an ANDI file best, or that
of --channel. Two files of a kind, and a pair and a run, are compared as they are,
and all that differs is unexpected, unless one is what up to three trips to
another format and back make of the other. Compared as they are, times count as
equal within one part in a million. Not compared there are source_file_reference
and retention_unit.

The parts for --only are signal (samples and what goes with them), peaks and texts
(all else). With both tolerances the wider counts. Not a number equals not a
number.

--json prints the keys a, b, verdict, words, conversion (from, to; null where they
are compared as they are), channel, points, peaks, expected and unexpected (how
many), equal (true without any difference) and differences, each with part, words,
rule and expected, and from, source, to, target and found where it has them.

Of two folders those files are compared that belong to each other: first those of
the same place and name, then runs with the numbered files of their channels
(run.dat, run1.cdf), and then those of the same name but for its extension. Each
pair has a line with the verdict, and up to ten lines of what is unexpected, all
with -v. A file without a partner is a difference, and one that can't be read ends
nothing; both are told and counted. With --json each pair is one line; "verdict"
may be "only in A", "only in B" or "not compared", too. A file and a folder are
compared in the same way, without the rest of the folder.

The exit status is 0 where nothing is unexpected, with --strict where nothing
differs, else 1, and 2 where a file can't be read or the two can't be compared. Of
folders it is 0 if all pairs are the same data and none lacks its partner, else 1, 2
if there is nothing to compare, and 130 for an interrupt.

Examples:
  korlit compare run.sli run.cdf
  korlit compare -r archive converted
  korlit compare -v run.dat run3.cdf
  korlit compare --tolerance 0.001 --only peaks old.cdf new.cdf
  korlit compare --absolute-tolerance 1e-6 old.cdf new.cdf
  korlit compare -q a.cdf b.cdf && echo same)";

constexpr const char* verifyHelp =
    R"(A line tells of each file that was converted and of each that came of it: as it
was, changed, gone, or can't be read. Where a file was recorded several times, the
last conversion that made it counts, or of a source the last that read it. A line of
a manifest that was cut by a kill is named and passed over.

With --root DIR a copy of an archive is looked at: what lay below the folder in
which a batch ran is looked for below DIR, and all else where it was.

--json prints the keys file, state (same, changed, gone, unreadable), words, size
and sha256, the recorded ones; file_bytes has the bytes of a path that isn't UTF-8,
in hexadecimal.

Examples:
  korlit verify done.jsonl
  korlit verify -q --root /mnt/copy part-*.jsonl

Exit status: 0 all are as they were, 1 some aren't, 2 a manifest can't be read.)";

constexpr const char* reportHelp =
    R"(The page needs nothing else, neither scripts nor a network: a row for each file
opens to its chromatogram, what changed, warnings and digests. With scripts its
rows can be sorted, searched and filtered. Where a file was converted several times
into the same files, the last one counts. A page replaces a file of its name.

Examples:
  korlit report done.jsonl -o done.html
  korlit report part-*.jsonl -o all.html

Exit status: 0 written, 1 the page can't be written, 2 a manifest can't be read.)";

} // namespace korlit::host
