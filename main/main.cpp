#include "foundation/AppHelper.h"
#include "foundation/FileUtilities.h"
#include "foundation/LanguageContext.h"
#include "ui/AppStyle.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QPainter>
#include <QPixmap>
#include <QSplashScreen>
#include <QTextOption>

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

    QPixmap pixmap(QStringLiteral(":/resources/tarvelo-splash.png"));
    QPainter painter(&pixmap);
    painter.setPen(QPen(QBrush(QColor(0xCCFF)), 3.0));
    painter.drawText(QRectF(0, 0, pixmap.width() - 58, pixmap.height() - 74),
                     AppHelper::appVersion(true), QTextOption(Qt::AlignRight | Qt::AlignBottom));
    QSplashScreen splash(pixmap);
    splash.show();

    // The hyphen is deliberate: no key matches it, so the system's language decides.
    LanguageContext::setLanguage(QStringLiteral("ru-RU"));

    AppStyle::apply(app);

    MainWindow window;
    splash.finish(&window);
    window.show();
    return app.exec();
}
