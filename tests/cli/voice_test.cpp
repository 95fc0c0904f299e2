#include "core/database/file.h"
#include "core/voice/wave.h"
#include "tests/core/voice/wave_builder.h"
#include "tests/support/cli_runner.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <cmath>

namespace rk4::cli {
namespace {

using test::runRk4;

TEST(VoiceVerbs, Wav2voxWritesBesideTheWaveAndVox2wavDecodesItBack)
{
    test::TempDir dir;
    std::vector<std::int16_t> input(4000);
    for (std::size_t i = 0; i < input.size(); ++i)
        input[i] = static_cast<std::int16_t>(8000 * std::sin(i * 0.4));
    const auto wave = test::makeWave({.sampleRate = 16000}, test::samples16(input));
    ASSERT_TRUE(writeFileAtomically(dir / "site.id.wav", wave));

    const auto converted = runRk4({"wav2vox", (dir / "site.id.wav").string()});
    ASSERT_EQ(converted.code, 0) << converted.err;
    EXPECT_NE(converted.out.find("16000 Hz, 16-bit, mono"), std::string::npos) << converted.out;
    EXPECT_EQ(readWholeFile(dir / "site.vox"), convertWave(wave).vox);

    const auto decoded = runRk4({"vox2wav", (dir / "site.vox").string(), (dir / "back.wav").string()});
    ASSERT_EQ(decoded.code, 0) << decoded.err;
    const auto back = readWholeFile(dir / "back.wav");
    ASSERT_TRUE(back);
    const WaveFormat format = readWaveFormat(*back);
    EXPECT_TRUE(format.plainMono());
    EXPECT_EQ(format.sampleRate, 8000u);
    EXPECT_EQ(format.dataSize, 1998u * 2); // 1999 codes, the last one unpaired
}

} // namespace
} // namespace rk4::cli
