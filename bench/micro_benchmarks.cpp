// The pieces of a conversion that cost the most, each by itself.
#include "andi/andi_reader.h"
#include "andi/byte_order.h"
#include "andi/value_lookup.h"
#include "native/extremes.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace korlit {
namespace {

void reverseArray(benchmark::State& state) {
    const std::int64_t size = state.range(0);
    std::vector<std::byte> numbers(static_cast<std::size_t>(state.range(1)));
    while (state.KeepRunning()) {
        ReverseBytes(numbers.data(), size, std::ssize(numbers) / size);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * std::ssize(numbers));
}
BENCHMARK(reverseArray)->ArgsProduct({{2, 4, 8}, {256, 64'000, 16'000'000}});

void findExtremes(benchmark::State& state) {
    std::vector<float> samples(static_cast<std::size_t>(state.range(0)));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<float>(i % 1000) + 1.0F;
    }
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(extremesOf(samples));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(findExtremes)->Arg(6000)->Arg(4'000'000);

/// The sample holds 6,000 points, eleven peaks and some forty names.
AndiFile loadSample() {
    AndiFile file{};
    std::array<char, 400> message{};
    ReadAndiFile(SAMPLES "hplc_run.cdf", &file, message);
    return file;
}

void readSample(benchmark::State& state) {
    while (state.KeepRunning()) {
        AndiFile file = loadSample();
        benchmark::DoNotOptimize(file.VariableCount);
        FreeAndiFile(&file);
    }
}
BENCHMARK(readSample);

/// An attribute in the middle of the list, the last variable, and a name that isn't there.
void lookUp(benchmark::State& state, const char* name) {
    AndiFile file = loadSample();
    std::array<char, 32> key{};
    std::array<char, 299> text{};
    AndiVariable* variable = nullptr;
    while (state.KeepRunning()) {
        std::strcpy(key.data(), name);
        benchmark::DoNotOptimize(
            FindAndiValue(&file, key.data(), text.data(), text.size(), &variable));
    }
    FreeAndiFile(&file);
}
BENCHMARK_CAPTURE(lookUp, attribute, "operatorname");
BENCHMARK_CAPTURE(lookUp, variable, "peakheight");
BENCHMARK_CAPTURE(lookUp, missing, "peaknothing");

} // namespace
} // namespace korlit
