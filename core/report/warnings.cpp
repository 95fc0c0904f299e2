#include "core/report/warnings.h"

#include "core/database/directory_codec.h"
#include "core/database/defaults.h"
#include "core/hardware/port_editor.h"

#include <algorithm>
#include <array>
#include <span>

namespace rk4 {

namespace {

bool emptyCode(const DtmfCode& code) { return code[0] == 0; }

bool emptyName(const Name& name)
{
    // A record never padded holds NULs where a padded one holds blanks.
    return std::all_of(name.begin(), name.end(), [](char c) { return c == ' ' || c == 0; });
}

bool inUse(const PointRecord& point) { return point.inactive == 0; }

char letter(int directory) { return static_cast<char>('A' + directory); }

bool hasPhoneNumber(const DirectoryRecord& dir) { return dir.dirText[0] == kCmdDial; }

// Characters a DIAL actually dials; the '!' delay and anything else are not counted.
int dialledCount(const std::string& number)
{
    return static_cast<int>(std::count_if(number.begin(), number.end(), [](char c) {
        return (c >= '0' && c <= '9') || c == '*' || c == '#';
    }));
}

// Output 1..8 is On/Off in the hardware record (a number out of range is not).
bool outputIsOnOff(const Database& db, int output)
{
    return output >= 1 && output <= kInputCount && db.hardware.port[kInputCount + output - 1].typeFlags == kOutputOnOff;
}

std::string StartWarning(const char* kind, int number) { return std::string(kind) + " " + std::to_string(number) + " "; }

void addDirectoryPhoneChecks(const Database& db, int directory, std::vector<std::string>& out,
                             const std::array<bool, 2>& shortNumber, int check)
{
    const GroupRecord& group = db.group[directory];
    const std::string head = std::string("Directory ") + letter(directory);
    if (!hasPhoneNumber(db.dir[directory]))
        return;
    if (check == 8 && emptyCode(group.ackCode))
        out.push_back(head + " does not have an Acknowledge Code.");
    if (check == 9 && emptyCode(group.interrogateCode))
        out.push_back(head + " does not have an Interrogate Code.");
    if (check == 10 && shortNumber[directory])
        out.push_back(head + " has one or more phone numbers with less than 7 digits.");
}

bool hasShortDial(const DirectoryRecord& dir)
{
    for (const DirLine& line : DecodeDirectory(dir))
        for (int i = 0; i < kCommandsPerLine && line.command[i] != 0; ++i)
            if (line.command[i] == kCmdDial && dialledCount(line.parameter[i]) < 7)
                return true;
    return false;
}

} // namespace

std::vector<std::string> BasicWarnings(const Database& db)
{
    std::vector<std::string> out;
    const GeneralRecord& gen = db.gen;
    if (emptyCode(gen.accessCode))
        out.push_back("The Access Code is empty - program and control access to the Rk4 will be unrestricted.");
    if (emptyCode(gen.modemEnableCode))
        out.push_back("The Modem Enable Code is empty - remote data transfer will not be available.");
    if (emptyName(gen.name))
        out.push_back("There is no Site Name in the General section.");

    for (int n = 1; n <= 4; ++n) {
        const PointRecord& point = db.alm[7 + n];
        const std::string head = StartWarning("Output", n);
        if (point.type != kPointOnOffOutput && emptyCode(point.onCode))
            out.push_back(head + "is a Timed type without an On code.\nThe output can never be activated.");
        if (point.type == kPointOnOffOutput && !emptyCode(point.onCode) && emptyCode(point.offCode))
            out.push_back(head +
                          "is an On/Off type with an On code but no Off Code.\nOnce this output is activated it "
                          "cannot be turned off.");
    }

    const auto alarms = std::span(db.alm).first(8);
    if (std::none_of(alarms.begin(), alarms.end(), inUse))
        out.push_back("All of the alarms are disabled. No reporting will occur.");
    for (int d = 0; d < 2; ++d) {
        const bool used = std::any_of(alarms.begin(), alarms.end(), [&](const PointRecord& point) {
            return inUse(point) && point.groupMask == d + 1;
        });
        if (used && !hasPhoneNumber(db.dir[d]))
            out.push_back(std::string("Directory ") + letter(d) +
                          " is being used by some alarms but it has no phone numbers.");
    }
    const std::array<bool, 2> shortNumber{hasShortDial(db.dir[0]), hasShortDial(db.dir[1])};
    for (int check = 8; check <= 10; ++check)
        for (int d = 0; d < 2; ++d)
            addDirectoryPhoneChecks(db, d, out, shortNumber, check);
    return out;
}

std::optional<std::string> answerAfterDialWarning(const Database& db)
{
    std::vector<char> marked;
    int count = 0;
    for (int d = 0; d < kDirectoryCount; ++d) {
        const auto& text = db.dir[d].dirText;
        bool mark = false;
        for (std::size_t i = 0; i < text.size() && text[i] != 0; ++i) {
            if (text[i] != kCmdDial)
                continue;
            for (std::size_t j = i + 1; j < text.size(); ++j) {
                const std::uint8_t byte = text[j];
                if (byte == 0 || byte == kLineEnd || (isCommandLetter(byte) && byte != kCmdAnswer))
                    break;
                if (byte == kCmdAnswer) {
                    mark = true;
                    ++count;
                }
            }
        }
        if (mark)
            marked.push_back(letter(d));
    }
    if (count == 0)
        return std::nullopt;
    std::string text = "The ANSWER command appears immediately after a Dial command in ";
    if (count == 1) {
        text += std::string("Directory ") + marked[0];
    } else {
        // The joining counts occurrences, not directories, as the unit's tool always has.
        text += "Directories ";
        for (std::size_t i = 0; i < marked.size(); ++i) {
            if (i > 0)
                text += static_cast<int>(i) == count - 1 ? " and " : ", ";
            text += marked[i];
        }
    }
    text += ".\nUsing Call Progress and ANSWER duplicates the requirement for a response by the called party."
            "\nUse the What's This help for Call Progress to get a full explanation.";
    return text;
}

std::vector<std::string> AdvancedWarnings(const Database& db)
{
    std::vector<std::string> out;
    const GeneralRecord& gen = db.gen;
    const auto groups = std::span(db.group).first(kUsedGroupCount);

    if (gen.securityLevel != 0 && emptyCode(gen.accessCode))
        out.push_back("Security level in General is " + std::to_string(gen.securityLevel + 1) +
                      " but there is no Access Code.  No one can call in!");
    if (std::any_of(groups.begin(), groups.end(), [](const GroupRecord& group) {
            return group.enabled && std::any_of(group.shiftDir.begin() + 1, group.shiftDir.end(),
                                                [&](std::uint8_t dir) { return dir != group.shiftDir[0]; });
        }))
        out.push_back("One or more groups have different shifts - the Shift Change Code in General should be used.");
    if (emptyName(gen.name))
        out.push_back("There is no Site Name in the General section.");
    if (gen.callProgress) {
        if (auto answer = answerAfterDialWarning(db))
            out.push_back(*answer);
    }

    std::array<bool, kDirectoryCount> emptyDirectory{};
    std::array<DirLines, kDirectoryCount> lines;
    for (int d = 0; d < kDirectoryCount; ++d) {
        lines[d] = DecodeDirectory(db.dir[d]);
        emptyDirectory[d] = lineCount(lines[d]) == 0;
    }

    for (int n = 1; n <= kUsedGroupCount; ++n) {
        const GroupRecord& group = db.group[n - 1];
        const std::string head = StartWarning("Group", n);
        if (group.alarmOut && !outputIsOnOff(db, group.alarmOut))
            out.push_back(head + "is using Timed output " + std::to_string(group.alarmOut) +
                          " for Alarm Out - it will only stay on for the timed interval.");
        if (group.newAlarmOut && !outputIsOnOff(db, group.newAlarmOut))
            out.push_back(head + "is using Timed output " + std::to_string(group.newAlarmOut) +
                          " for New Alarm Out - it will only stay on for the timed interval.");
        if (group.ackOut && outputIsOnOff(db, group.ackOut))
            out.push_back(head + "is using On/Off output " + std::to_string(group.ackOut) +
                          " for Ack Out - it will never turn off when acknowledged.");
        if (group.enabled) {
            if (emptyCode(group.ackCode))
                out.push_back(head + "does not have an acknowledge code.");
            if (emptyCode(group.interrogateCode))
                out.push_back(head + "does not have an interrogate code.");
            for (int k = 0; k < 4; ++k) {
                const int dir = group.shiftDir[k];
                if (dir < kDirectoryCount && emptyDirectory[dir])
                    out.push_back("Group " + std::to_string(n) + ", Shift " + std::to_string(k + 1) +
                                  " uses directory " + letter(dir) + " which is empty.");
            }
            if (group.shortTimer == 0)
                out.push_back(head + "Short Timer is set to zero.");
            if (group.shortCycles == 0)
                out.push_back(head + "Short Cycles is set to zero.");
            if (group.longTimer == 0)
                out.push_back(head + "Long Timer is set to zero.");
            if (emptyName(group.name))
                out.push_back(head + "does not have a name.");
        } else if (std::any_of(db.alm.begin(), db.alm.end(), [&](const PointRecord& point) {
                       return inUse(point) && (point.groupMask & MakeMask(n - 1));
                   })) {
            out.push_back(head + "is disabled but has enabled Points using it.");
        }
    }

    if (std::none_of(db.alm.begin(), db.alm.end(), inUse))
        out.push_back("There are no points enabled - no alarm reporting will occur.");

    for (int n = 1; n <= kPointCount; ++n) {
        const PointRecord& point = db.alm[n - 1];
        if (!inUse(point) || !point.isOutput)
            continue;
        const int output = point.port + 1;
        if (std::any_of(groups.begin(), groups.end(), [&](const GroupRecord& group) {
                return group.alarmOut == output || group.newAlarmOut == output || group.ackOut == output;
            }))
            continue;
        if (output > kInputCount)
            continue;
        const std::string head = StartWarning("Point", n);
        const std::uint8_t type = db.hardware.port[kInputCount + output - 1].typeFlags;
        if (type == kOutputTimed && emptyCode(point.onCode))
            out.push_back(head + "is a Timed output with no DTMF ON code.");
        if (type == kOutputOnOff) {
            if (emptyCode(point.onCode))
                out.push_back(head + "is an On/Off output with no DTMF ON code.");
            if (emptyCode(point.offCode))
                out.push_back(head + "is an On/Off output with no DTMF OFF code.");
        }
    }

    for (int n = 1; n <= kPointCount; ++n)
        if (inUse(db.alm[n - 1]) && emptyName(db.alm[n - 1].name))
            out.push_back(StartWarning("Point", n) + "does not have a name.");

    for (int n = 1; n <= kPointCount; ++n) {
        const PointRecord& a = db.alm[n - 1];
        if (!inUse(a))
            continue;
        for (int m = n + 1; m <= kPointCount; ++m) {
            const PointRecord& b = db.alm[m - 1];
            if (!inUse(b) || b.port != a.port || (a.isOutput != 0) != (b.isOutput != 0))
                continue;
            out.push_back(StartWarning("Point", n) + "and Point " + std::to_string(m) + " are both using " +
                          (a.isOutput ? "output " : "input ") + std::to_string(a.port + 1));
        }
    }

    for (int d = 0; d < kDirectoryCount; ++d)
        if (db.dir[d].dirText[0] == kCmdAutoAck)
            out.push_back(std::string("Directory ") + letter(d) +
                          " has Auto Ack as the only entry - no alarms will be reported.");

    // DIAL lines, then DTMF lines, then WAIT lines, each over all directories.
    struct CommandCheck {
        std::uint8_t command;
        const char* defaultText;
        const char* noDigits;
    };
    static constexpr CommandCheck kChecks[] = {
        {kCmdDial, "has a Dial command with the default value '0000'.", "has a Dial command without any numbers."},
        {kCmdDtmf, "contains a DTMF command with the default value '0000'.", "contains a DTMF command with no digits."},
        {kCmdWait, "contains a Wait command with the default value '0000'.", "contains a Wait command with no value."},
    };
    for (const CommandCheck& check : kChecks) {
        for (int d = 0; d < kDirectoryCount; ++d) {
            for (int l = 0; l < kDirectoryLines; ++l) {
                const DirLine& line = lines[d][l];
                for (int i = 0; i < kCommandsPerLine && line.command[i] != 0; ++i) {
                    if (line.command[i] != check.command)
                        continue;
                    const std::string& parameter = line.parameter[i];
                    const std::string head =
                        std::string("Directory ") + letter(d) + ", Line " + std::to_string(l + 1) + " ";
                    // The WAIT entry's own default is "000"; both spellings count as untouched.
                    const bool isDefault = parameter == "0000" || (check.command == kCmdWait && parameter == "000");
                    if (isDefault)
                        out.push_back(head + check.defaultText);
                    else if (check.command == kCmdWait ? parameter.empty() : dialledCount(parameter) == 0)
                        out.push_back(head + check.noDigits);
                    else if (check.command == kCmdDial && dialledCount(parameter) < 7)
                        out.push_back(head + "has a Dial command with less than 7 digits.");
                }
            }
        }
    }

    for (int n = 1; n <= kInputCount; ++n) {
        const HardwarePort& entry = db.hardware.port[n - 1];
        if ((entry.typeFlags & kInputAnalog) || (entry.typeFlags & kInputTypeMask) != kInputTotalizer)
            continue;
        const bool hardwareReset = std::any_of(db.hardware.port.begin(), db.hardware.port.begin() + kInputCount,
                                               [&](const HardwarePort& other) {
                                                   return (other.resetMask & MakeMask(n - 1)) != 0;
                                               });
        const bool codeReset = std::any_of(db.alm.begin(), db.alm.end(), [&](const PointRecord& point) {
            return inUse(point) && !point.isOutput && point.port == n - 1 && point.type == kPointTotalizer &&
                   !emptyCode(point.onCode);
        });
        if (!hardwareReset && !codeReset)
            out.push_back(StartWarning("Input", n) + "is a totalizer without a hardware or code reset.");
    }
    return out;
}

std::vector<std::string> ConfigurationWarnings(const Database& db)
{
    return db.gen.basicMode ? BasicWarnings(db) : AdvancedWarnings(db);
}

std::vector<std::string> warningLines(const std::vector<std::string>& warnings)
{
    std::vector<std::string> lines;
    for (const std::string& warning : warnings) {
        std::size_t start = 0;
        for (std::size_t end; (end = warning.find('\n', start)) != std::string::npos; start = end + 1)
            lines.push_back(warning.substr(start, end - start));
        lines.push_back(warning.substr(start));
    }
    return lines;
}

} // namespace rk4
