#pragma once
// The summary printout as pages of text. One model serves the SUMMARY window,
// the printer, the PDF export and the command line: each asks for the lines of
// a page and only draws them.

#include "core/database/database.h"

#include <string>
#include <vector>

namespace rk4 {

enum class Category {
    All = 0,
    Hardware = 1,
    Groups = 2,
    General = 3,
    Points = 4,
    Dirs = 5,
    Warnings = 6,
    Alarms = 7, // Basic
    Simout = 8, // Basic
    Simgen = 9, // Basic
};

inline constexpr char kMakerName[] = "Sentrix Controls";
inline constexpr char kBanner[] = "Rk4 Cellular Alarm Reporting Unit  ---";
// Lines of a category's body a page holds; the 51st starts the next page.
inline constexpr int kLinesPerPage = 50;

std::string bannerLine();

// A point type as the pages and the command line name it ("Digital", "Timer Out").
const char* pointTypeWord(std::uint8_t type);

// The category's title on its page `page` (from 0).
std::string categoryTitle(Category category, int page);

// The body lines of a category, all pages together (Groups: both pages).
std::vector<std::string> categoryLines(const Database& db, Category category);

struct SummaryPage {
    std::vector<std::string> lines; // banner, title, a blank, then the body
};

// The body of a category as items: a point with its details, a directory
// line, a warning with its second line. Pages break between items, so an item
// is never split unless it is longer than a page.
using Block = std::vector<std::string>;
std::vector<Block> categoryBlocks(const Database& db, Category category);

// Lays out the items of one category and keeps the lines of one page: every
// item is counted, only the wanted page's lines are kept, and the first item
// of each page is remembered.
class PageLayout {
  public:
    explicit PageLayout(int page) : wanted(page) {}
    // Places one item; true when some of it lands on the wanted page.
    bool TestItem(const Block& item);
    bool TestLine(const std::string& text) { return TestItem({text}); }
    const std::vector<std::string>& drawn() const { return kept; }
    int lastPage() const { return page; }
    const std::vector<int>& pageStartLine() const { return starts; }

  private:
    int wanted;
    int page = 0;
    int linesOnPage = 0;
    int itemCount = 0;
    std::vector<int> starts;
    std::vector<std::string> kept;
};

// The printout's position: which category and page is shown, and where Next
// Page and Last Page lead. Reads the image at every call, so an edit shows at
// the next page turn.
class Printout {
  public:
    explicit Printout(const Database& db) : db(db) { select(Category::All); }

    // A category command; Category::All for the whole sequence.
    void select(Category chosen);

    Category category() const { return current; }
    Category singleCategory() const { return chosen; }
    int page() const { return pageNumber; }
    int lastPage() const { return lastPageOf(current); }
    int lastPageOf(Category category) const;

    bool canNext() const;
    bool canLast() const;
    void CmNextPage();
    void CmLastPage();

    SummaryPage draw() const { return drawPage(current, pageNumber); }
    SummaryPage drawPage(Category category, int page) const;
    // Every page the current choice shows, in order (printing, PDF, command line).
    std::vector<SummaryPage> allPages() const;

    // The categories of All for this image's mode.
    std::vector<Category> sequence() const;

  private:
    std::vector<Category> shown() const;

    const Database& db;
    Category chosen = Category::All;
    Category current = Category::Hardware;
    int pageNumber = 0;
};

} // namespace rk4
