#include "core/voice/wave.h"

#include "core/common/bytes.h"
#include "core/voice/adpcm.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

#include <sys/stat.h>

namespace rk4 {

namespace {

constexpr std::size_t kRiffHeaderSize = 12;
constexpr std::size_t kChunkHeaderSize = 8;
constexpr std::size_t kFmtFieldsSize = 16;
constexpr std::size_t kBlockSamples = 1024;

// Reads exactly `count` bytes; what the file does not hold reads as 0.
template <std::size_t count>
std::array<std::uint8_t, count> readFields(ByteSource& source)
{
    std::array<std::uint8_t, count> bytes{};
    source.read(bytes);
    return bytes;
}

// The converter's input buffer: 1024 samples, refilled block by block from
// the file. A read past the end of the file fills only part of it, so the
// rest still holds the samples of an earlier block; a slot no block reached
// holds silence.
class BlockBuffer {
  public:
    BlockBuffer(ByteSource& source, bool eightBit)
        : source(source), width(eightBit ? 1 : 2), current(kBlockSamples, eightBit ? 128 : 0),
          scratch(kBlockSamples * width)
    {
        fill(current);
    }

    // The sample at a position counted from the start of the data; positions
    // only move forward.
    int at(std::uint64_t position)
    {
        const std::uint64_t block = position / kBlockSamples;
        while (loaded < block)
            advance();
        return current[position % kBlockSamples];
    }

    // The sample after `position`, which at a block's end is the first of the
    // following block.
    int after(std::uint64_t position)
    {
        if ((position + 1) % kBlockSamples != 0)
            return at(position + 1);
        if (!lookahead) {
            next = current;
            fill(next);
            lookahead = true;
        }
        return next[0];
    }

  private:
    void advance()
    {
        if (lookahead)
            current.swap(next);
        else
            fill(current);
        lookahead = false;
        ++loaded;
    }

    void fill(std::vector<int>& buffer)
    {
        const std::size_t got = source.read(scratch) / width; // a partial last sample is not taken
        for (std::size_t i = 0; i < got; ++i)
            buffer[i] = width == 1 ? scratch[i] : static_cast<std::int16_t>(readLE16(scratch, 2 * i));
    }

    ByteSource& source;
    std::size_t width;
    std::vector<int> current;
    std::vector<int> next;
    std::vector<std::uint8_t> scratch;
    std::uint64_t loaded = 0;
    bool lookahead = false;
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

class SpanSource : public ByteSource {
  public:
    explicit SpanSource(std::span<const std::uint8_t> bytes) : bytes(bytes) {}
    std::size_t read(std::span<std::uint8_t> into) override
    {
        const std::size_t count = std::min(into.size(), bytes.size() - position);
        std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(position), count, into.begin());
        position += count;
        return count;
    }
    void skip(std::uint64_t count) override
    {
        position += static_cast<std::size_t>(std::min<std::uint64_t>(count, remaining()));
    }
    std::uint64_t remaining() const override { return bytes.size() - position; }
    std::size_t offset() const { return position; }

  private:
    std::span<const std::uint8_t> bytes;
    std::size_t position = 0;
};

} // namespace

FileSource::FileSource(const std::filesystem::path& path) : file(std::fopen(path.c_str(), "rb"))
{
    if (!file)
        return;
    struct stat status {};
    if (::fstat(::fileno(file), &status) == 0 && S_ISREG(status.st_mode))
        size = static_cast<std::uint64_t>(status.st_size);
    std::setvbuf(file, nullptr, _IOFBF, 1 << 16);
}

FileSource::~FileSource()
{
    if (file)
        std::fclose(file);
}

std::size_t FileSource::read(std::span<std::uint8_t> into)
{
    const std::size_t count = std::fread(into.data(), 1, into.size(), file);
    position += count;
    return count;
}

void FileSource::skip(std::uint64_t count)
{
    count = std::min(count, remaining());
    if (::fseeko(file, static_cast<off_t>(count), SEEK_CUR) == 0)
        position += count;
}

std::uint64_t FileSource::remaining() const { return size > position ? size - position : 0; }

WaveFormat readWaveFormat(ByteSource& source)
{
    WaveFormat format;
    source.skip(kRiffHeaderSize);
    const auto fmt = readFields<kChunkHeaderSize + kFmtFieldsSize>(source);
    const std::uint32_t fmtSize = readLE32(fmt, 4);
    format.formatTag = readLE16(fmt, 8);
    format.channels = readLE16(fmt, 10);
    format.sampleRate = readLE32(fmt, 12);
    format.byteRate = readLE32(fmt, 16);
    format.blockAlign = readLE16(fmt, 20);
    format.bitsPerSample = readLE16(fmt, 22);
    if (fmtSize > kFmtFieldsSize)
        source.skip(fmtSize - kFmtFieldsSize);
    auto chunk = readFields<kChunkHeaderSize>(source);
    if (std::equal(chunk.begin(), chunk.begin() + 4, "fact")) {
        // Its content is taken to be the usual four bytes, whatever its size says.
        format.hasFact = true;
        source.skip(4);
        chunk = readFields<kChunkHeaderSize>(source);
    }
    format.dataSize = readLE32(chunk, 4);
    return format;
}

WaveFormat readWaveFormat(std::span<const std::uint8_t> wave)
{
    SpanSource source(wave);
    WaveFormat format = readWaveFormat(source);
    format.dataOffset = source.offset();
    return format;
}

VoxConversion convertWave(ByteSource& source)
{
    VoxConversion result;
    result.format = readWaveFormat(source);
    const WaveFormat& format = result.format;
    const bool eightBit = format.eightBit();
    const double ratio = format.sampleRate * 0.000125;
    const std::int32_t count = outputCountFor(format, ratio, source.remaining() / (eightBit ? 1 : 2));
    result.outputCount = count;
    BlockBuffer input(source, eightBit);

    std::vector<std::uint8_t>& out = result.vox;
    out.reserve(static_cast<std::size_t>(std::max(count, 0)) / 2 + 2 * kPhraseBlock);
    AdpcmCodec codec;
    const bool exact = isExactRatio(ratio);
    const auto exactStep = static_cast<std::uint64_t>(ratio);
    std::uint64_t block = 0;
    std::uint64_t blockPosition = 0;
    int lowNibble = -1;
    for (std::int32_t i = 0; i < count - 1; ++i) {
        int sample;
        if (exact) {
            sample = input.at(block * kBlockSamples + blockPosition);
            blockPosition += exactStep;
            if (blockPosition > 1023) { // an overshoot past the block's end is dropped
                ++block;
                blockPosition = 0;
            }
        } else {
            const double position = i * ratio;
            const auto whole = static_cast<std::uint64_t>(position);
            const double fraction = position - static_cast<double>(whole);
            sample = input.at(whole);
            if (fraction > 0.05) {
                const double step = (input.after(whole) - sample) * fraction;
                if (step < -0.5 || step > 0.5)
                    sample = static_cast<int>(sample + step);
            }
        }
        const int code = codec.ADPCMencode(to12Bits(sample, eightBit));
        if (codec.predictor == kMaxSample12 || codec.predictor == kMinSample12)
            ++result.clippedCodes;
        result.peak12 = std::max<int>(result.peak12, std::abs(codec.predictor));
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

VoxConversion convertWave(std::span<const std::uint8_t> wave)
{
    SpanSource source(wave);
    return convertWave(source);
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
    std::array<std::uint8_t, 44> header{};
    const std::span<std::uint8_t> out(header);
    std::memcpy(header.data(), "RIFF", 4);
    writeLE32(out, 4, 36 + dataSize);
    std::memcpy(header.data() + 8, "WAVEfmt ", 8);
    writeLE32(out, 16, 16);
    writeLE16(out, 20, 1); // PCM
    writeLE16(out, 22, 1); // mono
    writeLE32(out, 24, sampleRate);
    writeLE32(out, 28, sampleRate * 2);
    writeLE16(out, 32, 2);
    writeLE16(out, 34, 16);
    std::memcpy(header.data() + 36, "data", 4);
    writeLE32(out, 40, dataSize);

    std::vector<std::uint8_t> bytes;
    bytes.reserve(header.size() + samples.size() * 2);
    bytes.assign(header.begin(), header.end());
    for (const std::int16_t sample : samples) {
        bytes.push_back(static_cast<std::uint8_t>(sample & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(static_cast<std::uint16_t>(sample) >> 8));
    }
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
