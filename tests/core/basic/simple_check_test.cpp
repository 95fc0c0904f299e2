#include "core/basic/simple_warning.h"
#include "core/database/defaults.h"
#include "tests/support/scripted_prompter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>

using namespace rk4;

namespace {

Database templateFor(int basicMode)
{
    Database db;
    db.gen.basicMode = static_cast<std::uint8_t>(basicMode);
    ClearDatabase(db, false);
    return db;
}

void putDirectory(Database& db, int directory, const char* text)
{
    std::memcpy(db.dir[directory].dirText.data(), text, std::strlen(text) + 1);
}

std::vector<std::string> problemLines(const Database& db)
{
    const SimpleWarning warning(db, true);
    std::vector<std::string> lines;
    for (const auto& item : warning.items())
        if (item.code >= 0)
            lines.push_back(item.text);
    return lines;
}

struct Case {
    const char* what;
    std::function<void(Database&)> change;
    std::uint32_t mask;
    std::vector<std::string> lines;
};

const char kDirectoryWarning[] = "Directory A or B have commands present (Warning only - These can be left unchanged).";

} // namespace

TEST(SimpleCheck, FindsEachRuleWithItsBitAndLine)
{
    // clang-format off
    const Case cases[] = {
        {"the Basic template", [](Database&) {}, 0, {}},
        {"point 12 as an input: the rule stops at point 11", [](Database& db) { db.alm[11] = db.alm[0]; }, 0, {}},
        {"a negative group mask is not above 2", [](Database& db) { db.alm[3].groupMask = 0x84; }, 0, {}},
        {"WAIT in Directory A", [](Database& db) { putDirectory(db, 0, "W5&"); }, 0x20000, {kDirectoryWarning}},
        {"DIAL in Directory C, WAIT after a DIAL in B: C..F comes first",
         [](Database& db) { putDirectory(db, 2, "P1::Y&"), putDirectory(db, 1, "P1::Y&W5&"); }, 0x30000,
         {"Directories other than A or B have entries in them.", kDirectoryWarning}},
        {"groups 7 and 8", [](Database& db) { db.group[6].enabled = db.group[7].enabled = 1; }, 0x100,
         {"Group 7 and 8 are enabled and should not be."}},
        {"a watchdog and an analog input",
         [](Database& db) { db.hardware.port[1].typeFlags = 0x01, db.hardware.port[6].typeFlags = 0x10; }, 0x1,
         {"Input 2 and 7 are not digital types."}},
        {"debounce count and minutes flag",
         [](Database& db) { db.hardware.port[3].debounce = 80, db.hardware.port[5].scaleFlags = 0x01; }, 0x2,
         {"Input 4 and 6 have a debounce setting that is different than input 1."}},
        {"input 5 normally closed", [](Database& db) { db.hardware.port[4].typeFlags = 0x80; }, 0x4,
         {"Input 5 is set for Normally Closed but input 1 is set for Normally Open."}},
        {"input 1 normally closed", [](Database& db) { db.hardware.port[0].typeFlags = 0x80; }, 0x4,
         {"Input 2, 3, 4, 5, 6, 7 and 8 are set for Normally Open but input 1 is set for Normally Closed."}},
        {"point 1 latched", [](Database& db) { db.alm[0].latching = 1; }, 0x20,
         {"Point 2, 3, 4, 5, 6, 7 and 8 are set for Momentary but point 1 is set for Latched."}},
        {"point 6 latched", [](Database& db) { db.alm[5].latching = 1; }, 0x20,
         {"Point 6 is set for Latched but point 1 is set for Momentary."}},
        {"point 2 made an output", [](Database& db) { db.alm[1].isOutput = 1; }, 0x208,
         {"Point 2 is not set for digital operation.", "Point 2 is set as an output instead of an input."}},
        {"point 3 in groups 1 and 2", [](Database& db) { db.alm[2].groupMask = 3; }, 0x10,
         {"Point 3 is using a group other than 1 or 2."}},
        {"seven points in group 3", [](Database& db) { for (int p = 0; p < 7; ++p) db.alm[p].groupMask = 4; }, 0x10,
         {"Several points are using groups other than 1 or 2."}},
        {"point 20 given a type", [](Database& db) { db.alm[19].type = kPointDigital; }, 0x80,
         {"Point 20 is being used."}},
        {"seven points above 16 typed", [](Database& db) { for (int p = 16; p < 23; ++p) db.alm[p].type = 0x13; },
         0x80, {"Several points above point 16 are not set as unused."}},
        {"points 17 and 18 active", [](Database& db) { db.alm[16].inactive = db.alm[17].inactive = 0; }, 0x400,
         {"Point 17 and 18 are enabled."}},
        {"all points above 16 active", [](Database& db) { for (int p = 16; p < 30; ++p) db.alm[p].inactive = 0; },
         0x400, {"More than 10 points above point 16 are enabled."}},
        {"the Advanced template", [](Database& db) { db = templateFor(0); }, 0x48,
         {"Point 1, 2, 3, 4, 5, 6, 7 and 8 are not set for digital operation.",
          "Point 9, 10 and 11 are not set up as outputs."}},
    };
    // clang-format on
    for (const Case& c : cases) {
        Database db = templateFor(1);
        c.change(db);
        const Database before = db;
        EXPECT_EQ(CheckForSimple(db).problems, c.mask) << c.what;
        EXPECT_EQ(problemLines(db), c.lines) << c.what;
        EXPECT_EQ(db, before) << "the check never changes the image";
    }
}

TEST(SimpleWarning, IntroducesTheListByHowTheImageCameAndExplainsTheSelectedLine)
{
    Database db = templateFor(1);
    db.group[3].enabled = 1;
    SimpleWarning switched(db, false);
    EXPECT_EQ(switched.items()[0].text, kSwitchIntro);
    EXPECT_EQ(SimpleWarning(db, true).items()[0].text, kOpenedIntro);

    rk4::test::ScriptedPrompter prompter;
    switched.UpdateSelection(0);
    switched.ShowDetail(prompter);
    EXPECT_TRUE(prompter.messages().empty()) << "an introduction line has nothing to explain";
    switched.UpdateSelection(2);
    switched.ShowDetail(prompter);
    ASSERT_EQ(prompter.messages().size(), 1u);
    EXPECT_EQ(prompter.messages()[0].title, "Basic Configuration Infomation");
    EXPECT_EQ(prompter.messages()[0].text,
              "Only Groups 1 and 2 are used in Basic mode.\nChanging to Basic mode will eliminate Groups 3 - 6.\nIn "
              "Basic mode:\n   Group 1 is always mapped to Directory A\n   Group 2 is always mapped to Directory B\n"
              "   Groups assignment automatic and not visible");
    EXPECT_EQ(detailText(kRuleAlarmGroup), detailText(kRuleHighPointActive)) << "the group rule shares its text";
}

TEST(SimpleConversion, ConvertAllLeavesABasicImageAndTheOtherKeepsTheDirectories)
{
    Database db = templateFor(0);
    db.group[6].enabled = 1;
    db.hardware.port[2].typeFlags = 0x13;
    db.alm[25].type = kPointTotalizer;
    putDirectory(db, 0, "W5&");
    putDirectory(db, 3, "P1::Y&");

    Database all = db;
    Change2Simple(all);
    EXPECT_EQ(CheckForSimple(all).problems, 0u);
    EXPECT_EQ(all, templateFor(1));

    Database kept = db;
    Change2Simple2(kept);
    EXPECT_EQ(kept.dir, db.dir);
    EXPECT_EQ(CheckForSimple(kept).problems, 0x30000u) << "only the directories still differ";
}
