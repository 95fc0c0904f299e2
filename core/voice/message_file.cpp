#include "core/voice/message_file.h"

#include "core/common/bytes.h"
#include "core/common/safe_file.h"
#include "core/voice/wave.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <fstream>

namespace rk4 {

namespace fs = std::filesystem;

namespace {

constexpr int kFirstUnusedGroup = 7;

// Phrases lie in the file in the order points, groups, Site ID.
int fileIndex(int slot) { return slot == kSiteSlot ? kSlotCount - 1 : slot - 1; }
int slotAtFileIndex(int index) { return index == kSlotCount - 1 ? kSiteSlot : index + 1; }

std::optional<int> parseNumber(const std::string& text, int low, int high)
{
    if (text.empty() || text.size() > 3 || !std::all_of(text.begin(), text.end(), ::isdigit))
        return std::nullopt;
    const int value = std::stoi(text);
    if (value < low || value > high)
        return std::nullopt;
    return value;
}

// Why a path cannot be opened as a file to read.
std::string openCause(const fs::path& path)
{
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (error)
        return error.message();
    if (status.type() == fs::file_type::directory)
        return "not a regular file (a folder)";
    if (status.type() != fs::file_type::regular)
        return "not a regular file";
    return std::strerror(errno ? errno : EIO);
}

} // namespace

SlotRef slotRef(int slot)
{
    if (slot == kSiteSlot)
        return {SlotKind::Site, 0};
    if (slot < kFirstGroupSlot)
        return {SlotKind::Point, slot};
    return {SlotKind::Group, slot - kPointSlots};
}

int slotNumber(SlotKind kind, int index)
{
    switch (kind) {
    case SlotKind::Point: return index;
    case SlotKind::Group: return kPointSlots + index;
    case SlotKind::Site: break;
    }
    return kSiteSlot;
}

std::string slotTitle(int slot)
{
    const SlotRef ref = slotRef(slot);
    switch (ref.kind) {
    case SlotKind::Point: return "Point " + std::to_string(ref.index);
    case SlotKind::Group: return "Group " + std::to_string(ref.index);
    case SlotKind::Site: break;
    }
    return "Site ID";
}

std::string slotKey(int slot)
{
    const SlotRef ref = slotRef(slot);
    switch (ref.kind) {
    case SlotKind::Point: return "point" + std::to_string(ref.index);
    case SlotKind::Group: return "group" + std::to_string(ref.index);
    case SlotKind::Site: break;
    }
    return "site";
}

std::optional<int> parseSlot(const std::string& text)
{
    std::string lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
    if (lower == "site")
        return kSiteSlot;
    if (lower.rfind("point", 0) == 0) {
        const auto index = parseNumber(lower.substr(5), 1, kPointSlots);
        return index ? std::optional<int>(slotNumber(SlotKind::Point, *index)) : std::nullopt;
    }
    if (lower.rfind("group", 0) == 0) {
        const auto index = parseNumber(lower.substr(5), 1, kGroupSlots);
        return index ? std::optional<int>(slotNumber(SlotKind::Group, *index)) : std::nullopt;
    }
    return parseNumber(lower, 0, kSlotCount - 1);
}

PhraseLengths parseMessageHeader(std::span<const std::uint8_t> header78)
{
    PhraseLengths lengths{};
    for (int slot = 0; slot < kSlotCount; ++slot)
        lengths[slot] = readBE16(header78, static_cast<std::size_t>(fileIndex(slot)) * 2);
    for (int group = kFirstUnusedGroup; group <= kGroupSlots; ++group)
        lengths[slotNumber(SlotKind::Group, group)] = 0;
    return lengths;
}

std::array<std::uint8_t, kMessageHeaderBytes> messageHeaderBytes(const PhraseLengths& lengths)
{
    std::array<std::uint8_t, kMessageHeaderBytes> header{};
    for (int slot = 0; slot < kSlotCount; ++slot)
        writeBE16(header, static_cast<std::size_t>(fileIndex(slot)) * 2, lengths[slot]);
    return header;
}

std::uint64_t phraseOffset(const PhraseLengths& lengths, int slot)
{
    std::uint64_t offset = kMessageBlock;
    for (int index = 0; index < fileIndex(slot); ++index)
        offset += std::uint64_t{lengths[slotAtFileIndex(index)]} * kMessageBlock;
    return offset;
}

std::uint64_t FindInputFileLocation(const PhraseLengths& lengths, SlotKind kind, int index)
{
    return phraseOffset(lengths, slotNumber(kind, index));
}

std::uint64_t totalBlocks(const PhraseLengths& lengths)
{
    std::uint64_t total = 0;
    for (const std::uint16_t length : lengths)
        total += length;
    return total;
}

std::uint64_t messageFileNeeds(const PhraseLengths& lengths)
{
    const std::uint64_t total = totalBlocks(lengths);
    return total == 0 ? kMessageHeaderBytes : kMessageBlock + total * kMessageBlock;
}

MessageHeader checkMessageHeader(std::span<const std::uint8_t> start, std::uint64_t fileSize)
{
    MessageHeader header;
    if (start.size() < kMessageHeaderBytes || fileSize < kMessageHeaderBytes) {
        header.problem = "shorter than its " + std::to_string(kMessageHeaderBytes) + "-byte header (" +
                         std::to_string(fileSize) + " bytes)";
        return header;
    }
    header.lengths = parseMessageHeader(start.first(kMessageHeaderBytes));
    const std::uint64_t needs = messageFileNeeds(header.lengths);
    if (needs > fileSize) {
        const std::uint64_t holds = fileSize > kMessageBlock ? (fileSize - kMessageBlock) / kMessageBlock : 0;
        header.problem = "damaged: its header gives phrases of " + std::to_string(totalBlocks(header.lengths)) +
                         " blocks, the file holds " + std::to_string(holds);
        header.lengths = {};
    }
    return header;
}

MessageHeader readMessageHeader(const fs::path& path, std::string& cause)
{
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
        cause = openCause(path);
        return {{}, cause};
    }
    const std::uint64_t size = fs::file_size(path, error);
    std::ifstream in(path, std::ios::binary);
    if (error || !in) {
        cause = error ? error.message() : openCause(path);
        return {{}, cause};
    }
    std::array<std::uint8_t, kMessageHeaderBytes> start{};
    in.read(reinterpret_cast<char*>(start.data()), start.size());
    const auto got = static_cast<std::size_t>(in.gcount());
    MessageHeader header = checkMessageHeader(std::span<const std::uint8_t>(start).first(got), size);
    cause = header.problem;
    return header;
}

std::span<const std::uint8_t> messagePhrase(std::span<const std::uint8_t> file, const PhraseLengths& lengths, int slot)
{
    const std::uint64_t offset = phraseOffset(lengths, slot);
    const std::uint64_t length = std::uint64_t{lengths[slot]} * kMessageBlock;
    if (offset > file.size() || length > file.size() - offset)
        return {};
    return file.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(length));
}

std::optional<std::vector<std::uint8_t>> readMessagePhrase(const fs::path& path, const PhraseLengths& lengths, int slot,
                                                           std::string& cause)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        cause = openCause(path);
        return std::nullopt;
    }
    std::vector<std::uint8_t> phrase(std::size_t{lengths[slot]} * kMessageBlock);
    in.seekg(static_cast<std::streamoff>(phraseOffset(lengths, slot)));
    in.read(reinterpret_cast<char*>(phrase.data()), static_cast<std::streamsize>(phrase.size()));
    if (static_cast<std::size_t>(in.gcount()) != phrase.size()) {
        cause = "the file ends inside the phrase of " + slotTitle(slot);
        return std::nullopt;
    }
    return phrase;
}

std::vector<std::uint8_t>
buildMessageFile(const std::array<std::optional<std::vector<std::uint8_t>>, kSlotCount>& phrases)
{
    PhraseLengths lengths{};
    for (int slot = 0; slot < kSlotCount; ++slot)
        if (phrases[slot])
            lengths[slot] =
                static_cast<std::uint16_t>(std::min<std::size_t>(phrases[slot]->size() / kMessageBlock, 0xFFFF));
    const auto header = messageHeaderBytes(lengths);
    std::vector<std::uint8_t> file(kMessageBlock, 0);
    std::copy(header.begin(), header.end(), file.begin());
    for (int index = 0; index < kSlotCount; ++index) {
        const int slot = slotAtFileIndex(index);
        if (phrases[slot])
            file.insert(file.end(), phrases[slot]->begin(),
                        phrases[slot]->begin() + static_cast<std::ptrdiff_t>(lengths[slot] * kMessageBlock));
    }
    return file;
}

PhraseLoad readPhraseFile(const fs::path& path)
{
    FileRead read = readFileBytes(path, kVoiceStoreBytes);
    if (read.error == EFBIG)
        return {{},
                path.string() + ": longer than the unit's voice store (" + std::to_string(kVoiceStoreBytes) +
                    " bytes)"};
    if (!read)
        return {{}, path.string() + ": " + read.cause()};
    return {std::move(read.bytes), {}};
}

PhraseSources::PhraseSources() = default;

void PhraseSources::add(const std::string& prefix, Loader loader) { loaders[prefix] = std::move(loader); }

PhraseLoad PhraseSources::load(const std::string& source) const
{
    // Only a prefix somebody added is one: any other colon belongs to a file name.
    if (const auto colon = source.find(':'); colon != std::string::npos)
        if (const auto found = loaders.find(source.substr(0, colon)); found != loaders.end())
            return found->second(source.substr(colon + 1));
    return readPhraseFile(source);
}

PhraseSources standardPhraseSources(const SpeechSettings& speech)
{
    PhraseSources sources;
    sources.add("text", [speech](const std::string& words) { return spokenPhraseLoad(words, speech); });
    return sources;
}

std::optional<SlotAssignment> parseSlotAssignment(const std::string& text, std::string& problem)
{
    const auto equals = text.find('=');
    if (equals == std::string::npos || equals + 1 == text.size()) {
        problem = "\"" + text + "\" is not SLOT=PHRASE";
        return std::nullopt;
    }
    const auto slot = parseSlot(text.substr(0, equals));
    if (!slot) {
        problem =
            "\"" + text.substr(0, equals) + "\" is not a slot: give 0..38, site, point1..point30 or group1..group8";
        return std::nullopt;
    }
    return SlotAssignment{*slot, text.substr(equals + 1)};
}

} // namespace rk4
