#include "gui/points/points_win.h"

#include "gui/points/calib_dialog.h"
#include "gui/points/point_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace rk4::gui {

PointsWin::PointsWin(Workspace& space, Prompter& prompter, QWidget* parent)
    : EditorWindow(prompter, parent), space(space), points(space)
{
    setObjectName("pointsWindow");
    setWindowTitle("POINTS");
    const QFont font = listFont();

    heading = new QLabel(this);
    heading->setObjectName("headingLabel");
    heading->setFont(font);
    heading->setText(QString::fromStdString(points.DrawTitles()));

    list = new QListWidget(this);
    list->setObjectName("pointList");
    list->setFont(font);
    list->setAlternatingRowColors(true);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setWhatsThis("The 30 points of the unit. Double click a line, or select it and press Enter, to edit the "
                       "point; an UNUSED point first asks for its port.");
    bindLineList(list, [this] { EditLine(); });
    connect(list, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0)
            points.selected = row;
    });

    auto* edit = new QPushButton("&Edit Line", this);
    edit->setObjectName("editButton");
    edit->setWhatsThis("Edit the selected point.");
    auto* exit = new QPushButton("E&xit", this);
    exit->setObjectName("exitButton");
    exit->setWhatsThis("Close the window and keep the changes.");
    auto* cancel = new QPushButton("&Cancel", this);
    cancel->setObjectName("cancelButton");
    cancel->setWhatsThis("Close the window without keeping the changes.");
    connect(edit, &QPushButton::clicked, this, &PointsWin::EditLine);
    connect(exit, &QPushButton::clicked, this, &PointsWin::CmWinExit);
    connect(cancel, &QPushButton::clicked, this, &PointsWin::CmWinCancel);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(edit);
    buttons->addStretch(1);
    buttons->addWidget(exit);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(heading);
    layout->addWidget(list, 1);
    layout->addLayout(buttons);

    points.SetupWindow();
    refresh();
    list->setCurrentRow(0);

    // The heading stands over the list's text columns.
    heading->setIndent(list->frameWidth() + list->style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, list) +
                       1);
}

QSize PointsWin::sizeHint() const
{
    const QFontMetrics metrics(list->font());
    return {metrics.horizontalAdvance(QString(100, 'M')) + 40, metrics.lineSpacing() * 20 + 90};
}

void PointsWin::refresh()
{
    const int row = list->currentRow();
    list->clear();
    for (int line = 0; line < kPointCount; ++line)
        list->addItem(QString::fromStdString(points.DrawLine(line)));
    if (row >= 0)
        list->setCurrentRow(row);
}

void PointsWin::EditLine()
{
    if (list->currentRow() < 0)
        return;
    points.selected = list->currentRow();
    points.EditLine([this](PointEditor& point) {
        point.calibrate = [this](PointEditor&, PointRecord& record) {
            CalibDialog calibration(space, record, prompter, this);
            calibration.exec();
        };
        PointDialog dialog(point, prompter, this);
        dialog.exec();
    });
    refresh();
}

} // namespace rk4::gui
