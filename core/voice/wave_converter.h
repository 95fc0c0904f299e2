#pragma once
// The wave conversion window's working state and commands: choosing the wave
// file and the phrase file, and converting one into the other.

#include "core/common/prompter.h"
#include "core/voice/wave.h"

#include <functional>
#include <string>

namespace rk4 {

inline constexpr char kNoFileSelected[] = "no file selected";
inline constexpr char kConverting[] = "Converting";
inline constexpr char kConversionComplete[] = "Conversion Complete";
inline constexpr char kCannotOpenWaveFile[] = " CANNOT OPEN WAVE FILE ";
inline constexpr char kCannotOpenOutputFile[] = " CANNOT OPEN OUTPUT FILE ";
inline constexpr char kWaveFilter[] = "Wave files (*.wav)";
inline constexpr char kVoxFilter[] = "ADPCM files (*.vox)";

// The source's file name beside the current destination, with everything
// after its first '.' replaced by "vox". Before a destination is chosen the
// phrase goes beside its wave file.
std::string GetDefaultDestination(const std::string& currentDestination, const std::string& source);

// "22050 Hz, 16-bit, mono", with a note where the samples are mixed down or
// rescaled; for a file that cannot be converted, why.
std::string describeFormat(const WaveFormat& format);

// What the technician is told after converting a file whose data chunk is
// shorter than its header says.
std::string truncationWarning(const WaveFormat& format);

// Why the last CmConvert failed: the wave file, the phrase file, or the phrase
// file naming the wave file itself.
enum class ConvertFailure { None, Source, Destination, SameFile };

class WaveConverter {
  public:
    std::string source;      // empty until chosen
    std::string destination; // empty until chosen
    std::string status;
    std::int32_t outputCount = 0;
    ConvertFailure failure = ConvertFailure::None;

    Waveform sourceWave;       // what the chosen wave file holds, read when it is chosen
    std::string sourceFormat;  // describeFormat of it, empty when unreadable
    Waveform phraseWave;       // the last phrase written, decoded, when `keepWaveforms`
    bool keepWaveforms = true; // a window draws them; the command line only reports
    std::size_t clippedCodes = 0;
    int peakPercent = 0; // of the phrase's full scale

    // Called whenever `status` changes, so a window can show "Converting"
    // before the work starts.
    std::function<void()> statusChanged;

    void SetupWindow();
    std::string sourceText() const { return source.empty() ? kNoFileSelected : source; }
    std::string destinationText() const { return destination.empty() ? kNoFileSelected : destination; }

    // The file dialogs; false when the user cancels.
    bool CmSelectSource(Prompter& prompter);
    bool CmSelectDestination(Prompter& prompter);
    void setSource(const std::string& path); // also proposes the destination
    void GetDefaultDestination();

    // Converts source into destination; false after a " CANNOT OPEN ... "
    // message. Never writes over the wave file itself.
    bool CmConvert(Prompter& prompter);

  private:
    void setStatus(std::string text);
};

} // namespace rk4
