#include "core/voice/adpcm.h"

namespace rk4 {

int step_adjust(int code) { return kStepAdjust[code & 7]; }

} // namespace rk4
