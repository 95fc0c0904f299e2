#include "core/voice/wave.h"

#include "core/common/bytes.h"
#include "core/voice/adpcm.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace rk4 {

namespace {

constexpr std::size_t kChunkHeaderSize = 8;
constexpr std::size_t kFmtFieldsSize = 16;
constexpr std::size_t kExtensibleFmtSize = 40;
constexpr std::size_t kBlockSamples = 1024;
constexpr std::int32_t kWideFullScale = 8388608; // 24-bit samples; wider and float ones are brought to it

// How one sample of the mixed-down input is held while resampling: 8-bit
// PCM as its unsigned byte, 16-bit as it is, every wider or float format on
// a 24-bit scale.
enum class SampleScale { Unsigned8, Signed16, Wide };

SampleScale scaleOf(const WaveFormat& format)
{
    if (format.encoding == kWavePcm && format.bitsPerSample == 8)
        return SampleScale::Unsigned8;
    if (format.encoding == kWavePcm && format.bitsPerSample == 16)
        return SampleScale::Signed16;
    return SampleScale::Wide;
}

// One channel's sample, signed, on its scale (8-bit centred on 0).
int channelSample(const WaveFormat& format, const std::uint8_t* at)
{
    switch (format.bitsPerSample) {
    case 8: return at[0] - 128;
    case 16: return static_cast<std::int16_t>(at[0] | at[1] << 8);
    default: break;
    }
    const auto byte = [at](int index) { return static_cast<std::uint32_t>(at[index]); };
    if (format.bitsPerSample == 24) // placed in the top of a 32-bit word to carry its sign
        return static_cast<std::int32_t>(byte(0) << 8 | byte(1) << 16 | byte(2) << 24) / 256;
    const std::uint32_t bits = byte(0) | byte(1) << 8 | byte(2) << 16 | byte(3) << 24;
    if (format.encoding == kWavePcm)
        return static_cast<std::int32_t>(bits) / 256;
    float value;
    std::memcpy(&value, &bits, sizeof value);
    if (!(value == value)) // NaN
        return 0;
    const double scaled = std::trunc(static_cast<double>(value) * kWideFullScale);
    return static_cast<int>(std::clamp(scaled, -double(kWideFullScale), double(kWideFullScale - 1)));
}

// A frame as the converter takes it: a stereo pair is mixed to the mean of
// its two samples, truncated toward zero.
int frameSample(const WaveFormat& format, const std::uint8_t* frame)
{
    int sample = channelSample(format, frame);
    if (format.channels == 2)
        sample = (sample + channelSample(format, frame + format.bitsPerSample / 8)) / 2;
    return format.eightBit() ? sample + 128 : sample;
}

// The data chunk's samples as the converter walks through them, held in one
// run so that a sample and the one after it are always side by side. The
// unit's own recordings, 16 or 8-bit mono, are held as 16-bit samples (the
// 16-bit ones read straight from the file into place); every other format as
// frameSample makes it. Only the sample just past the end of the data is
// ever looked at (by the interpolation of the last output sample); it reads
// as the sample 1024 before it, or silence in a shorter recording, which is
// what the unit's 1024-sample input buffer leaves there.
template <typename Sample> class SampleWindow {
  public:
    SampleWindow(ByteSource& source, const WaveFormat& format, std::uint64_t frames)
        : source(source), format(format), frames(frames), pastEnd(static_cast<Sample>(format.eightBit() ? 128 : 0))
    {
    }

    // Makes sure positions first..last are held; positions only move forward.
    void hold(std::uint64_t first, std::uint64_t last)
    {
        if (first > start) { // what is behind `first` is never looked at again
            const auto drop = static_cast<std::size_t>(std::min<std::uint64_t>(first - start, size));
            std::memmove(samples.get(), samples.get() + drop, (size - drop) * sizeof(Sample));
            size -= drop;
            start += drop;
        }
        const std::uint64_t end = start + size;
        if (last >= end)
            extend(static_cast<std::size_t>(std::max<std::uint64_t>(last + 1 - end, kBlockSamples)));
    }

    int operator[](std::uint64_t position) const { return samples[static_cast<std::size_t>(position - start)]; }

  private:
    void extend(std::size_t wanted)
    {
        if (size + wanted > capacity) { // grows to what the widest batch needs, then stays
            capacity = size + wanted;
            auto larger = std::make_unique_for_overwrite<Sample[]>(capacity);
            std::copy_n(samples.get(), size, larger.get());
            samples = std::move(larger);
        }
        const std::uint64_t end = start + size;
        const auto fromData = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, frames - std::min(frames, end)));
        Sample* into = samples.get() + size;
        const std::size_t got = readInto(into, fromData);
        if (frames >= kBlockSamples && frames - kBlockSamples >= end && frames - kBlockSamples < end + got)
            pastEnd = into[frames - kBlockSamples - end];
        std::fill(into + got, into + wanted, pastEnd);
        size += wanted;
    }

    std::size_t readInto(Sample* into, std::size_t count)
    {
        const std::size_t frameBytes = format.frameBytes();
        if constexpr (sizeof(Sample) == 2) {
            if (format.bitsPerSample == 16) {
                const std::size_t got =
                    source.read(std::span(reinterpret_cast<std::uint8_t*>(into), count * frameBytes)) / frameBytes;
                if constexpr (std::endian::native == std::endian::big)
                    for (std::size_t i = 0; i < got; ++i)
                        into[i] = static_cast<Sample>(static_cast<std::uint16_t>(into[i]) >> 8 |
                                                      static_cast<std::uint16_t>(into[i]) << 8);
                return got;
            }
        }
        scratch.resize(count * frameBytes);
        const std::size_t got = source.read(scratch) / frameBytes;
        const std::uint8_t* bytes = scratch.data();
        if constexpr (sizeof(Sample) == 2) // 8-bit mono, as it is
            std::copy_n(bytes, got, into);
        else
            for (std::size_t i = 0; i < got; ++i)
                into[i] = frameSample(format, bytes + i * frameBytes);
        return got;
    }

    ByteSource& source;
    const WaveFormat& format;
    const std::uint64_t frames;
    Sample pastEnd;
    std::unique_ptr<Sample[]> samples;
    std::size_t size = 0;
    std::size_t capacity = 0;
    std::uint64_t start = 0; // the position of samples[0]
    std::vector<std::uint8_t> scratch;
};

// Encodes the picked 12-bit samples batch by batch and packs the codes, low
// nibble first (the unit plays it first, the opposite of the usual .vox
// order). Each code waits on the one before it, so the encoder sets the
// converter's pace; for a long recording it runs on a thread of its own
// while the caller reads and picks the next batch, which a second core then
// does for free.
class BatchEncoder {
  public:
    static constexpr std::size_t kBatch = 8192; // even, so a byte's two codes never straddle batches

    BatchEncoder(std::uint8_t* packed, bool threaded) : packed(packed)
    {
        if (!threaded)
            return;
        try {
            worker = std::thread([this] { run(); });
        } catch (const std::system_error&) { // no thread to be had: encode as the batches come
        }
    }
    ~BatchEncoder() { finish(); }
    BatchEncoder(const BatchEncoder&) = delete;
    BatchEncoder& operator=(const BatchEncoder&) = delete;

    // The batch to fill next, once the encoder has finished with it.
    std::span<std::int16_t> next()
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return filled - encoded < kSlots; });
        return slots[filled % kSlots];
    }

    // Hands over the batch `next` gave, holding `size` samples.
    void submit(std::size_t size)
    {
        if (!worker.joinable()) {
            encode(slots[filled % kSlots].data(), size);
            return;
        }
        {
            const std::lock_guard lock(mutex);
            sizes[filled % kSlots] = size;
            ++filled;
        }
        changed.notify_all();
    }

    // Waits until every batch handed over is encoded.
    void finish()
    {
        if (!worker.joinable())
            return;
        {
            const std::lock_guard lock(mutex);
            done = true;
        }
        changed.notify_all();
        worker.join();
    }

    // How the phrase will sound: codes that left the predictor at a limit, and its largest magnitude.
    std::size_t clipped = 0;
    int peak = 0;

  private:
    static constexpr std::size_t kSlots = 3;

    void run()
    {
        for (;;) {
            std::size_t slot, size;
            {
                std::unique_lock lock(mutex);
                changed.wait(lock, [this] { return encoded < filled || done; });
                if (encoded == filled)
                    return;
                slot = encoded % kSlots;
                size = sizes[slot];
            }
            encode(slots[slot].data(), size);
            {
                const std::lock_guard lock(mutex);
                ++encoded;
            }
            changed.notify_all();
        }
    }

    void encode(const std::int16_t* samples, std::size_t size)
    {
        // Worked on in locals: a store through the byte pointer could alias
        // any member, which would send every member to memory on every code.
        AdpcmCodec state = codec;
        std::uint8_t* into = packed;
        std::size_t atLimit = clipped;
        int largest = peak;
        const auto note = [&] { // off the encoder's chain
            atLimit += static_cast<std::size_t>((state.predictor == kMaxSample12) | (state.predictor == kMinSample12));
            largest = std::max<int>(largest, std::abs(state.predictor));
        };
        std::size_t k = 0;
        for (; k + 1 < size; k += 2) {
            const int low = state.ADPCMencode(samples[k]);
            note();
            const int high = state.ADPCMencode(samples[k + 1]);
            note();
            *into++ = static_cast<std::uint8_t>(low | high << 4);
        }
        if (k < size) { // an unpaired last code is not written
            state.ADPCMencode(samples[k]);
            note();
        }
        codec = state;
        packed = into;
        clipped = atLimit;
        peak = largest;
    }

    std::uint8_t* packed;
    AdpcmCodec codec;
    std::array<std::array<std::int16_t, kBatch>, kSlots> slots{};
    std::array<std::size_t, kSlots> sizes{};
    std::size_t filled = 0;  // batches handed over
    std::size_t encoded = 0; // of them, encoded
    bool done = false;
    std::mutex mutex;
    std::condition_variable changed;
    std::thread worker;
};

std::int16_t to12Bits(int sample, SampleScale scale)
{
    // Wider samples lose their low bits with a division that truncates toward zero.
    switch (scale) {
    case SampleScale::Unsigned8: return static_cast<std::int16_t>((sample - 128) * 16);
    case SampleScale::Signed16: return static_cast<std::int16_t>(sample / 16);
    case SampleScale::Wide: break;
    }
    return static_cast<std::int16_t>(sample / 4096);
}

// The output sample count: the data's length over the ratio, in frames.
double outputCountFor(const WaveFormat& format, double ratio)
{
    const std::uint64_t bytes = std::min<std::uint64_t>(format.dataSize, format.dataAvailable);
    return static_cast<double>(bytes) / ratio / static_cast<double>(format.frameBytes());
}

// The length of the phrase file `count` output samples make, padding included.
constexpr std::uint64_t phraseFileBytes(std::uint64_t count)
{
    const std::uint64_t blocks = count / 512 + 1; // with the 0x80 run
    return blocks * 256 + (16 - blocks % 16) * 256;
}

// The longest phrase the voice store takes, in output samples. The file's
// length moves in steps of 512 samples, so the answer ends a step.
constexpr std::uint64_t longestPhrase()
{
    std::uint64_t count = kVoiceStoreBytes * 2;
    while (phraseFileBytes(count) > kVoiceStoreBytes)
        count -= 512;
    return count / 512 * 512 + 511;
}
static_assert(longestPhrase() == 1048063);

std::string seconds(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f s", value);
    return text;
}

// The first bytes of a file as text, unprintable ones in hex: "MZ\x90\x00".
std::string quoted(std::span<const std::uint8_t> bytes)
{
    std::string text = "\"";
    for (const std::uint8_t byte : bytes) {
        char piece[8];
        std::snprintf(piece, sizeof piece, byte >= 0x20 && byte < 0x7F ? "%c" : "\\x%02X", byte);
        text += piece;
    }
    return text + "\"";
}

std::string encodingName(std::uint16_t tag)
{
    switch (tag) {
    case 0: return "an unknown encoding (format 0)";
    case 2: return "ADPCM";
    case 6: return "A-law";
    case 7: return "mu-law";
    case 0x11: return "IMA ADPCM";
    case 0x31: return "GSM 6.10";
    case 0x50: return "MPEG audio";
    case 0x55: return "MP3";
    default: break;
    }
    char text[40];
    std::snprintf(text, sizeof text, "encoding 0x%04X", tag);
    return text;
}

// What keeps a header's format from being converted; empty when nothing does.
std::string formatProblem(const WaveFormat& format)
{
    if (format.encoding == kWavePcm) {
        if (format.bitsPerSample != 8 && format.bitsPerSample != 16 && format.bitsPerSample != 24 &&
            format.bitsPerSample != 32)
            return std::to_string(format.bitsPerSample) + "-bit PCM: only 8, 16, 24 and 32-bit PCM can be converted";
    } else if (format.encoding == kWaveFloat) {
        if (format.bitsPerSample != 32)
            return std::to_string(format.bitsPerSample) + "-bit float: only 32-bit float can be converted";
    } else {
        return encodingName(format.encoding) + ": only PCM and 32-bit float wave files can be converted";
    }
    if (format.channels == 0)
        return "the header gives no channels";
    if (format.channels > 2)
        return std::to_string(format.channels) + " channels: only mono and stereo can be converted";
    if (format.sampleRate < kLowestWaveRate || format.sampleRate > kHighestWaveRate)
        return "sample rate " + std::to_string(format.sampleRate) + " Hz: phrases are made from " +
               std::to_string(kLowestWaveRate) + " to " + std::to_string(kHighestWaveRate) + " Hz";
    return {};
}

bool isExactRatio(double ratio) { return ratio == 1.0 || ratio == 2.0 || ratio == 4.0 || ratio == 6.0; }

// Picks the input sample for each of `codes` output samples at 8000 Hz,
// interpolating between neighbours where the rates do not divide, and hands
// them to the encoder as 12-bit samples a batch at a time.
template <typename Sample>
void pickSamples(ByteSource& source, const WaveFormat& format, std::int32_t codes, BatchEncoder& encoder)
{
    SampleWindow<Sample> input(source, format, format.dataAvailable / format.frameBytes());
    const SampleScale scale = scaleOf(format);
    const double ratio = format.sampleRate * 0.000125;
    const bool exact = isExactRatio(ratio);
    const auto exactStep = static_cast<std::uint64_t>(ratio);
    // At 48000 Hz 1024 is not a multiple of the step: a block gives 171
    // samples and the overshoot past its end is dropped.
    const std::uint64_t perBlock = exact ? (kBlockSamples + exactStep - 1) / exactStep : 0;
    const auto exactPosition = [&](std::uint64_t i) { return i / perBlock * kBlockSamples + i % perBlock * exactStep; };
    constexpr auto kBatch = static_cast<std::int32_t>(BatchEncoder::kBatch);
    for (std::int32_t first = 0; first < codes; first += kBatch) {
        const std::int32_t size = std::min(kBatch, codes - first);
        const std::int32_t last = first + size - 1;
        const std::span<std::int16_t> batch = encoder.next();
        if (exact) {
            input.hold(exactPosition(static_cast<std::uint64_t>(first)), exactPosition(static_cast<std::uint64_t>(last)));
            for (std::int32_t k = 0; k < size; ++k)
                batch[static_cast<std::size_t>(k)] =
                    to12Bits(input[exactPosition(static_cast<std::uint64_t>(first + k))], scale);
        } else {
            input.hold(static_cast<std::uint64_t>(first * ratio), static_cast<std::uint64_t>(last * ratio) + 1);
            for (std::int32_t k = 0; k < size; ++k) {
                const double position = (first + k) * ratio;
                // Through a signed integer: one instruction each way, and positions are far below 2^63.
                const auto signedWhole = static_cast<std::int64_t>(position);
                const auto whole = static_cast<std::uint64_t>(signedWhole);
                const double fraction = position - static_cast<double>(signedWhole);
                const int sample = input[whole];
                // Worked out every time and chosen without a branch: whether a
                // sample is interpolated depends on the recording, so a branch
                // on it is mispredicted half the time.
                const double step = (input[whole + 1] - sample) * fraction;
                const int interpolate = -static_cast<int>((fraction > 0.05) & ((step < -0.5) | (step > 0.5)));
                const int interpolated = static_cast<int>(sample + step);
                batch[static_cast<std::size_t>(k)] = to12Bits(sample ^ ((sample ^ interpolated) & interpolate), scale);
            }
        }
        encoder.submit(static_cast<std::size_t>(size));
    }
}

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

  private:
    std::span<const std::uint8_t> bytes;
    std::size_t position = 0;
};

} // namespace

FileSource::FileSource(const std::filesystem::path& path)
{
    // Non-blocking, so naming a FIFO refuses it instead of waiting for a writer.
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        why = std::strerror(errno);
        return;
    }
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        why = S_ISDIR(status.st_mode) ? "not a regular file (a folder)" : "not a regular file";
        ::close(fd);
        return;
    }
    size = static_cast<std::uint64_t>(status.st_size);
    descriptor = fd;
}

FileSource::~FileSource()
{
    if (descriptor >= 0)
        ::close(descriptor);
}

std::size_t FileSource::read(std::span<std::uint8_t> into)
{
    std::size_t count = 0;
    while (count < into.size()) {
        const ssize_t got = ::read(descriptor, into.data() + count, into.size() - count);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        count += static_cast<std::size_t>(got);
    }
    position += count;
    return count;
}

void FileSource::skip(std::uint64_t count)
{
    count = std::min(count, remaining());
    if (::lseek(descriptor, static_cast<off_t>(count), SEEK_CUR) >= 0)
        position += count;
}

std::uint64_t FileSource::remaining() const { return size > position ? size - position : 0; }

WaveFormat readWaveFormat(ByteSource& source)
{
    WaveFormat format;
    const std::uint64_t fileSize = source.remaining();
    std::array<std::uint8_t, 12> riff{};
    const std::size_t riffBytes = source.read(riff);
    if (riffBytes == 0) {
        format.problem = "the file is empty";
        return format;
    }
    if (riffBytes < riff.size() || !std::equal(riff.begin(), riff.begin() + 4, "RIFF") ||
        !std::equal(riff.begin() + 8, riff.end(), "WAVE")) {
        const bool riffForm = riffBytes >= 4 && std::equal(riff.begin(), riff.begin() + 4, "RIFF");
        format.problem = riffForm && riffBytes == riff.size()
                             ? "a RIFF file of type " + quoted(std::span(riff).subspan(8)) + ", not WAVE"
                             : "not a RIFF WAVE file: it starts with " +
                                   quoted(std::span(riff).first(std::min<std::size_t>(riffBytes, 4)));
        return format;
    }
    std::uint64_t position = riff.size();
    bool haveFmt = false;
    for (;;) {
        std::array<std::uint8_t, kChunkHeaderSize> chunk{};
        if (source.read(chunk) < chunk.size()) {
            format.problem = haveFmt ? "no data chunk" : "no fmt chunk";
            return format;
        }
        position += chunk.size();
        const std::uint32_t size = readLE32(chunk, 4);
        const auto named = [&](const char* id) { return std::equal(chunk.begin(), chunk.begin() + 4, id); };
        if (named("data")) {
            if (!haveFmt) {
                format.problem = "no fmt chunk before the data";
                return format;
            }
            format.dataSize = size;
            format.dataOffset = static_cast<std::size_t>(position);
            format.dataAvailable = std::min<std::uint64_t>(size, fileSize - std::min(fileSize, position));
            format.problem = formatProblem(format);
            return format;
        }
        const std::uint64_t whole = size + (size & 1); // chunks are padded to an even length
        std::uint64_t rest = whole;
        if (named("fmt ") && !haveFmt) {
            std::array<std::uint8_t, kExtensibleFmtSize> fields{};
            const std::size_t wanted = std::min<std::size_t>(size, fields.size());
            if (size < kFmtFieldsSize || source.read(std::span(fields).first(wanted)) < wanted) {
                format.problem = "the fmt chunk is too short";
                return format;
            }
            rest -= wanted;
            format.formatTag = readLE16(fields, 0);
            format.channels = readLE16(fields, 2);
            format.sampleRate = readLE32(fields, 4);
            format.byteRate = readLE32(fields, 8);
            format.blockAlign = readLE16(fields, 12);
            format.bitsPerSample = readLE16(fields, 14);
            // The extensible form names its encoding in the first two bytes of its sub-format.
            format.encoding = format.formatTag == kWaveExtensible && size >= kExtensibleFmtSize ? readLE16(fields, 24)
                                                                                                : format.formatTag;
            haveFmt = true;
        } else if (named("fact")) {
            format.hasFact = true;
        }
        source.skip(rest);
        position += whole;
    }
}

WaveFormat readWaveFormat(std::span<const std::uint8_t> wave)
{
    SpanSource source(wave);
    return readWaveFormat(source);
}

VoxConversion convertWave(ByteSource& source)
{
    VoxConversion result;
    result.format = readWaveFormat(source);
    WaveFormat& format = result.format;
    if (!format.convertible())
        return result;
    const double ratio = format.sampleRate * 0.000125;
    const double wanted = outputCountFor(format, ratio);
    if (wanted > static_cast<double>(longestPhrase())) {
        format.problem = "too long: " + seconds(wanted / kPhraseRate) +
                         " at 8000 Hz, and the unit's voice store holds " +
                         seconds(static_cast<double>(longestPhrase()) / kPhraseRate);
        return result;
    }
    const auto count = static_cast<std::int32_t>(wanted);
    result.outputCount = count;
    std::vector<std::uint8_t>& out = result.vox;
    out.reserve(static_cast<std::size_t>(phraseFileBytes(static_cast<std::uint64_t>(count))));
    const std::int32_t codes = std::max(count - 1, 0);
    out.resize(static_cast<std::size_t>(codes / 2)); // an unpaired last code is not written
    // A thread is worth starting for a few seconds of phrase, not for a word.
    BatchEncoder encoder(out.data(), static_cast<std::size_t>(codes) >= 4 * BatchEncoder::kBatch);
    if (format.plainMono())
        pickSamples<std::int16_t>(source, format, codes, encoder);
    else
        pickSamples<std::int32_t>(source, format, codes, encoder);
    encoder.finish();
    result.clippedCodes = encoder.clipped;
    result.peak12 = encoder.peak;

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
    if (!format.convertible() || format.dataOffset > wave.size())
        return {};
    const std::span<const std::uint8_t> data =
        wave.subspan(format.dataOffset, std::min<std::size_t>(format.dataSize, wave.size() - format.dataOffset));
    const std::size_t frameBytes = format.frameBytes();
    const SampleScale scale = scaleOf(format);
    std::vector<std::int16_t> samples;
    samples.reserve(data.size() / frameBytes);
    for (std::size_t at = 0; at + frameBytes <= data.size(); at += frameBytes) {
        const int sample = frameSample(format, data.data() + at);
        samples.push_back(static_cast<std::int16_t>(scale == SampleScale::Unsigned8  ? (sample - 128) * 256
                                                    : scale == SampleScale::Signed16 ? sample
                                                                                     : sample / 256));
    }
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
