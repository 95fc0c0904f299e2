#include "gui/shell/qt_prompter.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

namespace rk4::gui {

Answer QtPrompter::ask(const Message& message)
{
    QMessageBox box(parent);
    box.setWindowTitle(QString::fromStdString(message.title));
    box.setText(QString::fromStdString(message.text));
    if (!message.detail.empty())
        box.setInformativeText(QString::fromStdString(message.detail));
    switch (message.icon) {
    case Icon::Information: box.setIcon(QMessageBox::Information); break;
    case Icon::Warning: box.setIcon(QMessageBox::Warning); break;
    case Icon::Error: box.setIcon(QMessageBox::Critical); break;
    case Icon::Question: box.setIcon(QMessageBox::Question); break;
    case Icon::None: break;
    }
    switch (message.buttons) {
    case Buttons::Ok: box.setStandardButtons(QMessageBox::Ok); break;
    case Buttons::OkCancel: box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel); break;
    case Buttons::YesNo: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No); break;
    case Buttons::YesNoCancel: box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel); break;
    case Buttons::SaveDiscardCancel:
        box.setStandardButtons(QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel);
        box.button(QMessageBox::Cancel)->setText("Go Back");
        box.setDefaultButton(QMessageBox::Cancel);
        break;
    }
    box.setObjectName("messageBox");
    switch (box.exec()) {
    case QMessageBox::Yes:
    case QMessageBox::Save: return Answer::Yes;
    case QMessageBox::No:
    case QMessageBox::Discard: return Answer::No;
    case QMessageBox::Ok: return Answer::Ok;
    default: return Answer::Cancel;
    }
}

std::optional<std::string> QtPrompter::chooseFile(const FileRequest& request)
{
    QFileDialog dialog(parent, QString::fromStdString(request.title), QString::fromStdString(request.startPath),
                       QString::fromStdString(request.filter));
    dialog.setObjectName("fileDialog");
    dialog.setAcceptMode(request.mode == FileMode::Save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(request.mode == FileMode::Save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (!request.defaultExtension.empty())
        dialog.setDefaultSuffix(QString::fromStdString(request.defaultExtension));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return dialog.selectedFiles().first().toStdString();
}

} // namespace rk4::gui
