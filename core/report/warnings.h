#pragma once
// The configuration check: everything in the image that is legal but likely
// wrong, as the lines of the Warnings page. A Basic image gets the short list
// of the simplified shape, any other image the full one. Reads the image only.

#include "core/database/database.h"

#include <optional>
#include <string>
#include <vector>

namespace rk4 {

// Each entry is one warning; a warning of more than one line holds '\n'
// between its lines.
std::vector<std::string> BasicWarnings(const Database& db);
std::vector<std::string> AdvancedWarnings(const Database& db);
// The list the image's mode calls for.
std::vector<std::string> ConfigurationWarnings(const Database& db);

// The warnings as page lines: every line of every warning on a line of its own.
std::vector<std::string> warningLines(const std::vector<std::string>& warnings);

// The text about ANSWER placed directly after a DIAL while Call Progress
// listens for the answer itself, or nothing when no directory does so.
// `callProgress` is not looked at: the General settings editor asks before
// the switch is stored.
std::optional<std::string> answerAfterDialWarning(const Database& db);

} // namespace rk4
