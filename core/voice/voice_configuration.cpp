#include "core/voice/voice_configuration.h"

#include <algorithm>

namespace rk4 {

namespace {

// The text before the field's NUL; nothing when the field has none.
std::optional<std::string> fieldText(std::span<const std::uint8_t> field)
{
    const auto end = std::find(field.begin(), field.end(), 0);
    if (end == field.end())
        return std::nullopt;
    return std::string(field.begin(), end);
}

void putText(std::span<std::uint8_t> field, const std::string& text)
{
    const std::size_t length = std::min(text.size(), field.size() - 1);
    std::copy_n(text.begin(), length, field.begin());
}

} // namespace

std::optional<VoiceConfiguration> parseVoiceConfiguration(std::span<const std::uint8_t> bytes, std::string& problem)
{
    if (bytes.size() != kVoiceConfigurationBytes) {
        problem = "not a voice editor configuration: " + std::to_string(bytes.size()) + " bytes, not " +
                  std::to_string(kVoiceConfigurationBytes);
        return std::nullopt;
    }
    VoiceConfiguration configuration;
    for (int slot = 0; slot < kSlotCount; ++slot) {
        auto text = fieldText(bytes.subspan(slot * kSlotEntryBytes, kSlotEntryBytes));
        if (!text || (!text->empty() && text->front() != '+' && text->front() != '-')) {
            problem = "damaged: the entry of " + slotTitle(slot) + " is not a slot entry";
            return std::nullopt;
        }
        configuration.entries[slot] = std::move(*text);
    }
    const std::uint8_t names = bytes[kNamesFlagOffset];
    const std::uint8_t loaded = bytes[kLoadedFlagOffset];
    if (names > 1 || loaded > 1) {
        problem = "damaged: its flags are " + std::to_string(names) + " and " + std::to_string(loaded);
        return std::nullopt;
    }
    auto path = fieldText(bytes.subspan(kMessagePathOffset, kSlotEntryBytes));
    if (!path) {
        problem = "damaged: the message file's path has no end";
        return std::nullopt;
    }
    configuration.namesInUse = names == 1;
    configuration.messageLoaded = loaded == 1;
    configuration.messagePath = std::move(*path);
    return configuration;
}

std::vector<std::uint8_t> voiceConfigurationBytes(const VoiceConfiguration& configuration)
{
    std::vector<std::uint8_t> bytes(kVoiceConfigurationBytes, 0);
    const std::span<std::uint8_t> all(bytes);
    for (int slot = 0; slot < kSlotCount; ++slot)
        putText(all.subspan(slot * kSlotEntryBytes, kSlotEntryBytes), configuration.entries[slot]);
    bytes[kNamesFlagOffset] = configuration.namesInUse ? 1 : 0;
    bytes[kLoadedFlagOffset] = configuration.messageLoaded ? 1 : 0;
    putText(all.subspan(kMessagePathOffset, kSlotEntryBytes), configuration.messagePath);
    return bytes;
}

} // namespace rk4
