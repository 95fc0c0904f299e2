#include "core/points/points.h"

namespace rk4 {

int ClearPoints(Database& db, int port, bool isOutput)
{
    const int channel = isOutput ? port - 8 : port;
    int emptied = 0;
    for (PointRecord& point : db.alm) {
        if ((point.isOutput != 0) != isOutput || point.port != channel)
            continue;
        point = PointRecord{};
        point.inactive = 1;
        ++emptied;
    }
    return emptied;
}

int ConvertMask(std::uint8_t mask) { return mask != 0 && (mask & (mask - 1)) == 0 ? 1 : 0; }

} // namespace rk4
