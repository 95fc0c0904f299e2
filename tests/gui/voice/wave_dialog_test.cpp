#include "gui/voice/wave_dialog.h"

#include "core/database/file.h"
#include "gui/voice/waveform_view.h"
#include "tests/core/voice/wave_builder.h"
#include "tests/support/main_fixture.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <cmath>

namespace rk4::gui {
namespace {

using test::child;

TEST(WaveDialog, ConvertsAChosenWaveAndShowsBothWaveforms)
{
    test::TempDir dir;
    std::vector<std::int16_t> input(11025);
    for (std::size_t i = 0; i < input.size(); ++i) // half a second, clipped in its loudest part
        input[i] = static_cast<std::int16_t>(std::clamp(40000 * std::sin(i * 0.06) * i / 11025.0, -32768.0, 32767.0));
    ASSERT_TRUE(writeFileAtomically(dir / "alarm.wav", test::makeWave({.sampleRate = 22050}, test::samples16(input))));

    test::ScriptedPrompter prompter;
    prompter.fileChoice((dir / "alarm.wav").string());
    WaveDialog dialog(prompter);
    dialog.show();
    auto* source = child<QLabel>(&dialog, "sourceLabel");
    auto* destination = child<QLabel>(&dialog, "destinationLabel");
    auto* status = child<QLabel>(&dialog, "statusLabel");
    ASSERT_TRUE(source && destination && status);
    EXPECT_EQ(source->text(), "no file selected");
    EXPECT_EQ(destination->text(), "no file selected");

    QTest::mouseClick(child<QPushButton>(&dialog, "selectSourceButton"), Qt::LeftButton);
    EXPECT_EQ(destination->text().toStdString(), (dir / "alarm.vox").string());
    EXPECT_EQ(child<QLabel>(&dialog, "sourceFormatLabel")->text(), "22050 Hz, 16-bit, mono");
    auto* sourceView = child<WaveformView>(&dialog, "sourceView");
    EXPECT_NE(sourceView->caption().indexOf("samples clipped"), -1) << sourceView->caption().toStdString();

    QTest::mouseClick(child<QPushButton>(&dialog, "convertButton"), Qt::LeftButton);
    EXPECT_EQ(status->text(), "Conversion Complete");
    EXPECT_TRUE(prompter.messages().empty());
    const auto vox = readWholeFile(dir / "alarm.vox");
    ASSERT_TRUE(vox);
    EXPECT_EQ(vox->size() % 4096, 0u);
    auto* phraseView = child<WaveformView>(&dialog, "phraseView");
    EXPECT_EQ(phraseView->waveform().sampleRate, 8000u);
    EXPECT_NEAR(phraseView->waveform().seconds(), 0.5, 0.01);
}

using ToolsMenu = test::MainTest;

TEST_F(ToolsMenu, OpensTheVoiceEditorAndTheWaveConverter)
{
    const std::pair<const char*, const char*> tools[] = {{"actionVoiceEdit", "rk4::gui::VeditDialog"},
                                                         {"actionWaveEdit", "rk4::gui::WaveDialog"}};
    for (const auto& [name, type] : tools) {
        QString opened;
        test::whenDialogOpens([&](QDialog* dialog) {
            opened = dialog->metaObject()->className();
            dialog->accept();
        });
        action(name)->trigger();
        EXPECT_EQ(opened, type) << name;
    }
}

} // namespace
} // namespace rk4::gui
