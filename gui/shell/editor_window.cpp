#include "gui/shell/editor_window.h"

#include "gui/shell/main_window.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QListWidget>
#include <QMenu>
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

void EditorWindow::bindLineList(QListWidget* list, std::function<void()> editLine)
{
    lineList = list;
    editLineHandler = std::move(editLine);
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    list->installEventFilter(this);
    connect(list, &QListWidget::doubleClicked, this, [this] { editLineHandler(); });
    connect(list, &QListWidget::customContextMenuRequested, this, [this](const QPoint& position) {
        if (QListWidgetItem* item = lineList->itemAt(position))
            lineList->setCurrentItem(item);
        QMenu menu(this);
        menu.setObjectName("lineMenu");
        QAction* edit = menu.addAction("Edit Line");
        edit->setObjectName("actionEditLine");
        connect(edit, &QAction::triggered, this, [this] { editLineHandler(); });
        menu.exec(lineList->viewport()->mapToGlobal(position));
    });
}

bool EditorWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (lineList && watched == lineList && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            editLineHandler();
            return true;
        }
        if (key == Qt::Key_Escape) {
            CmWinCancel();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
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
