#pragma once
// Keeping the image in a shape the unit accepts: repairs after a load, the two
// empty templates, name padding, byte swapping, group masks and the seconds text
// every time field shows.

#include "core/database/database.h"

#include <array>
#include <cstdint>
#include <string>

namespace rk4 {

// The maker's service line: dial, wait five seconds, dial the second number.
// The two numbers are stored in DTMF digit code ('0' is ':').
inline constexpr char kServiceNumber1[] = "18005550142";
inline constexpr char kServiceNumber2[] = "18005550143";
std::array<std::uint8_t, 32> factoryServiceLine();

void DefaultValues(Database& db);
void ClearDatabase(Database& db, bool keepDirectories);
void PadTag(std::array<char, 17>& buffer);
void PadAllTags(Database& db);

std::uint16_t FixInt(std::uint16_t value);
std::uint8_t MakeMask(int bit);
std::uint8_t MakeNotMask(int bit);

void ExtractSeconds(std::string& out, std::uint16_t count);
const std::string& ExtractShowSeconds(std::string& out, std::uint16_t count);
std::string secondsText(std::uint16_t count);

} // namespace rk4
