#include "core/database/defaults.h"
#include "core/database/text_form.h"
#include "core/shell/text_form_commands.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace rk4;
using rk4::test::ScriptedPrompter;
using rk4::test::TempDir;

TEST(TextFormCommands, ExportThenImportBringsBackTheImageAndSwitchesMode)
{
    TempDir dir;
    Workspace space{dir.path()};
    int modeChanges = 0;
    space.ChangeMode = [&] { ++modeChanges; };
    space.image.gen.basicMode = 1;
    ClearDatabase(space.image, false);
    const Database basic = space.image;

    ScriptedPrompter prompter;
    prompter.fileChoice("site.yaml");
    ASSERT_TRUE(CmExportText(space, prompter));
    EXPECT_EQ(prompter.fileRequests().back().startPath, (dir / "Rk4.yaml").string());
    EXPECT_FALSE(space.DatabaseChanged) << "an export is a copy, not a save";

    DefaultValues(space.image = Database{});
    space.DatabaseChanged = true;
    prompter.expect("Do you want to save changed data?", Answer::No).fileChoice("site.yaml");
    ASSERT_TRUE(CmImportText(space, prompter));
    EXPECT_EQ(space.image, basic);
    EXPECT_EQ(modeChanges, 1);
    EXPECT_TRUE(space.DatabaseChanged) << "the imported image is not saved yet";
    EXPECT_TRUE(prompter.finished());
}

TEST(TextFormCommands, ARefusedImportNamesThePlaceAndKeepsTheImage)
{
    TempDir dir;
    Workspace space{dir.path()};
    DefaultValues(space.image);
    std::string text = exportText(space.image);
    text.replace(text.find("ringsToAnswer: 0"), 16, "ringsToAnswer: -1");
    std::ofstream(dir / "bad.yaml") << text;
    const Database before = space.image;

    ScriptedPrompter prompter;
    prompter.fileChoice("bad.yaml");
    EXPECT_FALSE(CmImportText(space, prompter));
    ASSERT_EQ(prompter.messages().size(), 1u);
    EXPECT_EQ(prompter.messages()[0].text, " CANNOT IMPORT FILE ");
    EXPECT_EQ(prompter.messages()[0].detail, "bad.yaml, line 8, general.ringsToAnswer:\n-1 is out of range (0 to 255)");
    EXPECT_EQ(space.image, before);
    EXPECT_FALSE(space.DatabaseChanged);
}
