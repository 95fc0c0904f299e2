#include "gui/directory/dir_win.h"

#include "gui/directory/dir_dialog.h"

#include <QAction>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace rk4::gui {

DirWin::DirWin(Workspace& space, Prompter& prompter, int dirIndex, QWidget* parent)
    : EditorWindow(prompter, parent), directory(space, dirIndex)
{
    setObjectName(QString("dirWindow") + directory.letter());
    setWindowTitle(QString::fromStdString(directory.title()));
    const QFont font = listFont();

    heading = new QLabel(this);
    heading->setObjectName("headingLabel");
    heading->setFont(font);

    list = new QListWidget(this);
    list->setObjectName("lineList");
    list->setFont(font);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    list->setWhatsThis("The twenty lines of this directory, called in turn. Double click a line, or select it and "
                       "press Enter, to edit its commands. Insert and Delete add and remove lines; Ctrl+C and Ctrl+V "
                       "copy and paste a line.");
    list->installEventFilter(this);
    connect(list, &QListWidget::itemDoubleClicked, this, &DirWin::EditLine);
    connect(list, &QListWidget::customContextMenuRequested, this, &DirWin::EvRButtonDown);
    connect(list, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0)
            directory.select(row);
    });

    auto* buttons = new QHBoxLayout;
    addButton(buttons, "&Edit Line", "editButton", "Edit the commands of the selected line.", &DirWin::EditLine);
    addButton(buttons, "&Insert Line", "insertButton", "Insert an empty line above the selected one.",
              &DirWin::InsertLine);
    addButton(buttons, "&Delete Line", "deleteButton", "Delete the selected line; the lines below move up.",
              &DirWin::DeleteLine);
    addButton(buttons, "&Copy Line", "copyButton", "Copy the selected line, to paste it elsewhere.",
              &DirWin::CmCopyLine);
    pasteButton = addButton(buttons, "&Paste Line", "pasteButton",
                            "Paste the copied line onto the selected one, or insert it above.", &DirWin::CmPasteLine);
    buttons->addStretch(1);
    addButton(buttons, "E&xit", "exitButton", "Close the window and keep the changes.", &DirWin::CmWinExit);
    addButton(buttons, "Cancel", "cancelButton", "Close the window without keeping the changes.", &DirWin::CmWinCancel);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(list, 1);
    layout->addLayout(buttons);

    directory.SetupWindow(prompter);
    refresh();
    list->setCurrentRow(0);
    heading->setIndent(list->frameWidth() + list->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, list) +
                       1);
}

QPushButton* DirWin::addButton(QHBoxLayout* row, const QString& text, const char* name, const QString& help,
                               void (DirWin::*slot)())
{
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    button->setWhatsThis(help);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, slot);
    row->addWidget(button);
    return button;
}

QSize DirWin::sizeHint() const
{
    // Room for the full width of a line and for all twenty lines.
    const QFontMetrics metrics(list->font());
    return {metrics.horizontalAdvance(QString(kListWidth + 2, 'M')) + 40, metrics.lineSpacing() * 22 + 100};
}

void DirWin::refresh()
{
    const int row = list->currentRow();
    heading->setText(QString::fromStdString(directory.DrawTitles()));
    list->clear();
    for (int line = 0; line < kDirectoryLines; ++line)
        list->addItem(QString::fromStdString(directory.DrawLine(line)));
    list->setCurrentRow(row >= 0 ? row : directory.selectedLine);
    SetCopyandPaste();
}

void DirWin::SetCopyandPaste() { pasteButton->setEnabled(directory.clipboardFull()); }

void DirWin::EditLine()
{
    directory.select(list->currentRow());
    directory.EditLine(prompter, [this](LineEditor& line) {
        DirDialog dialog(line, prompter, this);
        dialog.exec();
    });
    refresh();
}

void DirWin::InsertLine()
{
    directory.select(list->currentRow());
    directory.InsertLine(prompter);
    refresh();
}

void DirWin::DeleteLine()
{
    directory.select(list->currentRow());
    directory.DeleteLine();
    refresh();
}

void DirWin::CmCopyLine()
{
    directory.select(list->currentRow());
    directory.CmCopyLine();
    SetCopyandPaste();
}

void DirWin::CmPasteLine()
{
    directory.select(list->currentRow());
    directory.CmPasteLine(prompter);
    refresh();
}

void DirWin::EvRButtonDown(const QPoint& position)
{
    if (QListWidgetItem* item = list->itemAt(position))
        list->setCurrentItem(item);
    QMenu menu(this);
    menu.setObjectName("lineMenu");
    const struct {
        const char* text;
        const char* name;
        void (DirWin::*slot)();
    } items[] = {
        {"Edit Line", "actionEditLine", &DirWin::EditLine},
        {"Insert Line", "actionInsertLine", &DirWin::InsertLine},
        {"Delete Line", "actionDeleteLine", &DirWin::DeleteLine},
        {"Copy Line", "actionCopyLine", &DirWin::CmCopyLine},
        {"Paste Line", "actionPasteLine", &DirWin::CmPasteLine},
    };
    for (const auto& item : items) {
        QAction* action = menu.addAction(item.text);
        action->setObjectName(item.name);
        connect(action, &QAction::triggered, this, item.slot);
    }
    menu.findChild<QAction*>("actionPasteLine")->setEnabled(directory.clipboardFull());
    menu.exec(list->viewport()->mapToGlobal(position));
}

bool DirWin::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == list && event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Copy)) {
            CmCopyLine();
            return true;
        }
        if (key->matches(QKeySequence::Paste)) {
            CmPasteLine();
            return true;
        }
        switch (key->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter: EditLine(); return true;
        case Qt::Key_Insert: InsertLine(); return true;
        case Qt::Key_Delete: DeleteLine(); return true;
        case Qt::Key_Escape: CmWinCancel(); return true;
        default: break;
        }
    }
    return EditorWindow::eventFilter(watched, event);
}

} // namespace rk4::gui
