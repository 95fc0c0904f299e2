#pragma once
// The general settings dialog (GeneralDialog): the site name, the system
// codes, rings, temporary acknowledge time, security level, Call Progress and
// the ring and carrier detect outputs, bound to a GeneralEditor.

#include "core/settings/general_editor.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;

namespace rk4::gui {

class GeneralDialog : public QDialog {
    Q_OBJECT

  public:
    GeneralDialog(GeneralEditor& editor, Prompter& prompter, QWidget* parent = nullptr);

  public slots:
    void accept() override; // OK
    void reject() override; // Cancel, Escape or the close box
    void ProgressChanged(bool checked);

  private:
    QWidget* buildSettings();
    QWidget* buildSecurity();
    QWidget* buildOutputs();
    void readControls();
    void focusOn(GeneralField field);

    GeneralEditor& core;
    Prompter& prompter;
    QLineEdit* nameEdit = nullptr;
    QLineEdit* accessCodeEdit = nullptr;
    QLineEdit* shiftChangeCodeEdit = nullptr;
    QLineEdit* modemEnableCodeEdit = nullptr;
    QComboBox* ringsCombo = nullptr;
    QComboBox* tempAckCombo = nullptr;
    std::array<QRadioButton*, kSecurityLevels> securityRadios{};
    QComboBox* ringOutCombo = nullptr;
    QComboBox* carrierDetectCombo = nullptr;
    QCheckBox* callProgressCheck = nullptr;
};

} // namespace rk4::gui
