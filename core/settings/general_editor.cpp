#include "core/settings/general_editor.h"

#include "core/database/dtmf.h"
#include "core/database/validators.h"
#include "core/report/warnings.h"
#include "core/settings/outputs.h"
#include "core/shell/warning_dialog.h"
#include "core/shell/workspace.h"

namespace rk4 {

namespace {

constexpr int kTempAckMinutes[] = {0, 30, 60, 120, 240};
// Rings 1..15; 0 and 255 are kept as stored and shown as never answering.
constexpr int kMostRings = 15;
constexpr std::uint16_t kRingTimer = 80;            // 2 s
constexpr std::uint16_t kCarrierDetectTimer = 2400; // 60 s

Message error(std::string text) { return Message{"Error", std::move(text), Icon::Error, Buttons::Ok}; }

Message warningQuestion(std::string text) { return Message{"Warning", std::move(text), Icon::Warning, Buttons::YesNo}; }

Choices outputChoices()
{
    Choices choices{{"Not used"}, {0}};
    for (int n = 1; n <= kOutputCount; ++n) {
        choices.labels.push_back("Output " + std::to_string(n));
        choices.values.push_back(n);
    }
    return choices;
}

struct CodeControl {
    const char* label;
    GeneralField field;
};

} // namespace

// What differs between the ring output and the carrier detect output.
struct GeneralEditor::SpecialOutput {
    std::uint8_t GeneralRecord::*field;
    const char* conflict;  // the head of the refusal when a group uses the output
    const char* function;  // the function named in the question about points
    const char* makeTimed; // the text after "Output N" when an on/off port becomes timed
    std::uint16_t timer;
};

bool generalEditorAvailable(const NavigationFlags& navigation)
{
    for (NavFlag flag : kGeneralEditorFlags)
        if (!navigation.isOn(flag))
            return false;
    return true;
}

int Choices::select(int stored, const std::string& label)
{
    for (std::size_t i = 0; i < values.size(); ++i)
        if (values[i] == stored)
            return static_cast<int>(i);
    labels.push_back(label);
    values.push_back(stored);
    return static_cast<int>(values.size()) - 1;
}

int Choices::valueAt(int index) const
{
    if (index < 0 || index >= static_cast<int>(values.size()))
        return 0;
    return values[static_cast<std::size_t>(index)];
}

GeneralEditor::GeneralEditor(Workspace& space) : space(space) {}

void GeneralEditor::SetupWindow()
{
    space.navigation.enterEditor(kGeneralEditorFlags);
    open = true;
    working = space.image.gen;

    name = nameText(working.name);
    shiftChangeCode = dtmfCodeText(working.shiftChangeCode);
    accessCode = dtmfCodeText(working.accessCode);
    modemEnableCode = dtmfCodeText(working.modemEnableCode);

    tempAck = Choices{};
    for (int minutes : kTempAckMinutes) {
        tempAck.labels.push_back(minutes == 0 ? "None" : std::to_string(minutes) + " min");
        tempAck.values.push_back(minutes);
    }
    tempAckIndex = tempAck.select(working.tempAckTime, std::to_string(working.tempAckTime) + " min");

    rings = Choices{};
    for (int count = 1; count <= kMostRings; ++count) {
        rings.labels.push_back(std::to_string(count));
        rings.values.push_back(count);
    }
    const int storedRings = working.ringsToAnswer;
    ringsIndex =
        rings.select(storedRings, storedRings == 0 || storedRings == 255 ? "Never" : std::to_string(storedRings));

    ringOutputs = outputChoices();
    ringOutIndex = ringOutputs.select(working.ringOut, "Output " + std::to_string(working.ringOut));
    carrierOutputs = outputChoices();
    carrierDetectIndex =
        carrierOutputs.select(working.carrierDetectOut, "Output " + std::to_string(working.carrierDetectOut));

    securityLevel = working.securityLevel;
    callProgress = working.callProgress != 0;
}

GeneralRecord GeneralEditor::readControls() const
{
    GeneralRecord gen = working;
    // A text left as it was shown stores nothing, so fields from outside
    // (a name with NULs, a code without one) keep their bytes.
    if (name != nameText(working.name))
        setName(gen.name, name.substr(0, gen.name.size()));
    const std::pair<const std::string*, DtmfCode GeneralRecord::*> codes[] = {
        {&shiftChangeCode, &GeneralRecord::shiftChangeCode},
        {&accessCode, &GeneralRecord::accessCode},
        {&modemEnableCode, &GeneralRecord::modemEnableCode},
    };
    for (const auto& [text, field] : codes)
        if (*text != dtmfCodeText(working.*field))
            storeDtmfCode(*text, gen.*field);
    gen.tempAckTime = static_cast<std::uint8_t>(tempAck.valueAt(tempAckIndex));
    gen.ringsToAnswer = static_cast<std::uint8_t>(rings.valueAt(ringsIndex));
    gen.ringOut = static_cast<std::uint8_t>(ringOutputs.valueAt(ringOutIndex));
    gen.carrierDetectOut = static_cast<std::uint8_t>(carrierOutputs.valueAt(carrierDetectIndex));
    gen.securityLevel = static_cast<std::uint8_t>(securityLevel);
    gen.callProgress = callProgress ? 1 : 0;
    return gen;
}

void GeneralEditor::ProgressChanged(Prompter& prompter)
{
    if (auto advice = answerAfterDialWarning(space.image))
        prompter.tell("Warning", *advice, Icon::Warning);
}

// A special function for `output`: refused while a group uses it; taken from
// the points that drive it (when newly chosen) once the user agrees; its port
// becomes timed with the function's fixed settings on every OK.
bool GeneralEditor::claimOutput(Database& staged, int output, const SpecialOutput& special, Prompter& prompter) const
{
    if (output == 0)
        return true;
    if (const auto use = FirstGroupUsingOutput(staged, output)) {
        prompter.ask(error(std::string(special.conflict) + std::to_string(output) + " is being used by Group " +
                           std::to_string(use->group) + " for " + use->function + "  - both are not allowed."));
        return false;
    }
    if (output > kOutputCount) // a value from outside names no port
        return true;
    if (output != space.image.gen.*special.field && !TakeOutputFromPoints(staged, output, special.function, prompter))
        return false;
    HardwarePort& port = outputPort(staged, output);
    if (port.typeFlags == 0)
        prompter.tell("Warning", "Output " + std::to_string(output) + special.makeTimed, Icon::Warning);
    SetOutputTimed(port, special.timer);
    return true;
}

GeneralCheck GeneralEditor::CanClose(Prompter& prompter)
{
    static const SpecialOutput kRing{&GeneralRecord::ringOut, "Conflict found! Output ", "Ring Out",
                                     " will be changed from an on/off type to timed for ringing.", kRingTimer};
    static const SpecialOutput kCarrierDetect{
        &GeneralRecord::carrierDetectOut, "Conflict found with CD output! Output ", "Modem Enable/Carrier Detect Out",
        " will be changed from an on/off type to a timed type for Modem Enable/Carrier Detect.", kCarrierDetectTimer};

    if (!open)
        return {true, GeneralField::None};
    const GeneralRecord edited = readControls();

    if (edited.ringOut != 0 && edited.ringOut == edited.carrierDetectOut) {
        prompter.ask(error("Carrier Detect Output and Ring Output cannot be set to the same output"));
        return {false, GeneralField::RingOut};
    }
    // Points and ports change in a staged image, so a later refusal leaves
    // the real one untouched.
    Database staged = space.image;
    if (!claimOutput(staged, edited.ringOut, kRing, prompter))
        return {false, GeneralField::RingOut};
    if (!claimOutput(staged, edited.carrierDetectOut, kCarrierDetect, prompter))
        return {false, GeneralField::CarrierDetectOut};

    const std::pair<const std::string*, CodeControl> codes[] = {
        {&shiftChangeCode, {"Shift Change", GeneralField::ShiftChangeCode}},
        {&modemEnableCode, {"Modem Enable", GeneralField::ModemEnableCode}},
        {&accessCode, {"Access", GeneralField::AccessCode}},
    };
    for (const auto& [text, control] : codes) {
        if (text->size() > kMaxCodeDigits) {
            prompter.ask(error(std::string(control.label) + " code has too may digits - maximum is 7"));
            return {false, control.field};
        }
        if (CheckDTMF(*text)) {
            prompter.ask(error("Invalid digit found in the " + std::string(control.label) +
                               " code, use 0-9, *, #, A, B, C and D only."));
            return {false, control.field};
        }
    }

    if (accessCode.empty()) {
        const char* question =
            edited.securityLevel != 0
                ? "Remote programming will not be available without an Access code.\nDo you want to change this?"
                : "ANYONE can remotely program the unit if the Access code is empty.\nDo you want to change this?";
        if (prompter.ask(warningQuestion(question)) == Answer::Yes)
            return {false, GeneralField::AccessCode};
    }

    working = edited;
    staged.gen = working;
    space.commit(staged);
    return close();
}

GeneralCheck GeneralEditor::CmCancel(Prompter& prompter)
{
    if (open && changed()) {
        switch (WarningDialog(scope()).Execute(prompter)) {
        case WarningAnswer::GoBack: return {false, GeneralField::None};
        case WarningAnswer::YesSave: return CanClose(prompter);
        case WarningAnswer::NoSave: break;
        }
    }
    return close();
}

GeneralCheck GeneralEditor::close()
{
    if (open) {
        open = false;
        leave();
    }
    return {true, GeneralField::None};
}

void GeneralEditor::writeBack()
{
    Database edited = space.image;
    edited.gen = readControls();
    space.commit(edited);
}

bool GeneralEditor::changed() const { return readControls() != space.image.gen; }

void GeneralEditor::leave() { space.navigation.leaveEditor(kGeneralEditorFlags); }

} // namespace rk4
