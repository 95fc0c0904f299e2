// A message file or an editor configuration from a disk, a unit or anywhere:
// a damaged one is refused with a reason, and one that is read gives phrases
// inside the file that rebuild into the same file and texts that write back
// as they were read.

#include "fuzz/fuzz_target.h"

#include "core/voice/message_file.h"
#include "core/voice/voice_configuration.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span<const std::uint8_t> bytes{data, size};

    const rk4::MessageHeader header = rk4::checkMessageHeader(bytes, size);
    if (header.ok()) {
        std::array<std::optional<std::vector<std::uint8_t>>, rk4::kSlotCount> phrases;
        for (int slot = 0; slot < rk4::kSlotCount; ++slot) {
            const auto phrase = rk4::messagePhrase(bytes, header.lengths, slot);
            FUZZ_REQUIRE(phrase.size() == header.lengths[slot] * rk4::kMessageBlock);
            if (!phrase.empty())
                phrases[slot] = std::vector<std::uint8_t>(phrase.begin(), phrase.end());
        }
        const std::vector<std::uint8_t> rebuilt = rk4::buildMessageFile(phrases);
        const rk4::MessageHeader again = rk4::checkMessageHeader(rebuilt, rebuilt.size());
        FUZZ_REQUIRE(again.ok() && again.lengths == header.lengths);
        for (int slot = 0; slot < rk4::kSlotCount; ++slot) {
            const auto before = rk4::messagePhrase(bytes, header.lengths, slot);
            const auto after = rk4::messagePhrase(rebuilt, again.lengths, slot);
            FUZZ_REQUIRE(std::equal(before.begin(), before.end(), after.begin(), after.end()));
        }
    } else {
        FUZZ_REQUIRE(!header.problem.empty());
    }

    std::string problem;
    const auto configuration = rk4::parseVoiceConfiguration(bytes, problem);
    if (configuration) {
        std::string again;
        const auto reread = rk4::parseVoiceConfiguration(rk4::voiceConfigurationBytes(*configuration), again);
        FUZZ_REQUIRE(
            reread && reread->entries == configuration->entries && reread->messagePath == configuration->messagePath &&
            reread->namesInUse == configuration->namesInUse && reread->messageLoaded == configuration->messageLoaded);
    } else {
        FUZZ_REQUIRE(!problem.empty());
    }
    return 0;
}
