#include "core/database/database.h"

#include "core/common/bytes.h"
#include "core/database/layout.h"

#include <algorithm>
#include <cstring>

namespace rk4 {

namespace {

// A layout lists every field of a record with its offset, in order. The same
// list drives reading and writing, so the two can never disagree.
struct Writer {
    std::span<std::uint8_t> out;
    void operator()(std::size_t offset, const char*, const std::uint8_t& value) { out[offset] = value; }
    void operator()(std::size_t offset, const char*, const std::uint16_t& value) { writeLE16(out, offset, value); }
    template <typename T, std::size_t N>
    void operator()(std::size_t offset, const char*, const std::array<T, N>& value)
    {
        static_assert(sizeof(T) == 1);
        std::memcpy(out.data() + offset, value.data(), N);
    }
};

struct Reader {
    std::span<const std::uint8_t> in;
    void operator()(std::size_t offset, const char*, std::uint8_t& value) { value = in[offset]; }
    void operator()(std::size_t offset, const char*, std::uint16_t& value) { value = readLE16(in, offset); }
    template <typename T, std::size_t N>
    void operator()(std::size_t offset, const char*, std::array<T, N>& value)
    {
        static_assert(sizeof(T) == 1);
        std::memcpy(value.data(), in.data() + offset, N);
    }
};

template <typename Record, std::size_t N>
void writeAt(const Record& record, std::span<std::uint8_t> out, std::size_t offset)
{
    layout(record, Writer{out.subspan(offset, N)});
}

template <typename Record, std::size_t N>
void readAt(Record& record, std::span<const std::uint8_t> in, std::size_t offset)
{
    layout(record, Reader{in.subspan(offset, N)});
}

} // namespace

void writeRecord(const GroupRecord& record, std::span<std::uint8_t, GroupRecord::size> out)
{
    layout(record, Writer{out});
}
void writeRecord(const PointRecord& record, std::span<std::uint8_t, PointRecord::size> out)
{
    layout(record, Writer{out});
}
void writeRecord(const GeneralRecord& record, std::span<std::uint8_t, GeneralRecord::size> out)
{
    layout(record, Writer{out});
}
void writeRecord(const HardwarePort& record, std::span<std::uint8_t, HardwarePort::size> out)
{
    layout(record, Writer{out});
}
void readRecord(GroupRecord& record, std::span<const std::uint8_t, GroupRecord::size> in)
{
    layout(record, Reader{in});
}
void readRecord(PointRecord& record, std::span<const std::uint8_t, PointRecord::size> in)
{
    layout(record, Reader{in});
}
void readRecord(GeneralRecord& record, std::span<const std::uint8_t, GeneralRecord::size> in)
{
    layout(record, Reader{in});
}
void readRecord(HardwarePort& record, std::span<const std::uint8_t, HardwarePort::size> in)
{
    layout(record, Reader{in});
}

ImageBytes Database::toBytes() const
{
    ImageBytes image{};
    std::span<std::uint8_t> out(image);
    for (int i = 0; i < kDirectoryCount; ++i)
        std::copy(dir[i].dirText.begin(), dir[i].dirText.end(), image.begin() + kDirOffset + i * DirectoryRecord::size);
    for (int i = 0; i < kGroupCount; ++i)
        writeAt<GroupRecord, GroupRecord::size>(group[i], out, kGroupOffset + i * GroupRecord::size);
    for (int i = 0; i < kPointCount; ++i)
        writeAt<PointRecord, PointRecord::size>(alm[i], out, kPointOffset + i * PointRecord::size);
    writeAt<GeneralRecord, GeneralRecord::size>(gen, out, kGeneralOffset);
    for (int i = 0; i < kPortCount; ++i)
        writeAt<HardwarePort, HardwarePort::size>(hardware.port[i], out, kHardwareOffset + i * HardwarePort::size);
    return image;
}

void Database::fromBytes(std::span<const std::uint8_t, dbasesize> bytes)
{
    std::span<const std::uint8_t> in(bytes);
    for (int i = 0; i < kDirectoryCount; ++i)
        std::copy_n(in.begin() + kDirOffset + i * DirectoryRecord::size, DirectoryRecord::size, dir[i].dirText.begin());
    for (int i = 0; i < kGroupCount; ++i)
        readAt<GroupRecord, GroupRecord::size>(group[i], in, kGroupOffset + i * GroupRecord::size);
    for (int i = 0; i < kPointCount; ++i)
        readAt<PointRecord, PointRecord::size>(alm[i], in, kPointOffset + i * PointRecord::size);
    readAt<GeneralRecord, GeneralRecord::size>(gen, in, kGeneralOffset);
    for (int i = 0; i < kPortCount; ++i)
        readAt<HardwarePort, HardwarePort::size>(hardware.port[i], in, kHardwareOffset + i * HardwarePort::size);
}

Database Database::fromImage(std::span<const std::uint8_t, dbasesize> bytes)
{
    Database db;
    db.fromBytes(bytes);
    return db;
}

std::string nameText(const Name& name)
{
    auto end = std::find(name.begin(), name.end(), '\0');
    return std::string(name.begin(), end);
}

void setName(Name& name, const std::string& text)
{
    name.fill(' ');
    std::copy_n(text.begin(), std::min(text.size(), name.size()), name.begin());
}

} // namespace rk4
