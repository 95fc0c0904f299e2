#include "gui/voice/waveform_view.h"

#include <QPainter>
#include <QResizeEvent>

namespace rk4::gui {

WaveformView::WaveformView(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void WaveformView::setWaveform(const Waveform& waveform, const QString& text)
{
    shown = waveform;
    emptyText = text;
    columns = shown.columns(width());
    update();
}

QString WaveformView::caption() const
{
    if (shown.samples.empty())
        return emptyText;
    QString text = QString("%1 Hz   %2 s   peak %3 %")
                       .arg(shown.sampleRate)
                       .arg(shown.seconds(), 0, 'f', 3)
                       .arg(shown.peakPercent());
    if (const std::size_t clipped = shown.clippedCount())
        text += QString("   %1 samples clipped").arg(clipped);
    else if (shown.peakPercent() < 5)
        text += "   very quiet";
    return text;
}

void WaveformView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    columns = shown.columns(event->size().width());
}

void WaveformView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect area = rect();
    painter.fillRect(area, QColor(0x1e, 0x26, 0x30));
    // The caption has its own band so it never hides the wave.
    const int band = fontMetrics().height() + 4;
    painter.fillRect(0, 0, area.width(), band, QColor(0x2a, 0x34, 0x40));
    const int top = band + 2;
    const int bottom = area.height() - 3;
    const int middle = (top + bottom) / 2;
    const double scale = (bottom - top) / 2.0 / 32768.0;

    // Full-scale lines, so a loud or a faint recording reads at once.
    painter.setPen(QColor(0x3c, 0x48, 0x58));
    painter.drawLine(0, top, area.width(), top);
    painter.drawLine(0, bottom, area.width(), bottom);
    painter.drawLine(0, middle, area.width(), middle);

    const QColor normal(0x6c, 0xc6, 0x8c);
    const QColor clipped(0xe8, 0x4a, 0x3c);
    for (std::size_t x = 0; x < columns.size(); ++x) {
        const WaveColumn& column = columns[x];
        painter.setPen(column.clipped ? clipped : normal);
        painter.drawLine(static_cast<int>(x), middle - static_cast<int>(column.high * scale), static_cast<int>(x),
                         middle - static_cast<int>(column.low * scale));
    }

    painter.setPen(shown.clippedCount() ? QColor(0xff, 0xb0, 0xa8) : QColor(0xd8, 0xe0, 0xe8));
    painter.drawText(QRect(6, 0, area.width() - 12, band), Qt::AlignLeft | Qt::AlignVCenter, caption());
}

} // namespace rk4::gui
