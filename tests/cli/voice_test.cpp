#include "core/database/file.h"
#include "tests/core/voice/wave_builder.h"
#include "tests/support/cli_runner.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

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
    EXPECT_EQ(readWholeFile(dir / "site.vox"), phrase.vox);

    // The six coded samples come back as the codec's predictor times 16.
    const auto decoded = runRk4({"vox2wav", (dir / "site.vox").string(), (dir / "back.wav").string()});
    ASSERT_EQ(decoded.code, 0) << decoded.err;
    const std::vector<std::uint8_t> expected = {
        'R',  'I',  'F', 'F', 48,   0,    0,    0,   'W',  'A', 'V',  'E', // 48 bytes follow
        'f',  'm',  't', ' ', 16,   0,    0,    0,   1,    0,   1,    0,   // PCM, mono
        0x40, 0x1F, 0,   0,   0x80, 0x3E, 0,    0,                         // 8000 Hz, 16000 bytes a second
        2,    0,    16,  0,   'd',  'a',  't',  'a', 12,   0,   0,    0,   // 2-byte blocks of 16 bits, 12 bytes
        32,   0,    0,   1,   0xE0, 2,    0xD0, 6,   0x80, 8,   0xD0, 0};  // 2 16 46 109 136 13, times 16
    EXPECT_EQ(readWholeFile(dir / "back.wav"), expected);
}

} // namespace
} // namespace rk4::cli
