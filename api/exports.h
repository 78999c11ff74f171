/* The public interface of libkorlit: one call converts one file. Plain C.
 *
 * A host loads the library and calls an export; no call is needed first or last. Calls come one at
 * a time: they are neither reentrant nor safe in parallel within one process.
 *
 * Paths and texts are zero-terminated 8-bit text, passed on as they are. The path separator is '/'.
 * Both buffers belong to the host. No length is passed for either, so the host must provide:
 *
 *   path     5 bytes more than the path's length, where the call changes its extension in place:
 *            an appended dot, three letters and the terminator;
 *   message  60 bytes more than the path's length, and never fewer than 91.
 *
 * The calls write nothing beyond these sizes. A null path or message is answered with 0, but for
 * the null message that Dunvale2Andi takes.
 */
#ifndef KORLIT_EXPORTS_H
#define KORLIT_EXPORTS_H

#include <stdint.h> /* NOLINT(modernize-deprecated-headers): hosts in C include this too */

#define KORLIT_EXPORT __attribute__((visibility("default")))

#ifdef __cplusplus
extern "C" {
#endif

/* What a host must provide behind a path of a given length, in bytes. */
#define KORLIT_PATH_ROOM 5
#define KORLIT_MESSAGE_ROOM 60
#define KORLIT_MESSAGE_MINIMUM 91

/* Converts the ANDI file at `path` into a Merivolta pair beside it: raw data with the extension
 * .sli and the report with .rpt, which replace files of these names.
 *
 * Returns 1 with the text "Wrote Merivolta file <path>" when both files were written, else 0 with
 * the reason in `message`. The only failure without a text is no memory for the file's lists, which
 * is told in one line on standard error.
 *
 * On return `path` ends in ".sli"; in ".rpt" if the report file could not be created; and is the
 * file that was to be loaded if the load failed, in which case no file was touched. A path whose
 * last component holds no dot gets one appended, and that is the file that is loaded. A conversion
 * that fails later leaves the files that it created. */
KORLIT_EXPORT int32_t Andi2Merivolta(char* path, char* message);

/* Converts the Merivolta pair of the slice file at `path` and the report beside it, with the
 * extension .rpt, into an ANDI file with .cdf, which replaces a file of that name. Needs
 * libostrelix.so, which is found beside this library, in the folder "korlit" there, or by the
 * loader's other rules.
 *
 * Returns 1 with the text "Merivolta File converted to <path>." when the file was written, else 0
 * with the reason in `message`. Failures without a text: a file version that libostrelix.so
 * refuses, and no memory for the lists of the ANDI file; each is told in one line on standard
 * error.
 *
 * On return `path` ends in ".cdf"; after a failure in the extension that the failing step looked
 * at: its own, ".sli" or ".rpt". A file that was written in part stays. */
KORLIT_EXPORT int32_t Merivolta2Andi(char* path, char* message);

/* Converts the Dunvale run file at `path`, whose extension must have three characters, into one
 * ANDI file for each of its one to nine channels. `message` is read first and must hold a text on
 * entry:
 *
 *   the empty text   the files stand beside the run and take its name without the extension, the
 *                    channel's number from 1, and ".cdf": run.dat gives run1.cdf, run2.cdf, ...
 *   any other        it is the output path of every channel; of several the last one's file stays.
 *
 * Files of these names are replaced. Returns 1 with `message` as it was when all channels were
 * written, else 0 with the reason in `message`. A channel that can't be written doesn't keep the
 * others from being; after any other failure the channels already written stay. A run file that
 * ends early is converted as far as it goes, the rest counting as zero; one that lacks more than
 * 64 MiB of its samples is refused for a lack of memory.
 *
 * `path` is not changed and needs no room behind it. A null `message` counts as the empty text and
 * takes no reason. */
KORLIT_EXPORT int32_t Dunvale2Andi(char* path, char* message);

/* Not implemented: returns 0 with the text "Feature is not implemented !!!", whatever the path,
 * null included. */
KORLIT_EXPORT int32_t Andi2Dunvale(char* path, char* message);

#ifdef __cplusplus
}
#endif

#endif
