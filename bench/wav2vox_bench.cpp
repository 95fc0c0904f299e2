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

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

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

// One run of a program, started directly (no shell in between) with its
// output to /dev/null: the wall time, and the processor time (user and
// system) it took, which on a machine shared with other work moves far less
// than the wall clock.
struct ProcessTime {
    double wall = -1;
    double processor = -1;
};

ProcessTime runProcess(const std::vector<std::string>& arguments)
{
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    const auto start = Clock::now();
    pid_t child = 0;
    const int spawned = ::posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ProcessTime time;
    if (spawned != 0)
        return time;
    int status = 0;
    rusage usage{};
    if (::wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return time;
    time.wall = std::chrono::duration<double>(Clock::now() - start).count();
    const auto seconds = [](const timeval& value) { return static_cast<double>(value.tv_sec) + value.tv_usec / 1e6; };
    time.processor = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    return time;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? -1 : values[values.size() / 2];
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

    const std::vector<std::string> sox = {"sox", wave.string(), "-r", "8000", "-t", "vox", (dir / "sox.vox").string()};
    if (runProcess(sox).wall < 0) {
        std::printf("sox failed or is not installed (scripts/install-deps installs it)\n");
        std::filesystem::remove_all(dir);
        return 1;
    }
    std::printf("sox -r 8000 -t vox output:        %ju bytes\n",
                static_cast<std::uintmax_t>(std::filesystem::file_size(dir / "sox.vox")));
    // The two programs take turns, so that whatever else the machine is doing
    // weighs on both alike; each pair gives a ratio.
    std::vector<double> soxWall, soxProcessor, ratios, processorRatios, cliWall, cliProcessor;
    const std::vector<std::string> cli = {rk4Path, "wav2vox", wave.string(), (dir / "cli.vox").string()};
    for (int run = 0; run < runs && !rk4Path.empty(); ++run) {
        const ProcessTime theirs = runProcess(sox);
        const ProcessTime mine = runProcess(cli);
        if (theirs.wall < 0 || mine.wall < 0) {
            std::printf("a run failed\n");
            break;
        }
        soxWall.push_back(theirs.wall);
        soxProcessor.push_back(theirs.processor);
        cliWall.push_back(mine.wall);
        cliProcessor.push_back(mine.processor);
        ratios.push_back(theirs.wall / mine.wall);
        if (mine.processor > 0)
            processorRatios.push_back(theirs.processor / mine.processor);
    }
    if (!ratios.empty()) {
        std::printf("rk4 wav2vox (process):           %8.3f s  wall, %8.3f s processor\n", median(cliWall),
                    median(cliProcessor));
        std::printf("sox -r 8000 -t vox (process):    %8.3f s  wall, %8.3f s processor\n", median(soxWall),
                    median(soxProcessor));
        std::printf("sox / rk4 wav2vox, wall:         %8.1f x  (median of the runs' ratios)\n", median(ratios));
        std::printf("sox / rk4 wav2vox, processor:    %8.1f x\n", median(processorRatios));
    }
    std::printf("sox / convertWave:               %8.1f x\n", median(soxWall) / ours);
    std::filesystem::remove_all(dir);
    return 0;
}
