#include "core/directory/line_editor.h"

#include "core/database/n11.h"
#include "core/database/validators.h"
#include "core/shell/warning_dialog.h"

#include <algorithm>

namespace rk4 {

namespace {

struct CommandInfo {
    DirCommand command;
    std::uint8_t letter;
    const char* defaultParameter;
};

constexpr CommandInfo kCommands[] = {
    {DirCommand::Dial, kCmdDial, "0000"}, {DirCommand::Wait, kCmdWait, "000"},    {DirCommand::Dtmf, kCmdDtmf, "0000"},
    {DirCommand::Alert, kCmdAlert, ""},   {DirCommand::AutoAck, kCmdAutoAck, ""}, {DirCommand::Answer, kCmdAnswer, ""},
    {DirCommand::Voice, kCmdVoice, ""},   {DirCommand::Signal, kCmdSignal, ""},
};

const CommandInfo& infoOf(DirCommand command)
{
    for (const CommandInfo& info : kCommands)
        if (info.command == command)
            return info;
    return kCommands[0]; // Delete never asks for its info
}

void refuse(Prompter& prompter, std::string text) { prompter.tell("Error", std::move(text), Icon::Error); }

// A Yes/No question whose Yes sends the user back to the field.
bool wantsToChange(Prompter& prompter, std::string text)
{
    return prompter.ask(Message{"Warning", std::move(text), Icon::Warning, Buttons::YesNo}) == Answer::Yes;
}

// Decimal digits of any length above 255 (CheckNumber has passed).
bool aboveWaitLimit(const std::string& digits)
{
    const auto start = digits.find_first_not_of('0');
    if (start == std::string::npos)
        return false;
    const std::string value = digits.substr(start);
    return value.size() > 3 || std::stoi(value) > 255;
}

constexpr char kCallProgressAdvice[] =
    "Call Progress is enabled in the General section."
    "\nUsing Call Progress and ANSWER immediately after a Dial command duplicates the requirement for a response "
    "by the called party."
    "\nUse the What's This help for the ANSWER command to get a full explanation.";

} // namespace

std::uint8_t commandLetter(DirCommand command) { return command == DirCommand::Delete ? 0 : infoOf(command).letter; }

std::string LineSlot::label() const
{
    std::string text = " ";
    ExpandCommand(command, text);
    return text;
}

bool LineSlot::editable() const { return command == kCmdDial || command == kCmdWait || command == kCmdDtmf; }

LineEditor::LineEditor(const DirLine& line, int directory, int lineIndex, bool callProgress)
    : original(line), directoryIndex(directory), lineIndex(lineIndex), callProgress(callProgress)
{
    for (int s = 0; s < line.commandCount(); ++s)
        entries[s] = {line.command[s], line.parameter[s]};
}

std::string LineEditor::title() const
{
    return "EDITING DIRECTORY " + std::string(1, static_cast<char>('A' + directoryIndex)) + " - LINE " +
           std::to_string(lineIndex + 1);
}

int LineEditor::entryCount() const
{
    return static_cast<int>(std::find_if(entries.begin(), entries.end(), [](const LineSlot& s) { return s.empty(); }) -
                            entries.begin());
}

void LineEditor::UpdateSelect(int slot) { selectedSlot = std::clamp(slot, 0, kCommandsPerLine - 1); }

void LineEditor::setParameter(int slot, std::string text)
{
    if (text.size() > kMaxParameterLength)
        text.resize(kMaxParameterLength);
    entries[slot].parameter = std::move(text);
}

DirLine LineEditor::buffer() const
{
    DirLine line;
    for (int s = 0; s < entryCount(); ++s) {
        line.command[s] = entries[s].command;
        line.parameter[s] = entries[s].parameter;
    }
    return line;
}

int LineEditor::position() const { return std::min(selectedSlot, entryCount()); }

bool LineEditor::CheckAuto(Prompter& prompter) const
{
    if (first() == kCmdAutoAck) {
        refuse(prompter, "The Auto Ack command must be the only entry on a directory line.");
        return false;
    }
    // The selected entry is the one that would follow the new command.
    if (entries[position()].command == kCmdAutoAck) {
        refuse(prompter, "Auto Ack command cannot have commands before it on the same directory line.");
        return false;
    }
    return true;
}

bool LineEditor::CheckWait(Prompter& prompter) const
{
    if (position() != 0 && first() == kCmdWait) {
        refuse(prompter, "If Wait is the first entry no other commands can follow.");
        return false;
    }
    return true;
}

bool LineEditor::insertAfterFirst(DirCommand command, const char* firstRefusal, Prompter& prompter)
{
    if (position() == 0) {
        refuse(prompter, firstRefusal);
        return false;
    }
    if (first() == kCmdAutoAck) {
        refuse(prompter, "Entries after AUTO ACK are not allowed.");
        return false;
    }
    return InsertCommand(command, prompter);
}

bool LineEditor::DirDial(Prompter& prompter)
{
    if (!CheckAuto(prompter))
        return false;
    if (position() != 0) {
        refuse(prompter, "Dial command must be first in the list.");
        return false;
    }
    if (first() == kCmdDial)
        return false;
    return InsertCommand(DirCommand::Dial, prompter);
}

bool LineEditor::DirWait(Prompter& prompter)
{
    if (!CheckAuto(prompter))
        return false;
    if (position() == 0 && first() == kCmdDial) {
        refuse(prompter, "Wait cannot be used before a DIAL command.");
        return false;
    }
    return InsertCommand(DirCommand::Wait, prompter);
}

bool LineEditor::DirDTMF(Prompter& prompter)
{
    return insertAfterFirst(DirCommand::Dtmf, "DTMF cannot be the first command - possibly dial first?", prompter);
}

bool LineEditor::DirAlert(Prompter& prompter)
{
    return insertAfterFirst(DirCommand::Alert, "Alert cannot be the first command - possibly dial first?", prompter);
}

bool LineEditor::DirVoice(Prompter& prompter)
{
    return insertAfterFirst(DirCommand::Voice, "Voice cannot be the first command - possibly dial first?", prompter);
}

bool LineEditor::DirSignal(Prompter& prompter)
{
    return insertAfterFirst(DirCommand::Signal, "Signal cannot be the first command - possibly dial first?", prompter);
}

bool LineEditor::DirAutoAck(Prompter& prompter)
{
    // AUTO ACK stands alone: whatever is on the line would end up after it.
    const int count = entryCount();
    if (count >= 2 || (position() == 0 && count >= 1)) {
        refuse(prompter, "Auto Ack command cannot have commands following on the same directory line.");
        return false;
    }
    if (position() != 0) {
        refuse(prompter, "Auto Ack command must be the first and only command on a directory line.");
        return false;
    }
    return InsertCommand(DirCommand::AutoAck, prompter);
}

bool LineEditor::DirAnswer(Prompter& prompter)
{
    if (!CheckWait(prompter) || !CheckAuto(prompter))
        return false;
    if (position() == 0) {
        refuse(prompter, "Answer cannot be the first command - possibly dial first?");
        return false;
    }
    if (first() != kCmdDial) {
        refuse(prompter, "The Answer command can only be used after dialing.");
        return false;
    }
    if (callProgress && position() == 1)
        prompter.tell("Warning", kCallProgressAdvice, Icon::Warning);
    return InsertCommand(DirCommand::Answer, prompter);
}

bool LineEditor::press(DirCommand command, Prompter& prompter)
{
    switch (command) {
    case DirCommand::Dial: return DirDial(prompter);
    case DirCommand::Wait: return DirWait(prompter);
    case DirCommand::Dtmf: return DirDTMF(prompter);
    case DirCommand::Alert: return DirAlert(prompter);
    case DirCommand::AutoAck: return DirAutoAck(prompter);
    case DirCommand::Answer: return DirAnswer(prompter);
    case DirCommand::Voice: return DirVoice(prompter);
    case DirCommand::Signal: return DirSignal(prompter);
    case DirCommand::Delete: return DirDelete(prompter);
    }
    return false;
}

bool LineEditor::InsertCommand(DirCommand command, Prompter& prompter)
{
    if (command == DirCommand::Delete) {
        if (entries[selectedSlot].empty())
            return false;
        if (selectedSlot == 0) {
            if (prompter.ask(Message{"Warning",
                                     "Deleting the first entry will clear the entire directroy line - Proceed?.",
                                     Icon::Warning, Buttons::YesNo}) != Answer::Yes)
                return false;
            entries = {};
            return true;
        }
        std::move(entries.begin() + selectedSlot + 1, entries.end(), entries.begin() + selectedSlot);
        entries.back() = {};
        return true;
    }

    if (entryCount() == kCommandsPerLine &&
        prompter.ask(Message{"Warning",
                             "The maximum number of commands are presently entered, the last entry will be lost - "
                             "Proceed?.",
                             Icon::Warning, Buttons::YesNo}) != Answer::Yes)
        return false;
    const int at = position();
    std::move_backward(entries.begin() + at, entries.end() - 1, entries.end());
    const CommandInfo& info = infoOf(command);
    entries[at] = {info.letter, info.defaultParameter};
    // A command with a parameter keeps the selection for typing it; any other
    // moves on, ready for the next command.
    UpdateSelect(entries[at].editable() ? at : at + 1);
    return true;
}

LineCheck LineEditor::checkDial(Prompter& prompter)
{
    std::string& number = entries[0].parameter;
    if (entries[1].empty()) {
        refuse(prompter, "Dial command must be followed by an action.");
        return {false, 0};
    }
    if (number == "!") {
        refuse(prompter, "Dial command cannot be a single '!' delay.");
        return {false, 0};
    }
    const bool badDigit = CheckPhone(number); // also drops blanks and '-'
    if (auto refusal = N11Refusal(number, N11Wording::DirectoryEditor)) {
        refuse(prompter, *refusal);
        return {false, 0};
    }
    if (number.size() == 3) {
        refuse(prompter, "Not a valid phone number -  Three digit numbers are not allowed.");
        return {false, 0};
    }
    if (number.size() < 7 &&
        wantsToChange(prompter, "Not a valid phone number -  The dial command has less than 7 digits.  Do you want "
                                "to change it?"))
        return {false, 0};
    if (number == "0000" && wantsToChange(prompter, "The DIAL command requires a telephone number - Enter it now?"))
        return {false, 0};
    if (number.empty() && wantsToChange(prompter, "The DIAL command has no digits - Do you want to change it?"))
        return {false, 0};
    if (badDigit) {
        refuse(prompter, "Invalid digit found in the DIAL command, Use 0-9, #, or *.");
        return {false, 0};
    }
    return {true, -1};
}

LineCheck LineEditor::checkDtmf(Prompter& prompter, int slot)
{
    const std::string& digits = entries[slot].parameter;
    if (digits == "0000" &&
        wantsToChange(prompter, "The DTMF command still has default values - Do you want to change it?"))
        return {false, slot};
    if (digits.empty() && wantsToChange(prompter, "The DTMF command has no digits - Do you want to change it?"))
        return {false, slot};
    if (digits == "!") {
        refuse(prompter, "DTMF command cannot be a single '!' delay.");
        return {false, slot};
    }
    if (CheckDTMF(digits)) {
        refuse(prompter, "Invalid DTMF digit found, Use 0-9, #, *, A, B, C, or D.");
        return {false, slot};
    }
    return {true, -1};
}

LineCheck LineEditor::checkWait(Prompter& prompter, int slot)
{
    const std::string& seconds = entries[slot].parameter;
    if (seconds == "000" &&
        wantsToChange(prompter, "The WAIT command still has default values - Do you want to change it?"))
        return {false, slot};
    if (seconds.empty() && wantsToChange(prompter, "The WAIT command has no time - Do you want to change it?"))
        return {false, slot};
    if (CheckNumber(seconds)) {
        refuse(prompter, "Invalid digit found in the WAIT command, use 0-9 only.");
        return {false, slot};
    }
    // 255 itself passes although the text says "less than".
    if (aboveWaitLimit(seconds)) {
        refuse(prompter, "The WAIT interval is too long, it must be less than 255.");
        return {false, slot};
    }
    return {true, -1};
}

LineCheck LineEditor::CanClose(Prompter& prompter, bool enterInField)
{
    if (enterInField) {
        UpdateSelect(selectedSlot + 1);
        return {false, selectedSlot};
    }
    if (first() == kCmdDial)
        if (LineCheck check = checkDial(prompter); !check.accepted)
            return check;
    for (int s = 0; s < entryCount(); ++s)
        if (entries[s].command == kCmdDtmf)
            if (LineCheck check = checkDtmf(prompter, s); !check.accepted)
                return check;
    for (int s = 0; s < entryCount(); ++s)
        if (entries[s].command == kCmdWait)
            if (LineCheck check = checkWait(prompter, s); !check.accepted)
                return check;
    accepted_ = buffer();
    done = true;
    return {true, -1};
}

LineCheck LineEditor::CanLeave(Prompter& prompter)
{
    if (!changed())
        return {true, -1};
    WarningDialog dialog("this Directory line");
    switch (dialog.Execute(prompter)) {
    case WarningAnswer::GoBack: return {false, -1};
    case WarningAnswer::NoSave: return {true, -1};
    case WarningAnswer::YesSave: break;
    }
    return CanClose(prompter);
}

} // namespace rk4
