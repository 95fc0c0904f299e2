#include "core/database/defaults.h"
#include "core/database/file.h"
#include "tests/support/cli_runner.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstring>

using namespace rk4;

using rk4::test::runRk4;

TEST(DirsVerb, ListsEveryDirectorysLinesAsLabelsAndShownParameters)
{
    test::TempDir temp;
    Database db;
    DefaultValues(db);
    const auto set = [&](int d, const char* text) { std::memcpy(db.dir[d].dirText.data(), text, std::strlen(text)); };
    set(0, "P1:::Y&W5NVX&");
    set(2, "&W10&"); // an empty first line is shown, as the editor shows it
    set(3, "H\x01hi\\&U7&");
    set(5, "W1&&&&&&&&&&Q;<&");
    ASSERT_EQ(writeImageFile(temp / "site.dat", db), FileStatus::Ok);

    const auto run = runRk4({"dirs", (temp / "site.dat").string()});
    EXPECT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.out, "Directory A\n"
                       "  1   [DIAL]1000Y\n"
                       "  2   [WAIT]5 [ALERT] [VOICE] [AUTO ACK]\n"
                       "Directory B\n  (Empty)\n"
                       "Directory C\n  1  \n  2   [WAIT]10\n"
                       "Directory D\n  1   [TAP]\\x01hi\\x5C\n  2  7\n"
                       "Directory E\n  (Empty)\n"
                       "Directory F\n  1   [WAIT]1\n  2  \n  3  \n  4  \n  5  \n  6  \n  7  \n  8  \n  9  \n"
                       " 10  \n 11   [DTMF]*#\n");
}
