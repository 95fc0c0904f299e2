#pragma once
// The unit's DTMF digit code. Every code and every dialled number in the image
// is stored as '0' + the receiver's tone code: 1..9 for the digits 1..9, 10 for
// '0', 11 for '*', 12 for '#', 13..15 for A..C and 0 for D, so stored bytes run
// from '0' to '?'.

#include "core/database/database.h"

#include <string>
#include <string_view>

namespace rk4 {

// Shown character to stored byte. Lower-case a..d are taken as A..D; every
// other character ('1'..'9', the '!' delay, anything else) is kept.
char ASCII2DTMF(char shown);
void ASCII2DTMF(std::string& text);

// Stored byte to shown character. Anything outside '0'..'?' shows as '*', so
// a stored '!' delay reads back as a star; the printout and code fields have
// always shown it that way.
char DTMF2ASCII(char stored);
void DTMF2ASCII(std::string& text);

// Codes hold at most 7 digits in their 8-byte fields.
inline constexpr std::size_t kMaxCodeDigits = 7;

// The shown text of a stored code field: its bytes up to the first NUL (all 8
// when a field from outside has none), converted with DTMF2ASCII.
std::string dtmfCodeText(const DtmfCode& field);

// Stores a shown code: at most 7 characters converted with ASCII2DTMF and a
// NUL. Bytes after the NUL are left as they were, so storing the text a field
// already shows changes no byte of it.
void storeDtmfCode(std::string_view text, DtmfCode& field);

} // namespace rk4
