#include "core/directory/directory_editor.h"

#include "core/shell/workspace.h"

#include <algorithm>

namespace rk4 {

namespace {

// The lines as they reach the unit: an empty line in the list would end the
// directory there, so the lines in use close up over it and none is lost.
DirLines withoutEmptyLines(const DirLines& lines)
{
    DirLines packed{};
    std::copy_if(lines.begin(), lines.end(), packed.begin(), [](const DirLine& line) { return !line.empty(); });
    return packed;
}

bool isValidStart(std::uint8_t byte)
{
    return byte == 0 || byte == kLineEnd || byte == kCmdDial || byte == kCmdWait || byte == kCmdAutoAck;
}

void refuse(Prompter& prompter, std::string text) { prompter.tell("Error", std::move(text), Icon::Error); }

} // namespace

DirectoryEditor::DirectoryEditor(Workspace& space, int dirIndex) : space(space), dirIndex(dirIndex) {}

NavFlag DirectoryEditor::flag() const { return static_cast<NavFlag>(static_cast<int>(NavFlag::DirA) + dirIndex); }

std::string DirectoryEditor::title() const { return std::string("DIRECTORY ") + letter(); }

void DirectoryEditor::SetupWindow(Prompter& prompter)
{
    space.navigation.enterEditor({flag()});
    raw = space.image.dir[dirIndex];
    clearedAsCorrupt = !isValidStart(raw.dirText[0]);
    if (clearedAsCorrupt) {
        refuse(prompter, "The information in this directory is corrupt - the data will be cleared.");
        raw.dirText.fill(0);
    }
    working = DecodeDirectory(raw);
    opened = working;
    selectedLine = 0;
    open = true;
}

int DirectoryEditor::usedBytes() const { return rk4::usedBytes(withoutEmptyLines(working)); }

int DirectoryEditor::usedPercent() const { return usedBytes() * 100 / static_cast<int>(DirectoryRecord::size); }

std::string DirectoryEditor::DrawTitles() const
{
    return title() +
           "   SEQUENCE            DESCRIPTION OF OPERATION           % USED = " + std::to_string(usedPercent());
}

std::string DirectoryEditor::MakeLine(int line) const
{
    const int number = line + 1;
    return std::string(" ") + (number < 10 ? " " : "") + std::to_string(number) + "  " + dirLineText(working[line]);
}

std::string DirectoryEditor::Padline(std::string text)
{
    if (text.size() < kListWidth)
        text.append(kListWidth - text.size(), ' ');
    return text;
}

std::string DirectoryEditor::DrawLine(int line) const
{
    int lastUsed = -1;
    for (int i = 0; i < kDirectoryLines; ++i)
        if (!working[i].empty())
            lastUsed = i;
    return Padline(line <= lastUsed + 1 ? MakeLine(line) : std::string());
}

void DirectoryEditor::select(int line) { selectedLine = std::clamp(line, 0, kDirectoryLines - 1); }

bool DirectoryEditor::EditLine(Prompter& prompter, const DialogRunner& runDialog)
{
    LineEditor dialog(working[selectedLine], dirIndex, selectedLine, space.image.gen.callProgress != 0);
    runDialog(dialog);
    if (!dialog.accepted())
        return false;
    working[selectedLine] = dialog.result();
    CheckLine(prompter, selectedLine);
    CheckFill(prompter);
    return true;
}

bool DirectoryEditor::insertBlank(Prompter& prompter)
{
    if (selectedLine == kDirectoryLines - 1 || !working.back().empty()) {
        refuse(prompter, "All of the Directory lines are full.  This line cannot be inserted.");
        return false;
    }
    std::move_backward(working.begin() + selectedLine, working.end() - 1, working.end());
    ClearLine(selectedLine);
    return true;
}

bool DirectoryEditor::InsertLine(Prompter& prompter)
{
    if (!insertBlank(prompter))
        return false;
    CheckFill(prompter);
    return true;
}

void DirectoryEditor::DeleteLine()
{
    std::move(working.begin() + selectedLine + 1, working.end(), working.begin() + selectedLine);
    ClearLine(kDirectoryLines - 1);
}

void DirectoryEditor::CmCopyLine()
{
    clipboardLine = working[selectedLine];
    hasClipboard = true;
}

bool DirectoryEditor::CmPasteLine(Prompter& prompter)
{
    if (!hasClipboard)
        return false;
    if (!working[selectedLine].empty()) {
        switch (prompter.ask(Message{"Question",
                                     "The selected line contains commands.  Do you want to replace these commands?",
                                     Icon::Question, Buttons::YesNoCancel})) {
        case Answer::Yes: break;
        case Answer::No:
            if (!insertBlank(prompter))
                return false;
            break;
        default: return false;
        }
    }
    working[selectedLine] = clipboardLine;
    CheckFill(prompter);
    return true;
}

bool DirectoryEditor::CheckFill(Prompter& prompter)
{
    bool fits = true;
    for (;;) {
        int count = 0;
        int over = -1;
        for (int i = 0; i < kDirectoryLines && over < 0; ++i) {
            if (working[i].empty())
                continue;
            count += lineCost(working[i]);
            if (count > kDirectoryByteBudget)
                over = i;
        }
        if (over < 0)
            return fits;
        if (fits)
            refuse(prompter, "There are too many entries in this directory - this line is not allowed.");
        fits = false;
        ClearLine(over);
    }
}

bool DirectoryEditor::CheckLine(Prompter& prompter, int line)
{
    DirLine& entries = working[line];
    std::size_t length = 0;
    for (int c = 0; c < entries.commandCount(); ++c) {
        std::string label;
        ExpandCommand(entries.command[c], label);
        length += label.size() + entries.parameter[c].size();
        if (length > kMaxLineText) {
            for (int rest = c; rest < kCommandsPerLine; ++rest) {
                entries.command[rest] = 0;
                entries.parameter[rest].clear();
            }
            refuse(prompter, "This directory line has too many entries - excess entries have been deleted.");
            return false;
        }
    }
    return true;
}

DirectoryRecord DirectoryEditor::encoded() const
{
    DirectoryRecord record = raw;
    EncodeDirectory(withoutEmptyLines(working), record);
    return record;
}

void DirectoryEditor::writeBack()
{
    Database edited = space.image;
    edited.dir[dirIndex] = encoded();
    space.commit(edited);
}

bool DirectoryEditor::changed() const
{
    return clearedAsCorrupt || withoutEmptyLines(working) != withoutEmptyLines(opened);
}

void DirectoryEditor::leave() { space.navigation.leaveEditor({flag()}); }

} // namespace rk4
