#include "core/database/validators.h"

#include <cstring>

namespace rk4 {

bool IsDirectoryUsed(const Database& db, int directory)
{
    static constexpr char kCommandLetters[] = "FGHLMNPQRSTUVWXZ";
    for (std::uint8_t byte : db.dir[directory].dirText) {
        if (byte == 0)
            return false;
        if (std::strchr(kCommandLetters, byte))
            return true;
    }
    return false;
}

} // namespace rk4
