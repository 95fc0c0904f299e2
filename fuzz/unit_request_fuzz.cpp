// The tool's requests as the simulated unit reads them: pieces of the input
// arrive with pauses between them (one byte the length, one the pause in
// tens of milliseconds), and the unit must answer or ignore each without
// growing past what a unit holds.

#include "fuzz/fuzz_target.h"

#include "core/link/memory_transport.h"
#include "core/link/simulated_unit.h"

#include <algorithm>
#include <array>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    rk4::link::MemoryLink link;
    link.tool().open();
    link.unit().open();
    rk4::link::UnitOptions options;
    options.voiceEraseMillis = 50;
    rk4::link::SimulatedUnit unit(link.unit(), options);
    rk4::Millis now = 0;
    std::array<std::uint8_t, 4200> replies{};
    for (std::size_t offset = 0; offset + 2 <= size;) {
        const std::size_t length = std::min<std::size_t>(data[offset], size - offset - 2);
        const rk4::Millis pause = data[offset + 1] * rk4::Millis{10};
        offset += 2;
        link.tool().write({data + offset, length});
        offset += length;
        unit.poll(now);
        now += pause;
        unit.poll(now);
        while (link.tool().read(replies) > 0) {
        }
    }
    return 0;
}
