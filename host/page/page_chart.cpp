#include "host/page/page_chart.h"

#include "host/page/markup.h"
#include "host/text/numbers.h"
#include "host/text/utf8.h"
#include "host/text/words.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace korlit::host {

namespace {

/// A line in the words of SVG, by steps and as short as can be.
class Path {
  public:
    void moveTo(int x, int y) {
        text += 'M' + std::to_string(x) + (y < 0 ? "" : " ") + std::to_string(y) + 'l';
        endsInLetter = true;
        lastX = x;
        lastY = y;
        levelX = x;
    }

    void lineTo(int x, int y) {
        if (y == lastY) {
            lastX = x; // a level stretch is one step
            return;
        }
        const int xAhead = lastX;
        lastX = levelX;
        if (xAhead != levelX) {
            step(xAhead, lastY);
        }
        step(x, y);
    }

    std::string end() {
        if (lastX != levelX) {
            const int x = lastX;
            lastX = levelX;
            step(x, lastY);
        }
        return text;
    }

  private:
    void step(int x, int y) {
        addNumber(x - lastX);
        addNumber(y - lastY);
        lastX = levelX = x;
        lastY = y;
    }

    void addNumber(int number) {
        text += (endsInLetter || number < 0 ? "" : " ") + std::to_string(number);
        endsInLetter = false;
    }

    std::string text;
    bool endsInLetter = false;
    int lastX = 0;
    int lastY = 0;
    int levelX = 0; ///< where the level stretch began that isn't written yet
};

/// One stretch after the other, from its end that is nearer to what is ahead of it.
std::string pathOf(const Outline& outline) {
    Path path;
    std::string ahead;
    bool isBehindGap = true;
    int y = 0;
    for (std::size_t i = 0; i + 1 < outline.size(); i += 2) {
        const int x = static_cast<int>(i);
        if (outline[i] == outlineGap) {
            ahead += isBehindGap ? "" : path.end();
            path = isBehindGap ? path : Path{};
            isBehindGap = true;
            continue;
        }
        int first = outlineTop - outline[i];
        int second = outlineTop - outline[i + 1];
        if (!isBehindGap && std::abs(second - y) < std::abs(first - y)) {
            std::swap(first, second);
        }
        isBehindGap ? path.moveTo(x, first) : path.lineTo(x, first);
        isBehindGap = false;
        path.lineTo(x + 1, second);
        y = second;
    }
    return ahead + (isBehindGap ? "" : path.end());
}

std::string svgStart(std::size_t stretches) {
    return "<svg viewBox=\"0 0 " + std::to_string(2 * std::max<std::size_t>(stretches, 1) - 1) +
           ' ' + std::to_string(outlineTop) + "\" preserveAspectRatio=none aria-hidden=true>";
}

std::string captionOf(const RecordedChannel& channel) {
    std::vector<std::string> words;
    if (channel.number > 0) {
        words.push_back("Channel " + std::to_string(channel.number));
    }
    if (channel.times) {
        words.push_back(roundedText(channel.times->first) + " to " +
                        roundedText(channel.times->second) + " min");
    }
    if (channel.values) {
        words.push_back(roundedText(channel.values->first) + " to " +
                        roundedText(channel.values->second) + ' ' + channel.unit);
    }
    words.push_back(groupedDigits(channel.points) + (channel.points == 1 ? " point" : " points"));
    return element("figcaption", joined(words, " \u00b7 "));
}

/// The names and times of peaks, in a form that the script can take apart to put each at its place:
/// no name has the end of a line.
std::string peaksText(const std::vector<RecordedPeak>& peaks) {
    std::vector<std::string> labels;
    for (const RecordedPeak& peak : peaks) {
        labels.push_back(printable(peak.name) + "\u00a0" +
                         (peak.time ? threeDecimals(*peak.time) : "?"));
    }
    std::string text = "<p>Peaks: ";
    for (const std::string& label : labels) {
        text += (&label == &labels.front() ? "" : ",\n") + escaped(label);
    }
    return labels.empty() ? "" : text + "</p>";
}

std::string timesOf(const RecordedChannel& channel) {
    return channel.times ? " data-from=" + roundedText(channel.times->first) +
                               " data-to=" + roundedText(channel.times->second)
                         : "";
}

} // namespace

std::string pictureOf(const RecordedChannel& channel, std::size_t number, std::size_t stretches) {
    const Outline outline = thinned(channel.outline, stretches);
    return svgStart(outline.size() / 2) + "<path id=c" + std::to_string(number) + " d=\"" +
           pathOf(outline) + "\"/></svg>";
}

std::string chartOf(const RecordedChannel& channel, std::size_t number, std::size_t stretches,
                    bool isDrawn) {
    const std::string picture = isDrawn
                                    ? svgStart(std::min(stretches, channel.outline.size() / 2)) +
                                          "<use href=\"#c" + std::to_string(number) + "\"/></svg>"
                                    : pictureOf(channel, number, stretches);
    return "<figure>" + captionOf(channel) + "<div class=chart" + timesOf(channel) + ">" + picture +
           "</div>" + peaksText(channel.peaks) + "</figure>";
}

std::string legendOf(const RecordedChannel& channel) {
    return "<figure>" + captionOf(channel) + peaksText(channel.peaks) + "</figure>";
}

} // namespace korlit::host
