#pragma once
// The image's file form (*.dat, 4704 bytes, no header) and the tool's settings
// file rk4.cfg, with the messages a technician sees when they go wrong.

#include "core/common/prompter.h"
#include "core/common/safe_file.h"
#include "core/database/database.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace rk4 {

inline constexpr char kDefaultDataFile[] = "Rk4.dat";
inline constexpr char kConfigFile[] = "rk4.cfg";

inline constexpr char kCannotOpenFile[] = " CANNOT OPEN FILE ";
inline constexpr char kMustHaveDatExtension[] = " FILE NAME MUST HAVE .DAT EXTENSION ";
inline constexpr char kNotCorrectSize[] = " FILE IS NOT THE CORRECT SIZE ";
inline constexpr char kCannotOpenCfg[] = " CANNOT OPEN .CFG FILE ";

// True when a '.' within the first 100 characters is followed by "dat" in any case.
bool CheckFileExt(const std::string& name);

enum class FileStatus { Ok, CannotOpen, WrongExtension, WrongSize };

// The message for a failed status, or empty for Ok.
std::string fileStatusText(FileStatus status);

// What a file command did, with the cause behind a failure ("disk full",
// "Permission denied", "not a regular file (a device)") for the message's detail.
struct FileOutcome {
    FileStatus status = FileStatus::Ok;
    std::string cause;

    bool operator==(FileStatus other) const { return status == other; }
    explicit operator bool() const { return status == FileStatus::Ok; }
};

// Shows a failed outcome as a "File Error" message, the cause as its detail.
void reportFileError(Prompter& prompter, const FileOutcome& outcome);

// Reads an image without touching `db` unless the whole file is good. The name
// rule is checked first, as the Open command does.
FileOutcome readImageFile(const std::filesystem::path& path, Database& db);

// Writes through a temporary file renamed over the target, so an interrupted
// save never leaves half a configuration. A name without ".dat" is refused
// and the named file left exactly as it was.
FileOutcome writeImageFile(const std::filesystem::path& path, const Database& db);

// The first 16 bytes of a settings file; a short file leaves the rest zero.
Config configFromBytes(std::span<const std::uint8_t> bytes);
std::optional<Config> readConfigFile(const std::filesystem::path& path);
SaveResult writeConfigFile(const std::filesystem::path& path, const Config& config);

// Whole-file reading for the other formats; readFileBytes says why it failed.
std::optional<std::vector<std::uint8_t>> readWholeFile(const std::filesystem::path& path);

} // namespace rk4
