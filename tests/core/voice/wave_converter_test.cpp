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

} // namespace
} // namespace rk4
