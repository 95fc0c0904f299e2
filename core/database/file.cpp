#include "core/database/file.h"

#include <cctype>
#include <algorithm>

namespace rk4 {

bool CheckFileExt(const std::string& name)
{
    const std::size_t limit = std::min<std::size_t>(name.size(), 100);
    auto lower = [&](std::size_t i) { return std::tolower(static_cast<unsigned char>(name[i])); };
    for (std::size_t i = 0; i < limit; ++i) {
        if (name[i] == '.' && i + 3 < name.size() && lower(i + 1) == 'd' && lower(i + 2) == 'a' && lower(i + 3) == 't')
            return true;
    }
    return false;
}

std::string fileStatusText(FileStatus status)
{
    switch (status) {
    case FileStatus::Ok: return {};
    case FileStatus::CannotOpen: return kCannotOpenFile;
    case FileStatus::WrongExtension: return kMustHaveDatExtension;
    case FileStatus::WrongSize: return kNotCorrectSize;
    }
    return {};
}

void reportFileError(Prompter& prompter, const FileOutcome& outcome)
{
    if (!outcome)
        prompter.fileError(fileStatusText(outcome.status), outcome.cause);
}

std::optional<std::vector<std::uint8_t>> readWholeFile(const std::filesystem::path& path)
{
    FileRead read = readFileBytes(path);
    if (!read)
        return std::nullopt;
    return std::move(read.bytes);
}

FileOutcome readImageFile(const std::filesystem::path& path, Database& db)
{
    if (!CheckFileExt(path.filename().string()))
        return {FileStatus::WrongExtension, {}};
    const FileRead read = readFileBytes(path);
    if (!read)
        return {FileStatus::CannotOpen, read.cause()};
    if (read.bytes.size() != dbasesize)
        return {FileStatus::WrongSize, std::to_string(read.bytes.size()) + " bytes, not " + std::to_string(dbasesize)};
    db.fromBytes(std::span<const std::uint8_t, dbasesize>(read.bytes.data(), dbasesize));
    return {};
}

FileOutcome writeImageFile(const std::filesystem::path& path, const Database& db)
{
    if (!CheckFileExt(path.filename().string()))
        return {FileStatus::WrongExtension, {}};
    const ImageBytes image = db.toBytes();
    const SaveResult saved = writeFileAtomically(path, image);
    if (!saved)
        return {FileStatus::CannotOpen, saved.cause()};
    return {};
}

Config configFromBytes(std::span<const std::uint8_t> bytes)
{
    Config config;
    std::copy_n(bytes.begin(), std::min(bytes.size(), config.bytes.size()), config.bytes.begin());
    return config;
}

std::optional<Config> readConfigFile(const std::filesystem::path& path)
{
    const FileRead read = readFileBytes(path);
    if (!read)
        return std::nullopt;
    return configFromBytes(read.bytes);
}

SaveResult writeConfigFile(const std::filesystem::path& path, const Config& config)
{
    return writeFileAtomically(path, config.bytes);
}

} // namespace rk4
