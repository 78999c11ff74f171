// Where the things of a chart go: axis ticks, the samples worth drawing, and the labels of peaks.
#pragma once

#include "host/files/number_view.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <string>
#include <vector>

namespace korlit::host {

struct Range {
    double from = 0;
    double to = 0;

    double length() const { return to - from; }
    bool contains(double value) const { return from <= value && value <= to; }
};

/// True for what has a place on an axis: finite, and so far from the largest numbers that
/// differences and margins stay finite.
bool isDrawable(double value);

/// The range itself, or one around it where it is too narrow for an axis.
Range widened(const Range& range);

/// Round values along an axis: multiples of 1, 2 or 5 times a power of ten.
struct Ticks {
    std::int64_t first = 0; ///< in steps
    int count = 0;
    int mantissa = 1; ///< of the step: 1, 2 or 5
    int exponent = 0; ///< of the step, to the base of ten
    int namedExponent =
        0; ///< the power of ten, if not 0, that the axis's title names for all ticks

    double value(int index) const;
    double step() const;
    /// In digits as they stand at the axis; as many decimals as the step has.
    std::string text(int index) const;
    /// The parts into which small ticks divide a step.
    int parts() const { return mantissa == 2 ? 4 : 5; }
};

/// The ticks of a range with at most `most` steps. The title names a power of ten where values are
/// large or small.
Ticks ticksFor(const Range& range, int most);

/// A point of a signal in its own units; y is not a number where the line has a gap.
struct LinePoint {
    double x = 0;
    double y = 0;
};

/// Whether a line has no value at a point.
bool isGap(const LinePoint& point);

/// The samples by which a line looks as if all were drawn: of each column's samples the first, the
/// lowest, the highest and the last, and one that can't be drawn, if there is any; in their order.
std::vector<std::size_t> samplesToDraw(const NumberView& samples, std::size_t columns);

/// The highest y of a line, whose x ascend, within a range of x, where it may lie between two
/// points; minus infinity where there is nothing of the line.
double highestWithin(std::span<const LinePoint> line, const Range& range);

/// The part of a line within a range of x, cut between points where the range ends there.
std::vector<LinePoint> cutTo(std::span<const LinePoint> line, const Range& range);

/// Sizes in points of what stands above a signal: labels are written upwards, each as wide as
/// `labelThickness`, and stand `labelClearance` above the signal.
constexpr double labelThickness = 12.5;
constexpr double labelClearance = 6.0;

struct Label {
    double anchor = 0; ///< where its peak is along the time axis, in points
    double length = 0; ///< of its text, in points
    /// The value above which it stands, however low the signal is below it.
    double leastBase = -std::numeric_limits<double>::infinity();
};

struct LabelPlace {
    double centre = 0; ///< along the time axis, in points
    double base = 0;   ///< the value of the signal above which it stands
    double elbow = 0;  ///< the height of its leader's slanted part; 0 for a label that wasn't moved

    double clearance() const { return labelClearance + elbow; }
};

/// How far a label may stand from its peak along a time axis of that length, in points: in the
/// middle of a crowd some distance is better than no name.
double farthestMove(const Range& bounds);

/// Which labels there is room for, in the order of their anchors. The more important ones come
/// first in `anchors` and are taken first.
std::vector<std::size_t> labelsWithRoom(std::span<const double> anchors, const Range& bounds);

/// Places labels, which are in the order of their anchors and have room, so that none covers
/// another or the signal, none is out of bounds, and all together have moved as little as can be.
/// Leaders straight up from the apexes to a group's base and then aside to its labels don't cross.
/// `highest` answers the signal's highest value within a range of points.
std::vector<LabelPlace> placeLabels(std::span<const Label> labels, const Range& bounds,
                                    const std::function<double(const Range&)>& highest);

/// The values from the bottom to the top of a plot of `height` points that shows a signal of the
/// values given and has its labels within.
Range valuesToShow(const Range& signal, std::span<const Label> labels,
                   std::span<const LabelPlace> places, double height);

} // namespace korlit::host
