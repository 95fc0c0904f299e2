#include "core/modem/modem_settings.h"

#include "core/common/safe_file.h"
#include "core/common/text.h"
#include "core/link/port_slots.h"

#include <sstream>

namespace rk4::modem {

namespace {

// Values are one line each and no longer than any field that holds them.
std::string cleanValue(const std::string& text)
{
    std::string out;
    for (const char c : text.substr(0, 64))
        if (static_cast<unsigned char>(c) >= 0x20 && c != 0x7F)
            out += c;
    return out;
}

} // namespace

ModemSettings ModemSettings::parse(const std::string& text)
{
    ModemSettings settings;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        if (line.starts_with('#'))
            continue;
        const auto equals = line.find('=');
        if (equals == std::string::npos)
            continue;
        const std::string key = trimBlanks(line.substr(0, equals));
        // Trimmed again after each cut, so what is kept is what a save writes
        // and the next load reads back.
        const std::string value = trimBlanks(cleanValue(trimBlanks(line.substr(equals + 1))));
        const auto upTo = [&](std::size_t length) { return trimBlanks(value.substr(0, length)); };
        if (key == "country")
            settings.lastNumber.country = upTo(kCountryCodeLength);
        else if (key == "area")
            settings.lastNumber.area = upTo(kAreaCodeLength);
        else if (key == "number")
            settings.lastNumber.number = upTo(kLocalNumberLength);
        else if (key == "home country")
            settings.location.country = value;
        else if (key == "home area")
            settings.location.area = value;
        else if (key == "outside line")
            settings.location.outsideLine = value;
        else if (key == "long distance")
            settings.location.longDistance = value;
        else if (key == "international")
            settings.location.international = value;
        else if (key == "init")
            settings.initString = value.empty() ? kDefaultInitString : value;
        else if (key == "port") {
            settings.portSlot = kSearchAllPorts;
            for (int slot = 0; slot < link::kPortSlotCount; ++slot)
                if (value == link::portSlotName(slot))
                    settings.portSlot = slot;
        }
    }
    return settings;
}

ModemSettings ModemSettings::load(const std::filesystem::path& file)
{
    const FileRead read = readFileBytes(file);
    if (!read)
        return ModemSettings{};
    return parse(std::string(read.bytes.begin(), read.bytes.end()));
}

std::string ModemSettings::text() const
{
    std::ostringstream out;
    out << "# The Rk4 programmer's modem link.\n"
        << "country = " << lastNumber.country << "\n"
        << "area = " << lastNumber.area << "\n"
        << "number = " << lastNumber.number << "\n"
        << "home country = " << location.country << "\n"
        << "home area = " << location.area << "\n"
        << "outside line = " << location.outsideLine << "\n"
        << "long distance = " << location.longDistance << "\n"
        << "international = " << location.international << "\n"
        << "port = " << (portSlot == kSearchAllPorts ? "any" : link::portSlotName(portSlot)) << "\n"
        << "init = " << initString << "\n";
    return out.str();
}

bool ModemSettings::save(const std::filesystem::path& file) const
{
    const std::string content = text();
    return static_cast<bool>(writeFileAtomically(file, std::string_view(content)));
}

std::filesystem::path modemSettingsPath(const std::filesystem::path& workingDirectory)
{
    return workingDirectory / kModemSettingsFile;
}

} // namespace rk4::modem
