#pragma once
// The main window: menus, the navigation tool bar, the MDI area that holds the
// list windows, and the status bar. Its commands call the core Workspace.

#include "core/report/summary.h"
#include "core/shell/workspace.h"
#include "gui/shell/qt_prompter.h"

#include <QMainWindow>
#include <QPointer>

#include <functional>
#include <memory>
#include <vector>

class QAction;
class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QToolBar;

namespace rk4::gui {

class WorkArea;

class Main : public QMainWindow {
    Q_OBJECT

  public:
    explicit Main(Workspace& workspace, Prompter* prompter = nullptr, QWidget* parent = nullptr);

    Workspace& workspace() { return space; }
    Prompter& prompter() { return *activePrompter; }
    QMdiArea* mdiArea() const;

    // Recomputes every command's enabled state from the navigation flags and
    // the mode, and the title and status bar from the workspace.
    void updateCommands();

    // Opens a file given on the command line.
    void openStartupFile(const QString& path);

    // Shows the SUMMARY window (opening it if needed) on `category`.
    void showSummary(Category category);

  public slots:
    void CmClearData();
    void CmFileOpen();
    void CmFileSave();
    void CmFileSaveAs();
    void CmExportText();
    void CmImportText();
    void CmMode();
    void CmRunWizard();
    void CmHelpAbout();
    void CmHelpContents();
    void CmDirA();
    void CmDirB();
    void CmDirC();
    void CmDirD();
    void CmDirE();
    void CmDirF();
    void CmInputs();
    void CmOutputs();
    void CmPoints();
    void CmGeneral();
    void CmGroup1();
    void CmGroup2();
    void CmGroup3();
    void CmGroup4();
    void CmGroup5();
    void CmGroup6();
    void CmProgram();
    void CmModem();
    void CmSummary();
    void CmWaveEdit();
    void CmVoiceEdit();
    void CmCellphone();
    void CmSimGen();
    void CmSimDir();
    void CmSimout();
    void CmAlarms();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    struct Command {
        QAction* action;
        std::function<bool()> enabled;
        std::function<bool()> visible;
    };

    void buildMenus();
    void addEditorCommands();
    void addToolCommands();
    void addDirectoryCommands();
    void addBasicCommands();
    void openDirectory(int directory);
    void addGroupCommands();
    void openGroup(int group);
    void ChangeMode();
    void startupIdle();
    QAction* addCommand(QMenu* menu, const QString& text, const QString& objectName, void (Main::*slot)(),
                        std::function<bool()> enabled, std::function<bool()> visible = {});

    Workspace& space;
    std::unique_ptr<QtPrompter> ownPrompter;
    Prompter* activePrompter;
    WorkArea* mdi = nullptr;
    QToolBar* navigationBar = nullptr;
    QMenu* configureMenu = nullptr;
    QMenu* toolsMenu = nullptr;
    QLabel* modeLabel = nullptr;
    QPointer<QMdiSubWindow> summaryFrame;
    QLabel* fileLabel = nullptr;
    std::vector<Command> commands;
};

} // namespace rk4::gui
