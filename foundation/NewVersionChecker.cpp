#include "NewVersionChecker.h"

#include "VersionChecker.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QUrl>

namespace {
constexpr int CheckingSeconds = 600;
}

NewVersionChecker::NewVersionChecker(const QString &preliminaryText, QObject *parent)
    : QObject(parent)
    , m_preliminaryText(preliminaryText)
{
    connect(VersionChecker::Instance(), &VersionChecker::versionFound, this,
            &NewVersionChecker::update, Qt::QueuedConnection);
    // A known answer is shown on the next pass of the event loop, once the owner has connected.
    if (VersionChecker::LastVersion().valid)
        QMetaObject::invokeMethod(this, &NewVersionChecker::update, Qt::QueuedConnection);
    else
        VersionChecker::StartChecking(true, CheckingSeconds);
}

void NewVersionChecker::action() const
{
    if (!m_link.isEmpty())
        QDesktopServices::openUrl(QUrl(m_link));
}

void NewVersionChecker::update()
{
    const VersionInfo last = VersionChecker::LastVersion();
    if (last.valid) {
        m_link = last.link;
        const QString front = !m_preliminaryText.isEmpty()
            ? m_preliminaryText
            : QCoreApplication::translate("Generic",
                                          QCoreApplication::applicationName().toUtf8().constData())
                + QLatin1Char(' ');
        emit onSetText(front + last.version);
        emit onSetTooltip(tr("Click to download new version") + QLatin1Char(' ') + last.version);
    }
    emit onSetVisible(last.valid);
}
