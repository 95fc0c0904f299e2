// A configuration's text form, hand edited: it is read, or refused with a
// place named; what it reads gives a valid image that exports and reads back
// to the same text.

#include "fuzz/fuzz_target.h"

#include "core/database/text_form.h"

#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const rk4::ImportResult imported = rk4::importText({reinterpret_cast<const char*>(data), size});
    if (!imported.db) {
        (void)rk4::textFormErrorText(imported.error);
        return 0;
    }
    const std::string text = rk4::exportText(*imported.db);
    const rk4::ImportResult again = rk4::importText(text);
    FUZZ_REQUIRE(again.db && *again.db == *imported.db);
    return 0;
}
