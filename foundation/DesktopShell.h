#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// The one place where the program hands a file or folder to the desktop: opening an exported
// file, or showing it in the file manager. Windows selects the file in Explorer; other
// systems ask the freedesktop file manager to show it, and open the folder if that fails.
// Tests install an interceptor and see what would have been launched.
class DesktopShell
{
public:
    enum class Action { OpenFile, ShowInFolder };
    using Interceptor = std::function<void(Action action, const QString &path)>;

    // False when no program took it, such as on a system without a desktop's launcher.
    static bool openFile(const QString &path);
    static bool showInFolder(const QString &path);

    // With an interceptor set, nothing is launched; pass an empty function to restore.
    static void setInterceptor(Interceptor interceptor);

private:
    static bool openUrlOf(const QString &path);
};
