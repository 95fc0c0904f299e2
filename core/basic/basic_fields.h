#pragma once
// What the Basic editors and the Basic wizard share: the checks of the code
// fields with their texts, the phone-number check, and the Basic directories,
// which hold one DIAL line per phone number.

#include "core/database/database.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rk4 {

inline constexpr int kBasicPhoneNumbers = 20;
inline constexpr std::size_t kPhoneNumberLength = 49; // what the number fields take

// Every number costs its length and 3 bytes; a number is refused when the fill
// plus its length would pass this budget.
inline constexpr int kSimpleDirectoryBudget = 253;
inline constexpr int kSimpleNumberOverhead = 3;

inline constexpr char kInvalidPhoneDigit[] =
    "Invalid digit found in the Phone Number, use 0-9, *, #, !, A, B, C and D only.";
inline constexpr char kThreeDigitNumber[] = "The phone number is only 3 digits.  This is not a valid number.";

// "Invalid digit found in the Access code, use 0-9, *, #, A, B, C and D only."
std::string invalidCodeText(std::string_view codeName);
// "Access code has too may digits - maximum is 7"
std::string tooManyDigitsText(std::string_view codeName);
// The refusal of a code field: a character CheckDTMF refuses first, then more
// than 7 characters. Nothing when the code is good (empty included).
std::optional<std::string> codeRefusal(std::string_view text, std::string_view codeName);
// Two shown codes that store the same digits ("a1" and "A1"); never two empty ones.
bool sameCode(std::string_view first, std::string_view second);

// Removes blanks and '-' from `number` in place; true when a character other
// than 0-9, '*', '#', the '!' delay and A..D (either case) remains.
bool CheckBasicPhone(std::string& number);

// The phone numbers of a directory: the number of every line that starts
// with DIAL, in line order.
std::vector<std::string> SimpleDirectoryNumbers(const DirectoryRecord& record);
// Writes `numbers` into `record` as one DIAL line each, in place.
void SaveSimpleDirectory(const std::vector<std::string>& numbers, DirectoryRecord& record);

// The bytes the numbers take as the Basic editors count them, and that as the
// "% filled" figure.
int simpleDirectoryFill(const std::vector<std::string>& numbers);
int simpleFillPercent(int fill);

} // namespace rk4
