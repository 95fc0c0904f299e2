#include "tests/support/temp_dir.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <sys/resource.h>

namespace rk4::test {

namespace {

// A test that runs away must not fill the disk: no file a test (or a program
// it starts) writes may grow past this. A write beyond it fails instead of
// killing the process, so the test reports it.
constexpr rlim_t kLargestTestFile = 64u << 20;

void boundFileSizes()
{
    static const bool done = [] {
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{};
        if (::getrlimit(RLIMIT_FSIZE, &limit) == 0 &&
            (limit.rlim_cur == RLIM_INFINITY || limit.rlim_cur > kLargestTestFile)) {
            limit.rlim_cur = kLargestTestFile;
            ::setrlimit(RLIMIT_FSIZE, &limit);
        }
        return true;
    }();
    (void)done;
}

} // namespace

TempDir::TempDir()
{
    boundFileSizes();
    std::string pattern = (std::filesystem::temp_directory_path() / "rk4test-XXXXXX").string();
    if (!::mkdtemp(pattern.data()))
        throw std::runtime_error("mkdtemp failed");
    root = pattern;
}

TempDir::~TempDir()
{
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
}

} // namespace rk4::test
