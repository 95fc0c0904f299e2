#pragma once
// The group editor's dialog (GroupDialog): binds its controls to a
// GroupEditor for one of the groups 1 to 6.

#include "core/settings/group_editor.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QWidget;

namespace rk4::gui {

class GroupDialog : public QDialog {
    Q_OBJECT

  public:
    // `group` is 1..6. The navigation flags are taken while the dialog exists.
    GroupDialog(Workspace& space, int group, Prompter& prompter, QWidget* parent = nullptr);
    ~GroupDialog() override;

    GroupEditor& core() { return editor; }

  public slots:
    void CmOk();
    void reject() override; // Cancel, Escape or the close box

  private:
    QWidget* buildSettings();
    QWidget* buildShifts();
    QWidget* buildPorts();
    void readControls();
    void focusOn(GroupField field);

    GroupEditor editor;
    Prompter& prompter;
    QCheckBox* enabledCheck = nullptr;
    QLineEdit* nameEdit = nullptr;
    QLineEdit* ackCodeEdit = nullptr;
    QLineEdit* interrogateCodeEdit = nullptr;
    QLineEdit* shortCyclesEdit = nullptr;
    QLineEdit* shortTimerEdit = nullptr;
    QLineEdit* longTimerEdit = nullptr;
    std::array<QComboBox*, 4> shiftCombos{};
    QCheckBox* autoAckCheck = nullptr;
    QCheckBox* ackRequestCheck = nullptr;
    QComboBox* alarmOutCombo = nullptr;
    QComboBox* newAlarmOutCombo = nullptr;
    QComboBox* ackOutCombo = nullptr;
    QComboBox* ackInCombo = nullptr;
};

} // namespace rk4::gui
