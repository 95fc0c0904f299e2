#include "core/shell/text_form_commands.h"

#include "core/database/text_form.h"

namespace rk4 {

namespace {

FileRequest textRequest(const Workspace& space, FileMode mode)
{
    std::filesystem::path start = space.workingDirectory() / space.workingFile;
    start.replace_extension(kTextFormExtension);
    return {mode, mode == FileMode::Save ? "Export" : "Import", "Configuration text (*.yaml *.yml);;All files (*)",
            kTextFormExtension, start.string()};
}

std::filesystem::path resolved(const Workspace& space, const std::string& chosen)
{
    const std::filesystem::path path(chosen);
    return path.is_absolute() ? path : space.workingDirectory() / path;
}

} // namespace

bool CmExportText(Workspace& space, Prompter& prompter)
{
    const auto chosen = prompter.chooseFile(textRequest(space, FileMode::Save));
    if (!chosen)
        return false;
    const SaveResult saved = writeTextFormFile(resolved(space, *chosen), space.image);
    if (!saved)
        prompter.ask({"File Error", kCannotWriteText, Icon::Error, Buttons::Ok, saved.cause()});
    return static_cast<bool>(saved);
}

bool CmImportText(Workspace& space, Prompter& prompter)
{
    if (space.DataGone(prompter))
        space.CmFileSaveAs(prompter);
    const auto chosen = prompter.chooseFile(textRequest(space, FileMode::Open));
    if (!chosen)
        return false;
    const ImportResult imported = readTextFormFile(resolved(space, *chosen));
    if (!imported.db) {
        // The place on a line of its own, so a narrow message box does not break it.
        const std::string place = textFormPlace(imported.error);
        const std::string where =
            std::filesystem::path(*chosen).filename().string() + (place.empty() ? "" : ", " + place);
        prompter.ask(
            {"File Error", kCannotImportText, Icon::Error, Buttons::Ok, where + ":\n" + imported.error.reason});
        return false;
    }
    space.acceptReadImage(*imported.db, space.basicMode());
    return true;
}

} // namespace rk4
