#pragma once
// The voice editor's configuration file (.vcf): the slot table as 39 entries
// of 260 bytes (Site ID, points 1..30, groups 1..8), the names-in-use and
// message-file-loaded flags, and the path of the loaded message file.

#include "core/voice/message_file.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace rk4 {

inline constexpr std::size_t kSlotEntryBytes = 260;
inline constexpr std::size_t kNamesFlagOffset = 10140;
inline constexpr std::size_t kLoadedFlagOffset = 10141;
inline constexpr std::size_t kMessagePathOffset = 10142;
inline constexpr std::size_t kVoiceConfigurationBytes = 10402;
// An entry or the path keeps a NUL in its 260 bytes.
inline constexpr std::size_t kLongestEntryText = kSlotEntryBytes - 1;

struct VoiceConfiguration {
    // Each entry's text: "+" or "-", then what the editor keeps beside the mark.
    std::array<std::string, kSlotCount> entries;
    bool namesInUse = false;
    bool messageLoaded = false;
    std::string messagePath;
};

// Nothing, and `problem`, for a file of the wrong size or with an entry,
// flag or path no editor writes.
std::optional<VoiceConfiguration> parseVoiceConfiguration(std::span<const std::uint8_t> bytes, std::string& problem);
// Texts longer than their field are cut to fit; the editor refuses them first.
std::vector<std::uint8_t> voiceConfigurationBytes(const VoiceConfiguration& configuration);

} // namespace rk4
