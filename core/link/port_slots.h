#pragma once
// The eight port slots "COM 1" .. "COM 8" the technician chooses from, each
// bound to a device path. The chosen slot is byte 0 of rk4.cfg; the bindings
// live in a small text file beside it, one "COM n = path" line per slot, and
// RK4_COM1 .. RK4_COM8 in the environment override them for scripts and tests.

#include <array>
#include <filesystem>
#include <string>

namespace rk4::link {

inline constexpr int kPortSlotCount = 8;
inline constexpr char kPortBindingsFile[] = "rk4ports.txt";

// "COM 1" .. "COM 8" for slot 0..7.
std::string portSlotName(int slot);
// The environment variable that overrides a slot: RK4_COM1 .. RK4_COM8.
std::string portOverrideVariable(int slot);
// The device a slot starts bound to: built-in ports first, then USB adapters.
std::string defaultPortPath(int slot);

class PortBindings {
  public:
    PortBindings();

    // Reads the bindings; a missing file or a missing line keeps the default,
    // and lines that are not "COM n = path" are ignored.
    static PortBindings load(const std::filesystem::path& file);
    bool save(const std::filesystem::path& file) const;

    // The device a slot opens: the environment override when set, else the binding.
    std::string path(int slot) const;
    // The binding alone, as the technician set it.
    const std::string& boundPath(int slot) const;
    // True when the environment decides this slot.
    bool overridden(int slot) const;
    // An empty path restores the default.
    void bind(int slot, std::string path);

  private:
    std::array<std::string, kPortSlotCount> paths;
};

// Where the bindings are kept for a working directory (beside rk4.cfg).
std::filesystem::path portBindingsPath(const std::filesystem::path& workingDirectory);

} // namespace rk4::link
