#include "core/database/compare.h"

namespace rk4 {

namespace {

// Collects the fields of one record pair that differ, each under the record's
// name. Arrays are compared whole; numbers carry both values.
struct Collector {
    std::string record;
    std::vector<FieldDifference>& out;

    template <typename T>
    void operator()(const char* field, const T& expected, const T& actual)
    {
        if (expected == actual)
            return;
        FieldDifference difference{record + " " + field, {}, {}};
        if constexpr (std::is_integral_v<T>) {
            difference.expected = std::to_string(expected);
            difference.actual = std::to_string(actual);
        }
        out.push_back(std::move(difference));
    }
};

template <typename Visit>
void fields(const GroupRecord& a, const GroupRecord& b, Visit&& v)
{
    v("name", a.name, b.name);
    v("ackCode", a.ackCode, b.ackCode);
    v("interrogateCode", a.interrogateCode, b.interrogateCode);
    v("enabled", a.enabled, b.enabled);
    v("shortCycles", a.shortCycles, b.shortCycles);
    v("shortTimer", a.shortTimer, b.shortTimer);
    v("longTimer", a.longTimer, b.longTimer);
    v("shiftDir", a.shiftDir, b.shiftDir);
    v("autoAck", a.autoAck, b.autoAck);
    v("ackRequest", a.ackRequest, b.ackRequest);
    v("alarmOut", a.alarmOut, b.alarmOut);
    v("ackOut", a.ackOut, b.ackOut);
    v("ackIn", a.ackIn, b.ackIn);
    v("newAlarmOut", a.newAlarmOut, b.newAlarmOut);
    v("reserved46", a.reserved46, b.reserved46);
}

template <typename Visit>
void fields(const PointRecord& a, const PointRecord& b, Visit&& v)
{
    v("name", a.name, b.name);
    v("onCode", a.onCode, b.onCode);
    v("latching", a.latching, b.latching);
    v("groupMask", a.groupMask, b.groupMask);
    v("lowSetpoint", a.lowSetpoint, b.lowSetpoint);
    v("highSetpoint", a.highSetpoint, b.highSetpoint);
    v("inactive", a.inactive, b.inactive);
    v("type", a.type, b.type);
    v("isOutput", a.isOutput, b.isOutput);
    v("reserved33", a.reserved33, b.reserved33);
    v("port", a.port, b.port);
    v("reserved43", a.reserved43, b.reserved43);
    v("decimalMaximum", a.decimalMaximum, b.decimalMaximum);
    v("binaryMinimum", a.binaryMinimum, b.binaryMinimum);
    v("lowReset", a.lowReset, b.lowReset);
    v("slope", a.slope, b.slope);
    v("highReset", a.highReset, b.highReset);
    v("decimalMinimum", a.decimalMinimum, b.decimalMinimum);
    v("unitSelector", a.unitSelector, b.unitSelector);
    v("binaryMaximum", a.binaryMaximum, b.binaryMaximum);
    v("highSetpointDecimal", a.highSetpointDecimal, b.highSetpointDecimal);
    v("lowSetpointDecimal", a.lowSetpointDecimal, b.lowSetpointDecimal);
    v("decimalPlaces", a.decimalPlaces, b.decimalPlaces);
    v("outFunction", a.outFunction, b.outFunction);
    v("outGroupMask", a.outGroupMask, b.outGroupMask);
    v("reserved71", a.reserved71, b.reserved71);
    v("offCode", a.offCode, b.offCode);
}

template <typename Visit>
void fields(const GeneralRecord& a, const GeneralRecord& b, TransferStamp stamp, Visit&& v)
{
    v("name", a.name, b.name);
    v("shiftChangeCode", a.shiftChangeCode, b.shiftChangeCode);
    v("reserved24", a.reserved24, b.reserved24);
    v("accessCode", a.accessCode, b.accessCode);
    v("ringsToAnswer", a.ringsToAnswer, b.ringsToAnswer);
    v("ringOut", a.ringOut, b.ringOut);
    v("basicMode", a.basicMode, b.basicMode);
    v("securityLevel", a.securityLevel, b.securityLevel);
    v("carrierDetectOut", a.carrierDetectOut, b.carrierDetectOut);
    v("reserved45", a.reserved45, b.reserved45);
    v("callProgress", a.callProgress, b.callProgress);
    v("reserved47", a.reserved47, b.reserved47);
    if (stamp == TransferStamp::Compare)
        v("transferStamp", a.transferStamp, b.transferStamp);
    v("reserved58", a.reserved58, b.reserved58);
    v("tempAckTime", a.tempAckTime, b.tempAckTime);
    v("reserved61", a.reserved61, b.reserved61);
    v("modemEnableCode", a.modemEnableCode, b.modemEnableCode);
    v("reserved72", a.reserved72, b.reserved72);
    v("serviceLine", a.serviceLine, b.serviceLine);
    v("reserved112", a.reserved112, b.reserved112);
}

template <typename Visit>
void fields(const HardwarePort& a, const HardwarePort& b, Visit&& v)
{
    v("typeFlags", a.typeFlags, b.typeFlags);
    v("debounce", a.debounce, b.debounce);
    v("scaleFlags", a.scaleFlags, b.scaleFlags);
    v("resetMask", a.resetMask, b.resetMask);
    v("reserved", a.reserved, b.reserved);
    v("timer", a.timer, b.timer);
}

} // namespace

std::vector<FieldDifference> compareDatabases(const Database& expected, const Database& actual, TransferStamp stamp)
{
    std::vector<FieldDifference> out;
    for (int i = 0; i < kDirectoryCount; ++i)
        Collector{std::string("directory ") + static_cast<char>('A' + i), out}("dirText", expected.dir[i].dirText,
                                                                               actual.dir[i].dirText);
    for (int i = 0; i < kGroupCount; ++i)
        fields(expected.group[i], actual.group[i], Collector{"group " + std::to_string(i + 1), out});
    for (int i = 0; i < kPointCount; ++i)
        fields(expected.alm[i], actual.alm[i], Collector{"point " + std::to_string(i + 1), out});
    fields(expected.gen, actual.gen, stamp, Collector{"general", out});
    // Entries 0..7 are the inputs, 8..15 the outputs.
    for (int i = 0; i < kPortCount; ++i) {
        const std::string record = i < kInputCount ? "hardware input " + std::to_string(i + 1)
                                                   : "hardware output " + std::to_string(i - kInputCount + 1);
        fields(expected.hardware.port[i], actual.hardware.port[i], Collector{record, out});
    }
    return out;
}

std::string differenceText(const FieldDifference& difference, const std::string& expectedLabel,
                           const std::string& actualLabel)
{
    if (difference.expected.empty())
        return difference.field;
    return difference.field + ": " + difference.expected + " " + expectedLabel + ", " + difference.actual + " " +
           actualLabel;
}

} // namespace rk4
