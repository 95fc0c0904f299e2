// rk4ports.txt, hand edited: whatever it holds, loading keeps a path for
// every slot, and a saved file loads back to the same bindings.

#include "fuzz/fuzz_target.h"

#include "core/link/port_slots.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

std::filesystem::path scratchFile(const char* name)
{
    static const std::filesystem::path folder = [] {
        std::string pattern = (std::filesystem::temp_directory_path() / "rk4fuzz-XXXXXX").string();
        return std::filesystem::path(mkdtemp(pattern.data()));
    }();
    return folder / name;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::filesystem::path file = scratchFile("rk4ports.txt");
    std::ofstream(file, std::ios::binary | std::ios::trunc).write(reinterpret_cast<const char*>(data),
                                                                   static_cast<std::streamsize>(size));
    const rk4::link::PortBindings loaded = rk4::link::PortBindings::load(file);
    const std::filesystem::path saved = scratchFile("saved.txt");
    if (!loaded.save(saved))
        return 0;
    const rk4::link::PortBindings again = rk4::link::PortBindings::load(saved);
    for (int slot = 0; slot < rk4::link::kPortSlotCount; ++slot)
        FUZZ_REQUIRE(again.boundPath(slot) == loaded.boundPath(slot));
    return 0;
}
