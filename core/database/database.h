#pragma once
// The Database image: the unit's whole configuration, 4704 bytes in five
// records. Fields are plain members; the byte layout lives in one place
// (database.cpp) and is used both to read and to write, so load -> save is
// byte-exact, reserved bytes included.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace rk4 {

inline constexpr std::size_t dbasesize = 4704;
inline constexpr int kDirectoryCount = 6;
inline constexpr int kGroupCount = 8;
inline constexpr int kUsedGroupCount = 6;
inline constexpr int kPointCount = 30;
inline constexpr int kPortCount = 16;
inline constexpr int kInputCount = 8;

using Name = std::array<char, 16>;            // space padded, no terminator at 16
using DtmfCode = std::array<std::uint8_t, 8>; // stored DTMF digits, NUL terminated

struct DirectoryRecord {
    std::array<std::uint8_t, 256> dirText{};
    static constexpr std::size_t size = 256;
    bool operator==(const DirectoryRecord&) const = default;
};

struct GroupRecord {
    Name name{};
    DtmfCode ackCode{};
    DtmfCode interrogateCode{};
    std::uint8_t enabled = 0;
    std::uint8_t shortCycles = 0;
    std::uint8_t shortTimer = 0;
    std::uint8_t longTimer = 0;
    std::array<std::uint8_t, 4> shiftDir{};
    std::uint8_t autoAck = 0;
    std::uint8_t ackRequest = 0;
    std::uint8_t alarmOut = 0;
    std::uint8_t ackOut = 0;
    std::uint8_t ackIn = 0;
    std::uint8_t newAlarmOut = 0;
    std::array<std::uint8_t, 18> reserved46{};
    static constexpr std::size_t size = 64;
    bool operator==(const GroupRecord&) const = default;
};

// Point types.
inline constexpr std::uint8_t kPointUnused = 0x00;
inline constexpr std::uint8_t kPointDigital = 0x01;
inline constexpr std::uint8_t kPointWatchdog = 0x02;
inline constexpr std::uint8_t kPointAnalog = 0x13;
inline constexpr std::uint8_t kPointTotalizer = 0x20;
inline constexpr std::uint8_t kPointInterval = 0x21;
inline constexpr std::uint8_t kPointOnOffOutput = 0x60;
inline constexpr std::uint8_t kPointTimerOutput = 0x61;

struct PointRecord {
    Name name{};
    DtmfCode onCode{};
    std::uint8_t latching = 0;
    std::uint8_t groupMask = 0;
    std::uint16_t lowSetpoint = 0;  // 26, counts
    std::uint16_t highSetpoint = 0; // 28, counts
    std::uint8_t inactive = 0;
    std::uint8_t type = 0;
    std::uint8_t isOutput = 0;
    std::array<std::uint8_t, 8> reserved33{};
    std::uint16_t port = 0; // 41, 0-based channel
    std::array<std::uint8_t, 3> reserved43{};
    std::uint16_t decimalMaximum = 0;           // 46, signed scaled integer
    std::uint16_t binaryMinimum = 0;            // 48, counts
    std::uint16_t lowReset = 0;                 // 50, counts
    std::array<std::uint8_t, 3> slope{};        // 52, 24-bit, most significant byte first
    std::uint16_t highReset = 0;                // 55, counts (1 for new points)
    std::uint16_t decimalMinimum = 0;           // 57, signed scaled integer
    std::array<std::uint8_t, 3> unitSelector{}; // 59..61, spoken-unit selectors A, B, C
    std::uint16_t binaryMaximum = 0;            // 62, counts
    std::uint16_t highSetpointDecimal = 0;      // 64, signed, not swapped on the link
    std::uint16_t lowSetpointDecimal = 0;       // 66, signed, not swapped on the link
    std::uint8_t decimalPlaces = 0;             // 68, low four bits
    std::uint8_t outFunction = 0;
    std::uint8_t outGroupMask = 0;
    std::uint8_t reserved71 = 0;
    DtmfCode offCode{};
    static constexpr std::size_t size = 80;
    bool operator==(const PointRecord&) const = default;
};

struct GeneralRecord {
    Name name{};
    DtmfCode shiftChangeCode{};
    std::array<std::uint8_t, 8> reserved24{};
    DtmfCode accessCode{};
    std::uint8_t ringsToAnswer = 0;
    std::uint8_t ringOut = 0;
    std::uint8_t basicMode = 0;
    std::uint8_t securityLevel = 0;
    std::uint8_t carrierDetectOut = 0;
    std::uint8_t reserved45 = 0;
    std::uint8_t callProgress = 0;
    std::uint8_t reserved47 = 0;
    std::array<std::uint8_t, 10> transferStamp{};
    std::array<std::uint8_t, 2> reserved58{};
    std::uint8_t tempAckTime = 0;
    std::array<std::uint8_t, 3> reserved61{};
    DtmfCode modemEnableCode{};
    std::array<std::uint8_t, 8> reserved72{};
    std::array<std::uint8_t, 32> serviceLine{};
    std::array<std::uint8_t, 16> reserved112{};
    static constexpr std::size_t size = 128;
    bool operator==(const GeneralRecord&) const = default;
};

struct HardwarePort {
    std::uint8_t typeFlags = 0;
    std::uint16_t debounce = 0;
    std::uint8_t scaleFlags = 0;
    std::uint8_t resetMask = 0;
    std::uint8_t reserved = 0;
    std::uint16_t timer = 0;
    static constexpr std::size_t size = 8;
    bool operator==(const HardwarePort&) const = default;
};

struct HardwareRecord {
    std::array<HardwarePort, kPortCount> port{};
    static constexpr std::size_t size = 128;
    bool operator==(const HardwareRecord&) const = default;
};

// Offsets of the records inside the image.
inline constexpr std::size_t kDirOffset = 0;
inline constexpr std::size_t kGroupOffset = 1536;
inline constexpr std::size_t kPointOffset = 2048;
inline constexpr std::size_t kGeneralOffset = 4448;
inline constexpr std::size_t kHardwareOffset = 4576;

using ImageBytes = std::array<std::uint8_t, dbasesize>;

struct Database {
    std::array<DirectoryRecord, kDirectoryCount> dir{};
    std::array<GroupRecord, kGroupCount> group{};
    std::array<PointRecord, kPointCount> alm{};
    GeneralRecord gen{};
    HardwareRecord hardware{};

    bool operator==(const Database&) const = default;

    ImageBytes toBytes() const;
    void fromBytes(std::span<const std::uint8_t, dbasesize> bytes);
    static Database fromImage(std::span<const std::uint8_t, dbasesize> bytes);
};

// Record-level (de)serialisation; the same layout tables as the whole image.
void writeRecord(const GroupRecord& record, std::span<std::uint8_t, GroupRecord::size> out);
void writeRecord(const PointRecord& record, std::span<std::uint8_t, PointRecord::size> out);
void writeRecord(const GeneralRecord& record, std::span<std::uint8_t, GeneralRecord::size> out);
void writeRecord(const HardwarePort& record, std::span<std::uint8_t, HardwarePort::size> out);
void readRecord(GroupRecord& record, std::span<const std::uint8_t, GroupRecord::size> in);
void readRecord(PointRecord& record, std::span<const std::uint8_t, PointRecord::size> in);
void readRecord(GeneralRecord& record, std::span<const std::uint8_t, GeneralRecord::size> in);
void readRecord(HardwarePort& record, std::span<const std::uint8_t, HardwarePort::size> in);

// Name fields as text (trailing blanks kept) and back (padded to 16).
std::string nameText(const Name& name);
void setName(Name& name, const std::string& text);

// The tool's own 16-byte settings record, kept in rk4.cfg.
struct Config {
    std::array<std::uint8_t, 16> bytes{};
    int portIndex() const { return bytes[0] & 0x07; }
    void setPortIndex(int index) { bytes[0] = static_cast<std::uint8_t>(index); }
    bool binaryCalibration() const { return bytes[1] == 1; }
    bool operator==(const Config&) const = default;
};

} // namespace rk4
