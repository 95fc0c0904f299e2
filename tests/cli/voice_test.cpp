#include "core/database/file.h"
#include "core/voice/wave.h"
#include "tests/core/voice/wave_builder.h"
#include "tests/support/cli_runner.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>

namespace rk4::cli {
namespace {

using test::runRk4;

TEST(VoiceVerbs, Wav2voxWritesBesideTheWaveAndVox2wavDecodesItBack)
{
    test::TempDir dir;
    const test::KnownPhrase phrase = test::knownPhrase();
    ASSERT_TRUE(writeFileAtomically(dir / "site.id.wav", phrase.wave));

    const auto converted = runRk4({"wav2vox", (dir / "site.id.wav").string()});
    ASSERT_EQ(converted.code, 0) << converted.err;
    EXPECT_NE(converted.out.find("8000 Hz, 8-bit, mono"), std::string::npos) << converted.out;
    EXPECT_EQ(readWholeFile(dir / "site.id.vox"), phrase.vox);

    // The six coded samples come back as the codec's predictor times 16.
    const auto decoded = runRk4({"vox2wav", (dir / "site.id.vox").string(), (dir / "back.wav").string()});
    ASSERT_EQ(decoded.code, 0) << decoded.err;
    const std::vector<std::uint8_t> expected = {
        'R',  'I',  'F', 'F', 48,   0,    0,    0,   'W',  'A', 'V',  'E', // 48 bytes follow
        'f',  'm',  't', ' ', 16,   0,    0,    0,   1,    0,   1,    0,   // PCM, mono
        0x40, 0x1F, 0,   0,   0x80, 0x3E, 0,    0,                         // 8000 Hz, 16000 bytes a second
        2,    0,    16,  0,   'd',  'a',  't',  'a', 12,   0,   0,    0,   // 2-byte blocks of 16 bits, 12 bytes
        32,   0,    0,   1,   0xE0, 2,    0xD0, 6,   0x80, 8,   0xD0, 0};  // 2 16 46 109 136 13, times 16
    EXPECT_EQ(readWholeFile(dir / "back.wav"), expected);
}

TEST(VoiceVerbs, DefaultNamesReplaceTheLastExtensionAndNeverTheInput)
{
    test::TempDir dir;
    const test::KnownPhrase phrase = test::knownPhrase();
    ASSERT_TRUE(writeFileAtomically(dir / "zone.1.wav", phrase.wave));
    ASSERT_TRUE(writeFileAtomically(dir / "take.vox", phrase.wave)); // a recording under the phrase extension

    const auto converted = runRk4({"wav2vox", (dir / "zone.1.wav").string()});
    ASSERT_EQ(converted.code, 0) << converted.err;
    EXPECT_EQ(readWholeFile(dir / "zone.1.vox"), phrase.vox);
    EXPECT_FALSE(std::filesystem::exists(dir / "zone.vox"));
    const auto decoded = runRk4({"vox2wav", (dir / "zone.1.vox").string()});
    ASSERT_EQ(decoded.code, 0) << decoded.err;
    EXPECT_TRUE(std::filesystem::exists(dir / "zone.1.wav"));

    const std::vector<std::vector<std::string>> overwrites = {
        {"wav2vox", (dir / "take.vox").string()},
        {"wav2vox", (dir / "take.vox").string(), (dir / "." / "take.vox").string()},
        {"vox2wav", (dir / "take.vox").string(), (dir / "take.vox").string()},
    };
    for (const auto& args : overwrites) {
        const auto refused = runRk4(args);
        EXPECT_EQ(refused.code, 2) << args[0];
        EXPECT_EQ(refused.err.rfind(" CANNOT OPEN OUTPUT FILE \n", 0), 0u) << refused.err;
        EXPECT_EQ(readWholeFile(dir / "take.vox"), phrase.wave) << args[0];
    }
}

TEST(VoiceVerbs, Vox2wavRefusesAFileLongerThanAnyPhrase)
{
    test::TempDir dir;
    std::ofstream(dir / "big.vox").close();
    std::filesystem::resize_file(dir / "big.vox", kVoiceStoreBytes + 1);
    const auto refused = runRk4({"vox2wav", (dir / "big.vox").string()});
    EXPECT_EQ(refused.code, 2);
    EXPECT_EQ(refused.err, " CANNOT OPEN FILE \n  " + (dir / "big.vox").string() +
                               ": 524289 bytes, and a phrase is at most 524288, the largest voice store\n");
    EXPECT_FALSE(std::filesystem::exists(dir / "big.wav"));
}

TEST(VoiceVerbs, Wav2voxRefusesWhatIsNotAWaveWithStatus2)
{
    test::TempDir dir;
    std::filesystem::create_directory(dir / "recordings");
    const auto folder = runRk4({"wav2vox", (dir / "recordings").string(), (dir / "out.vox").string()});
    EXPECT_EQ(folder.code, 2);
    EXPECT_EQ(folder.err, " CANNOT OPEN WAVE FILE \n  not a regular file (a folder)\n");
    EXPECT_FALSE(std::filesystem::exists(dir / "out.vox"));
    EXPECT_EQ(folder.out.find("Conversion Complete"), std::string::npos);
}

} // namespace
} // namespace rk4::cli
