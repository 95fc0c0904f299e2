#include "core/voice/voice_editor.h"

#include "core/common/safe_file.h"
#include "tests/support/phrase_blocks.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

namespace rk4 {
namespace {

using test::blocks;

std::vector<std::uint8_t> fileBytes(const std::filesystem::path& path) { return readFileBytes(path).bytes; }

// A loaded message file with phrases for the Site ID (1 block), point 2 (2)
// and group 1 (1), and an editor working beside it.
class VoiceEditorTest : public ::testing::Test {
  protected:
    void SetUp() override
    {
        std::array<std::optional<std::vector<std::uint8_t>>, kSlotCount> phrases;
        phrases[kSiteSlot] = blocks(4096, 0xA0);
        phrases[2] = blocks(8192, 0xB0);
        phrases[31] = blocks(4096, 0xC0);
        ASSERT_TRUE(writeFileAtomically(dir / "old.msg", buildMessageFile(phrases)));
        ASSERT_TRUE(editor.SetupNewMsgFile((dir / "old.msg").string(), prompter));
    }

    test::TempDir dir;
    test::ScriptedPrompter prompter;
    VoiceEditor editor{dir.path()};
};

TEST_F(VoiceEditorTest, LoadingAMessageFileMarksTheSlotsFromItsHeader)
{
    EXPECT_EQ(editor.entryText(0), "+");
    EXPECT_EQ(editor.entryText(1), "-");
    EXPECT_EQ(editor.entryText(2), "+");
    EXPECT_EQ(editor.entryText(31), "+");
    EXPECT_EQ(editor.sourceText(2), "message file, 2 blocks");
    EXPECT_EQ(editor.loadedLine(), "Loaded: " + (dir / "old.msg").string());
    EXPECT_EQ(editor.savedLine(), " Saved: * not saved *");

    // A newly chosen phrase survives loading another message file.
    ASSERT_TRUE(writeFileAtomically(dir / "new.vox", blocks(4096, 1)));
    ASSERT_TRUE(editor.readIndividual(5, (dir / "new.vox").string(), prompter));
    ASSERT_TRUE(editor.SetupNewMsgFile((dir / "old.msg").string(), prompter));
    EXPECT_EQ(editor.entryText(5), "+" + (dir / "new.vox").string());

    std::vector<std::uint8_t> damaged = fileBytes(dir / "old.msg");
    damaged.resize(3 * 4096);
    ASSERT_TRUE(writeFileAtomically(dir / "short.msg", damaged));
    EXPECT_FALSE(editor.SetupNewMsgFile((dir / "short.msg").string(), prompter));
    ASSERT_EQ(prompter.messages().size(), 1u);
    EXPECT_EQ(prompter.messages()[0].text, kCannotOpenMessageFile);
    EXPECT_EQ(prompter.messages()[0].title, "File Error");
    EXPECT_NE(prompter.messages()[0].detail.find("holds 2"), std::string::npos);
    EXPECT_EQ(editor.loadedLine(), "Loaded: " + (dir / "old.msg").string()); // unchanged
}

TEST_F(VoiceEditorTest, SavingCopiesLoadedPhrasesAndWholeBlocksOfNewFilesAndDropsClearedSlots)
{
    // 10000 bytes: two blocks; the last 1808 bytes are not copied.
    ASSERT_TRUE(writeFileAtomically(dir / "point7.vox", blocks(10000, 0x70)));
    EXPECT_TRUE(editor.loadedFileComplete()) << "what was loaded can go to the unit as it is";
    ASSERT_TRUE(editor.readIndividual(7, (dir / "point7.vox").string(), prompter));
    EXPECT_FALSE(editor.loadedFileComplete());
    editor.selected = 31;
    ASSERT_TRUE(editor.CmClearIndividual(prompter));

    ASSERT_TRUE(editor.writeAllTo((dir / "new.msg").string(), prompter)) << ::testing::PrintToString(prompter.texts());
    const std::vector<std::uint8_t> saved = fileBytes(dir / "new.msg");
    std::vector<std::uint8_t> expected(4096, 0);
    expected[3] = 2;  // point 2
    expected[13] = 2; // point 7
    expected[77] = 1; // Site ID; group 1 was cleared
    const auto point2 = blocks(8192, 0xB0), point7 = blocks(8192, 0x70), site = blocks(4096, 0xA0);
    for (const auto* part : {&point2, &point7, &site})
        expected.insert(expected.end(), part->begin(), part->end());
    EXPECT_EQ(saved, expected);

    EXPECT_FALSE(std::filesystem::exists(dir / "msg.tmp"));
    EXPECT_EQ(editor.loadedLine(), "Loaded: " + (dir / "new.msg").string());
    EXPECT_EQ(editor.savedLine(), " Saved: " + (dir / "new.msg").string());
    EXPECT_EQ(editor.sourceText(kSiteSlot), "message file, 1 block");
    EXPECT_TRUE(editor.loadedFileComplete());
    editor.selected = 1;
    ASSERT_TRUE(editor.CmClearIndividual(prompter));
    EXPECT_FALSE(editor.loadedFileComplete()) << "a cleared phrase is still in the file";
}

TEST_F(VoiceEditorTest, SavingOntoTheLoadedFileOrWithAPhraseFileGoneIsRefused)
{
    const std::vector<std::uint8_t> before = fileBytes(dir / "old.msg");
    EXPECT_FALSE(editor.writeAllTo((dir / "." / "old.msg").string(), prompter));
    ASSERT_TRUE(writeFileAtomically(dir / "p.vox", blocks(4096, 1)));
    ASSERT_TRUE(editor.readIndividual(3, (dir / "p.vox").string(), prompter));
    std::filesystem::remove(dir / "p.vox");
    EXPECT_FALSE(editor.writeAllTo((dir / "other.msg").string(), prompter));

    EXPECT_EQ(prompter.texts(),
              (std::vector<std::string>{kSavingOntoLoaded, " CANNOT OPEN " + (dir / "p.vox").string()}));
    EXPECT_EQ(fileBytes(dir / "old.msg"), before);
    EXPECT_FALSE(std::filesystem::exists(dir / "other.msg"));
    EXPECT_FALSE(std::filesystem::exists(dir / "msg.tmp"));
}

TEST_F(VoiceEditorTest, SinglePhraseCommandsNeedASlotAndSayWhichFileFailed)
{
    prompter.fileChoice((dir / "missing.vox").string()).fileChoice((dir / "point2.vox").string());
    prompter.fileChoice((dir / "none.vox").string());
    EXPECT_FALSE(editor.CmReadIndividual(prompter));
    EXPECT_FALSE(editor.CmWriteIndividual(prompter));
    EXPECT_FALSE(editor.CmClearIndividual(prompter));
    editor.selected = 2;
    EXPECT_FALSE(editor.CmReadIndividual(prompter));
    EXPECT_TRUE(editor.CmWriteIndividual(prompter));
    EXPECT_EQ(fileBytes(dir / "point2.vox"), blocks(8192, 0xB0));
    editor.selected = 4;
    EXPECT_FALSE(editor.CmWriteIndividual(prompter)); // point 4 has no phrase

    EXPECT_EQ(prompter.texts(),
              (std::vector<std::string>{kMessageNotSelected, kMessageNotSelected, kMessageNotSelected,
                                        kCannotOpenIndividualVoiceFile, kCannotOpenMessageForReading}));
    EXPECT_EQ(prompter.messages()[0].title, "Error");
    EXPECT_EQ(prompter.messages()[3].title, "File Error");
    EXPECT_EQ(prompter.fileRequests()[0].filter, "Individual Voice files (*.vox)");
}

TEST_F(VoiceEditorTest, NamesFromTheDatabaseStandBesideTheMarksAndGoAgain)
{
    Database db;
    setName(db.gen.name, "Pump Station");
    setName(db.alm[1].name, "Wet Well High");
    ASSERT_TRUE(writeFileAtomically(dir / "n.vox", blocks(4096, 1)));
    ASSERT_TRUE(editor.readIndividual(2, (dir / "n.vox").string(), prompter));
    editor.CmUseNames(db);
    EXPECT_EQ(editor.entryText(0), "+Pump Station     ");
    EXPECT_EQ(editor.entryText(2), "+Wet Well High    " + (dir / "n.vox").string());
    EXPECT_EQ(editor.entryText(1), "-                 ");
    editor.CmUseNames(db);
    EXPECT_EQ(editor.entryText(0), "+");
    EXPECT_EQ(editor.entryText(2), "+" + (dir / "n.vox").string());
}

TEST_F(VoiceEditorTest, AConfigurationIsSavedOnlyAfterTheMessageFileAndReadsBackWithItsNames)
{
    Database db;
    setName(db.alm[1].name, "Door");
    editor.AddNames(db);
    EXPECT_FALSE(editor.CmWriteConfiguration(prompter));
    EXPECT_EQ(prompter.texts(), std::vector<std::string>{kSaveMessageFirst});
    ASSERT_TRUE(editor.writeAllTo((dir / "new.msg").string(), prompter));
    ASSERT_TRUE(editor.writeConfiguration((dir / "site.vcf").string(), prompter));
    EXPECT_EQ(std::filesystem::file_size(dir / "site.vcf"), 10402u);

    VoiceEditor other(dir.path());
    ASSERT_TRUE(other.readConfiguration((dir / "site.vcf").string(), prompter));
    EXPECT_TRUE(other.namesInUse);
    for (int slot = 0; slot < kSlotCount; ++slot)
        EXPECT_EQ(other.entryText(slot), editor.entryText(slot)) << slotTitle(slot);
    EXPECT_EQ(other.slotTable[2].name, "Door");
    EXPECT_EQ(other.loadedLine(), editor.loadedLine());
    EXPECT_TRUE(other.messageSaved);
}

TEST_F(VoiceEditorTest, AConfigurationWhoseMessageFileIsGoneLoadsItsSlotsAsNotLoaded)
{
    ASSERT_TRUE(writeFileAtomically(dir / "p.vox", blocks(4096, 1)));
    ASSERT_TRUE(editor.readIndividual(9, (dir / "p.vox").string(), prompter));
    ASSERT_TRUE(editor.writeAllTo((dir / "gone.msg").string(), prompter));
    ASSERT_TRUE(editor.writeConfiguration((dir / "site.vcf").string(), prompter));
    std::filesystem::remove(dir / "gone.msg");

    // Unsaved changes are only replaced after a Yes.
    editor.selected = 9;
    ASSERT_TRUE(editor.CmClearIndividual(prompter));
    prompter.expect(kReplaceChangesQuestion, Answer::No);
    EXPECT_FALSE(editor.CmReadConfiguration(prompter));
    prompter.expect(kReplaceChangesQuestion, Answer::Yes).fileChoice((dir / "site.vcf").string());
    EXPECT_TRUE(editor.CmReadConfiguration(prompter));
    EXPECT_TRUE(prompter.finished());

    EXPECT_EQ(editor.entryText(9), "+" + (dir / "p.vox").string());
    EXPECT_EQ(editor.entryText(kSiteSlot), "+");
    EXPECT_EQ(editor.loadedLine(), "Loaded: * not loaded *");
    EXPECT_EQ(editor.savedLine(), " Saved: * not saved *");
    EXPECT_EQ(prompter.texts().back(), kCannotOpenMessageFile);
    EXPECT_EQ(prompter.fileRequests()[0].filter, "Voice Editor Configuration files (*.vcf)");

    ASSERT_TRUE(writeFileAtomically(dir / "bad.vcf", std::vector<std::uint8_t>(500, 0)));
    EXPECT_FALSE(editor.readConfiguration((dir / "bad.vcf").string(), prompter));
    EXPECT_EQ(prompter.texts().back(), kCannotOpenConfigurationFile);
    EXPECT_EQ(editor.entryText(9), "+" + (dir / "p.vox").string()); // unchanged
}

TEST_F(VoiceEditorTest, APhraseMadeInMemoryIsSavedIntoTheMessageFile)
{
    editor.putPhrase(12, blocks(4096, 0x44), "spoken: zone twelve");
    EXPECT_EQ(editor.sourceText(12), "spoken: zone twelve");
    std::string why;
    EXPECT_EQ(editor.phraseOf(12, why), blocks(4096, 0x44));
    EXPECT_EQ(editor.phraseOf(2, why), blocks(8192, 0xB0));
    EXPECT_FALSE(editor.phraseOf(1, why));
    EXPECT_EQ(why, "Point 1 has no phrase");

    ASSERT_TRUE(editor.writeAllTo((dir / "new.msg").string(), prompter));
    EXPECT_EQ(editor.entryText(12), "+");
    EXPECT_EQ(editor.phraseOf(12, why), blocks(4096, 0x44));
}

} // namespace
} // namespace rk4
