// Does a line of work with the least that any program must do: open the files, move the samples
// with their bytes reversed, find the extremes, write as many files of the same sizes. It knows the
// places from its command line, looks at nothing else and checks next to nothing. What a conversion
// costs beyond this is the price of reading and writing the formats.
#include "bench/work.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>

using namespace korlit::bench;

namespace {

constexpr std::int64_t sampleSize = 4;
constexpr std::int64_t sliceHeadSize = 2048;
constexpr std::int64_t extremesPlace = 4;
constexpr std::int64_t reportHeadSize = 352;
constexpr std::int64_t reportPeakSize = 116;
constexpr std::int64_t channelHeadSize = 110;

// Samples are moved in parts that stay in the processor's cache from the read to the write, with
// room around them for what stands ahead of the first part and behind the last.
constexpr std::int64_t partSize = 256 * 1024L;
constexpr std::int64_t roomSize = 128 * 1024L;
alignas(4096) std::array<std::byte, partSize + 2 * roomSize> buffer;
std::byte* const part = buffer.data() + roomSize;

void need(bool isGood) {
    if (!isGood) {
        std::perror("floor");
        std::exit(1);
    }
}

class File {
  public:
    File(const std::string& path, int flags)
        : descriptor{open(path.c_str(), flags | O_CLOEXEC, newFileMode)} {
        need(descriptor >= 0);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { close(descriptor); }

    void read(std::byte* target, std::int64_t size, std::int64_t offset) const {
        need(pread(descriptor, target, static_cast<std::size_t>(size), offset) == size);
    }
    void write(const void* source, std::int64_t size, std::int64_t offset) const {
        need(pwrite(descriptor, source, static_cast<std::size_t>(size), offset) == size);
    }

  private:
    static constexpr mode_t newFileMode = 0666;
    int descriptor;
};

File openInput(const std::string& path) {
    return {path, O_RDONLY};
}

File createOutput(const std::string& path) {
    return {path, O_WRONLY | O_CREAT | O_TRUNC};
}

struct Extremes {
    float smallest = 0.0F;
    float largest = 0.0F;
};

/// Reverses samples; the extremes are those of the form that a host can read.
template <bool isRead>
void reverse(std::byte* samples, std::int64_t size, Extremes& extremes) {
    for (std::int64_t i = 0; i < size; i += sampleSize) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, samples + i, sizeof bits);
        const std::uint32_t reversed = __builtin_bswap32(bits);
        std::memcpy(samples + i, &reversed, sizeof reversed);
        if (isRead) {
            const auto sample = std::bit_cast<float>(reversed);
            extremes.smallest = std::min(extremes.smallest, sample);
            extremes.largest = std::max(extremes.largest, sample);
        }
    }
}

/// Moves the samples behind `headSize` bytes, in front of what is left of `outputSize`.
template <bool isRead>
void moveSamples(const File& in, std::int64_t inOffset, const File& out, std::int64_t headSize,
                 std::int64_t byteCount, std::int64_t outputSize) {
    Extremes extremes;
    for (std::int64_t done = 0; done < byteCount;) {
        const std::int64_t size = std::min(byteCount - done, partSize);
        const std::int64_t head = done == 0 ? headSize : 0;
        const std::int64_t tail = done + size == byteCount ? outputSize - headSize - byteCount : 0;
        in.read(part, size, inOffset + done);
        reverse<isRead>(part, size, extremes);
        if (isRead && size == byteCount) {
            std::memcpy(part - head + extremesPlace, &extremes, sizeof extremes);
        }
        out.write(part - head, head + size + tail, headSize + done - head);
        done += size;
    }
    if (isRead && byteCount > partSize) {
        out.write(&extremes, sizeof extremes, extremesPlace);
    }
}

void toPair(const Work& work, std::int64_t i) {
    const std::int64_t byteCount = work.points * sampleSize;
    {
        const File in = openInput(pathOf(work, i, ".cdf"));
        const File slice = createOutput(pathOf(work, i, ".sli"));
        moveSamples<true>(in, work.signalIn, slice, sliceHeadSize, byteCount, work.outputSize);
    }
    const File report = createOutput(pathOf(work, i, ".rpt"));
    report.write(buffer.data(), reportHeadSize + reportPeakSize * work.peaks, 0);
}

void toAndi(const Work& work, std::int64_t i) {
    {
        const File report = openInput(pathOf(work, i, ".rpt"));
        report.read(buffer.data(), reportHeadSize + reportPeakSize * work.peaks, 0);
    }
    const File in = openInput(pathOf(work, i, ".sli"));
    const File out = createOutput(pathOf(work, i, ".cdf"));
    moveSamples<false>(in, work.signalIn, out, work.signalOut, work.points * sampleSize,
                       work.outputSize);
}

void runToAndi(const Work& work, std::int64_t i) {
    const std::int64_t byteCount = work.points * sampleSize;
    const File in = openInput(pathOf(work, i, ".run"));
    for (std::int64_t channel = 0; channel < work.channels; ++channel) {
        const File out = createOutput(channelPath(work, i, channel));
        moveSamples<false>(in, work.signalIn + channel * (channelHeadSize + byteCount), out,
                           work.signalOut, byteCount, work.outputSize);
    }
}

} // namespace

int main(int argc, char** argv) {
    const Work work = readWork(std::span{argv + 1, static_cast<std::size_t>(argc - 1)});
    need(work.signalOut <= roomSize &&
         work.outputSize - work.signalOut - work.points * sampleSize <= roomSize);
    for (std::int64_t i = 0; i < work.conversions; ++i) {
        if (work.direction == "to-pair") {
            toPair(work, i);
        } else if (work.direction == "to-andi") {
            toAndi(work, i);
        } else {
            runToAndi(work, i);
        }
    }
    return 0;
}
