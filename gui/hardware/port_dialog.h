#pragma once
// The port dialogs (DigitalDialog, WdogDialog, IntervalDialog, TotalDialog,
// AnalogDialog, OnOffDialog, TimedDialog): one Qt class that lays out the
// controls of the port's type and binds them to its PortEditor.

#include "core/hardware/port_editor.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace rk4::gui {

class PortDialog : public QDialog {
    Q_OBJECT

  public:
    PortDialog(PortEditor& editor, Prompter& prompter, QWidget* parent = nullptr);

  public slots:
    void accept() override; // CanClose
    void ChangeInput(int index);
    void ChangeOutput(int index);
    void DebounceSec();
    void DebounceMin();
    void WdogSec();
    void WdogMin();
    void TimerSec();
    void TimerMin();

  private:
    struct TimeControls {
        QLineEdit* edit = nullptr;
        QRadioButton* seconds = nullptr;
        QRadioButton* minutes = nullptr;
        QLabel* steps = nullptr;
    };

    QWidget* buildTimeBox(const QString& title, const QString& name, TimeControls& controls, const TimeField& field,
                          const QString& help);
    QWidget* buildTypeRow();
    QWidget* buildChoiceBox(const QString& title, const QStringList& texts, const QStringList& names,
                            const QStringList& help, QList<QRadioButton*>& buttons);
    void readControls();
    void showTime(TimeControls& controls, const TimeField& field);

    PortEditor& core;
    Prompter& prompter;
    QComboBox* typeCombo = nullptr;
    TimeControls debounce;
    TimeControls timer;
    QList<QRadioButton*> polarity; // normally high, normally low
    QList<QRadioButton*> edges;    // both, low to high, high to low
    QList<QRadioButton*> resolution;
    QComboBox* resetCombo = nullptr;
};

} // namespace rk4::gui
