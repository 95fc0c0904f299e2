#include "core/shell/workspace.h"

#include "core/basic/simple_check.h"
#include "core/database/defaults.h"
#include "core/database/validators.h"

#include <fstream>

namespace rk4 {

namespace {

Message query(std::string text, Buttons buttons = Buttons::YesNo)
{
    return Message{"Query", std::move(text), Icon::Question, buttons};
}

const FileRequest kDataFileRequest{FileMode::Open, "Open", "Data files (*.dat);;All files (*)", "dat", {}};

} // namespace

Workspace::Workspace(std::filesystem::path workingDirectory) : directory(std::move(workingDirectory)) {}

std::filesystem::path Workspace::resolve(const std::string& path) const
{
    const std::filesystem::path p(path);
    return p.is_absolute() ? p : directory / p;
}

void Workspace::InitFile(Prompter& prompter)
{
    // Only a missing file is replaced by defaults: one that exists but cannot
    // be read is left alone and the reason reported.
    const FileRead config = readFileBytes(configPath());
    if (config) {
        cfg = configFromBytes(config.bytes);
    } else if (!config.missing()) {
        startupReport |= kReportConfigUnreadable;
        configProblem = config.cause();
    } else {
        startupReport |= kReportConfigCreated;
        if (const SaveResult saved = writeConfigFile(configPath(), cfg); !saved)
            prompter.fileError(kCannotOpenFile, saved.cause());
    }

    const std::filesystem::path dataPath = directory / kDefaultDataFile;
    const FileRead data = readFileBytes(dataPath);
    if (!data && !data.missing()) {
        startupReport |= kReportDataUnreadable;
        dataProblem = data.cause();
        image = Database{};
        DefaultValues(image);
        DatabaseChanged = false;
    } else if (data) {
        // Start-up reads whatever is there, the rest zero; the report says so.
        ImageBytes raw{};
        std::copy_n(data.bytes.begin(), std::min(data.bytes.size(), raw.size()), raw.begin());
        if (data.bytes.size() != raw.size()) {
            startupReport |= kReportDataWrongSize;
            dataProblem = std::string(kDefaultDataFile) + " holds " + std::to_string(data.bytes.size()) +
                          " bytes, not " + std::to_string(raw.size()) +
                          "; what it holds was read and the rest set to zero.";
        }
        image.fromBytes(raw);
        DefaultValues(image);
        workingFile = kDefaultDataFile;
        DatabaseChanged = false;
        if (basicMode()) {
            switchShellMode();
            // Start-up notes the problems but never reports them.
            problems = CheckForSimple(image).problems;
            DatabaseChanged = false;
        }
    } else {
        startupReport |= kReportDataCreated;
        image = Database{};
        DefaultValues(image);
        reportFileError(prompter, writeImageFile(dataPath, image));
        DatabaseChanged = false;
    }
}

void Workspace::showStartupReport(Prompter& prompter)
{
    if (startupReport & kReportConfigCreated)
        prompter.fileError(" CANNOT OPEN RK4.CFG FILE - DEFAULT CREATED.");
    if (startupReport & kReportConfigUnreadable)
        prompter.fileError(" CANNOT OPEN RK4.CFG FILE ",
                           configProblem + ". The file is left as it is; the default settings are used.");
    if (startupReport & kReportDataCreated) {
        prompter.fileError(" CANNOT OPEN RK4.DAT FILE - DEFAULT CREATED.");
        image.gen.ringsToAnswer = 2;
    }
    if (startupReport & kReportDataUnreadable)
        prompter.fileError(" CANNOT OPEN RK4.DAT FILE ",
                           dataProblem + ". The file is left as it is; the default configuration is shown.");
    if (startupReport & kReportDataWrongSize)
        prompter.fileError(kNotCorrectSize, dataProblem);
    startupReport = 0;
}

bool Workspace::DataGone(Prompter& prompter)
{
    if (!DatabaseChanged)
        return false;
    return prompter.ask(query("Do you want to save changed data?")) == Answer::Yes;
}

bool Workspace::CmFileOpen(Prompter& prompter)
{
    // A save that was asked for and did not happen stops the command, so the
    // edits are never dropped.
    if (DataGone(prompter) && !CmFileSaveAs(prompter))
        return false;
    FileRequest request = kDataFileRequest;
    request.startPath = resolve(workingFile).string();
    auto chosen = prompter.chooseFile(request);
    if (!chosen)
        return false;
    return openFile(*chosen, prompter);
}

bool Workspace::openFile(const std::string& path, Prompter& prompter)
{
    const bool wasBasic = basicMode();
    Database loaded = image;
    const FileOutcome status = readImageFile(resolve(path), loaded);
    if (!status) {
        reportFileError(prompter, status);
        return false;
    }
    image = loaded;
    if (!basicMode())
        DefaultValues(image);
    DatabaseChanged = false;
    workingFile = path;
    if (basicMode() != wasBasic) {
        switchShellMode();
        DatabaseChanged = false;
    }
    if (basicMode() && offerBasicConversion(prompter, true) == SimpleChoice::StayAdvanced) {
        // The image in memory no longer says Basic, unlike its file.
        DatabaseChanged = true;
        switchShellMode();
    }
    return true;
}

bool Workspace::saveTo(const std::string& path, Prompter& prompter)
{
    const std::filesystem::path target = resolve(path);
    if (CheckFileExt(target.filename().string()) && !basicMode())
        DefaultValues(image);
    const FileOutcome status = writeImageFile(target, image);
    if (!status) {
        reportFileError(prompter, status);
        return false;
    }
    DatabaseChanged = false;
    return true;
}

bool Workspace::CmFileSave(Prompter& prompter) { return saveTo(workingFile, prompter); }

bool Workspace::CmFileSaveAs(Prompter& prompter)
{
    FileRequest request = kDataFileRequest;
    request.mode = FileMode::Save;
    request.title = "Save As";
    request.startPath = resolve(workingFile).string();
    auto chosen = prompter.chooseFile(request);
    if (!chosen)
        return false;
    workingFile = *chosen;
    return CmFileSave(prompter);
}

bool Workspace::CmClearData(Prompter& prompter)
{
    if (prompter.ask(query("All data will be erased - Continue?")) != Answer::Yes)
        return false;
    ClearDatabase(image, false);
    if (basicMode() && prompter.ask(query("Do you want to use the Basic Wizard for configuration?")) == Answer::Yes) {
        if (runBasicWizard)
            runBasicWizard();
    }
    return true;
}

bool Workspace::CanClose(Prompter& prompter)
{
    if (!DatabaseChanged)
        return true;
    switch (prompter.ask(query("Do you want to save changed data before closing application?", Buttons::YesNoCancel))) {
    case Answer::Yes:
        // A save that fails keeps the program open rather than lose the changes.
        return CmFileSave(prompter);
    case Answer::No: return true;
    default: return false;
    }
}

void Workspace::switchShellMode()
{
    if (ChangeMode)
        ChangeMode();
}

bool Workspace::CmMode(Prompter& prompter)
{
    if (basicMode()) {
        const Answer answer = prompter.ask(Message{
            "Changing Mode",
            "Changing to the Advanced mode will allow all available parameters to be programmed.  Some of these "
            "variables are not accessible by the telephone programming.  Do you want to view a summary of these "
            "limitations?",
            Icon::Question, Buttons::YesNoCancel});
        if (answer == Answer::Cancel)
            return false;
        if (answer == Answer::Yes && showRulesSummary)
            showRulesSummary(false);
        image.gen.basicMode = 0;
        DatabaseChanged = true;
        switchShellMode();
        return true;
    }

    const Answer answer = prompter.ask(Message{
        "Changing Mode",
        "Changing to the Basic mode will remove some programming options.\nDo you want to see a summary of these "
        "limitations?",
        Icon::Question, Buttons::YesNoCancel});
    if (answer == Answer::Cancel)
        return false;
    if (answer == Answer::Yes && showRulesSummary)
        showRulesSummary(true);
    if (const auto choice = offerBasicConversion(prompter, false)) {
        if (*choice == SimpleChoice::StayAdvanced)
            return false;
        switchShellMode();
        return true;
    }
    image.gen.basicMode = 1;
    bool keepDirectories = false;
    if (IsDirectoryUsed(image, 0) || IsDirectoryUsed(image, 1))
        keepDirectories =
            prompter.ask(query("The Directories are not empty.\nDo you want to leave the Directories unchanged?")) ==
            Answer::Yes;
    const bool wizard = prompter.ask(query("Do you want to use the Basic Wizard for configuration?\nPressing No will "
                                           "result in a default database that you can edit.")) == Answer::Yes;
    ClearDatabase(image, keepDirectories);
    if (wizard && runBasicWizard)
        runBasicWizard();
    DatabaseChanged = true;
    switchShellMode();
    return true;
}

std::optional<SimpleChoice> Workspace::offerBasicConversion(Prompter& prompter, bool opened)
{
    SimpleWarning warning(image, opened);
    problems = warning.check().problems;
    if (problems == 0)
        return std::nullopt;
    const SimpleChoice choice = showSimpleWarning ? showSimpleWarning(warning) : SimpleChoice::StayAdvanced;
    switch (choice) {
    case SimpleChoice::StayAdvanced: LeaveComplex(image); return choice;
    case SimpleChoice::ConvertAll: Change2Simple(image); break;
    case SimpleChoice::KeepDirectories: Change2Simple2(image); break;
    }
    DatabaseChanged = true;
    if (askConversionWizard(prompter) && runBasicWizard)
        runBasicWizard();
    return choice;
}

bool Workspace::CmRunWizard(Prompter& prompter)
{
    if (prompter.ask(Message{"Warning", "Running the Basic Wizard will erase all current entries.  Proceed?",
                             Icon::Warning, Buttons::YesNo}) != Answer::Yes)
        return false;
    const bool usedA = IsDirectoryUsed(image, 0);
    const bool usedB = IsDirectoryUsed(image, 1);
    bool keepDirectories = false;
    if (usedA || usedB) {
        const bool advanced =
            (usedA && directoryHasAdvancedCommands(image, 0)) || (usedB && directoryHasAdvancedCommands(image, 1));
        std::string text = advanced ? "\nThere are Advanced commands in " : "\nThere are Basic commands in ";
        text += usedA && usedB ? "Directories A and B." : usedA ? "Directory A." : "Directory B.";
        text += "\nDo you want the wizard to leave the Directories unchanged?";
        keepDirectories = prompter.ask(Message{"Warning", text, Icon::Warning, Buttons::YesNo}) == Answer::Yes;
        if (keepDirectories)
            prompter.tell("Information",
                          "The wizard will not ask you to enter any telephone numbers.\nUse the Directory editor to "
                          "change the numbers.",
                          Icon::Information);
    }
    ClearDatabase(image, keepDirectories);
    DatabaseChanged = true;
    if (runBasicWizard)
        runBasicWizard();
    return true;
}

bool Workspace::SavePort(int index, Prompter& prompter)
{
    cfg.setPortIndex(index);
    if (const SaveResult saved = writeConfigFile(configPath(), cfg); !saved) {
        prompter.fileError(kCannotOpenCfg, saved.cause());
        return false;
    }
    return true;
}

void Workspace::acceptReadImage(const Database& read, bool basicModeAtStart)
{
    image = read;
    // The image no longer matches its file: closing will offer to save it.
    DatabaseChanged = true;
    if (basicMode() != basicModeAtStart)
        switchShellMode();
}

void Workspace::commit(const Database& edited)
{
    if (edited != image) {
        image = edited;
        DatabaseChanged = true;
    }
}

} // namespace rk4
