#include "core/database/compare.h"
#include "core/database/defaults.h"

#include <gtest/gtest.h>

using namespace rk4;

namespace {

Database defaults()
{
    Database db;
    DefaultValues(db);
    return db;
}

// The record a byte of the image belongs to, named as the comparison names it.
std::string recordAt(std::size_t offset)
{
    if (offset < kGroupOffset)
        return std::string("directory ") + static_cast<char>('A' + offset / DirectoryRecord::size) + " ";
    if (offset < kPointOffset)
        return "group " + std::to_string((offset - kGroupOffset) / GroupRecord::size + 1) + " ";
    if (offset < kGeneralOffset)
        return "point " + std::to_string((offset - kPointOffset) / PointRecord::size + 1) + " ";
    if (offset < kHardwareOffset)
        return "general ";
    const std::size_t entry = (offset - kHardwareOffset) / HardwarePort::size;
    return entry < 8 ? "hardware input " + std::to_string(entry + 1) + " "
                     : "hardware output " + std::to_string(entry - 7) + " ";
}

} // namespace

TEST(CompareDatabases, NamesTheOneFieldBehindEveryByteOfTheImage)
{
    const Database base = defaults();
    const ImageBytes bytes = base.toBytes();
    const std::size_t stampStart = kGeneralOffset + 48, stampEnd = kGeneralOffset + 58;
    for (std::size_t offset = 0; offset < dbasesize; ++offset) {
        ImageBytes changed = bytes;
        changed[offset] ^= 0x5A;
        const auto differences = compareDatabases(base, Database::fromImage(changed));
        if (offset >= stampStart && offset < stampEnd) {
            EXPECT_TRUE(differences.empty()) << "the transfer stamp is ignored, byte " << offset;
            continue;
        }
        ASSERT_EQ(differences.size(), 1u) << "byte " << offset;
        EXPECT_EQ(differences[0].field.rfind(recordAt(offset), 0), 0u)
            << "byte " << offset << " named " << differences[0].field;
    }
}

TEST(CompareDatabases, ComparesTheTransferStampOnlyWhenAsked)
{
    const Database file = defaults();
    Database unit = file;
    unit.gen.transferStamp.fill('5');
    EXPECT_TRUE(compareDatabases(file, unit).empty());
    const auto differences = compareDatabases(file, unit, TransferStamp::Compare);
    ASSERT_EQ(differences.size(), 1u);
    EXPECT_EQ(differences[0].field, "general transferStamp");
}
