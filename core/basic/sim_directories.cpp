#include "core/basic/sim_directories.h"

#include "core/basic/basic_fields.h"
#include "core/database/directory_codec.h"
#include "core/database/dtmf.h"
#include "core/database/n11.h"
#include "core/database/validators.h"
#include "core/hardware/time_field.h"
#include "core/shell/workspace.h"

#include <algorithm>

namespace rk4 {

namespace {

constexpr int kMinCycle = 1;
constexpr int kMaxCycle = 255;

void refuse(Prompter& prompter, const std::string& text) { prompter.tell("Error", text, Icon::Error); }

bool yes(Prompter& prompter, std::string text)
{
    return prompter.ask(Message{"Warning", std::move(text), Icon::Warning, Buttons::YesNo}) == Answer::Yes;
}

bool isSimple(const DirectoryRecord& record)
{
    const DirLines lines = DecodeDirectory(record);
    return std::all_of(lines.begin(), lines.end(), [](const DirLine& line) {
        return line.empty() || (line.command[0] == kCmdDial && line.commandCount() == 1);
    });
}

} // namespace

bool PhoneNumberEditor::CanClose(Prompter& prompter)
{
    std::string cleaned = number;
    const bool badDigit = CheckBasicPhone(cleaned);
    if (auto refusal = N11Refusal(cleaned, N11Wording::Basic)) {
        refuse(prompter, *refusal);
        return false;
    }
    if (cleaned.size() == 3) {
        refuse(prompter, kThreeDigitNumber);
        return false;
    }
    // Not a number: nothing to dial at all, or more than one DIAL entry holds.
    const bool dialable = std::any_of(cleaned.begin(), cleaned.end(), [](char c) { return c != '!'; });
    if (!dialable || cleaned.size() > kMaxParameterLength) {
        refuse(prompter, "This is not a valid number.");
        return false;
    }
    if (badDigit) {
        refuse(prompter, kInvalidPhoneDigit);
        return false;
    }
    if (cleaned.size() < 7 &&
        !yes(prompter, "The phone number is less than 7 digits long.  Are you sure you want this number?"))
        return false;
    number = cleaned;
    accepted = cleaned;
    return true;
}

SimDirEditor::SimDirEditor(Workspace& space) : space(space)
{
    load(0);
    load(1);
}

void SimDirEditor::load(int dir)
{
    const GroupRecord& group = space.image.group[dir];
    Directory& d = directory[dir];
    d.phoneNumbers = SimpleDirectoryNumbers(space.image.dir[dir]);
    simple[dir] = isSimple(space.image.dir[dir]);
    d.ackCode = dtmfCodeText(group.ackCode);
    d.interrogateCode = dtmfCodeText(group.interrogateCode);
    d.cycle = std::to_string(group.shortTimer);
    opened[dir] = d;
}

std::vector<std::string> SimDirEditor::UpdateList(int dir) const
{
    std::vector<std::string> lines;
    if (simple[dir]) {
        lines = directory[dir].phoneNumbers;
    } else {
        const DirLines decoded = DecodeDirectory(space.image.dir[dir]);
        for (int i = 0; i < lineCount(decoded); ++i)
            lines.push_back(dirLineText(decoded[i]));
    }
    lines.resize(kBasicPhoneNumbers, "empty");
    return lines;
}

int SimDirEditor::fill(int dir) const { return simpleDirectoryFill(directory[dir].phoneNumbers); }

std::string SimDirEditor::SetFill(int dir) const { return std::to_string(simpleFillPercent(fill(dir))) + "% filled"; }

bool SimDirEditor::CheckFill(Prompter& prompter, const std::vector<std::string>& others,
                             const std::string& number) const
{
    if (simpleDirectoryFill(others) + static_cast<int>(number.size()) <= kSimpleDirectoryBudget)
        return true;
    refuse(prompter, "There are too many entries in this directory - this line is not allowed.");
    return false;
}

std::optional<std::string> SimDirEditor::askNumber(const std::string& number, const NumberRunner& runDialog) const
{
    PhoneNumberEditor editor(number);
    runDialog(editor);
    return editor.result();
}

bool SimDirEditor::Insert(int dir, Prompter& prompter, const NumberRunner& runDialog)
{
    if (!simple[dir])
        return false;
    std::vector<std::string> numbers = directory[dir].phoneNumbers;
    const bool full = numbers.size() >= static_cast<std::size_t>(kBasicPhoneNumbers);
    if (full && !yes(prompter, "The directory is already full, inserting a new number will delete the last "
                               "number.  Continue?"))
        return false;
    const auto number = askNumber({}, runDialog);
    if (!number)
        return false;
    if (full)
        numbers.pop_back();
    if (!CheckFill(prompter, numbers, *number))
        return false;
    const std::size_t at = std::min<std::size_t>(selected[dir], numbers.size());
    numbers.insert(numbers.begin() + static_cast<std::ptrdiff_t>(at), *number);
    directory[dir].phoneNumbers = std::move(numbers);
    selected[dir] = static_cast<int>(at);
    return true;
}

bool SimDirEditor::Delete(int dir)
{
    std::vector<std::string>& numbers = directory[dir].phoneNumbers;
    const auto at = static_cast<std::size_t>(selected[dir]);
    if (!simple[dir] || at >= numbers.size())
        return false;
    numbers.erase(numbers.begin() + static_cast<std::ptrdiff_t>(at));
    return true;
}

bool SimDirEditor::Editing(int dir, Prompter& prompter, const NumberRunner& runDialog)
{
    if (!simple[dir])
        return false;
    std::vector<std::string> numbers = directory[dir].phoneNumbers;
    const auto at = static_cast<std::size_t>(selected[dir]);
    if (at >= numbers.size()) {
        if (numbers.size() >= static_cast<std::size_t>(kBasicPhoneNumbers))
            return false;
        selected[dir] = static_cast<int>(numbers.size());
        return Insert(dir, prompter, runDialog);
    }
    const auto number = askNumber(numbers[at], runDialog);
    if (!number || *number == numbers[at])
        return false;
    numbers.erase(numbers.begin() + static_cast<std::ptrdiff_t>(at));
    if (!CheckFill(prompter, numbers, *number))
        return false;
    directory[dir].phoneNumbers[at] = *number;
    return true;
}

void SimDirEditor::Advanced(int dir, const std::function<void()>& runFullEditor)
{
    if (directory[dir].phoneNumbers != opened[dir].phoneNumbers) {
        Database edited = space.image;
        SaveSimpleDirectory(directory[dir].phoneNumbers, edited.dir[dir]);
        space.commit(edited);
    }
    runFullEditor();
    // The codes and the cycle stay as edited here; the numbers are the image's now.
    directory[dir].phoneNumbers = SimpleDirectoryNumbers(space.image.dir[dir]);
    opened[dir].phoneNumbers = directory[dir].phoneNumbers;
    simple[dir] = isSimple(space.image.dir[dir]);
    selected[dir] = std::min(selected[dir], kBasicPhoneNumbers - 1);
}

bool SimDirEditor::CanClose(Prompter& prompter)
{
    for (int dir = 0; dir < 2; ++dir) {
        const Directory& d = directory[dir];
        auto stop = [&](Field field) {
            focusDirectory = dir;
            focus = field;
            return false;
        };
        if (CheckDTMF(d.ackCode)) {
            refuse(prompter, invalidCodeText("Acknowledge"));
            return stop(Field::AckCode);
        }
        if (CheckDTMF(d.interrogateCode)) {
            refuse(prompter, invalidCodeText("Interrogate"));
            return stop(Field::InterrogateCode);
        }
        const int cycle = parseWholeNumber(d.cycle);
        if (cycle < kMinCycle) {
            refuse(prompter, "The Cycle interval cannot be less than 1 min.");
            return stop(Field::Cycle);
        }
        if (cycle > kMaxCycle) {
            refuse(prompter, "The Cycle interval cannot be greater than 255 min.");
            return stop(Field::Cycle);
        }
        const std::string name = dir == 0 ? "Directory A" : "Directory B";
        if (!d.phoneNumbers.empty() && d.ackCode.empty() &&
            yes(prompter, name + " has phone numbers but the Acknowledge Code is empty.  Calls from this directory "
                                 "cannot be stopped without an Acknowledge code.  Do you want to enter the code now?"))
            return stop(Field::AckCode);
    }

    Database edited = space.image;
    for (int dir = 0; dir < 2; ++dir) {
        const Directory& d = directory[dir];
        GroupRecord& group = edited.group[dir];
        storeDtmfCode(d.ackCode, group.ackCode);
        storeDtmfCode(d.interrogateCode, group.interrogateCode);
        // A cycle left as it was keeps both timers, which Advanced mode may have set apart.
        if (d.cycle != opened[dir].cycle)
            group.shortTimer = group.longTimer = static_cast<std::uint8_t>(parseWholeNumber(d.cycle));
        // A list left as it was keeps the directory's bytes, commands beyond DIAL included.
        if (d.phoneNumbers != opened[dir].phoneNumbers)
            SaveSimpleDirectory(d.phoneNumbers, edited.dir[dir]);
    }
    space.commit(edited);
    focus = Field::None;
    return true;
}

} // namespace rk4
