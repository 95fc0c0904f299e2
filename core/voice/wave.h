#pragma once
// Wave files in, phrase files (.vox) out, and back again for listening and
// for the waveform views.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace rk4 {

inline constexpr std::uint32_t kPhraseRate = 8000;
// The link moves 4096-byte packets, so every phrase file is a whole number of them.
inline constexpr std::size_t kPhraseBlock = 4096;
inline constexpr std::uint8_t kSilenceByte = 0x80; // codes 0 and 8: the codec's idle pattern
inline constexpr std::uint8_t kFillByte = 0xFF;

// The largest voice store a unit has: no phrase may be longer.
inline constexpr std::size_t kVoiceStoreBytes = 524288;
// The sample rates a phrase can be made from. Below the range each input
// sample would be repeated into several; above it the converter would throw
// most of the recording away.
inline constexpr std::uint32_t kLowestWaveRate = 4000;
inline constexpr std::uint32_t kHighestWaveRate = 192000;

inline constexpr std::uint16_t kWavePcm = 1;
inline constexpr std::uint16_t kWaveFloat = 3;
inline constexpr std::uint16_t kWaveExtensible = 0xFFFE;

// What a wave file's header says, found by walking its RIFF chunks up to the
// data chunk. `problem` names what keeps the file from being converted.
struct WaveFormat {
    std::uint16_t formatTag = 0; // as written; `encoding` resolves the extensible form
    std::uint16_t encoding = 0;  // kWavePcm or kWaveFloat when convertible
    std::uint16_t channels = 0;
    std::uint32_t sampleRate = 0;
    std::uint32_t byteRate = 0;
    std::uint16_t blockAlign = 0;
    std::uint16_t bitsPerSample = 0;
    std::uint32_t dataSize = 0;      // as the header says
    std::uint64_t dataAvailable = 0; // what the file holds of it
    std::size_t dataOffset = 0;      // where the samples start
    bool hasFact = false;
    std::string problem;

    bool convertible() const { return problem.empty(); }
    bool eightBit() const { return bitsPerSample == 8; }
    std::size_t frameBytes() const { return static_cast<std::size_t>(bitsPerSample / 8) * channels; }
    bool truncated() const { return dataAvailable < dataSize; }
    // 8 and 16-bit mono PCM: the unit's own phrase recordings, converted as
    // they always were. Everything else is mixed or rescaled first.
    bool plainMono() const
    {
        return encoding == kWavePcm && channels == 1 && (bitsPerSample == 8 || bitsPerSample == 16);
    }
};

// Where the converter's bytes come from: read forward, skip forward.
class ByteSource {
  public:
    virtual ~ByteSource() = default;
    virtual std::size_t read(std::span<std::uint8_t> into) = 0; // fewer at the end
    virtual void skip(std::uint64_t count) = 0;
    virtual std::uint64_t remaining() const = 0;
};

// A wave file read as it is converted, so a long recording is never held whole.
class FileSource : public ByteSource {
  public:
    explicit FileSource(const std::filesystem::path& path);
    ~FileSource() override;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    bool isOpen() const { return descriptor >= 0; }
    std::size_t read(std::span<std::uint8_t> into) override;
    void skip(std::uint64_t count) override;
    std::uint64_t remaining() const override;
    // Why the path cannot be read as a wave file ("not a regular file (a
    // folder)", "No such file or directory"); empty when it is open.
    const std::string& cause() const { return why; }

  private:
    int descriptor = -1; // read directly: the converter asks for large runs at a time
    std::string why;
    std::uint64_t size = 0;
    std::uint64_t position = 0;
};

// Reads the header up to the first sample, leaving the source there.
WaveFormat readWaveFormat(ByteSource& source);
WaveFormat readWaveFormat(std::span<const std::uint8_t> wave);

struct VoxConversion {
    WaveFormat format;            // a conversion refused for format.problem produces nothing
    std::int32_t outputCount = 0; // count - 1 codes are produced
    std::vector<std::uint8_t> vox;
    // How the phrase will sound: codes that left the predictor at a limit, and its largest magnitude.
    std::size_t clippedCodes = 0;
    int peak12 = 0;
};

// Resamples to 8000 Hz, encodes, packs the codes low nibble first and pads
// the phrase to a whole number of 4096-byte blocks. Refuses (format.problem)
// files that are not RIFF WAVE, encodings other than PCM and float, and
// phrases longer than the voice store holds.
VoxConversion convertWave(ByteSource& source);
VoxConversion convertWave(std::span<const std::uint8_t> wave);

// The phrase without its padding: trailing 0xFF fill, then the 0x80 run
// before it. Trailing silence of the phrase itself goes with it, unheard.
std::span<const std::uint8_t> phraseData(std::span<const std::uint8_t> vox);

// Decodes a phrase (low nibble first) to 16-bit samples at 8000 Hz.
std::vector<std::int16_t> decodeVox(std::span<const std::uint8_t> vox);

// A 16-bit mono PCM wave file.
std::vector<std::uint8_t> waveFileBytes(std::span<const std::int16_t> samples, std::uint32_t sampleRate);

// The samples of a wave file's data chunk (as far as the file holds it),
// scaled to 16 bits, stereo mixed down; nothing for a file that is refused.
std::vector<std::int16_t> waveSamples(std::span<const std::uint8_t> wave, const WaveFormat& format);

// What a waveform view draws: the lowest and highest sample under each pixel column.
struct WaveColumn {
    std::int16_t low = 0;
    std::int16_t high = 0;
    bool clipped = false;
};

struct Waveform {
    std::vector<std::int16_t> samples;
    std::uint32_t sampleRate = 0;
    // A sample at or beyond these is at the end of its format's range.
    std::int16_t clipHigh = 32767;
    std::int16_t clipLow = -32768;

    double seconds() const { return sampleRate ? static_cast<double>(samples.size()) / sampleRate : 0.0; }
    std::vector<WaveColumn> columns(int count) const;
    int peakPercent() const;
    std::size_t clippedCount() const;
};

Waveform sourceWaveform(std::span<const std::uint8_t> wave);
// The phrase's codes up to its padding; `outputCount`, when the conversion
// that made it is at hand, gives its exact length, trailing silence included.
Waveform phraseWaveform(std::span<const std::uint8_t> vox, std::int32_t outputCount = -1);

} // namespace rk4
