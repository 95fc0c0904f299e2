#pragma once
// The byte layout of every record: each field with its offset and its name,
// in image order. Reading, writing and comparing images all walk these lists,
// so the layout is written down once.

#include "core/database/database.h"

#include <type_traits>

namespace rk4 {

template <typename Record, typename Visit>
void layout(Record& r, Visit&& v) requires std::is_same_v<std::remove_const_t<Record>, GroupRecord>
{
    v(0, "name", r.name);
    v(16, "ackCode", r.ackCode);
    v(24, "interrogateCode", r.interrogateCode);
    v(32, "enabled", r.enabled);
    v(33, "shortCycles", r.shortCycles);
    v(34, "shortTimer", r.shortTimer);
    v(35, "longTimer", r.longTimer);
    v(36, "shiftDir", r.shiftDir);
    v(40, "autoAck", r.autoAck);
    v(41, "ackRequest", r.ackRequest);
    v(42, "alarmOut", r.alarmOut);
    v(43, "ackOut", r.ackOut);
    v(44, "ackIn", r.ackIn);
    v(45, "newAlarmOut", r.newAlarmOut);
    v(46, "reserved46", r.reserved46);
}

template <typename Record, typename Visit>
void layout(Record& r, Visit&& v) requires std::is_same_v<std::remove_const_t<Record>, PointRecord>
{
    v(0, "name", r.name);
    v(16, "onCode", r.onCode);
    v(24, "latching", r.latching);
    v(25, "groupMask", r.groupMask);
    v(26, "lowSetpoint", r.lowSetpoint);
    v(28, "highSetpoint", r.highSetpoint);
    v(30, "inactive", r.inactive);
    v(31, "type", r.type);
    v(32, "isOutput", r.isOutput);
    v(33, "reserved33", r.reserved33);
    v(41, "port", r.port);
    v(43, "reserved43", r.reserved43);
    v(46, "decimalMaximum", r.decimalMaximum);
    v(48, "binaryMinimum", r.binaryMinimum);
    v(50, "lowReset", r.lowReset);
    v(52, "slope", r.slope);
    v(55, "highReset", r.highReset);
    v(57, "decimalMinimum", r.decimalMinimum);
    v(59, "unitSelector", r.unitSelector);
    v(62, "binaryMaximum", r.binaryMaximum);
    v(64, "highSetpointDecimal", r.highSetpointDecimal);
    v(66, "lowSetpointDecimal", r.lowSetpointDecimal);
    v(68, "decimalPlaces", r.decimalPlaces);
    v(69, "outFunction", r.outFunction);
    v(70, "outGroupMask", r.outGroupMask);
    v(71, "reserved71", r.reserved71);
    v(72, "offCode", r.offCode);
}

template <typename Record, typename Visit>
void layout(Record& r, Visit&& v) requires std::is_same_v<std::remove_const_t<Record>, GeneralRecord>
{
    v(0, "name", r.name);
    v(16, "shiftChangeCode", r.shiftChangeCode);
    v(24, "reserved24", r.reserved24);
    v(32, "accessCode", r.accessCode);
    v(40, "ringsToAnswer", r.ringsToAnswer);
    v(41, "ringOut", r.ringOut);
    v(42, "basicMode", r.basicMode);
    v(43, "securityLevel", r.securityLevel);
    v(44, "carrierDetectOut", r.carrierDetectOut);
    v(45, "reserved45", r.reserved45);
    v(46, "callProgress", r.callProgress);
    v(47, "reserved47", r.reserved47);
    v(48, "transferStamp", r.transferStamp);
    v(58, "reserved58", r.reserved58);
    v(60, "tempAckTime", r.tempAckTime);
    v(61, "reserved61", r.reserved61);
    v(64, "modemEnableCode", r.modemEnableCode);
    v(72, "reserved72", r.reserved72);
    v(80, "serviceLine", r.serviceLine);
    v(112, "reserved112", r.reserved112);
}

template <typename Record, typename Visit>
void layout(Record& r, Visit&& v) requires std::is_same_v<std::remove_const_t<Record>, HardwarePort>
{
    v(0, "typeFlags", r.typeFlags);
    v(1, "debounce", r.debounce);
    v(3, "scaleFlags", r.scaleFlags);
    v(4, "resetMask", r.resetMask);
    v(5, "reserved", r.reserved);
    v(6, "timer", r.timer);
}

} // namespace rk4
