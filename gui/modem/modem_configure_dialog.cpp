#include "gui/modem/modem_configure_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

QLineEdit* field(QWidget* parent, const char* name, const std::string& text, std::size_t length, const QString& help)
{
    auto* edit = new QLineEdit(QString::fromStdString(text), parent);
    edit->setObjectName(name);
    edit->setMaxLength(static_cast<int>(length));
    edit->setWhatsThis(help);
    return edit;
}

} // namespace

ModemConfigureDialog::ModemConfigureDialog(const modem::DialledNumber& last, QWidget* parent) : QDialog(parent)
{
    setObjectName("modemConfigureDialog");
    setWindowTitle("Telephone Number");
    setMinimumWidth(340);
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    countryEdit = field(this, "countryEdit", last.country, modem::kCountryCodeLength,
                        "The country code of the unit's telephone line (1 for North America).");
    areaEdit = field(this, "areaEdit", last.area, modem::kAreaCodeLength, "The area code of the unit's line.");
    numberEdit = field(this, "numberEdit", last.number, modem::kLocalNumberLength,
                       "The unit's telephone number. Letters are dialled as the keypad digits they share.");
    dialledLabel = new QLabel(this);
    dialledLabel->setObjectName("dialledLabel");
    dialledLabel->setWhatsThis("The number as it will be dialled, before it is made local to where you are.");
    form->addRow("&Country code:", countryEdit);
    form->addRow("&Area code:", areaEdit);
    form->addRow("&Number:", numberEdit);
    form->addRow("Dials:", dialledLabel);
    layout->addLayout(form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->setObjectName("buttons");
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    for (QLineEdit* edit : {countryEdit, areaEdit, numberEdit})
        connect(edit, &QLineEdit::textChanged, this, &ModemConfigureDialog::preview);
    numberEdit->setFocus();
    preview();
}

modem::DialledNumber ModemConfigureDialog::number() const
{
    return modem::enteredNumber(countryEdit->text().toStdString(), areaEdit->text().toStdString(),
                                numberEdit->text().toStdString());
}

void ModemConfigureDialog::preview() { dialledLabel->setText(QString::fromStdString(number().text())); }

} // namespace rk4::gui
