#include "core/database/defaults.h"
#include "core/shell/workspace.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace rk4;
using rk4::test::ScriptedPrompter;
using rk4::test::TempDir;

namespace {

const std::string kSaveBeforeClosing = "Do you want to save changed data before closing application?";
const std::string kToBasic =
    "Changing to the Basic mode will remove some programming options.\nDo you want to see a summary of these "
    "limitations?";
const std::string kToAdvanced =
    "Changing to the Advanced mode will allow all available parameters to be programmed.  Some of these variables "
    "are not accessible by the telephone programming.  Do you want to view a summary of these limitations?";
const std::string kDirectoriesNotEmpty =
    "The Directories are not empty.\nDo you want to leave the Directories unchanged?";
const std::string kUseWizard =
    "Do you want to use the Basic Wizard for configuration?\nPressing No will result in a default database that you "
    "can edit.";

class WorkspaceTest : public ::testing::Test {
  protected:
    TempDir dir;
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    int modeChanges = 0;

    void SetUp() override
    {
        space.ChangeMode = [this] { ++modeChanges; };
    }

    void writeImage(const std::string& name, const Database& db)
    {
        ASSERT_EQ(writeImageFile(dir / name, db), FileStatus::Ok);
    }

    static Database basicImage()
    {
        Database db;
        db.gen.basicMode = 1;
        ClearDatabase(db, false);
        return db;
    }
};

} // namespace

TEST_F(WorkspaceTest, StartingInAnEmptyFolderCreatesBothFilesAndReportsThemOnce)
{
    space.InitFile(prompter);
    EXPECT_TRUE(prompter.messages().empty()) << "the report waits for idle processing";
    ASSERT_TRUE(std::filesystem::exists(dir / "rk4.cfg"));
    EXPECT_EQ(std::filesystem::file_size(dir / "rk4.cfg"), 16u);
    EXPECT_EQ(readConfigFile(dir / "rk4.cfg")->bytes, Config{}.bytes);

    Database expected;
    DefaultValues(expected);
    Database onDisk;
    ASSERT_EQ(readImageFile(dir / "Rk4.dat", onDisk), FileStatus::Ok);
    EXPECT_EQ(onDisk, expected);

    space.showStartupReport(prompter);
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{" CANNOT OPEN RK4.CFG FILE - DEFAULT CREATED.",
                                                          " CANNOT OPEN RK4.DAT FILE - DEFAULT CREATED."}));
    EXPECT_EQ(prompter.messages()[0].title, "File Error");
    EXPECT_EQ(space.image.gen.ringsToAnswer, 2);
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_EQ(space.title(), " Sentrix Rk4 Programmer  -  Rk4.dat");

    prompter.clear();
    space.showStartupReport(prompter);
    EXPECT_TRUE(prompter.messages().empty()) << "shown once";
}

TEST_F(WorkspaceTest, StartingBesideABasicFileSwitchesModeWithoutMarkingAChange)
{
    writeImage("Rk4.dat", basicImage());
    Config config;
    config.setPortIndex(3);
    writeConfigFile(dir / "rk4.cfg", config);
    space.InitFile(prompter);
    space.showStartupReport(prompter);
    EXPECT_TRUE(prompter.messages().empty());
    EXPECT_TRUE(space.basicMode());
    EXPECT_EQ(modeChanges, 1);
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_EQ(space.cfg.portIndex(), 3);
}

TEST_F(WorkspaceTest, StartUpNeverReplacesFilesItCannotReadAndSaysWhy)
{
    // Folders stand for files that exist but cannot be read, even by the superuser.
    std::filesystem::create_directory(dir / "rk4.cfg");
    std::filesystem::create_directory(dir / "Rk4.dat");
    space.InitFile(prompter);
    space.showStartupReport(prompter);
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{" CANNOT OPEN RK4.CFG FILE ", " CANNOT OPEN RK4.DAT FILE "}));
    EXPECT_EQ(prompter.messages()[1].detail,
              "not a regular file (a folder). The file is left as it is; the default configuration is shown.");
    EXPECT_TRUE(std::filesystem::is_directory(dir / "rk4.cfg"));
    EXPECT_TRUE(std::filesystem::is_directory(dir / "Rk4.dat"));
    Database expected;
    DefaultValues(expected);
    EXPECT_EQ(space.image, expected);
    EXPECT_FALSE(space.DatabaseChanged);
}

TEST_F(WorkspaceTest, StartUpReadsAWrongSizedFileAndSaysItHadTheWrongSize)
{
    std::ofstream(dir / "Rk4.dat", std::ios::binary) << std::string(100, 'Q');
    space.InitFile(prompter);
    space.showStartupReport(prompter);
    EXPECT_EQ(prompter.texts(), (std::vector<std::string>{" CANNOT OPEN RK4.CFG FILE - DEFAULT CREATED.",
                                                          " FILE IS NOT THE CORRECT SIZE "}));
    EXPECT_EQ(prompter.messages()[1].detail,
              "Rk4.dat holds 100 bytes, not 4704; what it holds was read and the rest set to zero.");
    EXPECT_EQ(space.image.toBytes()[0], 'Q');
    EXPECT_EQ(std::filesystem::file_size(dir / "Rk4.dat"), 100u) << "not rewritten at start-up";
}

TEST_F(WorkspaceTest, ASaveThatDoesNotHappenStopsOpenAndClose)
{
    space.InitFile(prompter);
    writeImage("other.dat", basicImage());
    space.image.gen.name[0] = 'E';
    space.DatabaseChanged = true;
    // Cancelled Save As: no Open dialog follows and the edit stays.
    prompter.expect("Do you want to save changed data?", Answer::Yes).fileChoice(std::nullopt);
    EXPECT_FALSE(space.CmFileOpen(prompter));
    EXPECT_TRUE(prompter.finished());
    EXPECT_EQ(prompter.fileRequests().size(), 1u);
    // A failed save (the name is a folder) stops it as well.
    std::filesystem::create_directory(dir / "taken.dat");
    prompter.expect("Do you want to save changed data?", Answer::Yes).fileChoice((dir / "taken.dat").string());
    EXPECT_FALSE(space.CmFileOpen(prompter));
    EXPECT_TRUE(prompter.saw(" CANNOT OPEN FILE "));
    EXPECT_EQ(prompter.fileRequests().size(), 2u);
    EXPECT_EQ(space.image.gen.name[0], 'E');
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_FALSE(space.basicMode());

    // Closing over a save that fails keeps the window and its changes.
    space.workingFile = (dir / "taken.dat").string();
    prompter.expect(kSaveBeforeClosing, Answer::Yes);
    EXPECT_FALSE(space.CanClose(prompter));
    EXPECT_TRUE(space.DatabaseChanged);
}

TEST_F(WorkspaceTest, OpenRefusesWrongSizesAndKeepsTheImage)
{
    space.InitFile(prompter);
    space.image.gen.name[0] = 'K';
    for (std::size_t size : {4703u, 4705u}) {
        std::ofstream(dir / "short.dat", std::ios::binary) << std::string(size, 'A');
        prompter.fileChoice((dir / "short.dat").string());
        EXPECT_FALSE(space.CmFileOpen(prompter));
        EXPECT_TRUE(prompter.saw(" FILE IS NOT THE CORRECT SIZE "));
        EXPECT_EQ(space.image.gen.name[0], 'K');
        EXPECT_EQ(space.workingFile, "Rk4.dat");
    }
}

TEST_F(WorkspaceTest, OpeningAFileOfTheOtherModeSwitchesAndLeavesNoChange)
{
    space.InitFile(prompter);
    space.DatabaseChanged = true;
    writeImage("basic.dat", basicImage());
    prompter.expect("Do you want to save changed data?", Answer::No).fileChoice((dir / "basic.dat").string());
    EXPECT_TRUE(space.CmFileOpen(prompter));
    EXPECT_TRUE(space.basicMode());
    EXPECT_EQ(modeChanges, 1);
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_EQ(space.workingFile, (dir / "basic.dat").string());
    EXPECT_TRUE(prompter.finished());
}

TEST_F(WorkspaceTest, AnAdvancedFileIsRepairedOnOpenButABasicOneIsNot)
{
    space.InitFile(prompter);
    Database advanced; // zero timers everywhere
    writeImage("adv.dat", advanced);
    ASSERT_TRUE(space.openFile((dir / "adv.dat").string(), prompter));
    EXPECT_EQ(space.image.group[0].longTimer, 30);

    Database basic;
    basic.gen.basicMode = 1;
    writeImage("bas.dat", basic);
    ASSERT_TRUE(space.openFile((dir / "bas.dat").string(), prompter));
    EXPECT_EQ(space.image.group[0].longTimer, 0);
}

TEST_F(WorkspaceTest, SaveToAWrongNameIsRefusedAndDestroysNothing)
{
    space.InitFile(prompter);
    std::ofstream(dir / "config.txt") << "precious";
    space.DatabaseChanged = true;
    prompter.fileChoice((dir / "config.txt").string());
    EXPECT_FALSE(space.CmFileSaveAs(prompter));
    EXPECT_TRUE(prompter.saw(" FILE NAME MUST HAVE .DAT EXTENSION "));
    EXPECT_EQ(std::filesystem::file_size(dir / "config.txt"), 8u);
    EXPECT_TRUE(space.DatabaseChanged);
}

TEST_F(WorkspaceTest, ClosingAsksOnlyWhenSomethingChanged)
{
    space.InitFile(prompter);
    EXPECT_TRUE(space.CanClose(prompter));

    space.DatabaseChanged = true;
    prompter.expect(kSaveBeforeClosing, Answer::Cancel);
    EXPECT_FALSE(space.CanClose(prompter));
    prompter.expect(kSaveBeforeClosing, Answer::No);
    EXPECT_TRUE(space.CanClose(prompter));

    space.image.gen.name[0] = 'Z';
    prompter.expect(kSaveBeforeClosing, Answer::Yes);
    EXPECT_TRUE(space.CanClose(prompter));
    Database onDisk;
    ASSERT_EQ(readImageFile(dir / "Rk4.dat", onDisk), FileStatus::Ok);
    EXPECT_EQ(onDisk.gen.name[0], 'Z');
}

TEST_F(WorkspaceTest, CancellingEitherModeQuestionChangesNothing)
{
    space.InitFile(prompter);
    const Database before = space.image;
    prompter.expect(kToBasic, Answer::Cancel);
    EXPECT_FALSE(space.CmMode(prompter));
    EXPECT_EQ(space.image, before);
    EXPECT_FALSE(space.DatabaseChanged);

    space.image = basicImage();
    const Database basicBefore = space.image;
    prompter.expect(kToAdvanced, Answer::Cancel);
    EXPECT_FALSE(space.CmMode(prompter));
    EXPECT_EQ(space.image, basicBefore);
    EXPECT_EQ(modeChanges, 0);
    EXPECT_TRUE(prompter.finished());
}

TEST_F(WorkspaceTest, SwitchingToBasicAsksAboutUsedDirectoriesAndBuildsTheTemplate)
{
    space.InitFile(prompter);
    // An Advanced image that already fits Basic mode, with a number in Directory B.
    space.image = basicImage();
    space.image.gen.basicMode = 0;
    const char line[] = "P1::Y&";
    std::copy(line, line + sizeof line, space.image.dir[1].dirText.begin());
    prompter.expect(kToBasic, Answer::No).expect(kDirectoriesNotEmpty, Answer::Yes).expect(kUseWizard, Answer::No);
    EXPECT_TRUE(space.CmMode(prompter));
    EXPECT_TRUE(space.basicMode());
    EXPECT_EQ(space.image.dir[1].dirText[0], 'P') << "directories kept as answered";
    EXPECT_EQ(space.image.alm[0].type, kPointDigital) << "the Basic template";
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_EQ(modeChanges, 1);
    EXPECT_TRUE(prompter.finished());

    space.DatabaseChanged = false;
    prompter.expect(kToAdvanced, Answer::No);
    EXPECT_TRUE(space.CmMode(prompter));
    EXPECT_FALSE(space.basicMode());
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_EQ(space.image.alm[0].type, kPointDigital) << "going back to Advanced keeps the data";
}

TEST_F(WorkspaceTest, ClearDataAsksFirstAndLeavesTheChangeFlag)
{
    space.InitFile(prompter);
    space.image.gen.name[0] = 'N';
    prompter.expect("All data will be erased - Continue?", Answer::No);
    EXPECT_FALSE(space.CmClearData(prompter));
    EXPECT_EQ(space.image.gen.name[0], 'N');

    prompter.expect("All data will be erased - Continue?", Answer::Yes);
    EXPECT_TRUE(space.CmClearData(prompter));
    EXPECT_EQ(space.image.gen.name[0], ' ');
    EXPECT_FALSE(space.DatabaseChanged);

    space.image = basicImage();
    prompter.expect("All data will be erased - Continue?", Answer::Yes)
        .expect("Do you want to use the Basic Wizard for configuration?", Answer::No);
    EXPECT_TRUE(space.CmClearData(prompter));
    EXPECT_TRUE(prompter.finished());
}

TEST_F(WorkspaceTest, RunWizardNamesTheDirectoriesThatHoldCommands)
{
    space.InitFile(prompter);
    space.image = basicImage();
    const char dial[] = "P1::::Y&";
    std::copy(dial, dial + sizeof dial, space.image.dir[0].dirText.begin());
    prompter.expect("Running the Basic Wizard will erase all current entries.  Proceed?", Answer::Yes)
        .expect("\nThere are Basic commands in Directory A.\nDo you want the wizard to leave the Directories "
                "unchanged?",
                Answer::Yes);
    EXPECT_TRUE(space.CmRunWizard(prompter));
    EXPECT_TRUE(space.DatabaseChanged) << "the image was cleared for the wizard";
    EXPECT_TRUE(prompter.saw("The wizard will not ask you to enter any telephone numbers.\nUse the Directory editor "
                             "to change the numbers."));
    EXPECT_EQ(space.image.dir[0].dirText[0], 'P');
}

TEST_F(WorkspaceTest, SwitchingToBasicShowsTheRulesAndProblemsAndConvertAllBuildsABasicImage)
{
    space.InitFile(prompter);
    space.image.group[2].enabled = 1;
    const char wait[] = "W5&";
    std::copy(wait, wait + sizeof wait, space.image.dir[0].dirText.begin());
    std::vector<bool> summaries;
    std::vector<int> listed;
    std::string intro;
    space.showRulesSummary = [&](bool basic) { summaries.push_back(basic); };
    const Database before = space.image;
    SimpleChoice choice = SimpleChoice::StayAdvanced;
    space.showSimpleWarning = [&](SimpleWarning& warning) {
        intro = warning.items()[0].text;
        listed.clear();
        for (const auto& item : warning.items())
            if (item.code >= 0)
                listed.push_back(item.code);
        return choice;
    };
    prompter.expect(kToBasic, Answer::No);
    EXPECT_FALSE(space.CmMode(prompter));
    EXPECT_EQ(space.image, before);
    EXPECT_FALSE(space.DatabaseChanged);

    choice = SimpleChoice::ConvertAll;
    prompter.expect(kToBasic, Answer::Yes).expect(kConversionWizardQuestion, Answer::No);
    EXPECT_TRUE(space.CmMode(prompter));
    EXPECT_EQ(summaries, std::vector<bool>{true});
    EXPECT_EQ(intro, kSwitchIntro);
    EXPECT_EQ(listed, (std::vector<int>{3, 9, 10, 17}));
    EXPECT_EQ(space.problems, 0x8u | 0x40 | 0x100 | 0x20000);
    EXPECT_TRUE(space.basicMode());
    EXPECT_EQ(CheckForSimple(space.image).problems, 0u);
    EXPECT_EQ(space.image.dir[0].dirText[0], '&');
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_EQ(modeChanges, 1);
    EXPECT_TRUE(prompter.finished());

    prompter.expect(kToAdvanced, Answer::Yes);
    EXPECT_TRUE(space.CmMode(prompter));
    EXPECT_EQ(summaries, (std::vector<bool>{true, false}));
}

TEST_F(WorkspaceTest, OpeningABasicFileThatDoesNotFitOffersTheConversion)
{
    space.InitFile(prompter);
    Database file = basicImage();
    file.group[4].enabled = 1;
    const char voice[] = "V2&";
    std::copy(voice, voice + sizeof voice, file.dir[4].dirText.begin());
    writeImage("odd.dat", file);

    std::string intro;
    space.showSimpleWarning = [&](SimpleWarning& warning) {
        intro = warning.items()[0].text;
        return SimpleChoice::StayAdvanced;
    };
    ASSERT_TRUE(space.openFile((dir / "odd.dat").string(), prompter));
    EXPECT_EQ(intro, kOpenedIntro);
    EXPECT_FALSE(space.basicMode());
    EXPECT_EQ(space.image.group[4].enabled, 1);
    EXPECT_TRUE(space.DatabaseChanged) << "the image no longer matches its file";
    EXPECT_EQ(modeChanges, 2) << "into Basic with the file, and back";

    int wizards = 0;
    space.runBasicWizard = [&] { ++wizards; };
    space.showSimpleWarning = [](SimpleWarning&) { return SimpleChoice::KeepDirectories; };
    prompter.expect(kConversionWizardQuestion, Answer::Yes);
    ASSERT_TRUE(space.openFile((dir / "odd.dat").string(), prompter));
    EXPECT_TRUE(space.basicMode());
    EXPECT_EQ(space.image.group[4].enabled, 0);
    EXPECT_EQ(space.image.dir[4], file.dir[4]);
    EXPECT_EQ(wizards, 1);
    EXPECT_TRUE(prompter.finished());
}
