#include "cli/support.h"

#include "core/database/file.h"
#include "core/link/port_slots.h"

#include <ostream>

namespace rk4::cli {

namespace {

// "COM3", "COM 3" or "3" for slot 2.
std::optional<int> slotOf(const std::string& text)
{
    std::string digits = text;
    if (digits.rfind("COM", 0) == 0)
        digits = digits.substr(3);
    if (!digits.empty() && digits[0] == ' ')
        digits = digits.substr(1);
    if (digits.size() != 1 || digits[0] < '1' || digits[0] > '8')
        return std::nullopt;
    return digits[0] - '1';
}

} // namespace

int runPorts(const Arguments& args, Context& context)
{
    const Parsed parsed = parseArguments(args, {"--dir"});
    const std::filesystem::path directory = parsed.option("--dir").value_or(std::filesystem::current_path().string());
    const auto file = link::portBindingsPath(directory);
    link::PortBindings bindings = link::PortBindings::load(file);

    if (parsed.positional.size() == 2) {
        const auto slot = slotOf(parsed.positional[0]);
        if (!slot)
            return usageError(context, "ports", "the port is COM1 .. COM8");
        bindings.bind(*slot, parsed.positional[1]);
        if (!bindings.save(file)) {
            context.err << "File Error:" << kCannotOpenFile << "(" << file.string() << ")\n";
            return 1;
        }
    } else if (!parsed.positional.empty()) {
        return usageError(context, "ports", "expected nothing, or a port and a device");
    }

    const auto config = readConfigFile(directory / kConfigFile);
    const int selected = config ? config->portIndex() : -1;
    for (int slot = 0; slot < link::kPortSlotCount; ++slot) {
        context.out << (slot == selected ? "* " : "  ") << link::portSlotName(slot) << "  " << bindings.path(slot);
        if (bindings.overridden(slot))
            context.out << "  (from " << link::portOverrideVariable(slot) << ")";
        context.out << "\n";
    }
    return 0;
}

} // namespace rk4::cli
