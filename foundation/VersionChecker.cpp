#include "VersionChecker.h"

#include "AppHelper.h"
#include "DeferredStart.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <QUrl>

namespace {
// The maker's host goes here before a release. Until then the address lies under a name that
// never resolves (RFC 2606), so that no operator's machine tells a stranger what it runs.
const char *const ServiceAddress = "https://updates.mirenthalic.example/repo/version.php";
const char *const AddressVariable = "TARVELO_VERSION_URL";
constexpr int MinimumSeconds = 5;
// A request that hangs would otherwise stop the checking for good.
constexpr int TransferTimeoutMs = 60000;
} // namespace

VersionChecker *VersionChecker::Instance()
{
    static VersionChecker *instance = new VersionChecker;
    return instance;
}

VersionChecker::VersionChecker()
{
    qRegisterMetaType<VersionInfo>("VersionInfo");
}

QString VersionChecker::serviceAddress()
{
    return qEnvironmentVariable(AddressVariable, QString::fromLatin1(ServiceAddress));
}

void VersionChecker::StartChecking(bool enabled, int seconds)
{
    VersionChecker *self = Instance();
    if (!self->m_timer) {
        self->m_timer = new QTimer(self);
        connect(self->m_timer, &QTimer::timeout, self, &VersionChecker::findNewVersionAsync,
                Qt::QueuedConnection);
    }
    if (enabled == self->m_enabled)
        return;
    self->m_enabled = enabled;
    if (enabled) {
        self->m_timer->start(qMax(seconds, MinimumSeconds) * 1000);
        // Setting up the network takes a while, which the window's first sight doesn't wait for.
        DeferredStart::call(self, [self] { self->findNewVersionAsync(); });
    }
}

VersionInfo VersionChecker::LastVersion()
{
    return Instance()->m_lastVersion;
}

void VersionChecker::FindNewVersionAsync()
{
    Instance()->findNewVersionAsync();
}

void VersionChecker::findNewVersionAsync()
{
    if (!m_ready)
        return;
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    if (m_lastCheck != 0 && now - m_lastCheck < MinimumSeconds)
        return;
    m_lastCheck = now;
    m_ready = false;

    // The values go in as they are: none of them holds a character that needs escaping.
    const QUrl url(serviceAddress() + QStringLiteral("?app=") + QCoreApplication::applicationName()
                   + QStringLiteral("&version=") + AppHelper::appVersion(true)
                   + QStringLiteral("&locale=") + QLocale::system().name()
                   + QStringLiteral("&platform=") + AppHelper::OS());
    if (!m_manager) {
        m_manager = new QNetworkAccessManager(this);
        connect(m_manager, &QNetworkAccessManager::finished, this, &VersionChecker::onFinished,
                Qt::QueuedConnection);
    }
    QNetworkRequest request(url);
    request.setTransferTimeout(TransferTimeoutMs);
    m_manager->get(request);
}

void VersionChecker::onFinished(QNetworkReply *reply)
{
    // A failed request has no bytes, and so reads as nothing on offer.
    m_lastVersion = VersionInfo::parse(reply->readAll());
    emit versionFound(m_lastVersion);
    reply->deleteLater();
    m_ready = true;
}
