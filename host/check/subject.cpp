#include "host/check/subject.h"

#include "host/data/facts.h"
#include "native/pair_rules.h"
#include "platform/text.h"

#include <algorithm>
#include <cmath>

namespace korlit::host {

namespace {

/// The first number of a variable, else of the text of that name; NaN if there is none.
double numberOf(const AndiImage& image, const char* templateName) {
    if (const auto numbers = numbersOf(variableOf(image, templateName)); !numbers.empty()) {
        return numbers.front();
    }
    const auto number = readFloat(textOf(image, templateName).value_or(""));
    return number ? double{*number} : std::numeric_limits<double>::quiet_NaN();
}

} // namespace

Subject subjectOf(const AndiImage& image) {
    Subject subject{.image = image,
                    .samples = numbersOf(variableOf(image, taken::ordinateValues)),
                    .interval = numberOf(image, taken::samplingInterval),
                    .isUniform = isUniform(textOf(image, taken::uniformFlag))};
    if (const auto extremes = extremesOf(subject.samples, isFinite)) {
        subject.extremes = SampleRange{.smallest = subject.samples[extremes->minimum],
                                       .largest = subject.samples[extremes->maximum]};
    }
    return subject;
}

std::vector<DetectorLimit> detectorLimits(const Subject& subject) {
    std::vector<DetectorLimit> limits;
    if (!subject.extremes) {
        return limits;
    }
    const SampleRange& range = *subject.extremes;
    const auto add = [&](const char* name, double extreme, double outwards) {
        const double limit = numberOf(subject.image, name);
        const double excess = (extreme - limit) * outwards;
        const bool isAgreed =
            std::abs(excess) <= limitRounding(range.smallest, range.largest, extreme);
        limits.push_back({.name = name,
                          .limit = limit,
                          .extreme = extreme,
                          .excess = isAgreed || std::isnan(excess) ? 0.0 : excess});
    };
    add("detector_maximum_value", range.largest, 1.0);
    add("detector_minimum_value", range.smallest, -1.0);
    return limits;
}

double declaredElements(const AndiImage& image, const AndiVariable& variable) {
    double elements = 1.0;
    for (std::int32_t i = 0; i < variable.DimensionCount; ++i) {
        elements *=
            image.file.Dimensions[variable.DimensionIds[static_cast<std::size_t>(i)]].Length;
    }
    return elements;
}

} // namespace korlit::host
