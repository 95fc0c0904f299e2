#pragma once
// The shell's state and commands without a window: the one image the program
// edits, its file, the change flag, the settings record, the navigation flags,
// start-up, open/save/clear, closing and the Basic/Advanced mode switch.

#include "core/basic/simple_warning.h"
#include "core/common/prompter.h"
#include "core/database/database.h"
#include "core/database/file.h"
#include "core/shell/navigation.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace rk4 {

inline constexpr char kApplicationName[] = "Sentrix Rk4 Programmer";
inline constexpr char kTitlePrefix[] = " Sentrix Rk4 Programmer  -  ";

// Start-up report flags.
inline constexpr unsigned kReportConfigCreated = 1;
inline constexpr unsigned kReportDataCreated = 2;
inline constexpr unsigned kReportBasicProblems = 4; // never set: the unit's tool never reached it
inline constexpr unsigned kReportConfigUnreadable = 8;
inline constexpr unsigned kReportDataUnreadable = 16;
inline constexpr unsigned kReportDataWrongSize = 32;

class Workspace {
  public:
    explicit Workspace(std::filesystem::path workingDirectory = std::filesystem::current_path());

    Database image;
    Config cfg;
    std::string workingFile = kDefaultDataFile;
    bool DatabaseChanged = false;
    std::uint32_t problems = 0;
    unsigned startupReport = 0;
    NavigationFlags navigation;

    bool basicMode() const { return image.gen.basicMode != 0; }
    std::string title() const { return kTitlePrefix + workingFile; }
    const std::filesystem::path& workingDirectory() const { return directory; }
    std::filesystem::path configPath() const { return directory / kConfigFile; }

    // Called whenever the mode the menus show changes (the window rebuilds them).
    std::function<void()> ChangeMode;
    // Hooks for the rules summaries and the Basic wizard, set by the window.
    // Without one, a Yes that would open them goes on as the No path.
    std::function<void(bool basic)> showRulesSummary;
    std::function<void()> runBasicWizard;
    // Shows the list of what keeps the image from Basic mode and returns the
    // user's way out. Without a window to ask, the image stays Advanced.
    std::function<SimpleChoice(SimpleWarning&)> showSimpleWarning;

    // Start-up: settings file and data file, noting what had to be created.
    void InitFile(Prompter& prompter);
    // Shown once from idle processing after the window appears.
    void showStartupReport(Prompter& prompter);

    // File commands. Each returns true when it did what it was asked.
    bool CmFileOpen(Prompter& prompter);
    bool openFile(const std::string& path, Prompter& prompter);
    bool CmFileSave(Prompter& prompter);
    bool CmFileSaveAs(Prompter& prompter);
    bool saveTo(const std::string& path, Prompter& prompter);
    bool CmClearData(Prompter& prompter);

    // Closing: false keeps the program running.
    bool CanClose(Prompter& prompter);
    bool DataGone(Prompter& prompter);

    bool CmMode(Prompter& prompter);
    bool CmRunWizard(Prompter& prompter);

    // The serial port slot, kept in rk4.cfg.
    bool SavePort(int index, Prompter& prompter);

    // A whole image read from the unit replaces the one in memory; the
    // window follows when its mode differs from the mode at the start of the read.
    void acceptReadImage(const Database& read, bool basicModeAtStart);

    // Marks the image changed only when `edited` differs from it.
    void commit(const Database& edited);

  private:
    void switchShellMode();
    // Checks the image against Basic mode into `problems`; when it does not fit,
    // offers the conversion and carries out the answer. Returns the answer, or
    // nothing when the image fits.
    std::optional<SimpleChoice> offerBasicConversion(Prompter& prompter, bool opened);
    std::filesystem::path resolve(const std::string& path) const;

    std::filesystem::path directory;
    std::string configProblem; // why rk4.cfg could not be read
    std::string dataProblem;   // why Rk4.dat could not be read, or its wrong size
};

} // namespace rk4
