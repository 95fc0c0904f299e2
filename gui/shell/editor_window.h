#pragma once
// The Qt side of every editor window: an MDI child that owns its core editor,
// leaves through Exit (keep) or any other way (the save-or-discard prompt),
// and tells the main window when it has closed so the commands follow the
// navigation flags again.

#include "core/common/prompter.h"
#include "core/shell/editor.h"

#include <QFont>
#include <QWidget>

#include <functional>

class QLabel;
class QListWidget;
class QMdiSubWindow;

namespace rk4::gui {

class Main;

class EditorWindow : public QWidget {
    Q_OBJECT

  public:
    explicit EditorWindow(Prompter& prompter, QWidget* parent = nullptr);

    virtual Editor& editor() = 0;

  public slots:
    void CmWinExit();   // leave and keep the edits
    void CmWinCancel(); // leave another way: asks when there are edits

  signals:
    void closed();

  protected:
    void closeEvent(QCloseEvent* event) override;
    // A list whose lines are edited: double click, Enter and the context
    // menu's "Edit Line" call `editLine`; Escape leaves as Cancel does.
    void bindLineList(QListWidget* list, std::function<void()> editLine);
    // The list window's shape: the heading over the bound list, then Edit Line,
    // Exit and Cancel; the heading is indented to stand over the text columns.
    void layOutLineList(QLabel* heading, const QString& editWhatsThis);
    bool eventFilter(QObject* watched, QEvent* event) override;

    Prompter& prompter;

  private:
    void closeFrame();

    Leaving leaving = Leaving::Other;
    QListWidget* lineList = nullptr;
    std::function<void()> editLineHandler;
};

// The fixed-pitch font of the list windows, whose columns are part of what
// they show; a small screen gets a smaller size.
QFont listFont();

// Shows `window` in the main window's MDI area and keeps the main window's
// commands in step with the navigation flags while it is open and after.
QMdiSubWindow* openEditorWindow(Main& main, EditorWindow* window);

} // namespace rk4::gui
