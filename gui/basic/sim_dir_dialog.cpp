#include "gui/basic/sim_dir_dialog.h"

#include "core/basic/basic_fields.h"
#include "gui/directory/dir_win.h"
#include "gui/shell/editor_window.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

// Hosts the full directory editor as a modal window over the Basic dialog.
// Escape and the close box leave it as its own Cancel does.
class FullDirectoryHost : public QDialog {
  public:
    FullDirectoryHost(Workspace& space, Prompter& prompter, int dir, QWidget* parent) : QDialog(parent)
    {
        setObjectName("fullDirectoryHost");
        window = new DirWin(space, prompter, dir, this);
        setWindowTitle(window->windowTitle());
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(window);
        resize(window->sizeHint());
        connect(window, &EditorWindow::closed, this, &QDialog::accept);
    }
    void reject() override { window->CmWinCancel(); }

  private:
    DirWin* window = nullptr;
};

const char kCodeHelp[] = " Up to 7 of 0-9, *, #, A, B, C and D.";

} // namespace

PhoneNumberDialog::PhoneNumberDialog(PhoneNumberEditor& editor, Prompter& prompter, QWidget* parent)
    : SimDialog(editor, prompter, parent)
{
    setObjectName("phoneNumberDialog");
    setWindowTitle("Phone Number");
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    numberEdit = addEdit("numberEdit", editor.number, static_cast<int>(kPhoneNumberLength),
                         "The number the unit dials: 0-9, *, #, A, B, C and D, and ! for a pause. Blanks and "
                         "dashes may be typed for readability; they are not stored.");
    numberEdit->setMinimumWidth(numberEdit->fontMetrics().horizontalAdvance(QString(24, '0')));
    auto* form = new QFormLayout;
    form->addRow("Phone &number:", numberEdit);
    layout->addLayout(form);
    addButtons(layout);
}

void PhoneNumberDialog::focusRefused() { focusField(numberEdit); }

SimDirDialog::SimDirDialog(Workspace& space, Prompter& prompter, QWidget* parent)
    : SimDialog(editor, prompter, parent), space(space), editor(space)
{
    setObjectName("simDirDialog");
    setWindowTitle(qtext(editor.title()));
    auto* layout = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    row->addWidget(buildDirectory(0));
    row->addWidget(buildDirectory(1));
    layout->addLayout(row);
    addButtons(layout);
    UpdateList(0);
    UpdateList(1);
}

QWidget* SimDirDialog::buildDirectory(int dir)
{
    const QString letter(QChar('A' + dir));
    const QString group = dir == 0 ? "1" : "2";
    auto* box = new QGroupBox("Directory " + letter, this);
    box->setObjectName("directoryBox" + letter);
    auto* column = new QVBoxLayout(box);
    Controls& c = controls[dir];
    SimDirEditor::Directory& d = editor.directory[dir];

    c.list = new QListWidget(box);
    c.list->setObjectName("numberList" + letter);
    c.list->setFont(listFont());
    // All twenty slots in view, and room for a long number.
    const QFontMetrics metrics(c.list->font());
    c.list->setMinimumSize(metrics.horizontalAdvance(QString(28, '0')),
                           metrics.lineSpacing() * kBasicPhoneNumbers + 2 * c.list->frameWidth() + 4);
    c.list->setWhatsThis("The numbers Directory " + letter + " calls, in turn, when an alarm reports through it. "
                         "Double click a number, or select it and press Enter, to change it.");
    connect(c.list, &QListWidget::currentRowChanged, this, [this, dir](int slot) {
        if (slot >= 0)
            editor.selected[dir] = slot;
    });
    connect(c.list, &QListWidget::itemActivated, this, [this, dir] { edit(dir); });
    column->addWidget(c.list, 1);

    c.fill = new QLabel(box);
    c.fill->setObjectName("fillLabel" + letter);
    c.fill->setWhatsThis("How much of the directory's memory the numbers take. Each number takes its digits and "
                         "three bytes more.");
    column->addWidget(c.fill);

    auto* buttons = new QGridLayout;
    const struct {
        const char* text;
        const char* name;
        const char* help;
        void (SimDirDialog::*slot)();
        void (SimDirDialog::*slotB)();
    } kButtons[] = {
        {"&Insert", "insertButton", "Enter a new number above the selected one.", &SimDirDialog::InsertA,
         &SimDirDialog::InsertB},
        {"&Delete", "deleteButton", "Remove the selected number; the numbers below move up.", &SimDirDialog::DeleteA,
         &SimDirDialog::DeleteB},
        {"&Edit", "editButton", "Change the selected number, or add one when an empty slot is selected.",
         &SimDirDialog::EditingA, &SimDirDialog::EditingB},
        {"Ad&vanced...", "advancedButton",
         "Open the full directory editor on this directory, for commands beyond dialling. It works on the "
         "configuration itself: the numbers as they are here are written there first.",
         &SimDirDialog::AdvancedA, &SimDirDialog::AdvancedB},
    };
    int index = 0;
    for (const auto& b : kButtons) {
        auto* button = new QPushButton(dir == 0 ? b.text : QString(b.text).remove('&'), box);
        button->setObjectName(QString(b.name) + letter);
        button->setWhatsThis(b.help);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, dir == 0 ? b.slot : b.slotB);
        if (b.slot != &SimDirDialog::AdvancedA)
            c.numberButtons.push_back(button);
        buttons->addWidget(button, index / 2, index % 2);
        ++index;
    }
    column->addLayout(buttons);
    c.advancedNote = new QLabel("This directory holds more than phone numbers:\nchange it with Advanced.", box);
    c.advancedNote->setObjectName("advancedNote" + letter);
    c.advancedNote->setWhatsThis("Writing the numbers back from here would drop the directory's other commands, so "
                                 "its lines are shown as they are and only the full editor changes them.");
    column->addWidget(c.advancedNote);

    auto* form = new QFormLayout;
    c.ackCode = addEdit("ackCodeEdit" + letter, d.ackCode, static_cast<int>(7),
                        "The code a called person enters to acknowledge the alarm and stop the calls from this "
                        "directory." + QString(kCodeHelp));
    c.interrogateCode = addEdit("interrogateCodeEdit" + letter, d.interrogateCode, 7,
                                "The code a caller enters to hear the state of the alarms that report through this "
                                "directory." + QString(kCodeHelp));
    c.cycle = addEdit("cycleEdit" + letter, d.cycle, 3,
                      "Minutes between the rounds of calls through this directory, 1 to 255.");
    form->addRow("Acknowledge code:", c.ackCode);
    form->addRow("Interrogate code:", c.interrogateCode);
    form->addRow("Cycle interval (min):", c.cycle);
    column->addLayout(form);
    auto* note = new QLabel("Alarms of group " + group + " report through this directory.", box);
    note->setEnabled(false);
    column->addWidget(note);
    return box;
}

void SimDirDialog::UpdateList(int dir)
{
    Controls& c = controls[dir];
    const std::vector<std::string> lines = editor.UpdateList(dir);
    c.list->clear();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        auto* item = new QListWidgetItem(QString("%1  %2").arg(i + 1, 2).arg(qtext(lines[i])), c.list);
        if (lines[i] == "empty")
            item->setForeground(palette().brush(QPalette::Disabled, QPalette::Text));
    }
    c.list->setCurrentRow(editor.selected[dir]);
    c.fill->setText(qtext(editor.SetFill(dir)));
    const bool numbers = editor.numbersOnly(dir);
    for (QPushButton* button : c.numberButtons)
        button->setEnabled(numbers);
    c.fill->setVisible(numbers);
    c.advancedNote->setVisible(!numbers);
}

SimDirEditor::NumberRunner SimDirDialog::numberDialog()
{
    return [this](PhoneNumberEditor& number) {
        PhoneNumberDialog dialog(number, prompter, this);
        dialog.exec();
    };
}

void SimDirDialog::insert(int dir)
{
    if (editor.Insert(dir, prompter, numberDialog()))
        UpdateList(dir);
}

void SimDirDialog::remove(int dir)
{
    if (editor.Delete(dir))
        UpdateList(dir);
}

void SimDirDialog::edit(int dir)
{
    if (editor.Editing(dir, prompter, numberDialog()))
        UpdateList(dir);
}

void SimDirDialog::advanced(int dir)
{
    editor.Advanced(dir, [this, dir] {
        FullDirectoryHost host(space, prompter, dir, this);
        host.exec();
    });
    UpdateList(dir);
}

void SimDirDialog::focusRefused()
{
    const Controls& c = controls[editor.focusDirectory];
    switch (editor.focus) {
    case SimDirEditor::Field::AckCode: focusField(c.ackCode); break;
    case SimDirEditor::Field::InterrogateCode: focusField(c.interrogateCode); break;
    case SimDirEditor::Field::Cycle: focusField(c.cycle); break;
    case SimDirEditor::Field::None: break;
    }
}

} // namespace rk4::gui
