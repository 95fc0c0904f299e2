#include "gui/voice/wave_dialog.h"

#include "gui/voice/waveform_view.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

QLabel* pathLabel(const char* name, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setFrameShape(QFrame::StyledPanel);
    label->setFrameShadow(QFrame::Sunken);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // Long paths are cut in the middle rather than widening the window.
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    return label;
}

QString qt(const std::string& text) { return QString::fromStdString(text); }

} // namespace

WaveDialog::WaveDialog(Prompter& prompter, QWidget* parent) : QDialog(parent), prompter(prompter)
{
    setObjectName("waveDialog");
    setWindowTitle("Wave Edit");

    auto* sourceGroup = new QGroupBox("Wave file", this);
    sourceGroup->setObjectName("sourceGroup");
    sourceLabel = pathLabel("sourceLabel", sourceGroup);
    sourceLabel->setWhatsThis("The recorded wave file (*.wav) that Convert reads. PCM at 8000, 16000, 32000 or "
                              "48000 Hz converts sample for sample; other rates are resampled to 8000 Hz.");
    auto* sourceButton = new QPushButton("&Source...", sourceGroup);
    sourceButton->setObjectName("selectSourceButton");
    sourceButton->setWhatsThis("Choose the wave file to convert. The phrase file is then proposed beside the "
                               "destination chosen last, with the same name and the extension .vox.");
    sourceFormatLabel = new QLabel(sourceGroup);
    sourceFormatLabel->setObjectName("sourceFormatLabel");
    sourceFormatLabel->setWhatsThis("The rate, sample width and channels the wave file's header gives. A file "
                                    "with several channels is read as one, with the channels interleaved.");
    sourceView = new WaveformView(sourceGroup);
    sourceView->setObjectName("sourceView");
    sourceView->setWhatsThis("The recording as it is: each column shows the lowest and the highest sample under "
                             "it. Red columns reach full scale (clipped); a flat line means silence.");
    auto* sourceLayout = new QGridLayout(sourceGroup);
    sourceLayout->addWidget(sourceLabel, 0, 0);
    sourceLayout->addWidget(sourceButton, 0, 1);
    sourceLayout->addWidget(sourceFormatLabel, 1, 0, 1, 2);
    sourceLayout->addWidget(sourceView, 2, 0, 1, 2);
    sourceLayout->setColumnStretch(0, 1);

    auto* phraseGroup = new QGroupBox("Phrase file", this);
    phraseGroup->setObjectName("phraseGroup");
    destinationLabel = pathLabel("destinationLabel", phraseGroup);
    destinationLabel->setWhatsThis("The ADPCM phrase file (*.vox) that Convert writes, ready for the voice "
                                   "editor. An existing file of this name is replaced.");
    auto* destinationButton = new QPushButton("&Destination...", phraseGroup);
    destinationButton->setObjectName("selectDestinationButton");
    destinationButton->setWhatsThis("Choose where the phrase file is written.");
    phraseView = new WaveformView(phraseGroup);
    phraseView->setObjectName("phraseView");
    phraseView->setWhatsThis("The converted phrase decoded again, as the unit will speak it: 8000 samples a "
                             "second, 12 bits. Red columns reach the unit's limits.");
    auto* phraseLayout = new QGridLayout(phraseGroup);
    phraseLayout->addWidget(destinationLabel, 0, 0);
    phraseLayout->addWidget(destinationButton, 0, 1);
    phraseLayout->addWidget(phraseView, 1, 0, 1, 2);
    phraseLayout->setColumnStretch(0, 1);

    statusLabel = new QLabel(this);
    statusLabel->setObjectName("statusLabel");
    statusLabel->setWhatsThis("Shows \"Converting\" while the conversion runs and \"Conversion Complete\" when "
                              "the phrase file is written.");
    convertButton = new QPushButton("&Convert", this);
    convertButton->setObjectName("convertButton");
    convertButton->setDefault(true);
    convertButton->setWhatsThis("Convert the wave file to 4-bit ADPCM at 8000 samples a second and write the "
                                "phrase file, padded to whole 4096-byte blocks.");
    auto* closeButton = new QPushButton("Close", this);
    closeButton->setObjectName("closeButton");
    closeButton->setWhatsThis("Close the window. Phrase files already written stay written.");
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(statusLabel, 1);
    bottom->addWidget(convertButton);
    bottom->addWidget(closeButton);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(sourceGroup, 1);
    layout->addWidget(phraseGroup, 1);
    layout->addLayout(bottom);
    resize(620, 460);

    connect(sourceButton, &QPushButton::clicked, this, &WaveDialog::CmSelectSource);
    connect(destinationButton, &QPushButton::clicked, this, &WaveDialog::CmSelectDestination);
    connect(convertButton, &QPushButton::clicked, this, &WaveDialog::CmConvert);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::accept);
    state.statusChanged = [this] {
        statusLabel->setText(qt(state.status));
        statusLabel->repaint(); // "Converting" shows before the work starts
    };
    SetupWindow();
}

void WaveDialog::SetupWindow()
{
    state.SetupWindow();
    showState();
}

void WaveDialog::showState()
{
    const auto showPath = [](QLabel* label, const std::string& path, const std::string& text) {
        label->setText(qt(text));
        label->setToolTip(path.empty() ? QString() : qt(path));
    };
    showPath(sourceLabel, state.source, state.sourceText());
    showPath(destinationLabel, state.destination, state.destinationText());
    sourceFormatLabel->setText(state.source.empty()         ? QString()
                               : state.sourceFormat.empty() ? QString(" CANNOT OPEN WAVE FILE ")
                                                            : qt(state.sourceFormat));
    sourceView->setWaveform(state.sourceWave, state.source.empty() ? "no file selected" : "no samples");
    phraseView->setWaveform(state.phraseWave, "not converted yet");
    statusLabel->setText(qt(state.status));
}

void WaveDialog::CmSelectSource()
{
    if (state.CmSelectSource(prompter))
        showState();
}

void WaveDialog::CmSelectDestination()
{
    if (state.CmSelectDestination(prompter))
        showState();
}

void WaveDialog::CmConvert()
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool converted = state.CmConvert(prompter);
    QApplication::restoreOverrideCursor();
    if (converted)
        showState();
}

} // namespace rk4::gui
