#pragma once
// Images the report tests draw. richImage is a full Advanced configuration:
// every group in use, all thirty points of every type, every input and output
// kind and six directories of mixed commands. The summary tests and the
// summary benchmark draw it.

#include "core/database/defaults.h"
#include "core/database/directory_codec.h"
#include "core/database/dtmf.h"

#include <string>

namespace rk4::test {

// The image Clear Data leaves in either mode, names padded.
inline Database clearedImage(bool basic)
{
    Database db;
    db.gen.basicMode = basic ? 1 : 0;
    ClearDatabase(db, false);
    PadAllTags(db);
    return db;
}

inline Database richImage()
{
    Database db;
    ClearDatabase(db, false);
    setName(db.gen.name, "North Pump Stn");
    storeDtmfCode("4711", db.gen.accessCode);
    storeDtmfCode("*9", db.gen.shiftChangeCode);
    storeDtmfCode("8080", db.gen.modemEnableCode);
    db.gen.securityLevel = 1;
    db.gen.tempAckTime = 60;
    db.gen.ringsToAnswer = 4;
    db.gen.callProgress = 1;
    db.gen.carrierDetectOut = 7;
    db.gen.ringOut = 8;

    // Inputs: digital (resets 4), watchdog, interval, totalizer, analog, digital x3.
    const std::uint8_t inputTypes[8] = {0x00, 0x41, 0x82, 0x03, 0x10, 0x80, 0x00, 0x00};
    for (int i = 0; i < 8; ++i) {
        HardwarePort& port = db.hardware.port[i];
        port.typeFlags = inputTypes[i];
        port.debounce = static_cast<std::uint16_t>(2 + 38 * i);
        port.scaleFlags = i == 6 ? 0x01 : 0x02;
        port.timer = 15;
    }
    db.hardware.port[0].resetMask = 0x08;
    for (int o = 0; o < 8; ++o) {
        HardwarePort& port = db.hardware.port[8 + o];
        port.typeFlags = o % 3 == 2 ? 1 : 0;
        port.timer = static_cast<std::uint16_t>(200 + 40 * o);
    }

    const char* groupNames[6] = {"Operators", "Maintenance", "Managers", "Night Crew", "Weekend", "Contractor"};
    for (int g = 0; g < 6; ++g) {
        GroupRecord& group = db.group[g];
        group.enabled = 1;
        setName(group.name, groupNames[g]);
        storeDtmfCode(std::to_string(11 * (g + 1)), group.ackCode);
        storeDtmfCode(g == 3 ? "" : std::to_string(900 + g), group.interrogateCode);
        group.shiftDir = {static_cast<std::uint8_t>(g), static_cast<std::uint8_t>(g), static_cast<std::uint8_t>((g + 1) % 6),
                          static_cast<std::uint8_t>(g)};
        group.autoAck = g % 2;
        group.ackRequest = 1 - g % 2;
        group.alarmOut = static_cast<std::uint8_t>(g == 0 ? 1 : 0);
        group.newAlarmOut = static_cast<std::uint8_t>(g == 1 ? 2 : 0);
        group.ackOut = static_cast<std::uint8_t>(g == 0 ? 3 : 0);
        group.ackIn = static_cast<std::uint8_t>(g < 2 ? 6 : 0);
    }

    const std::uint8_t pointTypes[6] = {kPointDigital, kPointWatchdog, kPointInterval, kPointTotalizer,
                                        kPointAnalog,  kPointDigital};
    for (int n = 0; n < 30; ++n) {
        PointRecord& point = db.alm[n];
        point.inactive = 0;
        point.highReset = 1;
        setName(point.name, "Point " + std::to_string(n + 1) + (n % 4 == 0 ? " Alarm" : ""));
        if (n < 20) {
            const int input = n % 8;
            point.port = static_cast<std::uint16_t>(input);
            point.type = input < 5 ? pointTypes[input] : kPointDigital;
            point.groupMask = static_cast<std::uint8_t>(1 << (n % 6));
            point.latching = n % 3 == 0;
            storeDtmfCode(std::to_string(100 + n), point.onCode);
            if (point.type == kPointAnalog) {
                point.binaryMinimum = 0;
                point.binaryMaximum = 255;
                point.decimalMinimum = 0;
                point.decimalMaximum = 1000;
                point.decimalPlaces = 1;
                point.lowSetpoint = 63;
                point.lowReset = 88;
                point.highSetpoint = 191;
                point.highReset = 166;
            }
        } else {
            const int output = (n - 20) % 8;
            point.isOutput = 1;
            point.port = static_cast<std::uint16_t>(output);
            point.type = db.hardware.port[8 + output].typeFlags ? kPointTimerOutput : kPointOnOffOutput;
            storeDtmfCode(std::to_string(500 + n), point.onCode);
            if (n != 24)
                storeDtmfCode(std::to_string(600 + n), point.offCode);
        }
    }

    for (int d = 0; d < kDirectoryCount; ++d) {
        DirLines lines{};
        for (int l = 0; l < 3 + d; ++l) {
            lines[l].command[0] = kCmdDial;
            lines[l].parameter[0] = "1800555" + std::to_string(1000 + 37 * l + d);
            lines[l].command[1] = kCmdWait;
            lines[l].parameter[1] = std::to_string(2 + l);
            lines[l].command[2] = kCmdVoice;
            lines[l].command[3] = kCmdDtmf;
            lines[l].parameter[3] = l == 1 ? std::string("0000") : std::string("*").append(std::to_string(d)).append("#");
        }
        db.dir[d] = EncodeDirectory(lines);
    }
    PadAllTags(db);
    return db;
}

} // namespace rk4::test
