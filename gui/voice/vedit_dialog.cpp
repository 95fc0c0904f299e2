#include "gui/voice/vedit_dialog.h"

#include "core/common/safe_file.h"
#include "core/link/port_slots.h"
#include "core/voice/wave.h"
#include "gui/link/pgm_dialog.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QBuffer>
#include <QComboBox>
#include <QFontDatabase>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMediaDevices>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

QString qt(const std::string& text) { return QString::fromStdString(text); }

enum Column { MarkColumn, SlotColumn, NameColumn, SourceColumn };

constexpr int kUsedGroups = 6;

QPushButton* commandButton(QWidget* parent, const char* text, const char* name, const char* help)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setWhatsThis(help);
    button->setToolTip(help);
    return button;
}

} // namespace

VeditDialog::VeditDialog(Workspace& workspace, Prompter& prompter, QWidget* parent)
    : QDialog(parent), workspace(workspace), prompter(prompter), state(workspace.workingDirectory())
{
    setObjectName("veditDialog");
    setWindowTitle("Voice Edit");

    slotList = new QTreeWidget(this);
    slotList->setObjectName("slotList");
    slotList->setColumnCount(4);
    slotList->setHeaderLabels({"", "Slot", "Name", "Phrase"});
    slotList->setRootIsDecorated(false);
    slotList->setUniformRowHeights(true);
    slotList->setAllColumnsShowFocus(true);
    slotList->header()->setStretchLastSection(true);
    slotList->setWhatsThis("The unit's 39 phrases: the Site ID, points 1 to 30 and groups 1 to 8 (the unit speaks "
                           "groups 1 to 6). \"+\" marks a slot with a phrase: a phrase file chosen for it, or, with "
                           "no file shown, its phrase in the loaded message file. \"-\" marks an empty slot.");
    for (int slot = 0; slot < kSlotCount; ++slot) {
        auto* item = new QTreeWidgetItem(slotList);
        item->setText(SlotColumn, qt(slotTitle(slot)));
        item->setTextAlignment(MarkColumn, Qt::AlignCenter);
        if (slotRef(slot).kind == SlotKind::Group && slotRef(slot).index > kUsedGroups) {
            item->setForeground(SlotColumn, slotList->palette().brush(QPalette::Disabled, QPalette::Text));
            item->setToolTip(SlotColumn, "The unit speaks the phrases of groups 1 to 6 only");
        }
    }
    const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    slotList->setFont(fixed);
    slotList->setColumnWidth(MarkColumn, 28);
    slotList->setColumnWidth(SlotColumn, 90);
    slotList->setColumnWidth(NameColumn, 170);

    auto* phraseBox = new QGroupBox("Phrase", this);
    slotCommands = new QVBoxLayout(phraseBox);
    auto* readPhrase = commandButton(phraseBox, "&Read Phrase...", "readIndividualButton",
                                     "Put a phrase file (*.vox), made with Wave Edit, into the selected slot. It goes "
                                     "into the message file when the message file is saved.");
    auto* writePhrase = commandButton(phraseBox, "&Write Phrase...", "writeIndividualButton",
                                      "Copy the selected slot's phrase out of the loaded message file into a phrase "
                                      "file (*.vox).");
    auto* clearPhrase = commandButton(phraseBox, "&Clear", "clearIndividualButton",
                                      "Empty the selected slot: the next saved message file has no phrase for it.");
    auto* play = commandButton(phraseBox, "&Play", "playButton",
                               "Listen to the selected slot's phrase as the unit speaks it. Without a sound output "
                               "the phrase is written to a wave file instead.");
    for (QPushButton* button : {readPhrase, writePhrase, clearPhrase, play})
        slotCommands->addWidget(button);

    auto* messageBox = new QGroupBox("Message file", this);
    auto* messageLayout = new QVBoxLayout(messageBox);
    auto* loadMessage = commandButton(messageBox, "&Load...", "loadMessageButton",
                                      "Load a voice message file (*.msg): its phrases fill the slots that have no "
                                      "phrase file chosen.");
    auto* saveMessage = commandButton(messageBox, "&Save As...", "writeAllButton",
                                      "Build a new voice message file from the slots: chosen phrase files, phrases "
                                      "of the loaded file, nothing for empty slots. It cannot replace the loaded "
                                      "file itself.");
    namesButton = commandButton(messageBox, "Use &Names", "useNamesButton",
                                "Show the names of the site, the points and the groups from the configuration "
                                "beside the slots, or take them away.");
    namesButton->setCheckable(true);
    messageLayout->addWidget(loadMessage);
    messageLayout->addWidget(saveMessage);
    messageLayout->addWidget(namesButton);

    auto* configurationBox = new QGroupBox("Configuration", this);
    auto* configurationLayout = new QVBoxLayout(configurationBox);
    auto* loadConfiguration = commandButton(configurationBox, "L&oad...", "readConfigurationButton",
                                            "Load a voice editor configuration (*.vcf): the slots and the message "
                                            "file they were saved with.");
    auto* saveConfiguration = commandButton(configurationBox, "Sa&ve...", "writeConfigurationButton",
                                            "Save the slots and the loaded message file's name as a voice editor "
                                            "configuration (*.vcf). Save the message file first.");
    configurationLayout->addWidget(loadConfiguration);
    configurationLayout->addWidget(saveConfiguration);

    auto* unitBox = new QGroupBox("Unit", this);
    auto* unitLayout = new QVBoxLayout(unitBox);
    portCombo = new QComboBox(unitBox);
    portCombo->setObjectName("portCombo");
    for (int slot = 0; slot < link::kPortSlotCount; ++slot)
        portCombo->addItem(qt(link::portSlotName(slot)));
    portCombo->addItem("Simulated unit (demo)");
    portCombo->setWhatsThis("The serial port the Rk4 is cabled to; the choice is kept for the next run. The last "
                            "entry is the simulated unit built into the programmer.");
    auto* toUnit = commandButton(unitBox, "Write to &Rk4...", "writeToUnitButton",
                                 "Send the saved message file to the unit, replacing the voices it holds.");
    auto* fromUnit = commandButton(unitBox, "Read &from Rk4...", "readFromUnitButton",
                                   "Read the unit's voices into a new message file and load it.");
    unitLayout->addWidget(portCombo);
    unitLayout->addWidget(toUnit);
    unitLayout->addWidget(fromUnit);

    auto* commands = new QVBoxLayout;
    for (QGroupBox* box : {phraseBox, messageBox, configurationBox, unitBox})
        commands->addWidget(box);
    commands->addStretch();

    loadedLabel = new QLabel(this);
    loadedLabel->setObjectName("loadedLabel");
    loadedLabel->setWhatsThis("The message file the slots without a phrase file draw their phrases from.");
    savedLabel = new QLabel(this);
    savedLabel->setObjectName("savedLabel");
    savedLabel->setWhatsThis("The message file last saved; \"* not saved *\" while the slots have changes that "
                             "no saved message file holds.");
    for (QLabel* label : {loadedLabel, savedLabel}) {
        label->setFont(fixed);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    }
    auto* closeButton = commandButton(this, "Close", "closeButton", "Close the voice editor.");

    auto* top = new QHBoxLayout;
    top->addWidget(slotList, 1);
    top->addLayout(commands);
    auto* bottom = new QHBoxLayout;
    auto* lines = new QVBoxLayout;
    lines->addWidget(loadedLabel);
    lines->addWidget(savedLabel);
    bottom->addLayout(lines, 1);
    bottom->addWidget(closeButton, 0, Qt::AlignBottom);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(bottom);
    resize(780, 680);

    connect(readPhrase, &QPushButton::clicked, this, &VeditDialog::CmReadIndividual);
    connect(writePhrase, &QPushButton::clicked, this, &VeditDialog::CmWriteIndividual);
    connect(clearPhrase, &QPushButton::clicked, this, &VeditDialog::CmClearIndividual);
    connect(play, &QPushButton::clicked, this, &VeditDialog::CmPlay);
    connect(loadMessage, &QPushButton::clicked, this, &VeditDialog::CmLoadMessageFile);
    connect(saveMessage, &QPushButton::clicked, this, &VeditDialog::CmWriteAll);
    connect(namesButton, &QPushButton::clicked, this, &VeditDialog::CmUseNames);
    connect(loadConfiguration, &QPushButton::clicked, this, &VeditDialog::CmReadConfiguration);
    connect(saveConfiguration, &QPushButton::clicked, this, &VeditDialog::CmWriteConfiguration);
    connect(toUnit, &QPushButton::clicked, this, &VeditDialog::CmWriteToSentrix);
    connect(fromUnit, &QPushButton::clicked, this, &VeditDialog::CmReadFromSentrix);
    connect(closeButton, &QPushButton::clicked, this, &QDialog::accept);
    connect(slotList, &QTreeWidget::currentItemChanged, this, [this] {
        const int slot = selectedSlot();
        state.selected = slot < 0 ? std::nullopt : std::optional<int>(slot);
    });

    portCombo->setCurrentIndex(workspace.cfg.portIndex());
    connect(portCombo, &QComboBox::currentIndexChanged, this, &VeditDialog::CmComPort);
    showState();
}

VeditDialog::~VeditDialog() { stopPlaying(); }

int VeditDialog::selectedSlot() const
{
    QTreeWidgetItem* item = slotList->currentItem();
    return item ? slotList->indexOfTopLevelItem(item) : -1;
}

void VeditDialog::selectSlot(int slot) { slotList->setCurrentItem(slotList->topLevelItem(slot)); }

void VeditDialog::addSlotCommand(QPushButton* button) { slotCommands->addWidget(button); }

void VeditDialog::showSlot(int slot)
{
    QTreeWidgetItem* item = slotList->topLevelItem(slot);
    const VoiceSlot& entry = state.slotTable[slot];
    item->setText(MarkColumn, entry.hasPhrase ? "+" : "-");
    item->setText(NameColumn, qt(entry.name));
    const std::string source = state.sourceText(slot);
    // A phrase file shows by its name; the whole path is in the tip.
    const bool file = entry.newPhrase() && !entry.phrase;
    item->setText(SourceColumn, file ? qt(std::filesystem::path(source).filename().string()) : qt(source));
    item->setToolTip(SourceColumn, qt(source));
}

void VeditDialog::showState()
{
    for (int slot = 0; slot < kSlotCount; ++slot)
        showSlot(slot);
    slotList->setColumnHidden(NameColumn, !state.namesInUse);
    namesButton->setChecked(state.namesInUse);
    loadedLabel->setText(qt(state.loadedLine()));
    savedLabel->setText(qt(state.savedLine()));
    loadedLabel->setToolTip(qt(state.loadedFile));
    savedLabel->setToolTip(qt(state.savedFile));
}

void VeditDialog::putPhrase(int slot, std::vector<std::uint8_t> phrase, const std::string& label)
{
    state.putPhrase(slot, std::move(phrase), label);
    showState();
}

void VeditDialog::CmLoadMessageFile()
{
    if (state.CmLoadMessageFile(prompter))
        showState();
}

void VeditDialog::CmWriteAll()
{
    if (state.CmWriteAll(prompter))
        showState();
}

void VeditDialog::CmReadIndividual()
{
    if (state.CmReadIndividual(prompter))
        showState();
}

void VeditDialog::CmWriteIndividual() { state.CmWriteIndividual(prompter); }

void VeditDialog::CmClearIndividual()
{
    if (state.CmClearIndividual(prompter))
        showState();
}

void VeditDialog::CmUseNames()
{
    state.CmUseNames(workspace.image);
    showState();
}

void VeditDialog::CmReadConfiguration()
{
    if (state.CmReadConfiguration(prompter))
        showState();
}

void VeditDialog::CmWriteConfiguration() { state.CmWriteConfiguration(prompter); }

void VeditDialog::stopPlaying()
{
    if (sink) {
        sink->stop();
        delete sink;
        sink = nullptr;
    }
    playing.reset();
}

void VeditDialog::CmPlay()
{
    const int slot = selectedSlot();
    if (slot < 0) {
        prompter.tell("Error", kMessageNotSelected, Icon::Error);
        return;
    }
    std::string why;
    const auto phrase = state.phraseOf(slot, why);
    if (!phrase) {
        prompter.tell("Play", "There is nothing to play.", Icon::Information, why);
        return;
    }
    const std::vector<std::int16_t> samples = decodeVox(phraseData(*phrase));
    stopPlaying();

    QAudioFormat format;
    format.setSampleRate(static_cast<int>(kPhraseRate));
    format.setChannelCount(1);
    format.setSampleFormat(QAudioFormat::Int16);
    const QAudioDevice device = audioAllowed ? QMediaDevices::defaultAudioOutput() : QAudioDevice();
    if (device.isNull() || !device.isFormatSupported(format)) {
        // No sound here (a remote session, a virtual display): the technician
        // can still listen on another machine.
        const std::filesystem::path wave = state.workingDirectory() / (slotKey(slot) + ".wav");
        if (const SaveResult saved = writeFileAtomically(wave, waveFileBytes(samples, kPhraseRate)); !saved) {
            prompter.fileError(" CANNOT OPEN OUTPUT FILE ", wave.string() + ": " + saved.cause());
            return;
        }
        prompter.tell("Play",
                      "There is no sound output. The phrase of " + slotTitle(slot) + " was written to " +
                          wave.string() + " to be played elsewhere.",
                      Icon::Information);
        return;
    }
    playing = std::make_unique<QBuffer>();
    playing->setData(QByteArray(reinterpret_cast<const char*>(samples.data()),
                                static_cast<qsizetype>(samples.size() * sizeof(std::int16_t))));
    playing->open(QIODevice::ReadOnly);
    sink = new QAudioSink(device, format, this);
    sink->start(playing.get());
}

void VeditDialog::CmComPort(int index)
{
    if (index >= 0 && index < link::kPortSlotCount)
        workspace.SavePort(index, prompter);
}

void VeditDialog::CmWriteToSentrix()
{
    if (!state.loadedFileComplete()) {
        prompter.tell("Error", "Save the message file before writing it to the Rk4.", Icon::Error);
        return;
    }
    PgmDialog dialog(workspace, prompter, this);
    dialog.choosePort(portCombo->currentIndex());
    dialog.sendVoices(state.loadedFile);
    dialog.exec();
}

void VeditDialog::CmReadFromSentrix()
{
    const auto chosen =
        prompter.chooseFile({FileMode::Save, "Save the Unit's Voices", kMessageFileFilter, "msg", state.loadedFile});
    if (!chosen)
        return;
    PgmDialog dialog(workspace, prompter, this);
    dialog.choosePort(portCombo->currentIndex());
    dialog.receiveVoices(*chosen);
    dialog.exec();
    if (dialog.session().outcome() == link::SessionOutcome::Succeeded && state.SetupNewMsgFile(*chosen, prompter))
        showState();
}

} // namespace rk4::gui
