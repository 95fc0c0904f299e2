#include "gui/basic/sim_dialog.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QWhatsThis>

namespace rk4::gui {

QString qtext(const std::string& text) { return QString::fromStdString(text); }

SimDialog::SimDialog(SimDialogEditor& editor, Prompter& prompter, QWidget* parent)
    : QDialog(parent), prompter(prompter), core(editor)
{
    auto* help = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F1), this);
    connect(help, &QShortcut::activated, this, [] { QWhatsThis::enterWhatsThisMode(); });
}

void SimDialog::accept()
{
    if (core.CanClose(prompter))
        QDialog::accept();
    else
        focusRefused();
}

void SimDialog::reject()
{
    if (core.CanLeave(prompter))
        QDialog::reject();
    else
        focusRefused();
}

void SimDialog::addButtons(QBoxLayout* layout)
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton* ok = buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName("okButton");
    ok->setWhatsThis("Check the settings and keep them.");
    QPushButton* cancel = buttons->button(QDialogButtonBox::Cancel);
    cancel->setObjectName("cancelButton");
    cancel->setWhatsThis("Close without keeping the changes; when something was changed you are asked first.");
    connect(buttons, &QDialogButtonBox::accepted, this, &SimDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &SimDialog::reject);
    layout->addWidget(buttons);
}

QLineEdit* SimDialog::addEdit(const QString& name, std::string& target, int maxLength, const QString& help)
{
    auto* edit = new QLineEdit(qtext(target), this);
    edit->setObjectName(name);
    edit->setMaxLength(maxLength);
    edit->setWhatsThis(help);
    connect(edit, &QLineEdit::textChanged, this, [&target](const QString& text) { target = text.toStdString(); });
    return edit;
}

QComboBox* SimDialog::addCombo(const QString& name, const std::vector<std::string>& choices, int current,
                               const QString& help)
{
    auto* combo = new QComboBox(this);
    combo->setObjectName(name);
    for (const std::string& choice : choices)
        combo->addItem(qtext(choice));
    combo->setCurrentIndex(current);
    combo->setWhatsThis(help);
    return combo;
}

void SimDialog::focusField(QWidget* field)
{
    if (!field)
        return;
    field->setFocus();
    if (auto* edit = qobject_cast<QLineEdit*>(field))
        edit->selectAll();
}

} // namespace rk4::gui
