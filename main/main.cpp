#include "ui/MainWindow.h"
#include "ui/ProgramStart.h"

#include <QApplication>
#include <QIcon>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // Windows reads the version from the executable's resources; elsewhere the build gives it.
    QCoreApplication::setApplicationVersion(QStringLiteral(TARVELO_VERSION));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/resources/tarvelo.png")));

    const std::unique_ptr<MainWindow> window = ProgramStart::showMainWindow(app);
    return app.exec();
}
