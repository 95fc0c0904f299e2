// A phrase file (.vox) from disk, as vox2wav and the wave editor read it: any
// bytes decode, and the wave file made of them reads back as the same
// samples, so whatever vox2wav writes, wav2vox and the editor can open.

#include "fuzz/fuzz_target.h"

#include "core/voice/wave.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span<const std::uint8_t> vox{data, size};
    const std::span<const std::uint8_t> phrase = rk4::phraseData(vox);
    FUZZ_REQUIRE(phrase.size() <= vox.size());
    const std::vector<std::int16_t> samples = rk4::decodeVox(phrase);
    FUZZ_REQUIRE(samples.size() == 2 * phrase.size());

    const std::vector<std::uint8_t> wave = rk4::waveFileBytes(samples, rk4::kPhraseRate);
    const rk4::WaveFormat format = rk4::readWaveFormat(wave);
    if (!samples.empty()) {
        FUZZ_REQUIRE(format.convertible() && format.plainMono() && !format.eightBit());
        FUZZ_REQUIRE(format.sampleRate == rk4::kPhraseRate && !format.truncated());
        FUZZ_REQUIRE(rk4::waveSamples(wave, format) == samples);
    }
    const rk4::Waveform shown = rk4::phraseWaveform(vox);
    (void)shown.columns(640);
    (void)shown.peakPercent();
    return 0;
}
