#pragma once
// Wave Edit: turns a recorded wave file into a phrase file for the unit and
// shows both, so a clipped or silent recording is seen before it is sent.

#include "core/common/prompter.h"
#include "core/voice/wave_converter.h"

#include <QDialog>

class QLabel;
class QPushButton;

namespace rk4::gui {

class WaveformView;

class WaveDialog : public QDialog {
    Q_OBJECT

  public:
    WaveDialog(Prompter& prompter, QWidget* parent = nullptr);

    const WaveConverter& converter() const { return state; }

  public slots:
    void CmSelectSource();
    void CmSelectDestination();
    void CmConvert();

  private:
    void SetupWindow();
    void showState();

    Prompter& prompter;
    WaveConverter state;
    QLabel* sourceLabel = nullptr;
    QLabel* sourceFormatLabel = nullptr;
    QLabel* destinationLabel = nullptr;
    QLabel* statusLabel = nullptr;
    WaveformView* sourceView = nullptr;
    WaveformView* phraseView = nullptr;
    QPushButton* convertButton = nullptr;
};

} // namespace rk4::gui
