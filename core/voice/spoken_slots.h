#pragma once
// The voice editor's spoken phrases: the text a slot proposes, and the slots
// "Speak all names" fills.

#include "core/database/database.h"
#include "core/voice/voice_editor.h"

#include <string>
#include <vector>

namespace rk4 {

// How a spoken phrase is shown beside its slot until the message file holds
// it; the same form the command line takes.
inline std::string spokenLabel(const std::string& words) { return "text:" + words; }

// The slot's record name with the blanks around it removed; empty when the
// record has none.
std::string proposedWords(const Database& db, int slot);

// The slots without a phrase whose record has a name, site first, as listed.
std::vector<int> unspokenNamedSlots(const VoiceEditor& editor, const Database& db);

} // namespace rk4
