#include "gui/points/calib_dialog.h"

#include "core/common/numbers.h"
#include "core/database/file.h"
#include "core/shell/workspace.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <QWhatsThis>

#include <algorithm>

namespace rk4::gui {

CalibPlot::CalibPlot(const AnalogRoutines& analog, QWidget* parent) : QWidget(parent), analog(analog)
{
    setObjectName("calibPlot");
    setMinimumSize(sizeHint());
    setWhatsThis("The scaling line: the converter counts 0 to 255 across, the decimal value up. The red band runs "
                 "from the low setpoint up to its reset level, the blue band from the high setpoint down to its "
                 "reset level.");
}

void CalibPlot::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().base());
    const QFontMetrics metrics(font());
    const int left = metrics.horizontalAdvance("-0000.00") + 8;
    const int bottom = height() - metrics.height() - 8;
    const QRect area(left, 8, width() - left - 12, bottom - 8);

    // The value range shown: the scaling line over 0..255, the setpoints included.
    const float atZero = analog.FindValue(0);
    const float atTop = analog.FindValue(255);
    const float low = leadingNumber(analog.calib.lowSetpoint);
    const float high = leadingNumber(analog.calib.highSetpoint);
    float lowest = std::min({atZero, atTop, low, high});
    float highest = std::max({atZero, atTop, low, high});
    if (highest - lowest < 1e-6f)
        highest = lowest + 1.0f;
    const float margin = (highest - lowest) * 0.05f;
    lowest -= margin;
    highest += margin;
    auto x = [&](float counts) { return area.left() + counts * static_cast<float>(area.width()) / 255.0f; };
    auto y = [&](float decimal) {
        return area.bottom() - (decimal - lowest) * static_cast<float>(area.height()) / (highest - lowest);
    };

    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(area);
    painter.setPen(palette().color(QPalette::Text));
    for (int counts : {0, 64, 128, 192, 255}) {
        const QString label = QString::number(counts);
        painter.drawText(QPointF(x(static_cast<float>(counts)) - metrics.horizontalAdvance(label) / 2.0,
                                 bottom + metrics.ascent() + 4),
                         label);
    }
    for (float decimal : {lowest + margin, highest - margin}) {
        const QString label = QString::number(decimal, 'f', 1);
        painter.drawText(QPointF(left - metrics.horizontalAdvance(label) - 6, y(decimal) + metrics.ascent() / 2.0),
                         label);
    }

    // Bands between each setpoint and its reset level.
    const float lowResetValue = leadingNumber(analog.calib.lowReset);
    const float highResetValue = leadingNumber(analog.calib.highReset);
    auto band = [&](float from, float to, QColor color) {
        color.setAlpha(60);
        const float top = y(std::max(from, to));
        painter.fillRect(QRectF(area.left(), top, area.width(), y(std::min(from, to)) - top), color);
        color.setAlpha(255);
        painter.setPen(QPen(color, 1.5, Qt::DashLine));
        painter.drawLine(QPointF(area.left(), y(from)), QPointF(area.right(), y(from)));
    };
    band(low, lowResetValue, QColor(200, 40, 40));
    band(high, highResetValue, QColor(40, 80, 200));

    painter.setPen(QPen(palette().color(QPalette::Text), 2));
    painter.drawLine(QPointF(x(0), y(atZero)), QPointF(x(255), y(atTop)));
}

CalibDialog::CalibDialog(Workspace& space, PointRecord& point, Prompter& prompter, QWidget* parent)
    : QDialog(parent), space(space), prompter(prompter), analog(point, !space.cfg.binaryCalibration())
{
    setObjectName("CalibDialog");
    setWindowTitle("Calibration");
    auto* layout = new QHBoxLayout(this);
    auto* column = new QVBoxLayout;
    layout->addLayout(column);

    auto* display = new QGroupBox("Binary limits entered in", this);
    auto* displayRow = new QHBoxLayout(display);
    binaryRadio = new QRadioButton("&Counts (0-255)", display);
    binaryRadio->setObjectName("binaryRadio");
    binaryRadio->setWhatsThis("Enter the binary minimum and maximum as converter counts, 0 to 255.");
    voltsRadio = new QRadioButton("&Volts (0-5)", display);
    voltsRadio->setObjectName("voltsRadio");
    voltsRadio->setWhatsThis("Enter the binary minimum and maximum as input volts, 0 to 5. The choice is kept for "
                             "the next calibration.");
    (analog.volts() ? voltsRadio : binaryRadio)->setChecked(true);
    displayRow->addWidget(binaryRadio);
    displayRow->addWidget(voltsRadio);
    column->addWidget(display);
    connect(binaryRadio, &QRadioButton::toggled, this, &CalibDialog::displayChanged);

    auto* fields = new QWidget(this);
    form = new QFormLayout(fields);
    form->setContentsMargins(0, 0, 0, 0);
    const Calibration& c = analog.calib;
    binaryMinimum = addField("Binary M&inimum:", "binaryMinimumEdit", c.binaryMinimum,
                             "The input reading at the decimal minimum: counts, or volts.");
    binaryMaximum = addField("Binary M&aximum:", "binaryMaximumEdit", c.binaryMaximum,
                             "The input reading at the decimal maximum: counts up to 255, or volts up to 5.");
    decimalMinimum = addField("Decimal Mi&nimum:", "decimalMinimumEdit", c.decimalMinimum,
                              "The value the unit speaks at the binary minimum, down to -999.9.");
    decimalMaximum = addField("Decimal Ma&ximum:", "decimalMaximumEdit", c.decimalMaximum,
                              "The value the unit speaks at the binary maximum, up to 999.9. Its size sets the "
                              "decimal places: XXX.X, XX.XX or X.XXX.");
    lowSetpoint = addField("&Low Setpoint:", "lowSetpointEdit", c.lowSetpoint,
                           "Below this value the point is in low alarm.");
    highSetpoint = addField("&High Setpoint:", "highSetpointEdit", c.highSetpoint,
                            "Above this value the point is in high alarm.");
    hysteresis = new QComboBox(fields);
    hysteresis->setObjectName("hysteresisCombo");
    for (int percent : kHysteresisPercent)
        hysteresis->addItem(QString("%1 %").arg(percent));
    hysteresis->setCurrentIndex(c.hysteresisIndex);
    hysteresis->setWhatsThis("How far, as a share of the binary range, the value must move back past a setpoint "
                             "before its alarm resets.");
    form->addRow("H&ysteresis:", hysteresis);
    connect(hysteresis, &QComboBox::currentIndexChanged, this, &CalibDialog::fieldsChanged);
    lowReset = new QLabel(fields);
    lowReset->setObjectName("lowResetLabel");
    lowReset->setWhatsThis("The value at which a low alarm resets: the low setpoint plus the hysteresis.");
    form->addRow("Low Reset:", lowReset);
    highReset = new QLabel(fields);
    highReset->setObjectName("highResetLabel");
    highReset->setWhatsThis("The value at which a high alarm resets: the high setpoint less the hysteresis.");
    form->addRow("High Reset:", highReset);
    column->addWidget(fields);
    column->addStretch(1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("okButton");
    buttons->button(QDialogButtonBox::Ok)->setWhatsThis("Check the calibration and store it in the point.");
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("cancelButton");
    buttons->button(QDialogButtonBox::Cancel)->setWhatsThis("Close without changing the point's calibration.");
    connect(buttons, &QDialogButtonBox::accepted, this, &CalibDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    column->addWidget(buttons);

    plot = new CalibPlot(analog, this);
    layout->addWidget(plot, 1);

    auto* help = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F1), this);
    connect(help, &QShortcut::activated, this, [] { QWhatsThis::enterWhatsThisMode(); });
    fieldsChanged();
}

QLineEdit* CalibDialog::addField(const QString& label, const char* name, const std::string& text,
                                 const QString& help)
{
    auto* edit = new QLineEdit(QString::fromStdString(text), this);
    edit->setObjectName(name);
    edit->setMaxLength(14);
    edit->setFixedWidth(edit->fontMetrics().horizontalAdvance("-0000.000") + 20);
    edit->setAlignment(Qt::AlignRight);
    edit->setWhatsThis(help);
    form->addRow(label, edit);
    connect(edit, &QLineEdit::textEdited, this, &CalibDialog::fieldsChanged);
    return edit;
}

void CalibDialog::readControls()
{
    Calibration& c = analog.calib;
    c.binaryMinimum = binaryMinimum->text().toStdString();
    c.binaryMaximum = binaryMaximum->text().toStdString();
    c.decimalMinimum = decimalMinimum->text().toStdString();
    c.decimalMaximum = decimalMaximum->text().toStdString();
    c.lowSetpoint = lowSetpoint->text().toStdString();
    c.highSetpoint = highSetpoint->text().toStdString();
    c.hysteresisIndex = hysteresis->currentIndex();
}

void CalibDialog::showTexts()
{
    lowReset->setText(QString::fromStdString(analog.calib.lowReset));
    highReset->setText(QString::fromStdString(analog.calib.highReset));
    plot->update();
}

void CalibDialog::fieldsChanged()
{
    readControls();
    analog.FixHyst();
    showTexts();
}

void CalibDialog::displayChanged()
{
    readControls();
    analog.setVolts(voltsRadio->isChecked());
    binaryMinimum->setText(QString::fromStdString(analog.calib.binaryMinimum));
    binaryMaximum->setText(QString::fromStdString(analog.calib.binaryMaximum));
    space.cfg.bytes[1] = voltsRadio->isChecked() ? 0 : 1;
    writeConfigFile(space.configPath(), space.cfg); // a preference: a failed write only loses it
    fieldsChanged();
}

void CalibDialog::accept()
{
    readControls();
    const CalibCheck check = analog.CheckError(prompter);
    if (!check.accepted) {
        QWidget* field = nullptr;
        switch (check.focus) {
        case CalibField::BinaryMinimum: field = binaryMinimum; break;
        case CalibField::BinaryMaximum: field = binaryMaximum; break;
        case CalibField::DecimalMinimum: field = decimalMinimum; break;
        case CalibField::DecimalMaximum: field = decimalMaximum; break;
        case CalibField::LowSetpoint: field = lowSetpoint; break;
        case CalibField::HighSetpoint: field = highSetpoint; break;
        case CalibField::Hysteresis: field = hysteresis; break;
        case CalibField::None: break;
        }
        if (field) {
            field->setFocus();
            if (auto* edit = qobject_cast<QLineEdit*>(field))
                edit->selectAll();
        }
        return;
    }
    analog.CalibtoAlarm();
    QDialog::accept();
}

} // namespace rk4::gui
