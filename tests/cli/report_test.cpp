#include "core/database/defaults.h"
#include "core/database/file.h"
#include "tests/support/cli_runner.h"
#include "tests/support/rich_image.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

using namespace rk4;

using rk4::test::runRk4;

namespace {

std::string written(test::TempDir& temp, const char* name, const Database& db)
{
    const auto path = temp / name;
    EXPECT_EQ(writeImageFile(path, db), FileStatus::Ok);
    return path.string();
}

} // namespace

TEST(WarningsVerb, ListsOneLineEachAndAnswersWithItsExitStatus)
{
    test::TempDir temp;
    const auto run = runRk4({"warnings", written(temp, "basic.dat", test::clearedImage(true))});
    EXPECT_EQ(run.code, 1);
    EXPECT_EQ(run.out, "The Access Code is empty - program and control access to the Rk4 will be unrestricted.\n"
                       "The Modem Enable Code is empty - remote data transfer will not be available.\n"
                       "There is no Site Name in the General section.\n"
                       "Output 4 is a Timed type without an On code.\n"
                       "The output can never be activated.\n"
                       "Directory A is being used by some alarms but it has no phone numbers.\n");

    EXPECT_EQ(runRk4({"warnings", (temp / "missing.dat").string()}).code, 2);
    EXPECT_EQ(runRk4({"warnings"}).code, 2);
}

TEST(SummaryVerb, PagesAsTextWithFormFeedsAndAsAPdf)
{
    test::TempDir temp;
    const std::string file = written(temp, "rich.dat", test::richImage());

    const auto groups = runRk4({"summary", file, "--category", "groups"});
    ASSERT_EQ(groups.code, 0) << groups.err;
    const auto feed = groups.out.find('\f');
    ASSERT_NE(feed, std::string::npos);
    EXPECT_EQ(groups.out.find('\f', feed + 1), std::string::npos);
    const std::string second = groups.out.substr(feed + 1);
    EXPECT_EQ(second.rfind("Rk4 Cellular Alarm Reporting Unit  --- ", 0), 0u);
    EXPECT_NE(second.find("\nGroup Summary - Page 2\n\nGroup 4 - Enabled\n"), std::string::npos);

    // All of an Advanced image: hardware, two group pages, general, points, directories.
    const auto all = runRk4({"summary", file});
    EXPECT_GE(std::count(all.out.begin(), all.out.end(), '\f'), 5);

    EXPECT_EQ(runRk4({"summary", file, "--category", "alarms"}).code, 2);

    const auto pdf = temp / "rich.pdf";
    ASSERT_EQ(runRk4({"summary", file, "--pdf", pdf.string()}).code, 0);
    std::ifstream in(pdf, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), {});
    EXPECT_EQ(bytes.rfind("%PDF-1.4", 0), 0u);
    EXPECT_NE(bytes.find("(General Summary) Tj"), std::string::npos);
}
