#include "core/voice/spoken_slots.h"

#include "core/common/text.h"

namespace rk4 {

std::string proposedWords(const Database& db, int slot) { return trimBlanks(databaseName(db, slot)); }

std::vector<int> unspokenNamedSlots(const VoiceEditor& editor, const Database& db)
{
    std::vector<int> slots;
    for (int slot = 0; slot < kSlotCount; ++slot)
        if (!editor.slotTable[slot].hasPhrase && !proposedWords(db, slot).empty())
            slots.push_back(slot);
    return slots;
}

} // namespace rk4
