#include "gui/report/printout_win.h"

#include "core/common/safe_file.h"
#include "core/database/file.h"

#include <QAction>
#include <QBuffer>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPageSetupDialog>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QScrollArea>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

constexpr double kFontPoints = 8.0;
constexpr double kMarginInches = 0.75;

QFont summaryFont(const QPaintDevice& device)
{
    QFont font("Courier New");
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    if (!QFontInfo(font).fixedPitch())
        font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(std::max(1, static_cast<int>(kFontPoints * device.logicalDpiY() / 72.0)));
    return font;
}

} // namespace

void drawSummaryPage(QPainter& painter, const SummaryPage& page, const QRect& area)
{
    const QFont font = summaryFont(*painter.device());
    painter.setFont(font);
    painter.setPen(Qt::black);
    const QFontMetrics metrics(font, painter.device());
    const int lineHeight = metrics.lineSpacing();
    int y = area.top() + metrics.ascent();
    for (const std::string& line : page.lines) {
        painter.drawText(area.left(), y, QString::fromLatin1(line.data(), static_cast<int>(line.size())));
        y += lineHeight;
    }
}

void printSummaryPages(QPagedPaintDevice& printer, const std::vector<SummaryPage>& pages)
{
    QPainter painter(&printer);
    const QRect area = painter.viewport();
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (i > 0)
            printer.newPage();
        drawSummaryPage(painter, pages[i], area);
    }
}

// One page on screen: a sheet of paper with the page's lines.
class PageView : public QWidget {
  public:
    explicit PageView(QWidget* parent) : QWidget(parent)
    {
        setObjectName("summaryPage");
    }

    void setPage(SummaryPage next)
    {
        page = std::move(next);
        const QFontMetrics metrics(summaryFont(*this));
        const int margin = static_cast<int>(kMarginInches * logicalDpiX() / 2);
        int width = 0;
        for (const std::string& line : page.lines)
            width = std::max(width, metrics.horizontalAdvance(QString::fromLatin1(line.c_str())));
        // At least a full page of lines, so the sheet does not jump in size between pages.
        const int lines = std::max<int>(static_cast<int>(page.lines.size()), kLinesPerPage + 4);
        setFixedSize(std::max(width, metrics.horizontalAdvance(QString(96, 'M'))) + 2 * margin,
                     lines * metrics.lineSpacing() + 2 * margin);
        update();
    }

    const SummaryPage& shown() const { return page; }

  protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        const int margin = static_cast<int>(kMarginInches * logicalDpiX() / 2);
        drawSummaryPage(painter, page, rect().adjusted(margin, margin, -margin, -margin));
    }

  private:
    SummaryPage page;
};

PrintoutWin::PrintoutWin(const Database& image, Prompter& prompter, QWidget* parent)
    : QWidget(parent), image(image), prompter(prompter), printout(image)
{
    setObjectName("printoutWin");
    setWindowTitle("SUMMARY");
    setFocusPolicy(Qt::StrongFocus);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    buildMenus();
    scroll = new QScrollArea(this);
    scroll->setObjectName("summaryScroll");
    scroll->setBackgroundRole(QPalette::Dark);
    scroll->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    view = new PageView(scroll);
    scroll->setWidget(view);
    scroll->setFocusProxy(this);
    layout->addWidget(scroll);
    Refresh();
}

PrintoutWin::~PrintoutWin() = default;

QSize PrintoutWin::sizeHint() const { return {view->width() + 40, view->height() + 60}; }

void PrintoutWin::buildMenus()
{
    auto* bar = new QMenuBar(this);
    bar->setObjectName("summaryMenuBar");
    layout()->setMenuBar(bar);

    QMenu* file = bar->addMenu("&File");
    auto add = [this](QMenu* menu, const QString& text, const char* name, void (PrintoutWin::*slot)()) {
        QAction* action = menu->addAction(text);
        action->setObjectName(name);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    add(file, "&Print...", "actionPrint", &PrintoutWin::CmFilePrint)->setShortcut(QKeySequence::Print);
    add(file, "Print Pre&view...", "actionPrintPreview", &PrintoutWin::CmFilePrintPreview);
    add(file, "Page Set&up...", "actionPageSetup", &PrintoutWin::CmFilePageSetup);
    file->addSeparator();
    add(file, "&Export PDF...", "actionExportPdf", &PrintoutWin::CmExportPdf);

    QMenu* category = bar->addMenu("&Category");
    struct Entry {
        const char* text;
        const char* name;
        void (PrintoutWin::*slot)();
        int mode; // 0 both, 1 Advanced only, 2 Basic only
    };
    const Entry entries[] = {
        {"&Hardware", "actionPrintHardware", &PrintoutWin::CmPrintHardware, 1},
        {"&Groups", "actionPrintGroups", &PrintoutWin::CmPrintGroups, 1},
        {"G&eneral", "actionPrintGeneral", &PrintoutWin::CmPrintGeneral, 1},
        {"&Points", "actionPrintPoints", &PrintoutWin::CmPrintPoints, 1},
        {"&Alarms", "actionPrintAlarms", &PrintoutWin::CmPrintAlarms, 2},
        {"&Outputs", "actionPrintSimout", &PrintoutWin::CmPrintSimout, 2},
        {"G&eneral", "actionPrintSimgen", &PrintoutWin::CmPrintSimgen, 2},
        {"&Directories", "actionPrintDirs", &PrintoutWin::CmPrintDirs, 0},
        {"&Warnings", "actionPrintWarnings", &PrintoutWin::CmPrintWarnings, 0},
        {"A&ll", "actionPrintAll", &PrintoutWin::CmPrintAll, 0},
    };
    for (const Entry& entry : entries) {
        QAction* action = add(category, entry.text, entry.name, entry.slot);
        if (entry.mode != 0)
            modeActions.emplace_back(action, entry.mode == 2);
    }

    QMenu* pages = bar->addMenu("&Page");
    nextPage = add(pages, "&Next Page", "actionNextPage", &PrintoutWin::CmNextPage);
    nextPage->setShortcut(QKeySequence(Qt::Key_PageDown));
    lastPage = add(pages, "&Last Page", "actionLastPage", &PrintoutWin::CmLastPage);
    lastPage->setShortcut(QKeySequence(Qt::Key_PageUp));
    for (QAction* action : {nextPage, lastPage})
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
}

void PrintoutWin::choose(Category category)
{
    printout.select(category);
    Refresh();
}

void PrintoutWin::CmNextPage()
{
    printout.CmNextPage();
    Refresh();
}

void PrintoutWin::CmLastPage()
{
    printout.CmLastPage();
    Refresh();
}

void PrintoutWin::Refresh()
{
    const bool basic = image.gen.basicMode != 0;
    for (const auto& [action, basicPage] : modeActions)
        action->setVisible(basicPage == basic);
    // A mode change while the window is open leaves a category of the other mode behind.
    const auto sequence = printout.sequence();
    const Category chosen = printout.singleCategory();
    if (chosen != Category::All && chosen != Category::Dirs && chosen != Category::Warnings &&
        std::find(sequence.begin(), sequence.end(), chosen) == sequence.end())
        printout.select(Category::All);
    if (printout.page() > printout.lastPage())
        printout.select(printout.singleCategory());

    view->setPage(printout.draw());
    nextPage->setEnabled(printout.canNext());
    lastPage->setEnabled(printout.canLast());
    scroll->ensureVisible(0, 0);
}

void PrintoutWin::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_PageDown:
    case Qt::Key_Right:
    case Qt::Key_Space:
        if (printout.canNext())
            CmNextPage();
        return;
    case Qt::Key_PageUp:
    case Qt::Key_Left:
    case Qt::Key_Backspace:
        if (printout.canLast())
            CmLastPage();
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

QPrinter& PrintoutWin::printer()
{
    if (!sharedPrinter) {
        sharedPrinter = std::make_unique<QPrinter>(QPrinter::HighResolution);
        sharedPrinter->setDocName("PRINTOUT");
        sharedPrinter->setPageMargins(QMarginsF(kMarginInches, kMarginInches, kMarginInches, kMarginInches),
                                      QPageLayout::Inch);
    }
    return *sharedPrinter;
}

void PrintoutWin::CmFilePrint()
{
    QPrinter& target = printer();
    target.setOutputFormat(QPrinter::NativeFormat);
    QPrintDialog dialog(&target, this);
    dialog.setWindowTitle("Print Summary");
    if (dialog.exec() == QDialog::Accepted)
        printSummaryPages(target, printout.allPages());
}

void PrintoutWin::CmFilePrintPreview()
{
    QPrintPreviewDialog preview(&printer(), this);
    preview.setObjectName("printPreview");
    connect(&preview, &QPrintPreviewDialog::paintRequested, this,
            [this](QPrinter* target) { printSummaryPages(*target, printout.allPages()); });
    preview.exec();
}

void PrintoutWin::CmFilePageSetup()
{
    QPageSetupDialog dialog(&printer(), this);
    dialog.exec();
}

void PrintoutWin::CmExportPdf()
{
    const auto path = prompter.chooseFile({FileMode::Save, "Export PDF", "PDF files (*.pdf)", "pdf", "summary.pdf"});
    if (!path)
        return;
    // Drawn in memory and saved like every other file, so a link is written
    // through and a device or a folder is refused rather than replaced.
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    {
        QPdfWriter pdf(&bytes);
        pdf.setTitle("PRINTOUT");
        pdf.setPageLayout(printer().pageLayout());
        printSummaryPages(pdf, printout.allPages());
    }
    const QByteArray& data = bytes.data();
    const SaveResult saved = writeFileAtomically(
        *path, std::span(reinterpret_cast<const std::uint8_t*>(data.constData()), static_cast<std::size_t>(data.size())));
    if (!saved)
        prompter.fileError(kCannotOpenFile, *path + ": " + saved.cause());
}

} // namespace rk4::gui
