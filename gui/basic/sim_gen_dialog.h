#pragma once
// SimGenDialog: the Basic system settings.

#include "core/basic/sim_general.h"
#include "gui/basic/sim_dialog.h"

class QLineEdit;

namespace rk4::gui {

class SimGenDialog : public SimDialog {
    Q_OBJECT

  public:
    SimGenDialog(Workspace& space, Prompter& prompter, QWidget* parent = nullptr);

    SimGenEditor& core() { return editor; }

  protected:
    void focusRefused() override;

  private:
    SimGenEditor editor;
    QLineEdit* accessEdit = nullptr;
    QLineEdit* modemEdit = nullptr;
    QLineEdit* controlEdit = nullptr;
};

} // namespace rk4::gui
