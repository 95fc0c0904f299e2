// The small hand-editable settings files beside rk4.cfg (the modem link's and
// the speech voice's): whatever they hold, loading gives settings whose saved
// text loads back to the same text, so a save never changes what is kept.

#include "fuzz/fuzz_target.h"

#include "core/modem/modem_settings.h"
#include "core/voice/speech.h"

#include <string>

namespace {

template <typename Settings>
void savedTextIsStable(const std::string& text)
{
    const std::string saved = Settings::parse(text).text();
    FUZZ_REQUIRE(Settings::parse(saved).text() == saved);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    savedTextIsStable<rk4::modem::ModemSettings>(text);
    savedTextIsStable<rk4::SpeechSettings>(text);
    return 0;
}
