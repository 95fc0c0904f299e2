#pragma once
// PrintoutWin: the SUMMARY window. It shows one page of the summary at a time
// in a fixed-pitch font, pages through the categories, and prints or exports
// the same pages. Every line comes from the core page model.

#include "core/common/prompter.h"
#include "core/report/summary.h"

#include <QWidget>

#include <memory>

class QAction;
class QMenuBar;
class QPagedPaintDevice;
class QPainter;
class QPrinter;
class QScrollArea;

namespace rk4::gui {

// Draws page lines from the top-left of `area` in the summary's font, sized for
// the painter's device (8 points: 8 * pixels-per-inch / 72 pixels high).
void drawSummaryPage(QPainter& painter, const SummaryPage& page, const QRect& area);

// Draws every page on the printer or PDF writer, one sheet each.
void printSummaryPages(QPagedPaintDevice& printer, const std::vector<SummaryPage>& pages);

class PageView;

class PrintoutWin : public QWidget {
    Q_OBJECT

  public:
    PrintoutWin(const Database& image, Prompter& prompter, QWidget* parent = nullptr);
    ~PrintoutWin() override;

    Printout& core() { return printout; }
    QSize sizeHint() const override;

  public slots:
    void CmPrintHardware() { choose(Category::Hardware); }
    void CmPrintGroups() { choose(Category::Groups); }
    void CmPrintGeneral() { choose(Category::General); }
    void CmPrintPoints() { choose(Category::Points); }
    void CmPrintDirs() { choose(Category::Dirs); }
    void CmPrintWarnings() { choose(Category::Warnings); }
    void CmPrintAlarms() { choose(Category::Alarms); }
    void CmPrintSimout() { choose(Category::Simout); }
    void CmPrintSimgen() { choose(Category::Simgen); }
    void CmPrintAll() { choose(Category::All); }
    void CmNextPage();
    void CmLastPage();
    void CmFilePrint();
    void CmFilePrintPreview();
    void CmFilePageSetup();
    void CmExportPdf();
    // Redraws from the image, which may have changed in an editor.
    void Refresh();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void choose(Category category);
    void buildMenus();
    QPrinter& printer();

    const Database& image;
    Prompter& prompter;
    Printout printout;
    PageView* view = nullptr;
    QScrollArea* scroll = nullptr;
    QAction* nextPage = nullptr;
    QAction* lastPage = nullptr;
    std::vector<std::pair<QAction*, bool>> modeActions; // the action, and whether it is a Basic page
    std::unique_ptr<QPrinter> sharedPrinter;
};

} // namespace rk4::gui
