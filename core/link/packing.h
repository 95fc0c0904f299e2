#pragma once
// The database as the unit receives it: the image in record order with the
// listed 16-bit fields high byte first, in a two-packet staging area.

#include "core/database/database.h"
#include "core/link/frame.h"

#include <cstdint>
#include <span>

namespace rk4::link {

inline constexpr int kDatabasePackets = static_cast<int>(dbasesize / kPacketSize + 1);

// The digit the unit expects in all nine places of the transfer stamp.
inline constexpr char kTransferStampDigit = '5';

// Prepares `db` for a write and fills the first two packets of `staging`. On
// the alternate handshake, the second spoken-unit selector values 19 and 20,
// which the older units do not know, are cleared in `db` itself; the transfer
// stamp is written into `db` before every write. Bytes after the image are
// zero. Returns the number of packets.
int packDatabase(Database& db, bool secondPass, std::span<std::uint8_t> staging);

// The image a read delivered, back in host order.
Database unpackDatabase(std::span<const std::uint8_t> staging);

} // namespace rk4::link
