#include "core/voice/wave_converter.h"

#include "core/database/file.h"
#include "tests/core/voice/wave_builder.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <tuple>

namespace rk4 {
namespace {

TEST(WaveConverter, DefaultDestinationKeepsTheDestinationFolderAndCutsTheNameAtItsFirstDot)
{
    EXPECT_EQ(GetDefaultDestination("/phrases/old.vox", "/recordings/site.id.wav"), "/phrases/site.vox");
    EXPECT_EQ(GetDefaultDestination("", "/recordings/Point 7.WAV"), "/recordings/Point 7.vox");
    EXPECT_EQ(GetDefaultDestination("/phrases/old.vox", "/recordings/noext"), "/phrases/noext.vox");
    EXPECT_EQ(GetDefaultDestination("old.vox", "/recordings/a.wav"), "a.vox");
}

TEST(WaveConverter, FileDialogsUseTheWaveAndAdpcmFiltersAndProposeADestination)
{
    test::ScriptedPrompter prompter;
    prompter.fileChoice("/rec/group1.wav").fileChoice(std::nullopt).fileChoice("/out/x.vox").fileChoice("/rec/b.wav");
    WaveConverter converter;
    EXPECT_TRUE(converter.CmSelectSource(prompter));
    EXPECT_EQ(converter.destination, "/rec/group1.vox");
    EXPECT_FALSE(converter.CmSelectDestination(prompter)); // cancelled: unchanged
    EXPECT_EQ(converter.destination, "/rec/group1.vox");
    EXPECT_TRUE(converter.CmSelectDestination(prompter));
    EXPECT_TRUE(converter.CmSelectSource(prompter));
    EXPECT_EQ(converter.destination, "/out/b.vox");

    const auto& requests = prompter.fileRequests();
    ASSERT_EQ(requests.size(), 4u);
    EXPECT_EQ(std::tie(requests[0].filter, requests[0].defaultExtension), std::tie("Wave files (*.wav)", "wav"));
    EXPECT_EQ(std::tie(requests[1].filter, requests[1].defaultExtension), std::tie("ADPCM files (*.vox)", "vox"));
    EXPECT_EQ(requests[1].mode, FileMode::Save);
}

TEST(WaveConverter, ConvertReportsEachFileItCannotOpenAndLeavesTheStatus)
{
    test::TempDir dir;
    const std::vector<std::uint8_t> wave = test::makeWave({.bitsPerSample = 8}, std::vector<std::uint8_t>(100, 128));
    ASSERT_TRUE(writeFileAtomically(dir / "in.wav", wave));

    WaveConverter converter;
    std::vector<std::string> statuses;
    converter.statusChanged = [&] { statuses.push_back(converter.status); };
    test::ScriptedPrompter prompter;
    EXPECT_FALSE(converter.CmConvert(prompter)); // nothing chosen yet
    converter.source = (dir / "missing.wav").string();
    converter.destination = (dir / "out.vox").string();
    EXPECT_FALSE(converter.CmConvert(prompter));
    converter.source = (dir / "in.wav").string();
    converter.destination = (dir / "no such folder" / "out.vox").string();
    EXPECT_FALSE(converter.CmConvert(prompter));

    ASSERT_EQ(prompter.messages().size(), 3u);
    EXPECT_EQ(prompter.messages()[0].text, " CANNOT OPEN WAVE FILE ");
    EXPECT_EQ(prompter.messages()[1].text, " CANNOT OPEN WAVE FILE ");
    EXPECT_EQ(prompter.messages()[2].text, " CANNOT OPEN OUTPUT FILE ");
    EXPECT_EQ(prompter.messages()[2].title, "File Error");
    EXPECT_TRUE(statuses.empty());
    EXPECT_FALSE(std::filesystem::exists(dir / "out.vox"));
}

TEST(WaveConverter, ConvertWritesThePhraseAndShowsConvertingThenComplete)
{
    test::TempDir dir;
    const test::KnownPhrase phrase = test::knownPhrase();
    ASSERT_TRUE(writeFileAtomically(dir / "in.wav", phrase.wave));
    ASSERT_TRUE(writeFileAtomically(dir / "in.vox", std::vector<std::uint8_t>(50000, 1))); // replaced whole

    WaveConverter converter;
    std::vector<std::string> statuses;
    converter.statusChanged = [&] { statuses.push_back(converter.status); };
    converter.setSource((dir / "in.wav").string());
    EXPECT_EQ(converter.sourceFormat, "8000 Hz, 8-bit, mono");
    test::ScriptedPrompter prompter;
    ASSERT_TRUE(converter.CmConvert(prompter));

    EXPECT_TRUE(prompter.messages().empty());
    EXPECT_EQ(statuses, (std::vector<std::string>{"Converting", "Conversion Complete"}));
    EXPECT_EQ(converter.outputCount, 8);
    EXPECT_EQ(readWholeFile(dir / "in.vox"), phrase.vox);
}

TEST(WaveConverter, NeverWritesThePhraseOverItsOwnWaveFile)
{
    test::TempDir dir;
    const test::KnownPhrase phrase = test::knownPhrase();
    // A recording saved with the phrase extension: the dialog's proposal names it too.
    ASSERT_TRUE(writeFileAtomically(dir / "take.vox", phrase.wave));
    std::filesystem::create_hard_link(dir / "take.vox", dir / "hard.vox");
    std::filesystem::create_symlink("take.vox", dir / "soft.vox");

    const std::string source = (dir / "take.vox").string();
    for (const std::string& destination :
         {std::string(), (dir / "." / "take.vox").string(), (dir / "hard.vox").string(), (dir / "soft.vox").string()}) {
        WaveConverter converter;
        converter.setSource(source); // proposes take.vox beside it
        if (!destination.empty())
            converter.destination = destination;
        test::ScriptedPrompter prompter;
        EXPECT_FALSE(converter.CmConvert(prompter)) << converter.destination;
        EXPECT_EQ(converter.failure, ConvertFailure::SameFile) << converter.destination;
        ASSERT_EQ(prompter.messages().size(), 1u);
        EXPECT_EQ(prompter.messages()[0].text, " CANNOT OPEN OUTPUT FILE ");
        EXPECT_NE(prompter.messages()[0].detail.find("it is the wave file being converted"), std::string::npos);
        EXPECT_EQ(readWholeFile(dir / "take.vox"), phrase.wave);
    }
}

TEST(WaveConverter, RefusesASourceThatIsNotAWaveAndWarnsOfACutShortOne)
{
    test::TempDir dir;
    std::filesystem::create_directory(dir / "folder.wav");
    ASSERT_TRUE(writeFileAtomically(dir / "empty.wav", std::vector<std::uint8_t>{}));
    const std::string text = "Site 4 phrases\n";
    ASSERT_TRUE(writeFileAtomically(dir / "notes.wav", std::vector<std::uint8_t>(text.begin(), text.end())));
    const struct {
        const char* name;
        const char* detail;
    } refused[] = {{"folder.wav", "not a regular file (a folder)"},
                   {"empty.wav", "the file is empty"},
                   {"notes.wav", "not a RIFF WAVE file: it starts with \"Site\""}};
    for (const auto& file : refused) {
        WaveConverter converter;
        converter.source = (dir / file.name).string();
        converter.destination = (dir / "out.vox").string();
        test::ScriptedPrompter prompter;
        EXPECT_FALSE(converter.CmConvert(prompter)) << file.name;
        EXPECT_EQ(converter.failure, ConvertFailure::Source);
        ASSERT_EQ(prompter.messages().size(), 1u) << file.name;
        EXPECT_EQ(prompter.messages()[0].text, " CANNOT OPEN WAVE FILE ");
        EXPECT_NE(prompter.messages()[0].detail.find(file.detail), std::string::npos) << prompter.messages()[0].detail;
        EXPECT_NE(converter.status, "Conversion Complete");
        EXPECT_FALSE(std::filesystem::exists(dir / "out.vox")) << file.name;
    }

    ASSERT_TRUE(writeFileAtomically(
        dir / "cut.wav", test::makeWave({.bitsPerSample = 8, .dataSize = 900}, std::vector<std::uint8_t>(600, 128))));
    WaveConverter converter;
    converter.source = (dir / "cut.wav").string();
    converter.destination = (dir / "cut.vox").string();
    test::ScriptedPrompter prompter;
    ASSERT_TRUE(converter.CmConvert(prompter));
    EXPECT_EQ(converter.outputCount, 600);
    ASSERT_EQ(prompter.messages().size(), 1u);
    EXPECT_EQ(prompter.messages()[0].title, "Warning");
    EXPECT_EQ(prompter.messages()[0].text, "The wave file is cut short: its header gives 900 bytes of samples, the "
                                           "file holds 600. What is there was converted.");
}

} // namespace
} // namespace rk4
