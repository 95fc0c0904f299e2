#pragma once
// DirWin without a window: the working copy of one call-out directory (A..F),
// its opening check, the list lines with the fill percentage, the line
// operations (edit, insert, delete, copy, paste) with the capacity rules, and
// leaving. The Basic directory editor opens the same object for A and B.

#include "core/database/directory_codec.h"
#include "core/directory/line_editor.h"
#include "core/shell/editor.h"
#include "core/shell/navigation.h"

#include <functional>
#include <string>

namespace rk4 {

class Workspace;

// Longest line text (labels and parameters) a directory line may show.
inline constexpr std::size_t kMaxLineText = 118;
// Width the list pads every line to.
inline constexpr std::size_t kListWidth = 120;

class DirectoryEditor : public Editor {
  public:
    DirectoryEditor(Workspace& space, int dirIndex);

    int directory() const { return dirIndex; }
    char letter() const { return static_cast<char>('A' + dirIndex); }
    // The window's title, "DIRECTORY A".
    std::string title() const;

    // Takes the navigation flags, copies the directory out of the image,
    // clears it when its first byte is no valid start, and decodes it.
    void SetupWindow(Prompter& prompter);

    // The heading over the list, and the fill it shows.
    std::string DrawTitles() const;
    int usedPercent() const;
    int usedBytes() const;
    // Line 0..19 as the list shows it, padded to the list width: the lines in
    // use and the insertion place below the last of them carry their number,
    // the rest are blank.
    std::string DrawLine(int line) const;
    std::string MakeLine(int line) const;
    static std::string Padline(std::string text);

    int selectedLine = 0;
    void select(int line);

    // Opens the line editor on a copy of the selected line; `runDialog` shows
    // it (or, in tests, plays it). True when the line was replaced.
    using DialogRunner = std::function<void(LineEditor&)>;
    bool EditLine(Prompter& prompter, const DialogRunner& runDialog);
    bool InsertLine(Prompter& prompter);
    void DeleteLine();
    void CmCopyLine();
    bool CmPasteLine(Prompter& prompter);
    bool clipboardFull() const { return hasClipboard; }

    // Capacity: clears the line that takes the directory past its byte budget.
    bool CheckFill(Prompter& prompter);
    // Length: clears the entries from the one that takes the line's text past
    // 118 characters.
    bool CheckLine(Prompter& prompter, int line);
    void ClearLine(int line) { working[line] = DirLine{}; }

    const DirLines& lines() const { return working; }
    DirLines& lines() { return working; }
    // The directory's 256 bytes as Exit would write them.
    DirectoryRecord encoded() const;

    void writeBack() override;
    bool changed() const override;
    std::string scope() const override { return "this Directory"; }
    void leave() override;

  private:
    NavFlag flag() const;
    bool insertBlank(Prompter& prompter);

    Workspace& space;
    int dirIndex;
    DirectoryRecord raw;
    DirLines working{};
    DirLines opened{};
    bool clearedAsCorrupt = false;
    DirLine clipboardLine;
    bool hasClipboard = false;
};

} // namespace rk4
