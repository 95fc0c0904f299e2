#pragma once
// The configuration as text a technician can read, review and keep under
// version control: every field of the image in YAML, grouped and worded as the
// editors show them. Reading the text back checks each value with the editors'
// own rules and gives back the image byte for byte; anything the readable
// form cannot say (reserved bytes, bytes after a code's end, a directory the
// editor could not show) is kept as hex, so no image loses a byte.

#include "core/common/safe_file.h"
#include "core/database/database.h"

#include <filesystem>

#include <optional>
#include <string>
#include <string_view>

namespace rk4 {

inline constexpr char kTextFormExtension[] = "yaml";

std::string exportText(const Database& db);

// Where and why a text was refused: the line (1-based, 0 when the text has no
// usable place), the key path ("groups.1.ackCode") and the reason.
struct TextFormError {
    int line = 0;
    std::string key;
    std::string reason;
};

// "line 12, groups.1.ackCode", or empty when the text has no place.
std::string textFormPlace(const TextFormError& error);
// "line 12, groups.1.ackCode: 'X' is not a DTMF digit"
std::string textFormErrorText(const TextFormError& error);

struct ImportResult {
    std::optional<Database> db;
    TextFormError error; // when db is empty
};

ImportResult importText(std::string_view text);

// The file forms: a file that cannot be read is refused with its cause as
// the reason; writing goes through a temporary file renamed over the target.
ImportResult readTextFormFile(const std::filesystem::path& path);
SaveResult writeTextFormFile(const std::filesystem::path& path, const Database& db);

// True for a name ending in .yaml or .yml, in any case.
bool isTextFormName(const std::filesystem::path& path);

} // namespace rk4
