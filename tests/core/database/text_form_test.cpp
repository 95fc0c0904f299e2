#include "core/database/text_form.h"

#include "core/database/defaults.h"
#include "core/database/directory_codec.h"
#include "core/database/dtmf.h"
#include "core/hardware/port_editor.h"
#include "tests/support/rich_image.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

using namespace rk4;

namespace {

Database cleared(bool basic)
{
    Database db;
    db.gen.basicMode = basic ? 1 : 0;
    ClearDatabase(db, false);
    DefaultValues(db);
    return db;
}

DirLine line(std::initializer_list<std::pair<std::uint8_t, const char*>> commands)
{
    DirLine out;
    int c = 0;
    for (const auto& [letter, parameter] : commands) {
        out.command[c] = letter;
        out.parameter[c++] = parameter;
    }
    return out;
}

// A site as a technician sets one up: names, codes, timed outputs, analog and
// digital points, two directories, and the leftovers editing leaves behind.
Database richConfiguration()
{
    Database db = cleared(false);
    setName(db.gen.name, "NORTH PUMP STN");
    storeDtmfCode("4321", db.gen.accessCode);
    storeDtmfCode("*9#", db.gen.shiftChangeCode);
    storeDtmfCode("7654321", db.gen.modemEnableCode); // the longest code
    db.gen.ringsToAnswer = 3;
    db.gen.securityLevel = 1;
    db.gen.tempAckTime = 60;
    setName(db.group[0].name, "OPERATORS");
    storeDtmfCode("1234567", db.group[0].ackCode);
    storeDtmfCode("12", db.group[0].ackCode); // an edit that leaves digits after the end
    storeDtmfCode("AB0D", db.group[0].interrogateCode);
    db.group[0].enabled = 1;
    db.group[0].shiftDir = {0, 1, 1, 1};
    db.hardware.port[2] = HardwarePort{kInputWatchdog | kBothChanges, 80, kTimerMinutes, 0, 0, 15};
    db.hardware.port[0].resetMask = 0x08;
    db.hardware.port[3].typeFlags = kInputTotalizer | kPolarityBit;
    db.hardware.port[9] = HardwarePort{kOutputTimed, 2, 0, 0, 0, 7}; // 0.175 s on
    PointRecord& level = db.alm[0];
    setName(level.name, "TANK LEVEL");
    level.type = kPointAnalog;
    level.inactive = 0;
    level.groupMask = 0x05;
    level.decimalMinimum = static_cast<std::uint16_t>(-250);
    level.slope = {0x01, 0x02, 0x03};
    level.unitSelector = {2, 19, 4};
    db.alm[1].type = kPointOnOffOutput;
    db.alm[1].isOutput = 1;
    storeDtmfCode("11", db.alm[1].onCode);
    DirLines lines{};
    lines[0] = line({{kCmdDial, "5551234"}, {kCmdWait, "5"}, {kCmdVoice, "12 3"}});
    lines[1] = line({{kCmdAlert, ""}, {kCmdDtmf, "*1#"}});
    EncodeDirectory(lines, db.dir[0]);
    db.dir[1] = db.dir[0];
    lines[1] = DirLine{};
    EncodeDirectory(lines, db.dir[1]); // shorter: the old tail stays after the NUL
    db.gen.reserved112[3] = 0x42;
    return db;
}

// Replaces the first `from` after the line that holds `anchor`.
std::string edited(std::string text, const std::string& anchor, const std::string& from, const std::string& to)
{
    const std::size_t start = text.find(from, text.find(anchor));
    EXPECT_NE(start, std::string::npos) << from;
    return text.replace(start, from.size(), to);
}

int lineOf(const std::string& text, const std::string& anchor, const std::string& what)
{
    const std::size_t at = text.find(what, text.find(anchor));
    return 1 + static_cast<int>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

void expectRoundTrip(const Database& db)
{
    const std::string text = exportText(db);
    const ImportResult back = importText(text);
    ASSERT_TRUE(back.db) << textFormErrorText(back.error) << "\n" << text;
    EXPECT_EQ(back.db->toBytes(), db.toBytes()) << text;
}

} // namespace

TEST(TextForm, GivesBackTheSameBytesForDefaultsAndARichConfiguration)
{
    expectRoundTrip(cleared(false));
    expectRoundTrip(cleared(true));
    expectRoundTrip(richConfiguration());
    expectRoundTrip(rk4::test::richImage());
    expectRoundTrip(Database{});
}

TEST(TextForm, GivesBackTheSameBytesForRandomImages)
{
    std::mt19937 random(23);
    std::uniform_int_distribution<int> byte(0, 255);
    // yaml-cpp takes some 20 ms a round trip; RK4_RANDOM_IMAGES=1000 runs the long check.
    const char* wanted = std::getenv("RK4_RANDOM_IMAGES");
    const int images = wanted ? std::atoi(wanted) : 200;
    for (int n = 0; n < images; ++n) {
        ImageBytes bytes;
        // Half the images start from a real configuration, so the readable
        // forms get exercised as well as the hex fallbacks.
        if (n % 2)
            bytes = richConfiguration().toBytes();
        for (std::size_t i = 0; i < bytes.size(); ++i)
            if (n % 2 == 0 || byte(random) < 8)
                bytes[i] = static_cast<std::uint8_t>(byte(random));
        const Database db = Database::fromImage(bytes);
        const ImportResult back = importText(exportText(db));
        ASSERT_TRUE(back.db) << n << ": " << textFormErrorText(back.error);
        ASSERT_EQ(back.db->toBytes(), bytes) << n;
    }
}

TEST(TextForm, ShowsFieldsInTheEditorsWords)
{
    const std::string text = exportText(richConfiguration());
    for (const char* shown : {
             "name: \"NORTH PUMP STN\"",
             "accessCode: \"4321\"",
             "shiftChangeCode: \"*9#\"",
             "interrogateCode: \"AB0D\"",
             "shiftDir: [A, B, B, B]",
             "value: \"12\"",
             "after: 34 35 36 37",
             "type: watchdog",
             "bothChanges: yes",
             "timer: 15 min",
             "debounce: 2.000 s",
             "timer: 0.175 s",
             "resetsTotalizers: [4]",
             "type: analog",
             "groupMask: [1, 3]",
             "decimalMinimum: -250",
             "slope: 66051",
             "unitSelector: [2, 19, 4]",
             "type: on/off output",
             "onCode: \"11\"",
             "- [\"[DIAL] 5551234\", \"[WAIT] 5\", \"[VOICE] 12 3\"]",
             "- [\"[ALERT]\", \"[DTMF] *1#\"]",
             "reserved112: !hex 00 00 00 42",
             "3: empty",
         })
        EXPECT_NE(text.find(shown), std::string::npos) << shown << "\n" << text;
}

TEST(TextForm, RefusesABadValueNamingItsLineAndKey)
{
    const std::string good = exportText(richConfiguration());
    struct Case {
        std::string anchor, from, to, key, reason;
    };
    const Case cases[] = {
        {"inputs:", "debounce: 0.050 s", "debounce: 2000 s", "inputs.1.debounce",
         "The debounce interval cannot be more than 1638 sec."},
        {"inputs:", "debounce: 0.050 s", "debounce: nan s", "inputs.1.debounce", "'nan s' is not a time"},
        {"inputs:", "debounce: 0.050 s", "debounce: inf s", "inputs.1.debounce", "'inf s' is not a time"},
        {"inputs:", "timer: 15 min", "timer: 0 min", "inputs.3.timer",
         "The watchdog interval cannot be less than 1 min."},
        {"groups:", "enabled: yes", "enabled: yes\n    colour: red", "groups.1.colour", "unknown key 'colour'"},
        {"groups:", "value: \"12\"", "value: \"1X\"", "groups.1.ackCode",
         "'X' is not a DTMF digit (0-9, A-D, *, # and ! only)"},
        {"general:", "accessCode: \"4321\"", "accessCode: \"43214321\"", "general.accessCode",
         "a code has at most 7 digits"},
        {"general:", "ringsToAnswer: 3", "ringsToAnswer: 256", "general.ringsToAnswer",
         "256 is out of range (0 to 255)"},
        {"directories:", "[WAIT] 5", "[WAITE] 5", "directories.A line 1",
         "'[WAITE] 5' does not start with a command such as [DIAL] or [WAIT]"},
        {"points:", "type: analog", "type: pressure", "points.1.type", "unknown type 'pressure'"},
    };
    for (const Case& c : cases) {
        const std::string text = edited(good, c.anchor, c.from, c.to);
        const ImportResult result = importText(text);
        ASSERT_FALSE(result.db) << c.to;
        EXPECT_EQ(result.error.line, lineOf(text, c.anchor, c.to.substr(c.to.rfind('\n') + 1))) << c.to;
        EXPECT_EQ(result.error.key, c.key);
        EXPECT_EQ(result.error.reason.substr(0, c.reason.size()), c.reason);
    }
}

TEST(TextForm, RefusesAMissingKeyAndTextThatIsNotYaml)
{
    const std::string good = exportText(cleared(false));
    const ImportResult missing = importText(edited(good, "general:", "  ringOut: 0\n", ""));
    ASSERT_FALSE(missing.db);
    EXPECT_EQ(missing.error.key, "general.ringOut");
    EXPECT_EQ(missing.error.reason, "the key is missing");

    const ImportResult broken = importText("general: [1, 2\n");
    ASSERT_FALSE(broken.db);
    EXPECT_GT(broken.error.line, 0);
    EXPECT_FALSE(importText("").db);
}
