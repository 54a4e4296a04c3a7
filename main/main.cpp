#include "foundation/FileUtilities.h"
#include "ui/MainWindow.h"
#include "ui/ProgramStart.h"

#include <QApplication>
#include <QIcon>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Under a file size limit a write then fails and is reported, instead of ending the program.
    FileUtilities::ignoreFileSizeSignal();
    // Windows reads name and version from the executable's resources; elsewhere the build gives
    // them. The version service is told both.
    QCoreApplication::setApplicationName(QStringLiteral("Tarvelo"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TARVELO_VERSION));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/resources/tarvelo.png")));
    // Ties the window to the installed menu entry and its icon on Wayland.
    QGuiApplication::setDesktopFileName(QStringLiteral("tarvelo"));

    const std::unique_ptr<MainWindow> window = ProgramStart::showMainWindow();
    return app.exec();
}
