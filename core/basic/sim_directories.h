#pragma once
// SimDirDialog and PhoneNumberDialog without a window: the phone numbers,
// codes and cycle interval of Directories A and B, which report for groups 1
// and 2, with the directories' capacity rule.

#include "core/basic/sim_dialog.h"
#include "core/database/database.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace rk4 {

class Workspace;

// One phone number being entered or changed.
class PhoneNumberEditor : public SimDialogEditor {
  public:
    explicit PhoneNumberEditor(std::string number = {}) : number(number), original(std::move(number)) {}

    std::string number; // the field

    bool CanClose(Prompter& prompter) override;
    bool changed() const override { return number != original; }
    std::string scope() const override { return "this phone number"; }

    // The number as stored (blanks and '-' removed) once the dialog closed with it.
    const std::optional<std::string>& result() const { return accepted; }

  private:
    std::string original;
    std::optional<std::string> accepted;
};

class SimDirEditor : public SimDialogEditor {
  public:
    enum class Field { None, AckCode, InterrogateCode, Cycle };

    struct Directory {
        std::vector<std::string> phoneNumbers; // at most 20, as stored
        std::string ackCode;
        std::string interrogateCode;
        std::string cycle; // minutes between call-out cycles
        bool operator==(const Directory&) const = default;
    };

    explicit SimDirEditor(Workspace& space);

    std::string title() const { return "Directories"; }

    std::array<Directory, 2> directory; // A and B
    std::array<int, 2> selected{};      // the selected slot 0..19 of each list

    // The twenty slots of a list; an empty slot shows "empty". A directory
    // that holds more than one DIAL a line shows its lines as the full editor does.
    std::vector<std::string> UpdateList(int dir) const;
    // True when the directory holds nothing but one DIAL a line, so the
    // numbers can be changed here. Otherwise only Advanced changes it: writing
    // the numbers back would drop its other commands.
    bool numbersOnly(int dir) const { return simple[dir]; }
    int fill(int dir) const;
    // "12% filled"
    std::string SetFill(int dir) const;

    // The dialog that enters or changes a number: `runDialog` shows it (or, in
    // tests, plays it).
    using NumberRunner = std::function<void(PhoneNumberEditor&)>;
    // Inserts a number above the selected slot (after the last number when an
    // empty slot is selected). True when the list changed.
    bool Insert(int dir, Prompter& prompter, const NumberRunner& runDialog);
    bool Delete(int dir);
    // Changes the selected number; on an empty slot, adds one after the last.
    bool Editing(int dir, Prompter& prompter, const NumberRunner& runDialog);
    // Opens the full directory editor on A or B. It edits the image itself, so
    // the numbers as changed here are written there first, and the list is read
    // back from the image when it closes.
    void Advanced(int dir, const std::function<void()>& runFullEditor);

    bool CanClose(Prompter& prompter) override;
    bool changed() const override { return directory != opened; }
    std::string scope() const override { return "the Directories"; }

    int focusDirectory = 0;
    Field focus = Field::None;

  private:
    // Refuses `number` when, with the numbers of `others`, it passes the budget.
    bool CheckFill(Prompter& prompter, const std::vector<std::string>& others, const std::string& number) const;
    std::optional<std::string> askNumber(const std::string& number, const NumberRunner& runDialog) const;
    void load(int dir);

    Workspace& space;
    std::array<Directory, 2> opened;
    std::array<bool, 2> simple{};
};

} // namespace rk4
