#pragma once
// AlarmsDialog: the eight alarms, their directory, one input format and one
// debounce for all.

#include "core/basic/alarms_editor.h"
#include "gui/basic/sim_dialog.h"

#include <array>

class QComboBox;
class QLineEdit;
class QRadioButton;

namespace rk4::gui {

class AlarmsDialog : public SimDialog {
    Q_OBJECT

  public:
    AlarmsDialog(Workspace& space, Prompter& prompter, QWidget* parent = nullptr);

    AlarmsEditor& core() { return editor; }

  public slots:
    void ResolutionChanging(bool minutes);
    void UpdateDisabled(int alarm);

  protected:
    void focusRefused() override;

  private:
    AlarmsEditor editor;
    std::array<QLineEdit*, kBasicAlarms> names{};
    QLineEdit* debounceEdit = nullptr;
    QRadioButton* seconds = nullptr;
    QRadioButton* minutes = nullptr;
};

} // namespace rk4::gui
