#include "core/report/summary.h"
#include "tests/support/rich_image.h"

#include "core/database/defaults.h"
#include "core/database/directory_codec.h"
#include "core/database/dtmf.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

using namespace rk4;
using rk4::test::clearedImage;

namespace {

using Lines = std::vector<std::string>;

// Every directory full: 20 lines of one DIAL each.
void fillDirectories(Database& db)
{
    for (int d = 0; d < kDirectoryCount; ++d) {
        DirLines lines{};
        for (int l = 0; l < kDirectoryLines; ++l) {
            lines[l].command[0] = kCmdDial;
            lines[l].parameter[0] = std::to_string(5550100 + l);
        }
        db.dir[d] = EncodeDirectory(lines);
    }
}

Lines body(const SummaryPage& page) { return Lines(page.lines.begin() + 3, page.lines.end()); }

} // namespace

TEST(Summary, EveryPageStartsWithTheBannerAndItsTitle)
{
    const Database db = clearedImage(false);
    Printout printout(db);
    const SummaryPage page = printout.draw();
    EXPECT_EQ(page.lines[0], "Rk4 Cellular Alarm Reporting Unit  --- " + std::string(kMakerName));
    EXPECT_EQ(page.lines[1], "Hardware Summary");
    printout.select(Category::Groups);
    printout.CmNextPage();
    EXPECT_EQ(printout.draw().lines[1], "Group Summary - Page 2");
    EXPECT_EQ(printout.draw().lines[3], "Group 4 - Disabled");
}

TEST(Summary, DirectoriesWithoutLinesPrintEmptyUnderEachDirectory)
{
    Database advanced = clearedImage(false);
    const Lines expected = {"Directory A", "    (Empty)", "", "Directory B", "    (Empty)", "",
                            "Directory C", "    (Empty)", "", "Directory D", "    (Empty)", "",
                            "Directory E", "    (Empty)", "", "Directory F", "    (Empty)"};
    EXPECT_EQ(categoryLines(advanced, Category::Dirs), expected);

    // A Basic image has Directories A and B only.
    Database basic = clearedImage(true);
    EXPECT_EQ(categoryLines(basic, Category::Dirs),
              (Lines{"Directory A", "    (Empty)", "", "Directory B", "    (Empty)"}));
}

TEST(Summary, DirectoryLinesShowLabelsAndDecodedDigits)
{
    Database db = clearedImage(false);
    DirLines lines{};
    lines[0].command = {kCmdDial, kCmdAnswer};
    lines[0].parameter[0] = "0*#1";
    lines[1].command[0] = kCmdWait;
    lines[1].parameter[0] = "12";
    db.dir[0] = EncodeDirectory(lines);
    const Lines dirs = categoryLines(db, Category::Dirs);
    EXPECT_EQ(dirs[1], "   1  [DIAL]0*#1 [ANSWER]");
    EXPECT_EQ(dirs[2], "   2  [WAIT]12");
}

TEST(Summary, TheFiftyFirstLineStartsANewPage)
{
    PageLayout second(1);
    for (int i = 1; i <= 51; ++i)
        second.TestLine("line " + std::to_string(i));
    EXPECT_EQ(second.lastPage(), 1);
    EXPECT_EQ(second.drawn(), Lines{"line 51"});
    EXPECT_EQ(second.pageStartLine(), (std::vector<int>{0, 50}));

    PageLayout exact(0);
    for (int i = 1; i <= 50; ++i)
        exact.TestLine("line");
    EXPECT_EQ(exact.lastPage(), 0);

    // An item that fills a page starts a new one rather than being split.
    PageLayout whole(1);
    whole.TestLine("line");
    whole.TestItem(Block(50, "row"));
    EXPECT_EQ(whole.drawn(), Lines(50, "row"));

    // Six full directories: 6 heads, 120 lines and 5 blanks are 131 lines, three pages.
    // Line 51 is the sixth line of Directory C (A takes 1-21, its blank 22, B 23-43, 44, C's head 45).
    Database db = clearedImage(false);
    fillDirectories(db);
    Printout printout(db);
    EXPECT_EQ(printout.lastPageOf(Category::Dirs), 2);
    EXPECT_EQ(body(printout.drawPage(Category::Dirs, 1)).front(), "   6  [DIAL]5550105");
    EXPECT_EQ(body(printout.drawPage(Category::Dirs, 0)).size(), 50u);
    EXPECT_EQ(body(printout.drawPage(Category::Dirs, 2)).size(), 31u);
}

TEST(Summary, BasicAllRunsAlarmsOutputsGeneralDirectoriesAndBack)
{
    Database db = clearedImage(true);
    Printout printout(db);
    EXPECT_EQ(printout.category(), Category::Alarms);
    EXPECT_FALSE(printout.canLast());
    for (Category next : {Category::Simout, Category::Simgen, Category::Dirs}) {
        ASSERT_TRUE(printout.canNext());
        printout.CmNextPage();
        EXPECT_EQ(printout.category(), next);
        EXPECT_EQ(printout.page(), 0);
    }
    EXPECT_FALSE(printout.canNext());
    printout.CmLastPage();
    EXPECT_EQ(printout.category(), Category::Simgen);
    EXPECT_EQ(printout.draw().lines[1], "General Summary");
}

TEST(Summary, AdvancedAllPagesAcrossCategoriesAndEntersFromTheEnd)
{
    Database db = clearedImage(false);
    // Thirty digital points with their details run the Points pages past one page.
    for (int n = 0; n < kPointCount; ++n) {
        db.alm[n].type = kPointDigital;
        db.alm[n].inactive = 0;
        db.alm[n].port = static_cast<std::uint16_t>(n % 8);
    }
    Printout printout(db);
    const int pointPages = printout.lastPageOf(Category::Points) + 1;
    ASSERT_GT(pointPages, 1);
    // Hardware 1 + Groups 2 + General 1 + Points + Directories 1.
    EXPECT_EQ(static_cast<int>(printout.allPages().size()), 5 + pointPages);

    printout.select(Category::All);
    std::vector<std::pair<Category, int>> visited{{printout.category(), printout.page()}};
    while (printout.canNext()) {
        printout.CmNextPage();
        visited.emplace_back(printout.category(), printout.page());
    }
    EXPECT_EQ(static_cast<int>(visited.size()), 5 + pointPages);
    EXPECT_EQ(visited[1], std::make_pair(Category::Groups, 0));
    EXPECT_EQ(visited[2], std::make_pair(Category::Groups, 1));
    EXPECT_EQ(visited.back(), std::make_pair(Category::Dirs, 0));

    printout.CmLastPage();
    EXPECT_EQ(printout.category(), Category::Points);
    EXPECT_EQ(printout.page(), pointPages - 1);

    // A single category pages within itself only.
    printout.select(Category::General);
    EXPECT_FALSE(printout.canNext());
    EXPECT_FALSE(printout.canLast());
}

TEST(Summary, GeneralPageLabelsAndValues)
{
    Database db = clearedImage(false);
    setName(db.gen.name, "North Well");
    db.gen.tempAckTime = 30;
    db.gen.securityLevel = 1;
    storeDtmfCode("12*#", db.gen.accessCode);
    db.gen.ringsToAnswer = 255;
    db.gen.callProgress = 1;
    db.gen.ringOut = 3;
    const Lines expected = {
        "Name:                           North Well",
        "Temporary Acknowledge Time:        30 min",
        "Security Level:                     2",
        "Access Code:                    12*#",
        "Number of rings before answer: Never",
        "Shift Change Code:              (None)",
        "Enable Modem Code:              (None)",
        "Call Progress:                  Enabled",
        "Modem CD Output: Not used",
        "Ring Indicator Output: Output 3",
    };
    EXPECT_EQ(categoryLines(db, Category::General), expected);
}

TEST(Summary, BasicAlarmAndOutputPages)
{
    Database db = clearedImage(true);
    setName(db.alm[0].name, "Door");
    db.alm[1].inactive = 1;
    db.alm[2].groupMask = 2;
    db.alm[0].latching = 1;
    db.hardware.port[0].typeFlags = 0x80;
    storeDtmfCode("5", db.alm[8].onCode);
    const Lines alarms = categoryLines(db, Category::Alarms);
    EXPECT_EQ(alarms[0], "Alarm 1  Door             is using Directory A");
    EXPECT_EQ(alarms[1], "Alarm 2  -- empty name -- is Disabled");
    EXPECT_EQ(alarms[2], "Alarm 3  -- empty name -- is using Directory B");
    EXPECT_EQ(alarms[9], "Input Format is Normally Low, Latching.");
    EXPECT_EQ(alarms[10], "Debounce timers are 1.000 second.");

    const Lines outputs = categoryLines(db, Category::Simout);
    EXPECT_EQ(outputs[0], "Output 1  -- empty name -- is an On/Off type, ON code: 5, OFF code: empty");
    EXPECT_EQ(outputs[3], "Output 4  -- empty name -- is a Timed type, ON code: empty, Interval: 60.000 seconds.");
    EXPECT_EQ(outputs[4], "Output 5  -- empty name -- Ring - Hardware control");
    EXPECT_EQ(outputs[7], "Output 8  -- empty name -- Acknowledge - Hardware control");
}

TEST(Summary, PagesBreakBetweenPointsAndRepeatTheColumnHeads)
{
    const Database db = test::richImage();
    Printout printout(db);
    const int last = printout.lastPageOf(Category::Points);
    ASSERT_GE(last, 1);
    int rows = 0;
    for (int page = 0; page <= last; ++page) {
        const Lines lines = body(printout.drawPage(Category::Points, page));
        ASSERT_GE(lines.size(), 2u);
        EXPECT_LE(lines.size(), 51u); // the heads and at most 50 lines
        EXPECT_EQ(lines[0], "Point  Type        Port   Name              Group");
        // Every page opens on a point's row, never on the details of the one before.
        EXPECT_NE(lines[1].substr(0, 5), "     ") << "page " << page + 1;
        for (const std::string& line : lines)
            rows += line.size() > 7 && std::isdigit(static_cast<unsigned char>(line[4])) && line[5] == ' ';
    }
    EXPECT_EQ(rows, kPointCount);
}
