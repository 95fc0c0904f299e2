// Times wave-to-phrase conversion of the longest phrase a unit holds (131 s),
// recorded at 44100 Hz 16-bit mono, against sox's own encoder for the same
// ADPCM family, in one run on the same file:
//   wav2vox_bench [--rk4 PATH-TO-rk4] [--runs N]
// A longer recording is refused before any work is done; the bench shows
// that too, on ten minutes.
#include "core/database/file.h"
#include "core/voice/wave.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSeconds = 131; // the voice store holds 131.0 s at 8000 Hz

// Speech-like material: a wandering pitch with harmonics, syllable envelopes and noise.
std::vector<std::uint8_t> speechWave(int seconds)
{
    constexpr std::uint32_t rate = 44100;
    std::vector<std::int16_t> samples(static_cast<std::size_t>(rate) * static_cast<std::size_t>(seconds));
    std::mt19937 random(1);
    std::normal_distribution<double> noise(0.0, 300.0);
    double phase = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double t = static_cast<double>(i) / rate;
        const double pitch = 140 + 40 * std::sin(2 * std::numbers::pi * 0.7 * t);
        phase += 2 * std::numbers::pi * pitch / rate;
        const double envelope = 0.5 + 0.5 * std::sin(2 * std::numbers::pi * 3.1 * t);
        const double voice = std::sin(phase) + 0.5 * std::sin(2 * phase) + 0.25 * std::sin(3 * phase);
        samples[i] = static_cast<std::int16_t>(std::clamp(9000 * envelope * voice + noise(random), -32768.0, 32767.0));
    }
    return rk4::waveFileBytes(samples, rate);
}

double medianSeconds(int runs, const std::function<bool()>& work)
{
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        const auto start = Clock::now();
        if (!work())
            return -1;
        times.push_back(std::chrono::duration<double>(Clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// The processor time the child processes of a run took (user and system):
// on a machine shared with other work this moves far less than the wall
// clock, and it leaves out waiting for the disk.
double childSeconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) { return static_cast<double>(time.tv_sec) + time.tv_usec / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double medianChildSeconds(int runs, const std::string& command)
{
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        const double before = childSeconds();
        if (std::system(command.c_str()) != 0)
            return -1;
        times.push_back(childSeconds() - before);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    std::string rk4Path;
    int runs = 5;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::string(argv[i]) == "--rk4")
            rk4Path = argv[i + 1];
        else if (std::string(argv[i]) == "--runs")
            runs = std::max(1, std::atoi(argv[i + 1]));
    }
    const auto dir = std::filesystem::temp_directory_path() / ("wav2vox_bench." + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    const auto wave = dir / "in.wav";
    const auto tenMinutes = dir / "ten.wav";
    if (!rk4::writeFileAtomically(wave, speechWave(kSeconds)) ||
        !rk4::writeFileAtomically(tenMinutes, speechWave(600))) {
        std::fprintf(stderr, "cannot write %s\n", wave.c_str());
        return 1;
    }
    std::printf("input: %s, %ju bytes (%d s, 44100 Hz, 16-bit, mono); median of %d runs\n", wave.c_str(),
                static_cast<std::uintmax_t>(std::filesystem::file_size(wave)), kSeconds, runs);

    std::string refusal;
    const double refused = medianSeconds(runs, [&] {
        rk4::FileSource source(tenMinutes);
        refusal = rk4::convertWave(source).format.problem;
        return !refusal.empty();
    });
    std::printf("ten minutes, refused in:          %8.6f s  (%s)\n", refused, refusal.c_str());

    const double ours = medianSeconds(runs, [&] {
        rk4::FileSource source(wave);
        return source.isOpen() && rk4::writeFileAtomically(dir / "ours.vox", rk4::convertWave(source).vox);
    });
    std::printf("rk4 convertWave, file to file:   %8.3f s  (%ju bytes)\n", ours,
                static_cast<std::uintmax_t>(std::filesystem::file_size(dir / "ours.vox")));

    double cli = -1;
    if (!rk4Path.empty()) {
        const std::string command =
            "'" + rk4Path + "' wav2vox '" + wave.string() + "' '" + (dir / "cli.vox").string() + "' >/dev/null";
        cli = medianSeconds(runs, [&] { return std::system(command.c_str()) == 0; });
        std::printf("rk4 wav2vox (process):           %8.3f s\n", cli);
    }

    const std::string sox = "sox '" + wave.string() + "' -r 8000 -t vox '" + (dir / "sox.vox").string() + "'";
    const double theirs = medianSeconds(runs, [&] { return std::system(sox.c_str()) == 0; });
    if (theirs < 0) {
        std::printf("sox failed or is not installed (scripts/install-deps installs it)\n");
    } else {
        std::printf("sox -r 8000 -t vox (process):    %8.3f s  (%ju bytes)\n", theirs,
                    static_cast<std::uintmax_t>(std::filesystem::file_size(dir / "sox.vox")));
        std::printf("sox / convertWave:               %8.1f x\n", theirs / ours);
        if (cli > 0) {
            std::printf("sox / rk4 wav2vox:               %8.1f x\n", theirs / cli);
            const std::string command =
                "'" + rk4Path + "' wav2vox '" + wave.string() + "' '" + (dir / "cli.vox").string() + "' >/dev/null";
            const double cliCpu = medianChildSeconds(runs, command);
            const double soxCpu = medianChildSeconds(runs, sox);
            std::printf("processor time, rk4 wav2vox:     %8.3f s\n", cliCpu);
            std::printf("processor time, sox:             %8.3f s\n", soxCpu);
            if (cliCpu > 0 && soxCpu > 0)
                std::printf("sox / rk4 wav2vox, processor:    %8.1f x\n", soxCpu / cliCpu);
        }
    }
    std::filesystem::remove_all(dir);
    return 0;
}
