#pragma once
// DirDialog without a window: the edit buffer of one directory line (twelve
// entry slots), the command buttons with their ordering rules, inserting and
// deleting entries, and the entry checks that run when the dialog closes.

#include "core/common/prompter.h"
#include "core/database/directory_codec.h"

#include <array>
#include <cstdint>
#include <string>

namespace rk4 {

// The line editor's command numbers; Delete removes the selected entry.
enum class DirCommand {
    Dial = 0,
    Wait = 1,
    Dtmf = 2,
    Alert = 3,
    AutoAck = 4,
    Answer = 5,
    Voice = 6,
    Signal = 7,
    Delete = 20
};

std::uint8_t commandLetter(DirCommand command);

// One entry slot of the buffer. An empty slot holds the letter 0.
struct LineSlot {
    std::uint8_t command = 0;
    std::string parameter;

    bool empty() const { return command == 0; }
    // " [DIAL]" and the like; " " for an empty slot.
    std::string label() const;
    // Only DIAL, WAIT and DTMF take a typed parameter.
    bool editable() const;
    bool operator==(const LineSlot&) const = default;
};

// What a close check decided; on a refusal `focus` is the slot whose
// parameter field gets the focus with its text selected (-1: none).
struct LineCheck {
    bool accepted = false;
    int focus = -1;
};

class LineEditor {
  public:
    // `directory` 0..5 and `lineIndex` 0..19 only name the line in the title.
    LineEditor(const DirLine& line, int directory, int lineIndex, bool callProgress);

    // "EDITING DIRECTORY A - LINE 3"
    std::string title() const;

    std::array<LineSlot, kCommandsPerLine> entries;
    int selectedSlot = 0;

    int entryCount() const;
    void UpdateSelect(int slot);
    // Parameters longer than an entry holds are cut.
    void setParameter(int slot, std::string text);

    // The command buttons. Each checks its rules (refusals leave the line as it
    // was) and then inserts; true when the buffer changed.
    bool DirDial(Prompter& prompter);
    bool DirWait(Prompter& prompter);
    bool DirDTMF(Prompter& prompter);
    bool DirAlert(Prompter& prompter);
    bool DirAutoAck(Prompter& prompter);
    bool DirAnswer(Prompter& prompter);
    bool DirVoice(Prompter& prompter);
    bool DirSignal(Prompter& prompter);
    bool DirDelete(Prompter& prompter) { return InsertCommand(DirCommand::Delete, prompter); }
    bool press(DirCommand command, Prompter& prompter);

    // Places `command` at the selected slot, shifting later entries right, or
    // deletes the selected entry (DirCommand::Delete).
    bool InsertCommand(DirCommand command, Prompter& prompter);

    // OK. With `enterInField` (Enter pressed inside a parameter field) the
    // dialog stays open and the selection moves to the next slot. When every
    // check passes the buffer becomes the result.
    LineCheck CanClose(Prompter& prompter, bool enterInField = false);

    // Any way out but OK: asks to keep the changes when the buffer differs from
    // the line. Keeping them runs the OK checks. accepted=false stays open.
    LineCheck CanLeave(Prompter& prompter);

    bool changed() const { return buffer() != original; }
    // Closed with OK (or kept on leaving): result() is the new line.
    bool accepted() const { return done; }
    // True when the accepted line differs from the one the editor opened on.
    bool lineChanged() const { return done && result() != original; }
    const DirLine& result() const { return accepted_; }
    DirLine buffer() const;

  private:
    // Where a new command goes: the selected slot, or the slot after the last
    // entry when an empty slot further down is selected.
    int position() const;
    std::uint8_t first() const { return entries[0].command; }
    bool CheckAuto(Prompter& prompter) const;
    bool CheckWait(Prompter& prompter) const;
    // DTMF, ALERT, VOICE and SIGNAL: never first, never after AUTO ACK.
    bool insertAfterFirst(DirCommand command, const char* firstRefusal, Prompter& prompter);
    LineCheck checkDial(Prompter& prompter);
    LineCheck checkDtmf(Prompter& prompter, int slot);
    LineCheck checkWait(Prompter& prompter, int slot);

    DirLine original;
    DirLine accepted_;
    int directoryIndex;
    int lineIndex;
    bool callProgress;
    bool done = false;
};

} // namespace rk4
