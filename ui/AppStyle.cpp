#include "AppStyle.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>

void AppStyle::apply(QApplication &app)
{
    // Once: given again, the sheet would polish every widget anew.
    if (!app.styleSheet().isEmpty())
        return;
    // Registered rather than expected from the system: the style sheet names this family.
    QFontDatabase::addApplicationFont(
        QStringLiteral(":/resources/Fonts/RobotoCondensed-Regular.ttf"));
    QFontDatabase::addApplicationFont(QStringLiteral(":/resources/Fonts/RobotoCondensed-Bold.ttf"));

    QFile styleSheet(QStringLiteral(":/resources/Tarvelo.css"));
    if (styleSheet.open(QIODevice::ReadOnly))
        app.setStyleSheet(QString::fromUtf8(styleSheet.readAll()));
}
