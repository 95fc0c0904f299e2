#include "gui/points/points_win.h"

#include "gui/points/calib_dialog.h"
#include "gui/points/point_dialog.h"

#include <QLabel>
#include <QListWidget>

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

    layOutLineList(heading, "Edit the selected point.");

    points.SetupWindow();
    refresh();
    list->setCurrentRow(0);
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
