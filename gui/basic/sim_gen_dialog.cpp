#include "gui/basic/sim_gen_dialog.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

// Longer than a code may be, so a digit too many is named by the check on OK
// rather than dropped without a word.
constexpr int kCodeFieldLength = 16;

} // namespace

SimGenDialog::SimGenDialog(Workspace& space, Prompter& prompter, QWidget* parent)
    : SimDialog(editor, prompter, parent), editor(space)
{
    setObjectName("simGenDialog");
    setWindowTitle(qtext(editor.title()));
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    auto* codes = new QGroupBox("Codes", this);
    auto* codeForm = new QFormLayout(codes);
    accessEdit = addEdit("accessCodeEdit", editor.accessCode, kCodeFieldLength,
                         "The code a caller enters before programming the unit by telephone: up to 7 of 0-9, *, #, "
                         "A, B, C and D. When it is empty anyone can program the unit remotely.");
    modemEdit = addEdit("modemEnableCodeEdit", editor.modemEnableCode, kCodeFieldLength,
                        "The code that switches a call over to data, so the unit can be programmed remotely from "
                        "this program: up to 7 of 0-9, *, #, A, B, C and D.");
    controlEdit = addEdit("directoryControlCodeEdit", editor.directoryControlCode, kCodeFieldLength,
                          "The code a caller enters to switch the outputs and to change which directory the unit "
                          "calls: up to 7 of 0-9, *, #, A, B, C and D. It must differ from the other two codes.");
    codeForm->addRow("&Access code:", accessEdit);
    codeForm->addRow("&Modem Enable code:", modemEdit);
    codeForm->addRow("&Directory Control code:", controlEdit);
    layout->addWidget(codes);

    auto* calls = new QGroupBox("Calls", this);
    auto* callForm = new QFormLayout(calls);
    QComboBox* rings = addCombo("ringsCombo", SimGenEditor::ringsChoices(), editor.ringsChoice,
                                "How many times the line rings before the unit answers an incoming call.");
    rings->setPlaceholderText("other");
    connect(rings, &QComboBox::currentIndexChanged, this, [this](int index) { editor.ringsChoice = index; });
    QComboBox* ackTime = addCombo("ackTimeCombo", SimGenEditor::ackTimeChoices(), editor.ackTimeChoice,
                                  "How long an acknowledged alarm stays quiet. When this time has passed and the "
                                  "alarm is still present, the unit starts calling again.");
    ackTime->setPlaceholderText("none"); // a time Basic mode does not offer, kept until one is chosen
    connect(ackTime, &QComboBox::currentIndexChanged, this, [this](int index) { editor.ackTimeChoice = index; });
    callForm->addRow("&Rings before answer:", rings);
    callForm->addRow("Acknowledge &time:", ackTime);
    layout->addWidget(calls);

    addButtons(layout);
}

void SimGenDialog::focusRefused()
{
    switch (editor.focus) {
    case SimGenEditor::Field::AccessCode: focusField(accessEdit); break;
    case SimGenEditor::Field::ModemEnableCode: focusField(modemEdit); break;
    case SimGenEditor::Field::DirectoryControlCode: focusField(controlEdit); break;
    case SimGenEditor::Field::None: break;
    }
}

} // namespace rk4::gui
