#include "core/database/file.h"

#include <cctype>
#include <fstream>
#include <system_error>
#include <unistd.h>

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

std::optional<std::vector<std::uint8_t>> readWholeFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    // Read in large pieces: recordings run to tens of megabytes.
    std::vector<std::uint8_t> bytes;
    std::vector<char> piece(1 << 20);
    while (in.read(piece.data(), static_cast<std::streamsize>(piece.size())) || in.gcount() > 0)
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + in.gcount());
    if (in.bad())
        return std::nullopt;
    return bytes;
}

bool writeFileAtomically(const std::filesystem::path& path, std::span<const std::uint8_t> bytes)
{
    std::filesystem::path temporary = path;
    temporary += ".tmp~" + std::to_string(::getpid());
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!out)
            return false;
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        out.flush();
        if (!out) {
            std::error_code ignored;
            std::filesystem::remove(temporary, ignored);
            return false;
        }
    }
    std::error_code error;
    std::filesystem::rename(temporary, path, error);
    if (error) {
        std::filesystem::remove(temporary, error);
        return false;
    }
    return true;
}

FileStatus readImageFile(const std::filesystem::path& path, Database& db)
{
    if (!CheckFileExt(path.filename().string()))
        return FileStatus::WrongExtension;
    auto bytes = readWholeFile(path);
    if (!bytes)
        return FileStatus::CannotOpen;
    if (bytes->size() != dbasesize)
        return FileStatus::WrongSize;
    db.fromBytes(std::span<const std::uint8_t, dbasesize>(bytes->data(), dbasesize));
    return FileStatus::Ok;
}

FileStatus writeImageFile(const std::filesystem::path& path, const Database& db)
{
    if (!CheckFileExt(path.filename().string())) {
        std::ofstream truncated(path, std::ios::binary | std::ios::trunc);
        return truncated ? FileStatus::WrongExtension : FileStatus::CannotOpen;
    }
    const ImageBytes image = db.toBytes();
    return writeFileAtomically(path, image) ? FileStatus::Ok : FileStatus::CannotOpen;
}

std::optional<Config> readConfigFile(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return std::nullopt;
    Config config;
    in.read(reinterpret_cast<char*>(config.bytes.data()), static_cast<std::streamsize>(config.bytes.size()));
    return config; // a short file leaves the rest zero, as the tool always read it
}

bool writeConfigFile(const std::filesystem::path& path, const Config& config)
{
    return writeFileAtomically(path, config.bytes);
}

} // namespace rk4
