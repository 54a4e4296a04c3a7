#include "DesktopShell.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

namespace {
DesktopShell::Interceptor &interceptor()
{
    static DesktopShell::Interceptor instance;
    return instance;
}
} // namespace

void DesktopShell::setInterceptor(Interceptor handler)
{
    interceptor() = std::move(handler);
}

bool DesktopShell::openFile(const QString &path)
{
    if (interceptor()) {
        interceptor()(Action::OpenFile, path);
        return true;
    }
    return openUrlOf(path);
}

bool DesktopShell::showInFolder(const QString &path)
{
    if (interceptor()) {
        interceptor()(Action::ShowInFolder, path);
        return true;
    }
    const QFileInfo info(path);
#ifdef Q_OS_WIN
    QStringList arguments;
    if (!info.isDir())
        arguments << QStringLiteral("/select,");
    arguments << QDir::toNativeSeparators(path);
    const bool started = QProcess::startDetached(QStringLiteral("explorer"), arguments);
#else
    // The freedesktop file manager interface selects the file; without a session bus or a
    // file manager that answers, the folder is opened instead.
    QProcess dbus;
    dbus.start(
        QStringLiteral("dbus-send"),
        {QStringLiteral("--session"), QStringLiteral("--print-reply"),
         QStringLiteral("--dest=org.freedesktop.FileManager1"),
         QStringLiteral("/org/freedesktop/FileManager1"),
         QStringLiteral("org.freedesktop.FileManager1.ShowItems"),
         QStringLiteral("array:string:") + QUrl::fromLocalFile(info.absoluteFilePath()).toString(),
         QStringLiteral("string:")});
    const bool started = dbus.waitForFinished(3000) && dbus.exitStatus() == QProcess::NormalExit
        && dbus.exitCode() == 0;
#endif
    return started || openUrlOf(info.isDir() ? path : info.absolutePath());
}

bool DesktopShell::openUrlOf(const QString &path)
{
    return QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}
