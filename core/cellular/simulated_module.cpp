#include "core/cellular/simulated_module.h"

#include "core/cellular/cell_commands.h"

#include <array>
#include <cstdlib>

namespace rk4::cellular {

namespace {

bool startsWith(const std::string& text, const std::string& prefix)
{
    return text.compare(0, prefix.size(), prefix) == 0;
}

// Longest command line the module takes; longer input is cut.
constexpr std::size_t kCommandLimit = 200;

} // namespace

std::optional<ModuleFault> parseModuleFault(const std::string& text)
{
    std::vector<std::string> parts;
    std::size_t from = 0;
    for (std::size_t colon; (colon = text.find(':', from)) != std::string::npos; from = colon + 1)
        parts.push_back(text.substr(from, colon - from));
    parts.push_back(text.substr(from));
    if (parts.size() < 2 || parts.size() > 4)
        return std::nullopt;
    ModuleFault fault;
    if (parts[0] == "error")
        fault.kind = ModuleFaultKind::Error;
    else if (parts[0] == "silence")
        fault.kind = ModuleFaultKind::Silence;
    else
        return std::nullopt;
    fault.command = parts[1] == "any" ? std::string() : parts[1];
    for (std::size_t i = 2; i < parts.size(); ++i) {
        if (parts[i].empty() || parts[i].size() > 6 || parts[i].find_first_not_of("0123456789") != std::string::npos)
            return std::nullopt;
        (i == 2 ? fault.skip : fault.times) = std::atoi(parts[i].c_str());
    }
    return fault;
}

SimulatedModule::SimulatedModule(link::Transport& line, ModuleOptions options) : line(line), options(std::move(options))
{
    if (this->options.rssiValues.empty())
        this->options.rssiValues.push_back(99);
}

void SimulatedModule::poll()
{
    std::array<std::uint8_t, 256> buffer{};
    while (const std::size_t count = line.read(buffer)) {
        for (std::size_t i = 0; i < count; ++i) {
            const char c = static_cast<char>(buffer[i]);
            if (c == '\r' || c == '\n') {
                if (!pending.empty())
                    answer(pending);
                pending.clear();
            } else if (pending.size() < kCommandLimit) {
                pending.push_back(c);
            }
        }
    }
}

void SimulatedModule::send(const std::string& text)
{
    line.write(std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

void SimulatedModule::answer(const std::string& command)
{
    commands.push_back(command);
    for (ModuleFault& fault : options.faults) {
        if (!startsWith(command, fault.command))
            continue;
        const int index = fault.seen++;
        if (index < fault.skip || (fault.times > 0 && index >= fault.skip + fault.times))
            continue;
        if (fault.kind == ModuleFaultKind::Silence)
            return;
        if (options.echo)
            send(command + "\r\n");
        send("\r\nERROR\r\n");
        return;
    }
    if (options.echo)
        send(command + "\r\n");
    send("\r\n" + reply(command) + "\r\n");
}

std::string SimulatedModule::reply(const std::string& command)
{
    const std::string error = "ERROR";
    if (command == "AT" || command == "AT+IPR=19200")
        return "OK";
    if (command == "AT+GMM")
        return "+GMM: " + options.model + "\r\n\r\nOK";
    if (command == "AT+GMR")
        return "+GMR: S/W VER: " + options.version + " " + options.versionTail + "\r\n\r\nOK";
    if (command == "AT+CSS?")
        return "+CSS: " + options.bandLine + "\r\n\r\nOK";
    if (command == "AT+GSN")
        return "+GSN: " + options.esn + "\r\n\r\nOK";
    if (command == "AT$QCPREV")
        return std::string("$QCPREV: ") + options.protocolRevision + "\r\n\r\nOK";
    if (command == "AT+CSQ?") {
        const int value = options.rssiValues[rssiIndex++ % options.rssiValues.size()];
        return "+CSQ: " + std::to_string(value) + ",99\r\n\r\nOK";
    }
    if (command == "AT$KWMSID?")
        return "$KWMSID: " + options.min + "\r\n\r\nOK";
    if (command == "AT$KWDIR?")
        return "$KWDIR: " + options.mdn + "\r\n\r\nOK";
    if (command == "AT$KWMODE=1") {
        programming = true;
        return "MODE CHANGED";
    }
    if (command == "AT$KWMODE=2") {
        programming = false;
        unlocked = false;
        return "MODE CHANGED";
    }
    if (startsWith(command, "AT$KWSPC=")) {
        if (!programming || options.locked || command.substr(9) != kServiceProgrammingCode)
            return error;
        unlocked = true;
        return "SPC UNLOCKED";
    }
    if (!unlocked)
        return error;
    if (startsWith(command, "AT$KWDIR=")) {
        options.mdn = command.substr(9);
        return "DIRECTORY NUMBER CHANGED";
    }
    if (startsWith(command, "AT$KWMSID=")) {
        if (!options.ignoreMinWrites)
            options.min = command.substr(10);
        return "MOBILE STATION ID CHANGED";
    }
    if (command == "AT$KWMNC=86") {
        networkCode = true;
        return "MOBILE NETWORK CODE CHANGED";
    }
    return error;
}

} // namespace rk4::cellular
