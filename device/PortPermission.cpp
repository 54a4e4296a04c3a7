#include "PortPermission.h"

#include <QFileInfo>

#ifndef Q_OS_WIN
#include <fcntl.h>
#include <unistd.h>
#endif

const char *const PortPermission::DefaultGroup = "dialout";

QString PortPermission::location(const QString &portName)
{
#ifdef Q_OS_WIN
    return portName;
#else
    return portName.startsWith(QLatin1Char('/')) ? portName : QStringLiteral("/dev/") + portName;
#endif
}

bool PortPermission::refusesUser(const QString &portName)
{
#ifdef Q_OS_WIN
    Q_UNUSED(portName)
    return true;
#else
    // The effective ids decide, as they do for the open that failed.
    return faccessat(AT_FDCWD, QFile::encodeName(location(portName)).constData(), R_OK | W_OK,
                     AT_EACCESS)
        != 0;
#endif
}

QString PortPermission::groupToJoin(const QString &portName)
{
#ifdef Q_OS_WIN
    Q_UNUSED(portName)
    return QString();
#else
    const QFileInfo file(location(portName));
    const QFile::Permissions groupRights = QFile::ReadGroup | QFile::WriteGroup;
    if ((file.permissions() & groupRights) == groupRights && !file.group().isEmpty())
        return file.group();
    return QLatin1String(DefaultGroup);
#endif
}
