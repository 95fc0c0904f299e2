#include "core/database/defaults.h"
#include "core/database/file.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace rk4;
using rk4::test::TempDir;

namespace {

void writeBytes(const std::filesystem::path& path, std::size_t size, std::uint8_t fill = 0x11)
{
    std::ofstream out(path, std::ios::binary);
    const std::vector<char> bytes(size, static_cast<char>(fill));
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace

TEST(CheckFileExt, LooksForDotDatAnywhereInTheFirstHundredCharacters)
{
    EXPECT_TRUE(CheckFileExt("config.dat"));
    EXPECT_TRUE(CheckFileExt("config.Dat"));
    EXPECT_TRUE(CheckFileExt("config.datx"));
    EXPECT_TRUE(CheckFileExt("x.DATA"));
    EXPECT_TRUE(CheckFileExt("a.dat.bak"));
    EXPECT_FALSE(CheckFileExt("config.txt"));
    EXPECT_FALSE(CheckFileExt("config.da"));
    EXPECT_FALSE(CheckFileExt("configdat"));
    EXPECT_FALSE(CheckFileExt(std::string(100, 'x') + ".dat")) << "only the first 100 positions count";
    EXPECT_TRUE(CheckFileExt(std::string(99, 'x') + ".dat"));
}

TEST(ImageFile, WrongSizesAreRefusedAndLeaveTheImageAlone)
{
    TempDir dir;
    for (std::size_t size : {4703u, 4705u, 0u}) {
        writeBytes(dir / "bad.dat", size);
        Database db;
        db.gen.ringsToAnswer = 9;
        EXPECT_EQ(readImageFile(dir / "bad.dat", db), FileStatus::WrongSize) << size;
        EXPECT_EQ(db.gen.ringsToAnswer, 9);
    }
    Database db;
    EXPECT_EQ(readImageFile(dir / "missing.dat", db), FileStatus::CannotOpen);
    writeBytes(dir / "good.txt", 4704);
    EXPECT_EQ(readImageFile(dir / "good.txt", db), FileStatus::WrongExtension);
}

TEST(ImageFile, SaveAndReloadIsByteIdentical)
{
    TempDir dir;
    Database db;
    ClearDatabase(db, false);
    db.gen.name[0] = 'X';
    db.alm[3].type = kPointAnalog;
    db.alm[3].highSetpointDecimal = 0xFFF0;
    ASSERT_EQ(writeImageFile(dir / "site.dat", db), FileStatus::Ok);
    EXPECT_EQ(std::filesystem::file_size(dir / "site.dat"), 4704u);
    Database loaded;
    ASSERT_EQ(readImageFile(dir / "site.dat", loaded), FileStatus::Ok);
    EXPECT_EQ(loaded.toBytes(), db.toBytes());
    // No temporary file is left beside it.
    int files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(dir.path()))
        ++files;
    EXPECT_EQ(files, 1);
}

TEST(ImageFile, AWrongExtensionIsRefusedAndTheFileLeftAsItWas)
{
    TempDir dir;
    writeBytes(dir / "notes.txt", 50, 0x41);
    EXPECT_EQ(writeImageFile(dir / "notes.txt", Database{}), FileStatus::WrongExtension);
    EXPECT_EQ(std::filesystem::file_size(dir / "notes.txt"), 50u);
    EXPECT_EQ(writeImageFile(dir / "absent.txt", Database{}), FileStatus::WrongExtension);
    EXPECT_FALSE(std::filesystem::exists(dir / "absent.txt"));
}

TEST(ImageFile, AnUnwritableFolderGivesCannotOpenAndKeepsTheOldFile)
{
    TempDir dir;
    EXPECT_EQ(writeImageFile(dir / "no-such-folder" / "x.dat", Database{}), FileStatus::CannotOpen);
}
