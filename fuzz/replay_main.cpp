// Runs a fuzz target over files and folders of inputs: the seed corpus as a
// regression test in every build, and a crash file reproduced under gdb.

#include "fuzz/fuzz_target.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

namespace {

int replay(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        const std::filesystem::path path = argv[i];
        if (std::filesystem::is_directory(path)) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
                if (entry.is_regular_file())
                    inputs += replay(entry.path());
        } else {
            inputs += replay(path);
        }
    }
    // An empty input is always worth a run: it is the shortest damaged file.
    LLVMFuzzerTestOneInput(nullptr, 0);
    std::cout << argv[0] << ": " << inputs << " inputs\n";
    return inputs > 0 ? 0 : 1;
}
