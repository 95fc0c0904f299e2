#pragma once
// The telephony layer's error codes and their names. A failure of the line is
// shown to the technician as a blank and the name of its code
// (" LINEERR_ALLOCATED"); a code that is not one of them shows nothing.

#include <cstdint>
#include <string>

namespace rk4::modem {

// The codes the modem layer itself reports.
inline constexpr std::uint32_t LINEERR_ALLOCATED = 0x80000001;
inline constexpr std::uint32_t LINEERR_INUSE = 0x8000000F;
inline constexpr std::uint32_t LINEERR_INVALADDRESS = 0x80000010;
inline constexpr std::uint32_t LINEERR_INVALCALLHANDLE = 0x80000018;
inline constexpr std::uint32_t LINEERR_INVALCALLSTATE = 0x8000001C;
inline constexpr std::uint32_t LINEERR_INVALLINEHANDLE = 0x8000002B;
inline constexpr std::uint32_t LINEERR_NODEVICE = 0x80000042;
inline constexpr std::uint32_t LINEERR_OPERATIONFAILED = 0x80000048;
inline constexpr std::uint32_t LINEERR_OPERATIONUNAVAIL = 0x80000049;
inline constexpr std::uint32_t LINEERR_RESOURCEUNAVAIL = 0x8000004B;
inline constexpr std::uint32_t LINEERR_UNINITIALIZED = 0x80000050;
inline constexpr std::uint32_t LINEERR_REINIT = 0x80000052;
inline constexpr std::uint32_t LINEERR_NOMULTIPLEINSTANCE = 0x80000056;

// "LINEERR_ALLOCATED" .. "LINEERR_NOMULTIPLEINSTANCE", or "" for any other code.
const char* lineErrorName(std::uint32_t code);

// " " + the name of the code, or "" for a code without a name.
std::string ProcessTAPIError(std::uint32_t code);

} // namespace rk4::modem
