#include "gui/shell/work_area.h"

#include <QPainter>

namespace rk4::gui {

WorkArea::WorkArea(QWidget* parent) : QMdiArea(parent) { setBackground(QColor(0x5a, 0x6e, 0x86)); }

void WorkArea::setSummary(const QString& newTitle, const QString& newDetail)
{
    title = newTitle;
    detail = newDetail;
    viewport()->update();
}

void WorkArea::paintEvent(QPaintEvent* event)
{
    QMdiArea::paintEvent(event);
    if (!subWindowList().isEmpty() || title.isEmpty())
        return;
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::TextAntialiasing);
    QRect area = viewport()->rect().adjusted(40, 0, -40, 0);
    QFont big = font();
    big.setPointSizeF(big.pointSizeF() * 1.8);
    big.setBold(true);
    painter.setFont(big);
    painter.setPen(QColor(255, 255, 255, 200));
    const int middle = area.center().y();
    painter.drawText(QRect(area.left(), middle - 70, area.width(), 50), Qt::AlignHCenter | Qt::AlignBottom, title);
    painter.setFont(font());
    painter.setPen(QColor(255, 255, 255, 160));
    painter.drawText(QRect(area.left(), middle - 10, area.width(), 120),
                     Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, detail);
}

} // namespace rk4::gui
