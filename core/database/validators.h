#pragma once
// Checks shared by every editor, the printout and the warnings.

#include "core/database/database.h"

namespace rk4 {

// True when the directory holds any command letter (parameter bytes count too).
bool IsDirectoryUsed(const Database& db, int directory);

} // namespace rk4
