#include "cli/support.h"

#include "core/database/file.h"
#include "core/link/port_slots.h"

#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

struct PortsOptions {
    std::string directory;
    std::string port;
    std::string device;
};

int ports(const PortsOptions& options, Context& context)
{
    const std::filesystem::path directory =
        options.directory.empty() ? std::filesystem::current_path() : std::filesystem::path(options.directory);
    const auto file = link::portBindingsPath(directory);
    link::PortBindings bindings = link::PortBindings::load(file);

    if (!options.port.empty()) {
        bindings.bind(*portSlotNumber(options.port), options.device);
        if (!bindings.save(file)) {
            printMessage(context.err, kCannotOpenFile, fileAndCause(file.string(), checkSaveTarget(file).cause()));
            return 1;
        }
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

} // namespace

VerbBody addPortsVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb =
        rk4.add_subcommand("ports", "Show the serial ports, or bind one to a device")
            ->footer("With no PORT the bindings are listed; the port marked * is the one saved in rk4.cfg.");
    auto options = std::make_shared<PortsOptions>();
    verb->add_option("--dir", options->directory, "The folder holding rk4.cfg and the bindings (default: here)");
    verb->add_option("PORT", options->port, "COM1 .. COM8 (or COM 1, or 1) to bind, with DEVICE")
        ->check([](const std::string& text) {
            return portSlotNumber(text) ? std::string() : "the port is COM1 .. COM8, not " + text;
        });
    verb->add_option("DEVICE", options->device, "The device the port stands for");
    verb->callback([options] {
        if (!options->port.empty() && options->device.empty())
            throw CLI::ValidationError("DEVICE", "a port is bound to a device: name both");
    });
    return [options, &context] { return ports(*options, context); };
}

} // namespace rk4::cli
