#include "AppHelper.h"

#include "DesktopShell.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QSysInfo>

namespace AppHelper {

QString appVersion(bool threeParts)
{
    QString version = QCoreApplication::applicationVersion();
    if (version.isEmpty())
        version = QStringLiteral("1.0.6");
    if (version.count(QLatin1Char('.')) == 3)
        version.truncate(version.lastIndexOf(QLatin1Char('.')));
    if (threeParts)
        return version;
    if (version.count(QLatin1Char('.')) == 2)
        version.truncate(version.lastIndexOf(QLatin1Char('.')));
    return version;
}

QString OS()
{
    return QSysInfo::productType();
}

bool showInFolder(const QString &path)
{
    return DesktopShell::showInFolder(path);
}

QString findInResources(const QString &name)
{
    QDirIterator it(QStringLiteral(":"), QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        if (path.endsWith(name))
            return path.startsWith(QLatin1Char(':')) ? QStringLiteral("qrc") + path : path;
    }
    return QString();
}

} // namespace AppHelper
