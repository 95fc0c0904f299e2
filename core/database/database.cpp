#include "core/database/database.h"

#include "core/common/bytes.h"

#include <algorithm>
#include <cstring>

namespace rk4 {

namespace {

// A layout lists every field of a record with its offset, in order. The same
// list drives reading and writing, so the two can never disagree.
struct Writer {
    std::span<std::uint8_t> out;
    void operator()(std::size_t offset, const std::uint8_t& value) { out[offset] = value; }
    void operator()(std::size_t offset, const std::uint16_t& value) { writeLE16(out, offset, value); }
    template <typename T, std::size_t N>
    void operator()(std::size_t offset, const std::array<T, N>& value)
    {
        static_assert(sizeof(T) == 1);
        std::memcpy(out.data() + offset, value.data(), N);
    }
};

struct Reader {
    std::span<const std::uint8_t> in;
    void operator()(std::size_t offset, std::uint8_t& value) { value = in[offset]; }
    void operator()(std::size_t offset, std::uint16_t& value) { value = readLE16(in, offset); }
    template <typename T, std::size_t N>
    void operator()(std::size_t offset, std::array<T, N>& value)
    {
        static_assert(sizeof(T) == 1);
        std::memcpy(value.data(), in.data() + offset, N);
    }
};

template <typename Record, typename Visit>
void layout(Record& r, Visit&& v) requires std::is_same_v<std::remove_const_t<Record>, GroupRecord>
{
    v(0, r.name);
    v(16, r.ackCode);
    v(24, r.interrogateCode);
    v(32, r.enabled);
    v(33, r.shortCycles);
    v(34, r.shortTimer);
    v(35, r.longTimer);
    v(36, r.shiftDir);
    v(40, r.autoAck);
    v(41, r.ackRequest);
    v(42, r.alarmOut);
    v(43, r.ackOut);
    v(44, r.ackIn);
    v(45, r.newAlarmOut);
    v(46, r.reserved46);
}

template <typename Record, typename Visit>
void layout(Record& r, Visit&& v) requires std::is_same_v<std::remove_const_t<Record>, PointRecord>
{
    v(0, r.name);
    v(16, r.onCode);
    v(24, r.latching);
    v(25, r.groupMask);
    v(26, r.lowSetpoint);
    v(28, r.highSetpoint);
    v(30, r.inactive);
    v(31, r.type);
    v(32, r.isOutput);
    v(33, r.reserved33);
    v(41, r.port);
    v(43, r.reserved43);
    v(46, r.decimalMaximum);
    v(48, r.binaryMinimum);
    v(50, r.lowReset);
    v(52, r.slope);
    v(55, r.highReset);
    v(57, r.decimalMinimum);
    v(59, r.unitSelector);
    v(62, r.binaryMaximum);
    v(64, r.highSetpointDecimal);
    v(66, r.lowSetpointDecimal);
    v(68, r.decimalPlaces);
    v(69, r.outFunction);
    v(70, r.outGroupMask);
    v(71, r.reserved71);
    v(72, r.offCode);
}

template <typename Record, typename Visit>
void layout(Record& r, Visit&& v) requires std::is_same_v<std::remove_const_t<Record>, GeneralRecord>
{
    v(0, r.name);
    v(16, r.shiftChangeCode);
    v(24, r.reserved24);
    v(32, r.accessCode);
    v(40, r.ringsToAnswer);
    v(41, r.ringOut);
    v(42, r.basicMode);
    v(43, r.securityLevel);
    v(44, r.carrierDetectOut);
    v(45, r.reserved45);
    v(46, r.callProgress);
    v(47, r.reserved47);
    v(48, r.transferStamp);
    v(58, r.reserved58);
    v(60, r.tempAckTime);
    v(61, r.reserved61);
    v(64, r.modemEnableCode);
    v(72, r.reserved72);
    v(80, r.serviceLine);
    v(112, r.reserved112);
}

template <typename Record, typename Visit>
void layout(Record& r, Visit&& v) requires std::is_same_v<std::remove_const_t<Record>, HardwarePort>
{
    v(0, r.typeFlags);
    v(1, r.debounce);
    v(3, r.scaleFlags);
    v(4, r.resetMask);
    v(5, r.reserved);
    v(6, r.timer);
}

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
