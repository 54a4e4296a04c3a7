#pragma once

#include "VersionInfo.h"

#include <QObject>

class QNetworkAccessManager;
class QNetworkReply;
class QTimer;

// Asks the maker's version service, now and then, whether a newer version is on offer. All
// asking is asynchronous and nothing of it reaches the operator: a failed or garbled answer
// reads as nothing on offer. One request at a time, and none within 5 s of the last.
class VersionChecker : public QObject
{
    Q_OBJECT
public:
    static VersionChecker *Instance();

    // Switched on, it asks at once and then every seconds (at least 5). Switching off only
    // clears the flag: the timer goes on.
    static void StartChecking(bool enabled, int seconds);
    static VersionInfo LastVersion();
    static void FindNewVersionAsync();
    // The service's address; the environment variable TARVELO_VERSION_URL replaces it, for a
    // self-hosted service and for tests.
    static QString serviceAddress();

signals:
    void versionFound(const VersionInfo &info);

private:
    VersionChecker();
    void findNewVersionAsync();
    void onFinished(QNetworkReply *reply);

    QTimer *m_timer = nullptr;
    VersionInfo m_lastVersion;
    qint64 m_lastCheck = 0; // seconds since the epoch
    QNetworkAccessManager *m_manager = nullptr;
    bool m_ready = true;
    bool m_enabled = false;
};
