#pragma once
// File > Export and File > Import: the configuration's readable text form
// written from the image and read into it.

#include "core/common/prompter.h"
#include "core/shell/workspace.h"

namespace rk4 {

inline constexpr char kCannotWriteText[] = " CANNOT WRITE FILE ";
inline constexpr char kCannotImportText[] = " CANNOT IMPORT FILE ";

// Writes the image as text to a file the user chooses. The image and its
// changed flag stay as they are: the text is a copy, not the data file.
bool CmExportText(Workspace& space, Prompter& prompter);

// Replaces the image with a text file's configuration once every value of it
// has been accepted; a refusal names the line and key and changes nothing.
// The imported image is not yet saved, so closing offers to save it.
bool CmImportText(Workspace& space, Prompter& prompter);

} // namespace rk4
