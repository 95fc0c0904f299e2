#include "core/report/warnings.h"
#include "tests/support/rich_image.h"

#include "core/database/defaults.h"
#include "core/database/directory_codec.h"
#include "core/database/dtmf.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace rk4;
using rk4::test::clearedImage;

namespace {

using Lines = std::vector<std::string>;

// Directory lines from (label, parameter) entries, one vector per line.
void setDirectory(Database& db, int directory,
                  const std::vector<std::vector<std::pair<std::uint8_t, std::string>>>& lines)
{
    DirLines decoded{};
    for (std::size_t l = 0; l < lines.size(); ++l)
        for (std::size_t c = 0; c < lines[l].size(); ++c) {
            decoded[l].command[c] = lines[l][c].first;
            decoded[l].parameter[c] = lines[l][c].second;
        }
    db.dir[directory] = EncodeDirectory(decoded);
}

// An Advanced image that raises nothing: one enabled, named, coded group on a
// directory with a full number, and one named digital point reporting to it.
Database quietAdvancedImage()
{
    Database db = clearedImage(false);
    setName(db.gen.name, "Pump Station");
    GroupRecord& group = db.group[0];
    group.enabled = 1;
    setName(group.name, "Operators");
    storeDtmfCode("11", group.ackCode);
    storeDtmfCode("22", group.interrogateCode);
    setDirectory(db, 0, {{{kCmdDial, "5551234"}}});
    PointRecord& point = db.alm[0];
    point.inactive = 0;
    point.type = kPointDigital;
    point.groupMask = 1;
    setName(point.name, "Door");
    return db;
}

} // namespace

TEST(BasicWarnings, FreshlyClearedImageWarnsAboutCodesSiteOutputFourAndDirectoryA)
{
    const Lines expected = {
        "The Access Code is empty - program and control access to the Rk4 will be unrestricted.",
        "The Modem Enable Code is empty - remote data transfer will not be available.",
        "There is no Site Name in the General section.",
        "Output 4 is a Timed type without an On code.",
        "The output can never be activated.",
        "Directory A is being used by some alarms but it has no phone numbers.",
    };
    EXPECT_EQ(warningLines(ConfigurationWarnings(clearedImage(true))), expected);
}

TEST(BasicWarnings, DisabledAlarmsAndDirectoryChecks)
{
    Database db = clearedImage(true);
    for (int i = 0; i < 8; ++i)
        db.alm[i].inactive = 1;
    storeDtmfCode("1", db.gen.accessCode);
    storeDtmfCode("2", db.gen.modemEnableCode);
    setName(db.gen.name, "Site");
    storeDtmfCode("3", db.alm[11].onCode);
    // An On/Off output with only its On code.
    storeDtmfCode("4", db.alm[8].onCode);
    // Directory A: one full number and one of six digits with a delay (the '!' is not dialled).
    setDirectory(db, 0, {{{kCmdDial, "5551234"}}, {{kCmdDial, "555!123"}}});
    // Directory B holds no number, so its missing codes are not mentioned.
    setDirectory(db, 1, {{{kCmdWait, "5"}}});
    storeDtmfCode("9", db.group[0].interrogateCode);

    const Lines expected = {
        "Output 1 is an On/Off type with an On code but no Off Code.",
        "Once this output is activated it cannot be turned off.",
        "All of the alarms are disabled. No reporting will occur.",
        "Directory A does not have an Acknowledge Code.",
        "Directory A has one or more phone numbers with less than 7 digits.",
    };
    EXPECT_EQ(warningLines(BasicWarnings(db)), expected);
}

TEST(AdvancedWarnings, AQuietImageRaisesNothing) { EXPECT_TRUE(AdvancedWarnings(quietAdvancedImage()).empty()); }

TEST(AdvancedWarnings, GeneralAndGroupChecksInOrder)
{
    Database db = quietAdvancedImage();
    db.gen.securityLevel = 2;
    db.gen.name.fill(' ');
    GroupRecord& group = db.group[1];
    group.enabled = 1;
    group.shiftDir = {0, 0, 3, 0};
    group.alarmOut = 2;  // timed below
    group.ackOut = 3;    // on/off
    group.shortCycles = 0;
    db.hardware.port[kInputCount + 1].typeFlags = 1;
    // Group 3 is disabled yet the door point reports to it.
    db.alm[0].groupMask = 1 | 4;
    // Groups 7 and 8 are never looked at.
    db.group[6].enabled = 1;
    db.group[7].alarmOut = 2;

    const Lines expected = {
        "Security level in General is 3 but there is no Access Code.  No one can call in!",
        "One or more groups have different shifts - the Shift Change Code in General should be used.",
        "There is no Site Name in the General section.",
        "Group 2 is using Timed output 2 for Alarm Out - it will only stay on for the timed interval.",
        "Group 2 is using On/Off output 3 for Ack Out - it will never turn off when acknowledged.",
        "Group 2 does not have an acknowledge code.",
        "Group 2 does not have an interrogate code.",
        "Group 2, Shift 3 uses directory D which is empty.",
        "Group 2 Short Cycles is set to zero.",
        "Group 2 does not have a name.",
        "Group 3 is disabled but has enabled Points using it.",
    };
    EXPECT_EQ(AdvancedWarnings(db), expected);
}

TEST(AdvancedWarnings, PointsSharingAPortAndOutputsWithoutCodes)
{
    Database db = quietAdvancedImage();
    auto point = [&](int n, std::uint8_t type, int port, bool output, bool used) -> PointRecord& {
        PointRecord& p = db.alm[n - 1];
        p.type = type;
        p.port = static_cast<std::uint16_t>(port);
        p.isOutput = output;
        p.inactive = used ? 0 : 1;
        setName(p.name, "P" + std::to_string(n));
        return p;
    };
    // Two points not in use on one input: nothing.
    point(5, kPointDigital, 2, false, false);
    point(6, kPointDigital, 2, false, false);
    // In use on input 4, and an output on the same channel number: only the inputs pair up.
    point(7, kPointDigital, 3, false, true);
    point(8, kPointWatchdog, 3, false, true);
    point(9, kPointOnOffOutput, 3, true, true);
    // Output 5 is Timed without an On code; output 6 is the group's alarm output and so exempt.
    db.hardware.port[kInputCount + 4].typeFlags = 1;
    point(10, kPointTimerOutput, 4, true, true);
    db.group[0].alarmOut = 6;
    point(11, kPointOnOffOutput, 5, true, true);
    point(12, kPointDigital, 7, false, true).name.fill(' ');

    const Lines expected = {
        "Point 9 is an On/Off output with no DTMF ON code.",
        "Point 9 is an On/Off output with no DTMF OFF code.",
        "Point 10 is a Timed output with no DTMF ON code.",
        "Point 12 does not have a name.",
        "Point 7 and Point 8 are both using input 4",
    };
    EXPECT_EQ(AdvancedWarnings(db), expected);
}

TEST(AdvancedWarnings, DirectoryCommandsWithDefaultsOrTooFewDigits)
{
    Database db = quietAdvancedImage();
    setDirectory(db, 2,
                 {{{kCmdDial, "0000"}},
                  {{kCmdDial, "!!"}},
                  {{kCmdDial, "555#12"}, {kCmdDtmf, "0000"}},
                  {{kCmdWait, "000"}, {kCmdDtmf, ""}},
                  {{kCmdWait, ""}}});
    setDirectory(db, 4, {{{kCmdAutoAck, ""}}});
    const Lines expected = {
        "Directory E has Auto Ack as the only entry - no alarms will be reported.",
        "Directory C, Line 1 has a Dial command with the default value '0000'.",
        "Directory C, Line 2 has a Dial command without any numbers.",
        "Directory C, Line 3 has a Dial command with less than 7 digits.",
        "Directory C, Line 3 contains a DTMF command with the default value '0000'.",
        "Directory C, Line 4 contains a DTMF command with no digits.",
        "Directory C, Line 4 contains a Wait command with the default value '0000'.",
        "Directory C, Line 5 contains a Wait command with no value.",
    };
    EXPECT_EQ(AdvancedWarnings(db), expected);
}

TEST(AdvancedWarnings, TotalizerNeedsAHardwareOrCodeReset)
{
    Database db = quietAdvancedImage();
    for (int input : {2, 3, 4})
        db.hardware.port[input - 1].typeFlags = 3;
    db.hardware.port[4].resetMask = 0x04; // input 5 resets input 3
    PointRecord& counter = db.alm[1];     // a totalizer point on input 4 with a clear code
    counter.inactive = 0;
    counter.type = kPointTotalizer;
    counter.port = 3;
    setName(counter.name, "Flow");
    storeDtmfCode("77", counter.onCode);
    EXPECT_EQ(AdvancedWarnings(db), Lines{"Input 2 is a totalizer without a hardware or code reset."});
}

TEST(AnswerAfterDial, NamesEachDirectoryAndJoinsByOccurrences)
{
    Database db = quietAdvancedImage();
    EXPECT_FALSE(answerAfterDialWarning(db));
    const std::string tail = ".\nUsing Call Progress and ANSWER duplicates the requirement for a response by the "
                             "called party.\nUse the What's This help for Call Progress to get a full explanation.";

    setDirectory(db, 1, {{{kCmdWait, "5"}}, {{kCmdDial, "5551234"}, {kCmdAnswer, ""}}});
    EXPECT_EQ(answerAfterDialWarning(db), "The ANSWER command appears immediately after a Dial command in Directory B" + tail);

    // The check only joins in the page while Call Progress is on.
    EXPECT_EQ(AdvancedWarnings(db).size(), 0u);
    db.gen.callProgress = 1;
    EXPECT_EQ(warningLines(AdvancedWarnings(db)).size(), 3u);

    setDirectory(db, 3, {{{kCmdDial, "5551234"}, {kCmdAnswer, ""}}});
    setDirectory(db, 5, {{{kCmdDial, "5551234"}, {kCmdAnswer, ""}}});
    EXPECT_EQ(answerAfterDialWarning(db),
              "The ANSWER command appears immediately after a Dial command in Directories B, D and F" + tail);
    // An ANSWER later on the line is not directly after the DIAL.
    setDirectory(db, 5, {{{kCmdDial, "5551234"}, {kCmdWait, "2"}, {kCmdAnswer, ""}}});
    EXPECT_EQ(answerAfterDialWarning(db),
              "The ANSWER command appears immediately after a Dial command in Directories B and D" + tail);
}
