#include "core/link/packing.h"

#include "core/link/wire_image.h"
#include "core/points/spoken_units.h"

#include <algorithm>

namespace rk4::link {

int packDatabase(Database& db, bool secondPass, std::span<std::uint8_t> staging)
{
    if (secondPass) {
        for (auto& point : db.alm)
            if (needsNewerUnit(point.unitSelector))
                point.unitSelector[static_cast<int>(UnitSelector::Unit)] = 0;
    }
    std::fill(db.gen.transferStamp.begin(), db.gen.transferStamp.begin() + 9,
              static_cast<std::uint8_t>(kTransferStampDigit));
    db.gen.transferStamp[9] = 0;

    // Only the copy is swapped: the image in memory keeps host order.
    ImageBytes image = db.toBytes();
    swapWireFields(image);
    std::fill(staging.begin(), staging.begin() + kDatabasePackets * kPacketSize, 0);
    std::copy(image.begin(), image.end(), staging.begin());
    return kDatabasePackets;
}

Database unpackDatabase(std::span<const std::uint8_t> staging)
{
    ImageBytes image;
    std::copy_n(staging.begin(), dbasesize, image.begin());
    swapWireFields(image);
    return Database::fromImage(image);
}

} // namespace rk4::link
