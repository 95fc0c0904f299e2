#include "core/basic/sim_general.h"

#include "core/basic/basic_fields.h"
#include "core/database/dtmf.h"
#include "core/shell/workspace.h"

#include <array>

namespace rk4 {

namespace {

constexpr std::array<std::uint8_t, 4> kAckTimes = {30, 60, 120, 240};
constexpr int kMaxRings = 9;

} // namespace

SimGenEditor::SimGenEditor(Workspace& space) : space(space), opened(space.image.gen)
{
    accessCode = dtmfCodeText(opened.accessCode);
    modemEnableCode = dtmfCodeText(opened.modemEnableCode);
    directoryControlCode = dtmfCodeText(opened.shiftChangeCode);
    if (opened.ringsToAnswer >= 1 && opened.ringsToAnswer <= kMaxRings)
        ringsChoice = opened.ringsToAnswer - 1;
    for (std::size_t i = 0; i < kAckTimes.size(); ++i)
        if (opened.tempAckTime == kAckTimes[i])
            ackTimeChoice = static_cast<int>(i);
}

std::vector<std::string> SimGenEditor::ringsChoices()
{
    std::vector<std::string> choices;
    for (int rings = 1; rings <= kMaxRings; ++rings)
        choices.push_back(std::to_string(rings));
    return choices;
}

std::vector<std::string> SimGenEditor::ackTimeChoices() { return {"30 min", "60 min", "120 min", "240 min"}; }

GeneralRecord SimGenEditor::result() const
{
    GeneralRecord record = opened;
    storeDtmfCode(accessCode, record.accessCode);
    storeDtmfCode(modemEnableCode, record.modemEnableCode);
    storeDtmfCode(directoryControlCode, record.shiftChangeCode);
    if (ringsChoice >= 0 && ringsChoice < kMaxRings)
        record.ringsToAnswer = static_cast<std::uint8_t>(ringsChoice + 1);
    if (ackTimeChoice >= 0 && ackTimeChoice < static_cast<int>(kAckTimes.size()))
        record.tempAckTime = kAckTimes[ackTimeChoice];
    return record;
}

bool SimGenEditor::CanClose(Prompter& prompter)
{
    auto refuse = [&](const std::string& text, Field field) {
        prompter.tell("Error", text, Icon::Error);
        focus = field;
        return false;
    };
    const struct {
        const std::string& text;
        const char* name;
        Field field;
    } codes[] = {{modemEnableCode, "Modem Enable", Field::ModemEnableCode},
                 {directoryControlCode, "Directory Control", Field::DirectoryControlCode},
                 {accessCode, "Access", Field::AccessCode}};
    for (const auto& code : codes)
        if (auto refusal = codeRefusal(code.text, code.name))
            return refuse(*refusal, code.field);

    if (accessCode.empty() &&
        prompter.ask(Message{"Warning", "ANYONE can remotely program the unit if the Access code is empty.\nDo you want "
                                        "to change this?",
                             Icon::Warning, Buttons::YesNo}) == Answer::Yes) {
        focus = Field::AccessCode;
        return false;
    }
    if (sameCode(accessCode, modemEnableCode))
        return refuse("The Access code and Modem Enable code cannot be the same.", Field::ModemEnableCode);
    if (sameCode(accessCode, directoryControlCode))
        return refuse("The Access code and Directory Control code cannot be the same.", Field::DirectoryControlCode);
    if (sameCode(modemEnableCode, directoryControlCode))
        return refuse("The Modem Enable code and Directory Control code cannot be the same.",
                      Field::DirectoryControlCode);

    Database edited = space.image;
    edited.gen = result();
    space.commit(edited);
    focus = Field::None;
    return true;
}

} // namespace rk4
