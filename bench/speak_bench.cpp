// Speaks the thirty point names of a typical site into phrases, the work of
// "Speak all names" or a build of thirty text slots; the bound is 2 s for all
// thirty:  speak_bench [--benchmark_repetitions=N]
#include "core/voice/speech.h"

#include <benchmark/benchmark.h>

#include <array>

namespace {

constexpr std::array<const char*, 30> kPointNames = {"PUMP HOUSE HIGH LEVEL",
                                                     "PUMP HOUSE LOW LEVEL",
                                                     "NORTH RESERVOIR",
                                                     "SOUTH RESERVOIR",
                                                     "CHLORINE LEAK",
                                                     "GENERATOR RUNNING",
                                                     "GENERATOR FAIL",
                                                     "MAINS POWER FAIL",
                                                     "DOOR OPEN",
                                                     "INTRUDER",
                                                     "FLOW METER",
                                                     "PRESSURE LOW",
                                                     "PRESSURE HIGH",
                                                     "WELL ONE",
                                                     "WELL TWO",
                                                     "WELL THREE",
                                                     "BOOSTER STATION",
                                                     "VALVE CLOSED",
                                                     "VALVE OPEN",
                                                     "TANK OVERFLOW",
                                                     "BATTERY LOW",
                                                     "FIRE ALARM",
                                                     "SMOKE DETECTOR",
                                                     "HEATER FAIL",
                                                     "ROOM TEMPERATURE",
                                                     "LIFT STATION",
                                                     "WET WELL HIGH",
                                                     "BLOWER FAIL",
                                                     "COMMUNICATION FAIL",
                                                     "SITE ALARM"};

void ThirtyPointNames(benchmark::State& state)
{
    const rk4::SpeechSettings settings;
    std::size_t bytes = 0;
    for (auto _ : state)
        for (const char* name : kPointNames) {
            const rk4::VoxConversion phrase = rk4::speakPhrase(name, settings);
            if (!phrase.format.convertible()) {
                state.SkipWithError(phrase.format.problem.c_str());
                return;
            }
            bytes += phrase.vox.size();
        }
    state.counters["phrase bytes"] = benchmark::Counter(static_cast<double>(bytes) / state.iterations());
}
BENCHMARK(ThirtyPointNames)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
