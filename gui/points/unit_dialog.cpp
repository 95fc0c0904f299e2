#include "gui/points/unit_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

struct SelectorControl {
    UnitSelector which;
    const char* label;
    const char* objectName;
    const char* help;
};

const SelectorControl kControls[] = {
    {UnitSelector::Multiplier, "&Multiplier:", "multiplierCombo",
     "The word said right after the number, such as THOUSAND for a value kept in thousands."},
    {UnitSelector::Unit, "&Unit:", "unitCombo",
     "The unit of measure said after the number and its multiplier. KILOWATTS and P H are spoken only by "
     "newer units."},
    {UnitSelector::Rate, "&Rate:", "rateCombo", "The rate said last, such as PER MINUTE for a flow."},
};

} // namespace

UnitDialog::UnitDialog(const UnitSelectors& stored, QWidget* parent) : QDialog(parent)
{
    setObjectName("UnitDialog");
    setWindowTitle("Spoken Units");
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    auto* form = new QFormLayout;
    layout->addLayout(form);

    for (const SelectorControl& control : kControls) {
        const int at = static_cast<int>(control.which);
        const SelectorChoices choices = selectorChoices(control.which, stored[at]);
        auto* combo = new QComboBox(this);
        combo->setObjectName(control.objectName);
        combo->setWhatsThis(control.help);
        for (std::size_t i = 0; i < choices.labels.size(); ++i)
            combo->addItem(QString::fromStdString(choices.labels[i]), choices.values[i]);
        combo->setCurrentIndex(choices.indexOf(stored[at]));
        connect(combo, &QComboBox::currentIndexChanged, this, &UnitDialog::showSpoken);
        form->addRow(control.label, combo);
        combos[at] = combo;
    }

    spokenLabel = new QLabel(this);
    spokenLabel->setObjectName("spokenLabel");
    spokenLabel->setWhatsThis("What the unit says when it reports the value, with 12.5 as an example.");
    spokenLabel->setFrameShape(QFrame::StyledPanel);
    spokenLabel->setMinimumWidth(spokenLabel->fontMetrics().horizontalAdvance("12.5 HUNDRED THOUSAND DEGREES "
                                                                              "FAHRENHEIT PER SECOND") +
                                 16);
    form->addRow("Spoken:", spokenLabel);

    newerUnitNote = new QLabel("Only newer units speak this unit; an older unit says no unit.", this);
    newerUnitNote->setObjectName("newerUnitNote");
    newerUnitNote->setWordWrap(true);
    layout->addWidget(newerUnitNote);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setWhatsThis("Keep these words for the point.");
    buttons->button(QDialogButtonBox::Cancel)->setWhatsThis("Leave the words as they were.");
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    showSpoken();
}

UnitSelectors UnitDialog::selectors() const
{
    UnitSelectors chosen{};
    for (int at = 0; at < 3; ++at)
        chosen[at] = static_cast<std::uint8_t>(combos[at]->currentData().toUInt());
    return chosen;
}

void UnitDialog::showSpoken()
{
    const UnitSelectors chosen = selectors();
    const std::string words = spokenUnitsText(chosen);
    spokenLabel->setText(QString::fromStdString("12.5" + (words.empty() ? "" : " " + words)));
    newerUnitNote->setVisible(needsNewerUnit(chosen));
}

} // namespace rk4::gui
