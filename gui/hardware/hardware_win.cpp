#include "gui/hardware/hardware_win.h"

#include "gui/hardware/port_dialog.h"

#include <QLabel>
#include <QListWidget>

namespace rk4::gui {

HardwareWin::HardwareWin(Workspace& space, Prompter& prompter, HardwareEditor::Mode mode, QWidget* parent)
    : EditorWindow(prompter, parent), hardware(space, mode)
{
    const bool outputs = mode == HardwareEditor::Mode::Outputs;
    setObjectName(outputs ? "outputsWindow" : "inputsWindow");
    setWindowTitle(QString::fromStdString(hardware.title()));
    const QFont font = listFont();

    heading = new QLabel(this);
    heading->setObjectName("headingLabel");
    heading->setFont(font);
    heading->setText(QString::fromStdString(hardware.DrawTitles()));

    list = new QListWidget(this);
    list->setObjectName("portList");
    list->setFont(font);
    list->setAlternatingRowColors(true);
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setWhatsThis(outputs ? "The eight hardware outputs. Double click a line, or select it and press Enter, "
                                 "to edit the output."
                               : "The eight hardware inputs. Double click a line, or select it and press Enter, "
                                 "to edit the input.");
    bindLineList(list, [this] { EditLine(); });
    connect(list, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0)
            hardware.selected = row;
    });

    layOutLineList(heading, "Edit the selected port.");

    hardware.SetupWindow(prompter);
    refresh();
    list->setCurrentRow(0);
}

QSize HardwareWin::sizeHint() const
{
    // Room for the longest line (a watchdog in seconds) and every port without scrolling.
    const QFontMetrics metrics(list->font());
    int lines = 0;
    for (int row = 0; row < list->count(); ++row)
        lines += static_cast<int>(list->item(row)->text().count('\n')) + 1;
    return {metrics.horizontalAdvance(QString(92, 'M')) + 40, metrics.lineSpacing() * (lines + 1) + 90};
}

void HardwareWin::refresh()
{
    const int row = list->currentRow();
    list->clear();
    for (int line = 0; line < kInputCount; ++line) {
        QStringList lines;
        for (const std::string& text : hardware.DrawLine(line))
            lines << QString::fromStdString(text);
        list->addItem(lines.join('\n'));
    }
    if (row >= 0)
        list->setCurrentRow(row);
}

void HardwareWin::EditLine()
{
    if (list->currentRow() < 0)
        return;
    hardware.selected = list->currentRow();
    hardware.EditLine([this](PortEditor& port) {
        PortDialog dialog(port, prompter, this);
        dialog.exec();
    });
    refresh();
}

} // namespace rk4::gui
