#pragma once
// The point dialogs (NewPointDialog, SpecialDialog, DigitalPointDialog,
// WdogPointDialog, OutputPointDialog, IntervalPointDialog, TotalPointDialog,
// AnalogPointDialog): one Qt class that lays out the controls of the point's
// type and binds them to its PointEditor.

#include "core/points/point_editor.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QRadioButton;

namespace rk4::gui {

class PointDialog : public QDialog {
    Q_OBJECT

  public:
    PointDialog(PointEditor& editor, Prompter& prompter, QWidget* parent = nullptr);

  public slots:
    void CmExit();          // Exit, or OK in the port chooser
    void reject() override; // Cancel, Escape or the close box
    void ChangeIO(int index);
    void Calibrate();
    void ChooseUnits();

  private:
    QWidget* buildPortList();
    QWidget* buildCommon();
    void readControls();
    void focusOn(PointField field);
    void showUnits();

    PointEditor& core;
    Prompter& prompter;
    QListWidget* portList = nullptr;
    QLineEdit* nameEdit = nullptr;
    QCheckBox* enabledCheck = nullptr;
    QComboBox* groupCombo = nullptr;
    QLineEdit* codeEdit = nullptr;
    QLineEdit* offCodeEdit = nullptr;
    QRadioButton* whenActiveRadio = nullptr;
    QRadioButton* latchingRadio = nullptr;
    QList<QRadioButton*> decimalRadios;
    QLabel* unitsLabel = nullptr;
};

} // namespace rk4::gui
