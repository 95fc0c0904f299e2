#pragma once
// Summary pages as a PDF without a printer: one Letter page per summary page,
// the lines in the fixed-pitch font every PDF reader has, so the columns line
// up as on the screen. The command line uses it; the window prints through Qt.

#include "core/report/summary.h"

#include <string>
#include <vector>

namespace rk4 {

// The bytes of the whole document.
std::string textPdf(const std::vector<SummaryPage>& pages);

} // namespace rk4
