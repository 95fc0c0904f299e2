#include "core/voice/wave_converter.h"

#include "core/database/file.h"
#include "core/voice/adpcm.h"

#include <filesystem>
#include <fstream>

namespace rk4 {

std::string GetDefaultDestination(const std::string& currentDestination, const std::string& source)
{
    const std::filesystem::path sourcePath(source);
    std::string name = sourcePath.filename().string();
    const auto dot = name.find('.');
    name = dot == std::string::npos ? name + ".vox" : name.substr(0, dot + 1) + "vox";
    const std::filesystem::path directory =
        currentDestination.empty() ? sourcePath.parent_path() : std::filesystem::path(currentDestination).parent_path();
    return (directory / name).string();
}

std::string describeFormat(const WaveFormat& format)
{
    if (!format.convertible())
        return format.problem;
    std::string text = std::to_string(format.sampleRate) + " Hz, " + std::to_string(format.bitsPerSample) + "-bit" +
                       (format.encoding == kWaveFloat ? " float" : "") + (format.channels == 1 ? ", mono" : ", stereo");
    if (format.channels == 2)
        text += ", mixed down to mono";
    if (!format.plainMono() && format.channels == 1)
        text += ", converted to 12 bits";
    return text;
}

std::string truncationWarning(const WaveFormat& format)
{
    return "The wave file is cut short: its header gives " + std::to_string(format.dataSize) +
           " bytes of samples, the file holds " + std::to_string(format.dataAvailable) +
           ". What is there was converted.";
}

void WaveConverter::setStatus(std::string text)
{
    status = std::move(text);
    if (statusChanged)
        statusChanged();
}

void WaveConverter::SetupWindow()
{
    source.clear();
    destination.clear();
    outputCount = 0;
    sourceWave = {};
    sourceFormat.clear();
    phraseWave = {};
    setStatus("");
}

bool WaveConverter::CmSelectSource(Prompter& prompter)
{
    const auto chosen = prompter.chooseFile({FileMode::Open, "Select Wave File", kWaveFilter, "wav", source});
    if (!chosen)
        return false;
    setSource(*chosen);
    return true;
}

bool WaveConverter::CmSelectDestination(Prompter& prompter)
{
    const auto chosen = prompter.chooseFile({FileMode::Save, "Select ADPCM File", kVoxFilter, "vox", destination});
    if (!chosen)
        return false;
    destination = *chosen;
    return true;
}

void WaveConverter::setSource(const std::string& path)
{
    source = path;
    GetDefaultDestination();
    phraseWave = {};
    const auto bytes = readWholeFile(source);
    if (bytes) {
        sourceWave = sourceWaveform(*bytes);
        sourceFormat = describeFormat(readWaveFormat(*bytes));
    } else {
        sourceWave = {};
        sourceFormat.clear();
    }
}

void WaveConverter::GetDefaultDestination() { destination = rk4::GetDefaultDestination(destination, source); }

bool WaveConverter::CmConvert(Prompter& prompter)
{
    failure = ConvertFailure::None;
    FileSource wave(source);
    if (source.empty() || !wave.isOpen()) {
        failure = ConvertFailure::Source;
        prompter.fileError(kCannotOpenWaveFile, source.empty() ? std::string() : wave.cause());
        return false;
    }
    // Checked before converting; the phrase is written whole at the end, so a
    // failed conversion never leaves half a file behind.
    if (destination.empty()) {
        failure = ConvertFailure::Destination;
        prompter.fileError(kCannotOpenOutputFile);
        return false;
    }
    if (wouldReplace(destination, source)) {
        failure = ConvertFailure::SameFile;
        prompter.fileError(kCannotOpenOutputFile, destination + ": it is the wave file being converted");
        return false;
    }
    if (const SaveResult target = checkSaveTarget(destination); !target) {
        failure = ConvertFailure::Destination;
        prompter.fileError(kCannotOpenOutputFile, target.cause());
        return false;
    }
    setStatus(kConverting);
    const VoxConversion conversion = convertWave(wave);
    if (!conversion.format.convertible()) {
        failure = ConvertFailure::Source;
        setStatus("");
        prompter.fileError(kCannotOpenWaveFile, source + ": " + conversion.format.problem);
        return false;
    }
    outputCount = conversion.outputCount;
    if (const SaveResult saved = writeFileAtomically(destination, conversion.vox); !saved) {
        failure = ConvertFailure::Destination;
        setStatus("");
        prompter.fileError(kCannotOpenOutputFile, saved.cause());
        return false;
    }
    sourceFormat = describeFormat(conversion.format);
    clippedCodes = conversion.clippedCodes;
    peakPercent = (conversion.peak12 * 100 + kMaxSample12 / 2) / kMaxSample12;
    phraseWave = keepWaveforms ? phraseWaveform(conversion.vox, conversion.outputCount) : Waveform{};
    setStatus(kConversionComplete);
    if (conversion.format.truncated())
        prompter.tell("Warning", truncationWarning(conversion.format), Icon::Warning);
    return true;
}

} // namespace rk4
