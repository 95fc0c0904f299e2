#pragma once
// The radio module's AT command set as this tool uses it: the command table,
// the text sent for each command, the reading of each reply line into the
// displays, and the checks of the MIN and MDN entries.

#include "core/common/prompter.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace rk4::cellular {

// Command codes. Codes from 0x80 up read from the module.
enum CellCommand : std::uint8_t {
    CELL_MODEL = 0x00,        // AT+GMM
    CELL_WRITE_MIN = 0x01,    // AT$KWMSID=<MIN>
    CELL_ONLINE = 0x03,       // AT$KWMODE=1
    CELL_UNLOCK = 0x04,       // AT$KWSPC=<code>
    CELL_RESET = 0x05,        // AT$KWMODE=2
    CELL_BAUD = 0x06,         // AT+IPR=19200
    CELL_NETWORK_CODE = 0x07, // AT$KWMNC=86
    CELL_WRITE_MDN = 0x08,    // AT$KWDIR=<MDN>
    CELL_READ_MIN = 0x81,     // AT$KWMSID?
    CELL_READ_SID = 0x82,     // AT+CSS?
    CELL_VERSION = 0x83,      // AT+GMR
    CELL_RSSI = 0x84,         // AT+CSQ?
    CELL_PROTOCOL = 0x85,     // AT$QCPREV
    CELL_ESN = 0x86,          // AT+GSN
    CELL_READ_MDN = 0x87,     // AT$KWDIR?
    CELL_CHECK = 0x88,        // AT
};

// The module maker's service programming code that unlocks the module.
inline constexpr char kServiceProgrammingCode[] = "482916";

// The module's line: 19200 baud, 8 data bits, no parity, one stop bit, DTR off.
inline constexpr unsigned kCellBaud = 19200;
// A command may take its length in ms plus this to leave the machine.
inline constexpr std::uint64_t kTransmitSlackMillis = 100;
// Longest reply line kept; longer lines are cut here.
inline constexpr std::size_t kReplyLineSize = 100;
// MIN and MDN entries, separators included.
inline constexpr std::size_t kPhoneLength = 10;

// The text sent for `command`, CR LF included; empty for an unknown code.
std::string MakeTXMessage(std::uint8_t command, std::string_view min = {}, std::string_view mdn = {});

// What the read replies have shown: one member per display of the dialog.
struct CellReadings {
    std::string model;
    std::string version;
    std::string bandClass;
    std::string band;
    std::string sid;
    std::string protocol;
    std::string esn;
    std::string min;
    std::string mdn;
    int rssi = 0; // 0 .. 16, the gauge
    std::string rssiText;

    bool operator==(const CellReadings&) const = default;
};

// The reading a "+CSQ: " line's first number gives: half of it, with values
// the module uses for "unknown" (above 75) and readings above 16 shown as 0.
int rssiReading(std::string_view number);

// "159 01223629" from the eight hexadecimal ESN digits "9F12ABCD"; empty when
// the text is not eight hexadecimal digits.
std::string esnText(std::string_view hexDigits);

// Checks `line` as the reply to `command` and, for a read, puts what it shows
// into `readings`. False when the line is not that command's reply.
bool InterpretResponse(std::uint8_t command, std::string_view line, CellReadings& readings);

// The phone number entries of the dialog.
struct CellEntries {
    std::string min;
    std::string mdn;
    bool mdnSameAsMin = false;
};

// Validators in the system's way: true when the entry is bad. With a prompter
// the refusal is shown ("Phone Number must be digits 0 to 9", "Phone Number
// must be 10 digits"); without one the check is silent. CheckMIN removes one
// leading blank from the MIN and copies it into the MDN when asked to.
bool CheckMIN(CellEntries& entries, Prompter* prompter);
bool CheckMDN(CellEntries& entries, Prompter* prompter);

} // namespace rk4::cellular
