#include "core/basic/simple_warning.h"

#include "core/common/text.h"
#include "core/database/defaults.h"

namespace rk4 {

namespace {

// Longer lists of groups outside 1 and 2, or of used points above 16, give
// way to a summary line so the list stays readable.
constexpr std::size_t kLongList = 6;
constexpr std::size_t kManyEnabled = 10;

std::vector<int> offenderNumbers(const SimpleCheck& check, int code)
{
    std::vector<int> numbers;
    for (int i = 0; i < kPointCount; ++i)
        if (check.offenders[code][i])
            numbers.push_back(i + 1);
    return numbers;
}

struct LineTexts {
    const char* kind;
    const char* one;
    const char* several;
};

LineTexts lineTexts(const Database& db, int code)
{
    const bool input1Closed = db.hardware.port[0].typeFlags & 0x80;
    const bool point1Latched = db.alm[0].latching != 0;
    switch (code) {
    case kRuleInputType: return {"Input", "is not a digital type.", "are not digital types."};
    case kRuleInputDebounce:
        return {"Input", "has a debounce setting that is different than input 1",
                "have a debounce setting that is different than input 1."};
    case kRuleInputPolarity:
        return input1Closed ? LineTexts{"Input", "is set for Normally Open but input 1 is set for Normally Closed.",
                                        "are set for Normally Open but input 1 is set for Normally Closed."}
                            : LineTexts{"Input", "is set for Normally Closed but input 1 is set for Normally Open.",
                                        "are set for Normally Closed but input 1 is set for Normally Open."};
    case kRuleAlarmType: return {"Point", "is not set for digital operation.", "are not set for digital operation."};
    case kRuleAlarmGroup:
        return {"Point", "is using a group other than 1 or 2.", "are using groups other than 1 or 2."};
    case kRuleHighPointType: return {"Point", "is being used.", "are being used."};
    case kRuleHighPointActive: return {"Point", "is enabled.", "are enabled."};
    case kRuleAlarmLatching:
        return point1Latched ? LineTexts{"Point", "is set for Momentary but point 1 is set for Latched.",
                                         "are set for Momentary but point 1 is set for Latched."}
                             : LineTexts{"Point", "is set for Latched but point 1 is set for Momentary.",
                                         "are set for Latched but point 1 is set for Momentary."};
    case kRuleOutputPoint: return {"Point", "is not set up as an output.", "are not set up as outputs."};
    case kRuleGroupEnabled: return {"Group", "is enabled and should not be.", "are enabled and should not be."};
    case kRuleAlarmIsOutput:
        return {"Point", "is set as an output instead of an input.", "are set for outputs instead of inputs."};
    default: return {nullptr, nullptr, nullptr};
    }
}

} // namespace

std::string MakeNumberList(const SimpleCheck& check, int code)
{
    return joinWithAnd(offenderNumbers(check, code));
}

std::string problemLine(const SimpleCheck& check, const Database& db, int code)
{
    if (code == kRuleDirectoryCtoF)
        return "Directories other than A or B have entries in them.";
    if (code == kRuleDirectoryCommands)
        return "Directory A or B have commands present (Warning only - These can be left unchanged).";
    const std::size_t count = offenderNumbers(check, code).size();
    if (code == kRuleAlarmGroup && count > kLongList)
        return "Several points are using groups other than 1 or 2.";
    if (code == kRuleHighPointType && count > kLongList)
        return "Several points above point 16 are not set as unused.";
    if (code == kRuleHighPointActive && count > kManyEnabled)
        return "More than 10 points above point 16 are enabled.";
    const LineTexts texts = lineTexts(db, code);
    if (!texts.kind)
        return {};
    return std::string(texts.kind) + " " + MakeNumberList(check, code) + " " + (count == 1 ? texts.one : texts.several);
}

std::string detailText(int code)
{
    static const std::string unusedPoints = "Points above 17 and above are not used with the Basic mode."
                                            "\nChanging to Basic mode will eliminate these points."
                                            "\nIn Basic mode:"
                                            "\n   8 inputs correspond to 8 alarms"
                                            "\n   Outputs 1 to 4 are user controlled"
                                            "\n   Outputs 5 to 8 are hardware controlled";
    switch (code) {
    case kRuleInputType:
        return "Hardware Inputs 1 to 8 must be set as Digital types. \nOther types such as Analog, Totalizer, etc. are "
               "not allowed.\nChanging to Basic mode will make the 8 inputs digital types";
    case kRuleInputDebounce:
        return "All of the Hardware Inputs must have the same debounce setting.\nChanging to Basic mode will make all "
               "of the inputs have the same debounce settings.\nThe default debounce is 1 second.";
    case kRuleInputPolarity:
        return "A mixture of Normally Open and Normally Closed Hardware input settings is not allowed in Basic "
               "mode.\nAll of the inputs will be set to Normally Open.";
    case kRuleAlarmType:
        return "Points 1 to 8 must be set as Digital Inputs.\nChanging to Basic mode will make the 8 points digital "
               "types";
    case kRuleAlarmGroup:
    case kRuleHighPointType:
    case kRuleHighPointActive: return unusedPoints;
    case kRuleAlarmLatching:
        return "There is a mix of momentary and latched points.\nChanging to Basic mode will make them all the "
               "same.\nIn Basic mode:\n   Alarms are either all momentary or all latched";
    case kRuleOutputPoint:
        return "Points between 8 and 16 must all be outputs.\nChanging to Basic mode will make them all outputs.\nIn "
               "Basic mode:\n   Outputs can be either ON/OFF or Timed";
    case kRuleGroupEnabled:
        return "Only Groups 1 and 2 are used in Basic mode.\nChanging to Basic mode will eliminate Groups 3 - 6.\nIn "
               "Basic mode:\n   Group 1 is always mapped to Directory A\n   Group 2 is always mapped to Directory "
               "B\n   Groups assignment automatic and not visible";
    case kRuleAlarmIsOutput:
        return "Points between 1 and 8 must all be inputs.\nChanging to Basic mode will make them all alarm "
               "inputs.\nIn Basic mode:\n   Alarms Normally High or Normally Low\n   Alarms Latched or Momentary";
    case 12:
    case 13:
    case 14:
    case 15: return "Detail " + std::to_string(code);
    case kRuleDirectoryCtoF:
        return "Only Directory A and Directory B are used in Basic mode.\nChanging to Basic mode will eliminate "
               "Directories C to F.";
    case kRuleDirectoryCommands:
        return "Basic Directories can only contain phone numbers.Converting with the Convert All button will clear "
               "all directories.\nConverting with Directories stay Unchanged will leave the directories as the are.";
    default: return {};
    }
}

SimpleWarning::SimpleWarning(const Database& db, bool opened) : result(CheckForSimple(db))
{
    lines.push_back({opened ? kOpenedIntro : kSwitchIntro, -1});
    lines.push_back({kListedBelow, -1});
    for (int code : result.list)
        lines.push_back({problemLine(result, db, code), code});
}

std::string SimpleWarning::explanation() const
{
    if (selected < 0 || selected >= static_cast<int>(lines.size()))
        return {};
    return detailText(lines[static_cast<std::size_t>(selected)].code);
}

void SimpleWarning::ShowDetail(Prompter& prompter) const
{
    const std::string text = explanation();
    if (!text.empty())
        prompter.tell(kDetailTitle, text, Icon::Information);
}

void Change2Simple(Database& db)
{
    db.gen.basicMode = 1;
    ClearDatabase(db, false);
}

void Change2Simple2(Database& db)
{
    db.gen.basicMode = 1;
    ClearDatabase(db, true);
}

void LeaveComplex(Database& db) { db.gen.basicMode = 0; }

bool askConversionWizard(Prompter& prompter)
{
    return prompter.ask(Message{"Question", kConversionWizardQuestion, Icon::Question, Buttons::YesNo}) == Answer::Yes;
}

} // namespace rk4
