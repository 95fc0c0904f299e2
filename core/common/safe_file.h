#pragma once
// Every file the tool writes goes through here. The bytes go to a private
// temporary file beside the target, are flushed to the disk, and are renamed
// over the target, so a crash, a kill or a full disk leaves the old file or
// the new one, never half of one. A symbolic link is written through to the
// file it names; a device, a FIFO or a folder is refused rather than replaced.

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace rk4 {

enum class SaveProblem {
    None,
    NotRegularFile, // a folder, a device, a FIFO or a socket
    NotWritable,    // the user could not overwrite the target
    CannotCreate,   // no temporary file could be made beside the target
    DiskFull,
    WriteFailed,
};

struct SaveResult {
    SaveProblem problem = SaveProblem::None;
    int error = 0;    // errno behind the problem, when there is one
    std::string kind; // for NotRegularFile: "a folder", "a device", ...

    explicit operator bool() const { return problem == SaveProblem::None; }
    // The cause in a few words, to follow the system's own message:
    // "disk full", "not a regular file (a device)", "not writable: Permission denied".
    std::string cause() const;
};

// Follows symbolic links to the path a save really writes (the link's target,
// even when that file does not exist yet).
std::filesystem::path saveTargetOf(const std::filesystem::path& target);

// What a save to `target` would run into, found before any work is done: a
// target that is not a regular file, a file or folder that is not writable.
SaveResult checkSaveTarget(const std::filesystem::path& target);

// Whether the disk that would hold `target` has room for `bytes` more, so a
// long transfer can be refused before it starts rather than fail at its end.
SaveResult checkSaveRoom(const std::filesystem::path& target, std::uint64_t bytes);

// True when saving to `target` would replace the existing file `source`: the
// same path, another name for it (a hard or symbolic link), or its folder
// spelled differently.
bool wouldReplace(const std::filesystem::path& target, const std::filesystem::path& source);

// A file written piece by piece that replaces its target only on commit().
// Destroyed without a commit, it removes its temporary file.
class SafeFileWriter {
  public:
    explicit SafeFileWriter(const std::filesystem::path& target);
    ~SafeFileWriter();
    SafeFileWriter(const SafeFileWriter&) = delete;
    SafeFileWriter& operator=(const SafeFileWriter&) = delete;

    // The outcome so far: a refused target or a failed write shows here.
    const SaveResult& result() const { return outcome; }
    bool write(std::span<const std::uint8_t> bytes);
    std::uint64_t size() const { return written; }
    // Flushes, renames over the target and flushes the folder.
    SaveResult commit();
    // Drops what was written; the target stays as it was.
    void discard();

    const std::filesystem::path& temporaryPath() const { return temporary; }
    const std::filesystem::path& target() const { return resolved; }

  private:
    void fail(SaveProblem problem, int error);

    std::filesystem::path resolved;
    std::filesystem::path temporary;
    int fd = -1;
    std::uint64_t written = 0;
    SaveResult outcome;
};

// The whole file at once.
SaveResult writeFileAtomically(const std::filesystem::path& target, std::span<const std::uint8_t> bytes);
// A text file, written the same way.
inline SaveResult writeFileAtomically(const std::filesystem::path& target, std::string_view text)
{
    return writeFileAtomically(target, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

// Removes the temporary files that saves of `target` by processes that no
// longer run left behind (a kill or a power cut between create and rename).
void removeStaleTemporaries(const std::filesystem::path& target);

struct FileRead {
    std::vector<std::uint8_t> bytes;
    int error = 0;    // 0 when read; ENOENT when there is no such file
    std::string kind; // set when the path names something other than a regular file

    explicit operator bool() const { return error == 0; }
    bool missing() const;
    // Why the file could not be read, e.g. "Permission denied" or "is a folder".
    std::string cause() const;
};

// Reads a whole regular file, saying why when it cannot. A file longer than
// `limit` is not read at all (EFBIG), so a wrong or damaged file never costs
// an allocation of its size.
FileRead readFileBytes(const std::filesystem::path& path, std::uint64_t limit = UINT64_MAX);

} // namespace rk4
