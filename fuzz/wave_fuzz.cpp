// A recording from a technician's recorder, or anything named .wav: the
// converter either refuses it or makes a phrase no bigger than the unit's
// voice store, and the phrase decodes.

#include "fuzz/fuzz_target.h"

#include "core/voice/wave.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span<const std::uint8_t> wave{data, size};
    (void)rk4::readWaveFormat(wave);
    (void)rk4::sourceWaveform(wave);
    const rk4::VoxConversion converted = rk4::convertWave(wave);
    FUZZ_REQUIRE(converted.vox.size() % rk4::kPhraseBlock == 0);
    FUZZ_REQUIRE(converted.vox.size() <= rk4::kVoiceStoreBytes);
    FUZZ_REQUIRE(converted.format.convertible() || converted.vox.empty());
    (void)rk4::decodeVox(converted.vox);
    (void)rk4::phraseWaveform(converted.vox);
    return 0;
}
