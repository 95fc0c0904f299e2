#include "core/database/defaults.h"

#include <algorithm>
#include <cstdio>

namespace rk4 {

namespace {

void appendDial(std::array<std::uint8_t, 32>& line, std::size_t& at, const char* number)
{
    line[at++] = 'P';
    for (const char* digit = number; *digit; ++digit)
        line[at++] = static_cast<std::uint8_t>(*digit == '0' ? '0' + 10 : *digit);
    line[at++] = 'Y';
    line[at++] = '&';
}

void padName(Name& name)
{
    std::array<char, 17> buffer{};
    std::copy(name.begin(), name.end(), buffer.begin());
    PadTag(buffer);
    std::copy_n(buffer.begin(), 16, name.begin());
}

void setShifts(GroupRecord& group, std::array<std::uint8_t, 4> shifts) { group.shiftDir = shifts; }

} // namespace

std::array<std::uint8_t, 32> factoryServiceLine()
{
    std::array<std::uint8_t, 32> line{};
    std::size_t at = 0;
    appendDial(line, at, kServiceNumber1);
    line[at++] = 'W';
    line[at++] = '5';
    line[at++] = '&';
    appendDial(line, at, kServiceNumber2);
    return line; // 31 characters and the NUL
}

void DefaultValues(Database& db)
{
    for (auto& port : db.hardware.port) {
        if (port.debounce == 0) {
            port.debounce = 2;
            port.scaleFlags &= static_cast<std::uint8_t>(~0x01);
        }
        if (port.timer == 0) {
            port.timer = 10;
            port.scaleFlags |= 0x02;
        }
    }
    for (auto& point : db.alm) {
        if (point.unitSelector[0] > 7)
            point.unitSelector[0] = 0;
        if (point.unitSelector[1] > 20)
            point.unitSelector[1] = 0;
        if (point.unitSelector[2] > 4)
            point.unitSelector[2] = 0;
        if (point.type == kPointUnused)
            point.inactive = 1;
    }
    for (auto& group : db.group) {
        if (group.shortCycles == 0)
            group.shortCycles = 5;
        if (group.shortTimer == 0)
            group.shortTimer = 4;
        if (group.longTimer == 0)
            group.longTimer = 30;
    }
    for (auto& directory : db.dir) {
        if (directory.dirText[0] == 0) {
            directory.dirText[0] = '&';
            directory.dirText[1] = 0;
        }
    }
    PadAllTags(db);
    db.gen.serviceLine = factoryServiceLine();
}

void ClearDatabase(Database& db, bool keepDirectories)
{
    const std::uint8_t basicMode = db.gen.basicMode;
    if (!keepDirectories) {
        for (auto& directory : db.dir) {
            directory.dirText.fill(0);
            directory.dirText[0] = '&';
        }
    }
    for (auto& point : db.alm)
        point = PointRecord{};
    db.gen = GeneralRecord{};
    for (auto& group : db.group)
        group = GroupRecord{};
    db.gen.basicMode = basicMode;

    if (basicMode) {
        for (int i = 0; i < kPortCount; ++i) {
            HardwarePort& port = db.hardware.port[i];
            port = HardwarePort{};
            port.debounce = 40;
            port.timer = i < kInputCount ? 0 : 400;
        }
        auto& output8 = db.hardware.port[15];
        output8.typeFlags = 1;
        output8.timer = 200;
        auto& output4 = db.hardware.port[11];
        output4.typeFlags = 1;
        output4.scaleFlags = 0;
        output4.timer = 2400;
        auto& output5 = db.hardware.port[12];
        output5.typeFlags = 1;
        output5.scaleFlags = 0;
        output5.timer = 80;

        for (int i = 0; i < 8; ++i) {
            PointRecord& point = db.alm[i];
            point.inactive = 0;
            point.type = kPointDigital;
            point.latching = 0;
            point.groupMask = 1;
            point.isOutput = 0;
            point.port = static_cast<std::uint16_t>(i);
            point.highReset = 1;
        }
        for (int i = 8; i < 11; ++i) {
            PointRecord& point = db.alm[i];
            point.type = kPointOnOffOutput;
            point.inactive = 1;
            point.latching = 0;
            point.groupMask = 1;
            point.isOutput = 1;
            point.port = static_cast<std::uint16_t>(i - 8);
        }
        // Points 12 to 16 stay all zero, inactive byte included: the unit's
        // Basic template has always been shaped so.
        for (int i = 16; i < kPointCount; ++i)
            db.alm[i].inactive = 1;

        for (int g = 0; g < 2; ++g) {
            GroupRecord& group = db.group[g];
            group.shortTimer = 20;
            group.longTimer = 20;
            group.shortCycles = 5;
            group.ackRequest = 1;
            group.enabled = 1;
            group.alarmOut = 6;
            group.ackOut = 8;
            group.newAlarmOut = 7;
        }
        setShifts(db.group[0], {0, 1, 1, 1});
        setShifts(db.group[1], {1, 1, 1, 1});

        db.gen.carrierDetectOut = 4;
        db.gen.ringOut = 5;
        db.gen.ringsToAnswer = 2;
        db.gen.securityLevel = 0;
        PadAllTags(db);
    } else {
        for (auto& point : db.alm) {
            point.inactive = 1;
            point.lowSetpoint = 0;
            point.highSetpoint = 0;
            point.lowReset = 0;
            point.highReset = 1;
        }
        db.gen.ringsToAnswer = 2;
        for (auto& port : db.hardware.port)
            port = HardwarePort{};
        DefaultValues(db);
    }
    db.gen.serviceLine = factoryServiceLine();
}

void PadTag(std::array<char, 17>& buffer)
{
    for (int i = 0; i < 16; ++i) {
        if (buffer[i] == '\0') {
            std::fill(buffer.begin() + i, buffer.begin() + 16, ' ');
            break;
        }
    }
    buffer[16] = '\0';
}

void PadAllTags(Database& db)
{
    padName(db.gen.name);
    for (auto& group : db.group)
        padName(group.name);
    for (auto& point : db.alm)
        padName(point.name);
}

std::uint16_t FixInt(std::uint16_t value) { return static_cast<std::uint16_t>(((value & 0xFF) << 8) | (value >> 8)); }

std::uint8_t MakeMask(int bit)
{
    std::uint8_t mask = 1;
    for (int i = 0; i < bit; ++i)
        mask = static_cast<std::uint8_t>((mask << 1) | (mask >> 7));
    return mask;
}

std::uint8_t MakeNotMask(int bit)
{
    std::uint8_t mask = 0xFE;
    for (int i = 0; i < bit; ++i)
        mask = static_cast<std::uint8_t>((mask << 1) | (mask >> 7) | 0x01);
    return mask;
}

void ExtractSeconds(std::string& out, std::uint16_t count)
{
    // Single precision after each multiplication, and a double constant 0.001:
    // that is what gives the unit's tool its 1638.349 for 65534 and 0.174 for 7.
    const float steps = static_cast<float>(count * 25.0);
    float seconds = static_cast<float>(static_cast<double>(steps) * 0.001);
    if (seconds == 0.0f)
        seconds = 0.05f; // a zero count is shown as the 50 ms minimum
    const int whole = static_cast<int>(seconds);
    const float fraction = seconds - static_cast<float>(whole);
    const int millis = static_cast<int>(static_cast<double>(fraction) * 1000.0);
    char text[24];
    std::snprintf(text, sizeof text, "%d.%03d", whole, millis % 1000);
    out = text;
}

const std::string& ExtractShowSeconds(std::string& out, std::uint16_t count)
{
    ExtractSeconds(out, count);
    return out;
}

std::string secondsText(std::uint16_t count)
{
    std::string text;
    ExtractSeconds(text, count);
    return text;
}

} // namespace rk4
