#pragma once
// A waveform at a glance: the lowest and highest sample under each pixel
// column, clipped columns in red, and a line of rate, length and peak.

#include "core/voice/wave.h"

#include <QWidget>

namespace rk4::gui {

class WaveformView : public QWidget {
    Q_OBJECT

  public:
    explicit WaveformView(QWidget* parent = nullptr);

    void setWaveform(const Waveform& waveform, const QString& emptyText);
    const Waveform& waveform() const { return shown; }
    // The line drawn over the wave, e.g. "8000 Hz   1.250 s   peak 98 %".
    QString caption() const;

    QSize sizeHint() const override { return {520, 120}; }
    QSize minimumSizeHint() const override { return {200, 80}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    Waveform shown;
    QString emptyText;
    std::vector<WaveColumn> columns; // one per pixel column of the current width
};

} // namespace rk4::gui
