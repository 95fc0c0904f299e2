#include "core/report/text_pdf.h"

#include <cstdio>

namespace rk4 {

namespace {

constexpr int kPageWidth = 612; // Letter, in points
constexpr int kPageHeight = 792;
constexpr int kMargin = 54;
constexpr int kFontSize = 8;
constexpr int kLeading = 10;

// A PDF string literal; bytes outside printable ASCII go as octal escapes.
std::string literal(const std::string& text)
{
    std::string out = "(";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '(' || c == ')' || c == '\\') {
            out += '\\';
            out += c;
        } else if (byte < 0x20 || byte >= 0x7F) {
            char escaped[5];
            std::snprintf(escaped, sizeof escaped, "\\%03o", byte);
            out += escaped;
        } else {
            out += c;
        }
    }
    return out + ")";
}

std::string contentStream(const SummaryPage& page)
{
    std::string text = "BT /F1 " + std::to_string(kFontSize) + " Tf " + std::to_string(kLeading) + " TL " +
                       std::to_string(kMargin) + " " + std::to_string(kPageHeight - kMargin) + " Td\n";
    for (const std::string& line : page.lines)
        text += literal(line) + " Tj T*\n";
    return text + "ET\n";
}

} // namespace

std::string textPdf(const std::vector<SummaryPage>& pages)
{
    std::vector<std::string> objects; // object n is objects[n - 1]
    const int count = static_cast<int>(pages.size());
    // 1 catalog, 2 page tree, 3 font, then a page and its contents for each page.
    objects.push_back("<< /Type /Catalog /Pages 2 0 R >>");
    std::string kids;
    for (int i = 0; i < count; ++i)
        kids += std::to_string(4 + 2 * i) + " 0 R ";
    objects.push_back("<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(count) + " >>");
    objects.push_back("<< /Type /Font /Subtype /Type1 /BaseFont /Courier /Encoding /WinAnsiEncoding >>");
    for (int i = 0; i < count; ++i) {
        objects.push_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 " + std::to_string(kPageWidth) + " " +
                          std::to_string(kPageHeight) + "] /Resources << /Font << /F1 3 0 R >> >> /Contents " +
                          std::to_string(5 + 2 * i) + " 0 R >>");
        const std::string stream = contentStream(pages[i]);
        objects.push_back("<< /Length " + std::to_string(stream.size()) + " >>\nstream\n" + stream + "endstream");
    }

    std::string pdf = "%PDF-1.4\n";
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        offsets.push_back(pdf.size());
        pdf += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::size_t xref = pdf.size();
    pdf += "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (const std::size_t offset : offsets) {
        char entry[24];
        std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", offset);
        pdf += entry;
    }
    pdf += "trailer\n<< /Size " + std::to_string(objects.size() + 1) + " /Root 1 0 R >>\nstartxref\n" +
           std::to_string(xref) + "\n%%EOF\n";
    return pdf;
}

} // namespace rk4
