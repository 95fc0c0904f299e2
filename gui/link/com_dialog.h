#pragma once
// The progress window of a transfer: the phase, the detail and a bar.

#include <QDialog>

class QLabel;
class QProgressBar;

namespace rk4::gui {

class ComDialog : public QDialog {
    Q_OBJECT

  public:
    explicit ComDialog(QWidget* parent);
    void setLines(const QString& line1, const QString& line2);
    void setPackets(int done, int total);

  private:
    QLabel* line1Label;
    QLabel* line2Label;
    QProgressBar* bar;
};

} // namespace rk4::gui
