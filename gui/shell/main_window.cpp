#include "gui/shell/main_window.h"

#include "core/shell/text_form_commands.h"
#include "gui/basic/alarms_dialog.h"
#include "gui/basic/rules_dialog.h"
#include "gui/basic/sim_dir_dialog.h"
#include "gui/basic/sim_gen_dialog.h"
#include "gui/basic/sim_out_dialog.h"
#include "gui/basic/simple_warning_dialog.h"
#include "gui/basic/wizard_dialog.h"
#include "gui/cellular/cell_phone_dialog.h"
#include "gui/link/pgm_dialog.h"
#include "gui/modem/modem_dialog.h"
#include "gui/shell/work_area.h"

#include "gui/directory/dir_win.h"
#include "gui/hardware/hardware_win.h"
#include "gui/points/points_win.h"
#include "gui/report/printout_win.h"
#include "gui/settings/general_dialog.h"
#include "gui/settings/group_dialog.h"
#include "gui/shell/editor_window.h"

#include "gui/voice/speak_commands.h"
#include "gui/voice/vedit_dialog.h"
#include "gui/voice/wave_dialog.h"
#include <algorithm>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <QWhatsThis>

// The icon lives in the GUI library's resources, which a static library must
// register by hand.
static void registerResources() { Q_INIT_RESOURCE(rk4); }

namespace rk4::gui {

Main::Main(Workspace& workspace, Prompter* prompter, QWidget* parent) : QMainWindow(parent), space(workspace)
{
    setObjectName("mainWindow");
    if (!prompter) {
        ownPrompter = std::make_unique<QtPrompter>(this);
        prompter = ownPrompter.get();
    }
    activePrompter = prompter;
    registerResources();
    setWindowTitle(kApplicationName);
    setWindowIcon(QIcon(":/rk4prog.svg"));
    resize(1000, 700);

    mdi = new WorkArea(this);
    mdi->setObjectName("mdiArea");
    setCentralWidget(mdi);

    modeLabel = new QLabel(this);
    modeLabel->setObjectName("modeLabel");
    fileLabel = new QLabel(this);
    fileLabel->setObjectName("fileLabel");
    statusBar()->addPermanentWidget(fileLabel, 1);
    statusBar()->addPermanentWidget(modeLabel);

    buildMenus();

    space.ChangeMode = [this] { ChangeMode(); };
    space.showRulesSummary = [this](bool basic) {
        if (basic)
            SimpleRulesDialog(this).exec();
        else
            AdvancedRulesDialog(this).exec();
    };
    // The wizard answers into a copy, so leaving it early changes nothing and
    // a finished run marks the data changed only when a byte differs.
    space.runBasicWizard = [this] {
        Database edited = space.image;
        WizardDialog dialog(edited, *activePrompter, this);
        dialog.exec();
        space.commit(edited);
        updateCommands();
    };
    space.showSimpleWarning = [this](SimpleWarning& warning) {
        SimpleWarningDialog dialog(warning, *activePrompter, this);
        dialog.exec();
        return dialog.choice();
    };
    space.InitFile(*activePrompter);
    updateCommands();
    // The start-up report waits until the window is up, as it always has.
    QTimer::singleShot(0, this, &Main::startupIdle);
}

QAction* Main::addCommand(QMenu* menu, const QString& text, const QString& objectName, void (Main::*slot)(),
                          std::function<bool()> enabled, std::function<bool()> visible)
{
    QAction* action = menu->addAction(text);
    action->setObjectName(objectName);
    connect(action, &QAction::triggered, this, slot);
    commands.push_back({action, std::move(enabled), std::move(visible)});
    return action;
}

void Main::buildMenus()
{
    auto fileOn = [this] { return space.navigation.fileon(); };
    auto basicOnly = [this] { return space.basicMode(); };

    QMenu* fileMenu = menuBar()->addMenu("&File");
    QAction* clear = addCommand(fileMenu, "&Clear Data", "actionClearData", &Main::CmClearData, fileOn);
    clear->setShortcut(QKeySequence::New);
    clear->setStatusTip("Erase the configuration and start from the empty template");
    QAction* open = addCommand(fileMenu, "&Open...", "actionOpen", &Main::CmFileOpen, fileOn);
    open->setShortcut(QKeySequence::Open);
    open->setIcon(style()->standardIcon(QStyle::SP_DialogOpenButton));
    open->setStatusTip("Open a configuration file (*.dat)");
    QAction* save = addCommand(fileMenu, "&Save", "actionSave", &Main::CmFileSave, fileOn);
    save->setShortcut(QKeySequence::Save);
    save->setIcon(style()->standardIcon(QStyle::SP_DialogSaveButton));
    save->setStatusTip("Save the configuration to its file");
    QAction* saveAs = addCommand(fileMenu, "Save &As...", "actionSaveAs", &Main::CmFileSaveAs, fileOn);
    saveAs->setShortcut(QKeySequence::SaveAs);
    fileMenu->addSeparator();
    QAction* exportText = addCommand(fileMenu, "&Export...", "actionExportText", &Main::CmExportText, fileOn);
    exportText->setStatusTip("Write the configuration as readable text (*.yaml) for review or version control");
    QAction* importText = addCommand(fileMenu, "&Import...", "actionImportText", &Main::CmImportText, fileOn);
    importText->setStatusTip("Read a configuration from its text form (*.yaml); every value is checked first");
    fileMenu->addSeparator();
    QAction* exit = fileMenu->addAction("E&xit");
    exit->setObjectName("actionExit");
    exit->setShortcut(QKeySequence::Quit);
    connect(exit, &QAction::triggered, this, &QWidget::close);

    // Editors of the image go in the Configure menu and on the navigation bar;
    // transfers and voice work in the Tools menu.
    configureMenu = menuBar()->addMenu("&Configure");
    configureMenu->setObjectName("configureMenu");
    toolsMenu = menuBar()->addMenu("&Tools");
    toolsMenu->setObjectName("toolsMenu");

    QMenu* optionsMenu = menuBar()->addMenu("&Options");
    QAction* mode = addCommand(optionsMenu, "Basic &Mode", "actionMode", &Main::CmMode, fileOn);
    mode->setCheckable(true);
    mode->setStatusTip("Switch between the Basic and the Advanced way of working");
    addCommand(optionsMenu, "Run &Wizard...", "actionRunWizard", &Main::CmRunWizard, fileOn, basicOnly);

    QMenu* helpMenu = menuBar()->addMenu("&Help");
    QAction* contents = helpMenu->addAction("&Contents");
    contents->setObjectName("actionHelpContents");
    contents->setShortcut(QKeySequence::HelpContents);
    connect(contents, &QAction::triggered, this, &Main::CmHelpContents);
    QAction* whatsThis = QWhatsThis::createAction(this);
    helpMenu->addAction(whatsThis);
    helpMenu->addSeparator();
    QAction* about = helpMenu->addAction("&About...");
    about->setObjectName("actionAbout");
    connect(about, &QAction::triggered, this, &Main::CmHelpAbout);

    navigationBar = addToolBar("Navigation");
    navigationBar->setObjectName("navigationBar");
    navigationBar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    navigationBar->setMovable(false);
    navigationBar->addAction(open);
    navigationBar->addAction(save);
    navigationBar->addSeparator();

    addEditorCommands();
    addToolCommands();
}

void Main::addEditorCommands()
{
    // Each editor adds its command here: a Configure menu entry and a navigation button.
    auto advanced = [this] { return !space.basicMode(); };
    QAction* inputs = addCommand(
        configureMenu, "&Inputs", "actionInputs", &Main::CmInputs,
        [this] { return space.navigation.isOn(NavFlag::Inputs); }, advanced);
    inputs->setStatusTip("Edit the eight hardware inputs");
    inputs->setIcon(style()->standardIcon(QStyle::SP_ArrowRight));
    navigationBar->addAction(inputs);
    QAction* outputs = addCommand(
        configureMenu, "O&utputs", "actionOutputs", &Main::CmOutputs,
        [this] { return space.navigation.isOn(NavFlag::Outputs); }, advanced);
    outputs->setStatusTip("Edit the eight hardware outputs");
    outputs->setIcon(style()->standardIcon(QStyle::SP_ArrowLeft));
    navigationBar->addAction(outputs);
    QAction* points = addCommand(
        configureMenu, "&Points", "actionPoints", &Main::CmPoints,
        [this] { return space.navigation.isOn(NavFlag::Points); }, advanced);
    points->setStatusTip("Edit the 30 points: their ports, names, groups and codes");
    points->setIcon(style()->standardIcon(QStyle::SP_FileDialogDetailedView));
    navigationBar->addAction(points);
    QAction* general = addCommand(
        configureMenu, "&General...", "actionGeneral", &Main::CmGeneral,
        [this] { return generalEditorAvailable(space.navigation); }, advanced);
    general->setStatusTip("Edit the site name, the system codes, rings, security and the ring and carrier detect "
                          "outputs");
    general->setIconText("General");
    general->setIcon(style()->standardIcon(QStyle::SP_FileDialogInfoView));
    navigationBar->addAction(general);
    addGroupCommands();
    addDirectoryCommands();
    addBasicCommands();
}

void Main::addBasicCommands()
{
    // In Basic mode these four dialogs stand in for the Advanced editors.
    auto basic = [this] { return space.basicMode(); };
    const struct {
        const char* text;
        const char* name;
        void (Main::*slot)();
        NavFlag flag;
        QStyle::StandardPixmap icon;
        const char* tip;
    } kBasic[] = {
        {"&System Settings...", "actionSimGen", &Main::CmSimGen, NavFlag::General, QStyle::SP_ComputerIcon,
         "Edit the unit's codes, rings before answer and acknowledge time"},
        {"&Directories...", "actionSimDir", &Main::CmSimDir, NavFlag::DirA, QStyle::SP_FileDialogContentsView,
         "Edit the phone numbers and codes of Directories A and B"},
        {"&Outputs...", "actionSimout", &Main::CmSimout, NavFlag::Outputs, QStyle::SP_ArrowLeft,
         "Edit the four user outputs"},
        {"&Alarms...", "actionAlarms", &Main::CmAlarms, NavFlag::Inputs, QStyle::SP_ArrowRight,
         "Edit the eight alarms and their input format and debounce"},
    };
    configureMenu->addSeparator();
    for (const auto& command : kBasic) {
        QAction* action = addCommand(
            configureMenu, command.text, command.name, command.slot,
            [this, flag = command.flag] { return space.navigation.isOn(flag); }, basic);
        action->setIconText(QString(command.text).remove('&').remove("..."));
        action->setIcon(style()->standardIcon(command.icon));
        action->setStatusTip(command.tip);
        navigationBar->addAction(action);
    }
}

void Main::CmSimGen()
{
    SimGenDialog(space, *activePrompter, this).exec();
    updateCommands();
}

void Main::CmSimDir()
{
    SimDirDialog(space, *activePrompter, this).exec();
    updateCommands();
}

void Main::CmSimout()
{
    SimoutDialog(space, *activePrompter, this).exec();
    updateCommands();
}

void Main::CmAlarms()
{
    AlarmsDialog(space, *activePrompter, this).exec();
    updateCommands();
}

void Main::addDirectoryCommands()
{
    static constexpr void (Main::*kOpen[kDirectoryCount])() = {&Main::CmDirA, &Main::CmDirB, &Main::CmDirC,
                                                               &Main::CmDirD, &Main::CmDirE, &Main::CmDirF};
    auto advanced = [this] { return !space.basicMode(); };
    configureMenu->addSeparator();
    navigationBar->addSeparator();
    for (int d = 0; d < kDirectoryCount; ++d) {
        const QChar letter('A' + d);
        QAction* action = addCommand(
            configureMenu, QString("Directory &%1").arg(letter), QString("actionDir%1").arg(letter), kOpen[d],
            [this, d] { return space.navigation.dirOn(d); }, advanced);
        action->setIconText(QString("Dir %1").arg(letter));
        action->setIcon(style()->standardIcon(QStyle::SP_FileDialogContentsView));
        action->setStatusTip(QString("Edit the call-out lines of Directory %1").arg(letter));
        navigationBar->addAction(action);
    }
}

void Main::addGroupCommands()
{
    static constexpr void (Main::*kOpen[kUsedGroupCount])() = {&Main::CmGroup1, &Main::CmGroup2, &Main::CmGroup3,
                                                               &Main::CmGroup4, &Main::CmGroup5, &Main::CmGroup6};
    auto advanced = [this] { return !space.basicMode(); };
    configureMenu->addSeparator();
    for (int g = 0; g < kUsedGroupCount; ++g) {
        QAction* action = addCommand(
            configureMenu, QString("Group &%1...").arg(g + 1), QString("actionGroup%1").arg(g + 1), kOpen[g],
            [this, g] { return space.navigation.groupOn(g); }, advanced);
        action->setStatusTip(QString("Edit Group %1: its codes, call-out timers, directories, outputs and "
                                     "acknowledge input")
                                 .arg(g + 1));
    }
}

void Main::openGroup(int group)
{
    GroupDialog dialog(space, group, *activePrompter, this);
    updateCommands();
    dialog.exec();
    updateCommands();
}

void Main::CmGroup1() { openGroup(1); }
void Main::CmGroup2() { openGroup(2); }
void Main::CmGroup3() { openGroup(3); }
void Main::CmGroup4() { openGroup(4); }
void Main::CmGroup5() { openGroup(5); }
void Main::CmGroup6() { openGroup(6); }

void Main::openDirectory(int directory) { openEditorWindow(*this, new DirWin(space, *activePrompter, directory)); }

void Main::CmDirA() { openDirectory(0); }
void Main::CmDirB() { openDirectory(1); }
void Main::CmDirC() { openDirectory(2); }
void Main::CmDirD() { openDirectory(3); }
void Main::CmDirE() { openDirectory(4); }
void Main::CmDirF() { openDirectory(5); }

void Main::CmPoints() { openEditorWindow(*this, new PointsWin(space, *activePrompter)); }

void Main::CmGeneral()
{
    GeneralEditor editor(space);
    editor.SetupWindow();
    updateCommands();
    GeneralDialog dialog(editor, *activePrompter, this);
    dialog.exec();
    updateCommands();
}

void Main::CmInputs()
{
    openEditorWindow(*this, new HardwareWin(space, *activePrompter, HardwareEditor::Mode::Inputs));
}

void Main::CmOutputs()
{
    openEditorWindow(*this, new HardwareWin(space, *activePrompter, HardwareEditor::Mode::Outputs));
}

void Main::addToolCommands()
{
    // Each tool adds its command here: a Tools menu entry (and a button where it helps).
    QAction* program = addCommand(toolsMenu, "&Program Rk4...", "actionProgram", &Main::CmProgram,
                                  [this] { return space.navigation.pgmon(); });
    program->setStatusTip("Write the configuration to a unit, read one back, or move its voices");
    program->setIcon(QIcon(":/rk4prog.svg"));
    program->setShortcut(QKeySequence("Ctrl+P"));
    navigationBar->addSeparator();
    navigationBar->addAction(program);
    QAction* summary = addCommand(toolsMenu, "&Summary", "actionSummary", &Main::CmSummary, [] { return true; });
    summary->setStatusTip("Show, print or export the configuration summary and its warnings");
    summary->setShortcut(QKeySequence("Ctrl+R"));
    summary->setIcon(style()->standardIcon(QStyle::SP_FileDialogDetailedView));
    navigationBar->addAction(summary);
    QAction* waveEdit =
        addCommand(toolsMenu, "&Wave Edit...", "actionWaveEdit", &Main::CmWaveEdit, [] { return true; });
    waveEdit->setStatusTip("Convert a recorded wave file to a phrase file for the unit");
    QAction* voiceEdit =
        addCommand(toolsMenu, "&Voice Edit...", "actionVoiceEdit", &Main::CmVoiceEdit, [] { return true; });
    voiceEdit->setStatusTip("Assemble the unit's voice message file from phrase files and move it to and from a unit");
    QAction* cellphone =
        addCommand(toolsMenu, "&Cellphone...", "actionCellphone", &Main::CmCellphone, [] { return true; });
    cellphone->setStatusTip("Program the unit's cellular module: its MIN and MDN, identity and signal");
}

void Main::CmProgram()
{
    PgmDialog dialog(space, *activePrompter, this);
    // In Basic mode the codes live in System Settings, the editor that mode shows.
    dialog.session().openGeneralEditor = [this] { space.basicMode() ? CmSimGen() : CmGeneral(); };
    dialog.session().openSummary = [this] { showSummary(Category::Warnings); };
    if (dialog.exec() == PgmDialog::kModemResult)
        CmModem();
    updateCommands();
}

void Main::CmModem()
{
    ModemDialog dialog(space, *activePrompter, this);
    dialog.openGeneralEditor = [this] { space.basicMode() ? CmSimGen() : CmGeneral(); };
    dialog.openSummary = [this] { showSummary(Category::Warnings); };
    dialog.exec();
}

void Main::CmSummary() { showSummary(Category::All); }

void Main::CmCellphone()
{
    CellPhoneDialog dialog(space, *activePrompter, this);
    dialog.exec();
}

void Main::showSummary(Category category)
{
    auto* window = summaryFrame ? qobject_cast<PrintoutWin*>(summaryFrame->widget()) : nullptr;
    if (!window) {
        window = new PrintoutWin(space.image, *activePrompter);
        summaryFrame = mdi->addSubWindow(window);
        summaryFrame->setAttribute(Qt::WA_DeleteOnClose);
        summaryFrame->setWindowIcon(windowIcon());
        summaryFrame->resize(window->sizeHint().boundedTo(mdi->size()));
    }
    window->core().select(category);
    window->Refresh();
    summaryFrame->show();
    mdi->setActiveSubWindow(summaryFrame);
    window->setFocus();
}

QMdiArea* Main::mdiArea() const { return mdi; }

void Main::updateCommands()
{
    for (const Command& command : commands) {
        command.action->setVisible(!command.visible || command.visible());
        command.action->setEnabled(command.enabled());
    }
    for (QMenu* menu : {configureMenu, toolsMenu})
        menu->menuAction()->setVisible(!menu->actions().isEmpty());
    // An open summary follows the image (Open, Clear Data, an editor's Exit).
    if (auto* summary = summaryFrame ? qobject_cast<PrintoutWin*>(summaryFrame->widget()) : nullptr)
        summary->Refresh();
    if (QAction* mode = findChild<QAction*>("actionMode"))
        mode->setChecked(space.basicMode());
    setWindowTitle(QString::fromStdString(space.title()));
    modeLabel->setText(space.basicMode() ? " Basic mode " : " Advanced mode ");
    fileLabel->setText(QString::fromStdString(space.workingFile) + (space.DatabaseChanged ? "  (changed)" : ""));
    const std::string site = nameText(space.image.gen.name);
    const auto end = site.find_last_not_of(' ');
    mdi->setSummary(
        QString::fromStdString(std::filesystem::path(space.workingFile).filename().string()),
        QString("%1 configuration%2\nOpen an editor from the Configure menu or the tool bar; "
                "Program Rk4 sends it to a unit.")
            .arg(space.basicMode() ? "Basic" : "Advanced")
            .arg(end == std::string::npos ? QString() : " for " + QString::fromStdString(site.substr(0, end + 1))));
}

void Main::ChangeMode()
{
    // The menus carry both modes' commands; visibility follows the mode.
    updateCommands();
}

void Main::startupIdle()
{
    space.showStartupReport(*activePrompter);
    updateCommands();
}

void Main::openStartupFile(const QString& path)
{
    space.openFile(path.toStdString(), *activePrompter);
    updateCommands();
}

void Main::CmClearData()
{
    space.CmClearData(*activePrompter);
    updateCommands();
}

void Main::CmFileOpen()
{
    space.CmFileOpen(*activePrompter);
    updateCommands();
}

void Main::CmFileSave()
{
    space.CmFileSave(*activePrompter);
    updateCommands();
}

void Main::CmFileSaveAs()
{
    space.CmFileSaveAs(*activePrompter);
    updateCommands();
}

void Main::CmExportText()
{
    rk4::CmExportText(space, *activePrompter);
    updateCommands();
}

void Main::CmImportText()
{
    rk4::CmImportText(space, *activePrompter);
    updateCommands();
}

void Main::CmMode()
{
    space.CmMode(*activePrompter);
    updateCommands();
}

void Main::CmRunWizard()
{
    space.CmRunWizard(*activePrompter);
    updateCommands();
}

void Main::CmWaveEdit()
{
    WaveDialog dialog(*activePrompter, this);
    dialog.exec();
}

void Main::CmVoiceEdit()
{
    VeditDialog dialog(space, *activePrompter, this);
    addSpeakCommands(dialog, space, *activePrompter);
    dialog.exec();
}

void Main::CmHelpContents()
{
    activePrompter->tell("Help",
                         "Open a configuration with File > Open, edit it with the commands of the tool bar, "
                         "and save it with File > Save.\nPress Shift+F1 and click a control to learn what it does.",
                         Icon::Information);
}

void Main::CmHelpAbout()
{
    QMessageBox::about(this, "About",
                       QString("<b>%1</b><br>Version %2<br><br>Programming tool for the Rk4 cellular alarm unit.")
                           .arg(kApplicationName, QApplication::applicationVersion()));
}

void Main::closeEvent(QCloseEvent* event)
{
    // Open editors are left first, each with its own save-or-discard question.
    mdi->closeAllSubWindows();
    const QList<QMdiSubWindow*> open = mdi->subWindowList();
    if (std::any_of(open.begin(), open.end(), [](QMdiSubWindow* window) { return window->isVisible(); })) {
        event->ignore();
        updateCommands();
        return;
    }
    if (space.CanClose(*activePrompter))
        event->accept();
    else
        event->ignore();
    updateCommands();
}

} // namespace rk4::gui
