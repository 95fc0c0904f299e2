#include "core/settings/group_editor.h"

#include "core/database/defaults.h"
#include "core/database/dtmf.h"
#include "core/database/validators.h"
#include "core/hardware/port_editor.h"
#include "core/points/points.h"
#include "core/settings/outputs.h"
#include "core/shell/warning_dialog.h"
#include "core/shell/workspace.h"

namespace rk4 {

namespace {

constexpr unsigned kMaxShortCycles = 9;
constexpr unsigned kMaxTimer = 255;
constexpr std::uint16_t kOneSecond = 40; // 25 ms steps

NavFlag groupFlag(int group) { return static_cast<NavFlag>(static_cast<int>(NavFlag::Grp1) + group - 1); }

std::string output(int number) { return "Output " + std::to_string(number); }
std::string input(int number) { return "Input " + std::to_string(number); }

void warn(Prompter& prompter, const std::string& text) { prompter.tell("Warning", text, Icon::Warning); }

GroupCheck refuse(Prompter& prompter, const std::string& text, GroupField focus)
{
    prompter.tell("Error", text, Icon::Error);
    return {false, focus};
}

// The notice about the debounce of a newly chosen Ack In, or nothing when it
// is one second or less.
std::optional<std::string> debounceNotice(const HardwarePort& entry, int number)
{
    const std::string head = input(number) + " has a debounce of ";
    if (entry.scaleFlags & kDebounceMinutes)
        return head + std::to_string(entry.debounce) + " minute" + (entry.debounce == 1 ? "" : "s") +
               " - change it in Hardware if incorrect.";
    if (entry.debounce > kOneSecond)
        return head + secondsText(entry.debounce) + " seconds - change it in Hardware if incorrect.";
    return std::nullopt;
}

} // namespace

bool CheckOtherGroups(const Database& db, int output)
{
    for (std::uint8_t use : {kUseAlarmOut, kUseNewAlarm, kUseAckOut})
        if (OutputUseGroups(db, output, use) != 0)
            return true;
    return false;
}

GroupEditor::GroupEditor(Workspace& space, int group) : space(space), groupNumber(group) {}

void GroupEditor::SetupWindow()
{
    space.navigation.enterEditor(
        {groupFlag(groupNumber), NavFlag::Hardware, NavFlag::Inputs, NavFlag::Outputs, NavFlag::Points});
    const GroupRecord& record = space.image.group[groupNumber - 1];
    GroupControls& c = controls;
    c.enabled = record.enabled != 0;
    c.name = nameText(record.name);
    c.name.erase(c.name.find_last_not_of(' ') + 1);
    c.ackCode = dtmfCodeText(record.ackCode);
    c.interrogateCode = dtmfCodeText(record.interrogateCode);
    c.shortCycles = record.shortCycles;
    c.shortTimer = record.shortTimer;
    c.longTimer = record.longTimer;
    for (std::size_t k = 0; k < c.shiftDir.size(); ++k)
        c.shiftDir[k] = record.shiftDir[k];
    c.autoAck = record.autoAck != 0;
    c.ackRequest = record.ackRequest != 0;
    c.alarmOut = record.alarmOut;
    c.newAlarmOut = record.newAlarmOut;
    c.ackOut = record.ackOut;
    c.ackIn = record.ackIn;
    opened = controls;
    checked.reset();
    open = true;
}

GroupRecord GroupEditor::recordFromControls() const
{
    const GroupControls& c = controls;
    GroupRecord record = space.image.group[groupNumber - 1]; // keeps the reserved bytes
    record.enabled = c.enabled ? 1 : 0;
    setName(record.name, c.name.substr(0, record.name.size()));
    storeDtmfCode(c.ackCode, record.ackCode);
    storeDtmfCode(c.interrogateCode, record.interrogateCode);
    record.shortCycles = static_cast<std::uint8_t>(c.shortCycles);
    record.shortTimer = static_cast<std::uint8_t>(c.shortTimer);
    record.longTimer = static_cast<std::uint8_t>(c.longTimer);
    for (std::size_t k = 0; k < c.shiftDir.size(); ++k)
        record.shiftDir[k] = static_cast<std::uint8_t>(c.shiftDir[k]);
    record.autoAck = c.autoAck ? 1 : 0;
    record.ackRequest = c.ackRequest ? 1 : 0;
    record.alarmOut = static_cast<std::uint8_t>(c.alarmOut);
    record.newAlarmOut = static_cast<std::uint8_t>(c.newAlarmOut);
    record.ackOut = static_cast<std::uint8_t>(c.ackOut);
    record.ackIn = static_cast<std::uint8_t>(c.ackIn);
    return record;
}

GroupCheck GroupEditor::check(Prompter& prompter)
{
    const GroupControls& c = controls;
    checked.reset();

    // One output, one function within a group.
    if (c.alarmOut != 0 && c.alarmOut == c.newAlarmOut)
        return refuse(prompter, output(c.alarmOut) + " is being used for Alarm and New Alarm - both are not allowed.",
                      GroupField::NewAlarmOut);
    if (c.alarmOut != 0 && c.alarmOut == c.ackOut)
        return refuse(prompter, output(c.alarmOut) + " is being used for Alarm and Acknowledge - both are not allowed.",
                      GroupField::AckOut);
    if (c.newAlarmOut != 0 && c.newAlarmOut == c.ackOut)
        return refuse(prompter,
                      output(c.newAlarmOut) + " is being used for New Alarm and Acknowledge - both are not allowed.",
                      GroupField::AckOut);

    // The general settings' outputs are never shared; other groups' outputs may be.
    struct Use {
        int number;
        const char* name;     // in the conflict texts
        const char* function; // in the points question
        GroupField field;
    };
    const Use uses[] = {{c.alarmOut, "Alarm Out", "Alarm Out", GroupField::AlarmOut},
                        {c.newAlarmOut, "New Alarm Out", "New Alarm Out", GroupField::NewAlarmOut},
                        {c.ackOut, "Ack Out", "Acknowledge Out", GroupField::AckOut}};
    const GeneralRecord& general = space.image.gen;
    for (const Use& use : uses)
        if (use.number != 0 && use.number == general.ringOut)
            return refuse(prompter,
                          output(use.number) + " is being used for " + use.name +
                              " and for Ring Output (General) - both are not allowed.",
                          use.field);
    for (const Use& use : uses)
        if (use.number != 0 && use.number == general.carrierDetectOut)
            return refuse(prompter,
                          output(use.number) + " is being used for " + use.name +
                              " and for Carrier Detect Output (General) - both are not allowed.",
                          use.field);

    // Everything below works on a scratch image, so a later refusal writes nothing.
    Database edited = space.image;
    const GroupRecord before = space.image.group[groupNumber - 1];
    edited.group[groupNumber - 1] = recordFromControls();

    for (const Use& use : uses)
        if (use.number != 0 && !TakeOutputFromPoints(edited, use.number, use.function, prompter))
            return {false, use.field};

    if (c.alarmOut != 0 && outputPort(edited, c.alarmOut).typeFlags == kOutputTimed) {
        warn(prompter,
             output(c.alarmOut) + " will be changed from a timed type to an on/off type for the Alarm Present Output.");
        SetOutputOnOff(outputPort(edited, c.alarmOut));
    }
    if (c.newAlarmOut != 0 && outputPort(edited, c.newAlarmOut).typeFlags == kOutputTimed) {
        warn(prompter,
             output(c.newAlarmOut) + " will be changed from a timed type to an on/off type for the New Alarm Output.");
        SetOutputOnOff(outputPort(edited, c.newAlarmOut));
    }
    // Any type other than timed is shown as on/off everywhere, so it is made timed too.
    if (c.ackOut != 0 && outputPort(edited, c.ackOut).typeFlags != kOutputTimed) {
        warn(prompter,
             output(c.ackOut) + " will be changed from an on/off type to a timed type for the Acknowledge Output.");
        SetOutputTimed(outputPort(edited, c.ackOut), kAckOutTimer);
    }

    if (c.ackCode.size() > kMaxCodeDigits)
        return refuse(prompter, "Ack code has too many digits - maximum is 7.", GroupField::AckCode);
    if (CheckDTMF(c.ackCode))
        return refuse(prompter, "Invalid digit found in the Ack code, use 0-9, *, #, A, B, C and D only.",
                      GroupField::AckCode);
    if (c.interrogateCode.size() > kMaxCodeDigits)
        return refuse(prompter, "Interrogate code has too many digits - maximum is 7.", GroupField::InterrogateCode);
    if (CheckDTMF(c.interrogateCode))
        return refuse(prompter, "Invalid digit found in the Interrogate code, use 0-9, *, #, A, B, C and D only.",
                      GroupField::InterrogateCode);

    if (c.shortCycles > kMaxShortCycles)
        return refuse(prompter, "Short Cycles is too large, maximum is 9.", GroupField::ShortCycles);
    if (c.shortTimer > kMaxTimer)
        return refuse(prompter, "Short Timer is too large, maximum is 255.", GroupField::ShortTimer);
    if (c.longTimer > kMaxTimer)
        return refuse(prompter, "Long Timer is too large, maximum is 255.", GroupField::LongTimer);

    if (c.ackIn != 0) {
        // The points on an input that already acknowledges a group are its
        // acknowledge points; only alarm points are taken away.
        if (AckInputGroups(space.image, c.ackIn) == 0 && !PointsOnInput(edited, c.ackIn).empty()) {
            const std::string text = input(c.ackIn) +
                                     " is presently being used as an alarm input in Points.  Changing it to the "
                                     "Acknowledge Input function will remove it from Points - Proceed?";
            if (prompter.ask(Message{"Warning", text, Icon::Warning, Buttons::YesNo}) != Answer::Yes)
                return {false, GroupField::AckIn};
            ClearInputPoints(edited, c.ackIn);
        }
        if (c.ackIn != before.ackIn)
            if (auto notice = debounceNotice(edited.hardware.port[c.ackIn - 1], c.ackIn))
                warn(prompter, *notice);
    }

    // Ports this edit frees that no group uses any more.
    if (before.ackIn != 0 && before.ackIn != c.ackIn && AckInputGroups(edited, before.ackIn) == 0)
        warn(prompter, input(before.ackIn) +
                           " is no longer used for Ack In by any group - it is now available as an alarm input.");
    const std::pair<int, const char*> released[] = {
        {before.alarmOut, "Alarm Out"}, {before.newAlarmOut, "New Alarm Out"}, {before.ackOut, "Ack Output"}};
    for (const auto& [number, name] : released)
        if (number != 0 && !CheckOtherGroups(edited, number))
            warn(prompter, output(number) + " is no longer used for " + name +
                               " by any group - it is now available as a general purpose output.");

    // The special use of the points left on the ports that gained or lost this group.
    struct Function {
        int before;
        int after;
        bool isOutput;
        std::uint8_t use;
    };
    const Function functions[] = {{before.alarmOut, c.alarmOut, true, kUseAlarmOut},
                                  {before.newAlarmOut, c.newAlarmOut, true, kUseNewAlarm},
                                  {before.ackOut, c.ackOut, true, kUseAckOut},
                                  {before.ackIn, c.ackIn, false, kUseAckIn}};
    for (const Function& function : functions) {
        if (function.before == function.after)
            continue;
        if (function.before != 0)
            SetPointsGroupUse(edited, function.isOutput, function.before, function.use, groupNumber, false);
        if (function.after != 0)
            SetPointsGroupUse(edited, function.isOutput, function.after, function.use, groupNumber, true);
    }
    // A point on an acknowledge input reports to no group itself.
    if (c.ackIn != 0 && c.ackIn != before.ackIn)
        for (int slot : PointsOnInput(edited, c.ackIn))
            edited.alm[slot].groupMask = 0;

    checked = edited;
    return {true, GroupField::None};
}

GroupCheck GroupEditor::CanClose(Prompter& prompter, Leaving how)
{
    if (!open)
        return {true, GroupField::None};
    if (how == Leaving::Other && changed()) {
        switch (WarningDialog(scope()).Execute(prompter)) {
        case WarningAnswer::GoBack: return {false, GroupField::None};
        case WarningAnswer::YesSave: return CanClose(prompter, Leaving::Exit);
        case WarningAnswer::NoSave: break;
        }
    }
    if (how == Leaving::Exit) {
        const GroupCheck result = check(prompter);
        if (!result.accepted)
            return result;
        writeBack();
    }
    close();
    return {true, GroupField::None};
}

void GroupEditor::writeBack()
{
    if (checked)
        space.commit(*checked);
    checked.reset();
}

void GroupEditor::close()
{
    open = false;
    leave();
}

void GroupEditor::leave()
{
    space.navigation.leaveEditor(
        {groupFlag(groupNumber), NavFlag::Hardware, NavFlag::Inputs, NavFlag::Outputs, NavFlag::Points});
}

} // namespace rk4
