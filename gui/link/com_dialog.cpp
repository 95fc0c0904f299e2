#include "gui/link/com_dialog.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace rk4::gui {

ComDialog::ComDialog(QWidget* parent) : QDialog(parent, Qt::Tool | Qt::WindowTitleHint | Qt::CustomizeWindowHint)
{
    setObjectName("comDialog");
    setWindowTitle("Communicating with the Rk4");
    setMinimumWidth(420);
    auto* layout = new QVBoxLayout(this);
    line1Label = new QLabel(this);
    line1Label->setObjectName("line1Label");
    QFont bold = line1Label->font();
    bold.setBold(true);
    line1Label->setFont(bold);
    line2Label = new QLabel(this);
    line2Label->setObjectName("line2Label");
    line2Label->setMinimumHeight(line2Label->fontMetrics().height());
    bar = new QProgressBar(this);
    bar->setObjectName("progressBar");
    bar->setFormat("%v of %m packets");
    layout->addWidget(line1Label);
    layout->addWidget(line2Label);
    layout->addWidget(bar);
}

void ComDialog::setLines(const QString& line1, const QString& line2)
{
    line1Label->setText(line1);
    line2Label->setText(line2);
}

void ComDialog::setPackets(int done, int total)
{
    bar->setMaximum(total > 0 ? total : 1);
    bar->setValue(done);
}

} // namespace rk4::gui
