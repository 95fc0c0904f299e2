#include "core/database/database.h"

#include <gtest/gtest.h>

#include <random>

using namespace rk4;

namespace {

// Each case writes one field and looks for it at its byte offset in the image.
struct FieldCase {
    const char* name;
    std::size_t offset; // absolute image offset of the first byte
    std::size_t width;
    void (*set)(Database&);
};

const FieldCase kFields[] = {
    {"dir[1].dirText", 256, 1, [](Database& d) { d.dir[1].dirText[0] = 0xA5; }},
    {"group[0].name", 1536, 1, [](Database& d) { d.group[0].name[0] = char(0xA5); }},
    {"group[0].ackCode", 1536 + 16, 1, [](Database& d) { d.group[0].ackCode[0] = 0xA5; }},
    {"group[0].interrogateCode", 1536 + 24, 1, [](Database& d) { d.group[0].interrogateCode[0] = 0xA5; }},
    {"group[0].enabled", 1536 + 32, 1, [](Database& d) { d.group[0].enabled = 0xA5; }},
    {"group[0].shortCycles", 1536 + 33, 1, [](Database& d) { d.group[0].shortCycles = 0xA5; }},
    {"group[0].shortTimer", 1536 + 34, 1, [](Database& d) { d.group[0].shortTimer = 0xA5; }},
    {"group[0].longTimer", 1536 + 35, 1, [](Database& d) { d.group[0].longTimer = 0xA5; }},
    {"group[0].shiftDir", 1536 + 36, 1, [](Database& d) { d.group[0].shiftDir[0] = 0xA5; }},
    {"group[0].autoAck", 1536 + 40, 1, [](Database& d) { d.group[0].autoAck = 0xA5; }},
    {"group[0].ackRequest", 1536 + 41, 1, [](Database& d) { d.group[0].ackRequest = 0xA5; }},
    {"group[0].alarmOut", 1536 + 42, 1, [](Database& d) { d.group[0].alarmOut = 0xA5; }},
    {"group[0].ackOut", 1536 + 43, 1, [](Database& d) { d.group[0].ackOut = 0xA5; }},
    {"group[0].ackIn", 1536 + 44, 1, [](Database& d) { d.group[0].ackIn = 0xA5; }},
    {"group[0].newAlarmOut", 1536 + 45, 1, [](Database& d) { d.group[0].newAlarmOut = 0xA5; }},
    {"group[7].longTimer", 1536 + 7 * 64 + 35, 1, [](Database& d) { d.group[7].longTimer = 0xA5; }},
    {"alm[0].name", 2048, 1, [](Database& d) { d.alm[0].name[0] = char(0xA5); }},
    {"alm[0].onCode", 2048 + 16, 1, [](Database& d) { d.alm[0].onCode[0] = 0xA5; }},
    {"alm[0].latching", 2048 + 24, 1, [](Database& d) { d.alm[0].latching = 0xA5; }},
    {"alm[0].groupMask", 2048 + 25, 1, [](Database& d) { d.alm[0].groupMask = 0xA5; }},
    {"alm[0].lowSetpoint", 2048 + 26, 2, [](Database& d) { d.alm[0].lowSetpoint = 0x5AA5; }},
    {"alm[0].highSetpoint", 2048 + 28, 2, [](Database& d) { d.alm[0].highSetpoint = 0x5AA5; }},
    {"alm[0].inactive", 2048 + 30, 1, [](Database& d) { d.alm[0].inactive = 0xA5; }},
    {"alm[0].type", 2048 + 31, 1, [](Database& d) { d.alm[0].type = 0xA5; }},
    {"alm[0].isOutput", 2048 + 32, 1, [](Database& d) { d.alm[0].isOutput = 0xA5; }},
    {"alm[0].port", 2048 + 41, 2, [](Database& d) { d.alm[0].port = 0x5AA5; }},
    {"alm[0].decimalMaximum", 2048 + 46, 2, [](Database& d) { d.alm[0].decimalMaximum = 0x5AA5; }},
    {"alm[0].binaryMinimum", 2048 + 48, 2, [](Database& d) { d.alm[0].binaryMinimum = 0x5AA5; }},
    {"alm[0].lowReset", 2048 + 50, 2, [](Database& d) { d.alm[0].lowReset = 0x5AA5; }},
    {"alm[0].slope", 2048 + 52, 1, [](Database& d) { d.alm[0].slope[0] = 0xA5; }},
    {"alm[0].highReset", 2048 + 55, 2, [](Database& d) { d.alm[0].highReset = 0x5AA5; }},
    {"alm[0].decimalMinimum", 2048 + 57, 2, [](Database& d) { d.alm[0].decimalMinimum = 0x5AA5; }},
    {"alm[0].unitSelector[1]", 2048 + 60, 1, [](Database& d) { d.alm[0].unitSelector[1] = 0xA5; }},
    {"alm[0].binaryMaximum", 2048 + 62, 2, [](Database& d) { d.alm[0].binaryMaximum = 0x5AA5; }},
    {"alm[0].highSetpointDecimal", 2048 + 64, 2, [](Database& d) { d.alm[0].highSetpointDecimal = 0x5AA5; }},
    {"alm[0].lowSetpointDecimal", 2048 + 66, 2, [](Database& d) { d.alm[0].lowSetpointDecimal = 0x5AA5; }},
    {"alm[0].decimalPlaces", 2048 + 68, 1, [](Database& d) { d.alm[0].decimalPlaces = 0xA5; }},
    {"alm[0].outFunction", 2048 + 69, 1, [](Database& d) { d.alm[0].outFunction = 0xA5; }},
    {"alm[0].outGroupMask", 2048 + 70, 1, [](Database& d) { d.alm[0].outGroupMask = 0xA5; }},
    {"alm[0].offCode", 2048 + 72, 1, [](Database& d) { d.alm[0].offCode[0] = 0xA5; }},
    {"alm[29].offCode", 2048 + 29 * 80 + 72, 1, [](Database& d) { d.alm[29].offCode[0] = 0xA5; }},
    {"gen.name", 4448, 1, [](Database& d) { d.gen.name[0] = char(0xA5); }},
    {"gen.shiftChangeCode", 4448 + 16, 1, [](Database& d) { d.gen.shiftChangeCode[0] = 0xA5; }},
    {"gen.accessCode", 4448 + 32, 1, [](Database& d) { d.gen.accessCode[0] = 0xA5; }},
    {"gen.ringsToAnswer", 4448 + 40, 1, [](Database& d) { d.gen.ringsToAnswer = 0xA5; }},
    {"gen.ringOut", 4448 + 41, 1, [](Database& d) { d.gen.ringOut = 0xA5; }},
    {"gen.basicMode", 4448 + 42, 1, [](Database& d) { d.gen.basicMode = 0xA5; }},
    {"gen.securityLevel", 4448 + 43, 1, [](Database& d) { d.gen.securityLevel = 0xA5; }},
    {"gen.carrierDetectOut", 4448 + 44, 1, [](Database& d) { d.gen.carrierDetectOut = 0xA5; }},
    {"gen.callProgress", 4448 + 46, 1, [](Database& d) { d.gen.callProgress = 0xA5; }},
    {"gen.transferStamp", 4448 + 48, 1, [](Database& d) { d.gen.transferStamp[0] = 0xA5; }},
    {"gen.tempAckTime", 4448 + 60, 1, [](Database& d) { d.gen.tempAckTime = 0xA5; }},
    {"gen.modemEnableCode", 4448 + 64, 1, [](Database& d) { d.gen.modemEnableCode[0] = 0xA5; }},
    {"gen.serviceLine", 4448 + 80, 1, [](Database& d) { d.gen.serviceLine[0] = 0xA5; }},
    {"hardware[0].typeFlags", 4576, 1, [](Database& d) { d.hardware.port[0].typeFlags = 0xA5; }},
    {"hardware[0].debounce", 4576 + 1, 2, [](Database& d) { d.hardware.port[0].debounce = 0x5AA5; }},
    {"hardware[0].scaleFlags", 4576 + 3, 1, [](Database& d) { d.hardware.port[0].scaleFlags = 0xA5; }},
    {"hardware[0].resetMask", 4576 + 4, 1, [](Database& d) { d.hardware.port[0].resetMask = 0xA5; }},
    {"hardware[0].reserved", 4576 + 5, 1, [](Database& d) { d.hardware.port[0].reserved = 0xA5; }},
    {"hardware[15].timer", 4576 + 15 * 8 + 6, 2, [](Database& d) { d.hardware.port[15].timer = 0x5AA5; }},
};

} // namespace

TEST(DatabaseImage, EveryFieldSitsAtItsOffsetLittleEndian)
{
    for (const FieldCase& field : kFields) {
        Database db;
        field.set(db);
        const ImageBytes image = db.toBytes();
        std::size_t nonZero = 0;
        for (std::uint8_t byte : image)
            nonZero += byte != 0;
        EXPECT_EQ(nonZero, field.width) << field.name;
        EXPECT_EQ(image[field.offset], 0xA5) << field.name;
        if (field.width == 2) {
            EXPECT_EQ(image[field.offset + 1], 0x5A) << field.name;
        }
    }
}

TEST(DatabaseImage, RandomBytesSurviveReadAndWriteIncludingReservedOnes)
{
    std::mt19937 random(7);
    for (int round = 0; round < 50; ++round) {
        ImageBytes bytes;
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(random());
        const Database db = Database::fromImage(bytes);
        EXPECT_EQ(db.toBytes(), bytes);
    }
}
