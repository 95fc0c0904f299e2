#pragma once
// DirWin: the list window of one call-out directory. It shows the lines the
// core editor draws in a fixed-pitch font, offers the line operations on a
// context menu, buttons and keys, and opens the line editor.

#include "core/directory/directory_editor.h"
#include "gui/shell/editor_window.h"

class QHBoxLayout;
class QLabel;
class QListWidget;
class QPushButton;

namespace rk4::gui {

class DirWin : public EditorWindow {
    Q_OBJECT

  public:
    DirWin(Workspace& space, Prompter& prompter, int dirIndex, QWidget* parent = nullptr);

    Editor& editor() override { return directory; }
    DirectoryEditor& core() { return directory; }
    QSize sizeHint() const override;

  public slots:
    void EditLine();
    void InsertLine();
    void DeleteLine();
    void CmCopyLine();
    void CmPasteLine();
    void refresh();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void EvRButtonDown(const QPoint& position);
    void SetCopyandPaste();
    QPushButton* addButton(QHBoxLayout* row, const QString& text, const char* name, const QString& help,
                           void (DirWin::*slot)());

    DirectoryEditor directory;
    QLabel* heading = nullptr;
    QListWidget* list = nullptr;
    QPushButton* pasteButton = nullptr;
};

} // namespace rk4::gui
