#pragma once
// "Speak..." and "Speak all names" beside the voice editor's slot commands:
// phrases for the slots made from the database's names by the synthesiser.

#include "core/common/prompter.h"
#include "core/shell/workspace.h"

namespace rk4::gui {

class VeditDialog;

void addSpeakCommands(VeditDialog& dialog, Workspace& workspace, Prompter& prompter);

} // namespace rk4::gui
