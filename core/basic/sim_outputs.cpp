#include "core/basic/sim_outputs.h"

#include "core/basic/basic_fields.h"
#include "core/database/dtmf.h"
#include "core/database/validators.h"
#include "core/hardware/port_editor.h"
#include "core/shell/workspace.h"

#include <optional>

namespace rk4 {

namespace {

constexpr int kFirstOutputPoint = 8; // point 9
constexpr std::uint16_t kDefaultOnTime = 400; // 10 s, as the Basic template's outputs

std::string outputName(std::uint8_t output)
{
    if (output == 0)
        return "not used";
    const std::string name = "Output " + std::to_string(output);
    // The Basic template puts the carrier detect on output 4, which is also a user output.
    return output <= kUserOutputs ? name + ", also a user output" : name;
}

} // namespace

SimoutEditor::SimoutEditor(Workspace& space) : space(space)
{
    for (int row = 0; row < kUserOutputs; ++row) {
        const PointRecord& point = space.image.alm[kFirstOutputPoint + row];
        const HardwarePort& port = space.image.hardware.port[kInputCount + row];
        Output& out = output[row];
        // A point not set up as an on/off output counts as timed, as the warnings count it.
        out.timed = point.type != kPointOnOffOutput;
        out.onCode = dtmfCodeText(point.onCode);
        out.timer.kind = SimTime::Kind::OutputTimer;
        if (out.timed)
            out.timer.load(port.timer, port.scaleFlags & kTimerMinutes);
        else
            out.offCode = dtmfCodeText(point.offCode);
    }
    opened = output;
}

void SimoutEditor::TypeChanging(int row, bool timed)
{
    Output& out = output[row];
    if (out.timed == timed)
        return;
    out.timed = timed;
    if (timed) {
        out.offCode.clear();
        out.timer.load(kDefaultOnTime, false);
    } else {
        out.timer.text.clear();
        out.timer.minutes = false;
    }
}

std::vector<SimoutEditor::Role> SimoutEditor::hardwareRoles() const
{
    const Database& db = space.image;
    // In Basic mode group 1 stands for both directories' alarm outputs.
    return {{"Carrier Detect", outputName(db.gen.carrierDetectOut)},
            {"Ring", outputName(db.gen.ringOut)},
            {"Any alarm", outputName(db.group[0].alarmOut)},
            {"New alarm", outputName(db.group[0].newAlarmOut)},
            {"Acknowledge", outputName(db.group[0].ackOut)}};
}

bool SimoutEditor::CanClose(Prompter& prompter)
{
    std::array<std::optional<std::uint16_t>, kUserOutputs> counts;
    for (int row = 0; row < kUserOutputs; ++row) {
        const Output& out = output[row];
        auto stop = [&](Field field) {
            focusRow = row;
            focus = field;
            return false;
        };
        if (CheckDTMF(out.onCode)) {
            prompter.tell("Error", invalidCodeText("DTMF ON"), Icon::Error);
            return stop(Field::OnCode);
        }
        if (!out.timed && CheckDTMF(out.offCode)) {
            prompter.tell("Error", invalidCodeText("DTMF OFF"), Icon::Error);
            return stop(Field::OffCode);
        }
        if (out.timed) {
            counts[row] = out.timer.validate(prompter);
            if (!counts[row])
                return stop(Field::Timer);
        }
    }

    Database edited = space.image;
    for (int row = 0; row < kUserOutputs; ++row) {
        // A row left as it was keeps its bytes.
        if (output[row] == opened[row])
            continue;
        const Output& out = output[row];
        PointRecord& point = edited.alm[kFirstOutputPoint + row];
        HardwarePort& port = edited.hardware.port[kInputCount + row];
        point.type = out.timed ? kPointTimerOutput : kPointOnOffOutput;
        point.isOutput = 1;
        point.port = static_cast<std::uint16_t>(row);
        storeDtmfCode(out.onCode, point.onCode);
        storeDtmfCode(out.offCode, point.offCode);
        port.typeFlags = out.timed ? kOutputTimed : kOutputOnOff;
        if (out.timed) {
            port.timer = *counts[row];
            port.scaleFlags = out.timer.minutes ? (port.scaleFlags | kTimerMinutes)
                                                : (port.scaleFlags & ~kTimerMinutes);
        }
    }
    space.commit(edited);
    focus = Field::None;
    return true;
}

} // namespace rk4
