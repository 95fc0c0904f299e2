#include "core/basic/wizard.h"

#include "core/basic/basic_fields.h"
#include "core/database/defaults.h"
#include "core/database/directory_codec.h"
#include "core/database/dtmf.h"
#include "core/database/n11.h"
#include "core/database/validators.h"
#include "core/hardware/time_field.h"

#include <algorithm>

namespace rk4 {

namespace {

constexpr std::uint8_t kNormallyHighBit = 0x80;
constexpr std::uint8_t kDebounceMinutesBit = 0x01;
constexpr std::uint8_t kTimerMinutesBit = 0x02;
constexpr std::uint8_t kTimedOutput = 0x01;
constexpr int kFirstOutputPoint = 8;
constexpr int kFirstOutputPort = 8;
constexpr int kUserOutputs = 4;
constexpr int kMaxCycleMinutes = 255;
constexpr float kMinModemSeconds = 60.0f;
constexpr float kMaxModemSeconds = 1638.0f;
constexpr int kMaxRings = 9;

const char* const kOrdinals[] = {"first",     "second",      "third",      "fourth",     "fifth",
                                 "sixth",     "seventh",     "eighth",     "ninth",      "tenth",
                                 "eleventh",  "twelfth",     "thirteenth", "fourteenth", "fifteenth",
                                 "sixteenth", "seventeenth", "eighteenth", "nineteenth", "twentyth"};

const std::array<const char*, kWizardStages> kStageNames = {
    "ALARMS",      "ALARM DIRECTORIES", "INPUT FORMAT", "DEBOUNCE",      "OUTPUTS",    "OUTPUT SETTINGS",
    "DIRECTORIES", "OUTPUT CONTROLS",   "RINGS",        "CALL PROGRESS", "UNIT CODES", "COMPLETE"};

const char* const kFormats[] = {"Normally High", "Normally Low", "Normally High, Latching", "Normally Low, Latching"};

std::string letter(int directory) { return directory == 0 ? "A" : "B"; }

void refuse(Prompter& prompter, std::string text) { prompter.tell("Error", std::move(text), Icon::Error); }

bool saysYes(Prompter& prompter, std::string text)
{
    return prompter.ask(Message{"Warning", std::move(text), Icon::Warning, Buttons::YesNo}) == Answer::Yes;
}

// A "change it?" question: Yes keeps the user on the question.
bool wantsToChange(Prompter& prompter, std::string text) { return saysYes(prompter, std::move(text)); }

int stageOf(WizardStep step)
{
    switch (step) {
    case WizardStep::AlarmCount: return 1;
    case WizardStep::AllToA:
    case WizardStep::OtherAsWell:
    case WizardStep::AlarmDirectory: return 2;
    case WizardStep::InputFormat: return 3;
    case WizardStep::DebounceScale:
    case WizardStep::DebounceTime: return 4;
    case WizardStep::OutputCount: return 5;
    case WizardStep::OutputType:
    case WizardStep::OnCode:
    case WizardStep::OffCode:
    case WizardStep::OutputScale:
    case WizardStep::OutputTime: return 6;
    case WizardStep::PhoneNumber:
    case WizardStep::AnotherNumber:
    case WizardStep::CycleTimer:
    case WizardStep::AckCode:
    case WizardStep::IntCode: return 7;
    case WizardStep::OutputIntCode: return 8;
    case WizardStep::Rings: return 9;
    case WizardStep::CallProgress: return 10;
    case WizardStep::AccessCode:
    case WizardStep::ModemCode:
    case WizardStep::ModemTime: return 11;
    case WizardStep::Complete: return 12;
    }
    return 1;
}

// A stored time as the user would type it: "1.5" for 60 steps, "10" for 10 minutes.
std::string typedTime(std::uint16_t count, bool minutes)
{
    if (minutes)
        return std::to_string(count);
    std::string text = secondsText(count);
    while (text.back() == '0')
        text.pop_back();
    if (text.back() == '.')
        text.pop_back();
    return text;
}

// The output time and the debounce share their limits; only the word differs.
std::optional<std::uint16_t> intervalCount(Prompter& prompter, const std::string& text, bool minutes,
                                           const std::string& what)
{
    const float value = parseTimeValue(text);
    if (minutes) {
        if (value == 1.0f) {
            prompter.tell("Warning",
                          "Setting the " + what +
                              " interval to 1 minute with 1 minute resolution will result in a time between zero and "
                              "1 minute.  Use the Seconds setting for short times.",
                          Icon::Warning);
        } else if (value < 1.0f) {
            refuse(prompter, "The " + what + " interval cannot be less than 1 min.");
            return std::nullopt;
        } else if (value > kMaxMinutes) {
            refuse(prompter, "The " + what + " interval cannot be greater than 65535 min.");
            return std::nullopt;
        }
        return static_cast<std::uint16_t>(value);
    }
    if (value < 1.0f) {
        refuse(prompter, "The " + what + " interval cannot be less than 1 sec.");
        return std::nullopt;
    }
    if (value > kMaxSeconds) {
        refuse(prompter, "The " + what + " interval cannot be more than 1638 sec.");
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(value * 40.0f);
}

struct CodeKind {
    const char* name;      // as in "Invalid digit found in the <name> code"
    const char* emptyText; // the question an empty code asks
};

const CodeKind kAcknowledge{"Acknowledge", "The Acknowledge code is empty.  You will not be able to stop the alarm "
                                           "sequence.  Do you want to change it?"};
const CodeKind kInterrogate{"Interrogate", "The Interrogate code is empty.  You won't be able to query the unit for "
                                           "its status.  Do you want to change it?"};
const CodeKind kAccess{"Access",
                       "The Access code is empty.  Remote programming will be possible by ANYONE.  Do you want to "
                       "change it?"};
const CodeKind kModemEnable{"Modem Enable", "The Modem Enable code is empty.  Remote data transfer will not be "
                                            "possible.  Do you want to change it?"};
const CodeKind kOnCode{
    "DTMF ON", "The ON code is empty.  You will not be able to activate this output.  Do you want to change it?"};
const CodeKind kOffCode{"DTMF OFF", "The OFF code is empty.  You will not be able to de-activate this output.  Do you "
                                    "want to change it?"};

bool saveCode(Prompter& prompter, const std::string& text, const CodeKind& kind, DtmfCode& field)
{
    if (auto refusal = codeRefusal(text, kind.name)) {
        refuse(prompter, *refusal);
        return false;
    }
    if (text.empty() && wantsToChange(prompter, kind.emptyText))
        return false;
    storeDtmfCode(text, field);
    return true;
}

// One code taking part in the comparison at the end.
struct EnteredCode {
    std::string name;                    // "Acknowledge", "Interrogate", "Modem Enable", "Access"
    int directory;                       // 0 or 1; -1 for the unit's own codes
    std::string value;                   // as shown
    std::vector<WizardPosition> askedAt; // where it can be changed, latest first

    std::string head() const
    {
        return "The " + name + " Code [" + value + "]" +
               (directory < 0 ? " is the same as the "
                              : " for Directory " + letter(directory) + " is the same as the ");
    }
    std::string tail() const
    {
        return name + " Code" + (directory < 0 ? std::string() : " for Directory " + letter(directory));
    }
};

} // namespace

const char* ordinalWord(int index) { return kOrdinals[std::clamp(index, 0, kBasicPhoneNumbers - 1)]; }

const std::array<const char*, kWizardStages>& wizardStageNames() { return kStageNames; }

BasicWizard::BasicWizard(Database& image) : image(image), start(image)
{
    askNumbers = !IsDirectoryUsed(image, 0) && !IsDirectoryUsed(image, 1);
    debounceMinutes = image.hardware.port[0].scaleFlags & kDebounceMinutesBit;
    for (int i = 0; i < kUserOutputs; ++i) {
        const HardwarePort& port = image.hardware.port[kFirstOutputPort + i];
        outputTimed[i] = port.typeFlags & kTimedOutput;
        outputMinutes[i] = port.scaleFlags & kTimerMinutesBit;
    }
    SetupWindow();
}

void BasicWizard::SetupWindow()
{
    history.clear();
    at = WizardPosition{};
    loadEntry();
}

void BasicWizard::setEntry(const std::string& text) { entry = text.substr(0, prompt().maxLength); }

void BasicWizard::setChoice(int index)
{
    const int count = static_cast<int>(prompt().choices.size());
    choice = std::clamp(index, 0, std::max(count - 1, 0));
}

bool BasicWizard::directoryUsed(int directory) const
{
    for (int i = 0; i < alarmCount; ++i)
        if (image.alm[i].groupMask == directory + 1)
            return true;
    return false;
}

void BasicWizard::go(WizardPosition next)
{
    history.push_back(at);
    at = next;
    loadEntry();
}

void BasicWizard::Backward()
{
    if (!canGoBack())
        return;
    at = history.back();
    history.pop_back();
    loadEntry();
}

// The field shows what the question's answer is now, so going back shows the
// answer given and Forward alone keeps it.
void BasicWizard::loadEntry()
{
    entry.clear();
    const GroupRecord& group = image.group[at.dirIndex];
    const int output = at.outputIndex;
    switch (at.step) {
    case WizardStep::AlarmCount: choice = alarmCount; break;
    case WizardStep::InputFormat:
        choice = (image.hardware.port[0].typeFlags & kNormallyHighBit ? 0 : 1) + (image.alm[0].latching ? 2 : 0);
        break;
    case WizardStep::DebounceTime: {
        const HardwarePort& input = image.hardware.port[0];
        if (static_cast<bool>(input.scaleFlags & kDebounceMinutesBit) == debounceMinutes)
            entry = typedTime(input.debounce, debounceMinutes);
        break;
    }
    case WizardStep::OutputCount: choice = outputCount; break;
    case WizardStep::OnCode: entry = dtmfCodeText(image.alm[kFirstOutputPoint + output].onCode); break;
    case WizardStep::OffCode: entry = dtmfCodeText(image.alm[kFirstOutputPoint + output].offCode); break;
    case WizardStep::OutputTime: {
        const HardwarePort& port = image.hardware.port[kFirstOutputPort + output];
        if (static_cast<bool>(port.scaleFlags & kTimerMinutesBit) == outputMinutes[output])
            entry = typedTime(port.timer, outputMinutes[output]);
        break;
    }
    case WizardStep::PhoneNumber: entry = numbers[at.dirIndex][at.phoneIndex]; break;
    case WizardStep::CycleTimer: entry = std::to_string(group.shortTimer); break;
    case WizardStep::AckCode: entry = dtmfCodeText(group.ackCode); break;
    case WizardStep::IntCode: entry = dtmfCodeText(group.interrogateCode); break;
    case WizardStep::OutputIntCode: entry = dtmfCodeText(image.group[0].interrogateCode); break;
    case WizardStep::Rings: choice = std::clamp(image.gen.ringsToAnswer - 1, 0, kMaxRings - 1); break;
    case WizardStep::AccessCode: entry = dtmfCodeText(image.gen.accessCode); break;
    case WizardStep::ModemCode: entry = dtmfCodeText(image.gen.modemEnableCode); break;
    case WizardStep::ModemTime:
        if (const int out = image.gen.carrierDetectOut; out >= 1 && out <= 8)
            entry = typedTime(image.hardware.port[kFirstOutputPort + out - 1].timer, false);
        break;
    default: break;
    }
}

WizardPrompt BasicWizard::prompt() const
{
    WizardPrompt p;
    p.stage = stageOf(at.step);
    p.title = kStageNames[p.stage - 1];
    p.choice = choice;
    p.entry = entry;
    const std::string output = std::to_string(at.outputIndex + 1);
    const std::string dir = letter(at.dirIndex);
    auto text = [&](std::string question, std::size_t length) {
        p.answer = WizardAnswer::Text;
        p.question = std::move(question);
        p.maxLength = length;
    };
    auto yesNo = [&](std::string status, std::string question) {
        p.answer = WizardAnswer::YesNo;
        p.status = std::move(status);
        p.question = std::move(question);
    };
    auto choices = [&](std::string question, std::vector<std::string> rows) {
        p.answer = WizardAnswer::Choice;
        p.question = std::move(question);
        p.choices = std::move(rows);
    };
    if (p.stage == 6)
        p.title = "OUTPUT " + output;
    if (p.stage == 7)
        p.title = "DIRECTORY " + dir;

    switch (at.step) {
    case WizardStep::AlarmCount:
        choices("How many Alarms would you like to have?", {"None", "1", "2", "3", "4", "5", "6", "7", "8"});
        break;
    case WizardStep::AllToA: yesNo("", "Do you want to set them all to use Directory A?"); break;
    case WizardStep::OtherAsWell:
        yesNo("All of the Alarms are set to use Directory " + letter(allDirectory) + ".",
              "Do you want to use Directory " + letter(1 - allDirectory) + " as well?");
        break;
    case WizardStep::AlarmDirectory: {
        const int using_ = image.alm[at.alarmIndex].groupMask == 2 ? 1 : 0;
        yesNo("Alarm " + std::to_string(at.alarmIndex + 1) + " is using Directory " + letter(using_),
              "Do you want this alarm to use " + letter(1 - using_) + " instead?");
        break;
    }
    case WizardStep::InputFormat:
        choices("Select what type of input format should be used?", {std::begin(kFormats), std::end(kFormats)});
        break;
    case WizardStep::DebounceScale:
        yesNo(debounceMinutes ? "The Debounce time scale is set for minutes."
                              : "The Debounce time scale is set for seconds.",
              debounceMinutes ? "Do you want the time scale to be seconds instead?"
                              : "Do you want the time scale to be minutes instead?");
        break;
    case WizardStep::DebounceTime:
        text(debounceMinutes ? "Enter the number of minutes that the input will be debounced."
                             : "Enter the number of seconds that the input will be debounced.",
             kTimeFieldLength);
        break;
    case WizardStep::OutputCount: choices("How many Outputs will you be using?", {"None", "1", "2", "3", "4"}); break;
    case WizardStep::OutputType:
        yesNo(outputTimed[at.outputIndex] ? "Output " + output + " is set as a Timed type."
                                          : "Output " + output + " is set as an ON/OFF type.",
              outputTimed[at.outputIndex] ? "Do you want it to be an ON/OFF output?"
                                          : "Do you want it to be a Timed output?");
        break;
    case WizardStep::OnCode: text("Enter the DTMF ON code for Output " + output, kMaxCodeDigits); break;
    case WizardStep::OffCode: text("Enter the DTMF OFF code for Output " + output, kMaxCodeDigits); break;
    case WizardStep::OutputScale:
        yesNo(outputMinutes[at.outputIndex] ? "The time scale for Output " + output + " is set to minutes."
                                            : "The time scale for Output " + output + " is set to seconds.",
              outputMinutes[at.outputIndex] ? "Do you want the time scale to be seconds instead?"
                                            : "Do you want the time scale to be minutes instead?");
        break;
    case WizardStep::OutputTime:
        text(outputMinutes[at.outputIndex] ? "Enter the number of minutes that Output " + output + " will be on"
                                           : "Enter the number of seconds that Output " + output + " will be on",
             kTimeFieldLength);
        break;
    case WizardStep::PhoneNumber:
        // A directory line holds no longer a number.
        text(std::string("Enter the ") + ordinalWord(at.phoneIndex) + " phone number in Directory " + dir,
             kMaxParameterLength);
        break;
    case WizardStep::AnotherNumber: yesNo("", "Do you want to add another phone number to Directory " + dir); break;
    case WizardStep::CycleTimer:
        text("How many minutes would you like between callout cycles for Directory " + dir, 3);
        break;
    case WizardStep::AckCode: text("What Acknowledge code would you like for Directory " + dir, kMaxCodeDigits); break;
    case WizardStep::IntCode: text("What Interrogate code would you like for Directory " + dir, kMaxCodeDigits); break;
    case WizardStep::OutputIntCode:
        text("What Interrogate code would you like for the output controls in Directory A", kMaxCodeDigits);
        break;
    case WizardStep::Rings:
        choices("How many rings before an incoming call is answered?", {"1", "2", "3", "4", "5", "6", "7", "8", "9"});
        break;
    case WizardStep::CallProgress: yesNo("", "Call Progress is disabled, do you want to enable it?"); break;
    case WizardStep::AccessCode: text("What Access code would you like for the unit?", kMaxCodeDigits); break;
    case WizardStep::ModemCode: text("What Modem Enable code would you like for the unit?", kMaxCodeDigits); break;
    case WizardStep::ModemTime: text("What Modem Timer value (seconds) would you like for the unit?", 4); break;
    case WizardStep::Complete:
        p.answer = WizardAnswer::None;
        p.question = kWizardFinished;
        break;
    }
    return p;
}

// The question after the alarms' directories.
WizardPosition BasicWizard::afterAlarms() const { return {WizardStep::InputFormat}; }

WizardPosition BasicWizard::afterOutput(int output) const
{
    if (output + 1 < outputCount) {
        WizardPosition next{WizardStep::OutputType};
        next.outputIndex = output + 1;
        return next;
    }
    return afterOutputs();
}

WizardPosition BasicWizard::directoryStart(int directory) const
{
    WizardPosition next{askNumbers ? WizardStep::PhoneNumber : WizardStep::CycleTimer};
    next.dirIndex = directory;
    return next;
}

WizardPosition BasicWizard::afterDirectory(int directory) const
{
    if (directory == 0 && directoryUsed(1))
        return directoryStart(1);
    return outputCount > 0 ? WizardPosition{WizardStep::OutputIntCode} : WizardPosition{WizardStep::Rings};
}

WizardPosition BasicWizard::afterOutputs() const
{
    if (directoryUsed(0))
        return directoryStart(0);
    return afterDirectory(0);
}

bool BasicWizard::Forward(Prompter& prompter)
{
    const WizardPosition here = at;
    WizardPosition next = here;
    switch (here.step) {
    case WizardStep::AlarmCount:
        if (!SaveAlarmCount(prompter))
            return false;
        next = alarmCount == 0 ? WizardPosition{WizardStep::OutputCount} : WizardPosition{WizardStep::AllToA};
        break;
    case WizardStep::InputFormat:
        SaveFormat();
        next = {WizardStep::DebounceScale};
        break;
    case WizardStep::DebounceTime:
        if (!SaveDebounceTime(prompter))
            return false;
        next = {WizardStep::OutputCount};
        break;
    case WizardStep::OutputCount:
        SaveOutputCount();
        if (outputCount > 0)
            next = {WizardStep::OutputType};
        else
            next = afterOutputs();
        break;
    case WizardStep::OnCode:
        if (!SaveOnCode(prompter))
            return false;
        next.step = outputTimed[here.outputIndex] ? WizardStep::OutputScale : WizardStep::OffCode;
        break;
    case WizardStep::OffCode:
        if (!SaveOffCode(prompter))
            return false;
        next = afterOutput(here.outputIndex);
        break;
    case WizardStep::OutputTime:
        if (!SaveOutputTime(prompter))
            return false;
        next = afterOutput(here.outputIndex);
        break;
    case WizardStep::PhoneNumber:
        if (!SavePhoneNumber(prompter))
            return false;
        next.step = here.phoneIndex + 1 < kBasicPhoneNumbers ? WizardStep::AnotherNumber : WizardStep::CycleTimer;
        break;
    case WizardStep::CycleTimer:
        if (!SaveCycleTimer(prompter))
            return false;
        next.step = WizardStep::AckCode;
        break;
    case WizardStep::AckCode:
        if (!SaveAckCode(prompter))
            return false;
        next.step = WizardStep::IntCode;
        break;
    case WizardStep::IntCode:
        if (!SaveIntCode(prompter, here.dirIndex))
            return false;
        next = afterDirectory(here.dirIndex);
        break;
    case WizardStep::OutputIntCode:
        if (!SaveIntCode(prompter, 0))
            return false;
        next = {WizardStep::Rings};
        break;
    case WizardStep::Rings:
        image.gen.ringsToAnswer = static_cast<std::uint8_t>(choice + 1);
        next = {WizardStep::CallProgress};
        break;
    case WizardStep::AccessCode:
        if (!SaveAccessCode(prompter))
            return false;
        next = {WizardStep::ModemCode};
        break;
    case WizardStep::ModemCode:
        if (!SaveModemCode(prompter))
            return false;
        next = {WizardStep::ModemTime};
        break;
    case WizardStep::ModemTime:
        if (!SaveModemTime(prompter) || !CompareCodes(prompter))
            return false;
        writeDirectories();
        next = {WizardStep::Complete};
        break;
    default: return false; // yes/no questions move on with Yes or No; the end has nowhere to go
    }
    go(next);
    return true;
}

bool BasicWizard::Yes()
{
    WizardPosition next = at;
    switch (at.step) {
    case WizardStep::AllToA:
        SaveUsingDir(0);
        next = alarmCount > 1 ? WizardPosition{WizardStep::OtherAsWell} : afterAlarms();
        break;
    case WizardStep::OtherAsWell: next = {WizardStep::AlarmDirectory}; break;
    case WizardStep::AlarmDirectory: {
        std::uint8_t& mask = image.alm[at.alarmIndex].groupMask;
        mask = mask == 2 ? 1 : 2;
        next.alarmIndex = at.alarmIndex + 1;
        if (next.alarmIndex == alarmCount)
            next = afterAlarms();
        break;
    }
    case WizardStep::DebounceScale:
        debounceMinutes = !debounceMinutes;
        next.step = WizardStep::DebounceTime;
        break;
    case WizardStep::OutputType:
        outputTimed[at.outputIndex] = !outputTimed[at.outputIndex];
        SaveOutputType(at.outputIndex);
        next.step = WizardStep::OnCode;
        break;
    case WizardStep::OutputScale:
        outputMinutes[at.outputIndex] = !outputMinutes[at.outputIndex];
        next.step = WizardStep::OutputTime;
        break;
    case WizardStep::AnotherNumber:
        next.step = WizardStep::PhoneNumber;
        next.phoneIndex = at.phoneIndex + 1;
        break;
    case WizardStep::CallProgress:
        image.gen.callProgress = 1;
        next = {WizardStep::AccessCode};
        break;
    default: return false;
    }
    go(next);
    return true;
}

bool BasicWizard::No()
{
    WizardPosition next = at;
    switch (at.step) {
    case WizardStep::AllToA:
        SaveUsingDir(1);
        next = alarmCount > 1 ? WizardPosition{WizardStep::OtherAsWell} : afterAlarms();
        break;
    case WizardStep::OtherAsWell:
        SaveUsingDir(allDirectory); // undoes any single alarm moved before going back
        next = afterAlarms();
        break;
    case WizardStep::AlarmDirectory:
        next.alarmIndex = at.alarmIndex + 1;
        if (next.alarmIndex == alarmCount)
            next = afterAlarms();
        break;
    case WizardStep::DebounceScale: next.step = WizardStep::DebounceTime; break;
    case WizardStep::OutputType:
        SaveOutputType(at.outputIndex);
        next.step = WizardStep::OnCode;
        break;
    case WizardStep::OutputScale: next.step = WizardStep::OutputTime; break;
    case WizardStep::AnotherNumber:
        numberCount[at.dirIndex] = at.phoneIndex + 1;
        next.step = WizardStep::CycleTimer;
        break;
    case WizardStep::CallProgress:
        image.gen.callProgress = 0;
        next = {WizardStep::AccessCode};
        break;
    default: return false;
    }
    go(next);
    return true;
}

bool BasicWizard::CanClose(Prompter& prompter)
{
    if (finished())
        return true;
    if (prompter.ask(Message{kWizardExitTitle, kWizardExitQuestion, Icon::Question, Buttons::YesNo}) != Answer::Yes)
        return false;
    image = start;
    return true;
}

bool BasicWizard::SaveAlarmCount(Prompter& prompter)
{
    if (choice == 0 &&
        !saysYes(prompter, "No alarms have been selected.  Are you sure that you want the unit to never call out?"))
        return false;
    alarmCount = choice;
    // An alarm left out is disabled; its other settings stay in the Basic shape.
    for (int i = 0; i < kInputCount; ++i)
        image.alm[i].inactive = i < alarmCount ? 0 : 1;
    return true;
}

void BasicWizard::SaveUsingDir(int directory)
{
    allDirectory = directory;
    for (int i = 0; i < kInputCount; ++i)
        image.alm[i].groupMask = MakeMask(directory);
}

void BasicWizard::SaveFormat()
{
    const bool high = choice == 0 || choice == 2;
    const bool latching = choice >= 2;
    for (int i = 0; i < kInputCount; ++i) {
        std::uint8_t& flags = image.hardware.port[i].typeFlags;
        flags = static_cast<std::uint8_t>(high ? flags | kNormallyHighBit : flags & ~kNormallyHighBit);
        image.alm[i].latching = latching ? 1 : 0;
    }
}

bool BasicWizard::SaveDebounceTime(Prompter& prompter)
{
    const auto count = intervalCount(prompter, entry, debounceMinutes, "debounce");
    if (!count)
        return false;
    for (int i = 0; i < kInputCount; ++i) {
        HardwarePort& input = image.hardware.port[i];
        input.debounce = *count;
        input.scaleFlags = static_cast<std::uint8_t>(debounceMinutes ? input.scaleFlags | kDebounceMinutesBit
                                                                     : input.scaleFlags & ~kDebounceMinutesBit);
    }
    return true;
}

void BasicWizard::SaveOutputCount()
{
    outputCount = choice;
    for (int i = 0; i < kUserOutputs; ++i) {
        PointRecord& point = image.alm[kFirstOutputPoint + i];
        if (i >= outputCount) {
            // An output left out keeps the default shape.
            point = start.alm[kFirstOutputPoint + i];
            image.hardware.port[kFirstOutputPort + i] = start.hardware.port[kFirstOutputPort + i];
            continue;
        }
        point.isOutput = 1;
        point.inactive = 1;
        point.groupMask = 1;
        point.port = static_cast<std::uint16_t>(i);
        SaveOutputType(i);
    }
}

void BasicWizard::SaveOutputType(int output)
{
    PointRecord& point = image.alm[kFirstOutputPoint + output];
    HardwarePort& port = image.hardware.port[kFirstOutputPort + output];
    point.type = outputTimed[output] ? kPointTimerOutput : kPointOnOffOutput;
    port.typeFlags = outputTimed[output] ? kTimedOutput : 0;
    if (outputTimed[output])
        point.offCode = DtmfCode{}; // a timed output switches itself off
}

bool BasicWizard::SaveOnCode(Prompter& prompter)
{
    return saveCode(prompter, entry, kOnCode, image.alm[kFirstOutputPoint + at.outputIndex].onCode);
}

bool BasicWizard::SaveOffCode(Prompter& prompter)
{
    return saveCode(prompter, entry, kOffCode, image.alm[kFirstOutputPoint + at.outputIndex].offCode);
}

bool BasicWizard::SaveOutputTime(Prompter& prompter)
{
    const bool minutes = outputMinutes[at.outputIndex];
    const auto count = intervalCount(prompter, entry, minutes, "timer");
    if (!count)
        return false;
    HardwarePort& port = image.hardware.port[kFirstOutputPort + at.outputIndex];
    port.timer = *count;
    port.scaleFlags =
        static_cast<std::uint8_t>(minutes ? port.scaleFlags | kTimerMinutesBit : port.scaleFlags & ~kTimerMinutesBit);
    return true;
}

bool BasicWizard::SavePhoneNumber(Prompter& prompter)
{
    std::string number = entry;
    const bool badDigit = CheckBasicPhone(number);
    if (auto refusal = N11Refusal(number, N11Wording::Basic)) {
        refuse(prompter, *refusal);
        return false;
    }
    if (number.size() == 3) {
        refuse(prompter, kThreeDigitNumber);
        return false;
    }
    if (badDigit) {
        refuse(prompter, kInvalidPhoneDigit);
        return false;
    }
    if (number.size() < 7 &&
        wantsToChange(prompter, "The phone number has less than 7 digits.  Do you want to change it?"))
        return false;
    const auto& directory = numbers[at.dirIndex];
    const std::vector<std::string> before(directory.begin(), directory.begin() + at.phoneIndex);
    if (simpleDirectoryFill(before) + static_cast<int>(number.size()) > kSimpleDirectoryBudget) {
        refuse(prompter, "There are too many entries in this directory - this line is not allowed.");
        return false;
    }
    numbers[at.dirIndex][at.phoneIndex] = number;
    numberCount[at.dirIndex] = at.phoneIndex + 1;
    return true;
}

bool BasicWizard::SaveCycleTimer(Prompter& prompter)
{
    const int minutes = parseWholeNumber(entry);
    if (minutes < 1) {
        refuse(prompter, "The Cycle interval cannot be less than 1 min.");
        return false;
    }
    if (minutes > kMaxCycleMinutes) {
        refuse(prompter, "The Cycle interval cannot be greater than 255 min.");
        return false;
    }
    GroupRecord& group = image.group[at.dirIndex];
    group.shortTimer = static_cast<std::uint8_t>(minutes);
    group.longTimer = static_cast<std::uint8_t>(minutes);
    return true;
}

bool BasicWizard::SaveAckCode(Prompter& prompter)
{
    return saveCode(prompter, entry, kAcknowledge, image.group[at.dirIndex].ackCode);
}

bool BasicWizard::SaveIntCode(Prompter& prompter, int group)
{
    return saveCode(prompter, entry, kInterrogate, image.group[group].interrogateCode);
}

bool BasicWizard::SaveAccessCode(Prompter& prompter)
{
    return saveCode(prompter, entry, kAccess, image.gen.accessCode);
}

bool BasicWizard::SaveModemCode(Prompter& prompter)
{
    return saveCode(prompter, entry, kModemEnable, image.gen.modemEnableCode);
}

// The modem timer is how long the Modem Enable / Carrier Detect output stays
// on once a call enables the modem: that output's on-time, in 25 ms steps.
bool BasicWizard::SaveModemTime(Prompter& prompter)
{
    const float seconds = parseTimeValue(entry);
    if (seconds < kMinModemSeconds) {
        refuse(prompter, "The Modem Timer cannot be less than 60 seconds.");
        return false;
    }
    if (seconds > kMaxModemSeconds) {
        refuse(prompter, "The Modem Timer cannot be greater than 1638 seconds.");
        return false;
    }
    const int output = image.gen.carrierDetectOut;
    if (output >= 1 && output <= 8) {
        HardwarePort& port = image.hardware.port[kFirstOutputPort + output - 1];
        port.typeFlags = kTimedOutput;
        port.scaleFlags = static_cast<std::uint8_t>(port.scaleFlags & ~kTimerMinutesBit);
        port.timer = static_cast<std::uint16_t>(seconds * 40.0f);
    }
    return true;
}

bool BasicWizard::backTo(WizardStep step, int dirIndex)
{
    for (auto visit = history.rbegin(); visit != history.rend(); ++visit) {
        const bool perDirectory = step == WizardStep::AckCode || step == WizardStep::IntCode;
        if (visit->step != step || (perDirectory && visit->dirIndex != dirIndex))
            continue;
        at = *visit;
        history.erase(std::next(visit).base(), history.end());
        loadEntry();
        return true;
    }
    return false;
}

// Every code entered against every other: the directories' codes may share a
// value if the user says so; no code may equal the Modem Enable or Access code,
// nor those two each other. A No or a refusal goes back to the question of the
// first code named, to change it.
bool BasicWizard::CompareCodes(Prompter& prompter)
{
    std::vector<EnteredCode> directoryCodes;
    for (int d = 0; d < 2; ++d) {
        const GroupRecord& group = image.group[d];
        directoryCodes.push_back({"Acknowledge", d, dtmfCodeText(group.ackCode), {}});
        directoryCodes.push_back({"Interrogate", d, dtmfCodeText(group.interrogateCode), {}});
    }
    const EnteredCode modem{"Modem Enable", -1, dtmfCodeText(image.gen.modemEnableCode), {}};
    const EnteredCode access{"Access", -1, dtmfCodeText(image.gen.accessCode), {}};

    auto revisit = [&](const EnteredCode& code) {
        if (code.directory < 0) {
            backTo(code.name == "Access" ? WizardStep::AccessCode : WizardStep::ModemCode, 0);
            return;
        }
        if (code.name == "Interrogate" && code.directory == 0 && backTo(WizardStep::OutputIntCode, 0))
            return;
        backTo(code.name == "Acknowledge" ? WizardStep::AckCode : WizardStep::IntCode, code.directory);
    };
    auto same = [](const EnteredCode& a, const EnteredCode& b) { return sameCode(a.value, b.value); };
    auto cannot = [&](const EnteredCode& first, const std::string& second) {
        refuse(prompter, first.head() + second + ".  These codes cannot be the same.");
        revisit(first);
        return false;
    };

    for (std::size_t later = 1; later < directoryCodes.size(); ++later) {
        const EnteredCode& first = directoryCodes[later];
        for (std::size_t earlier = 0; earlier < later; ++earlier) {
            const EnteredCode& second = directoryCodes[earlier];
            if (!same(first, second))
                continue;
            std::string verdict;
            if (first.name != second.name)
                verdict = "Both actions will occur with this code. Is this what you want?";
            else if (first.name == "Acknowledge")
                verdict = "Both Directories will be acknowledged with the same code.  Is this what you want?";
            else
                verdict = "Both Directories will be interrogated with the same code.  Is this what you want?";
            if (!saysYes(prompter, first.head() + second.tail() + ".  " + verdict)) {
                revisit(first);
                return false;
            }
        }
    }
    for (const EnteredCode& code : directoryCodes)
        if (same(code, modem))
            return cannot(code, "Modem Enable Code for remote data access");
    for (const EnteredCode& code : directoryCodes)
        if (same(access, code))
            return cannot(access, code.tail());
    if (same(modem, access))
        return cannot(modem, access.tail());
    return true;
}

// The numbers go into the directories only now, one DIAL line each.
void BasicWizard::writeDirectories()
{
    if (!askNumbers)
        return;
    for (int d = 0; d < 2; ++d) {
        const auto& directory = numbers[d];
        std::vector<std::string> kept;
        for (int i = 0; i < numberCount[d]; ++i)
            if (!directory[i].empty())
                kept.push_back(directory[i]);
        image.dir[d] = start.dir[d];
        if (directoryUsed(d) && !kept.empty())
            SaveSimpleDirectory(kept, image.dir[d]);
    }
}

} // namespace rk4
