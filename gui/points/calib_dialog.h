#pragma once
// CalibDialog: the calibration of an analog point. The texts are bound to
// AnalogRoutines; a plot of the scaling line with the setpoints and their
// reset levels follows every change.

#include "core/points/analog.h"

#include <QDialog>

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace rk4 {
class Workspace;
}

namespace rk4::gui {

// The scaling line: counts 0..255 across, the decimal value up, the two
// setpoints as lines and the bands up to their reset levels.
class CalibPlot : public QWidget {
    Q_OBJECT

  public:
    explicit CalibPlot(const AnalogRoutines& analog, QWidget* parent = nullptr);
    QSize sizeHint() const override { return {360, 260}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const AnalogRoutines& analog;
};

class CalibDialog : public QDialog {
    Q_OBJECT

  public:
    CalibDialog(Workspace& space, PointRecord& point, Prompter& prompter, QWidget* parent = nullptr);

  public slots:
    void accept() override; // CheckError, then CalibtoAlarm
    void fieldsChanged();
    void displayChanged();

  private:
    QLineEdit* addField(const QString& label, const char* name, const std::string& value, const QString& help);
    void readControls();
    void showTexts();

    Workspace& space;
    Prompter& prompter;
    AnalogRoutines analog;
    QLineEdit* binaryMinimum = nullptr;
    QLineEdit* binaryMaximum = nullptr;
    QLineEdit* decimalMinimum = nullptr;
    QLineEdit* decimalMaximum = nullptr;
    QLineEdit* lowSetpoint = nullptr;
    QLineEdit* highSetpoint = nullptr;
    QComboBox* hysteresis = nullptr;
    QLabel* lowReset = nullptr;
    QLabel* highReset = nullptr;
    QRadioButton* binaryRadio = nullptr;
    QRadioButton* voltsRadio = nullptr;
    CalibPlot* plot = nullptr;
    QFormLayout* form = nullptr;
};

} // namespace rk4::gui
