#include "gui/shell/main_window.h"

#include <QApplication>
#include <QFont>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(rk4::kApplicationName);
    QApplication::setApplicationVersion("1.0.0");
    QApplication::setDesktopFileName("rk4prog");

    rk4::Workspace workspace;
    rk4::gui::Main window(workspace);
    window.show();
    const QStringList args = QApplication::arguments();
    if (args.size() > 1)
        window.openStartupFile(args.at(1));
    return app.exec();
}
