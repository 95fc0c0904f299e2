#pragma once
// The Basic wizard: one question at a time, each answer written into the image
// as soon as it is accepted. The window shows `prompt()` and calls Forward,
// Backward, Yes and No; every check and every message lives here.

#include "core/common/prompter.h"
#include "core/database/database.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace rk4 {

enum class WizardStep {
    AlarmCount,
    AllToA,
    OtherAsWell,
    AlarmDirectory,
    InputFormat,
    DebounceScale,
    DebounceTime,
    OutputCount,
    OutputType,
    OnCode,
    OffCode,
    OutputScale,
    OutputTime,
    PhoneNumber,
    AnotherNumber,
    CycleTimer,
    AckCode,
    IntCode,
    OutputIntCode,
    Rings,
    CallProgress,
    AccessCode,
    ModemCode,
    ModemTime,
    Complete,
};

// Where the wizard is: the question and the alarm, output, directory and
// phone number it is about.
struct WizardPosition {
    WizardStep step = WizardStep::AlarmCount;
    int alarmIndex = 0;
    int outputIndex = 0;
    int dirIndex = 0; // 0 = A, 1 = B
    int phoneIndex = 0;
    bool operator==(const WizardPosition&) const = default;
};

enum class WizardAnswer { Choice, Text, YesNo, None };

// What the window shows for the current question.
struct WizardPrompt {
    std::string title;    // the step's heading ("COMPLETE" at the end)
    std::string status;   // how things are set now; empty for most questions
    std::string question; // the question itself
    WizardAnswer answer = WizardAnswer::None;
    std::vector<std::string> choices;
    int choice = 0;
    std::string entry;
    std::size_t maxLength = 0;
    int stage = 1; // 1..kWizardStages, for the progress shown
};

inline constexpr int kWizardStages = 12;
inline constexpr std::size_t kWizardEntryLength = 49;
inline constexpr char kWizardExitTitle[] = "Exit the Basic Wizard";
inline constexpr char kWizardExitQuestion[] =
    "Exiting the Basic Wizard will result in the default Basic configuration.  Do you still want to exit?";
inline constexpr char kWizardFinished[] =
    "The Basic Wizard is finished.\nYou will be returned to the main screen where all of the settings can be viewed "
    "and changed.";

// "first" .. "twentyth" for 0..19.
const char* ordinalWord(int index);

// The stage names the progress list shows, one per stage.
const std::array<const char*, kWizardStages>& wizardStageNames();

class BasicWizard {
  public:
    // Starts at the first question on `image`, a freshly made Basic default
    // database. When Directory A or B already holds lines (they were kept on
    // purpose), no phone numbers are asked and the directories stay as they are.
    explicit BasicWizard(Database& image);

    const WizardPosition& position() const { return at; }
    WizardStep step() const { return at.step; }
    WizardPrompt prompt() const;
    bool finished() const { return at.step == WizardStep::Complete; }
    bool asksPhoneNumbers() const { return askNumbers; }
    bool canGoBack() const { return !history.empty() && !finished(); }

    // The answer being given: the entry text (cut to the question's length)
    // or the chosen row.
    void setEntry(const std::string& text);
    void setChoice(int index);

    // Checks and stores the current answer and moves to the next question;
    // false when the answer was refused or the user chose to change it.
    bool Forward(Prompter& prompter);
    // The question before, as it was asked; nothing is checked.
    void Backward();
    bool Yes();
    bool No();

    // Leaving: true when the wizard may close. Before the end it asks, and a
    // Yes puts the default Basic database back.
    bool CanClose(Prompter& prompter);

    // The answers kept outside the image until the end.
    const std::array<std::array<std::string, 20>, 2>& phoneNumbers() const { return numbers; }

  private:
    void SetupWindow();
    void go(WizardPosition next);
    void advance(Prompter& prompter);
    WizardPosition afterAlarms() const;
    WizardPosition afterOutput(int output) const;
    WizardPosition directoryStart(int directory) const;
    WizardPosition afterDirectory(int directory) const;
    WizardPosition afterOutputs() const;
    bool directoryUsed(int directory) const;
    void loadEntry();

    bool SaveAlarmCount(Prompter& prompter);
    void SaveUsingDir(int directory);
    void SaveFormat();
    bool SaveDebounceTime(Prompter& prompter);
    void SaveOutputCount();
    void SaveOutputType(int output);
    bool SaveOnCode(Prompter& prompter);
    bool SaveOffCode(Prompter& prompter);
    bool SaveOutputTime(Prompter& prompter);
    bool SavePhoneNumber(Prompter& prompter);
    bool SaveCycleTimer(Prompter& prompter);
    bool SaveAckCode(Prompter& prompter);
    bool SaveIntCode(Prompter& prompter, int group);
    bool SaveAccessCode(Prompter& prompter);
    bool SaveModemCode(Prompter& prompter);
    bool SaveModemTime(Prompter& prompter);
    bool CompareCodes(Prompter& prompter);
    void writeDirectories();
    bool backTo(WizardStep step, int dirIndex);

    Database& image;
    Database start; // the default Basic database the wizard began on
    WizardPosition at;
    std::vector<WizardPosition> history;
    bool askNumbers = true;

    std::string entry;
    int choice = 0;

    int alarmCount = 8;
    int allDirectory = 0; // the directory every alarm was first set to
    int outputCount = 0;
    bool debounceMinutes = false;
    std::array<bool, 4> outputTimed{};
    std::array<bool, 4> outputMinutes{};
    std::array<std::array<std::string, 20>, 2> numbers{};
    std::array<int, 2> numberCount{};
};

} // namespace rk4
