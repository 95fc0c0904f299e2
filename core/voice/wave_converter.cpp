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
    std::string text = std::to_string(format.sampleRate) + " Hz, " +
                       (format.eightBit() ? std::string("8-bit") : std::to_string(format.bitsPerSample) + "-bit") +
                       (format.channels == 1 ? ", mono" : ", " + std::to_string(format.channels) + " channels");
    if (format.formatTag != 1)
        text += ", not plain PCM (format " + std::to_string(format.formatTag) + ")";
    if (format.bitsPerSample != 8 && format.bitsPerSample != 16)
        text += ", read as 16-bit";
    if (format.channels > 1)
        text += ", channels read as one";
    return text;
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
    FileSource wave(source);
    if (source.empty() || !wave.isOpen()) {
        prompter.fileError(kCannotOpenWaveFile);
        return false;
    }
    // Checked before converting; the phrase is written whole at the end, so a
    // failed conversion never leaves half a file behind.
    if (destination.empty()) {
        prompter.fileError(kCannotOpenOutputFile);
        return false;
    }
    if (const SaveResult target = checkSaveTarget(destination); !target) {
        prompter.fileError(kCannotOpenOutputFile, target.cause());
        return false;
    }
    setStatus(kConverting);
    const VoxConversion conversion = convertWave(wave);
    outputCount = conversion.outputCount;
    if (const SaveResult saved = writeFileAtomically(destination, conversion.vox); !saved) {
        setStatus("");
        prompter.fileError(kCannotOpenOutputFile, saved.cause());
        return false;
    }
    sourceFormat = describeFormat(conversion.format);
    clippedCodes = conversion.clippedCodes;
    peakPercent = (conversion.peak12 * 100 + kMaxSample12 / 2) / kMaxSample12;
    phraseWave = keepWaveforms ? phraseWaveform(conversion.vox, conversion.outputCount) : Waveform{};
    setStatus(kConversionComplete);
    return true;
}

} // namespace rk4
