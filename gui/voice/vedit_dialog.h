#pragma once
// Voice Edit: the 39 phrase slots of the unit's voice message file, the
// message file they are drawn from and saved to, single phrases in and out,
// the database's names beside the slots, the editor's configuration files,
// listening to a slot, and moving the message file to and from a unit.

#include "core/common/prompter.h"
#include "core/shell/workspace.h"
#include "core/voice/voice_editor.h"

#include <QDialog>

#include <memory>

class QAudioSink;
class QBuffer;
class QComboBox;
class QLabel;
class QPushButton;
class QTreeWidget;
class QVBoxLayout;

namespace rk4::gui {

class VeditDialog : public QDialog {
    Q_OBJECT

  public:
    VeditDialog(Workspace& workspace, Prompter& prompter, QWidget* parent = nullptr);
    ~VeditDialog() override;

    const VoiceEditor& editor() const { return state; }
    // The selected slot's number, or -1.
    int selectedSlot() const;
    void selectSlot(int slot);
    // Puts a phrase made elsewhere into a slot (it is saved with the message
    // file) and shows it.
    void putPhrase(int slot, std::vector<std::uint8_t> phrase, const std::string& label);
    // A further command beside the slot commands.
    void addSlotCommand(QPushButton* button);

    // Without an audio output (or with this off) Play writes a wave file instead.
    void setAudioOutputAllowed(bool allowed) { audioAllowed = allowed; }

  public slots:
    void CmLoadMessageFile();
    void CmWriteAll();
    void CmReadIndividual();
    void CmWriteIndividual();
    void CmClearIndividual();
    void CmPlay();
    void CmUseNames();
    void CmReadConfiguration();
    void CmWriteConfiguration();
    void CmWriteToSentrix();
    void CmReadFromSentrix();
    void CmComPort(int index);

  private:
    void showState();
    void showSlot(int slot);
    void stopPlaying();

    Workspace& workspace;
    Prompter& prompter;
    VoiceEditor state;
    bool audioAllowed = true;
    QTreeWidget* slotList = nullptr;
    QLabel* loadedLabel = nullptr;
    QLabel* savedLabel = nullptr;
    QPushButton* namesButton = nullptr;
    QComboBox* portCombo = nullptr;
    QVBoxLayout* slotCommands = nullptr;
    std::unique_ptr<QBuffer> playing;
    QAudioSink* sink = nullptr;
};

} // namespace rk4::gui
