#include "host/data/data_set.h"

#include "host/files/broken_files.h"
#include "host/files/diagnosis.h"
#include "host/files/staging.h"
#include "host/files/standard_input.h"
#include "host/system/temporary_folder.h"
#include "host/text/wrong_use.h"
#include "native/pair_rules.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <stdexcept>

namespace korlit::host {

namespace {

constexpr double secondsPerMinute = 60.0;

/// A number from a text such as "0.2 "; 0 for what is none.
double numberIn(const std::optional<std::string>& text) {
    try {
        return text ? std::stod(*text) : 0.0;
    } catch (const std::exception&) {
        return 0.0;
    }
}

double firstNumber(const AndiImage& image, const char* name) {
    const NumberView numbers = numbersOf(variableOf(image, name));
    return numbers.empty() ? numberIn(textOf(image, name)) : numbers.front();
}

/// The sampling interval in minutes. A file has it as a float, and over thousands of samples what
/// that cut off adds up: where it is a whole number of milliseconds, it is taken for just that.
double exactInterval(double stored, double msPerUnit) {
    constexpr double msPerMinute = 60000.0;
    const double milliseconds = std::round(stored * msPerUnit);
    const bool isWhole = static_cast<float>(milliseconds / msPerUnit) == static_cast<float>(stored);
    return (isWhole ? milliseconds : stored * msPerUnit) / msPerMinute;
}

void readPeaks(DataSet& set, const AndiImage& image, double minutesPerUnit) {
    const std::vector<std::string> names = rowsOf(image, variableOf(image, "peak_name"));
    const NumberView retentionTimes = numbersOf(variableOf(image, "peak_retention_time"));
    set.peaks.resize(std::max(names.size(), retentionTimes.size()));
    for (const auto& [name, value, isTime] : peakNumbers()) {
        const NumberView column = numbersOf(variableOf(image, name));
        for (std::size_t i = 0; i < std::min(column.size(), set.peaks.size()); ++i) {
            set.peaks[i].*value = isTime ? column[i] * minutesPerUnit : column[i];
        }
    }
    const std::vector<std::string> starts =
        rowsOf(image, variableOf(image, "peak_start_detection_code"));
    const std::vector<std::string> stops =
        rowsOf(image, variableOf(image, "peak_stop_detection_code"));
    for (std::size_t i = 0; i < set.peaks.size(); ++i) {
        set.peaks[i].name = i < names.size() ? names[i] : "";
        set.peaks[i].startCode = i < starts.size() ? starts[i] : "";
        set.peaks[i].stopCode = i < stops.size() ? stops[i] : "";
    }
}

void readTexts(DataSet& set, const AndiImage& image) {
    for (const AndiAttribute& each : attributesOf(image.file.GlobalAttributes)) {
        if (const auto text = textOf(each)) {
            set.texts.emplace_back(each.Name, *text);
        }
    }
}

/// Takes over the times of the samples if there is one for each and they ascend.
void takeTimes(DataSet& set, const AndiVariable* variable, double minutesPerTime) {
    const NumberView times = numbersOf(variable);
    bool isGood = times.size() == set.signal.size() && !times.empty() && std::isfinite(times[0]);
    for (std::size_t i = 1; isGood && i < times.size(); ++i) {
        isGood = std::isfinite(times[i]) && times[i] >= times[i - 1];
    }
    if (isGood) {
        set.times = times;
        set.minutesPerTime = minutesPerTime;
    }
}

/// What the template of mass spectrometers names otherwise.
constexpr std::array<std::pair<const char*, const char*>, 2> otherNames{
    {{"sample_name", "experiment_title"},
     {"injection_date_time_stamp", "experiment_date_time_stamp"}}};

/// The total ion chromatogram, an intensity for each scan. No signal where the file has none.
void readTotalIon(DataSet& set, const AndiImage& image) {
    const AndiVariable* intensities = variableOf(image, totalIntensity);
    set.signal = numbersOf(intensities);
    if (set.signal.empty()) {
        return;
    }
    set.isTotalIon = true;
    set.isUniform = false;
    takeTimes(set, variableOf(image, "scan_acquisition_time"), 1.0 / secondsPerMinute);
    readTexts(set, image);
    for (const auto& [name, otherName] : otherNames) {
        const std::string text = set.text(otherName);
        if (set.text(name).empty() && !text.empty()) {
            std::erase_if(set.texts,
                          [usual = name](const auto& each) { return each.first == usual; });
            set.texts.emplace_back(name, text);
        }
    }
    for (const AndiAttribute& each : attributesOf(intensities->Attributes)) {
        if (isNamed(each.Name, "units")) {
            set.detectorUnit = textOf(each).value_or("");
        }
    }
}

DataSet dataSetOf(const std::string& andiFile) {
    const auto loaded = std::make_shared<AndiImage>();
    const AndiImage& image = *loaded;
    if (const std::string reason = load(*loaded, andiFile); !reason.empty()) {
        throw std::runtime_error{withDiagnosis(reason, andiFile, FileKind::Andi)};
    }
    DataSet set;
    set.image = loaded;
    const AndiVariable* signal = variableNamed(image, taken::ordinateValues);
    if (signal == nullptr) {
        readTotalIon(set, image);
        if (set.signal.empty()) {
            throw std::runtime_error{"File " + andiFile + " is " + noChromatogramText};
        }
        return set;
    }
    if (signal->ElementCount == 0) {
        throw std::runtime_error{"File " + andiFile + " has no chromatogram: " + noSamplesText};
    }
    readTexts(set, image);
    const bool isInMinutes = isMinutes(textOf(image, taken::retentionUnit).value_or(""));
    const double minutesPerUnit = isInMinutes ? 1.0 : 1.0 / secondsPerMinute;
    set.samplePosition = textOf(image, taken::samplePosition).value_or("");
    set.detectorUnit = textOf(image, "detector_unit").value_or("");
    set.signal = numbersOf(variableOf(image, taken::ordinateValues));
    set.samplingInterval =
        exactInterval(firstNumber(image, taken::samplingInterval), isInMinutes ? 60000.0 : 1000.0);
    set.delayTime = firstNumber(image, "actual_delay_time") * minutesPerUnit;
    set.isUniform = isUniform(textOf(image, taken::uniformFlag));
    if (!set.isUniform) {
        takeTimes(set, variableOf(image, "raw_data_retention"), minutesPerUnit);
    }
    readPeaks(set, image, minutesPerUnit);
    return set;
}

std::vector<DataSet> loadFrom(const std::string& path, FileKind kind) {
    std::vector<DataSet> sets;
    if (formatOf(kind).isAndi) {
        sets.push_back(dataSetOf(path));
        return sets;
    }
    const TemporaryFolder stage;
    const Plan plan = planFor(path, kind, stage.path(), "data");
    const StagedResult result = convertStaged(plan, stage.path());
    if (!result.isConverted) {
        throw std::runtime_error{withDiagnosis(result.message, plan, result.reason)};
    }
    for (const StagedFile& target : plan.targets) {
        sets.push_back(dataSetOf(target.path.string()));
        sets.back().channel = plan.targets.size() > 1 ? static_cast<int>(sets.size()) : 0;
    }
    return sets;
}

/// The data sets of the file at `path`, with `name` for its source.
std::vector<DataSet> loadNamed(const std::string& path, const std::string& name, FileKind kind) {
    kind = isKnown(kind) ? kind : recognise(path);
    std::vector<DataSet> sets = loadFrom(path, kind);
    for (DataSet& set : sets) {
        set.source = name;
        set.kind = kind;
    }
    return sets;
}

std::vector<DataSet> loadStandardInput(FileKind kind) {
    const StandardInputCopy copy;
    if ((isKnown(kind) ? kind : recognise(copy.path())) == FileKind::Merivolta) {
        throw std::runtime_error{"a pair is two files, and can't come through standard input"};
    }
    try {
        return loadNamed(copy.path(), shownName(standardInputWord), kind);
    } catch (const std::runtime_error& error) {
        throw std::runtime_error{copy.withoutCopy(error.what())};
    }
}

} // namespace

std::string DataSet::text(const std::string& name) const {
    const auto found = std::ranges::find(texts, name, &std::pair<std::string, std::string>::first);
    return found == texts.end() ? "" : found->second;
}

const std::vector<PeakNumber>& peakNumbers() {
    static const std::vector<PeakNumber> numbers{
        {.name = "peak_retention_time", .value = &Peak::retentionTime, .isTime = true},
        {.name = "peak_amount", .value = &Peak::amount, .isTime = false},
        {.name = "peak_start_time", .value = &Peak::startTime, .isTime = true},
        {.name = "peak_end_time", .value = &Peak::endTime, .isTime = true},
        {.name = "peak_area", .value = &Peak::area, .isTime = false},
        {.name = "peak_area_percent", .value = &Peak::areaPercent, .isTime = false},
        {.name = "peak_height", .value = &Peak::height, .isTime = false},
        {.name = "baseline_start_time", .value = &Peak::baselineStartTime, .isTime = true},
        {.name = "baseline_start_value", .value = &Peak::baselineStartValue, .isTime = false},
        {.name = "baseline_stop_time", .value = &Peak::baselineStopTime, .isTime = true},
        {.name = "baseline_stop_value", .value = &Peak::baselineStopValue, .isTime = false},
    };
    return numbers;
}

std::vector<DataSet> loadDataSets(const std::string& file, FileKind kind) {
    if (file == standardInputWord) {
        return loadStandardInput(kind);
    }
    return loadNamed(file, file, kind);
}

void pickChannel(std::vector<DataSet>& sets, int channel) {
    if (channel == 0 || !formatOf(sets.front().kind).hasChannels) {
        return;
    }
    const auto index = static_cast<std::size_t>(channel - 1);
    if (index >= sets.size()) {
        throw WrongUse{sets.front().source + " has no channel " + std::to_string(channel) +
                       ", only " + std::to_string(sets.size())};
    }
    std::swap(sets.front(), sets[index]);
    sets.resize(1);
}

} // namespace korlit::host
