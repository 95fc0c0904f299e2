#include "core/basic/simple_check.h"

#include "core/database/directory_codec.h"

namespace rk4 {

namespace {

struct DirectoryCommands {
    bool advanced = false; // a command other than DIAL and VOICE
    bool dialOrVoice = false;
};

// Walks a directory as the unit does: stop at NUL or at a line end followed by
// NUL; only the command letters start commands, every other byte is a parameter
// ('Y' after a dialled number included).
DirectoryCommands scan(const DirectoryRecord& directory)
{
    DirectoryCommands found;
    const auto& text = directory.dirText;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::uint8_t byte = text[i];
        if (byte == 0 || (byte == '&' && i + 1 < text.size() && text[i + 1] == 0))
            break;
        if (!isCommandLetter(byte))
            continue;
        if (byte == 'P' || byte == 'V')
            found.dialOrVoice = true;
        else
            found.advanced = true;
    }
    return found;
}

} // namespace

std::uint32_t CheckForSimpleDir(const Database& db)
{
    std::uint32_t mask = 0;
    for (int d = 0; d < kDirectoryCount; ++d) {
        const DirectoryCommands found = scan(db.dir[d]);
        if (found.advanced)
            mask |= d == 0 ? kDirAdvancedInA : kDirAdvancedInBtoF;
        if (found.dialOrVoice && d >= 2)
            mask |= kDirDialInCtoF;
    }
    return mask;
}

bool directoryHasAdvancedCommands(const Database& db, int directory) { return scan(db.dir[directory]).advanced; }

} // namespace rk4
