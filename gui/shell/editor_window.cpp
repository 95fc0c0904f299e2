#include "gui/shell/editor_window.h"

#include "gui/shell/main_window.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScreen>

namespace rk4::gui {

EditorWindow::EditorWindow(Prompter& prompter, QWidget* parent) : QWidget(parent), prompter(prompter) {}

void EditorWindow::CmWinExit()
{
    leaving = Leaving::Exit;
    closeFrame();
    leaving = Leaving::Other;
}

void EditorWindow::CmWinCancel() { closeFrame(); }

void EditorWindow::closeFrame()
{
    // The frame's close asks this widget first, so every way out meets closeEvent.
    if (auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget()))
        frame->close();
    else
        close();
}

void EditorWindow::closeEvent(QCloseEvent* event)
{
    if (!editor().CanClose(prompter, leaving)) {
        event->ignore();
        return;
    }
    event->accept();
    emit closed();
}

QFont listFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    const QScreen* screen = QGuiApplication::primaryScreen();
    const bool small = screen && screen->geometry().width() <= 800;
    font.setPointSize(small ? 8 : 10);
    return font;
}

QMdiSubWindow* openEditorWindow(Main& main, EditorWindow* window)
{
    QMdiSubWindow* frame = main.mdiArea()->addSubWindow(window);
    frame->setAttribute(Qt::WA_DeleteOnClose);
    frame->setWindowTitle(window->windowTitle());
    frame->setWindowIcon(main.windowIcon());
    frame->resize(frame->sizeHint());
    QObject::connect(window, &EditorWindow::closed, &main, [&main] { main.updateCommands(); });
    frame->show();
    window->setFocus();
    main.updateCommands();
    return frame;
}

} // namespace rk4::gui
