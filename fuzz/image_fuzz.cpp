// A configuration file from disk (.dat, with rk4.cfg's record split off its
// first bytes): loading is byte-exact, and everything that reads an opened
// image (repairs, warnings, the summary, the text form) takes any bytes.

#include "fuzz/fuzz_target.h"

#include "core/database/database.h"
#include "core/database/defaults.h"
#include "core/database/file.h"
#include "core/database/text_form.h"
#include "core/report/summary.h"
#include "core/report/warnings.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    (void)rk4::configFromBytes({data, size});

    rk4::ImageBytes bytes{};
    std::copy_n(data, std::min(size, bytes.size()), bytes.begin());
    rk4::Database db = rk4::Database::fromImage(bytes);
    FUZZ_REQUIRE(db.toBytes() == bytes);

    rk4::DefaultValues(db);
    (void)rk4::ConfigurationWarnings(db);
    for (int category = 0; category <= static_cast<int>(rk4::Category::Simgen); ++category)
        (void)rk4::categoryLines(db, static_cast<rk4::Category>(category));

    // What the text form writes, it reads back to the same text.
    const std::string text = rk4::exportText(db);
    const rk4::ImportResult imported = rk4::importText(text);
    if (imported.db)
        FUZZ_REQUIRE(rk4::exportText(*imported.db) == text);
    return 0;
}
