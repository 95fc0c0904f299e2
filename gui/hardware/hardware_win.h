#pragma once
// HardwareWin: the INPUTS or OUTPUTS list window. It shows the lines the core
// editor draws in a fixed-pitch font and opens the port dialogs.

#include "core/hardware/hardware_editor.h"
#include "gui/shell/editor_window.h"

class QLabel;
class QListWidget;

namespace rk4::gui {

class HardwareWin : public EditorWindow {
    Q_OBJECT

  public:
    HardwareWin(Workspace& space, Prompter& prompter, HardwareEditor::Mode mode, QWidget* parent = nullptr);

    Editor& editor() override { return hardware; }
    HardwareEditor& core() { return hardware; }
    QSize sizeHint() const override;

  public slots:
    void EditLine();
    void refresh();

  private:
    HardwareEditor hardware;
    QLabel* heading = nullptr;
    QListWidget* list = nullptr;
};

} // namespace rk4::gui
