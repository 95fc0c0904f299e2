// Times the command-line summary of a full configuration, the whole process
// from start to exit, against the 50 ms bound of a command-line report; and the
// page layout alone, in process:
//     summary_bench [--rk4 PATH-TO-rk4] [--runs N] [--keep FILE.dat]
#include "core/database/file.h"
#include "core/report/summary.h"
#include "tests/support/rich_image.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

template <typename Work> double medianMilliseconds(int runs, Work work)
{
    std::vector<double> times;
    for (int run = 0; run < runs; ++run) {
        const auto start = Clock::now();
        if (!work())
            return -1;
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    std::string rk4 = "./rk4";
    std::string keep;
    int runs = 21;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string option = argv[i];
        if (option == "--rk4")
            rk4 = argv[i + 1];
        else if (option == "--runs")
            runs = std::max(1, std::atoi(argv[i + 1]));
        else if (option == "--keep")
            keep = argv[i + 1];
    }

    const rk4::Database db = rk4::test::richImage();
    const std::filesystem::path file =
        keep.empty() ? std::filesystem::temp_directory_path() / ("summary_bench_" + std::to_string(getpid()) + ".dat")
                     : std::filesystem::path(keep);
    if (rk4::writeImageFile(file, db) != rk4::FileStatus::Ok) {
        std::fprintf(stderr, "cannot write %s\n", file.c_str());
        return 2;
    }

    std::size_t pageCount = 0;
    const double layout = medianMilliseconds(runs, [&] {
        rk4::Printout printout(db);
        pageCount = printout.allPages().size();
        return true;
    });
    std::printf("page layout of all categories (%zu pages): %.3f ms median of %d\n", pageCount, layout, runs);

    const std::string command = rk4 + " summary '" + file.string() + "' > /dev/null";
    const double process = medianMilliseconds(runs, [&] { return std::system(command.c_str()) == 0; });
    if (keep.empty())
        std::filesystem::remove(file);
    if (process < 0) {
        std::fprintf(stderr, "'%s' failed\n", command.c_str());
        return 2;
    }
    std::printf("rk4 summary, whole process: %.2f ms median of %d (bound 50 ms) %s\n", process, runs,
                process < 50 ? "OK" : "TOO SLOW");
    return process < 50 ? 0 : 1;
}
