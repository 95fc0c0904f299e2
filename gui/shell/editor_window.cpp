#include "gui/shell/editor_window.h"

#include "gui/shell/main_window.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>
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

void EditorWindow::layOutLineList(QLabel* heading, const QString& editWhatsThis)
{
    auto* edit = new QPushButton("&Edit Line", this);
    edit->setObjectName("editButton");
    edit->setWhatsThis(editWhatsThis);
    auto* exit = new QPushButton("E&xit", this);
    exit->setObjectName("exitButton");
    exit->setWhatsThis("Close the window and keep the changes.");
    auto* cancel = new QPushButton("&Cancel", this);
    cancel->setObjectName("cancelButton");
    cancel->setWhatsThis("Close the window without keeping the changes.");
    connect(edit, &QPushButton::clicked, this, [this] { editLineHandler(); });
    connect(exit, &QPushButton::clicked, this, &EditorWindow::CmWinExit);
    connect(cancel, &QPushButton::clicked, this, &EditorWindow::CmWinCancel);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(edit);
    buttons->addStretch(1);
    buttons->addWidget(exit);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(lineList, 1);
    layout->addLayout(buttons);

    heading->setIndent(lineList->frameWidth() +
                       lineList->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, lineList) + 1);
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
