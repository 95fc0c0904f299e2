#pragma once
// PointsWin: the list of the 30 points. It shows the lines the core editor
// draws in a fixed-pitch font and opens the point dialogs.

#include "core/points/points_editor.h"
#include "gui/shell/editor_window.h"

class QLabel;
class QListWidget;

namespace rk4::gui {

class PointsWin : public EditorWindow {
    Q_OBJECT

  public:
    PointsWin(Workspace& space, Prompter& prompter, QWidget* parent = nullptr);

    Editor& editor() override { return points; }
    PointsEditor& core() { return points; }
    QSize sizeHint() const override;

  public slots:
    void EditLine();
    void refresh();

  private:
    Workspace& space;
    PointsEditor points;
    QLabel* heading = nullptr;
    QListWidget* list = nullptr;
};

} // namespace rk4::gui
