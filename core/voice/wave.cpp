#include "core/voice/wave.h"

#include "core/common/bytes.h"
#include "core/voice/adpcm.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace rk4 {

namespace {

constexpr std::size_t kRiffHeaderSize = 12;
constexpr std::size_t kChunkHeaderSize = 8;
constexpr std::size_t kFmtFieldsSize = 16;
constexpr std::uint64_t kBlockSamples = 1024;

// A forward reader over the file that never reads past its end.
class Cursor {
public:
    explicit Cursor(std::span<const std::uint8_t> bytes) : bytes(bytes) {}

    std::uint8_t byte(std::size_t offset) const { return position + offset < bytes.size() ? bytes[position + offset] : 0; }
    std::uint16_t le16(std::size_t offset) const
    {
        return static_cast<std::uint16_t>(byte(offset) | (byte(offset + 1) << 8));
    }
    std::uint32_t le32(std::size_t offset) const
    {
        return static_cast<std::uint32_t>(le16(offset)) | (static_cast<std::uint32_t>(le16(offset + 2)) << 16);
    }
    bool idIs(const char* id) const
    {
        for (std::size_t i = 0; i < 4; ++i)
            if (byte(i) != static_cast<std::uint8_t>(id[i]))
                return false;
        return true;
    }
    void skip(std::uint64_t count)
    {
        position = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), position + count));
    }
    std::size_t offset() const { return position; }

private:
    std::span<const std::uint8_t> bytes;
    std::size_t position = 0;
};

// The input as the converter sees it: 1024-sample blocks read one after the
// other into one buffer. A read past the end of the file fills only part of
// the buffer, so the rest still holds the samples of an earlier block.
// Computed per sample rather than copied, so any position costs the same.
class BlockSource {
public:
    BlockSource(std::span<const std::uint8_t> wave, const WaveFormat& format)
        : stream(wave.subspan(format.dataOffset)), eightBit(format.eightBit()),
          available(eightBit ? stream.size() : stream.size() / 2)
    {
    }

    std::uint64_t sampleCount() const { return available; }

    int sample(std::uint64_t block, std::uint64_t index) const
    {
        std::uint64_t at = block * kBlockSamples + index;
        if (at >= available) {
            // The last block that reached this buffer slot; a slot no block
            // reached holds silence.
            if (index >= available)
                return eightBit ? 128 : 0;
            at = (available - 1 - index) / kBlockSamples * kBlockSamples + index;
        }
        return raw(static_cast<std::size_t>(at));
    }

    int sample(std::uint64_t position) const { return sample(position / kBlockSamples, position % kBlockSamples); }

private:
    int raw(std::size_t at) const
    {
        if (eightBit)
            return stream[at];
        return static_cast<std::int16_t>(readLE16(stream, at * 2));
    }

    std::span<const std::uint8_t> stream;
    bool eightBit;
    std::uint64_t available;
};

std::int16_t to12Bits(int sample, bool eightBit)
{
    // 16-bit samples lose four bits with a division that truncates toward zero.
    return static_cast<std::int16_t>(eightBit ? (sample - 128) * 16 : sample / 16);
}

// The header's count, bounded so that a data size the file does not hold
// stops one block after the file's end instead of running on for gigabytes.
std::int32_t outputCountFor(const WaveFormat& format, double ratio, std::uint64_t availableSamples)
{
    if (!(ratio > 0.0))
        return 0;
    double count = format.dataSize / ratio;
    if (format.bitsPerSample == 16)
        count /= 2;
    const std::uint64_t readable =
        (availableSamples + kBlockSamples - 1) / kBlockSamples * kBlockSamples + kBlockSamples;
    const double bound = std::floor(static_cast<double>(readable) / ratio) + 1;
    count = std::min({count, bound, static_cast<double>(std::numeric_limits<std::int32_t>::max())});
    return static_cast<std::int32_t>(count);
}

bool isExactRatio(double ratio) { return ratio == 1.0 || ratio == 2.0 || ratio == 4.0 || ratio == 6.0; }

} // namespace

WaveFormat readWaveFormat(std::span<const std::uint8_t> wave)
{
    WaveFormat format;
    Cursor cursor(wave);
    cursor.skip(kRiffHeaderSize);
    const std::uint32_t fmtSize = cursor.le32(4);
    cursor.skip(kChunkHeaderSize);
    format.formatTag = cursor.le16(0);
    format.channels = cursor.le16(2);
    format.sampleRate = cursor.le32(4);
    format.byteRate = cursor.le32(8);
    format.blockAlign = cursor.le16(12);
    format.bitsPerSample = cursor.le16(14);
    cursor.skip(kFmtFieldsSize);
    if (fmtSize > kFmtFieldsSize)
        cursor.skip(fmtSize - kFmtFieldsSize);
    if (cursor.idIs("fact")) {
        // Its content is taken to be the usual four bytes, whatever its size says.
        format.hasFact = true;
        cursor.skip(kChunkHeaderSize + 4);
    }
    format.dataSize = cursor.le32(4);
    cursor.skip(kChunkHeaderSize);
    format.dataOffset = cursor.offset();
    return format;
}

VoxConversion convertWave(std::span<const std::uint8_t> wave)
{
    VoxConversion result;
    result.format = readWaveFormat(wave);
    const WaveFormat& format = result.format;
    const BlockSource source(wave, format);
    const bool eightBit = format.eightBit();
    const double ratio = format.sampleRate * 0.000125;
    const std::int32_t count = outputCountFor(format, ratio, source.sampleCount());
    result.outputCount = count;

    std::vector<std::uint8_t>& out = result.vox;
    out.reserve(static_cast<std::size_t>(std::max(count, 0)) / 2 + 2 * kPhraseBlock);
    AdpcmCodec codec;
    const bool exact = isExactRatio(ratio);
    const int exactStep = static_cast<int>(ratio);
    std::uint64_t block = 0;
    int blockPosition = 0;
    int lowNibble = -1;
    for (std::int32_t i = 0; i < count - 1; ++i) {
        int sample;
        if (exact) {
            sample = source.sample(block, static_cast<std::uint64_t>(blockPosition));
            blockPosition += exactStep;
            if (blockPosition > 1023) { // an overshoot past the block's end is dropped
                ++block;
                blockPosition = 0;
            }
        } else {
            const double position = i * ratio;
            const auto whole = static_cast<std::uint64_t>(position);
            const double fraction = position - static_cast<double>(whole);
            sample = source.sample(whole);
            if (fraction > 0.05) {
                // At a block's last sample the next one is the first of the following block.
                const double step = (source.sample(whole + 1) - sample) * fraction;
                if (step < -0.5 || step > 0.5)
                    sample = static_cast<int>(sample + step);
            }
        }
        const int code = codec.ADPCMencode(to12Bits(sample, eightBit));
        // The unit plays the low nibble first, the opposite of the usual .vox order.
        if (lowNibble < 0) {
            lowNibble = code;
        } else {
            out.push_back(static_cast<std::uint8_t>(lowNibble | (code << 4)));
            lowNibble = -1;
        }
    }

    const std::int32_t bytes = count / 2;
    std::int32_t blocks = count / 512;
    out.insert(out.end(), static_cast<std::size_t>(256 - (bytes - 256 * blocks)), kSilenceByte);
    ++blocks;
    out.insert(out.end(), static_cast<std::size_t>(16 - blocks % 16) * 256, kFillByte);
    out.resize((out.size() + kPhraseBlock - 1) / kPhraseBlock * kPhraseBlock, kFillByte);
    return result;
}

std::span<const std::uint8_t> phraseData(std::span<const std::uint8_t> vox)
{
    std::size_t end = vox.size();
    while (end > 0 && vox[end - 1] == kFillByte)
        --end;
    while (end > 0 && vox[end - 1] == kSilenceByte)
        --end;
    return vox.first(end);
}

std::vector<std::int16_t> decodeVox(std::span<const std::uint8_t> vox)
{
    std::vector<std::int16_t> samples;
    samples.reserve(vox.size() * 2);
    AdpcmCodec codec;
    for (std::uint8_t byte : vox) {
        samples.push_back(static_cast<std::int16_t>(codec.ADPCMdecode(byte & 0x0F) * 16));
        samples.push_back(static_cast<std::int16_t>(codec.ADPCMdecode(byte >> 4) * 16));
    }
    return samples;
}

std::vector<std::uint8_t> waveFileBytes(std::span<const std::int16_t> samples, std::uint32_t sampleRate)
{
    const auto dataSize = static_cast<std::uint32_t>(samples.size() * 2);
    std::vector<std::uint8_t> bytes(44 + dataSize);
    std::span<std::uint8_t> out(bytes);
    std::memcpy(bytes.data(), "RIFF", 4);
    writeLE32(out, 4, 36 + dataSize);
    std::memcpy(bytes.data() + 8, "WAVEfmt ", 8);
    writeLE32(out, 16, 16);
    writeLE16(out, 20, 1); // PCM
    writeLE16(out, 22, 1); // mono
    writeLE32(out, 24, sampleRate);
    writeLE32(out, 28, sampleRate * 2);
    writeLE16(out, 32, 2);
    writeLE16(out, 34, 16);
    std::memcpy(bytes.data() + 36, "data", 4);
    writeLE32(out, 40, dataSize);
    for (std::size_t i = 0; i < samples.size(); ++i)
        writeLE16(out, 44 + 2 * i, static_cast<std::uint16_t>(samples[i]));
    return bytes;
}

std::vector<std::int16_t> waveSamples(std::span<const std::uint8_t> wave, const WaveFormat& format)
{
    const std::span<const std::uint8_t> data =
        wave.subspan(format.dataOffset, std::min<std::size_t>(format.dataSize, wave.size() - format.dataOffset));
    const std::size_t width = format.eightBit() ? 1 : 2;
    const std::size_t stride = width * std::max<std::size_t>(1, std::min<std::uint16_t>(format.channels, 16));
    std::vector<std::int16_t> samples;
    samples.reserve(data.size() / stride);
    for (std::size_t at = 0; at + width <= data.size(); at += stride)
        samples.push_back(format.eightBit() ? static_cast<std::int16_t>((data[at] - 128) * 256)
                                            : static_cast<std::int16_t>(readLE16(data, at)));
    return samples;
}

std::vector<WaveColumn> Waveform::columns(int count) const
{
    std::vector<WaveColumn> result;
    if (count <= 0 || samples.empty())
        return result;
    result.resize(static_cast<std::size_t>(count));
    const std::size_t total = samples.size();
    for (std::size_t column = 0; column < result.size(); ++column) {
        // With fewer samples than columns a sample spans several columns.
        const std::size_t begin = column * total / result.size();
        const std::size_t end = std::max(begin + 1, (column + 1) * total / result.size());
        const auto [low, high] = std::minmax_element(samples.begin() + static_cast<std::ptrdiff_t>(begin),
                                                     samples.begin() + static_cast<std::ptrdiff_t>(end));
        result[column] = {*low, *high, *high >= clipHigh || *low <= clipLow};
    }
    return result;
}

int Waveform::peakPercent() const
{
    int peak = 0;
    for (std::int16_t sample : samples)
        peak = std::max(peak, std::abs(static_cast<int>(sample)));
    return static_cast<int>((peak * 100 + clipHigh / 2) / clipHigh);
}

std::size_t Waveform::clippedCount() const
{
    return static_cast<std::size_t>(std::count_if(samples.begin(), samples.end(), [this](std::int16_t sample) {
        return sample >= clipHigh || sample <= clipLow;
    }));
}

Waveform sourceWaveform(std::span<const std::uint8_t> wave)
{
    const WaveFormat format = readWaveFormat(wave);
    Waveform waveform;
    waveform.samples = waveSamples(wave, format);
    waveform.sampleRate = format.sampleRate;
    if (format.eightBit()) {
        waveform.clipHigh = (255 - 128) * 256;
        waveform.clipLow = (0 - 128) * 256;
    }
    return waveform;
}

Waveform phraseWaveform(std::span<const std::uint8_t> vox, std::int32_t outputCount)
{
    Waveform waveform;
    const std::size_t bytes = outputCount > 0 ? static_cast<std::size_t>(outputCount - 1) / 2 : 0;
    waveform.samples = decodeVox(outputCount < 0 ? phraseData(vox) : vox.first(std::min(bytes, vox.size())));
    waveform.sampleRate = kPhraseRate;
    waveform.clipHigh = kMaxSample12 * 16;
    waveform.clipLow = kMinSample12 * 16;
    return waveform;
}

} // namespace rk4
