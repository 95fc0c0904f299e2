#include "tests/support/temp_dir.h"

#include <cstdlib>
#include <stdexcept>

namespace rk4::test {

TempDir::TempDir()
{
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
