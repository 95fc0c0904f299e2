#include "core/cellular/cell_commands.h"

#include <algorithm>
#include <cctype>

namespace rk4::cellular {

namespace {

constexpr std::size_t kFieldReadLimit = 20;
constexpr std::size_t kModelLength = 10;
constexpr std::size_t kSidLength = 10;
constexpr std::size_t kVersionLength = 70;
constexpr std::size_t kVersionTailLength = 20;
constexpr std::size_t kNumberLength = 10;
constexpr int kRssiUnknownAbove = 75;
constexpr int kRssiMaximum = 16;

bool startsWith(std::string_view line, std::string_view prefix) { return line.substr(0, prefix.size()) == prefix; }

// Characters from `from` on, at most `count`; empty past the end.
std::string slice(std::string_view line, std::size_t from, std::size_t count)
{
    if (from >= line.size())
        return {};
    return std::string(line.substr(from, count));
}

char at(std::string_view line, std::size_t position) { return position < line.size() ? line[position] : '\0'; }

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool refuse(Prompter* prompter, const char* text)
{
    if (prompter)
        prompter->tell("Error", text, Icon::Error);
    return true;
}

// The shared part of the two checks: allowed characters, then the length of
// the text as entered.
bool checkPhone(const std::string& text, Prompter* prompter)
{
    for (const char c : text)
        if (!std::isdigit(static_cast<unsigned char>(c)) && c != ' ' && c != '(' && c != ')' && c != '-')
            return refuse(prompter, "Phone Number must be digits 0 to 9");
    if (text.size() != kPhoneLength)
        return refuse(prompter, "Phone Number must be 10 digits");
    return false;
}

} // namespace

std::string MakeTXMessage(std::uint8_t command, std::string_view min, std::string_view mdn)
{
    std::string text;
    switch (command) {
    case CELL_MODEL: text = "AT+GMM"; break;
    case CELL_WRITE_MIN: text = "AT$KWMSID=" + std::string(min); break;
    case CELL_ONLINE: text = "AT$KWMODE=1"; break;
    case CELL_UNLOCK: text = std::string("AT$KWSPC=") + kServiceProgrammingCode; break;
    case CELL_RESET: text = "AT$KWMODE=2"; break;
    case CELL_BAUD: text = "AT+IPR=19200"; break;
    case CELL_NETWORK_CODE: text = "AT$KWMNC=86"; break;
    case CELL_WRITE_MDN: text = "AT$KWDIR=" + std::string(mdn); break;
    case CELL_READ_MIN: text = "AT$KWMSID?"; break;
    case CELL_READ_SID: text = "AT+CSS?"; break;
    case CELL_VERSION: text = "AT+GMR"; break;
    case CELL_RSSI: text = "AT+CSQ?"; break;
    case CELL_PROTOCOL: text = "AT$QCPREV"; break;
    case CELL_ESN: text = "AT+GSN"; break;
    case CELL_READ_MDN: text = "AT$KWDIR?"; break;
    case CELL_CHECK: text = "AT"; break;
    default: return {};
    }
    return text + "\r\n";
}

int rssiReading(std::string_view number)
{
    // Read as a C library would read an integer: leading blanks, a sign, then
    // digits up to the first other character; no digits reads as 0.
    std::size_t position = 0;
    while (position < number.size() && number[position] == ' ')
        ++position;
    bool negative = false;
    if (position < number.size() && (number[position] == '-' || number[position] == '+'))
        negative = number[position++] == '-';
    long value = 0;
    for (; position < number.size() && std::isdigit(static_cast<unsigned char>(number[position])); ++position)
        value = std::min(value * 10 + (number[position] - '0'), 1'000'000L);
    if (negative)
        value = -value;
    if (value > kRssiUnknownAbove)
        value = 0;
    int reading = static_cast<int>(value / 2);
    // A negative value is no reading the gauge can show either.
    if (reading > kRssiMaximum || reading < 0)
        reading = 0;
    return reading;
}

std::string esnText(std::string_view hexDigits)
{
    if (hexDigits.size() != 8)
        return {};
    unsigned long manufacturer = 0, serial = 0;
    for (std::size_t i = 0; i < hexDigits.size(); ++i) {
        const int digit = hexValue(hexDigits[i]);
        if (digit < 0)
            return {};
        unsigned long& part = i < 2 ? manufacturer : serial;
        part = part * 16 + static_cast<unsigned long>(digit);
    }
    std::string maker = std::to_string(manufacturer);
    maker.insert(0, 3 - maker.size(), '0');
    std::string number = std::to_string(serial);
    // One zero in front of a short serial, never more: this is how the
    // module's label prints it, and installers compare the two.
    if (number.size() < 8)
        number.insert(0, 1, '0');
    return maker + " " + number;
}

bool InterpretResponse(std::uint8_t command, std::string_view line, CellReadings& readings)
{
    switch (command) {
    case CELL_MODEL:
        if (!startsWith(line, "+GMM: "))
            return false;
        readings.model = slice(line, 6, kModelLength);
        return true;
    case CELL_WRITE_MIN: return startsWith(line, "MOBILE");
    case CELL_ONLINE: return startsWith(line, "MODE CHANGED");
    case CELL_UNLOCK: return startsWith(line, "SPC UNLOCKED");
    case CELL_RESET: return startsWith(line, "MODE ");
    case CELL_BAUD:
    case CELL_CHECK: return line == "OK";
    case CELL_NETWORK_CODE: return line == "MOBILE NETWORK CODE CHANGED";
    case CELL_WRITE_MDN: return startsWith(line, "DIRECTORY");
    case CELL_READ_MIN:
        if (!startsWith(line, "$KWMSID: "))
            return false;
        readings.min = slice(line, 9, kPhoneLength);
        return true;
    case CELL_READ_MDN:
        if (!startsWith(line, "$KWDIR: "))
            return false;
        readings.mdn = slice(line, 8, kPhoneLength);
        return true;
    case CELL_READ_SID: {
        if (!startsWith(line, "+CSS: "))
            return false;
        switch (at(line, 6)) {
        case '0': readings.bandClass = "Unsupported"; break;
        case '1': readings.bandClass = "800 MHz"; break;
        case '2': readings.bandClass = "1900 MHz"; break;
        default: readings.bandClass.clear(); break;
        }
        readings.band = slice(line, 8, 1);
        readings.sid = slice(line, 10, kSidLength);
        return true;
    }
    case CELL_VERSION: {
        constexpr std::string_view prefix = "+GMR: S/W VER: ";
        if (!startsWith(line, prefix))
            return false;
        const std::size_t blank = line.find(' ', prefix.size());
        const std::size_t end = blank == std::string_view::npos ? line.size() : blank;
        std::string version = slice(line, prefix.size(), std::min(end - prefix.size(), kVersionLength));
        const std::size_t p = line.find('P', end);
        if (p != std::string_view::npos)
            version += "  " + slice(line, p, kVersionTailLength);
        readings.version = version;
        return true;
    }
    case CELL_RSSI: {
        if (!startsWith(line, "+CSQ: "))
            return false;
        const std::string_view rest = line.substr(6);
        const std::string_view number = rest.substr(0, std::min(rest.find(','), kNumberLength));
        readings.rssi = rssiReading(number);
        readings.rssiText = "Reading = " + std::to_string(readings.rssi);
        return true;
    }
    case CELL_PROTOCOL:
        if (!startsWith(line, "$QCPREV: "))
            return false;
        switch (at(line, 9)) {
        case '1': readings.protocol = "JSTD008"; break;
        case '3': readings.protocol = "IS-95B"; break;
        case '6': readings.protocol = "IS-2000"; break;
        default: readings.protocol.clear(); break;
        }
        return true;
    case CELL_ESN: {
        if (!startsWith(line, "+GSN: "))
            return false;
        // A line whose ESN is not eight hexadecimal digits is a garbled reply,
        // not the module's ESN: it is not taken.
        std::string esn = esnText(line.substr(6, std::min<std::size_t>(8, line.size() - 6)));
        if (esn.empty())
            return false;
        readings.esn = std::move(esn);
        return true;
    }
    default: return false;
    }
}

bool CheckMIN(CellEntries& entries, Prompter* prompter)
{
    std::string text = entries.min.substr(0, kFieldReadLimit);
    if (!text.empty() && text.front() == ' ') {
        text.erase(0, 1);
        entries.min = text;
    }
    if (entries.mdnSameAsMin)
        entries.mdn = text;
    return checkPhone(text, prompter);
}

bool CheckMDN(CellEntries& entries, Prompter* prompter)
{
    return checkPhone(entries.mdn.substr(0, kFieldReadLimit), prompter);
}

} // namespace rk4::cellular
