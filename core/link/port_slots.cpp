#include "core/link/port_slots.h"

#include "core/common/text.h"
#include "core/database/file.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace rk4::link {

namespace {

bool validSlot(int slot) { return slot >= 0 && slot < kPortSlotCount; }

} // namespace

std::string portSlotName(int slot) { return "COM " + std::to_string(slot + 1); }

std::string portOverrideVariable(int slot) { return "RK4_COM" + std::to_string(slot + 1); }

std::string defaultPortPath(int slot)
{
    static const std::array<const char*, kPortSlotCount> defaults{"/dev/ttyS0",   "/dev/ttyS1",   "/dev/ttyUSB0",
                                                                  "/dev/ttyUSB1", "/dev/ttyACM0", "/dev/ttyACM1",
                                                                  "/dev/ttyUSB2", "/dev/ttyUSB3"};
    return validSlot(slot) ? defaults[static_cast<std::size_t>(slot)] : std::string{};
}

PortBindings::PortBindings()
{
    for (int slot = 0; slot < kPortSlotCount; ++slot)
        paths[static_cast<std::size_t>(slot)] = defaultPortPath(slot);
}

PortBindings PortBindings::load(const std::filesystem::path& file)
{
    PortBindings bindings;
    std::ifstream in(file);
    std::string line;
    while (std::getline(in, line)) {
        const auto equals = line.find('=');
        if (equals == std::string::npos)
            continue;
        const std::string name = trimBlanks(line.substr(0, equals));
        for (int slot = 0; slot < kPortSlotCount; ++slot)
            if (name == portSlotName(slot))
                bindings.bind(slot, trimBlanks(line.substr(equals + 1)));
    }
    return bindings;
}

bool PortBindings::save(const std::filesystem::path& file) const
{
    std::ostringstream out;
    out << "# Device opened for each port slot of the Rk4 programmer.\n";
    for (int slot = 0; slot < kPortSlotCount; ++slot)
        out << portSlotName(slot) << " = " << paths[static_cast<std::size_t>(slot)] << "\n";
    const std::string text = out.str();
    return static_cast<bool>(writeFileAtomically(file, std::string_view(text)));
}

std::string PortBindings::path(int slot) const
{
    if (!validSlot(slot))
        return {};
    if (const char* value = std::getenv(portOverrideVariable(slot).c_str()); value && *value)
        return value;
    return paths[static_cast<std::size_t>(slot)];
}

const std::string& PortBindings::boundPath(int slot) const
{
    static const std::string none;
    return validSlot(slot) ? paths[static_cast<std::size_t>(slot)] : none;
}

bool PortBindings::overridden(int slot) const
{
    if (!validSlot(slot))
        return false;
    const char* value = std::getenv(portOverrideVariable(slot).c_str());
    return value && *value;
}

void PortBindings::bind(int slot, std::string path)
{
    if (!validSlot(slot))
        return;
    paths[static_cast<std::size_t>(slot)] = path.empty() ? defaultPortPath(slot) : std::move(path);
}

std::filesystem::path portBindingsPath(const std::filesystem::path& workingDirectory)
{
    return workingDirectory / kPortBindingsFile;
}

} // namespace rk4::link
