// Each conversion with each call of the platform failing in turn. What a failure leads to is worked
// out by hand: which calls a conversion makes, in which order and for what.
#include "tests/support/andi_text.h"
#include "tests/support/host_call.h"
#include "tests/support/image.h"
#include "tests/support/module_test.h"
#include "tests/support/run_text.h"

#include <cstdlib>
#include <iostream>
#include <iterator>
#include <map>
#include <new>
#include <regex>

namespace korlit {
namespace {

using namespace test;

using Words = std::vector<std::string>;

// What may become of a file. Any other word is a regular expression for what is missing from it.
const std::string old = "as it was";
const std::string empty = "empty";
const std::string begun = "begun";
const std::string whole = "whole";

struct Outcome {
    std::int32_t result = 0;
    std::string message;
    std::string path;
    Words files{}; ///< what became of each target
    std::string box{};
    bool staysLoaded = false; ///< blocks stay held until the next conversion
};
using Outcomes = std::vector<Outcome>;

Words wordsOf(const std::string& text) {
    std::istringstream in{text};
    return {std::istream_iterator<std::string>{in}, {}};
}

std::string times(std::size_t count, const std::string& steps) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += steps;
    }
    return all;
}

/// The lists of an ANDI file.
struct Shape {
    struct Variable {
        std::size_t dimensions, attributes;
    };
    std::size_t dimensions, globals;
    std::vector<Variable> variables;
};

/// The shape of what this library writes. The columns of peaks have as many dimensions each as the
/// digits say.
Shape templateShape(const std::string& columns) {
    Shape shape{columns.empty() ? 10U : 11U, 17, {{0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}, {1, 2}}};
    for (const char digit : columns) {
        shape.variables.push_back({static_cast<std::size_t>(digit - '0'), 0});
    }
    return shape;
}

// The steps of loading an ANDI file, a letter for what the failure of each leads to. Behind a
// failed read all counts as zero: lists are absent, and the type that comes next, of an attribute
// (A) or a variable (V), is invalid. Where none comes the failed read itself is told (R).

/// Length of the name, name, type, count and value of each. Behind the last comes another type.
std::string attributeReads(std::size_t count, const std::string& next) {
    return count == 0 ? "" : times(count - 1, "AAAAA") + "AAA" + next + next;
}

std::string loadReads(const Shape& shape) {
    // signature, records, a list's tag and count; length of the name, name and length
    std::string reads = "NRRR" + times(shape.dimensions, "RRR");
    reads += "RR" + attributeReads(shape.globals, "R") + "RR";
    for (const auto& [dimensions, attributes] : shape.variables) {
        // length of the name, name, number of dimensions and each; type, size, offset, data
        reads += "VVV" + times(dimensions, "V") + "VV" + attributeReads(attributes, "V") + "VVVV";
    }
    return reads.replace(reads.size() - 3, 3, "RRR");
}

/// Room for a list (L); a name for each entry; values and data (O).
std::string loadRequests(const Shape& shape) {
    const auto ofAttributes = [](std::size_t count) {
        return count == 0 ? "" : "L" + times(count, "AO");
    };
    std::string requests = "L" + times(shape.dimensions, "R") + ofAttributes(shape.globals) + "L";
    for (const auto& variable : shape.variables) {
        requests += "V" + ofAttributes(variable.attributes) + "O";
    }
    return requests;
}

/// For each variable the place in the header, the way to its data, and back. Behind the last one
/// nothing is read, so that only the way to the data counts.
std::string loadSeeks(const Shape& shape) {
    return times(shape.variables.size() - 1, "VVV") + ".R.";
}

/// The header in the order of loading, then offset and data of each variable.
std::size_t andiWriteCount(const Shape& shape) {
    std::size_t count = 2 + 2 + 3 * shape.dimensions + 2 + 5 * shape.globals + 2;
    for (const auto& [dimensions, attributes] : shape.variables) {
        count += 3 + dimensions + 2 + 5 * attributes + 3 + 2;
    }
    return count;
}

/// For each variable the place of its offset, the place of its data, the way there, and back.
std::size_t andiSeekCount(const Shape& shape) {
    return 4 * shape.variables.size();
}

/// A request for memory while an ANDI file is built.
struct Request {
    std::string item; ///< what is missing without
    bool isRoom;      ///< room for four more in a list
};
using Requests = std::vector<Request>;

/// The requests of a list's items, of which the first stands at `place`.
void addRequests(Requests& requests, const Words& items, std::size_t blocksEach,
                 std::size_t place = 0) {
    for (const std::string& item : items) {
        if (place++ % 4 == 0) {
            requests.push_back({item, true});
        }
        requests.insert(requests.end(), blocksEach, {item, false});
    }
}

Requests templateRequests(const Words& columns) {
    const std::string peaks = columns.empty() ? "" : " peak_number";
    const Words dimensions =
        wordsOf("_2_byte_string _4_byte_string _8_byte_string _16_byte_string _32_byte_string "
                "_64_byte_string _128_byte_string _255_byte_string point_number" +
                peaks + " error_number");
    const Words globals = wordsOf(
        "dataset_completeness aia_template_revision netcdf_revision languages "
        "injection_date_time_stamp HP_injection_time experiment_title operator_name "
        "separation_experiment_type source_file_reference sample_name sample_id detector_unit "
        "detection_method_name detector_name retention_unit error_log");
    const Words variables = wordsOf(
        "detector_maximum_value detector_minimum_value actual_run_time_length actual_delay_time "
        "actual_sampling_interval ordinate_values");
    Requests requests;
    addRequests(requests, dimensions, 1); // a name
    addRequests(requests, globals, 2);    // a name and a value
    addRequests(requests, variables, 2);
    addRequests(requests, {"uniform_sampling_flag", "autosampler_position"}, 2);
    addRequests(requests, columns, 2, variables.size());
    return requests;
}

/// The title's digit of the message box for a list that finds no room.
std::string boxText(char digit) {
    return std::string{"ReadAndi "} + digit + ": Error allocating memory\n";
}

class FaultSweep : public ModuleTest {
  protected:
    FaultSweep() { setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1); }
    ~FaultSweep() override {
        releaseLoaded();
        unsetenv("KORLIT_PROFILE");
    }

    /// What a good conversion leaves is released by the next one of its kind.
    void releaseLoaded() const { callAsHost(Andi2Merivolta, folder.path("missing.cdf")); }

    /// Prepares a sweep over the conversion of run.<extension>.
    void prepare(const std::string& title, Export function, const std::string& extension,
                 const Words& names, const std::string& before, Outcome success) {
        releaseLoaded();
        called = function;
        source = folder.path("run." + extension);
        targets = names;
        messageBefore = before;
        success.result = 1;
        outcomeOf = {{'.', success}};
        known.clear();
        wholeStatements.clear();
        line.str(title);
        line.seekp(0, std::ios::end);
        convert();
        for (const std::string& target : targets) {
            known[{target, whole}] = readFile(folder.path(target));
            known[{target, old}] = "an old " + target;
            known[{target, empty}] = "";
        }
        expectOutcome(success);
    }

    /// A failure in the library's words, in which %s is the path on return.
    Outcome failure(std::string message, const std::string& extension, const Words& files) const {
        const std::string path = folder.path("run" + extension);
        if (const std::size_t place = message.find("%s"); place != std::string::npos) {
            message.replace(place, 2, path);
        }
        return {.result = 0, .message = message, .path = path, .files = files};
    }

    Outcomes outcomesOf(const std::string& steps) const {
        Outcomes outcomes;
        for (const char step : steps) {
            outcomes.push_back(outcomeOf.at(step));
        }
        return outcomes;
    }

    /// Makes the calls of a service fail one by one. The conversion must make exactly as many as
    /// there are outcomes, and a good one right behind must go through.
    void sweep(const std::string& title, FaultPoint point, const Outcomes& expected,
               FaultKind kind = FaultKind::Fail) {
        for (std::size_t nth = 1; nth <= expected.size() + 1; ++nth) {
            SCOPED_TRACE(line.str() + ", " + title + " " + std::to_string(nth));
            const bool isReached = nth <= expected.size();
            EXPECT_EQ(convert(point, nth, kind), isReached);
            expectOutcome(isReached ? expected[nth - 1] : outcomeOf.at('.'));
            convert();
            expectOutcome(outcomeOf.at('.'));
        }
        line << ", " << title << ' ' << expected.size();
    }

    /// The requests of building the ANDI file of each target, behind those of `ahead`. What a file
    /// can't do without ends the conversion as `needed` says; the files ahead are done by then.
    void sweepRequests(FaultPoint point, Outcomes ahead, const Words& columns,
                       const std::map<std::string, Outcome>& needed) {
        const bool isLock = point == FaultPoint::Lock;
        const Requests requests = templateRequests(columns);
        for (std::size_t i = 0; i < targets.size(); ++i) {
            for (const auto& [item, isRoom] : requests) {
                const auto lack = needed.find(item);
                Outcome outcome = lack == needed.end() ? outcomeOf.at('.') : lack->second;
                if (lack != needed.end()) {
                    std::fill_n(outcome.files.begin(), i, whole);
                } else {
                    // Names of peaks need the dimension of their width.
                    outcome.files[i] = item == "_32_byte_string" ? item + "|peak_name" : item;
                }
                outcome.box = isRoom ? boxText(isLock ? '4' : '3') : "";
                ahead.push_back(outcome);
            }
        }
        sweep(isLock ? "lock" : "allocate", point, ahead);
    }

    /// The memory of the C++ runtime, of which no table tells: a failure has no words and leaves no
    /// file in part.
    void sweepRuntime() {
        std::size_t nth = 1;
        for (; convert(FaultPoint::New, nth, FaultKind::Fail); ++nth) {
            SCOPED_TRACE(line.str() + ", new " + std::to_string(nth));
            EXPECT_EQ(answer, (Answer{0, answer.path, messageBefore, true}));
            EXPECT_EQ(box, "");
            EXPECT_EQ(heldFileCount(), 0);
            EXPECT_EQ(heldLibraryCount(), 0);
            expectFile(targets.back(), old);
            releaseLoaded();
            EXPECT_EQ(heldBlockCount(), 0);
            convert();
            expectOutcome(outcomeOf.at('.'));
        }
        EXPECT_GT(nth, 1U) << "the conversion needs such memory";
        line << ", new " << nth - 1;
    }

    void sweepTransfers(const std::string& title, FaultPoint point, const Outcomes& expected) {
        sweep(title, point, expected);
        sweep("short " + title, point, expected, FaultKind::CutShort);
    }

    /// Answers whether the fault has struck.
    bool convert(FaultPoint point = FaultPoint::Load, std::size_t nth = 0,
                 FaultKind kind = FaultKind::None) {
        for (const std::string& target : targets) {
            folder.write(target, "an old " + target);
        }
        armed = {point, nth, kind};
        box = boxOf([&] { answer = callAsHost(callArmed, source, messageBefore); });
        return hasStruck;
    }

    /// What becomes of the source if it ends at `length`.
    Outcome outcomeOfCut(const std::string& bytes, std::size_t length) {
        folder.write("run.dat", bytes.substr(0, length));
        convert();
        Outcome outcome{.result = answer.result, .message = answer.message, .path = answer.path};
        for (const std::string& target : targets) {
            outcome.files.push_back("cut at " + std::to_string(length));
            known[{target, outcome.files.back()}] = readFile(folder.path(target));
        }
        return outcome;
    }

    void expectOutcome(const Outcome& expected) {
        EXPECT_EQ(answer, (Answer{expected.result, expected.path, expected.message, true}));
        EXPECT_EQ(box, expected.box);
        EXPECT_EQ(heldFileCount(), 0);
        EXPECT_EQ(heldLibraryCount(), 0);
        EXPECT_EQ(heldBlockCount() > 0, expected.staysLoaded);
        for (std::size_t i = 0; i < targets.size(); ++i) {
            SCOPED_TRACE(targets[i] + ": " + expected.files[i]);
            expectFile(targets[i], expected.files[i]);
        }
    }

    void expectFile(const std::string& target, const std::string& state) {
        const std::string bytes = readFile(folder.path(target));
        const std::string& good = known[{target, whole}];
        if (state == begun) {
            // Where a value was still to be filled in, zeros stand.
            const auto isRight = [](char is, char should) { return is == should || is == 0; };
            ASSERT_LE(bytes.size(), good.size());
            EXPECT_TRUE(std::ranges::equal(bytes, good.substr(0, bytes.size()), isRight));
            return;
        }
        if (!known.contains({target, state})) {
            const std::regex missing{"\\b(" + state + ")\\b"};
            Words& all = wholeStatements[target];
            all = all.empty() ? statements(target, good) : all;
            Words left = all;
            std::erase_if(left, [&](const auto& each) { return regex_search(each, missing); });
            EXPECT_LT(left.size(), all.size());
            EXPECT_EQ(statements(target, bytes), left);
            known[{target, state}] = bytes;
        }
        const bool isEqual = bytes == known[{target, state}];
        EXPECT_TRUE(isEqual);
    }

    /// What ncdump says of an ANDI file, one statement after the other.
    Words statements(const std::string& target, const std::string& bytes) const {
        folder.write(target, bytes);
        const std::regex titles{"netcdf .* \\{|dimensions:|variables:|// global attributes:|data:"};
        std::istringstream dump{regex_replace(folder.dump(target, "-p 9,17"), titles, ";")};
        Words all;
        for (std::string each; std::getline(dump, each, ';');) {
            if (each.find_first_not_of(" \t\n") != std::string::npos) {
                all.push_back(each);
            }
        }
        EXPECT_FALSE(all.empty());
        return all;
    }

    struct ArmedFault {
        FaultPoint point;
        std::size_t nth;
        FaultKind kind;
    };

    /// The export that is swept; what its host does around it doesn't meet the fault.
    static std::int32_t callArmed(char* path, char* message) {
        armFault(armed.point, static_cast<std::int64_t>(armed.nth), armed.kind);
        const std::int32_t result = called(path, message);
        hasStruck = disarmFault();
        return result;
    }

    static inline Export called = nullptr;
    static inline ArmedFault armed{};
    static inline bool hasStruck = false;

    std::string source;
    Words targets;
    std::string messageBefore;
    std::map<char, Outcome> outcomeOf;
    std::map<std::pair<std::string, std::string>, std::string> known; ///< bytes by target and state
    std::map<std::string, Words> wholeStatements;
    std::ostringstream line; ///< what was swept
    Answer answer;
    std::string box;
};

class AndiFileSweep : public FaultSweep {
  protected:
    void prepareInput(const std::string& title, const std::string& bytes) {
        folder.write("run.cdf", bytes);
        const auto ofLoad = [&](const std::string& text) {
            return failure(text, ".cdf", {old, old});
        };
        prepare(title, Andi2Merivolta, "cdf", {"run.sli", "run.rpt"}, untouchedMessage,
                failure("Wrote Merivolta file %s", ".sli", {whole, whole}));
        const Outcome success = outcomeOf['.'];
        outcomeOf = {
            {'.', success},
            {'E', ofLoad("Error opening Andi file %s")},
            {'N', ofLoad("File %s is not a supported Andi file")},
            {'R', ofLoad("Error reading Andi File %s")},
            {'A', ofLoad("Andi File %s internal Error: invalid Attribute Type")},
            {'V', ofLoad("Andi file %s internal error: invalid Attribute Type")},
            {'O', ofLoad("Out of Memory reading Andi File %s")},
            {'L', ofLoad(untouchedMessage)},
            {'S', failure("Out of memory reading data", ".sli", {empty, empty})},
            {'P', success},
            {'C', failure("Error writing Merivolta Slice File %s", ".sli", {old, old})},
            {'D', failure("Error writing Merivolta Report File %s", ".rpt", {empty, old})},
            {'W', failure("Error writing Merivolta file %s", ".sli", {begun, begun})},
        };
        outcomeOf['C'].staysLoaded = outcomeOf['D'].staysLoaded = true;
        // Peaks without memory are left out: the results are their header alone, of no peaks.
        outcomeOf['P'].files[1] = "without peaks";
        std::string report = known[{"run.rpt", whole}].substr(0, 352);
        report.replace(139, 4, little(64)).replace(348, 4, little(0));
        known[{"run.rpt", "without peaks"}] = report;
    }

    void sweepAll(const Shape& shape, std::size_t peaks) {
        const std::string requests = loadRequests(shape) + "S" + times(peaks > 0 ? 1 : 0, "P");
        outcomeOf['L'].box = boxText('5');
        sweep("allocate", FaultPoint::Allocate, outcomesOf(requests));
        outcomeOf['L'].box = boxText('6');
        sweep("lock", FaultPoint::Lock, outcomesOf(requests));
        sweep("open", FaultPoint::Open, outcomesOf("E"));
        sweepTransfers("read", FaultPoint::Read, outcomesOf(loadReads(shape)));
        sweep("create", FaultPoint::Create, outcomesOf("CD"));
        // slice header, zeros, samples; report header, results, table and peaks, report header
        sweepTransfers("write", FaultPoint::Write,
                       outcomesOf("WWWWW" + times(peaks > 0 ? 1 + peaks : 0, "W") + "W"));
        sweep("seek", FaultPoint::Seek, outcomesOf(loadSeeks(shape) + "W"));
        sweep("close", FaultPoint::Close, outcomesOf(".WW"));
        std::cout << line.str() << std::endl;
    }
};

TEST_F(AndiFileSweep, EachStepFailsAsItShould) {
    prepareInput("Andi2Merivolta small", AndiText{}.bytes());
    sweepAll({1, 0, {{1, 0}}}, 0);
    prepareInput("Andi2Merivolta full", readFile(TEST_DATA "two_peaks_back.cdf"));
    sweepAll(templateShape("12111111111"), 2);
}

class PairSweep : public FaultSweep {
  protected:
    void prepareInput(const std::string& title) {
        Outcome success = failure("Merivolta File converted to %s.", ".cdf", {whole});
        success.staysLoaded = true;
        prepare(title, Merivolta2Andi, "sli", {"run.cdf"}, untouchedMessage, success);
        outcomeOf.insert({
            {'B', failure("Fatal Error\n\n: Cannot load \"Ostrelix.dll\"", ".sli", {old})},
            {'E', failure("Error opening Merivolta Raw Data file %s", ".sli", {old})},
            {'F', failure("Error opening Merivolta Report file %s", ".rpt", {old})},
            {'U', failure("Unable to update Report Header in File %s", ".rpt", {old})},
            {'S', failure("Out of memory reading file %s", ".sli", {old})},
            {'P', failure("Out of Memory reading File %s", ".rpt", {old})},
            {'R', failure("Error reading Merivolta file %s", ".rpt", {old})},
            {'C', failure("Error writing Andi File %s", ".cdf", {old})},
            {'W', failure("Error writing Andi File %s", ".cdf", {begun})},
        });
    }

    /// The steps of reading the pair, a letter each, then those of writing the ANDI file.
    void sweepAll(const std::string& blocks, const std::string& opens, const std::string& reads,
                  const std::string& seeks, const std::string& closes, const Words& columns) {
        const Shape shape = templateShape(columns.empty() ? "" : "12111111111");
        // Three dimensions without which there is no file; their lack has no words.
        const Outcome lack = failure(untouchedMessage, "", {old});
        for (const FaultPoint point : {FaultPoint::Allocate, FaultPoint::Lock}) {
            sweepRequests(point, outcomesOf(blocks), columns,
                          {{"point_number", lack}, {"peak_number", lack}, {"error_number", lack}});
        }
        sweep("load", FaultPoint::Load, outcomesOf("B"));
        sweep("open", FaultPoint::Open, outcomesOf(opens));
        sweep("read", FaultPoint::Read, outcomesOf(reads));
        // Half of what is asked for of the settings is more than there is.
        outcomeOf['D'] = outcomeOf['.'];
        sweep("short read", FaultPoint::Read, outcomesOf(reads), FaultKind::CutShort);
        sweep("create", FaultPoint::Create, outcomesOf("C"));
        sweepTransfers("write", FaultPoint::Write, outcomesOf(times(andiWriteCount(shape), "W")));
        sweep("seek", FaultPoint::Seek, outcomesOf(seeks + times(andiSeekCount(shape), "W")));
        sweep("close", FaultPoint::Close, outcomesOf(closes + "W"));
        sweepRuntime();
        std::cout << line.str() << std::endl;
    }

    std::string report = readImage(LISTINGS "two_peaks.rpt.txt");
    std::string slice = folder.write("run.sli", readImage(LISTINGS "two_peaks.sli.txt"));
};

TEST_F(PairSweep, EachStepFailsAsItShould) {
    // No peaks.
    folder.write("run.rpt", std::string{report}.replace(350, 1, 1, '\0'));
    prepareInput("Merivolta2Andi small");
    // samples; slice, report; samples, report header, results; ways to samples and results
    sweepAll("S", "EF", "RRR", "RR", "..", {});

    // A report of an older revision, and settings with the month ahead of the day.
    folder.write("run.rpt", "\x11" + report.substr(1));
    prepareInput("");
    const std::string otherDate = known[{"run.cdf", whole}];
    setenv("KORLIT_PROFILE", folder.write("ini", "[intl]\nsShortDate=M/d/y\n").c_str(), 1);
    prepareInput("Merivolta2Andi full");
    EXPECT_NE(otherDate, (known[{"run.cdf", whole}]));
    // Settings that can't be read are none.
    outcomeOf['D'] = outcomeOf['.'];
    outcomeOf['D'].files = {"with the other date"};
    known[{"run.cdf", "with the other date"}] = otherDate;
    // On top of those above: peaks; the update's report and the settings; each peak and the
    // settings; over the table of peaks; settings.
    sweepAll("SP", "EFUD", "RRRRRD", "RRR", "...",
             wordsOf("peak_retention_time peak_name peak_amount peak_start_time peak_end_time "
                     "peak_area peak_area_percent peak_height baseline_start_time "
                     "baseline_stop_time migration_time"));
}

class RunSweep : public FaultSweep {
  protected:
    void prepareInput(const std::string& title, const RunText& run) {
        bytes = run.bytes();
        folder.write("run.dat", bytes);
        Words files{"run1.cdf", "run2.cdf"};
        files.resize(static_cast<std::size_t>(run.channels));
        prepare(title, Dunvale2Andi, "dat", files, "",
                failure("", ".dat", Words(files.size(), whole)));
    }

    /// A failure ahead of all writing.
    Outcome failureOf(const std::string& message) const {
        return failure(message, ".dat", Words(targets.size(), old));
    }

    /// The blocks of the run, which need no lock, and then its files.
    void sweepMemory(const Words& blocks) {
        Outcomes ofBlocks;
        for (const std::string& block : blocks) {
            ofBlocks.push_back(failureOf("Out of Memory !!!\r\nNo Mem for " + block + "."));
        }
        const auto lackOf = [&](const std::string& what) {
            return failureOf("Error(s) occurred !!!\r\n" + what);
        };
        const auto noMatrix = [&](const std::string& name) {
            return lackOf("AddAndiMatrix(\"" + name + "\") returned NULL.");
        };
        const std::string start = "peak_start_detection_code";
        const std::string stop = "peak_stop_detection_code";
        const std::map<std::string, Outcome> needed{
            {"point_number", lackOf("iDimPoints = -1")},
            {"peak_number", lackOf("iDimPeaks = -1")},
            {"error_number", lackOf("iDimLog = -1")},
            {"ordinate_values", lackOf("AddAndiVector(\"ordinate_values\") returned NULL.")},
            {"peak_name", noMatrix("peak_name")},
            {start, noMatrix(start)},
            {stop, noMatrix(stop)},
            // the dimensions of their width
            {"_32_byte_string", noMatrix("peak_name")},
            {"_4_byte_string", noMatrix(start)}};
        const Words columns = wordsOf(
            "peak_retention_time peak_name peak_amount peak_start_time peak_end_time peak_area "
            "peak_area_percent peak_height baseline_start_time baseline_start_value "
            "baseline_stop_time baseline_stop_value " +
            start + " " + stop);
        sweepRequests(FaultPoint::Allocate, ofBlocks, columns, needed);
        sweepRequests(FaultPoint::Lock, {}, columns, needed);
    }

    void sweepReads(const std::vector<std::size_t>& sizes) {
        const Outcome failed = failureOf("Unable to read\r\n\"" + source + "\"");
        sweep("read", FaultPoint::Read, Outcomes(sizes.size(), failed));
        // A read that comes short has met the end of the file.
        Outcomes outcomes;
        std::size_t place = 0;
        for (const std::size_t size : sizes) {
            outcomes.push_back(outcomeOfCut(bytes, place + size / 2));
            place += size;
        }
        EXPECT_EQ(place, bytes.size());
        folder.write("run.dat", bytes);
        sweep("short read", FaultPoint::Read, outcomes, FaultKind::CutShort);
    }

    /// `count` steps of writing each channel, which don't keep the other from being.
    Outcomes ofWriting(std::size_t count, const std::string& state) const {
        Outcomes outcomes;
        for (std::size_t i = 0; i < targets.size(); ++i) {
            Outcome outcome = failureOf("Error writing Andi File " + folder.path(targets[i]));
            outcome.files.assign(targets.size(), whole);
            outcome.files[i] = state;
            outcomes.insert(outcomes.end(), count, outcome);
        }
        return outcomes;
    }

    void sweepAll(const Words& blocks, const std::vector<std::size_t>& readSizes) {
        const Shape shape = templateShape("12111111111122");
        sweepMemory(blocks);
        sweep("open", FaultPoint::Open, {failureOf("Unable to open\r\n\"" + source + "\"")});
        sweepReads(readSizes);
        sweep("create", FaultPoint::Create, ofWriting(1, old));
        sweepTransfers("write", FaultPoint::Write, ofWriting(andiWriteCount(shape), begun));
        sweep("seek", FaultPoint::Seek, ofWriting(andiSeekCount(shape), begun));
        sweep("close", FaultPoint::Close, ofWriting(1, begun));
        sweepRuntime();
        std::cout << line.str() << std::endl;
    }

    std::string bytes;
};

TEST_F(RunSweep, EachStepFailsAsItShould) {
    // An old version, whose results and lines are read one by one.
    RunText small{.version = "x40A00000", .extra = "", .lines = "r522"};
    small.results = "0s 2s 5s 0.5f 0f 1f 120f 6f 1.5f 1f 2.5f 60f 5f";
    small.timeTable = "r1548 1s 257s";
    prepareInput("Dunvale2Andi small", small);
    sweepAll(wordsOf("lpSliHeadP plpfData plpfData[0] lpResHead plpResults plpPeaks plpResults[0] "
                     "plpPeaks[0] lpAnno lpTimeTable lpTTLine lpPeakWin lpPeakWin2"),
             {70, 236, 2, 110, 24, 6, 20, 20, 100, 2, 94, 256, 1552, 522, 678, 678});
    // Two channels.
    prepareInput("Dunvale2Andi full", RunText{.count = "2s", .channels = 2});
    sweepAll(wordsOf("lpSliHeadP plpfData plpfData[0] plpfData[1] lpResHead plpResults plpPeaks "
                     "plpResults[0] plpPeaks[0] plpResults[1] plpPeaks[1] lpAnno lpTimeTable "
                     "lpTTLine lpPeakWin lpPeakWin2"),
             {70, 236, 2,   110, 24, 110, 24, 6,   48,   100,  2,   4,
              6,  48,  100, 2,   4,  2,   94, 256, 1620, 1202, 678, 678});
}

} // namespace
} // namespace korlit

// The runtime's memory fails on demand too.
[[gnu::noinline]] void* operator new(std::size_t size) {
    void* block = korlit::faultAt(korlit::FaultPoint::New) == korlit::FaultKind::None
                      ? std::malloc(std::max<std::size_t>(size, 1))
                      : nullptr;
    return block != nullptr ? block : throw std::bad_alloc{};
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
    std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}
