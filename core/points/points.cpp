#include "core/points/points.h"

#include "core/database/defaults.h"
#include "core/hardware/port_editor.h"

namespace rk4 {

namespace {

std::vector<int> pointsOn(const Database& db, bool isOutput, int channel)
{
    std::vector<int> slots;
    for (int p = 0; p < kPointCount; ++p) {
        const PointRecord& point = db.alm[p];
        if (point.type != kPointUnused && (point.isOutput != 0) == isOutput && point.port == channel)
            slots.push_back(p);
    }
    return slots;
}

} // namespace

int ClearPoints(Database& db, int port, bool isOutput)
{
    const int channel = isOutput ? port - 8 : port;
    int emptied = 0;
    for (PointRecord& point : db.alm) {
        if ((point.isOutput != 0) != isOutput || point.port != channel)
            continue;
        point = PointRecord{};
        point.inactive = 1;
        ++emptied;
    }
    return emptied;
}

int ClearInputPoints(Database& db, int input) { return ClearPoints(db, input - 1, false); }
int ClearOutputPoints(Database& db, int output) { return ClearPoints(db, output - 1 + kInputCount, true); }

int ConvertMask(std::uint8_t mask) { return mask != 0 && (mask & (mask - 1)) == 0 ? 1 : 0; }

std::vector<int> PointsOnInput(const Database& db, int input) { return pointsOn(db, false, input - 1); }
std::vector<int> PointsOnOutput(const Database& db, int output) { return pointsOn(db, true, output - 1); }

std::uint8_t InputPointType(const HardwarePort& entry)
{
    if ((entry.typeFlags & 0x1F) == kInputAnalog)
        return kPointAnalog;
    switch (entry.typeFlags & kInputTypeMask) {
    case kInputWatchdog: return kPointWatchdog;
    case kInputInterval: return kPointInterval;
    case kInputTotalizer: return kPointTotalizer;
    default: return kPointDigital;
    }
}

std::uint8_t OutputPointType(const HardwarePort& entry)
{
    return entry.typeFlags == kOutputOnOff ? kPointOnOffOutput : kPointTimerOutput;
}

std::uint8_t AckInputGroups(const Database& db, int input)
{
    std::uint8_t mask = 0;
    for (int g = 0; g < kUsedGroupCount; ++g)
        if (db.group[g].ackIn == input)
            mask |= MakeMask(g);
    return mask;
}

std::uint8_t OutputUseGroups(const Database& db, int output, std::uint8_t use)
{
    std::uint8_t mask = 0;
    for (int g = 0; g < kUsedGroupCount; ++g) {
        const GroupRecord& group = db.group[g];
        const std::uint8_t named = use == kUseAlarmOut   ? group.alarmOut
                                   : use == kUseNewAlarm ? group.newAlarmOut
                                   : use == kUseAckOut   ? group.ackOut
                                                         : 0;
        if (named != 0 && named == output)
            mask |= MakeMask(g);
    }
    return mask;
}

std::uint8_t WorkOutSpecialUse(const Database& db, PointRecord& point)
{
    point.outFunction = kUseNone;
    point.outGroupMask = 0;
    const int number = point.port + 1;
    if (point.type == kPointUnused || number > kInputCount)
        return kUseNone;
    if (!point.isOutput) {
        const std::uint8_t groups = AckInputGroups(db, number);
        if (point.type == kPointDigital && groups != 0) {
            point.groupMask = 0;
            point.outFunction = kUseAckIn;
            point.outGroupMask = groups;
        }
        return point.outFunction;
    }
    for (std::uint8_t use : {kUseAlarmOut, kUseNewAlarm, kUseAckOut}) {
        const std::uint8_t groups = OutputUseGroups(db, number, use);
        if (groups != 0) {
            point.outFunction = use;
            point.outGroupMask = groups;
            return use;
        }
    }
    if (db.gen.ringOut == number)
        point.outFunction = kUseRingOut;
    return point.outFunction;
}

void SetPointsGroupUse(Database& db, bool isOutput, int number, std::uint8_t use, int group, bool on)
{
    for (int slot : isOutput ? PointsOnOutput(db, number) : PointsOnInput(db, number)) {
        PointRecord& point = db.alm[slot];
        if (on) {
            point.outFunction = use;
            point.outGroupMask |= MakeMask(group - 1);
        } else {
            point.outGroupMask &= MakeNotMask(group - 1);
            if (point.outGroupMask == 0)
                point.outFunction = kUseNone;
        }
    }
}

} // namespace rk4
