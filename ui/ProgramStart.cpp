#include "ProgramStart.h"

#include "MainWindow.h"
#include "foundation/AppHelper.h"
#include "foundation/DeferredStart.h"
#include "foundation/LanguageContext.h"

#include <QPainter>
#include <QPixmap>
#include <QSplashScreen>
#include <QTextOption>

namespace ProgramStart {

std::unique_ptr<MainWindow> showMainWindow()
{
    QPixmap pixmap(QStringLiteral(":/resources/tarvelo-splash.png"));
    {
        QPainter painter(&pixmap);
        painter.setPen(QPen(QBrush(QColor(0xCCFF)), 3.0));
        painter.drawText(QRectF(0, 0, pixmap.width() - 58, pixmap.height() - 74),
                         AppHelper::appVersion(true),
                         QTextOption(Qt::AlignRight | Qt::AlignBottom));
    }
    QSplashScreen splash(pixmap);
    splash.show();

    // The hyphen is deliberate: no key matches it, so the system's language decides.
    LanguageContext::setLanguage(QStringLiteral("ru-RU"));

    // What the first sight of the window doesn't need waits until it has been painted.
    DeferredStart::hold();
    // The window gives the program its look once its pages are built.
    auto window = std::make_unique<MainWindow>();
    // Shown first: finish() waits for the window to be on screen, which would otherwise cost
    // every start about a second of polling.
    DeferredStart::releaseAfterFirstPaint(window.get());
    window->show();
    splash.finish(window.get());
    return window;
}

} // namespace ProgramStart
