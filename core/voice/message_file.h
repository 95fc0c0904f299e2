#pragma once
// The voice message file (.msg): a 78-byte header of 39 big-endian phrase
// lengths in 4096-byte blocks, the rest of the first block unused, then the
// phrases in the order points 1..30, groups 1..8, Site ID.
//
// Slots are numbered as the technician knows them: 0 is the Site ID, 1..30
// are points 1..30 and 31..38 are groups 1..8.

#include "core/voice/speech.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace rk4 {

inline constexpr int kSlotCount = 39;
inline constexpr int kPointSlots = 30;
inline constexpr int kGroupSlots = 8;
inline constexpr int kSiteSlot = 0;
inline constexpr int kFirstGroupSlot = 1 + kPointSlots;
inline constexpr std::size_t kMessageHeaderBytes = 78;
inline constexpr std::size_t kMessageBlock = 4096;
inline constexpr char kDefaultMessageFile[] = "Rk4.msg";
inline constexpr char kMessageTemporaryFile[] = "msg.tmp";

// What a slot belongs to, with the kind numbers the phrase positions use.
enum class SlotKind { Site = 0, Point = 1, Group = 2 };

struct SlotRef {
    SlotKind kind = SlotKind::Site;
    int index = 0; // 1-based point or group number; 0 for the Site ID
};

SlotRef slotRef(int slot);
int slotNumber(SlotKind kind, int index);
// "Site ID", "Point 3", "Group 2".
std::string slotTitle(int slot);
// "site", "point3", "group2": how the command line names a slot.
std::string slotKey(int slot);
// A slot named by number (0..38) or by key, in any case; nothing otherwise.
std::optional<int> parseSlot(const std::string& text);

// The 39 lengths in blocks, indexed by slot number.
using PhraseLengths = std::array<std::uint16_t, kSlotCount>;

// Groups 7 and 8 are never used by the unit: their lengths read as 0.
PhraseLengths parseMessageHeader(std::span<const std::uint8_t> header78);
std::array<std::uint8_t, kMessageHeaderBytes> messageHeaderBytes(const PhraseLengths& lengths);

// The byte position of a slot's phrase: 4096 plus every phrase before it in
// file order.
std::uint64_t FindInputFileLocation(const PhraseLengths& lengths, SlotKind kind, int index);
std::uint64_t phraseOffset(const PhraseLengths& lengths, int slot);
std::uint64_t totalBlocks(const PhraseLengths& lengths);

// How long a file must be to hold every phrase its header gives.
std::uint64_t messageFileNeeds(const PhraseLengths& lengths);

// A message file's header checked against its size. `problem` says what is
// wrong with a damaged file ("shorter than its header", "the header gives
// phrases of 40 blocks, the file holds 3"); the lengths are only good without one.
struct MessageHeader {
    PhraseLengths lengths{};
    std::string problem;
    bool ok() const { return problem.empty(); }
};

MessageHeader checkMessageHeader(std::span<const std::uint8_t> start, std::uint64_t fileSize);
// Reads only the header and the file's size: a damaged file costs nothing.
MessageHeader readMessageHeader(const std::filesystem::path& path, std::string& cause);

// One phrase of a message file held in memory; empty when out of range.
std::span<const std::uint8_t> messagePhrase(std::span<const std::uint8_t> file, const PhraseLengths& lengths, int slot);
// One phrase read from a message file on disk, after its header was checked.
std::optional<std::vector<std::uint8_t>> readMessagePhrase(const std::filesystem::path& path,
                                                           const PhraseLengths& lengths, int slot, std::string& cause);

// A whole message file from the phrases of the slots that have one. Each
// phrase contributes its whole blocks; a tail shorter than a block is dropped.
std::vector<std::uint8_t>
buildMessageFile(const std::array<std::optional<std::vector<std::uint8_t>>, kSlotCount>& phrases);

// A phrase (.vox) file read for a slot: its bytes, or why not. A file longer
// than the unit's voice store is refused unread.
struct PhraseLoad {
    std::vector<std::uint8_t> bytes;
    std::string problem;
    bool ok() const { return problem.empty(); }
};
PhraseLoad readPhraseFile(const std::filesystem::path& path);

// Where a slot's phrase comes from, as the command line writes it after
// "SLOT=": a phrase file by default, or a source named by a prefix
// ("PREFIX:rest"). Other ways of making a phrase plug in with add().
class PhraseSources {
  public:
    using Loader = std::function<PhraseLoad(const std::string& rest)>;

    PhraseSources();
    // `prefix` without its colon, e.g. "text".
    void add(const std::string& prefix, Loader loader);
    PhraseLoad load(const std::string& source) const;

  private:
    std::map<std::string, Loader> loaders;
};

// The sources every part of the program knows: phrase files, plus each way
// of making a phrase that registers itself here. "text:WORDS" speaks WORDS
// in the voice `speech` gives.
PhraseSources standardPhraseSources(const SpeechSettings& speech = {});

struct SlotAssignment {
    int slot = 0;
    std::string source;
};

// "point3=zone.vox" and the like; nothing (and `problem`) for a malformed one.
std::optional<SlotAssignment> parseSlotAssignment(const std::string& text, std::string& problem);

} // namespace rk4
